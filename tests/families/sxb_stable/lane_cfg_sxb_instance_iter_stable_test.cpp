#include "families/frozen/lane_cfg_sxb_instance_iter_stable.h"

#include "families/common/packed_quad_tests.h"
#include "support/environment_variable.h"
#include "support/family_instance.h"
#include "support/reference_data.h"
#include "support/temporary_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

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
using testing::Contains;
using testing::IsEmpty;
using testing::Key;
using testing::MatchesRegex;
using testing::Not;
using testing::SizeIs;

class SxbStableInstance : public lanecfg_test::InstanceTest<lane_cfg_sxb_instance_iter_stable> {
  protected:
    SxbStableInstance() : InstanceTest("SXB", "SXB-stable") {}
};

TEST_F(SxbStableInstance, IsWhatTheManagerMakes) {
    const InstanceMaker<lane_cfg_instance_iter_stable> manager("SXB", "SXB-stable");
    const auto instance = manager.made(oneLane());
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->familyName, "SXB");
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV"), 66U);
}

TEST_F(SxbStableInstance, RegistersReceiveThenTransmitThenPllRules) {
    const auto instance = made(PackingRequest());
    EXPECT_EQ(numberOfRule(*instance, "RX_PCS_CFG0.RX_DATA_WIDTH"), 0);
    EXPECT_EQ(numberOfRule(*instance, "TX_PCS_CFG0.TX_DATA_WIDTH"), 827);
    EXPECT_EQ(numberOfRule(*instance, "INT_LCPLL_PLLCLKOUT_VECTOR"), 827 + 198);
    EXPECT_EQ(numberOfRule(*instance, "MEMCELLX0F13"), 827 + 198 + 804 - 1);
}

TEST_F(SxbStableInstance, GivesTheRulesTheReceiversPllAlone) {
    const auto instance = made(oneLane(tenGigabitEthernet("R3")));
    EXPECT_THAT(instance->packedChannels, IsEmpty());
    EXPECT_EQ(valueIn<double>(*instance, 0, "RX_PLL_VCO"), 10.3125);
    EXPECT_EQ(valueIn<double>(*instance, 0, "RX_PLL_REFCLK_FREQUENCY"), 156.25);
    EXPECT_FALSE(valueIn<bool>(*instance, 0, "RX_PLL_POWERDOWN"));
    EXPECT_EQ(valueIn<std::string>(*instance, 0, "RX_PLL_REFCLK_SOURCE"), "R3");
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV"), 66U);
    EXPECT_EQ(valueIn<double>(*instance, 0, "INT_LCPLL_PLLCLKOUT"), 10.3125);
    // Nothing tells the rules of the sides of the current rules.
    EXPECT_TRUE(valueIn<bool>(*instance, 0, "TX_LCPLL_POWERDOWN"));
    EXPECT_FALSE(valueIn<bool>(*instance, 0, "MULTI_RATE"));
    EXPECT_THAT(messages.records(), IsEmpty());
}

TEST_F(SxbStableInstance, PowersTheRpllDownForAReceiverOnTheLcpll) {
    const auto instance = made(oneLane());
    EXPECT_TRUE(valueIn<bool>(*instance, 0, "INT_RPLL_POWERDOWN"));
    EXPECT_EQ(valueIn<double>(*instance, 0, "INT_RPLL_PLLCLKOUT"), 0.0);
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "A_CFG3.A_HS0_RPLLPD"), 1U);
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "A_CFG2.A_HS0_LCPLLPD"), 0U);
}

TEST_F(SxbStableInstance, PowersThePllDownOfARequestThatDoesNotPack) {
    // The rates need 5.15625 or 10.3125 GHz, and 5.5 or 11.0.
    PackingRequest request;
    request.addBoth(0, {rateOf(10.3125)}).addBoth(1, {rateOf(11.0)});
    const auto instance = made(request);
    EXPECT_EQ(textsOf(instance->packedChannels).front(), noVcoText("LCPLL", 0, 0));
    EXPECT_TRUE(valueIn<bool>(*instance, 0, "RX_PLL_POWERDOWN"));
    EXPECT_EQ(valueIn<double>(*instance, 0, "RX_PLL_VCO"), 0.0);
    // A clock of 0 has no dividers, so those of an idle PLL stay.
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "A_CFG1.A_HS0_LCPLLFBDIV"), 78U);
}

