#include "rate_table_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace {

using lanecfg_test::critical;
using lanecfg_test::FourChannels;
using lanecfg_test::FreshLog;
using lanecfg_test::masksOf;
using lanecfg_test::namesOf;
using lanecfg_test::RateTableEngine;
using lanecfg_test::textOfFault;
using sable_lanecfg::ruleValue;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A block without followers; a test makes channels follow.
struct RateTableAdjustment : public ::testing::Test {
    void follow(int follower, int master) {
        channels[follower].txMaster = channels[follower].rxMaster = master;
    }

    std::vector<std::string> adjust() {
        const FreshLog log;
        engine.adjustRateTable_New(channels);
        return log.lines();
    }

    RateTableEngine engine;
    FourChannels channels;
};

TEST_F(RateTableAdjustment, WidensTheMaskOfThePipeRegisterInEachDirection) {
    channels[2].txAttributes = {critical("PIPE_CTRL_CFG7", "channel", 1, 2, 0x8),
                                critical("PIPE_CTRL_CFG6", "channel", 2, 2, 0x8)};
    channels[3].rxAttributes = {critical("PIPE_CTRL_CFG7", "channel", 1, 3, 0)};
    EXPECT_THAT(adjust(), IsEmpty());
    EXPECT_THAT(masksOf(channels[2].txAttributes), ElementsAre(0x700fU, 0x8U));
    EXPECT_THAT(masksOf(channels[3].rxAttributes), ElementsAre(0x7000U));
}

TEST_F(RateTableAdjustment, WidensTheOnlyRegisterOfASingleRate) {
    engine.reg("A", "channel").reg("PIPE_CTRL_CFG7", "channel").lane(0, "a", "a");
    engine.pass(0, 0, 0, {{"A", 1U}, {"PIPE_CTRL_CFG7", 0U}});
    engine.parseHeaderInfo_New(channels);
    engine.parseRateTableData_New(channels);
    adjust();
    EXPECT_THAT(namesOf(channels[0].txAttributes), ElementsAre("PIPE_CTRL_CFG7"));
    EXPECT_THAT(masksOf(channels[0].txAttributes), ElementsAre(0x7007U));
}

TEST_F(RateTableAdjustment, TakesOverTheClockRegistersOfAFollowerInTheOtherDual) {
    follow(2, 0);
    channels[0].txAttributes = {critical("OWN", "channel", 1, 0)};
    channels[2].txAttributes = {critical("CLOCK", "hs_clk_0", 512, 2, 6),
                                critical("LANE", "channel", 3, 2)};
    channels[2].rxAttributes = {critical("RX_CLOCK", "hs_clk_ips", 768, 2, 1)};
    EXPECT_THAT(
        adjust(),
        ElementsAre("CLOCK added to Channel 0 TX", "RX_CLOCK added to Channel 0 RX",
                    "Channel 0 A_CFG1 adjusted", "Channel 0 A_CFG1 adjusted",
                    "Channel 0 MST_RESET_CFG adjusted", "Channel 0 CTRL_RSV_CFG0 adjusted"));
    EXPECT_THAT(namesOf(channels[0].txAttributes), ElementsAre("OWN", "CLOCK"));
    EXPECT_EQ(channels[0].txAttributes[1].channel, 2);
    EXPECT_EQ(channels[0].txAttributes[1].address, 512);
    EXPECT_EQ(channels[0].txAttributes[1].mask.to_ulong(), 6U);
    EXPECT_THAT(namesOf(channels[0].rxAttributes), ElementsAre("RX_CLOCK"));
    EXPECT_THAT(namesOf(channels[2].txAttributes), ElementsAre("CLOCK", "LANE"));
}

TEST_F(RateTableAdjustment, TakesNothingOverFromAFollowerInTheSameDual) {
    follow(1, 0);
    engine.duplexPasses(0, "A_CFG1", {5U});
    channels[0].txAttributes = {critical("A_CFG1", "hs_clk_0", 1, 0, 4)};
    channels[1].txAttributes = {critical("CLOCK", "hs_clk_0", 0, 1),
                                critical("A_CFG4", "hs_clk_0", 1, 1)};
    EXPECT_THAT(adjust(), ElementsAre("Channel 0 MST_RESET_CFG adjusted",
                                      "Channel 0 CTRL_RSV_CFG0 adjusted"));
    EXPECT_THAT(namesOf(channels[0].txAttributes), ElementsAre("A_CFG1"));
    EXPECT_THAT(masksOf(channels[0].txAttributes), ElementsAre(4U));
    EXPECT_THAT(engine.valuesOf(0, "A_CFG1"), ElementsAre(ruleValue(5U)));
}

