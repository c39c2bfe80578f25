#include "support/family_instance.h"
#include "support/reference_data.h"
#include "support/temporary_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
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
using lanecfg_test::rateOf;
using lanecfg_test::RateSettings;
using lanecfg_test::receive;
using lanecfg_test::tenGigabitEthernet;
using lanecfg_test::textsOf;
using lanecfg_test::transmit;
using lanecfg_test::valueIn;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::SizeIs;
using namespace std::string_literals;

/// Lane 1 only transmits, lane 2 only receives.
PackingRequest halfUsedLanes() {
    PackingRequest request;
    request.add(transmit, 1, {tenGigabitEthernet()}).add(receive, 2, {tenGigabitEthernet()});
    return request;
}

RateSettings onRpll() {
    RateSettings settings = tenGigabitEthernet();
    settings.pll = "RPLL";
    return settings;
}

class SxcInstance : public lanecfg_test::InstanceTest<lane_cfg_instance> {
  protected:
    SxcInstance() : InstanceTest("SXC") {}
};

TEST_F(SxcInstance, IsWhatTheManagerMakesOfTheFamilyWord) {
    const auto instance = made(oneLane());
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->instanceName, "quad");
    EXPECT_EQ(instance->familyName, "SXC");
    EXPECT_EQ(instance->family, "SXC");
}

TEST_F(SxcInstance, HasNoFrozenRules) {
    const InstanceMaker<lane_cfg_instance_iter_stable> frozen("SXC");
    EXPECT_EQ(frozen.made(oneLane()), nullptr);
}

TEST_F(SxcInstance, RegistersReceiveThenTransmitThenPllRules) {
    const auto instance = made(PackingRequest());
    EXPECT_EQ(numberOfRule(*instance, "RX_PCS_CFG0.RX_DATA_WIDTH"), 0);
    EXPECT_EQ(numberOfRule(*instance, "TX_PCS_CFG0.TX_DATA_WIDTH"), 814);
    EXPECT_EQ(numberOfRule(*instance, "INT_LCPLL_PLLCLKOUT_VECTOR"), 814 + 198);
    EXPECT_EQ(numberOfRule(*instance, "RPLL_REFCLK_IPS"), 814 + 198 + 936 - 1);
}

TEST_F(SxcInstance, GivesTheRulesWhatThePackingFound) {
    const auto instance = made(oneLane());
    EXPECT_THAT(instance->packedChannels, IsEmpty());
    EXPECT_TRUE(valueIn<bool>(*instance, 0, "TX_IN_USE"));
    EXPECT_TRUE(valueIn<bool>(*instance, 0, "RX_IN_USE"));
    EXPECT_THAT(valueIn<std::vector<double>>(*instance, 0, "TX_LCPLL_PLLCLKOUT_FREQ_VECTOR"),
                ElementsAre(10.3125));
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV"), 66U);
    EXPECT_THAT(messages.records(), IsEmpty());
}

TEST_F(SxcInstance, KeepsTheReasonsOfARequestThatDoesNotPack) {
    // The rates need 5.15625 or 10.3125 GHz, and 5.5 or 11.0.
    PackingRequest request;
    request.addBoth(0, {rateOf(10.3125)}).addBoth(1, {rateOf(11.0)});
    EXPECT_EQ(textsOf(made(request)->packedChannels).front(), noVcoText("LCPLL", 0, 0));
}

TEST_F(SxcInstance, TellsTheUserOfAFaultInTheValuesAndGoesOn) {
    PackingRequest request = oneLane();
    request.parametersAt(receive, 0).erase("RX_PLL_TYPE");
    const auto instance = made(request);
    EXPECT_THAT(messages.texts(0x20000000),
                Contains(MatchesRegex("Exception caught RX_PLL_TYPE is missing in RX of lane 0 at "
                                      "rate 0 at [0-9]+ of file ip/rule_engine/gt_rule_engine/src/"
                                      "lane_cfg_sxb_instance\\.")));
    EXPECT_FALSE(valueIn<bool>(*instance, 0, "RX_IN_USE"));
}

