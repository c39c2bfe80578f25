#include "support/captured_messages.h"
#include "sxd4_passes.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::CapturedMessages;
using lanecfg_test::DeviceSettings;
using lanecfg_test::Sxd4Passes;
using lanecfg_test::sxd4Settings;
using lanecfg_test::unlimitedSettings;
using lanecfg_test::VariableValues;
using lanecfg_test::with;

/// NRZ in one or both directions, so that the symbol rate is the line rate.
const VariableValues nrz{{"TX_PAM_SEL", 1U}, {"RX_PAM_SEL", 1U}};
const VariableValues nothing = with(nrz, {{"TX_ENABLE", false},
                                          {"RX_ENABLE", false},
                                          {"TX_LINE_RATE", 28.125},
                                          {"RX_LINE_RATE", 28.125}});
const VariableValues transmitterAlone =
    with(nothing,
         {{"TX_ENABLE", true}, {"TX_REFCLK_FREQUENCY", 156.25}, {"RX_REFCLK_FREQUENCY", 100.0}});
const VariableValues receiverAlone =
    with(nothing,
         {{"RX_ENABLE", true}, {"TX_REFCLK_FREQUENCY", 156.25}, {"RX_REFCLK_FREQUENCY", 100.0}});
const VariableValues bothLines = with(nothing, {{"TX_ENABLE", true},
                                                {"RX_ENABLE", true},
                                                {"TX_REFCLK_FREQUENCY", 156.25},
                                                {"RX_REFCLK_FREQUENCY", 100.0}});

VariableValues transmitDivider(double clock) {
    return {{"TXPROGDIV_FREQ_ENABLE", true}, {"TXPROGDIV_FREQ_VAL", clock}};
}

VariableValues receiveDivider(double clock) {
    return {{"RXPROGDIV_FREQ_ENABLE", true}, {"RXPROGDIV_FREQ_VAL", clock}};
}

struct ClockCase {
    std::string name;
    VariableValues parameters;
    double clock;  ///< GHz
    double reference = 156.25;
};

class Sxd4PllClock : public testing::TestWithParam<ClockCase> {};

TEST_P(Sxd4PllClock, IsTheFirstThatAllUsesCanTake) {
    const CapturedMessages messages;
    const Sxd4Passes passes({GetParam().parameters});
    EXPECT_EQ(passes.valueOf<double>("INT_PLL_VCO"), GetParam().clock);
    EXPECT_EQ(passes.valueOf<double>("INT_LCPLL_PLLCLKOUT"), GetParam().clock);
    EXPECT_EQ(passes.valueOf<double>("INT_PLL_REFCLK_FREQUENCY"), GetParam().reference);
    EXPECT_EQ(passes.valueOf<double>("INT_LCPLL_REFCLKFREQ"), GetParam().reference);
    EXPECT_TRUE(messages.texts().empty());
}

// An output clock of 351.5625 MHz beside NRZ can be made from 14.0625 and 11.25 GHz, one of 281.25
// from 11.25 (40 times 0.28125 doubled is 22.5) and 9.0, which is out of range.
INSTANTIATE_TEST_SUITE_P(
    Uses, Sxd4PllClock,
    testing::Values(
        ClockCase{"BothLines", bothLines, 14.0625},
        ClockCase{"TransmitterAlone", with(transmitterAlone, {{"RX_LINE_RATE", 1.0}}), 14.0625},
        ClockCase{"ReceiverAlone", with(receiverAlone, {{"TX_LINE_RATE", 1.0}}), 14.0625, 100.0},
        ClockCase{"NothingInUse", with(nothing, {{"RX_REFCLK_FREQUENCY", 100.0}}), 0.0, 100.0},
        ClockCase{"LinesWithNothingInCommon", with(bothLines, {{"RX_LINE_RATE", 25.78125}}), 0.0},
        ClockCase{"LineWithoutOscillator", with(transmitterAlone, {{"TX_LINE_RATE", 17.0}}), 0.0},
        ClockCase{"LinesAtHalfAndWhole", with(bothLines, {{"RX_LINE_RATE", 14.0625}}), 14.0625},
        ClockCase{"TransmitPam4BesideReceiveNrz",
                  with(bothLines, {{"TX_PAM_SEL", 0U}, {"TX_LINE_RATE", 56.25}}), 14.0625},
        ClockCase{"LineAndItsDivider", with(transmitterAlone, transmitDivider(351.5625)), 14.0625},
        ClockCase{"LineAndDividerWithNothingInCommon",
                  with(transmitterAlone, transmitDivider(281.25)), 0.0},
        ClockCase{"LineAndDividerOfTheOtherDirection",
                  with(transmitterAlone, receiveDivider(281.25)), 0.0},
        ClockCase{"OneDividerAloneInItsOwnOrder", with(nothing, transmitDivider(351.5625)),
                  14.0625},
        ClockCase{"ReceiveDividerAloneInItsOwnOrder", with(nothing, receiveDivider(351.5625)),
                  14.0625},
        ClockCase{"TwoDividersFromTheLowest",
                  with(with(nothing, transmitDivider(351.5625)), receiveDivider(351.5625)), 11.25},
        ClockCase{"DividersOfTwoClocks",
                  with(with(nothing, transmitDivider(351.5625)), receiveDivider(281.25)), 11.25},
        ClockCase{"ADividerGoesByItsOwnPamSelection",
                  with(with(with(nothing, transmitDivider(703.125)), receiveDivider(281.25)),
                       {{"TX_PAM_SEL", 0U}, {"TX_LINE_RATE", 56.25}}),
                  11.25},
        ClockCase{"AReceiveDividerGoesByItsOwnPamSelection",
                  with(with(with(nothing, transmitDivider(281.25)), receiveDivider(703.125)),
                       {{"RX_PAM_SEL", 0U}, {"RX_LINE_RATE", 56.25}}),
                  11.25},
        // 22.5 GHz at the divider is more than twice 11 Gbaud.
        ClockCase{"ADividerGoesByItsOwnSymbolRate",
                  with(with(nothing, transmitDivider(351.5625)), {{"TX_LINE_RATE", 11.0}}), 0.0},
        ClockCase{"AReceiveDividerGoesByItsOwnSymbolRate",
                  with(with(nothing, receiveDivider(351.5625)), {{"RX_LINE_RATE", 11.0}}), 0.0},
        ClockCase{"AllFour",
                  with(with(bothLines, transmitDivider(351.5625)), receiveDivider(351.5625)),
                  14.0625}),
    [](const auto& row) { return row.param.name; });

