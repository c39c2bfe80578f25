#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

/// What a pass before left; an unsolved PLL keeps it.
VariableValues resultsBefore() {
    return {{"INT_RPLL_REF_DIV", 7U},
            {"INT_RPLL_FBDIV", 77U},
            {"INT_RPLL_PLLCLKOUT", 7.7},
            {"INT_RPLL_SDMDATA", 777U},
            {"INT_DOUBLER_EN", 7U}};
}

/// A PLL that only clocks the fabric.
VariableValues freeUse() {
    return {{"RPLL_USED_FOR_SERIAL_DATA_RATE0", false},
            {"TX_IN_USE", true},
            {"RX_IN_USE", true},
            {"TX_PLL_TYPE", "LCPLL"s},
            {"RX_PLL_TYPE", "LCPLL"s}};
}

VariableValues serialUse() {
    return with(freeUse(), {{"RPLL_USED_FOR_SERIAL_DATA_RATE0", true}});
}

struct RpllResult {
    unsigned int referenceDivider;
    unsigned int feedbackDivider;
    double clock;
    unsigned int fraction;
    unsigned int doubler;
};

class SxbPllRpllSolver : public testing::Test {
  protected:
    void solve(const std::vector<double>& clocks, double referenceClock,
               const VariableValues& use) {
        RuleAlone rule("RPLL solver", resultsBefore());
        rule.set(with(
            use, {{"INT_RPLL_PLLCLKOUT_VECTOR", clocks}, {"INT_RPLL_REFCLKFREQ", referenceClock}}));
        rule.runPass();
        result = {rule.valueOf<unsigned int>("INT_RPLL_REF_DIV"),
                  rule.valueOf<unsigned int>("INT_RPLL_FBDIV"),
                  rule.valueOf<double>("INT_RPLL_PLLCLKOUT"),
                  rule.valueOf<unsigned int>("INT_RPLL_SDMDATA"),
                  rule.valueOf<unsigned int>("INT_DOUBLER_EN")};
    }

    void expect(const RpllResult& expected) const {
        EXPECT_EQ(result.referenceDivider, expected.referenceDivider);
        EXPECT_EQ(result.feedbackDivider, expected.feedbackDivider);
        EXPECT_EQ(result.clock, expected.clock);
        EXPECT_EQ(result.fraction, expected.fraction);
        EXPECT_EQ(result.doubler, expected.doubler);
    }

    void expectUnsolved(unsigned int fraction) const { expect({7, 77, 7.7, fraction, 0}); }

    RpllResult result{};
};

/// Every feedback divider that serial data allows; at 200 MHz each step is 0.2 GHz.
struct SerialFeedback {
    unsigned int divider;
    double clock;
};

class SxbPllSerialFeedback : public SxbPllRpllSolver,
                             public testing::WithParamInterface<SerialFeedback> {};

TEST_P(SxbPllSerialFeedback, IsTaken) {
    solve({GetParam().clock}, 200.0, serialUse());
    expect({1, GetParam().divider, GetParam().clock, 0, 0});
}

INSTANTIATE_TEST_SUITE_P(
    Dividers, SxbPllSerialFeedback,
    testing::Values(SerialFeedback{5, 1.0}, SerialFeedback{6, 1.2}, SerialFeedback{7, 1.4},
                    SerialFeedback{8, 1.6}, SerialFeedback{9, 1.8}, SerialFeedback{10, 2.0},
                    SerialFeedback{11, 2.2}, SerialFeedback{12, 2.4}, SerialFeedback{13, 2.6},
                    SerialFeedback{14, 2.8}, SerialFeedback{15, 3.0}, SerialFeedback{16, 3.2},
                    SerialFeedback{17, 3.4}, SerialFeedback{18, 3.6}, SerialFeedback{19, 3.8},
                    SerialFeedback{20, 4.0}, SerialFeedback{21, 4.2}, SerialFeedback{22, 4.4},
                    SerialFeedback{23, 4.6}, SerialFeedback{24, 4.8}, SerialFeedback{25, 5.0},
                    SerialFeedback{80, 16.0}),
    [](const auto& row) { return "Of" + std::to_string(row.param.divider); });

TEST_F(SxbPllRpllSolver, SerialDataTakesALargerReferenceDividerForEighty) {
    // 40 is not in the list, twice 40 is.
    solve({8.0}, 200.0, serialUse());
    expect({2, 80, 8.0, 0, 0});
}

TEST_F(SxbPllRpllSolver, SerialDataHasNothingBetween25And80) {
    // 26 to 104 in steps of 26, and 79 to 316.
    solve({5.2}, 200.0, serialUse());
    expectUnsolved(0);
    solve({15.8}, 200.0, serialUse());
    expectUnsolved(0);
}

TEST_F(SxbPllRpllSolver, SerialDataHasNoFractionalPass) {
    // 5000 over 128 is 39.0625, which a free PLL takes with a fraction.
    solve({5.0}, 128.0, serialUse());
    expectUnsolved(0);
}

TEST_F(SxbPllRpllSolver, SerialDataTakesTheFirstClockThatFits) {
    solve({5.2, 5.0, 4.8}, 200.0, serialUse());
    expect({1, 25, 5.0, 0, 0});
}

/// 5000 over 100 is 50, which only a free PLL takes.
struct UseCase {
    std::string name;
    VariableValues changes;
    bool isSerial;
};

void PrintTo(const UseCase& row, std::ostream* output) {
    *output << row.name;
}

