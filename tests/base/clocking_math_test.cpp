#include <lanecfg/rule_engine_utilities.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

namespace {

using sable_lanecfg::rule_engine_utilities;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double fractionScale = 16777216.0;

double lcpllRefclk(double lineRate, double refclk) {
    return rule_engine_utilities::calculateActualRefclk(lineRate, refclk, "LCPLL");
}

double rpllRefclk(double lineRate, double refclk) {
    return rule_engine_utilities::calculateActualRefclk(lineRate, refclk, "RPLL");
}

double sxdRefclk(double lineRate, double refclk) {
    return rule_engine_utilities::calculateActualRefclk_SXD(lineRate, refclk);
}

bool lcpllFraction(double lineRate, double refclk) {
    return rule_engine_utilities::fracNEnable(lineRate, refclk, "LCPLL");
}

bool sxdFraction(double lineRate, double refclk) {
    return rule_engine_utilities::fracNEnable_SXD(lineRate, refclk);
}

// Reference clocks at the usual line rates. M divides the reference clock, D the line, N and a
// fraction F (a word over 2^24) the feedback.

struct RefclkCase {
    double lineRate;
    double wanted;
    double actual;
    bool fractional;
};

std::ostream& operator<<(std::ostream& stream, const RefclkCase& tested) {
    return stream << tested.lineRate << " GHz from " << tested.wanted << " MHz";
}

class LcpllRefclk : public testing::TestWithParam<RefclkCase> {};

TEST_P(LcpllRefclk, isTheNearestAndTellsAFraction) {
    const RefclkCase& tested = GetParam();
    EXPECT_DOUBLE_EQ(lcpllRefclk(tested.lineRate, tested.wanted), tested.actual);
    EXPECT_EQ(lcpllFraction(tested.lineRate, tested.wanted), tested.fractional);
}

INSTANTIATE_TEST_SUITE_P(
    , LcpllRefclk,
    testing::Values(
        // D = 8, VCO 10: 10000 / 125 = 80, whole, so no fraction.
        RefclkCase{1.25, 125.0, 125.0, false},
        // D = 4, VCO 10: 10000 / 100 = 100.
        RefclkCase{2.5, 100.0, 100.0, false},
        // D = 4, VCO 12.5: 12500 / 156.25 = 80.
        RefclkCase{3.125, 156.25, 156.25, false},
        // D = 2, VCO 10: 10000 / 125 = 80.
        RefclkCase{5.0, 125.0, 125.0, false},
        // D = 2, VCO 12.5: 12500 / 156.25 = 80.
        RefclkCase{6.25, 156.25, 156.25, false},
        // D = 1, VCO 8, the lowest: 8000 / 64 = 125. D = 2 would need 250.
        RefclkCase{8.0, 64.0, 64.0, false},
        // D = 1: 8000 / 156.25 = 51.2, and 0.2 * 2^24 = 3355443.2. The first word counts, not that
        // of D = 2, 102.4.
        RefclkCase{8.0, 156.25, 8000.0 / (51.0 + 3355443.0 / fractionScale), true},
        // 9830.4 / 122.88 = 80.
        RefclkCase{9.8304, 122.88, 122.88, false},
        // 9830.4 / 156.25 = 62.91456, and 0.91456 * 2^24 = 15343770.66.
        RefclkCase{9.8304, 156.25, 9830.4 / (62.0 + 15343770.0 / fractionScale), true},
        // 10312.5 / 156.25 = 66.
        RefclkCase{10.3125, 156.25, 156.25, false},
        // 12500 / 156.25 = 80.
        RefclkCase{12.5, 156.25, 156.25, false},
        // VCO 16.375, the highest, and not halved: 16375 / 125 = 131.
        RefclkCase{16.375, 125.0, 125.0, false},
        // 16375 / 156.25 = 104.8, and 0.8 * 2^24 = 13421772.8.
        RefclkCase{16.375, 156.25, 16375.0 / (104.0 + 13421772.0 / fractionScale), true},
        // Halved to 12.890625: 12890.625 / 156.25 = 82.5, and 0.5 * 2^24 is whole. The highest rate
        // with a fraction.
        RefclkCase{25.78125, 156.25, 156.25, true},
        // Halved to 14.025: 14025 / 156.25 = 89.76, but no fraction at this rate. 14025 / 90 =
        // 155.83 is nearer than 14025 / 89 = 157.58.
        RefclkCase{28.05, 156.25, 14025.0 / 90.0, false},
        // Halved to 14.05: 14050 / 156.25 = 89.92, so 14050 / 90.
        RefclkCase{28.1, 156.25, 14050.0 / 90.0, false},
        // Halved to 16.375, the highest VCO: 104.8, and 16375 / 105 = 155.95 is nearer than
        // 16375 / 104 = 157.45.
        RefclkCase{32.75, 156.25, 16375.0 / 105.0, false},
        // Halved to 26.5625, 28.125 and 29: no VCO goes so high.
        RefclkCase{53.125, 156.25, 0.0, false}, RefclkCase{56.25, 156.25, 0.0, false},
        RefclkCase{58.0, 156.25, 0.0, false}));

class RpllRefclk : public testing::TestWithParam<RefclkCase> {};

TEST_P(RpllRefclk, isTheNearestAndNeverFractional) {
    const RefclkCase& tested = GetParam();
    EXPECT_DOUBLE_EQ(rpllRefclk(tested.lineRate, tested.wanted), tested.actual);
    EXPECT_FALSE(rule_engine_utilities::fracNEnable(tested.lineRate, tested.wanted, "RPLL"));
}

INSTANTIATE_TEST_SUITE_P(
    , RpllRefclk,
    testing::Values(
        // D = 8, VCO 5: clocks are 5000 * M / N, and M = 2, N = 80 gives 125.
        RefclkCase{1.25, 125.0, 125.0, false},
        // D = 4, VCO 5: 5000 / 20.
        RefclkCase{2.5, 250.0, 250.0, false},
        // D = 4, VCO 6.25: 6250 * 2 / 80.
        RefclkCase{3.125, 156.25, 156.25, false},
        // D = 2, VCO 5: 5000 / 10.
        RefclkCase{5.0, 500.0, 500.0, false},
        // D = 2, VCO 6.25: 6250 / 20.
        RefclkCase{6.25, 312.5, 312.5, false},
        // D = 1, VCO 4: 4000 / 25 = 160 is 3.75 away, 4000 * 3 / 80 = 150 is 6.25 away.
        RefclkCase{8.0, 156.25, 160.0, false},
        // VCO 4.9152: 4915.2 * 2 / 80.
        RefclkCase{9.8304, 122.88, 122.88, false},
        // VCO 5.15625: 5156.25 * 2 / 80 is 27.3 away, 5156.25 * 3 / 80 = 193.4 is 37.1 away.
        RefclkCase{10.3125, 156.25, 128.90625, false},
        // VCO 6.25: 6250 * 2 / 80.
        RefclkCase{12.5, 156.25, 156.25, false},
        // VCO 8.1875 and more: out of range.
        RefclkCase{16.375, 156.25, 0.0, false}, RefclkCase{25.78125, 156.25, 0.0, false},
        RefclkCase{28.05, 156.25, 0.0, false}, RefclkCase{28.1, 156.25, 0.0, false},
        RefclkCase{32.75, 156.25, 0.0, false}, RefclkCase{53.125, 156.25, 0.0, false},
        RefclkCase{56.25, 156.25, 0.0, false}, RefclkCase{58.0, 156.25, 0.0, false}));

class SxdRefclk : public testing::TestWithParam<RefclkCase> {};

TEST_P(SxdRefclk, isTheNearestAndTellsAFraction) {
    const RefclkCase& tested = GetParam();
    EXPECT_DOUBLE_EQ(sxdRefclk(tested.lineRate, tested.wanted), tested.actual);
    EXPECT_EQ(sxdFraction(tested.lineRate, tested.wanted), tested.fractional);
}

INSTANTIATE_TEST_SUITE_P(
    , SxdRefclk,
    testing::Values(
        // Below the VCO range there is no fraction, but a nearest clock: 1250 * 2 / 16.
        RefclkCase{1.25, 156.25, 156.25, false},
        // 2500 / 16, 3125 / 20, 5000 / 32 and 6250 / 40.
        RefclkCase{2.5, 156.25, 156.25, false}, RefclkCase{3.125, 156.25, 156.25, false},
        RefclkCase{5.0, 156.25, 156.25, false}, RefclkCase{6.25, 156.25, 156.25, false},
        // 8000 * 3 / 154 = 155.84 is 0.41 away, 8000 / 51 = 156.86 is 0.61 away.
        RefclkCase{8.0, 156.25, 24000.0 / 154.0, false},
        // In the VCO range: 62.91456 as above.
        RefclkCase{9.8304, 156.25, 9830.4 / (62.0 + 15343770.0 / fractionScale), true},
        // 10312.5 / 156.25 = 66 and 12500 / 156.25 = 80.
        RefclkCase{10.3125, 156.25, 156.25, false}, RefclkCase{12.5, 156.25, 156.25, false},
        // Halved to 8.1875, below the VCO range: 8187.5 * 3 / 157 = 156.449 is 0.20 away,
        // 8187.5 * 2 / 105 = 155.95 is 0.30 away.
        RefclkCase{16.375, 156.25, 24562.5 / 157.0, false},
        // Halved to 12.890625: 82.5. The word of 82, above 80, enters no list but stays.
        RefclkCase{25.78125, 156.25, 156.25, true},
        // 89.76, and 0.76 * 2^24 = 12750684.16.
        RefclkCase{28.05, 156.25, 14025.0 / (89.0 + 12750684.0 / fractionScale), true},
        // 89.92, and 0.92 * 2^24 = 15435038.72. The highest rate with a fraction.
        RefclkCase{28.1, 156.25, 14050.0 / (89.0 + 15435038.0 / fractionScale), true},
        // Halved to 16.375, above the VCO range: 16375 / 105.
        RefclkCase{32.75, 156.25, 16375.0 / 105.0, false},
        // Halved to 26.5625, 28.125 and 29: even N = 160 is too far from the wanted clock.
        RefclkCase{53.125, 156.25, 26562.5 / 160.0, false},
        RefclkCase{56.25, 156.25, 28125.0 / 160.0, false},
        RefclkCase{58.0, 156.25, 29000.0 / 160.0, false},
        // The same three as symbol rates of PAM4. 13281.25 / 156.25 = 85.
        RefclkCase{26.5625, 156.25, 156.25, false},
        // 14062.5 / 156.25 = 90.
        RefclkCase{28.125, 156.25, 156.25, false},
        // VCO 14.5, the highest: 92.8, but no fraction at this rate, so 14500 / 93.
        RefclkCase{29.0, 156.25, 14500.0 / 93.0, false}));

// Reference clocks: limits and choices

TEST(LcpllRefclkChoice, dropsTheFractionWhenOneSettingNeedsNone) {
    // M = 1: 10250 / 164 = 62.5. M = 2: 125.
    EXPECT_FALSE(lcpllFraction(10.25, 164.0));
    EXPECT_EQ(lcpllRefclk(10.25, 164.0), 164.0);
}

TEST(LcpllRefclkChoice, hasNoFractionAboveTheCeiling) {
    // Halved to 12.890626: 82.5000064.
    EXPECT_TRUE(lcpllFraction(25.78125, 156.25));
    EXPECT_FALSE(lcpllFraction(25.781252, 156.25));
    // 12890.626 / 83 = 155.31 and 12890.626 / 82 = 157.20: both 0.94 away, the former less.
    EXPECT_DOUBLE_EQ(lcpllRefclk(25.781252, 156.25), 12890.626 / 83.0);
}

TEST(LcpllRefclkChoice, takesBothEndsOfTheReferenceClockRange) {
    // 9600 / 160 = 60, and 26.24 halved: 13120 / 16 = 820.
    EXPECT_DOUBLE_EQ(lcpllRefclk(9.6, 50.0), 60.0);
    EXPECT_DOUBLE_EQ(lcpllRefclk(26.24, 900.0), 820.0);
}

TEST(LcpllRefclkChoice, multipliesDividersAndRateBeforeTheUnit) {
    // M = 3: 3 * 9.825 rounds to less than 29.475, so that the feedback divider comes out just
    // below 100 and needs a fraction. 3 * 9825 would give 100 sharp and need none.
    EXPECT_LT(3 * 9.825 * 1000.0 / 294.75, 100.0);
    EXPECT_TRUE(lcpllFraction(9.825, 294.75));
}

TEST(RpllRefclkChoice, takesBothEndsOfTheReferenceClockRange) {
    // 4800 / 80 = 60 and 4100 / 5 = 820.
    EXPECT_DOUBLE_EQ(rpllRefclk(9.6, 50.0), 60.0);
    EXPECT_DOUBLE_EQ(rpllRefclk(8.2, 900.0), 820.0);
}

TEST(RpllRefclkChoice, takesBothEndsOfTheVcoRange) {
    // Only VCO 4 (D = 1) gives 4000 / 17, only VCO 8 (D = 2) gives 8000 * 3 / 80.
    EXPECT_DOUBLE_EQ(rpllRefclk(8.0, 235.0), 4000.0 / 17.0);
    EXPECT_DOUBLE_EQ(rpllRefclk(8.0, 300.0), 300.0);
}

TEST(RpllRefclkChoice, hasNoFeedbackDividerBetween25And80) {
    // VCO 5: N = 50 would give 100; M = 2, N = 80 gives 125, N = 80 alone 62.5.
    EXPECT_EQ(rpllRefclk(10.0, 100.0), 125.0);
}

TEST(RpllRefclkChoice, takesTheLowerOfTwoAtTheSameDistance) {
    // VCO 5: 62.5 (N = 80) and 125 (M = 2, N = 80) are 31.25 away, and nothing is between.
    EXPECT_EQ(rpllRefclk(10.0, 93.75), 62.5);
    // The same for 187.5 (M = 3, N = 80) and 200 (N = 25), though M = 3 comes later.
    EXPECT_EQ(rpllRefclk(10.0, 193.75), 187.5);
}

TEST(RpllRefclkChoice, isWhatEveryOtherPllWordGets) {
    for (const char* word : {"", "lcpll", "LCPLL ", "QPLL"}) {
        EXPECT_EQ(rule_engine_utilities::calculateActualRefclk(10.3125, 156.25, word), 128.90625)
            << word;
        EXPECT_FALSE(rule_engine_utilities::fracNEnable(9.8304, 156.25, word)) << word;
    }
}

TEST(SxdRefclkChoice, goesALittleBeyondTheReferenceClockRange) {
    // 8200.000006 * 2 / 20 is below 820.000001; the next, 8200.00002 * 2 / 20, is not, and the
    // clocks below it come next: 4 / 41.
    EXPECT_DOUBLE_EQ(sxdRefclk(8.200000006, 900.0), 820.0000006);
    EXPECT_DOUBLE_EQ(sxdRefclk(8.20000002, 900.0), 8200.00002 * 4.0 / 41.0);
    // 9599.99992 / 160 is above 59.999999; 9599.9984 / 160 is not, and 9599.9984 / 159 is next.
    EXPECT_DOUBLE_EQ(sxdRefclk(9.59999992, 50.0), 59.9999995);
    EXPECT_DOUBLE_EQ(sxdRefclk(9.5999984, 50.0), 9599.9984 / 159.0);
}

TEST(SxdRefclkChoice, hasANearestClockWithoutAnyVco) {
    EXPECT_EQ(sxdRefclk(58.0, 200.0), 29000.0 / 145.0);
    EXPECT_EQ(lcpllRefclk(58.0, 200.0), 0.0);
}

TEST(SxdFraction, survivesFromAFeedbackDividerTooHighForTheList) {
    // M = 1: 12890.625 / 156.25 = 82.5, above 80; M = 2: 165, out of range.
    EXPECT_TRUE(sxdFraction(25.78125, 156.25));
    EXPECT_EQ(sxdRefclk(25.78125, 156.25), 12890.625 / 82.5);
}

TEST(SxdFraction, isDroppedForTheClockBySettingsThatTheFlagDoesNotList) {
    // M = 1: 11343.75 / 281.25 = 40.33 begins both lists. M = 3: 121 is above 80, so it enters only
    // the list of the clock, where its word of 0 makes the fraction needless. A third rounded down
    // to 24 places would miss the clock by a little.
    EXPECT_TRUE(sxdFraction(11.34375, 281.25));
    EXPECT_EQ(sxdRefclk(11.34375, 281.25), 281.25);
}

TEST(SxdFraction, listsFeedbackDividersUpTo80) {
    // 12045 / 150 = 80.3, and 0.3 * 2^24 = 5033164.8. Were it not listed, the word of M = 2, 160.6,
    // would be the one that stays.
    EXPECT_DOUBLE_EQ(sxdRefclk(12.045, 150.0), 12045.0 / (80.0 + 5033164.0 / fractionScale));
    // M = 3: 30000 / 375 = 80 makes the fraction of M = 1, 26.67, needless.
    EXPECT_FALSE(sxdFraction(10.0, 375.0));
    // M = 2: 20250 / 250 = 81 doesn't do so for that of M = 1, 40.5.
    EXPECT_TRUE(sxdFraction(10.125, 250.0));
}

TEST(SxdFraction, passesOverPreDividedClocksOutOfRange) {
    // M = 3: 42000 / 2625 = 16 would make the fraction needless, but 2625 / 3 = 875 is out of
    // range. M = 4: 56000 / 2625 = 21.33.
    EXPECT_TRUE(sxdFraction(14.0, 2625.0));
    // M = 3: 39600 / 2475 = 16, and 2475 / 3 = 825: the same.
    EXPECT_TRUE(sxdFraction(13.2, 2475.0));
    // M = 3: 16 again, and 2460 / 3 = 820 is in range.
    EXPECT_FALSE(sxdFraction(13.12, 2460.0));
}

TEST(SxdFraction, takesPreDividedClocksOneDigitFurther) {
    // 820 + 2^-18 = 820.0000038 lies between the two limits of 820.000001 and 820.00001, and
    // 820 + 2^-15 = 820.00003 beyond them. Each is reached with M = 3, N = 16.
    const double inside = 820.0 + std::ldexp(1.0, -18);
    const double outside = 820.0 + std::ldexp(1.0, -15);
    EXPECT_FALSE(sxdFraction(16.0 * inside / 1000.0, 3.0 * inside));
    EXPECT_TRUE(sxdFraction(16.0 * outside / 1000.0, 3.0 * outside));
}

// Numbers that make no sense

TEST(ReferenceClock, ofZeroOrLessGivesTheLowestClockWithoutFraction) {
    for (const double refclk : {0.0, -0.0, -156.25}) {
        // 10312.5 / 160, and 5156.25 / 80.
        EXPECT_EQ(lcpllRefclk(10.3125, refclk), 64.453125) << refclk;
        EXPECT_EQ(rpllRefclk(10.3125, refclk), 64.453125) << refclk;
        EXPECT_EQ(sxdRefclk(10.3125, refclk), 64.453125) << refclk;
        EXPECT_FALSE(lcpllFraction(10.3125, refclk)) << refclk;
        EXPECT_FALSE(sxdFraction(10.3125, refclk)) << refclk;
    }
}

TEST(ReferenceClock, thatIsNotFiniteOrTenMillionAwayGivesNone) {
    for (const double refclk : {infinity, -infinity, notANumber, 1e9, -1e9}) {
        EXPECT_EQ(lcpllRefclk(10.3125, refclk), 0.0) << refclk;
        EXPECT_EQ(rpllRefclk(10.3125, refclk), 0.0) << refclk;
        EXPECT_EQ(sxdRefclk(10.3125, refclk), 0.0) << refclk;
        EXPECT_FALSE(lcpllFraction(10.3125, refclk)) << refclk;
        EXPECT_FALSE(sxdFraction(10.3125, refclk)) << refclk;
    }
}

TEST(ReferenceClock, tooSmallForAnIntegerFeedbackDividerGivesNoFraction) {
    // The quotient overflows every integer, or the range of double altogether.
    for (const double refclk : {1e-6, 1e-300, std::numeric_limits<double>::denorm_min()}) {
        EXPECT_EQ(lcpllRefclk(10.3125, refclk), 64.453125) << refclk;
        EXPECT_FALSE(lcpllFraction(10.3125, refclk)) << refclk;
        EXPECT_FALSE(sxdFraction(10.3125, refclk)) << refclk;
    }
}

TEST(LineRate, thatMakesNoSenseGivesNothing) {
    for (const double lineRate : {0.0, -10.3125, infinity, -infinity, notANumber}) {
        EXPECT_EQ(lcpllRefclk(lineRate, 156.25), 0.0) << lineRate;
        EXPECT_EQ(rpllRefclk(lineRate, 156.25), 0.0) << lineRate;
        EXPECT_EQ(sxdRefclk(lineRate, 156.25), 0.0) << lineRate;
        EXPECT_FALSE(lcpllFraction(lineRate, 156.25)) << lineRate;
        EXPECT_FALSE(sxdFraction(lineRate, 156.25)) << lineRate;
    }
}

}  // namespace
