#include "sxb_rule_alone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;
using testing::ThrowsMessage;

const DeviceSettings oscillatorLimits{{"FLCPLLRANGE_MIN", {"8.0"}},
                                      {"FLCPLLRANGE_MAX", {"16.375"}}};

/// What a pass before left; an unsolved PLL keeps it.
VariableValues resultsBefore() {
    return {{"INT_LCPLL_REF_DIV", 7U},
            {"INT_LCPLL_FBDIV", 77U},
            {"INT_LCPLLCLKOUTRATE", "BEFORE"s},
            {"INT_LCPLL_PLLCLKOUT", 7.7},
            {"INT_LCPLL_SDMDATA", 777U}};
}

struct LcpllResult {
    unsigned int referenceDivider;
    unsigned int feedbackDivider;
    double clock;
    std::string rate;
    unsigned int fraction;
};

class SxbPllLcpllSolver : public testing::Test {
  protected:
    void solve(const std::vector<double>& clocks, double referenceClock,
               const DeviceSettings& device = oscillatorLimits,
               const VariableValues& parameters = {{"PCIE_ENABLE", false}}) {
        RuleAlone rule("LCPLL solver", resultsBefore(), device);
        rule.set(with(parameters, {{"INT_LCPLL_PLLCLKOUT_VECTOR", clocks},
                                   {"INT_LCPLL_REFCLKFREQ", referenceClock}}));
        rule.runPass();
        result = {rule.valueOf<unsigned int>("INT_LCPLL_REF_DIV"),
                  rule.valueOf<unsigned int>("INT_LCPLL_FBDIV"),
                  rule.valueOf<double>("INT_LCPLL_PLLCLKOUT"),
                  rule.valueOf<std::string>("INT_LCPLLCLKOUTRATE"),
                  rule.valueOf<unsigned int>("INT_LCPLL_SDMDATA")};
    }

    void expect(const LcpllResult& expected) const {
        EXPECT_EQ(result.referenceDivider, expected.referenceDivider);
        EXPECT_EQ(result.feedbackDivider, expected.feedbackDivider);
        EXPECT_EQ(result.clock, expected.clock);
        EXPECT_EQ(result.rate, expected.rate);
        EXPECT_EQ(result.fraction, expected.fraction);
    }

    void expectUnsolved(const std::string& rate, unsigned int fraction) const {
        expect({7, 77, 7.7, rate, fraction});
    }

    LcpllResult result{};
};

struct LcpllCase {
    std::string name;
    double clock;
    double referenceClock;
    LcpllResult expected;
};

void PrintTo(const LcpllCase& row, std::ostream* output) {
    *output << row.name;
}

class SxbPllLcpllSolution : public SxbPllLcpllSolver,
                            public testing::WithParamInterface<LcpllCase> {};

TEST_P(SxbPllLcpllSolution, OfOneClock) {
    solve({GetParam().clock}, GetParam().referenceClock);
    LcpllResult expected = GetParam().expected;
    expected.clock = GetParam().clock;
    expect(expected);
}