TEST_F(SxbStableInstance, TakesEveryDirectionForUsedUnlessTheRequestSaysOtherwise) {
    PackingRequest request = oneLane();
    request.parametersAt(receive, 0)["RX_IN_USE"] = false;
    const auto instance = made(request);
    EXPECT_TRUE(valueIn<bool>(*instance, 0, "TX_IN_USE"));
    EXPECT_FALSE(valueIn<bool>(*instance, 0, "RX_IN_USE"));
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "FABRIC_INTF_CFG1.A_RXPD"), 3U);
    // A lane without any rate too.
    EXPECT_TRUE(valueIn<bool>(*instance, 3, "TX_IN_USE"));
    EXPECT_TRUE(valueIn<bool>(*instance, 3, "RX_IN_USE"));
    EXPECT_EQ(valueIn<unsigned>(*instance, 3, "FABRIC_INTF_CFG3.A_TXPD"), 0U);
}

TEST_F(SxbStableInstance, DividesTheOutOfBandClockFromWhatTheRequestSaysOfTheReference) {
    PackingRequest request = oneLane();
    request.parametersAt(transmit, 0)["OOB_ENABLE"] = true;
    const auto untold = made(request);
    EXPECT_EQ(valueIn<unsigned>(*untold, 0, "PIPE_CTRL_CFG1.OOB_PD"), 0U);
    // The packing's 156.25 MHz are not told as those of the LCPLL: 0 MHz have no divider.
    EXPECT_EQ(valueIn<unsigned>(*untold, 0, "PIPE_CTRL_CFG6.RXOOB_CLKDIV_VAL"), 0U);
    request.parametersAt(receive, 0)["RX_LCPLL_REFCLK_FREQUENCY"] = 156.25;
    request.parametersAt(receive, 0)["RX_RPLL_REFCLK_FREQUENCY"] = 400.0;
    // 156.25 MHz over 25 MHz, less 1.
    EXPECT_EQ(valueIn<unsigned>(*made(request), 0, "PIPE_CTRL_CFG6.RXOOB_CLKDIV_VAL"), 5U);
}

TEST_F(SxbStableInstance, TakesTheRatesOfAPcieLinkFromTheRequest) {
    PackingRequest request = oneLane();
    auto& parameters = request.parametersAt(transmit, 0);
    parameters["PCIE_ENABLE"] = true;
    parameters["TXPROGDIV_FREQ_VAL"] = 1000.0;
    const auto untold = made(request);
    EXPECT_EQ(valueIn<unsigned>(*untold, 0, "PIPE_CTRL_CFG0.PCIE_MODE"), 1U);
    // 1000 MHz over 125 MHz, less 1, from both rules of the pipe clock.
    EXPECT_EQ(valueIn<unsigned>(*untold, 0, "PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK"), 7U);
    EXPECT_EQ(valueIn<unsigned>(*untold, 0, "INT_BUFGTDIV_G1_PIPECLK"), 7U);
    // Constant here.
    EXPECT_EQ(valueIn<unsigned>(*untold, 0, "PIPE_CTRL_CFG7.CDR_CTRL_ADAPT_HOLD_EN"), 0U);
    EXPECT_EQ(valueIn<unsigned>(*untold, 0, "PIPE_CTRL_CFG1.UCORE_PLL_ILO_CAL_EN"), 0U);
    // 1000 over 500 MHz with the default width of 16, over 250 MHz with another.
    EXPECT_EQ(valueIn<unsigned>(*untold, 0, "PIPE_CTRL_CFG5.BUFGTDIV_G3_PIPECLK"), 1U);
    parameters["MAX_RATE"] = 2U;
    parameters["GEN3_INT_DATA_WIDTH"] = 32U;
    const auto told = made(request);
    EXPECT_EQ(valueIn<unsigned>(*told, 0, "PIPE_CTRL_CFG1.UCORE_PLL_ILO_CAL_EN"), 1U);
    EXPECT_EQ(valueIn<unsigned>(*told, 0, "PIPE_CTRL_CFG5.BUFGTDIV_G3_PIPECLK"), 3U);
}

TEST_F(SxbStableInstance, LeavesTheDividersIdleForAClockThatOnlyAFractionMakes) {
    // 10709.225 MHz are 68.53904 times the reference clock.
    const auto instance = made(oneLaneAt({10.709225}));
    EXPECT_THAT(instance->packedChannels, IsEmpty());
    EXPECT_THAT(messages.records(), IsEmpty());
    EXPECT_EQ(valueIn<double>(*instance, 0, "RX_PLL_VCO"), 10.709225);
    EXPECT_FALSE(valueIn<bool>(*instance, 0, "RX_PLL_POWERDOWN"));
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "A_CFG1.A_HS0_LCPLLFBDIV"), 78U);
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_SDMDATA"), 0U);
}

