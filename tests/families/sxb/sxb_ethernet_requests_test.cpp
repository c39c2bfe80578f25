#include "support/worked_request.h"

#include <gmock/gmock.h>

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

/// 1.25 Gb/s, 8B10B, from 156.25 MHz.
class SxbGigabitEthernetRequest : public WorkedRequest {
  protected:
    SxbGigabitEthernetRequest() : WorkedRequest("sxb_1000base_x") {}
};

TEST_F(SxbGigabitEthernetRequest, RunsTheLcpllAtHalfRate) {
    // Eight times 1.25 is 10, of which the PLL puts out half; 10000 / 156.25 = 64.
    EXPECT_THAT(ofLanes<double>("INT_LCPLL_PLLCLKOUT"), Each(5.0));
    EXPECT_THAT(ofLanes<std::string>("INT_LCPLLCLKOUTRATE"), Each("HALF"));
    EXPECT_THAT(fieldOfLanes("HSDIST_CFG.HSDIST_DIV2SEL"), Each(1U));
    EXPECT_EQ(word("A_CFG1"), feedbackWord(64, idleDivider, 64, idleDivider));
    expectRunning({true, false, true, false});
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b1111, 0, 0b1111}));
    // Divider 64 at 10 GHz.
    EXPECT_THAT(fieldOfLanes("LCPLL_CFG2.LCPLL_LFT_RZ"), Each(102U));
}

TEST_F(SxbGigabitEthernetRequest, DividesByEightForTheLine) {
    // 2 * 5 / 1.25 = 8, which has code 3.
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG3.TXOUT_DIV"), Each(3U));
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG3.RXOUT_DIV"), Each(3U));
    // 1250 / (16 * 1.25) = 62.5 MHz from 5 GHz: 1250 / 20 has no second divider, 1000 / 16 has; the
    // first divider 5 has code 632.
    EXPECT_THAT(fieldOfLanes("INT_TXOUTCLKDIV_FOR_PROGDIV_PATH"), Each(16U));
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG8.TXPROGDIVSEL"), Each(632U));
    // 1250 over the 16 bits of the width code.
    EXPECT_THAT(outputClocks(), Each(Pair(testing::_, "78.125")));
}

TEST_F(SxbGigabitEthernetRequest, CorrectsClocksByIdles) {
    // Enabled; minimum 2 + (5 * 2 - 2) + 1 = 11, up to an even 12; maximum 12 + 2 + 2; underflow 4.
    EXPECT_EQ(word("CH0_RX_ELASTIC_BUF_CFG0"),
              1UL + (16UL << 1) + (4UL << 19) + (12UL << 23) + (1UL << 30));
    // Precedence; K28.5 with its K bit before 0xbc, then D16.2, 0x50.
    EXPECT_EQ(word("CH0_RX_ELASTIC_BUF_CFG1"), (1UL << 1) + (0x1bcUL << 2) + (0x50UL << 12));
    // Two bytes have code 1; the others are masked.
    EXPECT_EQ(word("CH0_RX_ELASTIC_BUF_CFG2"), 1UL);
    EXPECT_THAT(fieldOfLanes("RX_ELASTIC_BUF_CFG3.EB8B10B_CLK_COR_SEQ_1_EN"), Each(0b0011U));
    EXPECT_THAT(fieldOfLanes("RX_ELASTIC_BUF_CFG7.EB8B10B_CHAN_BOND_EN"), Each(0U));
}

TEST_F(SxbGigabitEthernetRequest, AlignsToCommas) {
    EXPECT_THAT(fieldOfLanes("RX_PCS_CFG0.RX_ALIGN_PCOMMA_VAL"), Each(0b0101111100U));
    EXPECT_THAT(fieldOfLanes("RX_PCS_CFG0.RX_ALIGN_MCOMMA_VAL"), Each(0b1010000011U));
    EXPECT_THAT(fieldOfLanes("RX_PCS_CFG1.RX_ALIGN_COMMA_ENABLE"), Each(0b0001111111U));
    EXPECT_THAT(fieldOfLanes("RX_PCS_CFG0.RX_COMMADETEN"), Each(1U));
}