INSTANTIATE_TEST_SUITE_P(
    Is, SxbPllLcpllSolution,
    testing::Values(
        // Whole feedback dividers: the oscillator over the reference clock is 66, 51.5, 40 1/3...
        LcpllCase{"TenGigabitEthernet", 10.3125, 156.25, {1, 66, 0, "FULL", 0}},
        LcpllCase{"HalfRate", 5.15625, 156.25, {1, 66, 0, "HALF", 0}},
        LcpllCase{"HalfRateAtTheLimit", 8.1875, 125.0, {1, 131, 0, "HALF", 0}},
        LcpllCase{"FullRateAboveTheLimit", 8.25, 125.0, {1, 66, 0, "FULL", 0}},
        LcpllCase{"FullRateJustAboveTheLimit", 8.19, 126.0, {1, 65, 0, "FULL", 0}},
        LcpllCase{"ReferenceOverTwo", 10.3, 200.0, {2, 103, 0, "FULL", 0}},
        LcpllCase{"ReferenceOverThree", 12.1, 300.0, {3, 121, 0, "FULL", 0}},
        LcpllCase{"ReferenceOverFour", 10.5, 400.0, {4, 105, 0, "FULL", 0}},
        LcpllCase{"LowestFeedback", 10.4, 800.0, {1, 13, 0, "FULL", 0}},
        LcpllCase{"FeedbackBelowTheLowest", 9.6, 800.0, {2, 24, 0, "FULL", 0}},
        LcpllCase{"HighestFeedback", 10.0, 62.5, {1, 160, 0, "FULL", 0}},
        // 66 and 9 parts in 100000.
        LcpllCase{"WithinTheTolerance", 10.313428125, 156.25, {1, 66, 0, "FULL", 0}},
        // 66.0078125 is 12 parts in 100000 off, and so a fraction of 1 in 128.
        LcpllCase{"OutsideTheTolerance", 8.449, 128.0, {1, 66, 0, "FULL", 131072}},
        // 66.40625, 26.5625 after a first 13.28125, 79.1015625, in parts of 2 to the 24th.
        LcpllCase{"Fraction", 8.5, 128.0, {1, 66, 0, "FULL", 6815744}},
        LcpllCase{"FractionFromSixteenOn", 8.5, 640.0, {2, 26, 0, "FULL", 9437184}},
        // 16.40625; 30.625 after a first 15.3125.
        LcpllCase{"FractionOnTheLowestFeedback", 10.5, 640.0, {1, 16, 0, "FULL", 6815744}},
        LcpllCase{"FractionBelowTheLowestFeedback", 9.8, 640.0, {2, 30, 0, "FULL", 10485760}},
        LcpllCase{"FractionAtHalfRate", 5.0625, 128.0, {1, 79, 0, "HALF", 1703936}},
        // 160.15625: the whole part is the highest divider.
        LcpllCase{"FractionOnTheHighestFeedback", 10.25, 64.0, {1, 160, 0, "FULL", 2621440}}),
    [](const auto& row) { return row.param.name; });

TEST_F(SxbPllLcpllSolver, FirstClockWinsThoughItNeedsTheLargerReferenceDivider) {
    solve({10.3, 10.0}, 200.0);
    expect({2, 103, 10.3, "FULL", 0});
}

TEST_F(SxbPllLcpllSolver, AWholeDividerOfALaterClockWinsOverAFractionOfTheFirst) {
    // 8500 over 156.25 is 54.4.
    solve({8.5, 10.3125}, 156.25);
    expect({1, 66, 10.3125, "FULL", 0});
}

TEST_F(SxbPllLcpllSolver, SecondClockWinsWithAFractionWhereTheFirstIsOutOfLimits) {
    // The oscillator would run at 16.5 for the first; 8500 over 128 is 66.40625 for the second.
    solve({16.5, 8.5}, 128.0);
    expect({1, 66, 8.5, "FULL", 6815744});
}

TEST_F(SxbPllLcpllSolver, AFractionOfTheFirstClockHasTheRateOfThatClock) {
    // The search for whole dividers ended at the second clock, which runs at half rate.
    solve({8.5, 5.05}, 128.0);
    expect({1, 66, 8.5, "FULL", 6815744});
}

TEST_F(SxbPllLcpllSolver, WithoutASolutionDividersStayAndTheLastRateAndFractionStand) {
    // 10500 over 64 is 164.0625; over a quarter of it 656.25.
    solve({10.5}, 64.0);
    expectUnsolved("FULL", 4194304);
}

TEST_F(SxbPllLcpllSolver, WithoutASolutionTheRateIsThatOfTheLastClock) {
    // Both need a feedback divider of 161.
    solve({10.0625, 5.03125}, 62.5);
    expectUnsolved("HALF", 0);
}

