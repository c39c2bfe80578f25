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
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;

/// Gen1 to Gen4 from 100 MHz with a divided clock of 500 MHz, on as many lanes.
class SxbPcieRequest : public lanecfg_test::WorkedRequest {
  protected:
    explicit SxbPcieRequest(std::size_t lanes)
        : WorkedRequest("sxb_pcie_gen4_x" + std::to_string(lanes)) {}
};

class SxbPcieOneLane : public SxbPcieRequest {
  protected:
    SxbPcieOneLane() : SxbPcieRequest(1) {}
};

class SxbPcieTwoLanes : public SxbPcieRequest {
  protected:
    SxbPcieTwoLanes() : SxbPcieRequest(2) {}
};

class SxbPcieFourLanes : public SxbPcieRequest {
  protected:
    SxbPcieFourLanes() : SxbPcieRequest(4) {}
};

TEST_F(SxbPcieFourLanes, RunOnTwoFrequencies) {
    // 2.5 and 5 Gb/s come from 5 GHz; 8 Gb/s passes over the first candidate, 4 GHz, to meet 16
    // Gb/s at 8 GHz. Half rate: 10000 / 100 and 16000 / 100.
    for (std::size_t lane = 0; lane < 4; ++lane) {
        EXPECT_THAT(ofPasses<double>(lane, "INT_LCPLL_PLLCLKOUT"), ElementsAre(5.0, 5.0, 8.0, 8.0));
        EXPECT_THAT(ofPasses<std::string>(lane, "INT_LCPLLCLKOUTRATE"), Each("HALF"));
        EXPECT_THAT(fieldOfPasses(lane, "INT_LCPLL_FBDIV"), ElementsAre(100, 100, 160, 160));
    }
    EXPECT_EQ(word("A_CFG1"), feedbackWord(100, idleDivider, 100, idleDivider));
    expectRunning({true, false, true, false});
}

TEST_F(SxbPcieFourLanes, DivideForEachGeneration) {
    // 2 * 5 / 2.5 = 4, then 2, 2 * 8 / 8 = 2, then 1.
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG3.TXOUT_DIV"), ElementsAre(2, 1, 1, 0));
    EXPECT_THAT(fieldOfPasses(3, "PIPE_CTRL_CFG3.RXOUT_DIV"), ElementsAre(2, 1, 1, 0));
}

TEST_F(SxbPcieFourLanes, MakeTheFabricClockAtEachGeneration) {
    // 500 MHz through the half of the delay aligner: 5 / 5 / 2, and 8 / 4 / 2 / 2.
    EXPECT_THAT(ofPasses<double>(0, "INT_TXPROGDIV_SEL"), ElementsAre(5.0, 5.0, 4.0, 4.0));
    EXPECT_THAT(fieldOfPasses(0, "INT_TXOUTCLKDIV_FOR_PROGDIV_PATH"), ElementsAre(1, 1, 2, 2));
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG8.TXPROGDIVSEL"), ElementsAre(632, 632, 600, 600));
    // 5 / 5 is not above 1 GHz, 8 / 4 is.
    EXPECT_THAT(fieldOfPasses(0, "DA_CFG.TX_DA_RANGE"), ElementsAre(0, 0, 1, 1));
    EXPECT_THAT(outputClocks(), Contains(Pair("CH3_TXOUTCLK", "500")));
    // Divided further for 125, 250 and 500 MHz: 4, 2 and 1 times, less one, with an internal Gen3
    // width of 32; and for the user's 500 and 250 MHz.
    EXPECT_EQ(word("CH0_PIPE_CTRL_CFG5"), (1UL << 0) + (3UL << 6) + (0UL << 12) + (1UL << 17) +
                                              (1UL << 18) + (0UL << 22) + (1UL << 26) +
                                              (1UL << 30));
}

TEST_F(SxbPcieFourLanes, CountFabricClocksToAlign) {
    // 0.5 GHz over 2.5 / 16, 5 / 16, 8 / 40 and 16 / 40 is 3.2, 1.6, 2.5 and 1.25, rounded, times
    // the second divider.
    EXPECT_THAT(fieldOfPasses(0, "TX_PHALIGN_CFG0.DAPI_BUFG_DIV"), ElementsAre(3, 2, 6, 2));
    // Steps of 96, 64 and 192 come before the thresholds with the numbers 15, 12 and 22.
    EXPECT_THAT(fieldOfPasses(0, "TX_PHALIGN_CFG1.SETINIT_PH_CNT"), ElementsAre(14, 11, 21, 11));
}

