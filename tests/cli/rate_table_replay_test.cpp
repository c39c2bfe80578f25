#include "rate_table_replay.h"

#include "../block/rate_table_engine.h"
#include "replay_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;
using sable_lanecfg::ruleValue;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr auto transmit = TableDirection::transmit;
constexpr auto receive = TableDirection::receive;

struct Replay : public testing::Test {
    /// Gives a channel a pass for each value of a register, with both directions at the same rate.
    Replay& rates(std::size_t channel, const std::string& name,
                  const std::vector<ruleValue>& values) {
        engine.duplexPasses(channel, name, values);
        return *this;
    }

    /// Gives a simplex channel the four passes of two rates in each direction; the values are of
    /// (0, 0), (0, 1), (1, 0) and (1, 1).
    Replay& ratePairs(std::size_t channel, const std::string& name,
                      const std::vector<ruleValue>& values) {
        for (unsigned pass = 0; pass < 4; ++pass) {
            engine.pass(channel, pass / 2, pass % 2, {{name, values.at(pass)}});
        }
        return *this;
    }

    /// Makes a channel write its masked registers to transmit lane by lane.
    void addSingleLane(std::size_t channel) {
        engine.userParams[0][channel] = {{{"TX_DATA_ENCODING", std::string("64B66B_ASYNC")},
                                          {"TX_USER_DATA_WIDTH", 64U},
                                          {"TX_INT_DATA_WIDTH", 32U},
                                          {"TX_BUFFER_MODE", 1U}}};
    }

    std::vector<std::uint32_t> generated() {
        snapshots = takeSnapshots(engine);
        return rateTableWords(engine.generateRateTableInBinary());
    }

    void replay(const std::vector<std::uint32_t>& words) {
        report = replayRateTable(decodeRateTable(words), ControllerRegisters(engine.attributes),
                                 snapshots);
    }

    void replay() { replay(generated()); }

    /// What became of a register at a rate of a table, null when it is not among the findings.
    const ReplayFinding* find(const std::string& name, unsigned channel, unsigned tableChannel,
                              TableDirection direction, unsigned rate) const {
        for (const ReplayFinding& finding : report.findings) {
            if (finding.name == name && finding.channel == channel &&
                finding.tableChannel == tableChannel && finding.direction == direction &&
                finding.rate == rate) {
                return &finding;
            }
        }
        return nullptr;
    }

    std::string classAt(const std::string& name, unsigned channel, unsigned tableChannel,
                        TableDirection direction, unsigned rate) const {
        const ReplayFinding* const found = find(name, channel, tableChannel, direction, rate);
        return found == nullptr ? "not looked at" : wordsOf(found->outcome);
    }

    RateTableEngine engine;
    RateSnapshots snapshots;
    ReplayReport report;
};

constexpr const char* replays = "replays";
constexpr const char* overwritten = "overwritten by the adjustment";
constexpr const char* notInTable = "not in a table of this channel";
constexpr const char* differs = "differs";

// Registers that come to their value

TEST_F(Replay, OfADuplexChannelBringsItsRegistersToEveryRate) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "a");
    rates(0, "A", {5U, 9U, 0xffffffffU}).replay();
    EXPECT_THAT(report.findings, SizeIs(3));
    EXPECT_EQ(classAt("A", 0, 0, transmit, 2), replays);
    EXPECT_EQ(report.tables, 1U);
    EXPECT_EQ(report.rates, 3U);
    EXPECT_EQ(verdict(report), "All rates of all channels replay.");
}

TEST_F(Replay, OfASimplexChannelKeepsTheBitsOfTheOtherDirection) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "b");
    // Bit 0 is of transmit, bit 4 of receive.
    ratePairs(0, "A", {0x00U, 0x10U, 0x01U, 0x11U}).replay();
    EXPECT_THAT(report.findings, SizeIs(4));
    EXPECT_EQ(report.firstDeviation(), nullptr);
}