TEST_F(SxbPllLcpllSolver, AnEmptyVectorLeavesAllButTheFraction) {
    solve({}, 156.25);
    expectUnsolved("BEFORE", 0);
}

TEST_F(SxbPllLcpllSolver, AReferenceClockOfZeroSolvesNothing) {
    solve({10.3125}, 0.0);
    expectUnsolved("FULL", 0);
}

TEST_F(SxbPllLcpllSolver, PcieAtEightGigabitIgnoresTheFirstClock) {
    solve({10.3, 10.0}, 200.0, oscillatorLimits, {{"PCIE_ENABLE", true}, {"TX_LINE_RATE", 8.0}});
    expect({1, 50, 10.0, "FULL", 0});
}

TEST_F(SxbPllLcpllSolver, PcieAtEightGigabitIgnoresTheFirstClockForAFractionToo) {
    // 8500 over 128 would be 66.40625; 10250 over 128 is 80.078125.
    solve({8.5, 10.25}, 128.0, oscillatorLimits, {{"PCIE_ENABLE", true}, {"TX_LINE_RATE", 8.0}});
    expect({1, 80, 10.25, "FULL", 1310720});
}

TEST_F(SxbPllLcpllSolver, PcieAtAnotherRateTakesTheFirstClock) {
    solve({10.3, 10.0}, 200.0, oscillatorLimits, {{"PCIE_ENABLE", true}, {"TX_LINE_RATE", 16.0}});
    expect({2, 103, 10.3, "FULL", 0});
}

TEST_F(SxbPllLcpllSolver, EightGigabitWithoutPcieTakesTheFirstClock) {
    solve({10.3, 10.0}, 200.0, oscillatorLimits, {{"PCIE_ENABLE", false}, {"TX_LINE_RATE", 8.0}});
    expect({2, 103, 10.3, "FULL", 0});
}

TEST_F(SxbPllLcpllSolver, PcieAtEightGigabitWithOneClockHasNone) {
    solve({10.0}, 200.0, oscillatorLimits, {{"PCIE_ENABLE", true}, {"TX_LINE_RATE", 8.0}});
    expectUnsolved("BEFORE", 0);
}

TEST_F(SxbPllLcpllSolver, PcieAtEightGigabitWithoutClocksIsSafe) {
    solve({}, 200.0, oscillatorLimits, {{"PCIE_ENABLE", true}, {"TX_LINE_RATE", 8.0}});
    expectUnsolved("BEFORE", 0);
}

/// Limits in GHz around an oscillator that only a fraction solves.
struct LimitCase {
    std::string name;
    std::string lowest;
    std::string highest;
    double clock;
    bool isSolved;
};

void PrintTo(const LimitCase& row, std::ostream* output) {
    *output << row.name;
}

class SxbPllLcpllLimits : public SxbPllLcpllSolver,
                          public testing::WithParamInterface<LimitCase> {};

TEST_P(SxbPllLcpllLimits, DecideWhetherAFractionIsTried) {
    solve({GetParam().clock}, 128.0,
          {{"FLCPLLRANGE_MIN", {GetParam().lowest}}, {"FLCPLLRANGE_MAX", {GetParam().highest}}});
    EXPECT_EQ(result.clock, GetParam().isSolved ? GetParam().clock : 7.7);
    EXPECT_EQ(result.fraction != 0, GetParam().isSolved);
}

INSTANTIATE_TEST_SUITE_P(
    Where, SxbPllLcpllLimits,
    testing::Values(LimitCase{"BothEndsAreIncluded", "8.5", "8.5", 8.5, true},
                    LimitCase{"TheLowerEndHasSlack", "8.5000000005", "9", 8.5, true},
                    LimitCase{"TheSlackOfTheLowerEndEnds", "8.500000002", "9", 8.5, false},
                    LimitCase{"TheUpperEndHasSlack", "8", "8.4999999995", 8.5, true},
                    LimitCase{"TheSlackOfTheUpperEndEnds", "8", "8.499999998", 8.5, false},
                    LimitCase{"AHalfRateClockIsDoubled", "10", "10.25", 5.0625, true},
                    LimitCase{"AHalfRateClockIsNotTakenAsItIs", "5", "5.25", 5.0625, false},
                    LimitCase{"TextBehindTheNumberIsIgnored", "8 GHz", "9 GHz", 8.5, true}),
    [](const auto& row) { return row.param.name; });

