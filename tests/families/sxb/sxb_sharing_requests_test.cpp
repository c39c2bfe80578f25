#include "support/packing_request.h"
#include "support/worked_request.h"

#include <gmock/gmock.h>

#include <string>

namespace sable_lanecfg {
namespace {

using lanecfg_test::feedbackWord;
using lanecfg_test::idleDivider;
using lanecfg_test::resetWord;
using lanecfg_test::WorkedRequest;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// 10.3125 Gb/s from the LCPLL on lanes 0 and 1, and 125 MHz from the RPLL on lane 0.
class SxbOtherPllRequest : public WorkedRequest {
  protected:
    SxbOtherPllRequest() : WorkedRequest("sxb_other_pll_clock") {}
};

TEST_F(SxbOtherPllRequest, RunsTheRpllForTheDividerAlone) {
    // 4, 6 and 8 GHz are no multiples of 156.25 MHz, 5 GHz is 32 times as much; 10312.5 is 66
    // times. The idle dual keeps both dividers.
    EXPECT_THAT(ofPasses<double>(0, "INT_RPLL_PLLCLKOUT"), ElementsAre(5.0));
    EXPECT_EQ(word("A_CFG1"), feedbackWord(66, 32, 66, 32));
    expectRunning({true, true, false, false});
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b0011, 0, 0b0011, 0b0001}));
}

TEST_F(SxbOtherPllRequest, DividesTheRpllTo125Megahertz) {
    // 5 GHz over 5 and over 8; 1250 MHz, over 4, has no second divider, but sets the range.
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG8.TXPROGDIVSEL"), ElementsAre(632));
    EXPECT_THAT(fieldOfPasses(0, "INT_TXOUTCLKDIV_FOR_PROGDIV_PATH"), ElementsAre(8));
    EXPECT_THAT(fieldOfPasses(0, "DA_CFG.TX_DA_RANGE"), ElementsAre(1));
    EXPECT_THAT(fieldOfLanes("CHCLK_TXPI_CFG0.TX_PROGCLK_SEL"), ElementsAre(2, 1, 1, 1));
    EXPECT_THAT(outputClocks(), Contains(Pair("CH0_TXOUTCLK", "125")));
    // The line runs at its own: 10312.5 / 80.
    EXPECT_THAT(outputClocks(), Contains(Pair("CH1_TXOUTCLK", "128.906")));
}

TEST_F(SxbOtherPllRequest, CountsTheDividedClockToAlign) {
    // 125 over 128.90625 MHz rounds to 1, times 8.
    EXPECT_THAT(fieldOfLanes("TX_PHALIGN_CFG0.DAPI_BUFG_DIV"), ElementsAre(8, 0, 0, 0));
    // Code 5 for 8, in the paths around and through the aligner.
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG7.TX_DABYP_DIVSEL"), ElementsAre(5));
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG7.TX_DA_DIVSEL"), ElementsAre(5));
}

/// Lane 0 in both directions, lane 2 to receive, lane 3 to transmit, lane 1 not at all.
class SxbPartlyUsedRequest : public WorkedRequest {
  protected:
    SxbPartlyUsedRequest() : WorkedRequest("sxb_partly_used") {}
};

TEST_F(SxbPartlyUsedRequest, TakesEachPllFromTheLaneThatUsesIt) {
    // 10000 / 156.25 = 64; lane 2 has 11880 / 297 = 40 on the LCPLL, lane 3 5940 / 297 = 20 on the
    // RPLL.
    EXPECT_EQ(word("A_CFG1"), feedbackWord(64, idleDivider, 40, 20));
    expectRunning({true, false, true, true});
    const auto answer = attributes();
    EXPECT_EQ(answer.at("HS0_LCPLL_IPS_REFCLK_SEL"), "1");
    EXPECT_EQ(answer.at("HS1_LCPLL_IPS_REFCLK_SEL"), "2");
    EXPECT_EQ(answer.at("HS1_RPLL_IPS_REFCLK_SEL"), "2");
}

TEST_F(SxbPartlyUsedRequest, PowersDownWhatIsNotUsed) {
    EXPECT_THAT(fieldOfLanes("FABRIC_INTF_CFG1.A_RXPD"), ElementsAre(0, 3, 0, 3));
    EXPECT_THAT(fieldOfLanes("FABRIC_INTF_CFG3.A_TXPD"), ElementsAre(0, 3, 3, 0));
}

TEST_F(SxbPartlyUsedRequest, ResetsWhatIsUsed) {
    // Lane 2's transmitter without a request is on the LCPLL too.
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b0101, 0b1000, 0b0101}));
    EXPECT_EQ(word("CTRL_RSV_CFG0") >> 28, 0U);
}

TEST_F(SxbPartlyUsedRequest, DividesForLinesThatRun) {
    // 2 * 5 / 1.25 = 8, and 2 * 5.94 / 2.97 = 4.
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG3.TXOUT_DIV"), ElementsAre(3));
    EXPECT_THAT(fieldOfPasses(2, "PIPE_CTRL_CFG3.RXOUT_DIV"), ElementsAre(2));
    EXPECT_THAT(fieldOfPasses(3, "PIPE_CTRL_CFG3.TXOUT_DIV"), ElementsAre(2));
    EXPECT_THAT(outputClocks(), Contains(Pair("CH2_RXOUTCLK", "148.5")));
    EXPECT_THAT(outputClocks(), Contains(Pair("CH3_TXOUTCLK", "148.5")));
}

/// 10GBASE-R and CPRI on one LCPLL.
class SxbRefusedRequest : public WorkedRequest {
  protected:
    SxbRefusedRequest() : WorkedRequest("sxb_does_not_pack") {}
};

TEST_F(SxbRefusedRequest, TellsWhyAndIsMadeAllTheSame) {
    EXPECT_THAT(instance().packedChannels,
                ElementsAre(Pair(1, lanecfg_test::noVcoText("LCPLL", 0, 0))));
    EXPECT_THAT(messages.records(), IsEmpty());
}

TEST_F(SxbRefusedRequest, LeavesEverythingDown) {
    EXPECT_EQ(word("A_CFG1"), feedbackWord(idleDivider, idleDivider, idleDivider, idleDivider));
    expectRunning({});
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({}));
    EXPECT_THAT(fieldOfLanes("FABRIC_INTF_CFG1.A_RXPD"), Each(3U));
    EXPECT_THAT(fieldOfLanes("FABRIC_INTF_CFG3.A_TXPD"), Each(3U));
}

}  // namespace
}  // namespace sable_lanecfg