TEST_F(Replay, LeavesOutRegistersThatNoRateChangesAndNoTableWrites) {
    engine.reg("A", "channel", "0x10").reg("B", "channel", "0x11").lane(0, "a", "a");
    engine.pass(0, 0, 0, {{"A", 1U}, {"B", 7U}}).pass(0, 1, 1, {{"A", 2U}, {"B", 7U}});
    replay();
    EXPECT_EQ(classAt("B", 0, 0, transmit, 0), "not looked at");
}

TEST_F(Replay, WritesTheAlwaysMaskedRegistersOfAFollowerInItsSingleLane) {
    engine.reg("PIPE_CTRL_CFG9", "channel", "0x10").reg("A", "channel", "0x11");
    engine.lane(0, "a", "a").lane(1, "a", "a");
    for (const std::size_t channel : {0U, 1U}) {
        engine.pass(channel, 0, 0, {{"PIPE_CTRL_CFG9", 1U}, {"A", 5U}});
        engine.pass(channel, 1, 1, {{"PIPE_CTRL_CFG9", 2U}, {"A", 6U}});
        addSingleLane(channel);
    }
    replay();
    EXPECT_EQ(classAt("PIPE_CTRL_CFG9", 0, 0, transmit, 1), replays);
    EXPECT_EQ(classAt("PIPE_CTRL_CFG9", 1, 0, transmit, 1), replays);
    EXPECT_EQ(classAt("A", 0, 0, transmit, 1), replays);
    EXPECT_EQ(classAt("A", 1, 0, transmit, 1), notInTable);
}

TEST_F(Replay, MovesTheReceiveSideOfAFollowerWithTheTableOfADuplexMaster) {
    engine.reg("A", "ctrl_0", "0x10").lane(0, "a", "a").lane(1, "b", "a");
    rates(0, "A", {0x00U, 0x10U});
    ratePairs(1, "A", {0x00U, 0x10U, 0x00U, 0x10U}).replay();
    EXPECT_EQ(classAt("A", 1, 0, transmit, 1), replays);
    EXPECT_EQ(find("A", 1, 0, transmit, 1)->to.rx, 1U);
}

TEST_F(Replay, LeavesTheReceiveSideOfAFollowerToTheReceiveTableOfASimplexMaster) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "b").lane(1, "c", "b");
    const std::vector<ruleValue> values = {0x00U, 0x10U, 0x00U, 0x10U};
    ratePairs(0, "A", values).ratePairs(1, "A", values).replay();
    EXPECT_EQ(classAt("A", 1, 0, transmit, 1), "not looked at");
    EXPECT_EQ(classAt("A", 1, 0, receive, 1), notInTable);
}

TEST_F(Replay, LeavesADuplexChannelToItsOwnTableThoughItFollowsToReceive) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "b").lane(1, "b", "b");
    ratePairs(0, "A", {0x00U, 0x10U, 0x01U, 0x11U}).rates(1, "A", {0U, 1U}).replay();
    EXPECT_EQ(classAt("A", 1, 0, receive, 1), "not looked at");
    EXPECT_EQ(classAt("A", 1, 1, transmit, 1), replays);
}

TEST_F(Replay, BeginsOnlyWhereADuplexChannelCanBe) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "a").lane(1, "a", "a");
    // Channel 1 has another value only where its directions are at different rates.
    rates(0, "A", {1U, 2U}).ratePairs(1, "A", {7U, 8U, 8U, 7U}).replay();
    EXPECT_EQ(classAt("A", 1, 0, transmit, 0), replays);
    EXPECT_EQ(classAt("A", 1, 0, transmit, 1), replays);
}

// Bits that the table writes for others

