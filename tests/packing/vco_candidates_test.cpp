#include "support/packing_request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace lanecfg_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// The limits are LCPLL 8.0 to 16.375 and RPLL 4.0 to 8.0.
class VcoCandidates : public testing::Test {
  protected:
    std::vector<double> ofRate(const std::string& pll, double lineRate,
                               const std::string& coding = "RAW", unsigned userDataWidth = 32,
                               bool isPair = false) const {
        return request.packing().VCO_FrequencyCalculation(pll, lineRate, coding, 32, userDataWidth,
                                                          isPair);
    }

    std::vector<double> ofDivider(const std::string& pll, double megahertz) const {
        return request.packing().VCO_FrequencyProgDivCalculation(pll, megahertz);
    }

    PackingRequest request;
};

TEST_F(VcoCandidates, OfTheRpllAreHalfOfEachMultipleInItsRange) {
    EXPECT_THAT(ofRate("RPLL", 10.3125), ElementsAre(5.15625));
    EXPECT_THAT(ofRate("RPLL", 4.0), ElementsAre(4.0, 8.0));
    EXPECT_THAT(ofRate("RPLL", 0.5), ElementsAre(4.0));
    EXPECT_THAT(ofRate("RPLL", 16.5), IsEmpty());
}

TEST_F(VcoCandidates, OfTheLcpllComeFromTheWholeAndTheHalfRate) {
    EXPECT_THAT(ofRate("LCPLL", 10.3125), ElementsAre(5.15625, 10.3125));
    EXPECT_THAT(ofRate("LCPLL", 2.5), ElementsAre(5.0, 10.0));
}

TEST_F(VcoCandidates, CanHoldAFrequencyFromBothWalks) {
    EXPECT_THAT(ofRate("LCPLL", 8.1875), ElementsAre(4.09375, 8.1875, 8.1875, 16.375));
}

TEST_F(VcoCandidates, LineRateOf16_375CountsAsLowAndAboveItAsHigh) {
    EXPECT_THAT(ofRate("LCPLL", 16.375), ElementsAre(8.1875, 8.1875, 16.375));
    EXPECT_THAT(ofRate("LCPLL", 16.5), ElementsAre(8.25));
    EXPECT_THAT(ofRate("LCPLL", 25.78125), ElementsAre(12.890625));
}

TEST_F(VcoCandidates, AsynchronousCodingAtDoubleWidthTestsTheHalvedClock) {
    EXPECT_THAT(ofRate("LCPLL", 5.0, "64B66B_ASYNC", 64), ElementsAre(10.0, 10.0));
    EXPECT_THAT(ofRate("LCPLL", 5.0, "64B66B_ASYNC", 32), ElementsAre(5.0, 10.0));
    EXPECT_THAT(ofRate("LCPLL", 5.0, "64B66B_ASYNC", 96), ElementsAre(5.0, 10.0));
    EXPECT_THAT(ofRate("LCPLL", 5.0, "64B66B", 64), ElementsAre(5.0, 10.0));
}

TEST_F(VcoCandidates, WidthsAreDividedAsIntegers) {
    EXPECT_THAT(ofRate("LCPLL", 5.0, "64B66B_ASYNC", 66), ElementsAre(10.0, 10.0));
    EXPECT_THAT(ofRate("LCPLL", 5.0, "64B66B_ASYNC", 63), ElementsAre(5.0, 10.0));
}

TEST_F(VcoCandidates, LineRate10_3125RawOnTheLcpllWithTheFlagOnYieldsOnlyTheDivider2_5) {
    // Both walks find it.
    EXPECT_THAT(ofRate("LCPLL", 10.3125, "RAW", 32, true), ElementsAre(12.890625, 12.890625));
}

