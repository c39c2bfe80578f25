#include "cli/command_line.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

class RefclkCommand : public CommandLine {
  protected:
    static std::vector<std::string> arguments(const std::string& rate, const std::string& refclk,
                                              const std::string& pll) {
        return {"refclk", "--rate", rate, "--refclk", refclk, "--pll", pll};
    }
};

/// A question, and the clock that a PLL makes of it.
struct ClockCase {
    std::string name;
    std::string rate;
    std::string refclk;
    std::string pll;
    double actual;
    bool isFractional;
    double differencePpm;
};

class ReachableClock : public RefclkCommand, public testing::WithParamInterface<ClockCase> {};

TEST_P(ReachableClock, IsTheNearest) {
    const ClockCase& clock = GetParam();
    const nlohmann::json answer = answerOf(arguments(clock.rate, clock.refclk, clock.pll));
    EXPECT_EQ(answer["rate"], std::stod(clock.rate));
    EXPECT_EQ(answer["refclk"], std::stod(clock.refclk));
    EXPECT_EQ(answer["pll"], clock.pll);
    EXPECT_NEAR(answer["actual"].get<double>(), clock.actual, 1e-9);
    EXPECT_EQ(answer["fractional"], clock.isFractional);
    EXPECT_NEAR(answer["difference_ppm"].get<double>(), clock.differencePpm, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(
    Each, ReachableClock,
    testing::Values(
        // 10312.5 / 156.25 = 66.
        ClockCase{"WholeDivider", "10.3125", "156.25", "LCPLL", 156.25, false, 0.0},
        // 10312.5 / 150 = 68.75; twice the clock's period leads to 137.5, a fraction too.
        ClockCase{"FractionOfTheLcpll", "10.3125", "150", "LCPLL", 150.0, true, 0.0},
        // Too fast for fractions: 14050 / 90 is the nearest, 5 / 36 MHz below.
        ClockCase{"NoFractionAtHighRates", "28.1", "156.25", "LCPLL", 14050.0 / 90.0, false,
                  -5.0 / 36.0 / 156.25 * 1e6},
        // 20000 / 160 and 30000 / 160 are both 31.25 MHz away.
        ClockCase{"LowerOneOfTwoAtTheSameDistance", "10", "156.25", "RPLL", 125.0, false,
                  -200'000.0},
        // 12890.625 / 156.25 = 82.5.
        ClockCase{"FractionOfSxd", "25.78125", "156.25", "SXD", 156.25, true, 0.0},
        // Beyond the VCO: 28125 / 160 is as low as it gets.
        ClockCase{"SxdBeyondItsVco", "56.25", "156.25", "SXD", 175.78125, false, 125'000.0}),
    CaseName());

TEST_F(RefclkCommand, WritesTheClockExactlyInText) {
    const ProgramResult result = run(arguments("10.3125", "156.25", "LCPLL"));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output,
              "   RATE  REFCLK  PLL    ACTUAL  FRACTIONAL  DIFFERENCE_PPM\n"
              "10.3125  156.25  LCPLL  156.25  no                     0.0\n");
}

TEST_F(RefclkCommand, WritesCsv) {
    std::vector<std::string> words = arguments("10.3125", "150", "LCPLL");
    words.insert(words.end(), {"--format", "csv"});
    EXPECT_EQ(run(words).output,
              "rate,refclk,pll,actual,fractional,difference_ppm\n"
              "10.3125,150.0,LCPLL,150.0,yes,0.0\n");
}

TEST_F(RefclkCommand, FailsOnALineRateThatThePllDoesNotReach) {
    expectFailure(
        run(arguments("0.1", "156.25", "LCPLL")), 1,
        "ERROR: No reference clock near 156.25 MHz brings the LCPLL to a line rate of 0.1 "
        "Gb/s.");
}

TEST_F(RefclkCommand, TakesNoUnknownPll) {
    expectFailure(run(arguments("10", "100", "lcpll")), 2, "--pll: lcpll not in");
}

TEST_F(RefclkCommand, NeedsAllThree) {
    expectFailure(run({"refclk", "--refclk", "100", "--pll", "LCPLL"}), 2, "--rate is required");
    expectFailure(run({"refclk", "--rate", "10", "--pll", "LCPLL"}), 2, "--refclk is required");
    expectFailure(run({"refclk", "--rate", "10", "--refclk", "100"}), 2, "--pll is required");
}

/// What is no number above 0, for the options of both commands about clocks.
class BadNumber : public RefclkCommand, public testing::WithParamInterface<std::string> {};

TEST_P(BadNumber, IsRefusedAsTheLineRate) {
    expectFailure(run(arguments(GetParam(), "100", "LCPLL")), 2,
                  "--rate: the value must be a number above 0, and is \"" + GetParam() + "\"");
}

TEST_P(BadNumber, IsRefusedAsTheReferenceClock) {
    expectFailure(run(arguments("10", GetParam(), "RPLL")), 2,
                  "--refclk: the value must be a number above 0, and is \"" + GetParam() + "\"");
}

TEST_P(BadNumber, IsRefusedAsTheWidth) {
    expectFailure(run({"outclk-list", "--direction", "RX", "--rate", "10", "--pll", "SXD",
                       "--width", GetParam()}),
                  2, "--width: the value must be a number above 0, and is \"" + GetParam() + "\"");
}

INSTANTIATE_TEST_SUITE_P(Each, BadNumber,
                         testing::Values("nan", "inf", "0", "0.0", "-1", "-0.5", "fast", "10GHz",
                                         "1e999", "0x10", " 10"),
                         [](const auto& test) { return "Number" + std::to_string(test.index); });

TEST_F(RefclkCommand, TakesNoEmptyNumber) {
    expectFailure(run({"refclk", "--rate=", "--refclk", "100", "--pll", "LCPLL"}), 2, "--rate");
}

}  // namespace
}  // namespace lanecfg_test