TEST_F(Replay, FindsTheReceiveClockControlOverwrittenByATransmitTable) {
    engine.reg("PIPE_CTRL_CFG7", "channel", "0x10").lane(0, "a", "b");
    ratePairs(0, "PIPE_CTRL_CFG7", {0x0000U, 0x1000U, 0x0001U, 0x1001U}).replay();
    EXPECT_EQ(classAt("PIPE_CTRL_CFG7", 0, 0, transmit, 1), overwritten);
    const ReplayFinding* const found = find("PIPE_CTRL_CFG7", 0, 0, transmit, 1);
    EXPECT_EQ(found->wanted, 0x1001U);
    EXPECT_EQ(found->reached, 0x0001U);
    EXPECT_EQ(found->from.tx, 0U);
    EXPECT_EQ(found->from.rx, 1U);
    EXPECT_EQ(found->to.tx, 1U);
    EXPECT_EQ(found->to.rx, 1U);
    EXPECT_EQ(classAt("PIPE_CTRL_CFG7", 0, 0, receive, 1), replays);
    EXPECT_EQ(report.firstFailure(), nullptr);
}

TEST_F(Replay, FindsTheDividersOfTheSecondDualOverwritten) {
    engine.reg("A_CFG1", "ctrl_0", "0x10").lane(0, "a", "a").lane(2, "a", "a");
    rates(0, "A_CFG1", {0x00100001U, 0x00200002U}).rates(2, "A_CFG1", {0x00100001U, 0x00200002U});
    replay();
    EXPECT_EQ(classAt("A_CFG1", 0, 0, transmit, 1), overwritten);
    // Of the high half, the mask has the two bits of the low half: 0x10 becomes 0x12.
    EXPECT_EQ(find("A_CFG1", 0, 0, transmit, 1)->reached, 0x00120002U);
}

TEST_F(Replay, FindsNoDividersOverwrittenWithoutAFollowerInTheOtherDual) {
    engine.reg("A_CFG1", "ctrl_0", "0x10").lane(0, "a", "a").lane(1, "a", "a");
    rates(0, "A_CFG1", {0x00100001U, 0x00200002U}).rates(1, "A_CFG1", {0x00100001U, 0x00200002U});
    replay();
    EXPECT_EQ(classAt("A_CFG1", 0, 0, transmit, 1), replays);
}

struct ResetExample {
    const char* name;
    const char* registerName;
    std::uint32_t own;       ///< bit of the master that changes
    std::uint32_t follower;  ///< bit that follows it
};

class ResetBits : public Replay, public testing::WithParamInterface<ResetExample> {};

TEST_P(ResetBits, OfAFollowerAreOverwritten) {
    const ResetExample& example = GetParam();
    engine.reg(example.registerName, "ctrl_0", "0x10").lane(0, "a", "a").lane(3, "a", "a");
    rates(0, example.registerName, {0U, example.own});
    rates(3, example.registerName, {0U, example.own | example.follower}).replay();
    EXPECT_EQ(classAt(example.registerName, 0, 0, transmit, 1), overwritten);
    EXPECT_EQ(find(example.registerName, 0, 0, transmit, 1)->reached,
              example.own | example.follower);
    EXPECT_EQ(classAt(example.registerName, 3, 0, transmit, 1), replays);
}

