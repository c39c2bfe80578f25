#include "families/sxb/lane_cfg_sxb_instance.h"

#include "support/captured_messages.h"
#include "support/packing_request.h"
#include "support/print_rule_value.h"
#include "support/quad_usage.h"
#include "support/reference_data.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <boost/optional/optional_io.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::CapturedMessages;
using lanecfg_test::noVcoText;
using lanecfg_test::PackingRequest;
using lanecfg_test::QuadUsage;
using lanecfg_test::rateOf;
using lanecfg_test::RateSettings;
using lanecfg_test::receive;
using lanecfg_test::tenGigabitEthernet;
using lanecfg_test::textsOf;
using lanecfg_test::transmit;
using lanecfg_test::withReceiveBuffer;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

class SxbInstance : public testing::Test {
  protected:
    std::unique_ptr<lane_cfg_sxb_instance> made(const PackingRequest& request,
                                                const std::string& name = "quad") const {
        return std::make_unique<lane_cfg_sxb_instance>(
            name, request.channels, quads.quads, database.m_paramTypes,
            withReceiveBuffer(request.userParams), database.m_fields, database.m_deviceData);
    }

    template <class Value>
    static Value valueIn(const lane_cfg_instance& instance, std::size_t lane,
                         const std::string& name, std::size_t pass = 0) {
        return boost::get<Value>(instance.blockVarMap.at(lane).at(pass).at(name).value);
    }

    static boost::optional<int> numberOfRule(lane_cfg_instance& instance, const std::string& name) {
        return instance.varMap.at(name).ruleNumber;
    }

    const gt_db_load database = lanecfg_test::referenceDatabase("SXB");
    QuadUsage quads;
    CapturedMessages messages;
};

TEST_F(SxbInstance, KnowsItsNameFamilyAndQuads) {
    quads.add("TX_QUAD_CH", "TXQUAD_0", {"a.0", "a.1", "a.2", "a.3"}, {});
    const auto instance = made(PackingRequest());
    EXPECT_EQ(instance->instanceName, "quad");
    EXPECT_EQ(instance->ipName, "quad");
    EXPECT_EQ(instance->familyName, "SXB");
    EXPECT_EQ(instance->family, "SXB");
    EXPECT_EQ(instance->quadsUsage, quads.quads);
}

TEST_F(SxbInstance, RegistersReceiveThenTransmitThenPllRules) {
    const auto instance = made(PackingRequest());
    EXPECT_EQ(numberOfRule(*instance, "RX_PCS_CFG0.RX_DATA_WIDTH"), 0);
    EXPECT_EQ(numberOfRule(*instance, "TX_PCS_CFG0.TX_DATA_WIDTH"), 813);
    EXPECT_EQ(numberOfRule(*instance, "INT_LCPLL_PLLCLKOUT_VECTOR"), 813 + 198);
}

TEST_F(SxbInstance, IsWhatTheManagerMakes) {
    PackingRequest request;
    request.addBoth(0, {tenGigabitEthernet()});
    const std::unique_ptr<lane_cfg_instance> instance(lane_cfg_ip_mgr::createLaneCfgInstance(
        "quad", "SXB", request.channels, {}, database.m_paramTypes, request.userParams,
        database.m_fields, database.m_deviceData));
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->familyName, "SXB");
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV"), 66U);
}

TEST_F(SxbInstance, GivesTheRulesWhatThePackingFound) {
    PackingRequest request;
    request.addBoth(0, {tenGigabitEthernet()});
    const auto instance = made(request);
    EXPECT_THAT(instance->packedChannels, IsEmpty());
    EXPECT_TRUE(valueIn<bool>(*instance, 0, "TX_IN_USE"));
    EXPECT_THAT(valueIn<std::vector<double>>(*instance, 0, "TX_LCPLL_PLLCLKOUT_FREQ_VECTOR"),
                ElementsAre(10.3125));
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_REF_DIV"), 1U);
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV"), 66U);
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_SDMDATA"), 0U);
    EXPECT_EQ(valueIn<std::string>(*instance, 0, "INT_LCPLLCLKOUTRATE"), "FULL");
    EXPECT_THAT(messages.records(), IsEmpty());
}

TEST_F(SxbInstance, KeepsTheOutcomeOfThePacking) {
    PackingRequest request;
    request.addBoth(0, {tenGigabitEthernet("R3")});
    const auto instance = made(request);
    const auto& numbers = instance->intersectedCoordinates.at("DUAL_0").at("A").at("LCPLL");
    EXPECT_THAT(numbers.at("pllClkFreqs"), ElementsAre(ElementsAre(10.3125)));
    const auto& texts =
        instance->refclkSourceIntersectedCoordinates.at("DUAL_0").at("A").at("LCPLL");
    EXPECT_THAT(texts.at("refclkSources"), ElementsAre(ElementsAre("R3")));
}