TEST(Sxd4SymbolRate, IsHalfTheLineRateForPam4Alone) {
    const Sxd4Passes passes(
        {{{"TX_PAM_SEL", 0U}, {"TX_LINE_RATE", 56.25}, {"RX_PAM_SEL", 1U}, {"RX_LINE_RATE", 28.05}},
         {{"TX_PAM_SEL", 2U},
          {"TX_LINE_RATE", 56.25},
          {"RX_PAM_SEL", 0U},
          {"RX_LINE_RATE", 28.05}}});
    EXPECT_EQ(passes.valueOf<double>("INT_TX_BAUD_RATE", 0), 28.125);
    EXPECT_EQ(passes.valueOf<double>("INT_RX_BAUD_RATE", 0), 28.05);
    EXPECT_EQ(passes.valueOf<double>("INT_TX_BAUD_RATE", 1), 56.25);
    EXPECT_EQ(passes.valueOf<double>("INT_RX_BAUD_RATE", 1), 14.025);
}

/// The rate of a PLL clock (GHz) beside the text of the lowest oscillator. The oscillator runs at
/// twice the clock, so the clock may lie below.
std::string rateOf(double clock, const std::string& lowest) {
    const Sxd4Passes passes({with(transmitterAlone, {{"TX_LINE_RATE", 2.0 * clock}})},
                            sxd4Settings({{"FLCPLLRANGE_MIN", {lowest}},
                                          {"FLCPLLRANGE_MAX", {"30"}},
                                          {"FSXDLCRANGE_MIN", {"30"}}}));
    EXPECT_EQ(passes.valueOf<double>("INT_LCPLL_PLLCLKOUT"), clock);
    return passes.valueOf<std::string>("INT_LCPLLCLKOUTRATE");
}

TEST(Sxd4ClockRate, IsFullFromTheLowestOscillatorOn) {
    EXPECT_EQ(rateOf(10.0, "10"), "FULL");
    EXPECT_EQ(rateOf(10.0, "10.0000000005"), "FULL");
}

TEST(Sxd4ClockRate, IsHalfJustBeyondTheSlackOfTheLowestOscillator) {
    EXPECT_EQ(rateOf(10.0, "10.000000002"), "HALF");
}

TEST(Sxd4ClockRate, IsHalfBelowTheLowestOscillator) {
    const Sxd4Passes passes({with(transmitterAlone, {{"TX_LINE_RATE", 5.15625}}), nothing});
    EXPECT_EQ(passes.valueOf<double>("INT_LCPLL_PLLCLKOUT", 0), 5.15625);
    EXPECT_EQ(passes.valueOf<std::string>("INT_LCPLLCLKOUTRATE", 0), "HALF");
    EXPECT_EQ(passes.number("PLL_CFG0.LCPLLCLKOUT_RATE", 0), 0U);
    EXPECT_EQ(passes.valueOf<std::string>("INT_LCPLLCLKOUTRATE", 1), "HALF");
}