TEST_F(SxcInstance, StartsEveryPassWithoutCandidateClocks) {
    const auto instance = made(oneLane());
    EXPECT_THAT(valueIn<std::vector<double>>(*instance, 1, "TX_LCPLL_PLLCLKOUT_FREQ_VECTOR"),
                IsEmpty());
    // So an idle lane keeps the solution of the lane before it.
    EXPECT_EQ(valueIn<unsigned>(*instance, 1, "A_CFG1.A_HS0_LCPLLFBDIV"), 64U);
}

TEST_F(SxcInstance, GivesTheRulesThePositionsInTheQuad) {
    quads.add("RX_QUAD_CH", "RXQUAD_0", {"a.0", "a.1", "a.2", "b.0"}, {"1", "0", "0", "1"});
    PackingRequest request;
    for (int lane = 0; lane < 4; ++lane) {
        request.addBoth(lane, {tenGigabitEthernet()});
    }
    const auto instance = made(request);
    const std::vector<std::string> positions{"bottom", "middle", "top", "single"};
    const std::vector<std::string> alignments{"IM", "above", "above", "single"};
    for (std::size_t lane = 0; lane < 4; ++lane) {
        EXPECT_EQ(valueIn<std::string>(*instance, lane, "RX_PIPE_POSITION"), positions[lane]);
        EXPECT_EQ(valueIn<std::string>(*instance, lane, "RX_SYNCDONE_POSITION"), alignments[lane]);
    }
    // Of three channels the second is the first one of the upper half.
    EXPECT_TRUE(valueIn<bool>(*instance, 1, "RX_MAINTAIN_MASTER"));
    EXPECT_EQ(valueIn<std::string>(*instance, 0, "TX_PIPE_POSITION"), "middle");
}

TEST_F(SxcInstance, WithoutQuadsLeavesThePositionsAtTheirDefaults) {
    const auto instance = made(oneLane());
    EXPECT_EQ(valueIn<std::string>(*instance, 0, "TX_PIPE_POSITION"), "single");
    EXPECT_EQ(valueIn<std::string>(*instance, 0, "RX_CH3_SYNCDONE_POSITION"), "single");
}

TEST_F(SxcInstance, CountsTheRatesOfItsLanes) {
    const auto instance = made(oneLaneAt({10.3125, 12.5}));
    ASSERT_THAT(instance->blockVarMap[0], SizeIs(2));
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "INT_LCPLL_FBDIV", 1), 80U);
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, "MAX_RATE"), 1U);
    EXPECT_TRUE(valueIn<bool>(*instance, 0, "MULTI_RATE"));
    EXPECT_THAT(instance->blockVarMap[1], SizeIs(1));
}

TEST_F(SxcInstance, ReportsTheFastestOutputClocks) {
    const auto clocks = made(oneLaneAt({5.15625, 10.3125}))->getOutClkFrequencies();
    // A coded word of 80 bits at 10.3125 Gb/s comes at 128.90625 MHz.
    EXPECT_EQ(clocks.at("CH0_TXOUTCLK"), "128.906");
    EXPECT_EQ(clocks.at("CH0_RXOUTCLK"), "128.906");
}

TEST_F(SxcInstance, TakesTheDualsPllFromTheLaneThatUsesIt) {
    PackingRequest request;
    request.addBoth(1, {tenGigabitEthernet("R2")}).addBoth(2, {tenGigabitEthernet("R3")});
    const std::map<std::string, std::string> answer = made(request)->getAttributes();
    // R0 to R5 are codes 1 to 6.
    EXPECT_EQ(answer.at("HS0_LCPLL_IPS_REFCLK_SEL"), "3");
    EXPECT_EQ(answer.at("HS1_LCPLL_IPS_REFCLK_SEL"), "4");
    EXPECT_EQ(answer.at("A_CFG1"), std::to_string(64U + (78U << 8) + (64U << 16) + (78U << 24)));
}