// Channel 0 in front of channel 3: bits 0 and 3, 4 and 7, 8 to 12 and 23 to 27, 28 and 31.
INSTANTIATE_TEST_SUITE_P(
    Each, ResetBits,
    testing::Values(ResetExample{"First", "MST_RESET_CFG", 1U, 1U << 3},
                    ResetExample{"Second", "MST_RESET_CFG", 1U << 4, 1U << 7},
                    ResetExample{"FieldBegin", "MST_RESET_CFG", 1U << 8, 1U << 23},
                    ResetExample{"FieldEnd", "MST_RESET_CFG", 1U << 12, 1U << 27},
                    ResetExample{"Last", "MST_RESET_CFG", 1U << 28, 1U << 31},
                    ResetExample{"Reserved", "CTRL_RSV_CFG0", 1U << 28, 1U << 31}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(Replay, FindsAnAnalogueRegisterOverwrittenByAFollowerInTheOtherDual) {
    engine.reg("A_CFG4", "ctrl_0", "0x10").lane(0, "a", "a").lane(2, "a", "a");
    rates(0, "A_CFG4", {1U, 2U}).rates(2, "A_CFG4", {1U, 5U}).replay();
    // The masks are 3 and 4; the follower's is written last.
    EXPECT_EQ(classAt("A_CFG4", 0, 0, transmit, 1), overwritten);
    EXPECT_EQ(find("A_CFG4", 0, 0, transmit, 1)->reached, 6U);
}

TEST_F(Replay, FindsNoAnalogueRegisterOverwrittenByAFollowerThatKeepsIt) {
    engine.reg("A_CFG5", "ctrl_0", "0x10").lane(0, "a", "a").lane(2, "a", "a");
    rates(0, "A_CFG5", {1U, 2U}).rates(2, "A_CFG5", {7U, 7U}).replay();
    EXPECT_EQ(classAt("A_CFG5", 0, 0, transmit, 1), replays);
    EXPECT_EQ(classAt("A_CFG5", 2, 0, transmit, 1), differs);
    EXPECT_EQ(report.firstFailure(), nullptr);
}

// Registers that no table of the channel has

TEST_F(Replay, FindsARegisterThatChangesInAFollowerOnlyInNoTable) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "a").lane(1, "a", "a");
    rates(0, "A", {1U, 1U}).rates(1, "A", {1U, 2U}).replay();
    EXPECT_EQ(classAt("A", 1, 0, transmit, 1), notInTable);
    EXPECT_EQ(report.firstFailure(), nullptr);
    EXPECT_THAT(verdict(report), HasSubstr("No table is at fault, but not every register replays; "
                                           "the first is A of channel 1 at rate 0"));
}

TEST_F(Replay, FindsTheClockControlsOfAFollowerInNoTableRatherThanOverwritten) {
    engine.reg("PIPE_CTRL_CFG7", "channel", "0x10").lane(0, "a", "a").lane(1, "a", "a");
    rates(0, "PIPE_CTRL_CFG7", {0U, 0U}).rates(1, "PIPE_CTRL_CFG7", {0U, 1U}).replay();
    EXPECT_EQ(classAt("PIPE_CTRL_CFG7", 0, 0, transmit, 1), replays);
    EXPECT_EQ(classAt("PIPE_CTRL_CFG7", 1, 0, transmit, 1), notInTable);
}

TEST_F(Replay, FindsASharedRegisterThatATableOfOthersChangesInNoTable) {
    engine.reg("A", "ctrl_0", "0x10").lane(0, "a", "a").lane(1, "b", "b");
    rates(0, "A", {1U, 2U}).rates(1, "A", {1U}).replay();
    EXPECT_EQ(classAt("A", 0, 0, transmit, 1), replays);
    EXPECT_EQ(classAt("A", 1, 0, transmit, 0), replays);
    EXPECT_EQ(classAt("A", 1, 0, transmit, 1), notInTable);
    EXPECT_EQ(report.firstFailure(), nullptr);
}

TEST_F(Replay, FindsAPortInNoTable) {
    engine.reg("A", "channel", "0x10").reg("P", "CH_PORT").lane(0, "a", "a");
    engine.pass(0, 0, 0, {{"A", 1U}, {"P", 1U}}).pass(0, 1, 1, {{"A", 2U}, {"P", 2U}});
    replay();
    EXPECT_EQ(classAt("A", 0, 0, transmit, 1), replays);
    EXPECT_EQ(classAt("P", 0, 0, transmit, 1), notInTable);
    EXPECT_EQ(report.firstFailure(), nullptr);
}

// Registers that differ

TEST_F(Replay, FindsTheClocksOfASecondFollowerInTheOtherDualDiffering) {
    engine.reg("CLOCK", "hs_clk_0", "0x10");
    engine.lane(0, "a", "a").lane(2, "a", "a").lane(3, "a", "a");
    rates(0, "CLOCK", {1U, 2U}).rates(2, "CLOCK", {3U, 4U}).rates(3, "CLOCK", {5U, 6U}).replay();
    EXPECT_EQ(classAt("CLOCK", 0, 0, transmit, 1), replays);
    EXPECT_EQ(classAt("CLOCK", 2, 0, transmit, 1), replays);
    EXPECT_EQ(classAt("CLOCK", 3, 0, transmit, 1), differs);
    EXPECT_EQ(report.firstFailure(), nullptr);
}