TEST_F(RateTableAdjustment, TakesARegisterOfTwoFollowersFromTheLowerOne) {
    follow(2, 1);
    follow(3, 1);
    channels[2].txAttributes = {critical("CLOCK", "hs_clk_0", 512, 2)};
    channels[3].txAttributes = {critical("CLOCK", "hs_clk_0", 512, 3),
                                critical("OTHER", "hs_clk_0", 513, 3)};
    adjust();
    ASSERT_THAT(namesOf(channels[1].txAttributes), ElementsAre("CLOCK", "OTHER"));
    EXPECT_EQ(channels[1].txAttributes[0].channel, 2);
    EXPECT_EQ(channels[1].txAttributes[1].channel, 3);
}

TEST_F(RateTableAdjustment, TakesARegisterOverAlsoWhenTheMasterHasItsOwn) {
    follow(2, 0);
    channels[0].txAttributes = {critical("CLOCK", "hs_clk_0", 0, 0)};
    channels[2].txAttributes = {critical("CLOCK", "hs_clk_0", 512, 2)};
    adjust();
    ASSERT_THAT(namesOf(channels[0].txAttributes), ElementsAre("CLOCK", "CLOCK"));
    EXPECT_EQ(channels[0].txAttributes[1].channel, 2);
}

TEST_F(RateTableAdjustment, TakesOverInTheDirectionThatIsFollowed) {
    channels[2].rxMaster = 0;
    channels[2].txAttributes = {critical("TX_CLOCK", "hs_clk_0", 512, 2)};
    channels[2].rxAttributes = {critical("RX_CLOCK", "hs_clk_0", 513, 2)};
    EXPECT_THAT(adjust(),
                ElementsAre("RX_CLOCK added to Channel 0 RX", "Channel 0 A_CFG1 adjusted"));
    EXPECT_THAT(channels[0].txAttributes, IsEmpty());
    EXPECT_THAT(namesOf(channels[0].rxAttributes), ElementsAre("RX_CLOCK"));
}

TEST_F(RateTableAdjustment, TakesOverTheAnalogueRegistersByNameAfterTheClockRegisters) {
    follow(3, 0);
    channels[3].txAttributes = {
        critical("A_CFG4", "ctrl_0", 4, 3), critical("A_CFG40", "ctrl_0", 5, 3),
        critical("A_CFG5", "ctrl_0", 6, 3), critical("A_CFG6", "ctrl_0", 7, 3),
        critical("CLOCK", "hs_clk_0", 512, 3)};
    adjust();
    EXPECT_THAT(namesOf(channels[0].txAttributes),
                ElementsAre("CLOCK", "A_CFG4", "A_CFG40", "A_CFG5"));
}

TEST_F(RateTableAdjustment, TakesAnAnalogueRegisterOfAClockBlockInBothPasses) {
    follow(2, 0);
    channels[2].txAttributes = {critical("A_CFG4", "hs_clk_0", 512, 2)};
    adjust();
    EXPECT_THAT(namesOf(channels[0].txAttributes), ElementsAre("A_CFG4", "A_CFG4"));
}