TEST_F(SxbInstance, KeepsTheReasonsOfARequestThatDoesNotPack) {
    // The rates need 5.15625 or 10.3125 GHz, and 5.5 or 11.0.
    PackingRequest request;
    request.addBoth(0, {rateOf(10.3125)}).addBoth(1, {rateOf(11.0)});
    const auto instance = made(request);
    EXPECT_EQ(textsOf(instance->packedChannels).front(), noVcoText("LCPLL", 0, 0));
    // The lanes are left as they were, so nobody is in use.
    EXPECT_FALSE(valueIn<bool>(*instance, 0, "TX_IN_USE"));
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "MAX_RATE"), 0U);
}

TEST_F(SxbInstance, TellsTheUserOfAFaultInThePackingAndGoesOn) {
    PackingRequest request;
    request.addBoth(0, {tenGigabitEthernet()});
    request.parametersAt(transmit, 0).erase("TX_REFCLK_SOURCE");
    const auto instance = made(request);
    EXPECT_THAT(messages.texts(0x20000000),
                testing::Contains(MatchesRegex("Exception caught TX_REFCLK_SOURCE is missing in "
                                               "TX of lane 0 at rate 0 at [0-9]+ of file "
                                               "ip/rule_engine/gt_rule_engine/src/gt_quad_packing"
                                               "\\.")));
    EXPECT_THAT(instance->blockVarMap, SizeIs(4));
}

TEST_F(SxbInstance, TellsTheUserOfAFaultInTheValuesAndGoesOn) {
    PackingRequest request;
    request.addBoth(0, {tenGigabitEthernet()}).addBoth(1, {tenGigabitEthernet()});
    request.parametersAt(receive, 0).erase("RX_PLL_TYPE");
    const auto instance = made(request);
    EXPECT_THAT(
        messages.texts(0x20000000),
        testing::Contains(MatchesRegex("Exception caught RX_PLL_TYPE is missing in RX of lane 0 at "
                                       "rate 0 at [0-9]+ of file ip/rule_engine/gt_rule_engine/src/"
                                       "lane_cfg_sxb_instance\\.")));
    // What was not entered keeps its default.
    EXPECT_FALSE(valueIn<bool>(*instance, 1, "TX_IN_USE"));
    EXPECT_FALSE(valueIn<bool>(*instance, 0, "RX_IN_USE"));
}

TEST_F(SxbInstance, GivesTheRulesThePositionsInTheQuad) {
    quads.add("TX_QUAD_CH", "TXQUAD_0", {"a.0", "a.1", "b.0", "undef"}, {"1", "0", "1", "0"});
    PackingRequest request;
    for (int lane = 0; lane < 3; ++lane) {
        request.addBoth(lane, {tenGigabitEthernet()});
    }
    const auto instance = made(request);
    EXPECT_EQ(valueIn<std::string>(*instance, 0, "TX_PIPE_POSITION"), "bottom");
    EXPECT_EQ(valueIn<std::string>(*instance, 1, "TX_PIPE_POSITION"), "top");
    EXPECT_EQ(valueIn<std::string>(*instance, 1, "TX_CH0_SYNCDONE_POSITION"), "IM");
    EXPECT_EQ(valueIn<std::string>(*instance, 2, "TX_PIPE_POSITION"), "single");
}

TEST_F(SxbInstance, WithoutQuadsLeavesThePositionsAtTheirDefaults) {
    PackingRequest request;
    request.addBoth(0, {tenGigabitEthernet()});
    const auto instance = made(request);
    EXPECT_EQ(valueIn<std::string>(*instance, 0, "TX_PIPE_POSITION"), "single");
    EXPECT_EQ(valueIn<std::string>(*instance, 0, "RX_CH3_RESETDONE_POSITION"), "single");
}

TEST_F(SxbInstance, RunsAQuadThatNobodyUses) {
    const auto instance = made(PackingRequest());
    ASSERT_THAT(instance->blockVarMap, SizeIs(4));
    for (std::size_t lane = 0; lane < 4; ++lane) {
        EXPECT_THAT(instance->blockVarMap[lane], SizeIs(1));
        EXPECT_FALSE(valueIn<bool>(*instance, lane, "TX_IN_USE"));
        // An idle PLL divides by 80, which the hardware counts from two below.
        EXPECT_EQ(valueIn<unsigned>(*instance, lane, "A_CFG1.A_HS0_LCPLLFBDIV"), 78U);
    }
    EXPECT_THAT(instance->packedChannels, IsEmpty());
    EXPECT_THAT(instance->groupsOfRates(), IsEmpty());
}

