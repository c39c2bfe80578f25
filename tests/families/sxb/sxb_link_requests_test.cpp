#include "support/worked_request.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <string>

namespace sable_lanecfg {
namespace {

using lanecfg_test::aboveMaster;
using lanecfg_test::atMaster;
using lanecfg_test::belowMaster;
using lanecfg_test::feedbackWord;
using lanecfg_test::idleDivider;
using lanecfg_test::resetWord;
using lanecfg_test::syncDoneWord;
using lanecfg_test::WorkedRequest;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;

/// 1.2288, 2.4576, 3.072, 4.9152, 6.144 and 9.8304 Gb/s from 245.76 MHz on lanes 0 and 2.
class SxbCpriRequest : public WorkedRequest {
  protected:
    SxbCpriRequest() : WorkedRequest("sxb_cpri") {}
};

TEST_F(SxbCpriRequest, RunsOnTwoFrequencies) {
    // Multiples of 9.8304 and of 3.072: 9830.4 / 245.76 = 40 and 12288 / 245.76 = 50, at half rate.
    for (const std::size_t lane : {0U, 2U}) {
        EXPECT_THAT(ofPasses<double>(lane, "INT_LCPLL_PLLCLKOUT"),
                    ElementsAre(4.9152, 4.9152, 6.144, 4.9152, 6.144, 4.9152));
        EXPECT_THAT(fieldOfPasses(lane, "INT_LCPLL_FBDIV"), ElementsAre(40, 40, 50, 40, 50, 40));
        // Divider 40 to 59, at 9.8 and at 12.3 GHz.
        EXPECT_THAT(fieldOfPasses(lane, "LCPLL_CFG2.LCPLL_LFT_RZ"),
                    ElementsAre(92, 92, 74, 92, 74, 92));
    }
    EXPECT_EQ(word("A_CFG1"), feedbackWord(40, idleDivider, 40, idleDivider));
}

TEST_F(SxbCpriRequest, DividesForEachRate) {
    // 8, 4, 4, 2, 2 and 1.
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG3.TXOUT_DIV"), ElementsAre(3, 2, 2, 1, 1, 0));
    EXPECT_THAT(fieldOfPasses(2, "PIPE_CTRL_CFG3.RXOUT_DIV"), ElementsAre(3, 2, 2, 1, 1, 0));
    // The fastest, 9830.4 in words of 32.
    EXPECT_THAT(outputClocks(), Contains(Pair("CH2_RXOUTCLK", "307.2")));
}

TEST_F(SxbCpriRequest, ChangesRateInBothDirectionsAtOnce) {
    EXPECT_THAT(instance().blockVarMap, ElementsAre(SizeIs(6), SizeIs(1), SizeIs(6), SizeIs(1)));
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG4.RX_RATE_EN"), Each(0U));
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b0101, 0, 0b0101}));
}

/// Four lanes that receive 12.288 Gb/s from 307.2 MHz.
class SxbJesdRequest : public WorkedRequest {
  protected:
    SxbJesdRequest() : WorkedRequest("sxb_jesd204_receive") {}
};

TEST_F(SxbJesdRequest, RunsTheLcpllsForTheReceivers) {
    // 12288 / 307.2 = 40.
    EXPECT_EQ(word("A_CFG1"), feedbackWord(40, idleDivider, 40, idleDivider));
    expectRunning({true, false, true, false});
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG3.RXOUT_DIV"), Each(0U));
    EXPECT_THAT(outputClocks(), Contains(Pair("CH0_RXOUTCLK", "384")));
}

TEST_F(SxbJesdRequest, PowersTheTransmittersDown) {
    EXPECT_THAT(fieldOfLanes("FABRIC_INTF_CFG1.A_RXPD"), Each(0U));
    EXPECT_THAT(fieldOfLanes("FABRIC_INTF_CFG3.A_TXPD"), Each(3U));
    // A transmitter without a request is on the LCPLL, so it resets with it.
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b1111, 0, 0b1111}));
}

