#include "families/sxd4/sxd4_vco_candidates.h"

#include "sxd4_passes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::DeviceSettings;
using lanecfg_test::sxd4Settings;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::ThrowsMessage;

struct LineCase {
    std::string name;
    double symbolRate;
    std::vector<double> candidates;
};

class Sxd4LineCandidates : public testing::TestWithParam<LineCase> {};

TEST_P(Sxd4LineCandidates, AreTheOscillatorsInRange) {
    const DeviceSettings settings = sxd4Settings();
    EXPECT_EQ(sxd4_vco_candidates(settings).ofSymbolRate(GetParam().symbolRate),
              GetParam().candidates);
}

// From 9.8 Gbaud on the oscillator is half of the symbol rate or the whole, below it is the whole
// or twice it, and the candidate is half of the oscillator; it must be between 9.8 and 14.5 GHz.
INSTANTIATE_TEST_SUITE_P(
    Lines, Sxd4LineCandidates,
    testing::Values(LineCase{"Half", 28.125, {14.0625}}, LineCase{"HalfOfLowest", 19.6, {9.8}},
                    LineCase{"HalfOfHighest", 29.0, {14.5}}, LineCase{"HalfTooHigh", 29.1, {}},
                    LineCase{"HalfWithinSlackAbove", 29.000000001, {14.5000000005}},
                    LineCase{"HalfBeyondSlackAbove", 29.00000001, {}},
                    LineCase{"HalfWithinSlackBelow", 19.599999999, {9.7999999995}},
                    LineCase{"HalfBeyondSlackBelow", 19.59999999, {}},
                    LineCase{"BetweenHalfAndWhole", 17.0, {}}, LineCase{"Whole", 12.0, {12.0}},
                    LineCase{"WholeOfLowest", 9.8, {9.8}}, LineCase{"WholeOfHighest", 14.5, {14.5}},
                    LineCase{"BetweenWholeAndTwice", 9.7, {}},
                    LineCase{"TwiceOfHighest", 7.25, {7.25}}, LineCase{"Twice", 5.0, {5.0}},
                    LineCase{"TwiceTooHigh", 7.3, {}}, LineCase{"TwiceTooLow", 4.8, {}},
                    LineCase{"NoSymbols", 0.0, {}}),
    [](const auto& row) { return row.param.name; });

TEST(Sxd4VcoCandidates, OfAWideOscillatorComeFromTheLowest) {
    const DeviceSettings settings =
        sxd4Settings({{"FLCPLLRANGE_MIN", {"1"}}, {"FLCPLLRANGE_MAX", {"100"}}});
    EXPECT_THAT(sxd4_vco_candidates(settings).ofSymbolRate(20.0), ElementsAre(10.0, 20.0));
}

TEST(Sxd4VcoCandidates, BelowTheHalvingLimitAreHalfOfTheOscillator) {
    const DeviceSettings settings = sxd4Settings(
        {{"FLCPLLRANGE_MIN", {"1"}}, {"FLCPLLRANGE_MAX", {"30"}}, {"FSXDLCRANGE_MIN", {"30"}}});
    // Oscillators of 20 and 40 GHz.
    EXPECT_THAT(sxd4_vco_candidates(settings).ofSymbolRate(20.0), ElementsAre(10.0));
}

TEST(Sxd4VcoCandidates, KeepTheHalvingLimitApartFromTheRange) {
    const DeviceSettings settings =
        sxd4Settings({{"FLCPLLRANGE_MIN", {"5"}}, {"FSXDLCRANGE_MIN", {"12"}}});
    const sxd4_vco_candidates candidates(settings);
    // Below 12 Gbaud the oscillator is the whole of 11, since twice is too high; above, half of 13
    // and the whole are in range.
    EXPECT_THAT(candidates.ofSymbolRate(11.0), ElementsAre(5.5));
    EXPECT_THAT(candidates.ofSymbolRate(13.0), ElementsAre(6.5, 13.0));
    // The whole of 5 and twice; of 4.5 only twice.
    EXPECT_THAT(candidates.ofSymbolRate(5.0), ElementsAre(2.5, 5.0));
    EXPECT_THAT(candidates.ofSymbolRate(4.5), ElementsAre(4.5));
}

struct BadNumberCase {
    std::string name;
    double number;
};

void PrintTo(const BadNumberCase& row, std::ostream* output) {
    *output << row.name;
}

class Sxd4BadNumber : public testing::TestWithParam<BadNumberCase> {
  protected:
    const DeviceSettings settings_ = sxd4Settings();
    const sxd4_vco_candidates candidates_{settings_};
};

TEST_P(Sxd4BadNumber, AsSymbolRateHasNoCandidates) {
    EXPECT_THAT(candidates_.ofSymbolRate(GetParam().number), IsEmpty());
}

TEST_P(Sxd4BadNumber, AsOutputClockHasNoCandidates) {
    EXPECT_THAT(candidates_.ofOutputClock(GetParam().number, 0, 28.125), IsEmpty());
    EXPECT_THAT(candidates_.ofOutputClock(GetParam().number, 1, 28.125), IsEmpty());
}