TEST_F(SxbGigabitEthernetRequest, FollowsTheOffsetOfTheOtherEnd) {
    EXPECT_THAT(fieldOfLanes("RX_CDR_CFG0.CDRENF"), Each(1U));
    // Below 13 Gb/s 32, over the output divider 8: 4, with code 2.
    EXPECT_THAT(fieldOfLanes("RX_CDR_CFG2.FDIVFAC"), Each(2U));
    // 20 bits up to 2.7 Gb/s.
    EXPECT_THAT(fieldOfLanes("EYESCAN_CFG16.RXPMA_CDR_WIDTH_OVRD"), Each(11U));
}

/// Four bonded lanes of 3.125 Gb/s, 8B10B, on the RPLLs at 312.5 MHz; the second is the master.
class SxbXauiRequest : public WorkedRequest {
  protected:
    SxbXauiRequest() : WorkedRequest("sxb_xaui") {}
};

TEST_F(SxbXauiRequest, RunsOnTheRplls) {
    // Only 4 * 3.125 / 2 = 6.25 GHz is in range; 6250 / 312.5 = 20.
    EXPECT_THAT(ofLanes<double>("INT_RPLL_PLLCLKOUT"), Each(6.25));
    EXPECT_EQ(word("A_CFG1"), feedbackWord(idleDivider, 20, idleDivider, 20));
    expectRunning({false, true, false, true});
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0, 0b1111, 0}));
    EXPECT_EQ(word("CTRL_RSV_CFG0") >> 28, 0b1111U);
    // Without a fraction, from 10 to 25.
    EXPECT_THAT(fieldOfLanes("RPLL_CFG2.RPLL_IF_CTRL_RZ"), Each(22U));
    // 2 * 6.25 / 3.125 = 4, with code 2.
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG3.TXOUT_DIV"), Each(2U));
}

TEST_F(SxbXauiRequest, BondsItsChannels) {
    // Enabled; minimum 7 + 4 * 2 + 2 = 17, above (1 + 5) * 2 - 2 + 2 + 1, up to an even 18; maximum
    // 18 + 2 + 1; underflow 4.
    EXPECT_EQ(word("CH0_RX_ELASTIC_BUF_CFG0"),
              1UL + (21UL << 1) + (4UL << 19) + (18UL << 23) + (1UL << 30));
    // Correction by K28.0, 0x1c; bonding by K28.3, 0x7c.
    EXPECT_EQ(word("CH0_RX_ELASTIC_BUF_CFG1"), (1UL << 1) + (0x11cUL << 2));
    EXPECT_EQ(word("CH0_RX_ELASTIC_BUF_CFG4"), 0x17cUL << 2);
    // Bonding on, a skew of 7, and the constant at bit 20.
    EXPECT_EQ(word("CH0_RX_ELASTIC_BUF_CFG7"), (1UL << 8) + (7UL << 12) + (1UL << 20));
}

TEST_F(SxbXauiRequest, PlacesTheLanesAroundTheMaster) {
    EXPECT_THAT(ofLanes<std::string>("TX_PIPE_POSITION"),
                ElementsAre("bottom", "middle", "middle", "top"));
    EXPECT_THAT(
        fieldOfLanes("PIPE_CTRL_CFG9"),
        ElementsAre(syncDoneWord(belowMaster, belowMaster), syncDoneWord(atMaster, atMaster),
                    syncDoneWord(aboveMaster, aboveMaster),
                    syncDoneWord(aboveMaster, aboveMaster)));
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG1.RPLL_EN"), ElementsAre(0, 1, 0, 0));
    EXPECT_THAT(fieldOfLanes("TX_PHALIGN_CFG0.SYNC_MODE"), ElementsAre(0, 1, 0, 0));
    EXPECT_THAT(fieldOfLanes("TX_PHALIGN_CFG1.CHAIN_MODE"), ElementsAre(2, 3, 3, 1));
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG6.PIPE_DISTNORTH_SEL"), ElementsAre(2, 3, 3, 0));
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG6.PIPE_DISTSOUTH_SEL"), ElementsAre(0, 1, 1, 0));
    EXPECT_THAT(fieldOfLanes("PIPE_CTRL_CFG6.PIPE_CONSUMPT_SEL"), ElementsAre(3, 1, 1, 1));
}

