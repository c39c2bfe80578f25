#include "support/reference_data.h"
#include "support/worked_request.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

// Bundled requests for the frozen rules as a whole, against values worked out by hand.

namespace sable_lanecfg {
namespace {

using lanecfg_test::feedbackWord;
using lanecfg_test::idleDivider;
using lanecfg_test::initialiseBundledRequest;
using lanecfg_test::resetWord;
using lanecfg_test::WorkedFrozenRequest;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using textMap = std::map<std::string, std::string>;

/// Maps 7 to 0, which hold their numbers, in steps of three bits from bit 4 on, and the selector at
/// bit 1.
unsigned long memoryCell(unsigned long selector) {
    unsigned long word = selector << 1;
    for (unsigned long map = 0; map < 8; ++map) {
        word += map << (4 + 3 * (7 - map));
    }
    return word;
}

class SxbStableTenGigabitRequest : public WorkedFrozenRequest {
  protected:
    SxbStableTenGigabitRequest() : WorkedFrozenRequest("sxb_stable_10gbase_r") {}
};

TEST_F(SxbStableTenGigabitRequest, PacksAndRunsOnePassForEachLane) {
    expectPacked();
    EXPECT_THAT(instance().blockVarMap, SizeIs(4));
    EXPECT_THAT(instance().blockVarMap, Each(SizeIs(1)));
}

TEST_F(SxbStableTenGigabitRequest, HasTheDividersAndThePowerOfThePlls) {
    // 10312.5 MHz is 66 times 156.25 MHz.
    EXPECT_EQ(word("A_CFG1"), feedbackWord(66, idleDivider, 66, idleDivider));
    // Both LCPLLs run, both RPLLs are down, without a reset mask.
    EXPECT_EQ(word("A_CFG2"), 0U);
    EXPECT_EQ(word("A_CFG3"), 1UL << 4);
    EXPECT_EQ(word("A_CFG4"), 0U);
    EXPECT_EQ(word("A_CFG5"), 1UL << 4);
}

TEST_F(SxbStableTenGigabitRequest, SelectsR0ForEveryPll) {
    const textMap answer = attributes();
    for (const char* const cell :
         {"MEMCELLX0C12", "MEMCELLX0C13", "MEMCELLX0F12", "MEMCELLX0F13"}) {
        EXPECT_EQ(answer.at(cell), std::to_string(memoryCell(1))) << cell;
    }
    EXPECT_EQ(answer.at("HS1_RPLL_REFCLK_MAP1 "), "1");
    EXPECT_EQ(answer.at("HS1_RPLL_REFCLK_MAP2 "), "2");
}

TEST_F(SxbStableTenGigabitRequest, ResetsLanesWithTheirTransmittersPllAlone) {
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b1111}));
    // Length 3 of the monitor at bit 1 is all that the control word has left.
    EXPECT_EQ(word("CTRL_RSV_CFG0"), 3UL << 1);
}

TEST_F(SxbStableTenGigabitRequest, HasAConstantRecovery) {
    // Divider 6 at bit 1, factor 2 at 5, divider 4 at 8, votes 4 at 11 and 14, one cycle at 20.
    EXPECT_EQ(word("CH0_RX_CDR_CFG2"),
              (6UL << 1) + (2UL << 5) + (4UL << 8) + (4UL << 11) + (4UL << 14) + (1UL << 20));
}

TEST_F(SxbStableTenGigabitRequest, TakesTheMiddleBandOfThePhaseInterpolators) {
    // Band 2 below 12 GHz. Bits of the receiver: 8 at 2, band at 6, 1 at 9, step bypass at 10,
    // power of the divider at 11, two steps at 12, buffer at 14.
    EXPECT_EQ(word("CH0_CHCLK_RXPI_CFG"), (8UL << 2) + (2UL << 6) + (1UL << 9) + (1UL << 10) +
                                              (1UL << 11) + (1UL << 12) + (1UL << 14));
}

TEST_F(SxbStableTenGigabitRequest, ReportsNoClockAndHoldsTheFrozenImage) {
    EXPECT_THAT(outputClocks(), IsEmpty());
    const textMap image = lane_cfg_ip_mgr::getMemContent(instanceName, "SXB", "stable");
    EXPECT_THAT(image, SizeIs(6));
    EXPECT_EQ(image.count("@0001038c"), 1U);
}