TEST_F(SxbInstance, AsksNothingOfAPllAtAnIdleLane) {
    PackingRequest request;
    request.addBoth(0, {tenGigabitEthernet()});
    const auto instance = made(request);
    for (const char* const side : {"TX", "RX"}) {
        for (const char* const pll : {"_LCPLL", "_RPLL"}) {
            const std::string name = std::string(side) + pll + "_PLLCLKOUT_FREQ_VECTOR";
            EXPECT_THAT(valueIn<std::vector<double>>(*instance, 1, name), IsEmpty()) << name;
        }
    }
    // So the lane has the solution of the lane before it.
    EXPECT_EQ(valueIn<unsigned>(*instance, 1, "INT_LCPLL_FBDIV"), 66U);
    EXPECT_EQ(valueIn<unsigned>(*instance, 1, "A_CFG1.A_HS0_LCPLLFBDIV"), 64U);
}

TEST_F(SxbInstance, SolvesEachRateForItself) {
    // 66 and 80 times 156.25 MHz.
    RateSettings faster = tenGigabitEthernet();
    faster.lineRate = 12.5;
    PackingRequest request;
    request.addBoth(0, {tenGigabitEthernet(), faster});
    const auto instance = made(request);
    EXPECT_THAT(instance->packedChannels, IsEmpty());
    ASSERT_THAT(instance->blockVarMap[0], SizeIs(2));
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV", 0), 66U);
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV", 1), 80U);
    EXPECT_TRUE(valueIn<bool>(*instance, 0, "MULTI_RATE", 0));
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "MAX_RATE", 1), 1U);
}

TEST_F(SxbInstance, CountsTheRatesOfItsLanes) {
    PackingRequest request;
    request.addBoth(0, {tenGigabitEthernet(), tenGigabitEthernet()});
    request.channels.front().group = "G";
    const auto instance = made(request);
    EXPECT_EQ(instance->numberOfRatesForThisChannel(transmit, 0), 2);
    EXPECT_EQ(instance->numberOfRatesForThisChannel(receive, 0), 2);
    EXPECT_EQ(instance->numberOfRatesForThisChannel(transmit, 1), 1);
    EXPECT_EQ(instance->groupsOfRates().at(transmit).at(0).at(1), "G");
    EXPECT_EQ(instance->groupsOfRates().at(receive).at(3).at(0), "G");
}

TEST_F(SxbInstance, TakesTheDualsPllFromTheLaneThatUsesIt) {
    PackingRequest request;
    request.addBoth(1, {tenGigabitEthernet("R2")}).addBoth(2, {tenGigabitEthernet("R3")});
    const auto instance = made(request);
    const std::map<std::string, std::string> answer = instance->getAttributes();
    // R0 to R5 are codes 1 to 6; the RPLLs, which nobody uses, stand at R0.
    EXPECT_EQ(answer.at("HS0_LCPLL_IPS_REFCLK_SEL"), "3");
    EXPECT_EQ(answer.at("HS1_LCPLL_IPS_REFCLK_SEL"), "4");
    EXPECT_EQ(answer.at("HS0_RPLL_IPS_REFCLK_SEL"), "1");
    // The dividers of the LCPLLs are 66 - 2, those of the RPLLs idle.
    EXPECT_EQ(answer.at("A_CFG1"), std::to_string(64U + (78U << 8) + (64U << 16) + (78U << 24)));
}

TEST_F(SxbInstance, ReportsTheOutputClocks) {
    PackingRequest request;
    RateSettings half = tenGigabitEthernet();
    half.lineRate = 5.15625;
    request.addBoth(0, {half, tenGigabitEthernet()});
    auto instance = made(request);
    // A coded word of 80 bits at 10.3125 Gb/s comes at 128.90625 MHz.
    EXPECT_EQ(instance->getOutClkFrequencies().at("CH0_TXOUTCLK"), "128.906");
    const std::map<std::string, std::string> clocks = instance->getOutClkFrequenciesInternal();
    EXPECT_EQ(clocks.at("CH0_RXOUTCLK_FREQ"), "128.906");
    EXPECT_EQ(clocks.at("CH0_TXOUTCLK_REF_FREQ"), "156.25");
    EXPECT_EQ(clocks.at("CH0_TXOUTCLK_REF_SOURCE"), "HSCLK0_LCPLLGTREFCLK0");
}

