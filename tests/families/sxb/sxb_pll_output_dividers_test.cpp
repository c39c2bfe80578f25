#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

struct OutputDividerCase {
    std::string name;
    std::string pll;
    double lcpllClock;
    double rpllClock;
    double lineRate;
    double expected;
};

void PrintTo(const OutputDividerCase& row, std::ostream* output) {
    *output << row.name;
}

class SxbPllOutputDivider : public testing::TestWithParam<OutputDividerCase> {
  protected:
    /// Both sides as the case says but for the other one's PLL and rate.
    double divider(const std::string& side, const std::string& otherSide) {
        RuleAlone rule("PLL output dividers");
        rule.set({{"INT_LCPLL_PLLCLKOUT", GetParam().lcpllClock},
                  {"INT_RPLL_PLLCLKOUT", GetParam().rpllClock},
                  {side + "_PLL_TYPE", GetParam().pll},
                  {side + "_LINE_RATE", GetParam().lineRate},
                  {otherSide + "_PLL_TYPE", GetParam().pll == "LCPLL" ? "RPLL"s : "LCPLL"s},
                  {otherSide + "_LINE_RATE", 1.25}});
        rule.runPass();
        return rule.valueOf<double>("INT_" + side + "_OUTDIV");
    }
};

TEST_P(SxbPllOutputDivider, OfTheTransmitter) {
    EXPECT_EQ(divider("TX", "RX"), GetParam().expected);
}

TEST_P(SxbPllOutputDivider, OfTheReceiver) {
    EXPECT_EQ(divider("RX", "TX"), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Is, SxbPllOutputDivider,
    testing::Values(
        OutputDividerCase{"TwoWhereTheClockIsTheRate", "LCPLL", 10.3125, 5.0, 10.3125, 2.0},
        OutputDividerCase{"OneWhereTheClockIsHalfTheRate", "LCPLL", 12.5, 5.0, 25.0, 1.0},
        OutputDividerCase{"SixteenOfASlowLine", "LCPLL", 10.0, 5.0, 1.25, 16.0},
        OutputDividerCase{"OfTheRpll", "RPLL", 10.3125, 5.0, 2.5, 4.0},
        OutputDividerCase{"OfTheRpllForAnyOtherWord", "", 10.3125, 5.0, 2.5, 4.0},
        OutputDividerCase{"TwoAndAHalfOnTheLcpll", "LCPLL", 12.5, 5.0, 10.0, 2.5},
        OutputDividerCase{"ThreeForTwoAndAHalfOnTheRpll", "RPLL", 10.0, 12.5, 10.0, 3.0},
        OutputDividerCase{"RoundedUpOnTheLcpll", "LCPLL", 13.0, 5.0, 10.0, 3.0},
        OutputDividerCase{"RoundedDownOnTheLcpll", "LCPLL", 12.0, 5.0, 10.0, 2.0},
        OutputDividerCase{"HalfRoundedAwayFromZeroOnTheLcpll", "LCPLL", 9.0, 5.0, 4.0, 5.0},
        OutputDividerCase{"HalfRoundedAwayFromZeroOnTheRpll", "RPLL", 9.0, 7.0, 4.0, 4.0},
        OutputDividerCase{"OneOfAnUnsolvedLcpll", "LCPLL", 0.0, 5.0, 10.0, 1.0},
        OutputDividerCase{"OneOfAnUnsolvedRpll", "RPLL", 10.0, 0.0, 10.0, 1.0},
        OutputDividerCase{"OneWhereTheRatioRoundsToZero", "LCPLL", 2.0, 5.0, 10.0, 1.0},
        OutputDividerCase{"NotFiniteWithoutALineRate", "LCPLL", 10.0, 5.0, 0.0, INFINITY}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace lanecfg_test