TEST(Sxd4ClockRate, StandsInItsField) {
    EXPECT_EQ(Sxd4Passes({bothLines}).number("PLL_CFG0.LCPLLCLKOUT_RATE"), 1U);
}

TEST(Sxd4ClockRate, NeedsTheLowestOscillatorEvenWithNothingInUse) {
    EXPECT_THROW(Sxd4Passes({nothing}, sxd4Settings({{"FLCPLLRANGE_MIN", {}}})),
                 std::invalid_argument);
}

TEST(Sxd4OutputDividers, AreTwiceTheClockOverTheSymbolRate) {
    const Sxd4Passes passes({with(bothLines, {{"RX_LINE_RATE", 14.0625}})});
    EXPECT_EQ(passes.number("INT_TX_OUTDIV"), 1U);
    EXPECT_EQ(passes.number("INT_RX_OUTDIV"), 2U);
}

TEST(Sxd4OutputDividers, AreOneWhenNeitherDirectionIsEnabled) {
    const Sxd4Passes passes({nothing});
    EXPECT_EQ(passes.number("INT_TX_OUTDIV"), 1U);
    EXPECT_EQ(passes.number("INT_RX_OUTDIV"), 1U);
}

TEST(Sxd4OutputDividers, OfAnUnusedDirectionIsOneBesideAClock) {
    const Sxd4Passes passes({with(receiverAlone, {{"RX_LINE_RATE", 14.0625}})});
    EXPECT_EQ(passes.number("INT_TX_OUTDIV"), 1U);
    EXPECT_EQ(passes.number("INT_RX_OUTDIV"), 2U);
}

TEST(Sxd4OutputDividers, AreNothingWithoutAClockOrSymbols) {
    const Sxd4Passes passes(
        {with(bothLines, {{"RX_LINE_RATE", 25.78125}}), with(bothLines, {{"TX_LINE_RATE", 0.0}})});
    EXPECT_EQ(passes.number("INT_TX_OUTDIV", 0), 0U);
    EXPECT_EQ(passes.number("INT_RX_OUTDIV", 0), 0U);
    EXPECT_EQ(passes.number("INT_TX_OUTDIV", 1), 0U);
}

struct DividerCase {
    std::string name;
    double clock;      ///< GHz
    double reference;  ///< MHz
    unsigned referenceDivider;
    unsigned feedback;
    unsigned fraction;
};

void PrintTo(const DividerCase& row, std::ostream* output) {
    *output << row.name;
}

class Sxd4FeedbackDivider : public testing::TestWithParam<DividerCase> {
  protected:
    /// The PLL runs at half the symbol rate at its full rate.
    const Sxd4Passes passes{
        {with(transmitterAlone, {{"TX_LINE_RATE", 2.0 * GetParam().clock},
                                 {"TX_REFCLK_FREQUENCY", GetParam().reference}})},
        unlimitedSettings()};
};

TEST_P(Sxd4FeedbackDivider, IsTheFirstThatPassesAndStandsInItsFields) {
    EXPECT_EQ(passes.number("INT_LCPLL_REF_DIV"), GetParam().referenceDivider);
    EXPECT_EQ(passes.number("INT_LCPLL_FBDIV"), GetParam().feedback);
    EXPECT_EQ(passes.number("SDMDATA"), GetParam().fraction);
    EXPECT_EQ(passes.number("A_CFG.A_PLLFBDIV"),
              GetParam().feedback == 0 ? 0 : GetParam().feedback - 2);
    EXPECT_EQ(passes.number("A_SDM_DATA_CFG0.A_SDM_DATA"), GetParam().fraction % 65536);
    EXPECT_EQ(passes.number("A_SDM_DATA_CFG1.A_SDM_DATA"), GetParam().fraction / 65536);
    EXPECT_EQ(passes.number("SDM_CFG0.BYPASS"), GetParam().fraction == 0 ? 1U : 0U);
    const std::vector<unsigned> codes{4, 4, 0, 1, 2, 3};
    EXPECT_EQ(passes.number("PLL_CFG1.LCPLL_REFCLK_DIV"), codes.at(GetParam().referenceDivider));
}

constexpr unsigned half = 8388608;  // of 2^24