TEST_F(VcoCandidates, TheFlagCountsForNothingElse) {
    EXPECT_THAT(ofRate("LCPLL", 10.3125, "8B10B", 32, true), ElementsAre(5.15625, 10.3125));
    EXPECT_THAT(ofRate("LCPLL", 25.78125, "RAW", 32, true), ElementsAre(12.890625));
    EXPECT_THAT(ofRate("LCPLL", 10.3125000001, "RAW", 32, true), SizeIs(2));
    EXPECT_THAT(ofRate("RPLL", 10.3125, "RAW", 32, true), ElementsAre(5.15625));
}

TEST_F(VcoCandidates, OfTheDividedPairRateMustStillBeInRange) {
    request.limits["FLCPLLRANGE_MAX"] = {"12.0"};
    EXPECT_THAT(ofRate("LCPLL", 10.3125, "RAW", 32, true), IsEmpty());
}

TEST_F(VcoCandidates, UnknownPllHasNone) {
    EXPECT_THAT(ofRate("PLL", 10.3125), IsEmpty());
    EXPECT_THAT(ofRate("", 10.3125), IsEmpty());
    EXPECT_THAT(ofDivider("lcpll", 500.0), IsEmpty());
}

TEST_F(VcoCandidates, RangesAreWidenedByTheToleranceAtBothEnds) {
    request.limits["FRPLLRANGE_MIN"] = {"5.1562500005"};
    EXPECT_THAT(ofRate("RPLL", 10.3125), ElementsAre(5.15625));
    request.limits["FRPLLRANGE_MIN"] = {"5.156250002"};
    EXPECT_THAT(ofRate("RPLL", 10.3125), IsEmpty());
    request.limits["FLCPLLRANGE_MAX"] = {"12.8906249995"};
    EXPECT_THAT(ofRate("LCPLL", 25.78125), ElementsAre(12.890625));
    request.limits["FLCPLLRANGE_MAX"] = {"12.890624998"};
    EXPECT_THAT(ofRate("LCPLL", 25.78125), IsEmpty());
}

TEST_F(VcoCandidates, OfTheDividerOnTheRpll) {
    // At 500 MHz the second stage is 1 or 2, so the clock is the first stage or twice that.
    EXPECT_THAT(ofDivider("RPLL", 500.0), ElementsAre(4.0, 8.0, 5.0, 5.5, 8.0));
}

TEST_F(VcoCandidates, OfTheDividerOnTheLcpllHoldTheClockOnceMoreWhereTwiceItIsInRange) {
    EXPECT_THAT(ofDivider("LCPLL", 500.0),
                ElementsAre(4.0, 8.0, 8.0, 5.0, 10.0, 5.5, 11.0, 8.0, 8.0, 16.0, 10.0, 16.0));
}

TEST_F(VcoCandidates, OfTheDividerNeedASecondStageClockFrom0_5To2WithTolerance) {
    request.limits["FRPLLRANGE_MIN"] = {"0.1"};
    request.limits["FRPLLRANGE_MAX"] = {"1000"};
    // All 8 first stages, and of the second one 1 at the upper end, 1 to 4 at the lower end.
    EXPECT_THAT(ofDivider("RPLL", 1000.0), SizeIs(8));
    EXPECT_THAT(ofDivider("RPLL", 1000.0000002), SizeIs(8));
    EXPECT_THAT(ofDivider("RPLL", 1000.000001), IsEmpty());
    EXPECT_THAT(ofDivider("RPLL", 250.0), SizeIs(32));
    EXPECT_THAT(ofDivider("RPLL", 249.9999998), SizeIs(32));
    EXPECT_THAT(ofDivider("RPLL", 249.999999), SizeIs(24));
}