TEST_F(SxbStableInstance, UpdatesAnElfWithItsRateTable) {
    const lanecfg_test::TemporaryDirectory directory;
    std::filesystem::permissions(directory.write("pco-objcopy", ""),
                                 std::filesystem::perms::owner_all);
    directory.write("update_elf.sh", "#!/bin/sh\nexit 0\n");
    const lanecfg_test::EnvironmentVariable searchPath("PATH", directory.path().string());
    const auto instance = made(oneLane());
    EXPECT_TRUE(instance->updateELF("firmware.elf", directory.path().string()));
    EXPECT_EQ(lanecfg_test::readFile(directory.file("rate_table.txt")),
              instance->generateRateTableInBinary());
}

TEST_F(SxbStableInstance, RunsAQuadThatNobodyUses) {
    const auto instance = made(PackingRequest());
    ASSERT_THAT(instance->blockVarMap, SizeIs(4));
    for (std::size_t lane = 0; lane < 4; ++lane) {
        EXPECT_THAT(instance->blockVarMap[lane], SizeIs(1));
        EXPECT_TRUE(valueIn<bool>(*instance, lane, "RX_PLL_POWERDOWN"));
        EXPECT_EQ(valueIn<unsigned>(*instance, lane, "A_CFG1.A_HS0_LCPLLFBDIV"), 78U);
        // The selector of R0, in both duals.
        EXPECT_EQ(valueIn<unsigned>(*instance, lane, "MEMCELLX0F13.HS1_RPLL_IPS_REFCLK_SEL"), 1U);
    }
}

TEST_F(SxbStableInstance, StartsThePassOfAnIdleLaneWithoutAClock) {
    const auto instance = made(oneLane());
    EXPECT_EQ(valueIn<double>(*instance, 1, "RX_PLL_VCO"), 0.0);
    EXPECT_EQ(valueIn<double>(*instance, 1, "INT_LCPLL_PLLCLKOUT"), 0.0);
    // So it has the dividers of the lane before it.
    EXPECT_EQ(valueIn<unsigned>(*instance, 1, "A_CFG1.A_HS0_LCPLLFBDIV"), 64U);
}

TEST_F(SxbStableInstance, StartsThePassWithoutAClockAlsoWhenTheDatabaseHasNoSuchParameter) {
    for (const char* const name :
         {"RX_PLL_VCO", "RX_PLL_REFCLK_FREQUENCY", "RX_PLL_POWERDOWN", "RX_PLL_REFCLK_SOURCE"}) {
        EXPECT_EQ(database.m_paramTypes.erase(name), 1U);
    }
    const auto instance = made(oneLane());
    EXPECT_EQ(valueIn<double>(*instance, 0, "RX_PLL_VCO"), 10.3125);
    EXPECT_EQ(valueIn<double>(*instance, 1, "RX_PLL_VCO"), 0.0);
    EXPECT_TRUE(valueIn<bool>(*instance, 1, "RX_PLL_POWERDOWN"));
    EXPECT_EQ(valueIn<std::string>(*instance, 1, "RX_PLL_REFCLK_SOURCE"), "R0");
}

TEST_F(SxbStableInstance, SolvesEachRateForItself) {
    // 66 and 90 times 156.25 MHz.
    const auto instance = made(oneLaneAt({10.3125, 14.0625}));
    ASSERT_THAT(instance->blockVarMap[0], SizeIs(2));
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV", 0), 66U);
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV", 1), 90U);
}

TEST_F(SxbStableInstance, CountsRatesAndFindsTheirGroupsWhenAsked) {
    PackingRequest request = oneLaneAt({10.3125, 10.3125});
    request.channels.front().group = "G";
    const auto instance = made(request);
    EXPECT_EQ(instance->numberOfRatesForThisChannel(transmit, 0), 2);
    EXPECT_EQ(instance->numberOfRatesForThisChannel(receive, 1), 1);
    EXPECT_THAT(instance->groupsOfRates(), IsEmpty());
    instance->findGrouping();
    EXPECT_EQ(instance->groupsOfRates().at(transmit).at(0).at(1), "G");
    EXPECT_EQ(instance->groupsOfRates().at(receive).at(3).at(0), "G");
}

TEST_F(SxbStableInstance, TellsTheUserOfAFaultInTheValuesAndGoesOn) {
    database.m_paramTypes["RX_PLL_TYPE"].type = "list";
    PackingRequest request = oneLane();
    request.addBoth(1, {tenGigabitEthernet()});
    request.parametersAt(receive, 0).erase("RX_PLL_TYPE");
    // The rules ask for the type too, and nothing has it.
    EXPECT_THROW(made(request), std::string);
    EXPECT_THAT(messages.texts(0x20000000),
                Contains(MatchesRegex("Exception caught RX_PLL_TYPE is missing in RX of lane 0 at "
                                      "rate 0 at [0-9]+ of file ip/rule_engine/gt_rule_engine/src/"
                                      "lane_cfg_sxb_instance\\.")));
}