TEST_P(Sxd4BadNumber, AsSymbolRateBesideAnOutputClockHasNoCandidates) {
    EXPECT_THAT(candidates_.ofOutputClock(703.125, 0, GetParam().number), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Numbers, Sxd4BadNumber,
    testing::Values(BadNumberCase{"NoNumber", std::numeric_limits<double>::quiet_NaN()},
                    BadNumberCase{"Infinite", std::numeric_limits<double>::infinity()},
                    BadNumberCase{"NegativelyInfinite", -std::numeric_limits<double>::infinity()},
                    BadNumberCase{"Negative", -28.125}, BadNumberCase{"Zero", 0.0}),
    [](const auto& row) { return row.param.name; });

TEST(Sxd4VcoCandidates, OfAnOutputClockComeByDividerAndDoubling) {
    const DeviceSettings settings = sxd4Settings();
    // 0.3515625 times 40, 64, 80 and 128, and twice each: the inputs 28.125, 22.5 and 28.125 have
    // halves in range.
    EXPECT_THAT(sxd4_vco_candidates(settings).ofOutputClock(703.125, 0, 28.125),
                ElementsAre(14.0625, 11.25, 14.0625));
}

TEST(Sxd4VcoCandidates, OfAnOutputClockBesideNrzHaveTheWholeClock) {
    const DeviceSettings settings = sxd4Settings();
    EXPECT_THAT(sxd4_vco_candidates(settings).ofOutputClock(351.5625, 1, 28.125),
                ElementsAre(14.0625, 11.25, 14.0625));
}

TEST(Sxd4VcoCandidates, OfAnOutputClockKeepToTwiceTheSymbolRate) {
    const DeviceSettings settings = sxd4Settings();
    // 22.5 is twice 11.25, 28.125 more.
    EXPECT_THAT(sxd4_vco_candidates(settings).ofOutputClock(703.125, 0, 11.25), ElementsAre(11.25));
}

TEST(Sxd4VcoCandidates, OfAnOutputClockKeepToATwentiethOfTheSymbolRate) {
    const DeviceSettings settings = sxd4Settings();
    const sxd4_vco_candidates candidates(settings);
    EXPECT_THAT(candidates.ofOutputClock(703.125, 0, 450.0), ElementsAre(14.0625, 11.25, 14.0625));
    EXPECT_THAT(candidates.ofOutputClock(703.125, 0, 450.1), ElementsAre(14.0625, 14.0625));
}

TEST(Sxd4VcoCandidates, OfAnOutputClockBesideNoSymbolsAreNone) {
    const DeviceSettings settings = sxd4Settings();
    EXPECT_THAT(sxd4_vco_candidates(settings).ofOutputClock(703.125, 0, 0.0), IsEmpty());
}

TEST(Sxd4VcoCandidates, InCommonAreAscendingAndOnce) {
    EXPECT_THAT(commonCandidates({{3.0, 1.0, 3.0}, {1.0, 2.0, 3.0}}), ElementsAre(1.0, 3.0));
    EXPECT_THAT(commonCandidates({{1.0}, {}}), IsEmpty());
}

TEST(Sxd4VcoCandidates, OfOneUseStayAsTheyAre) {
    EXPECT_THAT(commonCandidates({{3.0, 1.0, 3.0}}), ElementsAre(3.0, 1.0, 3.0));
}

TEST(Sxd4VcoCandidates, OfNoUseAreNone) {
    EXPECT_THAT(commonCandidates({}), IsEmpty());
}

class Sxd4MissingLimit : public testing::TestWithParam<std::string> {};

TEST_P(Sxd4MissingLimit, IsInvalidForALine) {
    DeviceSettings settings = sxd4Settings();
    settings.erase(GetParam());
    const auto candidates = [&settings] { sxd4_vco_candidates(settings).ofSymbolRate(28.125); };
    EXPECT_THAT(candidates,
                ThrowsMessage<std::invalid_argument>("device limit " + GetParam() + " is missing"));
    settings[GetParam()] = {"many"};
    EXPECT_THAT(candidates, ThrowsMessage<std::invalid_argument>("device limit " + GetParam() +
                                                                 " is no number: \"many\""));
}

INSTANTIATE_TEST_SUITE_P(Limits, Sxd4MissingLimit,
                         testing::Values("FLCPLLRANGE_MIN", "FLCPLLRANGE_MAX", "FSXDLCRANGE_MIN"),
                         [](const auto& row) { return row.param; });

TEST(Sxd4VcoCandidates, OfAnOutputClockNeedNoHalvingLimit) {
    DeviceSettings settings = sxd4Settings();
    settings.erase("FSXDLCRANGE_MIN");
    EXPECT_THAT(sxd4_vco_candidates(settings).ofOutputClock(703.125, 0, 11.25), ElementsAre(11.25));
    settings.erase("FLCPLLRANGE_MAX");
    EXPECT_THROW(sxd4_vco_candidates(settings).ofOutputClock(703.125, 0, 11.25),
                 std::invalid_argument);
}

TEST(Sxd4VcoCandidates, AreAskedOfAnInstanceToo) {
    const auto instance = lanecfg_test::sxd4Instance({});
    EXPECT_THAT(instance->VCO_FrequencyCalculation(28.125), ElementsAre(14.0625));
    EXPECT_THAT(instance->VCO_FrequencyProgDivCalculation(703.125, 0, 11.25), ElementsAre(11.25));
    EXPECT_THAT(lane_cfg_sxd4_instance::mainIntersectionLogic({{2.0, 1.0}, {1.0}}),
                ElementsAre(1.0));
}

}  // namespace
}  // namespace sable_lanecfg