TEST_F(SxcInstance, ResetsTheOscillatorOfEachLaneByItself) {
    // The interpolator of lane 0 is in the path in place of a buffer; lane 1 has its buffer and
    // passes the interpolator by.
    RateSettings unbuffered = tenGigabitEthernet();
    unbuffered.bufferMode = 0;
    PackingRequest request;
    request.addBoth(0, {unbuffered}).addBoth(1, {tenGigabitEthernet()});
    const auto word = std::stoul(made(request)->getAttributes().at("MST_RESET_CFG"));
    EXPECT_EQ((word >> 8) & 1U, 1U);
    EXPECT_EQ((word >> 13) & 1U, 0U);
}

TEST_F(SxcInstance, WaitsForAndResetsTheRpllOfLanesOnIt) {
    PackingRequest request;
    for (int lane = 0; lane < 4; ++lane) {
        request.addBoth(lane, {onRpll()});
    }
    const std::map<std::string, std::string> answer = made(request)->getAttributes();
    const auto word = [&answer](const std::string& name) { return std::stoul(answer.at(name)); };
    for (const std::string channel : {"CH0", "CH1", "CH2", "CH3"}) {
        EXPECT_EQ(word(channel + "_RESET_CFG") >> 25, 0b11U) << channel;
    }
    // The transmitters' LCPLL at bit 0 and RPLL at bit 4, the receivers' LCPLL at bit 28.
    EXPECT_EQ(word("MST_RESET_CFG") & 0xffU, 0xf0U);
    EXPECT_EQ(word("MST_RESET_CFG") >> 28, 0U);
    // The receivers' RPLL.
    EXPECT_EQ(word("CTRL_RSV_CFG0") >> 28, 0xfU);
}

TEST_F(SxcInstance, TellsThePllOfEachDirection) {
    PackingRequest request = oneLane(onRpll());
    request.parametersAt(receive, 0)["RX_PLL_TYPE"] = "LCPLL"s;
    const auto instance = made(request);
    EXPECT_THAT(instance->packedChannels, IsEmpty());
    const auto field = [&](const std::string& name) {
        return valueIn<unsigned>(*instance, 0, name);
    };
    EXPECT_EQ(field("RESET_CFG.TX_PLLLOCK_SEL"), 1U);
    EXPECT_EQ(field("RESET_CFG.RX_PLLLOCK_SEL"), 0U);
    EXPECT_EQ(field("MST_RESET_CFG.CH0_LCPLL_RESET_EN"), 0U);
    EXPECT_EQ(field("MST_RESET_CFG.CH0_RPLL_RESET_EN"), 1U);
    EXPECT_EQ(field("MST_RESET_CFG.CH0_RX_LCPLL_RESET_EN"), 1U);
    EXPECT_EQ(field("CTRL_RSV_CFG0.CH0_RX_RPLL_RESET_EN"), 0U);
}

TEST_F(SxcInstance, KeepsDirectionsOutOfUsePoweredAsSxbDoesNot) {
    const InstanceMaker<lane_cfg_instance> sxbQuads("SXB");
    const auto ofSxb = sxbQuads.made(halfUsedLanes());
    const auto ofSxc = made(halfUsedLanes());
    const auto expectField = [&](std::size_t lane, const std::string& name, unsigned sxb,
                                 unsigned sxc) {
        EXPECT_EQ(valueIn<unsigned>(*ofSxb, lane, name), sxb) << name;
        EXPECT_EQ(valueIn<unsigned>(*ofSxc, lane, name), sxc) << name;
    };
    expectField(1, "FABRIC_INTF_CFG1.A_RXPD", 3, 0);
    expectField(2, "FABRIC_INTF_CFG3.A_TXPD", 3, 0);
    // The receiver that nobody uses is on the LCPLL by default, which its transmitter runs.
    expectField(1, "MST_RESET_CFG.CH1_RX_LCPLL_RESET_EN", 0, 1);
    EXPECT_EQ(std::stoul(ofSxc->getAttributes().at("MST_RESET_CFG")) >> 29 & 1U, 1U);
}

TEST_F(SxcInstance, WaitsForThePllOfReceiversInUse) {
    const std::map<std::string, std::string> answer = made(halfUsedLanes())->getAttributes();
    EXPECT_EQ(std::stoul(answer.at("CH1_RESET_CFG")) >> 16 & 1U, 0U);
    EXPECT_EQ(std::stoul(answer.at("CH2_RESET_CFG")) >> 16 & 1U, 1U);
}