TEST_F(SxbStableInstance, RefusesADatabaseWithFieldsThatItsRulesDoNotWrite) {
    // That of the current rules has fields that only they write.
    database.m_fields = lanecfg_test::referenceDatabase("SXB").m_fields;
    EXPECT_THROW(made(oneLane()), boost::bad_get);
}

TEST_F(SxbStableInstance, ReportsNoOutputClock) {
    EXPECT_THAT(made(oneLane())->getOutClkFrequencies(), IsEmpty());
}

TEST_F(SxbStableInstance, TakesTheDualsPllFromItsFirstLaneAlsoWhenOnlyTheSecondUsesIt) {
    const std::map<std::string, std::string> answer =
        made(oneLane(tenGigabitEthernet("R2"), 1))->getAttributes();
    // Lane 0, which is idle, stands at R0, has the dividers of before the first pass, and its LCPLL
    // is powered down.
    EXPECT_EQ(answer.at("HS0_LCPLL_IPS_REFCLK_SEL"), "1");
    EXPECT_EQ(answer.at("A_CFG1"), std::to_string(78U + (78U << 8) + (64U << 16) + (78U << 24)));
    EXPECT_EQ(answer.at("A_CFG2"), "1");
}

TEST_F(SxbStableInstance, AnswersNoListOfUnchangedRegistersAndNoOtherReferenceClockWord) {
    const std::map<std::string, std::string> answer = made(oneLane())->getAttributes();
    for (const char* const name : {"STAT_NPI_REG_LIST", "LCPLL_REFCLK_IPS", "RPLL_REFCLK_IPS"}) {
        EXPECT_THAT(answer, Not(Contains(Key(name))));
    }
    for (const char* const name :
         {"MEMCELLX0C12", "MEMCELLX0C13", "MEMCELLX0F12", "MEMCELLX0F13"}) {
        EXPECT_THAT(answer, Contains(Key(name)));
    }
}

TEST_F(SxbStableInstance, HoldsTheFrozenFirmwareOnEverySilicon) {
    const std::string firmware =
        lanecfg_test::readFile(lanecfg_test::dataFolder() / "firmware" / "frozen.mem");
    for (const char* const revision : {"es1", "ES1", "es2", ""}) {
        database.m_deviceData["siliconRev"] = {revision};
        const auto instance = made(oneLane());
        std::map<std::string, std::string> image = instance->getMemContent();
        ASSERT_THAT(image, SizeIs(6));
        EXPECT_EQ(image.rbegin()->first, "@00016000");
        EXPECT_EQ(image.at("@00016000"), instance->generateRateTable(false));
        image.erase("@00016000");
        std::string text;
        for (const auto& [key, section] : image) {
            text.append(key).append("\n").append(section);
        }
        EXPECT_TRUE(text == firmware) << revision;
    }
}

/// Lanes used or not at random, each with rates, PLLs and sources of its own.
class SxbStableInstanceOfRandomLanes : public SxbStableInstance,
                                       public testing::WithParamInterface<unsigned int> {
  protected:
    std::mt19937 random{GetParam()};
};

TEST_P(SxbStableInstanceOfRandomLanes, HavePllsThatAreDownExactlyWithoutAClock) {
    const auto instance = made(randomRequest(random, {2.5, 5.0, 10.3125, 14.0625, 16.0}));
    for (const auto& passes : instance->blockVarMap) {
        for (const variableMap& pass : passes) {
            const auto clock = boost::get<double>(pass.at("RX_PLL_VCO").value);
            EXPECT_EQ(boost::get<bool>(pass.at("RX_PLL_POWERDOWN").value), clock == 0.0);
            const auto type = boost::get<std::string>(pass.at("RX_PLL_TYPE").value);
            const std::string other = type == "LCPLL" ? "RPLL" : "LCPLL";
            EXPECT_EQ(boost::get<double>(pass.at("INT_" + type + "_PLLCLKOUT").value), clock);
            EXPECT_EQ(boost::get<double>(pass.at("INT_" + other + "_PLLCLKOUT").value), 0.0);
            EXPECT_TRUE(boost::get<bool>(pass.at("INT_" + other + "_POWERDOWN").value));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SxbStableInstanceOfRandomLanes, testing::Range(0U, 6U));

}  // namespace
}  // namespace sable_lanecfg

namespace lanecfg_test {

INSTANTIATE_TYPED_TEST_SUITE_P(SxbStable, PackedQuad, sable_lanecfg::SxbStableInstance);

}  // namespace lanecfg_test