// The ratio of clock and reference, times the reference divider, has an integer part of 16 to 160,
// and beside a fraction of 16 to 157.
INSTANTIATE_TEST_SUITE_P(
    Clocks, Sxd4FeedbackDivider,
    testing::Values(
        DividerCase{"Exact", 10.0, 500.0, 1, 20, 0},
        DividerCase{"ExactAtSixteen", 8.0, 500.0, 1, 16, 0},
        DividerCase{"ExactBelowSixteen", 5.0, 500.0, 2, 20, 0},
        DividerCase{"ExactAtEighty", 12.890625, 161.1328125, 1, 80, 0},
        DividerCase{"ExactAboveEighty", 12.65625, 156.25, 1, 81, 0},
        DividerCase{"ExactNinety", 14.0625, 156.25, 1, 90, 0},
        DividerCase{"ExactAtTheHighest", 16.0, 100.0, 1, 160, 0},
        DividerCase{"ExactAboveTheHighest", 20.125, 125.0, 0, 0, 0},
        DividerCase{"Fractional", 12.890625, 156.25, 1, 82, half},
        DividerCase{"FractionalBeforeExactOfALaterDivider", 12.0, 320.0, 1, 37, half},
        DividerCase{"FractionalAtSixteen", 8.25, 500.0, 1, 16, half},
        DividerCase{"FractionalBelowSixteen", 7.75, 500.0, 2, 31, 0},
        DividerCase{"FractionalAtTheHighest", 15.75, 100.0, 1, 157, half},
        DividerCase{"FractionalAboveTheHighest", 15.875, 100.0, 0, 0, 0},
        DividerCase{"FractionOfAThirdDivider", 3.75, 500.0, 3, 22, half},
        // 14 of 33 parts of 2^24, cut off.
        DividerCase{"FractionInBothWords", 13.28125, 161.1328125, 1, 82, 7117606},
        DividerCase{"FourthReferenceDivider", 3.25, 800.0, 4, 16, 4194304},
        DividerCase{"FifthReferenceDivider", 2.625, 800.0, 5, 16, 6815744},
        DividerCase{"BeyondTheFifth", 2.5, 800.0, 0, 0, 0},
        // Reference clocks are above 59.999999 and below 820.000001 MHz behind their divider.
        DividerCase{"SixtyMegahertz", 6.0, 60.0, 1, 100, 0},
        // 5 of 6 parts of a million, a little more, times 2^24 is 13.98.
        DividerCase{"JustBelowSixtyMegahertz", 6.0, 59.9999995, 1, 100, 13},
        DividerCase{"SixtyMegahertzBehindADivider", 1.5, 120.0, 2, 25, 0},
        DividerCase{"LowestReferenceIsOut", 6.0, 59.999999, 0, 0, 0},
        DividerCase{"BelowSixtyBehindADivider", 1.5, 119.0, 0, 0, 0},
        DividerCase{"EightHundredAndTwentyMegahertz", 20.5, 820.0, 1, 25, 0},
        // 25 less 1.52 parts of 10^8, which is a quarter of 2^-24.
        DividerCase{"JustAboveEightHundredAndTwentyMegahertz", 20.5, 820.0000005, 1, 24, 16777215},
        DividerCase{"AboveEightHundredAndTwentyIsDivided", 15.375, 1025.0, 2, 30, 0},
        DividerCase{"NoReference", 10.0, 0.0, 0, 0, 0},
        DividerCase{"NegativeReference", 10.0, -500.0, 0, 0, 0},
        DividerCase{"InfiniteReference", 10.0, std::numeric_limits<double>::infinity(), 0, 0, 0},
        DividerCase{"ReferenceThatIsNoNumber", 10.0, std::numeric_limits<double>::quiet_NaN(), 0, 0,
                    0}),
    [](const auto& row) { return row.param.name; });

TEST(Sxd4FeedbackDividers, HighestReferenceIsOutOfTheFirstDivider) {
    const Sxd4Passes passes(
        {with(transmitterAlone, {{"TX_LINE_RATE", 41.0}, {"TX_REFCLK_FREQUENCY", 820.000001}})},
        unlimitedSettings());
    EXPECT_EQ(passes.number("INT_LCPLL_REF_DIV"), 2U);
}

TEST(Sxd4FeedbackDividers, CountTwiceTheClockAtHalfRate) {
    // 2 times 5.15625 GHz over 156.25 MHz.
    const Sxd4Passes passes({with(transmitterAlone, {{"TX_LINE_RATE", 5.15625}})});
    EXPECT_EQ(passes.number("INT_LCPLL_REF_DIV"), 1U);
    EXPECT_EQ(passes.number("INT_LCPLL_FBDIV"), 66U);
    EXPECT_EQ(passes.number("SDMDATA"), 0U);
}

TEST(Sxd4FeedbackDividers, AreNothingWithoutAClock) {
    const Sxd4Passes passes({nothing});
    EXPECT_EQ(passes.number("INT_LCPLL_REF_DIV"), 0U);
    EXPECT_EQ(passes.number("INT_LCPLL_FBDIV"), 0U);
    EXPECT_EQ(passes.number("A_CFG.A_PLLFBDIV"), 0U);
    EXPECT_EQ(passes.number("SDM_CFG0.BYPASS"), 1U);
}

}  // namespace
}  // namespace sable_lanecfg