TEST_F(Replay, FailsForARegisterThatDependsOnBothRatesTogether) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "b");
    // Bit 2 is set only when both rates are 1, so that no direction has it.
    ratePairs(0, "A", {0U, 2U, 1U, 7U}).replay();
    EXPECT_EQ(classAt("A", 0, 0, transmit, 1), differs);
    EXPECT_EQ(find("A", 0, 0, transmit, 1)->reached, 3U);
    ASSERT_NE(report.firstFailure(), nullptr);
    // The first rate already fails when the channel comes from the last pass: bit 2 stays.
    EXPECT_EQ(verdict(report),
              "The table is at fault: the first register that does not replay is A of channel 0 at "
              "rate 0 of the TX table of channel 0, which leaves 0x00000006 in place of "
              "0x00000002 (differs).");
}

TEST_F(Replay, FailsForALaneRegisterBehindOneThatIsTakenOverIntoASingleLane) {
    engine.reg("A_CFG4", "ctrl_0", "0x10").reg("PIPE_CTRL_CFG9", "channel", "0x11");
    engine.lane(0, "a", "a").lane(2, "a", "a");
    for (const unsigned rate : {0U, 1U}) {
        engine.pass(0, rate, rate, {{"A_CFG4", 0U}, {"PIPE_CTRL_CFG9", 5 + rate}});
        engine.pass(2, rate, rate, {{"A_CFG4", rate}, {"PIPE_CTRL_CFG9", 5U}});
    }
    addSingleLane(0);
    replay();
    // One pair for lane 2, since channel 0 does not change A_CFG4 itself.
    EXPECT_EQ(classAt("PIPE_CTRL_CFG9", 0, 0, transmit, 1), differs);
    EXPECT_EQ(find("PIPE_CTRL_CFG9", 0, 0, transmit, 1)->reached, 5U);
    EXPECT_EQ(classAt("PIPE_CTRL_CFG9", 2, 0, transmit, 1), differs);
    EXPECT_NE(report.firstFailure(), nullptr);
}

TEST_F(Replay, FailsForADuplexTableOfSnapshotsThatDoNotMoveTogether) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "a");
    // Four passes, though one name for both directions: rate 1 is made of pass (0, 1).
    ratePairs(0, "A", {0U, 1U, 2U, 3U}).replay();
    EXPECT_EQ(classAt("A", 0, 0, transmit, 0), replays);
    EXPECT_EQ(classAt("A", 0, 0, transmit, 1), differs);
}

TEST_F(Replay, FailsForARegisterThatTheTableLacks) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "a");
    rates(0, "A", {1U, 2U});
    const auto words = generated();
    engine.reg("B", "channel", "0x20");
    engine.blockVarMap[0][0]["B"].value = 1U;
    engine.blockVarMap[0][1]["B"].value = 2U;
    snapshots = takeSnapshots(engine);
    replay(words);
    EXPECT_EQ(classAt("A", 0, 0, transmit, 1), replays);
    EXPECT_EQ(classAt("B", 0, 0, transmit, 1), differs);
    EXPECT_NE(report.firstFailure(), nullptr);
}

TEST_F(Replay, FailsForASpoiltValueOnly) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "a");
    rates(0, "A", {1U, 2U});
    auto words = generated();
    // Header, value of rate 0, header, value of rate 1.
    words.at(13) ^= 1U << 31;
    replay(words);
    EXPECT_EQ(classAt("A", 0, 0, transmit, 0), replays);
    EXPECT_EQ(classAt("A", 0, 0, transmit, 1), differs);
    EXPECT_EQ(find("A", 0, 0, transmit, 1)->reached, 0x80000002U);
}

