#include "families/common/rule_arithmetic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>

namespace sable_lanecfg {
namespace {

TEST(RuleArithmetic, TruncatedDropsTheFraction) {
    EXPECT_EQ(truncated(0.0), 0U);
    EXPECT_EQ(truncated(0.999999), 0U);
    EXPECT_EQ(truncated(-0.999999), 0U);
    EXPECT_EQ(truncated(66.75), 66U);
    EXPECT_EQ(truncated(4294967295.5), 4294967295U);
}

TEST(RuleArithmetic, TruncatedIsZeroOutOfRangeAndWhereNotFinite) {
    EXPECT_EQ(truncated(-1.0), 0U);
    EXPECT_EQ(truncated(-66.0), 0U);
    EXPECT_EQ(truncated(4294967296.0), 0U);
    EXPECT_EQ(truncated(1e300), 0U);
    EXPECT_EQ(truncated(INFINITY), 0U);
    EXPECT_EQ(truncated(-INFINITY), 0U);
    EXPECT_EQ(truncated(NAN), 0U);
}

TEST(RuleArithmetic, TruncatedIsTheFloorOfAnyNumberInRange) {
    std::mt19937 random(20);
    std::uniform_real_distribution<double> number(0.0, 4294967295.0);
    for (int round = 0; round < 1000; ++round) {
        const double value = number(random);
        EXPECT_EQ(static_cast<double>(truncated(value)), std::floor(value));
    }
}

TEST(RuleArithmetic, QuotientIsThatOfIntegers) {
    EXPECT_EQ(quotient(64, 32, "width"), 2U);
    EXPECT_EQ(quotient(95, 32, "width"), 2U);
    EXPECT_EQ(quotient(31, 32, "width"), 0U);
    EXPECT_EQ(quotient(0, 32, "width"), 0U);
}

TEST(RuleArithmetic, DivisionByZeroNamesTheVariable) {
    try {
        quotient(64, 0, "TX_INT_DATA_WIDTH");
        FAIL() << "nothing was thrown";
    } catch (const std::domain_error& error) {
        EXPECT_EQ(std::string(error.what()), "division by zero: TX_INT_DATA_WIDTH is 0");
    }
}

TEST(RuleArithmetic, CodesAreFoundByTheirKey) {
    constexpr code_table<double, 3> codes{{{1.0, 7}, {2.5, 3}, {-1.0, 9}}};
    EXPECT_EQ(codeOf(codes, 1.0), 7U);
    EXPECT_EQ(codeOf(codes, 2.5), 3U);
    EXPECT_EQ(codeOf(codes, -1.0), 9U);
}

TEST(RuleArithmetic, AKeyThatATableLacksHasCodeZero) {
    constexpr code_table<double, 1> codes{{{1.0, 7}}};
    EXPECT_EQ(codeOf(codes, 2.0), 0U);
    EXPECT_EQ(codeOf(codes, std::numeric_limits<double>::quiet_NaN()), 0U);
}

TEST(RuleArithmetic, TextsHaveCodesToo) {
    constexpr code_table<std::string_view, 2> codes{{{"R0", 1}, {"R1", 2}}};
    EXPECT_EQ(codeOf(codes, std::string("R1")), 2U);
    EXPECT_EQ(codeOf(codes, std::string()), 0U);
}

}  // namespace
}  // namespace sable_lanecfg
