#include "cli/command_line.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;

class OutclkListCommand : public CommandLine {
  protected:
    static std::vector<std::string> arguments(const std::vector<std::string>& options) {
        std::vector<std::string> all = {"outclk-list"};
        all.insert(all.end(), options.begin(), options.end());
        return all;
    }
    std::vector<double> clocks(const std::vector<std::string>& options) const {
        return answerOf(arguments(options)).get<std::vector<double>>();
    }
    void expectUsageFault(const std::vector<std::string>& options,
                          const std::string& message) const {
        expectFailure(run(arguments(options)), 2, message);
    }
};

TEST_F(OutclkListCommand, OffersTheReceiverItsUserClockAndItsMultiples) {
    // 10312.5 / 32 = 322.265625; four times that is beyond 1000 MHz.
    EXPECT_THAT(
        clocks({"--direction", "RX", "--rate", "10.3125", "--pll", "LCPLL", "--width", "32"}),
        ElementsAre(322.265625, 644.53125));
}

TEST_F(OutclkListCommand, OffersTheTransmitterTheSameBehindItsOwnPll) {
    EXPECT_THAT(
        clocks({"--direction", "TX", "--rate", "10.3125", "--pll", "LCPLL", "--width", "32"}),
        ElementsAre(322.265625, 644.53125));
}

TEST_F(OutclkListCommand, CountsTheBitsOfTheEncoding) {
    // 32 bits are 40 on the line: 10000 / 40 = 250, and 1000 MHz is still offered.
    EXPECT_THAT(clocks({"--direction", "RX", "--rate", "10", "--pll", "LCPLL", "--width", "32",
                        "--encoding", "8B10B"}),
                ElementsAre(250.0, 500.0, 1000.0));
}

TEST_F(OutclkListCommand, HalvesTheClockAroundTheBuffer) {
    // Behind the halving 1000 MHz would need the first divider at 2.5.
    EXPECT_THAT(clocks({"--direction", "RX", "--rate", "10", "--pll", "LCPLL", "--width", "40",
                        "--buffer-mode", "0"}),
                ElementsAre(250.0, 500.0));
}

TEST_F(OutclkListCommand, SearchesAnRpllThatRunsNoLine) {
    EXPECT_THAT(clocks({"--direction", "TX", "--rate", "10", "--pll", "LCPLL", "--width", "40",
                        "--source", "RPLL", "--rx-pll", "LCPLL", "--refclk", "100"}),
                testing::Each(testing::AnyOf(DoubleNear(250.0, 1e-6), DoubleNear(500.0, 1e-6),
                                             DoubleNear(1000.0, 1e-6))));
}

TEST_F(OutclkListCommand, FindsClocksOfAnRpllThatRunsNoLine) {
    // 50 times 100 MHz, divided by 5 and 4.
    EXPECT_THAT(clocks({"--direction", "TX", "--rate", "10", "--pll", "LCPLL", "--width", "40",
                        "--source", "RPLL", "--refclk", "100", "--rx-pll", "LCPLL"}),
                testing::Contains(250.0));
}

TEST_F(OutclkListCommand, NeedsTheReferenceClockOfAnRpllThatRunsNoLine) {
    expectUsageFault({"--direction", "TX", "--rate", "10", "--pll", "LCPLL", "--width", "40",
                      "--source", "RPLL"},
                     "Give it with --refclk");
}

TEST_F(OutclkListCommand, OffersNothingWhereTheReceiverHasTheRpll) {
    EXPECT_THAT(clocks({"--direction", "TX", "--rate", "10", "--pll", "LCPLL", "--width", "40",
                        "--source", "RPLL", "--rx-pll", "RPLL"}),
                ElementsAre());
}

TEST_F(OutclkListCommand, DividesTheClockOfSxdByTheDividersOfNrz) {
    // 12890.625 / 32 and / 16; 25781.25 / 64 = 402.83203125.
    EXPECT_THAT(
        clocks({"--direction", "TX", "--rate", "25.78125", "--pll", "SXD", "--width", "64"}),
        ElementsAre(402.83203125, 805.6640625));
}

TEST_F(OutclkListCommand, DividesTheClockOfSxdByTheDividersOfPam4) {
    // 13281.25 / 40 and / 20; 53125 / 160 = 332.03125.
    EXPECT_THAT(clocks({"--direction", "TX", "--rate", "53.125", "--pll", "SXD", "--width", "160",
                        "--modulation", "PAM4"}),
                ElementsAre(332.03125, 664.0625));
}

TEST_F(OutclkListCommand, SaysSoWhenNothingIsOffered) {
    // The receiver takes the VCO clock from the line rate, which is beyond it here.
    const ProgramResult result = run(arguments({"--direction", "RX", "--rate", "53.125", "--pll",
                                                "SXD", "--width", "160", "--modulation", "PAM4"}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "No output clock is offered.\n");
}

TEST_F(OutclkListCommand, WritesTextAndCsv) {
    const std::vector<std::string> options = {"--direction", "RX",    "--rate",  "10.3125",
                                              "--pll",       "LCPLL", "--width", "32"};
    EXPECT_EQ(run(arguments(options)).output,
              "OUTPUT_CLOCK_MHZ\n      322.265625\n       644.53125\n");
    std::vector<std::string> csv = options;
    csv.insert(csv.end(), {"--format", "csv"});
    EXPECT_EQ(run(arguments(csv)).output, "output_clock\n322.265625\n644.53125\n");
}

TEST_F(OutclkListCommand, RefusesOptionsWithoutEffect) {
    const std::vector<std::string> receiver = {"--direction", "RX",    "--rate",  "10",
                                               "--pll",       "LCPLL", "--width", "40"};
    const std::vector<std::string> sxd = {"--direction", "TX",  "--rate",  "25",
                                          "--pll",       "SXD", "--width", "64"};
    const auto with = [](std::vector<std::string> options, const std::string& option,
                         const std::string& value) {
        options.insert(options.end(), {option, value});
        return options;
    };
    expectUsageFault(with(receiver, "--source", "RPLL"), "--source has no effect");
    expectUsageFault(with(receiver, "--rx-pll", "RPLL"), "--rx-pll has no effect");
    expectUsageFault(with(receiver, "--refclk", "100"), "--refclk has no effect");
    expectUsageFault(with(receiver, "--modulation", "NRZ"), "--modulation has no effect");
    expectUsageFault(with(sxd, "--encoding", "RAW"), "--encoding has no effect");
    expectUsageFault(with(sxd, "--buffer-mode", "1"), "--buffer-mode has no effect");
    expectUsageFault(with(sxd, "--source", "RPLL"), "--source has no effect");
}

TEST_F(OutclkListCommand, TakesNoUnknownWords) {
    expectUsageFault({"--direction", "tx", "--rate", "10", "--pll", "LCPLL", "--width", "40"},
                     "--direction: tx not in");
    expectUsageFault({"--direction", "TX", "--rate", "10", "--pll", "QPLL", "--width", "40"},
                     "--pll: QPLL not in");
    expectUsageFault({"--direction", "TX", "--rate", "10", "--pll", "LCPLL", "--width", "40",
                      "--encoding", "8b10b"},
                     "--encoding: 8b10b not in");
}

}  // namespace
}  // namespace lanecfg_test