TEST_F(SxbStableTenGigabitRequest, StandsBesideTheCurrentRulesUnderOneName) {
    const textMap frozenAlone = attributes();
    initialiseBundledRequest(instanceName, "sxb_10gbase_r");
    const auto ofCurrent = [] {
        return lane_cfg_ip_mgr::getAttributes(instanceName, "SXB", "live");
    };
    const textMap current = ofCurrent();
    EXPECT_EQ(attributes(), frozenAlone);
    EXPECT_EQ(ofCurrent(), current);
    EXPECT_NE(current.at("MST_RESET_CFG"), frozenAlone.at("MST_RESET_CFG"));
    EXPECT_EQ(current.at("A_CFG1"), frozenAlone.at("A_CFG1"));
    EXPECT_EQ(current.count("MEMCELLX0C12"), 0U);
    // The selector is taken in any case of letters.
    EXPECT_EQ(lane_cfg_ip_mgr::getAttributes(instanceName, "SXB", "STABLE"), frozenAlone);
    EXPECT_THAT(lane_cfg_ip_mgr::getMemContent(instanceName, "SXB", "live"), SizeIs(7));
    EXPECT_THAT(lane_cfg_ip_mgr::getMemContent(instanceName, "SXB", "stable"), SizeIs(6));
}

class SxbStableMultiRateRequest : public WorkedFrozenRequest {
  protected:
    SxbStableMultiRateRequest() : WorkedFrozenRequest("sxb_stable_multi_rate") {}
};

TEST_F(SxbStableMultiRateRequest, PacksAndRunsTogetherOrApart) {
    expectPacked();
    EXPECT_THAT(instance().blockVarMap, ElementsAre(SizeIs(2), SizeIs(2), SizeIs(4), SizeIs(4)));
}

TEST_F(SxbStableMultiRateRequest, SolvesTheLcpllForEachRate) {
    // 10312.5 and 14062.5 MHz over 156.25 MHz.
    EXPECT_THAT(fieldOfPasses(0, "INT_LCPLL_FBDIV"), ElementsAre(66U, 90U));
    EXPECT_THAT(fieldOfPasses(0, "INT_LCPLL_REF_DIV"), Each(1U));
    // Twice the clock over the rate: code 1 of a divider of 2.
    EXPECT_THAT(fieldOfPasses(0, "PIPE_CTRL_CFG3.RXOUT_DIV"), Each(1U));
    // Bands below and above 12 GHz.
    EXPECT_THAT(fieldOfPasses(0, "CHCLK_RXPI_CFG.RXPI_BAND_SEL"), ElementsAre(2U, 3U));
}

TEST_F(SxbStableMultiRateRequest, DividesTheRpllForDataByEighty) {
    // 5000 MHz is 40 times 125 MHz, which the list for data has as 80 over 2.
    EXPECT_THAT(fieldOfPasses(2, "INT_RPLL_FBDIV"), Each(80U));
    EXPECT_THAT(fieldOfPasses(2, "INT_RPLL_REF_DIV"), Each(2U));
    // Transmit rate outer, receive rate inner: twice 5 GHz over 5 and 2.5 Gb/s.
    EXPECT_THAT(fieldOfPasses(2, "PIPE_CTRL_CFG3.TXOUT_DIV"), ElementsAre(1U, 1U, 2U, 2U));
    EXPECT_THAT(fieldOfPasses(2, "PIPE_CTRL_CFG3.RXOUT_DIV"), ElementsAre(1U, 2U, 1U, 2U));
}

TEST_F(SxbStableMultiRateRequest, HasTheWordsOfBothDuals) {
    // The second dual's LCPLL keeps the 90 of the pass before.
    EXPECT_EQ(word("A_CFG1"), feedbackWord(66, idleDivider, 90, 80));
    EXPECT_EQ(word("A_CFG3"), 1UL << 4);
    EXPECT_EQ(word("A_CFG4"), 1UL << 27);
    EXPECT_EQ(word("A_CFG5"), 0U);
    // Lanes 0 and 1 from the LCPLL, 2 and 3 from the RPLL.
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b0011, 0b1100}));
    EXPECT_EQ(word("MEMCELLX0C12"), memoryCell(1));
    EXPECT_EQ(word("MEMCELLX0F12"), memoryCell(1));
    EXPECT_EQ(word("MEMCELLX0F13"), memoryCell(2));
}

}  // namespace
}  // namespace sable_lanecfg