TEST_F(SxbJesdRequest, PlacesTheReceiversAlone) {
    EXPECT_THAT(ofLanes<std::string>("TX_PIPE_POSITION"), Each("single"));
    EXPECT_THAT(ofLanes<std::string>("RX_PIPE_POSITION"),
                ElementsAre("bottom", "middle", "middle", "top"));
    const unsigned int above = syncDoneWord({}, aboveMaster);
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG9"), ElementsAre(0, above, above, above));
}

/// 2.97, 5.94 and 11.88 Gb/s from 297 MHz on lane 0, each direction by itself, without buffers.
class SxbSdiRequest : public WorkedRequest {
  protected:
    SxbSdiRequest() : WorkedRequest("sxb_sdi_independent") {}
};

TEST_F(SxbSdiRequest, RunsAtOneFrequencyForAllPairsOfRates) {
    EXPECT_THAT(instance().blockVarMap, ElementsAre(SizeIs(9), SizeIs(1), SizeIs(1), SizeIs(1)));
    EXPECT_THAT(ofPasses<double>(0, "INT_LCPLL_PLLCLKOUT"), Each(5.94));
    // 11880 / 297 = 40; the idle dual keeps it.
    EXPECT_EQ(word("A_CFG1"), feedbackWord(40, idleDivider, 40, idleDivider));
    expectRunning({true, false, false, false});
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG4.RX_RATE_EN"), Each(1U));
}

TEST_F(SxbSdiRequest, DividesForEachDirection) {
    // 2 * 5.94 over the rate: 4, 2 and 1. Each transmit rate meets all receive rates.
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG3.TXOUT_DIV"),
                ElementsAre(2, 2, 2, 1, 1, 1, 0, 0, 0));
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG3.RXOUT_DIV"),
                ElementsAre(2, 1, 0, 2, 1, 0, 2, 1, 0));
}

TEST_F(SxbSdiRequest, DividesTheFabricClockToTheWord) {
    // 148.5, 148.5 and 297 MHz: 5.94 / 5 / 2 = 594 MHz, over 4, 4 and 2.
    EXPECT_THAT(fieldOfPasses(0, "INT_TXOUTCLKDIV_FOR_PROGDIV_PATH"),
                ElementsAre(4, 4, 4, 4, 4, 4, 2, 2, 2));
    EXPECT_THAT(fieldOfPasses(0, "INT_RXOUTCLKDIV_FOR_PROGDIV_PATH"),
                ElementsAre(4, 4, 2, 4, 4, 2, 4, 4, 2));
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG8.TXPROGDIVSEL"), Each(632U));
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b0001, 0, 0b0001, 0b0001, 0b0001}));
    EXPECT_THAT(outputClocks(), Contains(Pair("CH0_RXOUTCLK", "297")));
}

TEST_F(SxbSdiRequest, AlignsWithoutBuffers) {
    // One fabric clock for each word, times the divider; both alignments; no buffer.
    const unsigned int slow = 4U + (1U << 10) + (1U << 11) + (1U << 17);
    const unsigned int fast = slow - 2U;
    EXPECT_THAT(fieldOfPasses(0, "TX_PHALIGN_CFG0"),
                ElementsAre(slow, slow, slow, slow, slow, slow, fast, fast, fast));
    // Steps of 128 and 64 come before the thresholds with the numbers 16 and 12.
    EXPECT_THAT(fieldOfPasses(0, "RX_PHALIGN_CFG1.SETINIT_PH_CNT"),
                ElementsAre(15, 15, 11, 15, 15, 11, 15, 15, 11));
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG1.TXSYNC_EN"), Each(1U));
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG1.RXSYNC_EN"), Each(1U));
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG7.TX_DA_BYP"), Each(0U));
}

/// A link of eight lanes at 10.3125 Gb/s whose fifth is the master, the first four in this quad.
class SxbLowerQuadRequest : public WorkedRequest {
  protected:
    SxbLowerQuadRequest() : WorkedRequest("sxb_eight_lanes_lower") {}
};

