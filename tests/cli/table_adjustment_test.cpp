#include "table_adjustment.h"

#include "../block/rate_table_engine.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;

/// A quad whose registers are all there is to adjust; a test says who follows whom.
struct Adjustment : public testing::Test {
    Adjustment() {
        for (const char* const name : {"A_CFG1", "A_CFG40", "CTRL_RSV_CFG0", "MST_RESET_CFG"}) {
            engine.reg(name, "ctrl_0", "0x10");
        }
        engine.reg("PIPE_CTRL_CFG7", "channel", "0x20");
    }

    /// Gives a channel two rates in each direction, together if the groups have the same name. The
    /// first transmit rate has A_CFG40 at `first`, the second at `second`.
    void lane(int channel, const std::string& tx, const std::string& rx, unsigned first = 0,
              unsigned second = 0) {
        engine.lane(channel, tx, rx);
        for (unsigned pass = 0; pass < (tx == rx ? 2U : 4U); ++pass) {
            const unsigned txRate = tx == rx ? pass : pass / 2;
            engine.pass(static_cast<std::size_t>(channel), txRate, tx == rx ? pass : pass % 2,
                        {{"A_CFG1", 0U},
                         {"A_CFG40", txRate == 0 ? first : second},
                         {"CTRL_RSV_CFG0", 0U},
                         {"MST_RESET_CFG", 0U},
                         {"PIPE_CTRL_CFG7", txRate}});
        }
    }

    /// Bits of a register in a channel's table that are not its own.
    std::uint32_t bitsIn(unsigned channel, TableDirection direction, const std::string& name) {
        const RateSnapshots snapshots = takeSnapshots(engine);
        const DecodedRateTable table =
            decodeRateTable(rateTableWords(engine.generateRateTableInBinary()));
        for (const RateBody& body : table.bodies) {
            if (body.channel == channel && body.direction == direction) {
                const auto& names = snapshots.names;
                const auto found = std::find(names.begin(), names.end(), name);
                return TableAdjustment(table, body, snapshots)
                    .overwrittenBits(static_cast<std::size_t>(found - names.begin()));
            }
        }
        ADD_FAILURE() << "channel " << channel << " has no table";
        return 0;
    }

    RateTableEngine engine;
};

constexpr auto transmit = TableDirection::transmit;
constexpr auto receive = TableDirection::receive;

TEST_F(Adjustment, ClaimsTheClockControlsThatNoRateChanges) {
    lane(0, "a", "b");
    // The transmit rates change bit 0 of the transmit control.
    EXPECT_EQ(bitsIn(0, transmit, "PIPE_CTRL_CFG7"), 0x7006U);
    EXPECT_EQ(bitsIn(0, receive, "PIPE_CTRL_CFG7"), 0x7000U);
}

TEST_F(Adjustment, ClaimsNothingForAChannelThatNobodyFollows) {
    lane(0, "a", "b");
    for (const char* const name : {"A_CFG1", "A_CFG40", "CTRL_RSV_CFG0", "MST_RESET_CFG"}) {
        EXPECT_EQ(bitsIn(0, transmit, name), 0U) << name;
    }
}

TEST_F(Adjustment, ClaimsTheResetBitsOfTransmitFollowersInBothTables) {
    lane(1, "a", "b");
    lane(2, "a", "c");
    // Channel 2: bits 2 and 6, 18 to 22, and 30.
    EXPECT_EQ(bitsIn(1, transmit, "MST_RESET_CFG"), 0x407c0044U);
    EXPECT_EQ(bitsIn(1, receive, "MST_RESET_CFG"), 0x407c0044U);
    EXPECT_EQ(bitsIn(1, transmit, "CTRL_RSV_CFG0"), 0x40000000U);
}

TEST_F(Adjustment, ClaimsNoResetBitsOfReceiveFollowers) {
    lane(1, "a", "b");
    lane(2, "c", "b");
    EXPECT_EQ(bitsIn(1, receive, "MST_RESET_CFG"), 0U);
    EXPECT_EQ(bitsIn(1, receive, "CTRL_RSV_CFG0"), 0U);
}

TEST_F(Adjustment, ClaimsTheSecondDualsDividersForAFollowerOfEitherDirectionThere) {
    lane(1, "a", "b");
    lane(3, "c", "b");
    EXPECT_EQ(bitsIn(1, transmit, "A_CFG1"), 0xffff0000U);
    EXPECT_EQ(bitsIn(1, receive, "A_CFG1"), 0xffff0000U);
}

TEST_F(Adjustment, ClaimsNoDividersForAFollowerInTheSameDual) {
    lane(2, "a", "a");
    lane(3, "a", "a");
    EXPECT_EQ(bitsIn(2, transmit, "A_CFG1"), 0U);
}

TEST_F(Adjustment, ClaimsAnAnalogueRegisterThatAFollowerInTheOtherDualChanges) {
    lane(0, "a", "b");
    lane(2, "a", "c", 1, 2);
    EXPECT_EQ(bitsIn(0, transmit, "A_CFG40"), 0xffffffffU);
    EXPECT_EQ(bitsIn(0, receive, "A_CFG40"), 0U);
}

TEST_F(Adjustment, ClaimsNoAnalogueRegisterThatTheFollowerKeeps) {
    lane(0, "a", "b", 1, 2);
    lane(2, "a", "c");
    EXPECT_EQ(bitsIn(0, transmit, "A_CFG40"), 0U);
}

}  // namespace
}  // namespace lanecfg_test