class SxbPllRpllUse : public SxbPllRpllSolver, public testing::WithParamInterface<UseCase> {};

TEST_P(SxbPllRpllUse, DecidesTheFeedbackDividers) {
    solve({5.0}, 100.0, with(freeUse(), GetParam().changes));
    EXPECT_EQ(result.feedbackDivider, GetParam().isSerial ? 77U : 50U);
}

INSTANTIATE_TEST_SUITE_P(
    Where, SxbPllRpllUse,
    testing::Values(
        UseCase{"NothingUsesIt", {}, false},
        UseCase{"TheTransmitterUsesIt", {{"TX_PLL_TYPE", "RPLL"s}, {"RX_IN_USE", false}}, true},
        UseCase{"TheReceiverUsesIt", {{"RX_PLL_TYPE", "RPLL"s}, {"TX_IN_USE", false}}, true},
        UseCase{
            "AnUnusedTransmitterNamesIt", {{"TX_PLL_TYPE", "RPLL"s}, {"TX_IN_USE", false}}, false},
        UseCase{"AnUnusedReceiverNamesIt", {{"RX_PLL_TYPE", "RPLL"s}, {"RX_IN_USE", false}}, false},
        UseCase{"TheFirstRateUsesIt", {{"RPLL_USED_FOR_SERIAL_DATA_RATE0", true}}, true}),
    [](const auto& row) { return row.param.name; });

struct FreeCase {
    std::string name;
    double clock;
    double referenceClock;
    RpllResult expected;
};

void PrintTo(const FreeCase& row, std::ostream* output) {
    *output << row.name;
}

class SxbPllFreeRpll : public SxbPllRpllSolver, public testing::WithParamInterface<FreeCase> {};

TEST_P(SxbPllFreeRpll, TakesOneClock) {
    solve({GetParam().clock}, GetParam().referenceClock, freeUse());
    RpllResult expected = GetParam().expected;
    expected.clock = GetParam().clock;
    expect(expected);
}

INSTANTIATE_TEST_SUITE_P(
    With, SxbPllFreeRpll,
    testing::Values(
        FreeCase{"AWholeDivider", 5.0, 100.0, {1, 50, 0, 0, 0}},
        FreeCase{"TheLowestDivider", 5.0, 1000.0, {1, 5, 0, 0, 0}},
        FreeCase{"LessThanTheLowestDivider", 4.0, 1000.0, {2, 8, 0, 0, 0}},
        FreeCase{"TheHighestDivider", 5.0, 40.0, {1, 125, 0, 0, 0}},
        FreeCase{"TheReferenceOverFour", 4.0625, 250.0, {4, 65, 0, 0, 0}},
        // 126 is too much; half of it goes with the doubled reference.
        FreeCase{"TheDoublerAlone", 5.04, 40.0, {1, 63, 0, 0, 1}},
        // Half of 39.0625 is 19.53125.
        FreeCase{"TheDoublerAndAFraction", 5.0, 128.0, {1, 19, 0, 8912896, 1}},
        // Half of 15.625 is below 8.
        FreeCase{"AFractionAlone", 5.0, 320.0, {1, 15, 0, 10485760, 0}},
        // Half of 16.125 is 8.0625.
        FreeCase{"TheLowestDoubledRatio", 4.03125, 250.0, {1, 8, 0, 1048576, 1}},
        // Half of 16.09375 is 8.046875.
        FreeCase{"TheHighestDoubledReference", 6.4375, 400.0, {1, 8, 0, 786432, 1}},
        // 16.125, not halved.
        FreeCase{"AReferenceTooFastToDouble", 8.0625, 500.0, {1, 16, 0, 2097152, 0}},
        FreeCase{"AReferenceJustTooFastToDouble", 6.579, 408.0, {1, 16, 0, 2097152, 0}},
        // 4.125: twice the whole part is a divider, the fraction is that of the ratio itself.
        FreeCase{"AFractionAndTheReferenceOverTwo", 4.125, 1000.0, {2, 8, 0, 2097152, 0}}),
    [](const auto& row) { return row.param.name; });

TEST_F(SxbPllRpllSolver, AWholeDividerOfALaterClockWinsOverAFractionOfTheFirst) {
    solve({5.0, 6.4}, 128.0, freeUse());
    expect({1, 50, 6.4, 0, 0});
}

TEST_F(SxbPllRpllSolver, AFractionOfTheSecondClockWinsWhereTheFirstHasNone) {
    // 266.6015625 has no divider even halved; 4000 over 32 would be 125, so 4.015625 over 32 it is:
    // 125.48828125, halved 62.744140625.
    solve({8.53125, 4.015625}, 32.0, freeUse());
    expect({1, 62, 4.015625, 12484608, 1});
}

TEST_F(SxbPllRpllSolver, WithoutASolutionDividersStayAndTheLastFractionStands) {
    // Half of 266.6015625 is 133.30078125; the doubler is for winners only.
    solve({8.53125}, 32.0, freeUse());
    expectUnsolved(5046272);
}

TEST_F(SxbPllRpllSolver, AnEmptyVectorLeavesAllButFractionAndDoubler) {
    solve({}, 100.0, freeUse());
    expectUnsolved(0);
    solve({}, 100.0, serialUse());
    expectUnsolved(0);
}

TEST_F(SxbPllRpllSolver, AReferenceClockOfZeroSolvesNothing) {
    solve({5.0}, 0.0, freeUse());
    expectUnsolved(0);
}

}  // namespace
}  // namespace lanecfg_test