TEST_F(SxbXauiRequest, HandsTheEndOfTheResetAlong) {
    // Northwards 2, 3, 3, 0 at bits 18, 4, 20, 10; southwards 0, 1, 1, 0 at 8, 16, 0, 6; taken 3,
    // 1, 1, 1 at 22, 14, 12, 2.
    const unsigned long expected = (2UL << 18) + (3UL << 4) + (3UL << 20) + (1UL << 16) + 1UL +
                                   (3UL << 22) + (1UL << 14) + (1UL << 12) + (1UL << 2);
    EXPECT_EQ(word("TXRSTDONE_DIST_SEL"), expected);
    EXPECT_EQ(word("RXRSTDONE_DIST_SEL"), expected);
}

/// Two bonded lanes of 1.25 Gb/s, 8B10B, on the second dual's LCPLL; lane 2 is the master.
class SxbBondedGigabitRequest : public WorkedRequest {
  protected:
    SxbBondedGigabitRequest() : WorkedRequest("sxb_1000base_x_bonded") {}
};

TEST_F(SxbBondedGigabitRequest, RunsTheSecondDualAlone) {
    EXPECT_EQ(word("A_CFG1"), feedbackWord(idleDivider, idleDivider, 64, idleDivider));
    expectRunning({false, false, true, false});
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b1100, 0, 0b1100}));
    // 1250 over the 16 bits of the width code; 10312.5 / 40 without a user.
    EXPECT_THAT(outputClocks(), Contains(Pair("CH3_RXOUTCLK", "78.125")));
    EXPECT_THAT(outputClocks(), Contains(Pair("CH1_RXOUTCLK", "257.812")));
}

TEST_F(SxbBondedGigabitRequest, CorrectsClocksAndBondsItsLanes) {
    for (const std::string lane : {"CH2_", "CH3_"}) {
        // Enabled; minimum 5 + 4 * 2 + 2 = 15, above (1 + 5) * 2 - 2 + 2 + 1, up to an even 16;
        // maximum 16 + 2 + 2; underflow 4.
        EXPECT_EQ(word(lane + "RX_ELASTIC_BUF_CFG0"),
                  1UL + (20UL << 1) + (4UL << 19) + (16UL << 23) + (1UL << 30));
        // Precedence; correction by K28.5 and D16.2, two bytes; bonding by one K28.3.
        EXPECT_EQ(word(lane + "RX_ELASTIC_BUF_CFG1"), (1UL << 1) + (0x1bcUL << 2) + (0x50UL << 12));
        EXPECT_EQ(word(lane + "RX_ELASTIC_BUF_CFG2"), 1UL);
        EXPECT_EQ(word(lane + "RX_ELASTIC_BUF_CFG4"), 0x17cUL << 2);
        // Bonding on, a skew of 5, and the constant at bit 20.
        EXPECT_EQ(word(lane + "RX_ELASTIC_BUF_CFG7"), (1UL << 8) + (5UL << 12) + (1UL << 20));
    }
}

TEST_F(SxbBondedGigabitRequest, PlacesTheSecondLaneAboveTheMaster) {
    EXPECT_THAT(ofLanes<std::string>("TX_PIPE_POSITION"),
                ElementsAre("single", "single", "bottom", "top"));
    EXPECT_EQ(word("CH2_PIPE_CTRL_CFG9"), syncDoneWord(atMaster, atMaster));
    EXPECT_EQ(word("CH3_PIPE_CTRL_CFG9"), syncDoneWord(aboveMaster, aboveMaster));
    EXPECT_THAT(fieldOfLanes("TX_PHALIGN_CFG0.SYNC_MODE"), ElementsAre(0, 0, 1, 0));
    EXPECT_THAT(fieldOfLanes("TX_PHALIGN_CFG1.CHAIN_MODE"), ElementsAre(0, 0, 2, 1));
}

TEST_F(SxbBondedGigabitRequest, HandsTheEndOfTheResetAlong) {
    // Lane 2: northwards 2 at bit 20, taken 3 at bit 12. Lane 3: taken 1 at bit 2.
    const unsigned long expected = (2UL << 20) + (3UL << 12) + (1UL << 2);
    EXPECT_EQ(word("TXRSTDONE_DIST_SEL"), expected);
    EXPECT_EQ(word("RXRSTDONE_DIST_SEL"), expected);
}