TEST_F(RateTableAdjustment, DoublesTheLowHalfOfTheFeedbackDividers) {
    follow(2, 0);
    // The high halves go; 0x0012 * 0x10001 is 0x00120012, 0xffff gives all ones.
    engine.duplexPasses(0, "A_CFG1", {0xabcd0012U, std::string("65535"), 0U});
    engine.duplexPasses(2, "A_CFG1", {0x34U});
    channels[0].txAttributes = {critical("A_CFG1", "ctrl_0", 1, 0, 0x7fff0081)};
    channels[0].rxAttributes = {critical("A_CFG1", "ctrl_0", 1, 0, 0x00050006)};
    channels[2].txAttributes = {critical("A_CFG1", "ctrl_0", 1, 2, 0x9)};
    adjust();
    EXPECT_THAT(engine.valuesOf(0, "A_CFG1"),
                ElementsAre(ruleValue(std::string("1179666")), ruleValue(std::string("4294967295")),
                            ruleValue(std::string("0"))));
    EXPECT_THAT(masksOf(channels[0].txAttributes), ElementsAre(0x00810081U));
    EXPECT_THAT(masksOf(channels[0].rxAttributes), ElementsAre(0x00060006U));
    EXPECT_THAT(engine.valuesOf(2, "A_CFG1"), ElementsAre(ruleValue(0x34U)));
    EXPECT_THAT(masksOf(channels[2].txAttributes), ElementsAre(0x9U));
}

TEST_F(RateTableAdjustment, DoublesTheMaskOfTheFollowedDirectionOnly) {
    channels[2].rxMaster = 0;
    engine.duplexPasses(0, "A_CFG1", {1U});
    channels[0].txAttributes = {critical("A_CFG1", "ctrl_0", 1, 0, 0x81)};
    channels[0].rxAttributes = {critical("A_CFG1", "ctrl_0", 1, 0, 0x6)};
    EXPECT_THAT(adjust(), ElementsAre("Channel 0 A_CFG1 adjusted"));
    EXPECT_THAT(masksOf(channels[0].txAttributes), ElementsAre(0x81U));
    EXPECT_THAT(masksOf(channels[0].rxAttributes), ElementsAre(0x00060006U));
    EXPECT_THAT(engine.valuesOf(0, "A_CFG1"), ElementsAre(ruleValue(std::string("65537"))));
}

TEST_F(RateTableAdjustment, LogsTheFeedbackDividersForEachFollowerAndDirection) {
    follow(2, 0);
    channels[3].txMaster = 0;
    const auto lines = adjust();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "Channel 0 A_CFG1 adjusted"), 3);
}

TEST_F(RateTableAdjustment, RefusesFeedbackDividersThatAreNoNumber) {
    follow(2, 0);
    engine.duplexPasses(0, "A_CFG1", {std::string("many")});
    EXPECT_EQ(textOfFault<std::invalid_argument>([&] { adjust(); }), "stoul");
}

struct BitCopy {
    const char* name;
    const char* registerName;
    int master;
    int follower;
    std::uint32_t before;
    std::uint32_t after;
};

class SharedRegister : public RateTableAdjustment, public ::testing::WithParamInterface<BitCopy> {};

TEST_P(SharedRegister, GivesTheBitsOfTheMasterToTheFollower) {
    const BitCopy& example = GetParam();
    const auto master = static_cast<std::size_t>(example.master);
    channels[example.follower].txMaster = example.master;
    engine.duplexPasses(master, example.registerName, {example.before, std::string("0")});
    channels[example.master].txAttributes = {
        critical(example.registerName, "ctrl_0", 1, example.master, example.before),
        critical("OTHER", "ctrl_0", 2, example.master, example.before)};
    channels[example.master].rxAttributes = {
        critical(example.registerName, "ctrl_0", 1, example.master, example.before)};
    EXPECT_THAT(adjust(), Contains("Channel " + std::to_string(example.master) + " " +
                                   example.registerName + " adjusted"));
    EXPECT_THAT(engine.valuesOf(master, example.registerName),
                ElementsAre(ruleValue(example.after), ruleValue(0U)));
    EXPECT_THAT(masksOf(channels[example.master].txAttributes),
                ElementsAre(example.after, example.before));
    EXPECT_THAT(masksOf(channels[example.master].rxAttributes), ElementsAre(example.after));
}

