#include "support/worked_request.h"

#include <gmock/gmock.h>

#include <map>
#include <string>

namespace sable_lanecfg {
namespace {

using lanecfg_test::feedbackWord;
using lanecfg_test::idleDivider;
using lanecfg_test::resetWord;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

/// 10GBASE-R on four lanes.
class SxbTenGigabitRequest : public lanecfg_test::WorkedRequest {
  protected:
    SxbTenGigabitRequest() : WorkedRequest("sxb_10gbase_r") {}
};

TEST_F(SxbTenGigabitRequest, PacksWithoutAMessageOfAFault) {
    EXPECT_THAT(instance().packedChannels, IsEmpty());
    EXPECT_THAT(messages.texts(0x20000000), IsEmpty());
    EXPECT_THAT(messages.texts(0x10000000), IsEmpty());
    EXPECT_THAT(messages.texts(0x8000000), IsEmpty());
}

TEST_F(SxbTenGigabitRequest, RunsOnePassForEachLane) {
    EXPECT_THAT(instance().blockVarMap, SizeIs(4));
    EXPECT_THAT(instance().blockVarMap, Each(SizeIs(1)));
}

TEST_F(SxbTenGigabitRequest, SolvesThePllOfEveryLane) {
    // 10312.5 MHz over 156.25 MHz is 66.
    EXPECT_THAT(fieldOfLanes("INT_LCPLL_REF_DIV"), Each(1U));
    EXPECT_THAT(fieldOfLanes("INT_LCPLL_FBDIV"), Each(66U));
    EXPECT_THAT(fieldOfLanes("INT_LCPLL_SDMDATA"), Each(0U));
    EXPECT_THAT(ofLanes<std::string>("INT_LCPLLCLKOUTRATE"), Each("FULL"));
    EXPECT_THAT(ofLanes<double>("INT_LCPLL_PLLCLKOUT"), Each(10.3125));
}

TEST_F(SxbTenGigabitRequest, HasTheFeedbackDividersOfBothDuals) {
    EXPECT_EQ(word("A_CFG1"), feedbackWord(66, idleDivider, 66, idleDivider));
}

TEST_F(SxbTenGigabitRequest, PowersTheRpllsDownAlone) {
    expectRunning({true, false, true, false});
}

TEST_F(SxbTenGigabitRequest, ResetsEveryLaneWithItsLcpll) {
    EXPECT_EQ(word("MST_RESET_CFG"), resetWord({0b1111, 0, 0b1111}));
    EXPECT_EQ(word("CTRL_RSV_CFG0") >> 28, 0U);
}

TEST_F(SxbTenGigabitRequest, SelectsTheReferenceClockInBothDuals) {
    const std::map<std::string, std::string> answer = attributes();
    // R0 has code 1; the second dual sees clocks 1 and 2 in the other order.
    for (const std::string dual : {"HS0_", "HS1_"}) {
        EXPECT_EQ(answer.at(dual + "LCPLL_IPS_REFCLK_SEL"), "1");
        EXPECT_EQ(answer.at(dual + "LCPLL_IPS_PIN_EN"), "0");
        EXPECT_EQ(answer.at(dual + "LCPLL_REFCLK_MAP7 "), "7");
    }
    EXPECT_EQ(answer.at("HS0_LCPLL_REFCLK_MAP1 "), "1");
    EXPECT_EQ(answer.at("HS0_LCPLL_REFCLK_MAP2 "), "2");
    EXPECT_EQ(answer.at("HS1_LCPLL_REFCLK_MAP1 "), "2");
    EXPECT_EQ(answer.at("HS1_RPLL_REFCLK_MAP2 "), "1");
}

TEST_F(SxbTenGigabitRequest, AnswersForEveryRegister) {
    // Beside its units' registers (160 for each of 4 channels, 15 for each of 2 clock groups, 20
    // for the quad) 40 reference clock fields, the list of unchanged registers, and the 175
    // registers of channels and clock groups under their bare names.
    EXPECT_THAT(attributes(), SizeIs(4 * 160 + 2 * 15 + 20 + 40 + 1 + 175));
}

TEST_F(SxbTenGigabitRequest, ReportsTheClocksOfTheCodingLayer) {
    // 10312.5 Mb/s in words of 80 bits.
    EXPECT_THAT(outputClocks(),
                ElementsAre(Pair("CH0_RXOUTCLK", "128.906"), Pair("CH0_TXOUTCLK", "128.906"),
                            Pair("CH1_RXOUTCLK", "128.906"), Pair("CH1_TXOUTCLK", "128.906"),
                            Pair("CH2_RXOUTCLK", "128.906"), Pair("CH2_TXOUTCLK", "128.906"),
                            Pair("CH3_RXOUTCLK", "128.906"), Pair("CH3_TXOUTCLK", "128.906")));
}

TEST_F(SxbTenGigabitRequest, PlacesEveryLaneForItself) {
    for (const char* const name : {"TX_PIPE_POSITION", "RX_PIPE_POSITION",
                                   "TX_CH3_RESETDONE_POSITION", "RX_CH0_SYNCDONE_POSITION"}) {
        EXPECT_THAT(ofLanes<std::string>(name), Each("single")) << name;
    }
}

}  // namespace
}  // namespace sable_lanecfg