TEST_F(VcoCandidates, OfTheDividerWalkAllFirstStagesAndInEachAllSecondStages) {
    request.limits["FRPLLRANGE_MIN"] = {"0.1"};
    request.limits["FRPLLRANGE_MAX"] = {"1000"};
    // What the second stage takes: twice its factor times the output clock, within 0.5 to 2.0.
    const std::vector<std::pair<double, std::vector<double>>> stageClocks{
        {500.0, {1.0, 2.0}},                   // factors 1 and 2
        {125.0, {0.5, 0.75, 1.0, 1.5, 2.0}},   // 2, 3, 4, 6 and 8
        {31.25, {0.5, 0.75, 1.0, 1.5, 2.0}}};  // 8, 12, 16, 24 and 32
    for (const auto& [megahertz, clocks] : stageClocks) {
        std::vector<double> expected;
        for (const double firstStage : {4.0, 5.0, 5.5, 8.0, 10.0, 16.0, 16.5, 20.0}) {
            for (const double clock : clocks) {
                expected.push_back(firstStage * clock);
            }
        }
        EXPECT_EQ(ofDivider("RPLL", megahertz), expected) << megahertz;
    }
}

TEST_F(VcoCandidates, NumbersThatAreNoneLeadToNone) {
    for (const double number : {0.0, -10.3125, std::nan(""), HUGE_VAL}) {
        EXPECT_THAT(ofRate("LCPLL", number), IsEmpty()) << number;
        EXPECT_THAT(ofRate("RPLL", number), IsEmpty()) << number;
        EXPECT_THAT(ofDivider("LCPLL", number), IsEmpty()) << number;
    }
}

TEST_F(VcoCandidates, InternalWidthOf0OnTheLcpllIsADomainError) {
    const auto packing = request.packing();
    EXPECT_THROW(packing.VCO_FrequencyCalculation("LCPLL", 10.3125, "RAW", 0, 32, false),
                 std::domain_error);
    EXPECT_THAT(packing.VCO_FrequencyCalculation("RPLL", 10.3125, "RAW", 0, 32, false),
                ElementsAre(5.15625));
}

class VcoLimit : public VcoCandidates, public testing::WithParamInterface<std::string> {
  protected:
    std::string pll() const { return GetParam().substr(1, GetParam().find("PLL") + 2); }
};

TEST_P(VcoLimit, MissingIsOutOfRange) {
    request.limits.erase(GetParam());
    EXPECT_THROW(ofRate(pll(), 10.3125), std::out_of_range);
    EXPECT_THROW(ofDivider(pll(), 500.0), std::out_of_range);
}

TEST_P(VcoLimit, WithoutTextIsOutOfRange) {
    request.limits[GetParam()] = {};
    EXPECT_THROW(ofRate(pll(), 10.3125), std::out_of_range);
}

TEST_P(VcoLimit, ThatIsNoNumberIsAnInvalidArgument) {
    request.limits[GetParam()] = {"fast"};
    EXPECT_THROW(ofRate(pll(), 10.3125), std::invalid_argument);
    EXPECT_THROW(ofDivider(pll(), 500.0), std::invalid_argument);
}

TEST_P(VcoLimit, BeyondAllDoublesIsOutOfRange) {
    request.limits[GetParam()] = {"1e999"};
    EXPECT_THROW(ofRate(pll(), 10.3125), std::out_of_range);
}

TEST_P(VcoLimit, IsTheNumberAtTheBeginOfItsFirstText) {
    request.limits[GetParam()] = {request.limits[GetParam()].front() + " GHz", "other"};
    EXPECT_THAT(ofRate("LCPLL", 10.3125), ElementsAre(5.15625, 10.3125));
    EXPECT_THAT(ofRate("RPLL", 10.3125), ElementsAre(5.15625));
}

TEST_P(VcoLimit, CountsForItsPllAlone) {
    request.limits.erase(GetParam());
    EXPECT_THAT(ofRate(pll() == "LCPLL" ? "RPLL" : "LCPLL", 10.3125), testing::Not(IsEmpty()));
    EXPECT_THAT(ofRate("PLL", 10.3125), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Each, VcoLimit,
                         testing::Values("FLCPLLRANGE_MIN", "FLCPLLRANGE_MAX", "FRPLLRANGE_MIN",
                                         "FRPLLRANGE_MAX"));

}  // namespace
}  // namespace lanecfg_test