TEST_F(SxcInstance, KeepsTheLowBitsOfALatencyThatItsFieldCannotHold) {
    RateSettings wide;
    wide.coding = "8B10B";
    wide.userDataWidth = 64;
    wide.intDataWidth = 80;
    PackingRequest request = oneLane(wide);
    request.parametersAt(receive, 0)["RX_CC_NUM_SEQ"] = 1U;
    request.parametersAt(receive, 0)["RX_CC_LEN_SEQ"] = 4U;
    const auto instance = made(request);
    const std::string field = "RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_";
    // Words of 8 bytes: one of drift, five less 2 bytes, and 1.
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, field + "MIN_LAT"), 8U + 38U + 1U);
    EXPECT_EQ(valueIn<unsigned>(*instance, 0, field + "MAX_LAT"), 47U + 80U + 4U);
    // 131 less 128 at bit 1; nothing of it gets into the next field, at bit 8.
    const auto word = std::stoul(instance->getAttributes().at("CH0_RX_ELASTIC_BUF_CFG0"));
    EXPECT_EQ(word >> 1 & 0x7fU, 3U);
    EXPECT_EQ(word >> 8 & 0x1fU, valueIn<unsigned>(*instance, 0, field + "REPEAT_WAIT"));
}

TEST_F(SxcInstance, AnswersTheSameOnEverySilicon) {
    const std::map<std::string, std::string> answer = made(oneLane())->getAttributes();
    for (const char* const revision : {"es1", "ES1", "es2"}) {
        database.m_deviceData["siliconRev"] = {revision};
        EXPECT_EQ(made(oneLane())->getAttributes(), answer) << revision;
    }
}

TEST_F(SxcInstance, LeavesAnInstanceOfSxbAlone) {
    const InstanceMaker<lane_cfg_instance> sxbQuads("SXB");
    const auto attributesOfSxb = [&sxbQuads] { return sxbQuads.made(oneLane())->getAttributes(); };
    const auto alone = attributesOfSxb();
    const auto instance = made(oneLane());
    EXPECT_EQ(attributesOfSxb(), alone);
    EXPECT_NE(instance->getAttributes(), alone);
}

class SxcMemoryImage : public SxcInstance {
  protected:
    static std::string fileOf(std::map<std::string, std::string> sections) {
        std::string text;
        sections.erase("@00016000");
        for (const auto& [key, section] : sections) {
            text += key + "\n" + section;
        }
        return text;
    }

    static std::string firmware() {
        return lanecfg_test::readFile(lanecfg_test::dataFolder() / "firmware" / "sxc.mem");
    }
};

TEST_F(SxcMemoryImage, HasTheSectionsOfTheFamilyAndTheTable) {
    std::vector<std::string> keys;
    for (const auto& [key, text] : made(oneLane())->getMemContent()) {
        keys.push_back(key);
    }
    EXPECT_THAT(keys, ElementsAre("@00008000", "@00008050", "@00012250", "@00012254", "@00012300",
                                  "@00012448", "@00016000"));
}

TEST_F(SxcMemoryImage, HoldsTheFirmwareOfTheFamily) {
    EXPECT_TRUE(fileOf(made(oneLane())->getMemContent()) == firmware());
}

TEST_F(SxcMemoryImage, IsTheSameOnEverySilicon) {
    for (const char* const revision : {"es1", "ES1", "ES2", ""}) {
        database.m_deviceData["siliconRev"] = {revision};
        EXPECT_TRUE(fileOf(made(oneLane())->getMemContent()) == firmware()) << revision;
    }
}

TEST_F(SxcMemoryImage, HoldsTheTableAlsoAfterATableWasMade) {
    const auto instance = made(oneLane());
    const std::string table = instance->generateRateTable(true);
    EXPECT_EQ(instance->getMemContent().at("@00016000"), table);
    EXPECT_EQ(instance->getMemContent().at("@00016000"), table);
}

}  // namespace
}  // namespace sable_lanecfg