INSTANTIATE_TEST_SUITE_P(
    Examples, SharedRegister,
    ::testing::Values(
        // Channel 0 has bits 0, 4, 8 to 12 and 28; channel 1 has 1, 5, 13 to 17 and 29.
        BitCopy{"ResetBitsSet", "MST_RESET_CFG", 0, 1, 0x10001511, 0x3002B533},
        BitCopy{"ResetBitsCleared", "MST_RESET_CFG", 0, 1, 0x2003E022, 0},
        // Channel 3 has bits 3, 7, 23 to 27 and 31; bits of channels 0 and 1 stay.
        BitCopy{"ResetBitsOfTheOtherDual", "MST_RESET_CFG", 2, 3, 0x40740044 | 0x10001511,
                0xCEF400CC | 0x10001511},
        // Only the highest four bits of the reserved register are by channel.
        BitCopy{"ReservedBitSet", "CTRL_RSV_CFG0", 0, 2, 0x1fffffff, 0x5fffffff},
        BitCopy{"ReservedBitCleared", "CTRL_RSV_CFG0", 1, 3, 0x80000001, 0x00000001}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(RateTableAdjustment, SharesRegistersForFollowersOfTheTransmitSideOnly) {
    channels[1].rxMaster = 0;
    engine.duplexPasses(0, "MST_RESET_CFG", {1U});
    EXPECT_THAT(adjust(), IsEmpty());
    EXPECT_THAT(engine.valuesOf(0, "MST_RESET_CFG"), ElementsAre(ruleValue(1U)));
}

TEST_F(RateTableAdjustment, LogsSharedRegistersForEachFollower) {
    follow(1, 0);
    follow(3, 2);
    EXPECT_THAT(
        adjust(),
        ElementsAre("Channel 0 MST_RESET_CFG adjusted", "Channel 2 MST_RESET_CFG adjusted",
                    "Channel 0 CTRL_RSV_CFG0 adjusted", "Channel 2 CTRL_RSV_CFG0 adjusted"));
}

TEST_F(RateTableAdjustment, LeavesSnapshotsWithoutTheRegisterAloneAndLogsAllTheSame) {
    follow(2, 0);
    for (const char* name : {"A_CFG1", "MST_RESET_CFG", "CTRL_RSV_CFG0"}) {
        engine.pass(0, 0, 0, {{name, ruleValue()}});
    }
    EXPECT_THAT(adjust(), ElementsAre("Channel 0 A_CFG1 adjusted", "Channel 0 A_CFG1 adjusted",
                                      "Channel 0 MST_RESET_CFG adjusted",
                                      "Channel 0 CTRL_RSV_CFG0 adjusted"));
    for (const auto& snapshot : engine.blockVarMap.at(0)) {
        // The two labels and the blank register.
        EXPECT_EQ(snapshot.size(), 3U);
    }
    EXPECT_EQ(engine.blockVarMap.at(0).at(0).at("A_CFG1").value, ruleValue());
    EXPECT_EQ(engine.blockVarMap.at(0).at(1).at("MST_RESET_CFG").value, ruleValue());
    EXPECT_EQ(engine.blockVarMap.at(0).at(2).at("CTRL_RSV_CFG0").value, ruleValue());
}

TEST_F(RateTableAdjustment, RefusesASharedRegisterThatIsNoNumber) {
    follow(1, 0);
    engine.duplexPasses(0, "MST_RESET_CFG", {std::string("x")});
    EXPECT_EQ(textOfFault<std::invalid_argument>([&] { adjust(); }), "stoll");
}

TEST_F(RateTableAdjustment, ChangesNoSnapshotTheSecondTime) {
    follow(1, 0);
    follow(2, 0);
    follow(3, 0);
    engine.pass(
        0, 0, 0,
        {{"A_CFG1", 0xabcd1234U}, {"MST_RESET_CFG", 0x6a5c3781U}, {"CTRL_RSV_CFG0", 0x90000000U}});
    adjust();
    const auto text = [&](const char* name) {
        return engine.getValAsString(engine.blockVarMap.at(0).at(0), name);
    };
    const std::vector<std::string> once = {text("A_CFG1"), text("MST_RESET_CFG"),
                                           text("CTRL_RSV_CFG0")};
    // 0x12341234; all four flags and fields as channel 0 has them (1, 0, 0x17, 0); 0xf0000000.
    EXPECT_THAT(once, ElementsAre("305402420", std::to_string(0x0bdef70fU), "4026531840"));
    adjust();
    EXPECT_THAT(
        (std::vector<std::string>{text("A_CFG1"), text("MST_RESET_CFG"), text("CTRL_RSV_CFG0")}),
        once);
}

}  // namespace
