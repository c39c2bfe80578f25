#include "families/sxb/lane_cfg_sxb_instance.h"

#include "families/common/packed_quad_tests.h"
#include "support/family_instance.h"
#include "support/print_rule_value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::InstanceMaker;
using lanecfg_test::noVcoText;
using lanecfg_test::numberOfRule;
using lanecfg_test::oneLane;
using lanecfg_test::oneLaneAt;
using lanecfg_test::PackingRequest;
using lanecfg_test::randomRequest;
using lanecfg_test::rateOf;
using lanecfg_test::receive;
using lanecfg_test::tenGigabitEthernet;
using lanecfg_test::textsOf;
using lanecfg_test::transmit;
using lanecfg_test::valueIn;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;

class SxbInstance : public lanecfg_test::InstanceTest<lane_cfg_sxb_instance> {
  protected:
    SxbInstance() : InstanceTest("SXB") {}
};

TEST_F(SxbInstance, RegistersReceiveThenTransmitThenPllRules) {
    const auto instance = made(PackingRequest());
    EXPECT_EQ(numberOfRule(*instance, "RX_PCS_CFG0.RX_DATA_WIDTH"), 0);
    EXPECT_EQ(numberOfRule(*instance, "TX_PCS_CFG0.TX_DATA_WIDTH"), 813);
    EXPECT_EQ(numberOfRule(*instance, "INT_LCPLL_PLLCLKOUT_VECTOR"), 813 + 198);
}

TEST_F(SxbInstance, IsWhatTheManagerMakes) {
    const InstanceMaker<lane_cfg_instance> manager("SXB");
    const auto instance = manager.made(oneLane());
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->familyName, "SXB");
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV"), 66U);
}

TEST_F(SxbInstance, GivesTheRulesWhatThePackingFound) {
    const auto instance = made(oneLane());
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
    const auto instance = made(oneLane());
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
    const auto instance = made(oneLaneAt({10.3125, 12.5}));
    EXPECT_THAT(instance->packedChannels, IsEmpty());
    ASSERT_THAT(instance->blockVarMap[0], SizeIs(2));
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV", 0), 66U);
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV", 1), 80U);
    EXPECT_TRUE(valueIn<bool>(*instance, 0, "MULTI_RATE", 0));
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "MAX_RATE", 1), 1U);
}

TEST_F(SxbInstance, CountsTheRatesOfItsLanes) {
    PackingRequest request = oneLaneAt({10.3125, 10.3125});
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
    const auto instance = made(oneLaneAt({5.15625, 10.3125}));
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

/// Lanes used or not at random, each with rates, PLLs and sources of its own.
class SxbInstanceOfRandomLanes : public SxbInstance,
                                 public testing::WithParamInterface<unsigned int> {
  protected:
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
    const auto instance = made(randomRequest(random, {2.5, 5.0, 10.3125, 12.5, 16.0}));
    for (const auto& passes : instance->blockVarMap) {
        for (const variableMap& pass : passes) {
            expectPllOf(pass, "TX");
            expectPllOf(pass, "RX");
        }
    }
}

TEST_P(SxbInstanceOfRandomLanes, AnswersTheSameEachTime) {
    const PackingRequest request = randomRequest(random, {2.5, 5.0, 10.3125, 12.5, 16.0});
    const auto attributes = made(request)->getAttributes();
    EXPECT_EQ(made(request)->getAttributes(), attributes);
    EXPECT_EQ(made(request)->getOutClkFrequencies(), made(request)->getOutClkFrequencies());
}

INSTANTIATE_TEST_SUITE_P(Seeds, SxbInstanceOfRandomLanes, testing::Range(0U, 12U));

}  // namespace
}  // namespace sable_lanecfg

namespace lanecfg_test {

INSTANTIATE_TYPED_TEST_SUITE_P(Sxb, PackedQuad, sable_lanecfg::SxbInstance);

}  // namespace lanecfg_test