TEST_F(SxbPcieFourLanes, AlignToTheSecondLane) {
    // Count 3, both alignments, several lanes, without buffer; the master in mode 1.
    const unsigned int common = 3U + (1U << 10) + (1U << 11) + (1U << 16) + (1U << 17);
    EXPECT_THAT(fieldOfLanes("TX_PHALIGN_CFG0"),
                ElementsAre(common, common + (1U << 20), common, common));
    EXPECT_THAT(
        fieldOfLanes("PIPE_CTRL_CFG9"),
        ElementsAre(syncDoneWord(belowMaster, belowMaster), syncDoneWord(atMaster, atMaster),
                    syncDoneWord(aboveMaster, aboveMaster),
                    syncDoneWord(aboveMaster, aboveMaster)));
    // The receiver has its buffer, the transmitter has not.
    EXPECT_THAT(fieldOfLanes("RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE"), Each(1U));
}

TEST_F(SxbPcieFourLanes, ChangeBuffersWithTheCoding) {
    EXPECT_THAT(fieldOfPasses(0, "RX_ELASTIC_BUF_CFG0.ELASTICBUF_8B10B_EN"),
                ElementsAre(1, 1, 0, 0));
    EXPECT_THAT(fieldOfPasses(0, "RX_ELASTIC_BUF_CFG8.ELASTICBUF_128B130B_EN"),
                ElementsAre(0, 0, 1, 1));
    // Gen1: enabled, latencies 20 and 17, thresholds 31 and 8 of their own, correction in use.
    EXPECT_EQ(word("CH0_RX_ELASTIC_BUF_CFG0"), 1UL + (20UL << 1) + (31UL << 13) + (8UL << 19) +
                                                   (17UL << 23) + (1UL << 30) + (1UL << 31));
}

TEST_F(SxbPcieFourLanes, ShapeTheLoopForEachGeneration) {
    EXPECT_THAT(fieldOfPasses(0, "LCPLL_CFG0.LCPLL_CP"), Each(255U));
    EXPECT_THAT(fieldOfPasses(0, "LCPLL_CFG2.LCPLL_LFT_RZ"), ElementsAre(5, 5, 16, 16));
    EXPECT_THAT(fieldOfPasses(0, "LCPLL_CFG2.LCPLL_LFT_CP1"), ElementsAre(0, 0, 1, 1));
    EXPECT_THAT(fieldOfPasses(0, "PIPE_TX_EQ_CFG0.TX_DRIVE_MODE"), ElementsAre(1, 1, 2, 2));
    // 32 bits at 8 Gb/s have a width of their own.
    EXPECT_THAT(fieldOfPasses(0, "EYESCAN_CFG16.RXPMA_CDR_WIDTH_OVRD"), ElementsAre(11, 1, 12, 0));
    // Gen3 or more.
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG1.UCORE_PLL_ILO_CAL_EN"), Each(1U));
}

TEST_F(SxbPcieFourLanes, ResetTheirDividers) {
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b1111, 0, 0b1111, 0b1111}));
}

TEST_F(SxbPcieTwoLanes, AreBottomAndTop) {
    EXPECT_THAT(ofLanes<std::string>("TX_PIPE_POSITION"),
                ElementsAre("bottom", "top", "single", "single"));
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG9"),
                ElementsAre(syncDoneWord(atMaster, atMaster),
                            syncDoneWord(aboveMaster, aboveMaster), 0, 0));
}

TEST_F(SxbPcieTwoLanes, LeaveTheSecondDualDown) {
    EXPECT_THAT(instance().blockVarMap, ElementsAre(SizeIs(4), SizeIs(4), SizeIs(1), SizeIs(1)));
    // Its divider is what lane 1 had last, at Gen4.
    EXPECT_EQ(word("A_CFG1"), feedbackWord(100, idleDivider, 160, idleDivider));
    expectRunning({true, false, false, false});
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b0011, 0, 0b0011, 0b0011}));
    EXPECT_THAT(fieldOfLanes("FABRIC_INTF_CFG1.A_RXPD"), ElementsAre(0, 0, 3, 3));
    EXPECT_THAT(fieldOfLanes("FABRIC_INTF_CFG3.A_TXPD"), ElementsAre(0, 0, 3, 3));
}

TEST_F(SxbPcieOneLane, AlignsByItself) {
    EXPECT_THAT(ofLanes<std::string>("TX_PIPE_POSITION"), Each("single"));
    // As in a link, but for a single lane.
    EXPECT_EQ(word("CH0_TX_PHALIGN_CFG0"), 3UL + (1UL << 10) + (1UL << 11) + (1UL << 17));
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b0001, 0, 0b0001, 0b0001}));
    // The second dual has what lane 1 without use, set for Gen1, left.
    EXPECT_EQ(word("A_CFG1"), feedbackWord(100, idleDivider, 100, idleDivider));
}

}  // namespace
}  // namespace sable_lanecfg