/// 25.78125 Gb/s on the LCPLL beside 10.3125 Gb/s on the RPLL; lanes 2 and 3 switch between both.
class Sxb25And10GigabitRequest : public WorkedRequest {
  protected:
    Sxb25And10GigabitRequest() : WorkedRequest("sxb_25g_and_10g") {}
};

TEST_F(Sxb25And10GigabitRequest, GivesEachLaneOfTheFirstDualAPll) {
    // 12890.625 and 5156.25 over 322.265625 are 40 and 16; 12890.625 / 161.1328125 = 80. Nobody
    // uses the second dual's RPLL, which keeps the divider of the first.
    EXPECT_EQ(word("A_CFG1"), feedbackWord(40, 16, 80, 16));
    expectRunning({true, true, true, false});
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b1101, 0b0010, 0b1101}));
    EXPECT_EQ(word("CTRL_RSV_CFG0") >> 28, 0b0010U);
}

TEST_F(Sxb25And10GigabitRequest, DividesOneFrequencyByTwoAndAHalf) {
    // 2 * 12.890625 over 25.78125 and over 10.3125: 1 has code 0, 2.5 code 7.
    for (const std::size_t lane : {2U, 3U}) {
        EXPECT_THAT(ofPasses<double>(lane, "INT_LCPLL_PLLCLKOUT"), Each(12.890625));
        EXPECT_THAT(fieldOfPasses(lane, "PIPE_CTRL_CFG3.TXOUT_DIV"), ElementsAre(0, 7));
        EXPECT_THAT(fieldOfPasses(lane, "PIPE_CTRL_CFG3.RXOUT_DIV"), ElementsAre(0, 7));
        // Half of 64 bits times the divider.
        EXPECT_THAT(fieldOfPasses(lane, "TX_PHALIGN_CFG5.TXPI_PMA_DIV"), ElementsAre(32, 80));
    }
}

TEST_F(Sxb25And10GigabitRequest, SelectsAReferenceClockForEachDual) {
    const auto answer = attributes();
    EXPECT_EQ(answer.at("HS0_LCPLL_IPS_REFCLK_SEL"), "1");
    EXPECT_EQ(answer.at("HS0_RPLL_IPS_REFCLK_SEL"), "1");
    EXPECT_EQ(answer.at("HS1_LCPLL_IPS_REFCLK_SEL"), "2");
}

/// OTU2, 10.709225 Gb/s, from 156.25 MHz on lanes 0 and 1.
class SxbFractionalRequest : public WorkedRequest {
  protected:
    SxbFractionalRequest() : WorkedRequest("sxb_otu2_fractional") {}
};

TEST_F(SxbFractionalRequest, DividesByAFraction) {
    // 10709.225 / 156.25 = 68.53904: 68, and 0.53904 * 2^24 = 9043590.5.
    EXPECT_THAT(fieldOfPasses(0, "INT_LCPLL_REF_DIV"), ElementsAre(1U));
    EXPECT_EQ(word("A_CFG1"), feedbackWord(68, idleDivider, 68, idleDivider));
    EXPECT_EQ(word("A_CFG2"), (3UL << 28) + (9043590UL << 2));
}

TEST_F(SxbFractionalRequest, ShapesTheLoopForTheFraction) {
    EXPECT_THAT(fieldOfPasses(0, "LCPLL_CFG0.LCPLL_CP"), ElementsAre(3U));
    EXPECT_THAT(fieldOfPasses(0, "LCPLL_CFG2.LCPLL_LFT_CP2"), ElementsAre(2U));
    EXPECT_THAT(fieldOfPasses(0, "LCPLL_CFG2.LCPLL_LFT_RP"), ElementsAre(1U));
    EXPECT_THAT(fieldOfPasses(0, "LCPLL_LGC_CFG1.BYPASS"), ElementsAre(0U));
    // 10709.225 / 80, in six digits.
    EXPECT_THAT(outputClocks(), Contains(Pair("CH1_TXOUTCLK", "133.865")));
}

TEST_F(SxbFractionalRequest, LeavesTheSecondDualDown) {
    // No fraction there, a reset mask of 3 at bit 1, and power down at bit 28.
    EXPECT_EQ(word("A_CFG4"), (3UL << 1) + (1UL << 28));
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b0011, 0, 0b0011}));
}

}  // namespace
}  // namespace sable_lanecfg