TEST_F(Replay, FailsForASpoiltMask) {
    engine.reg("PIPE_CTRL_CFG9", "channel", "0x10").lane(0, "a", "a");
    rates(0, "PIPE_CTRL_CFG9", {1U, 2U});
    auto words = generated();
    // Header, mask, value; the mask of 3 loses a bit in both rates.
    words.at(11) = words.at(14) = 1U;
    replay(words);
    EXPECT_EQ(classAt("PIPE_CTRL_CFG9", 0, 0, transmit, 1), differs);
}

TEST_F(Replay, FailsForTwoRegistersAtOneAddress) {
    engine.reg("A", "channel", "0x10").reg("B", "ctrl_0", "0x10").lane(0, "a", "a");
    engine.pass(0, 0, 0, {{"A", 1U}, {"B", 7U}}).pass(0, 1, 1, {{"A", 2U}, {"B", 7U}});
    replay();
    EXPECT_EQ(classAt("B", 0, 0, transmit, 1), differs);
    EXPECT_NE(report.firstFailure(), nullptr);
}

// What can't be compared

TEST_F(Replay, PassesOverValuesThatAreNoNumbers) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "a").lane(1, "a", "a");
    rates(0, "A", {1U, 2U}).rates(1, "A", {std::string("x"), std::string("x")});
    engine.reg("P", "CH_PORT");
    engine.blockVarMap[0][0]["P"].value = std::string("on");
    engine.blockVarMap[0][1]["P"].value = std::string("off");
    replay();
    EXPECT_EQ(classAt("P", 0, 0, transmit, 1), "not looked at");
    EXPECT_EQ(report.firstDeviation(), nullptr);
}

TEST_F(Replay, PassesOverRatesThatAFollowerDoesNotHave) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "a").lane(1, "a", "a");
    rates(0, "A", {1U, 2U, 3U}).rates(1, "A", {1U, 2U}).replay();
    EXPECT_EQ(classAt("A", 1, 0, transmit, 1), notInTable);
    EXPECT_EQ(classAt("A", 1, 0, transmit, 2), "not looked at");
}

TEST_F(Replay, OfATableWithoutBodiesFindsNothing) {
    replay();
    EXPECT_THAT(report.findings, IsEmpty());
    EXPECT_EQ(verdict(report), "All rates of all channels replay.");
}

// What is told

TEST_F(Replay, IsToldByRowsAndCounts) {
    engine.reg("A", "ctrl_0", "0x10").lane(0, "a", "a").lane(1, "b", "b");
    rates(0, "A", {1U, 2U}).rates(1, "A", {1U}).replay();
    EXPECT_EQ(classCounts(report),
              "2 tables, 3 rates; registers by class: 3 replays, 0 overwritten by the adjustment, "
              "1 not in a table of this channel, 0 differs");
    const std::string heading =
        "class,register,channel,direction,table,rate,from_tx,from_rx,to_tx,to_rx,wanted,reached\n";
    EXPECT_EQ(csvText(replayRows(report, ReplayRows::deviating)),
              heading +
                  "not in a table of this channel,A,1,TX,0,1,0,0,0,0,0x00000001,"
                  "0x00000002\n");
    EXPECT_THAT(replayRows(report, ReplayRows::all).rows, SizeIs(4));
}

TEST_F(Replay, IsToldAsADocument) {
    engine.reg("A", "channel", "0x10").lane(0, "a", "b");
    ratePairs(0, "A", {0U, 2U, 1U, 7U}).replay();
    const Json document = replayDocument(report);
    EXPECT_EQ(document.at("failed"), true);
    EXPECT_EQ(document.at("verdict"), verdict(report));
    EXPECT_EQ(document.at("classes").at("differs"), 4);
    EXPECT_THAT(document.at("registers"), SizeIs(4));
    EXPECT_EQ(document.at("registers").at(0).at("reached"), "0x00000006");
}

}  // namespace
}  // namespace lanecfg_test