TEST_F(SxbPllLcpllSolver, OnlyTheFirstOfSeveralLimitsCounts) {
    solve({8.5}, 128.0, {{"FLCPLLRANGE_MIN", {"8", "9"}}, {"FLCPLLRANGE_MAX", {"9", "8"}}});
    expect({1, 66, 8.5, "FULL", 6815744});
}

TEST_F(SxbPllLcpllSolver, AMissingLimitThrowsItsNameWhereAFractionIsNeeded) {
    const auto refuses = [this](const DeviceSettings& device, const std::string& missing) {
        EXPECT_THAT(
            [&] { solve({8.5}, 128.0, device); },
            ThrowsMessage<std::invalid_argument>("device limit " + missing + " is missing"));
    };
    refuses({}, "FLCPLLRANGE_MIN");
    refuses({{"FLCPLLRANGE_MIN", {"8.0"}}}, "FLCPLLRANGE_MAX");
    refuses({{"FLCPLLRANGE_MAX", {"16.0"}}}, "FLCPLLRANGE_MIN");
    refuses({{"FLCPLLRANGE_MIN", {}}, {"FLCPLLRANGE_MAX", {"16.0"}}}, "FLCPLLRANGE_MIN");
}

TEST_F(SxbPllLcpllSolver, ABadLimitThrowsItsNameAndTextWhereAFractionIsNeeded) {
    const auto solveWithin = [this](const std::string& lowest, const std::string& highest) {
        return [this, lowest, highest] {
            solve({8.5}, 128.0, {{"FLCPLLRANGE_MIN", {lowest}}, {"FLCPLLRANGE_MAX", {highest}}});
        };
    };
    EXPECT_THAT(
        solveWithin("low", "16.0"),
        ThrowsMessage<std::invalid_argument>("device limit FLCPLLRANGE_MIN is no number: \"low\""));
    EXPECT_THAT(solveWithin("9.0", ""), ThrowsMessage<std::invalid_argument>(
                                            "device limit FLCPLLRANGE_MAX is no number: \"\""));
    EXPECT_THAT(
        solveWithin("8.0", "1e999"),
        ThrowsMessage<std::out_of_range>("device limit FLCPLLRANGE_MAX is out of range: 1e999"));
}

TEST_F(SxbPllLcpllSolver, LimitsAreNotReadForAWholeDivider) {
    solve({10.3125}, 156.25, {});
    expect({1, 66, 10.3125, "FULL", 0});
}

TEST_F(SxbPllLcpllSolver, LimitsAreNotReadWithoutAClock) {
    solve({}, 156.25, {});
    expectUnsolved("BEFORE", 0);
}

TEST(SxbPllLcpllPasses, ASolutionStaysThroughAPassWithoutClocks) {
    RuleAlone rule("LCPLL solver");
    rule.set({{"PCIE_ENABLE", false},
              {"INT_LCPLL_PLLCLKOUT_VECTOR", std::vector<double>{10.3125}},
              {"INT_LCPLL_REFCLKFREQ", 156.25}});
    rule.runPass();
    rule.set({{"INT_LCPLL_PLLCLKOUT_VECTOR", std::vector<double>()}});
    rule.runPass();
    EXPECT_EQ(rule.valueOf<unsigned int>("INT_LCPLL_FBDIV"), 66U);
    EXPECT_EQ(rule.valueOf<double>("INT_LCPLL_PLLCLKOUT"), 10.3125);
}

}  // namespace
}  // namespace lanecfg_test