TEST_F(SxbInstance, WithoutUserParametersReportsNoOutputClocks) {
    PackingRequest request;
    request.userParams.clear();
    EXPECT_THAT(made(request)->getOutClkFrequencies(), IsEmpty());
}

TEST_F(SxbInstance, DoesNotTouchAnother) {
    PackingRequest first;
    first.addBoth(0, {tenGigabitEthernet("R2")});
    PackingRequest second;
    second.addBoth(0, {rateOf(5.0, "RPLL", 125.0, "R1")});
    const auto alone = made(first, "alone")->getAttributes();
    const auto one = made(first, "one");
    const auto other = made(second, "other");
    const auto ofOther = other->getAttributes();
    EXPECT_EQ(one->getAttributes(), alone);
    EXPECT_NE(ofOther, alone);
    EXPECT_EQ(other->getAttributes(), ofOther);
}

TEST_F(SxbInstance, PassesOnTheExceptionOfARule) {
    PackingRequest request;
    request.addBoth(0, {tenGigabitEthernet()});
    request.parametersAt(transmit, 0)["TX_LINE_RATE"] = 10U;
    EXPECT_THROW(made(request), boost::bad_get);
}

/// Lanes used or not at random, each with rates, PLLs and sources of its own.
class SxbInstanceOfRandomLanes : public SxbInstance,
                                 public testing::WithParamInterface<unsigned int> {
  protected:
    template <class Element>
    Element oneOf(const std::vector<Element>& elements) {
        return elements[std::uniform_int_distribution<std::size_t>(0, elements.size() - 1)(random)];
    }

    RateSettings randomRate(int lane) {
        RateSettings settings = rateOf(
            oneOf<double>({2.5, 5.0, 10.3125, 12.5, 16.0}), oneOf<std::string>({"LCPLL", "RPLL"}),
            oneOf<double>({100.0, 125.0, 156.25}), oneOf<std::string>({"R0", "R1"}));
        // Lanes of different groups need not agree with each other.
        settings.group = std::to_string(lane);
        return settings;
    }

    PackingRequest randomRequest() {
        PackingRequest request;
        for (int lane = 0; lane < 4; ++lane) {
            const auto rates = oneOf<int>({0, 1, 2, 3});
            std::vector<RateSettings> settings;
            for (int rate = 0; rate < rates; ++rate) {
                settings.push_back(randomRate(lane));
            }
            if (!settings.empty()) {
                request.addBoth(lane, settings, "PIN" + std::to_string(lane));
            }
        }
        return request;
    }

    static std::vector<double> frequencies(const variableMap& pass, const std::string& side,
                                           const std::string& pll) {
        return boost::get<std::vector<double>>(
            pass.at(side + "_" + pll + "_PLLCLKOUT_FREQ_VECTOR").value);
    }

    /// A lane in use has a running PLL at one of its frequencies; an idle lane asks for none.
    static void expectPllOf(const variableMap& pass, const std::string& side) {
        const auto pll = boost::get<std::string>(pass.at(side + "_PLL_TYPE").value);
        const bool inUse = boost::get<bool>(pass.at(side + "_IN_USE").value);
        const std::vector<double> candidates = frequencies(pass, side, pll);
        EXPECT_EQ(candidates.empty(), !inUse);
        EXPECT_EQ(boost::get<bool>(pass.at(side + "_" + pll + "_POWERDOWN").value), !inUse);
        if (inUse) {
            EXPECT_THAT(
                candidates,
                testing::Contains(boost::get<double>(pass.at("INT_" + pll + "_PLLCLKOUT").value)));
        }
    }

    std::mt19937 random{GetParam()};
};

TEST_P(SxbInstanceOfRandomLanes, RunsThePllsOfItsLanesAlone) {
    const auto instance = made(randomRequest());
    for (const auto& passes : instance->blockVarMap) {
        for (const variableMap& pass : passes) {
            expectPllOf(pass, "TX");
            expectPllOf(pass, "RX");
        }
    }
}

TEST_P(SxbInstanceOfRandomLanes, AnswersTheSameEachTime) {
    const PackingRequest request = randomRequest();
    const auto attributes = made(request)->getAttributes();
    EXPECT_EQ(made(request)->getAttributes(), attributes);
    EXPECT_EQ(made(request)->getOutClkFrequencies(), made(request)->getOutClkFrequencies());
}

INSTANTIATE_TEST_SUITE_P(Seeds, SxbInstanceOfRandomLanes, testing::Range(0U, 12U));

}  // namespace
}  // namespace sable_lanecfg