/// The other four lanes.
class SxbUpperQuadRequest : public WorkedRequest {
  protected:
    SxbUpperQuadRequest() : WorkedRequest("sxb_eight_lanes_upper") {}
};

TEST_F(SxbLowerQuadRequest, IsAllBelowTheMaster) {
    EXPECT_THAT(ofLanes<std::string>("TX_PIPE_POSITION"),
                ElementsAre("bottom", "middle", "middle", "middle"));
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG9"), Each(syncDoneWord(belowMaster, belowMaster)));
    EXPECT_THAT(fieldOfLanes("TX_PHALIGN_CFG1.CHAIN_MODE"), ElementsAre(2, 3, 3, 3));
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG1.RPLL_EN"), Each(0U));
}

TEST_F(SxbLowerQuadRequest, MaintainsTheMasterInItsLastLane) {
    // The fifth of eight would, but is the master itself.
    EXPECT_THAT(ofLanes<bool>("TX_MAINTAIN_MASTER"), ElementsAre(false, false, false, true));
    EXPECT_THAT(fieldOfLanes("TX_PHALIGN_CFG0.SYNC_MODE"), ElementsAre(0, 0, 0, 2));
}

TEST_F(SxbLowerQuadRequest, ResetsAlongTheLink) {
    // Northwards 2, 3, 3, 3 at bits 18, 4, 20, 10; southwards 0, 1, 1, 1 at 8, 16, 0, 6; taken 3,
    // 1, 1, 1 at 22, 14, 12, 2.
    EXPECT_EQ(word("TXRSTDONE_DIST_SEL"), (2UL << 18) + (3UL << 4) + (3UL << 20) + (3UL << 10) +
                                              (1UL << 16) + 1UL + (1UL << 6) + (3UL << 22) +
                                              (1UL << 14) + (1UL << 12) + (1UL << 2));
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b1111, 0, 0b1111}));
}

TEST_F(SxbLowerQuadRequest, RunsAsTheUpperOne) {
    // 10312.5 / 156.25 = 66, of which the PLL puts out half.
    EXPECT_EQ(word("A_CFG1"), feedbackWord(66, idleDivider, 66, idleDivider));
    EXPECT_THAT(ofLanes<double>("INT_LCPLL_PLLCLKOUT"), Each(5.15625));
}

TEST_F(SxbUpperQuadRequest, HoldsTheMasterAndTheTop) {
    EXPECT_THAT(ofLanes<std::string>("TX_PIPE_POSITION"),
                ElementsAre("middle", "middle", "middle", "top"));
    const unsigned int above = syncDoneWord(aboveMaster, aboveMaster);
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG9"),
                ElementsAre(syncDoneWord(atMaster, atMaster), above, above, above));
    EXPECT_THAT(ofLanes<bool>("TX_MAINTAIN_MASTER"), Each(false));
    EXPECT_THAT(fieldOfLanes("TX_PHALIGN_CFG0.SYNC_MODE"), ElementsAre(1, 0, 0, 0));
    EXPECT_THAT(fieldOfLanes("TX_PHALIGN_CFG1.CHAIN_MODE"), ElementsAre(3, 3, 3, 1));
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG1.RPLL_EN"), ElementsAre(1, 0, 0, 0));
}

TEST_F(SxbUpperQuadRequest, ResetsAlongTheLink) {
    // Northwards 3, 3, 3, 0 at bits 18, 4, 20, 10; southwards 1, 1, 1, 0 at 8, 16, 0, 6; taken 1
    // everywhere at 22, 14, 12, 2.
    EXPECT_EQ(word("RXRSTDONE_DIST_SEL"), (3UL << 18) + (3UL << 4) + (3UL << 20) + (1UL << 8) +
                                              (1UL << 16) + 1UL + (1UL << 22) + (1UL << 14) +
                                              (1UL << 12) + (1UL << 2));
    EXPECT_EQ(word("A_CFG1"), feedbackWord(66, idleDivider, 66, idleDivider));
}

}  // namespace
}  // namespace sable_lanecfg
