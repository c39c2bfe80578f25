#include "support/packing_request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using sable_lanecfg::gt_quad_packing;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

RateSettings inGroup(RateSettings settings, const std::string& group) {
    settings.group = group;
    return settings;
}

TEST(CanBePacked, NoMessagesFromAnyCheckIsAnEmptyMap) {
    PackingRequest request;
    for (int lane = 0; lane < 4; ++lane) {
        request.addBoth(lane, {rateOf(20.0), rateOf(25.78125)});
    }
    EXPECT_THAT(request.packing().canBePacked(false), IsEmpty());
    EXPECT_THAT(request.packing().canBePacked(true), IsEmpty());
}

TEST(CanBePacked, NoChannelsFit) {
    EXPECT_THAT(PackingRequest().packing().canBePacked(false), IsEmpty());
}

TEST(CanBePacked, NoCommonFrequencyGivesOneMessageForEachRate) {
    const PackingRequest request =
        PackingRequest()
            .add(transmit, 0, {rateOf(10.3125), rateOf(20.0), rateOf(10.3125)})
            .add(transmit, 1, {rateOf(25.78125), rateOf(20.0), rateOf(20.0)});
    EXPECT_THAT(request.packing().canBePacked(false),
                ElementsAre(Pair(1,
                                 "DualLevelCheck: Cannot be packed because there is no VCO "
                                 "frequency solution for the LCPLL used in lanes 0 and/or 1 at "
                                 "rate 0\n"),
                            Pair(2,
                                 "DualLevelCheck: Cannot be packed because there is no VCO "
                                 "frequency solution for the LCPLL used in lanes 0 and/or 1 at "
                                 "rate 2\n")));
}

TEST(CanBePacked, RateThatNoLaneUsesIsToldLikeTheOneBefore) {
    PackingRequest request;
    request.add(transmit, 2, {rateOf(100.0), rateOf(20.0), rateOf(20.0)});
    request.channels.back().rates = {0, 2};
    EXPECT_THAT(request.reasons(), ElementsAre(noVcoText("LCPLL", 1, 0), noVcoText("LCPLL", 1, 1)));
}

TEST(CanBePacked, ClockMismatchIsToldOncePerDual) {
    const std::vector<RateSettings> first{rateOf(20.0, "LCPLL", 100.0), rateOf(5.0, "RPLL", 200.0)};
    const std::vector<RateSettings> second{rateOf(20.0, "LCPLL", 125.0),
                                           rateOf(5.0, "RPLL", 125.0)};
    const PackingRequest request = PackingRequest()
                                       .add(transmit, 0, first)
                                       .add(transmit, 1, second)
                                       .add(transmit, 2, first)
                                       .add(transmit, 3, second);
    EXPECT_THAT(request.packing().canBePacked(false),
                ElementsAre(Pair(1,
                                 "DualLevelCheck: Cannot be packed because the reference clock "
                                 "frequencies connected to the LCPLL used in lanes 0 and/or 1 are "
                                 "not compatible\n"),
                            Pair(2,
                                 "DualLevelCheck: Cannot be packed because the reference clock "
                                 "frequencies connected to the LCPLL used in lanes 2 and/or 3 are "
                                 "not compatible\n")));
}

TEST(CanBePacked, SourceMismatchIsToldOncePerDual) {
    const PackingRequest request =
        PackingRequest()
            .add(transmit, 0, {rateOf(5.0, "RPLL", 125.0, "R0"), rateOf(5.0, "RPLL", 125.0, "R0")})
            .add(transmit, 1, {rateOf(5.0, "RPLL", 125.0, "R1"), rateOf(5.0, "RPLL", 125.0, "R1")});
    EXPECT_THAT(request.packing().canBePacked(false),
                ElementsAre(Pair(1,
                                 "DualLevelCheck: Cannot be packed because the reference clock "
                                 "sources connected to the RPLL used in lanes 0 and/or 1 are not "
                                 "compatible\n")));
}

TEST(CanBePacked, MismatchIsToldOfALaterGroupAfterOneThatAgrees) {
    const PackingRequest request =
        PackingRequest()
            .add(transmit, 0, {inGroup(rateOf(20.0), "A"), inGroup(rateOf(20.0), "B")})
            .add(transmit, 1,
                 {inGroup(rateOf(20.0), "A"), inGroup(rateOf(20.0, "LCPLL", 100.0), "B")});
    EXPECT_THAT(request.reasons(), ElementsAre(clockMismatchText("LCPLL", 0)));
}

TEST(CanBePacked, MismatchIsToldOnceOverGroupsAndPlls) {
    const PackingRequest request =
        PackingRequest()
            .add(transmit, 0,
                 {inGroup(rateOf(20.0), "A"), inGroup(rateOf(20.0), "B"), rateOf(5.0, "RPLL")})
            .add(transmit, 1,
                 {inGroup(rateOf(20.0, "LCPLL", 156.25, "R1"), "A"),
                  inGroup(rateOf(20.0, "LCPLL", 156.25, "R1"), "B"),
                  rateOf(5.0, "RPLL", 156.25, "R1")});
    EXPECT_THAT(request.reasons(), ElementsAre(sourceMismatchText("LCPLL", 0)));
}

TEST(CanBePacked, SlotWithoutFrequencyTellsNothingOfItsClocks) {
    const PackingRequest request = PackingRequest()
                                       .add(transmit, 0, {rateOf(10.3125, "LCPLL", 100.0, "R0")})
                                       .add(transmit, 1, {rateOf(25.78125, "LCPLL", 125.0, "R1")});
    EXPECT_THAT(request.reasons(), ElementsAre(noVcoText("LCPLL", 0, 0)));
}

TEST(CanBePacked, ReasonsOfAPllComeAsFrequencyClocksSources) {
    const PackingRequest request =
        PackingRequest()
            .add(transmit, 0, {rateOf(20.0, "LCPLL", 100.0, "R0"), rateOf(10.3125)})
            .add(transmit, 1, {rateOf(20.0, "LCPLL", 125.0, "R1"), rateOf(25.78125)});
    EXPECT_THAT(request.reasons(),
                ElementsAre(noVcoText("LCPLL", 0, 1), clockMismatchText("LCPLL", 0),
                            sourceMismatchText("LCPLL", 0)));
}

TEST(CanBePacked, TenAndTwentyFiveGigabitFitOnlyThroughTheSharedVco) {
    // Transmit and receive switch independently, so all rates need one frequency.
    const std::vector<RateSettings> rates{rateOf(10.3125, "LCPLL", 161.1328125),
                                          rateOf(25.78125, "LCPLL", 161.1328125)};
    PackingRequest request;
    request.addBoth(0, rates, "TXPIN");
    request.channels.back().rxrate = {"RXPIN"};
    EXPECT_THAT(request.reasons(), IsEmpty());

    for (const int direction : {transmit, receive}) {
        request.parametersAt(direction,
                             0)[direction == transmit ? "TX_DATA_ENCODING" : "RX_DATA_DECODING"] =
            std::string("8B10B");
    }
    EXPECT_THAT(request.reasons(), ElementsAre(noVcoText("LCPLL", 0, 0)));
}

/// Transmitter and receiver of lane 2 on two PLLs.
class BypassCheck : public testing::Test {
  protected:
    BypassCheck() {
        const std::vector<RateSettings> rates{rateOf(10.0), rateOf(10.0)};
        request.addBoth(2, rates);
        for (const int rate : {0, 1}) {
            request.parametersAt(receive, 2, rate)["RX_PLL_TYPE"] = std::string("RPLL");
        }
    }

    void setMode(int rate, unsigned bufferMode, bool isInterpolating) {
        request.parametersAt(transmit, 2, rate)["TX_BUFFER_MODE"] = bufferMode;
        request.parametersAt(transmit, 2, rate)["TX_PIPM_ENABLE"] = isInterpolating;
    }

    void separatePins() { request.channels.back().rxrate = {"OTHER"}; }

    std::vector<std::string> texts() const {
        return textsOf(request.packing().checkILOconfig(false));
    }

    PackingRequest request;
};

TEST_F(BypassCheck, BufferModeOf1WithoutInterpolatorIsSilentOnDifferentPlls) {
    EXPECT_THAT(texts(), IsEmpty());
    separatePins();
    EXPECT_THAT(texts(), IsEmpty());
    EXPECT_THAT(request.reasons(), IsEmpty());
}

TEST_F(BypassCheck, DifferentPllsAreAnErrorOnlyWithoutBufferOrWithInterpolator) {
    for (const unsigned bufferMode : {0U, 1U, 2U}) {
        for (const bool isInterpolating : {false, true}) {
            setMode(1, bufferMode, isInterpolating);
            const bool isError = bufferMode == 0 || isInterpolating;
            EXPECT_EQ(texts().empty(), !isError) << bufferMode << isInterpolating;
        }
    }
}

TEST_F(BypassCheck, SamePllIsNeverAnError) {
    request.parametersAt(receive, 2, 0)["RX_PLL_TYPE"] = std::string("LCPLL");
    setMode(0, 0, true);
    EXPECT_THAT(texts(), IsEmpty());
}

TEST_F(BypassCheck, OnOnePinEachRateIsComparedWithItself) {
    setMode(1, 0, false);
    EXPECT_THAT(request.packing().checkILOconfig(false),
                ElementsAre(Pair(1,
                                 "ChannelLevelCheck: Invalid ILO configuration at TX and RX rate "
                                 "1 in lane 2. TX Buffer bypass or TXPIPPM can only be used when "
                                 "both TX and RX are connected to the same PLL.\n")));
}

TEST_F(BypassCheck, OnDifferentPinsEachRateMeetsAllRatesOfTheOtherSide) {
    separatePins();
    setMode(1, 1, true);
    EXPECT_THAT(request.packing().checkILOconfig(false),
                ElementsAre(Pair(1,
                                 "ChannelLevelCheck: Invalid ILO configuration at TX rate 1 and "
                                 "RX rate0 in LANE_2. TX Buffer bypass or TXPIPPM can only be used "
                                 "when both TX and RX are connected to the same PLL.\n"),
                            Pair(2, independentBypassText(1, 1, 2))));
}

TEST_F(BypassCheck, ReceiverMayBeInAnotherUsageRecordWithRatesOfItsOwn) {
    setMode(0, 0, false);
    request.channels.push_back(request.channels.back());
    request.channels.front().rx.clear();
    request.channels.back().tx.clear();
    request.channels.back().rxrate = {"OTHER"};
    request.channels.back().rates = {1};
    EXPECT_THAT(texts(), ElementsAre(independentBypassText(0, 1, 2)));
}

TEST_F(BypassCheck, OnOnePinTheRatesAreThoseOfTheTransmittingRecord) {
    setMode(0, 0, false);
    setMode(1, 0, false);
    request.channels.push_back(request.channels.back());
    request.channels.front().rx.clear();
    request.channels.front().rates = {1};
    request.channels.back().tx.clear();
    EXPECT_THAT(texts(), ElementsAre(commonBypassText(1, 2)));
}

TEST_F(BypassCheck, LaneWithoutReceiverNeedsNothing) {
    setMode(0, 0, true);
    request.channels.back().rx.clear();
    request.parametersAt(transmit, 2).erase("TX_BUFFER_MODE");
    EXPECT_THAT(texts(), IsEmpty());
}

TEST_F(BypassCheck, ComesBeforeTheReasonsOfTheDuals) {
    setMode(0, 0, false);
    request.parametersAt(receive, 2)["RX_LINE_RATE"] = 100.0;
    EXPECT_THAT(request.reasons(), ElementsAre(commonBypassText(0, 2), noVcoText("RPLL", 1, 0)));
}

TEST(CheckIloConfig, TransmitPositionsAreWalkedInTheirOrderEachWithItsPins) {
    RateSettings unbuffered = rateOf(10.0);
    unbuffered.bufferMode = 0;
    const PackingRequest request = PackingRequest()
                                       .add(transmit, 1, {unbuffered}, "A")
                                       .add(transmit, 0, {unbuffered}, "B")
                                       .add(receive, 1, {rateOf(10.0, "RPLL")}, "C")
                                       .add(receive, 0, {rateOf(10.0, "RPLL")}, "B")
                                       .joinRecords();
    EXPECT_THAT(
        request.packing().checkILOconfig(false),
        ElementsAre(Pair(1, independentBypassText(0, 0, 1)), Pair(2, commonBypassText(0, 0))));
}

TEST(CanBePacked, WorksOnCoordinatesThatWereEnteredByHand) {
    gt_quad_packing packing = PackingRequest().packing();
    packing.intersectedCoordinates["DUAL_1"]["A"]["RPLL"]["pllClkFreqs"] = {{5.0}, {}};
    EXPECT_THAT(packing.canBePacked(true), ElementsAre(Pair(1, noVcoText("RPLL", 1, 1))));
}

}  // namespace
}  // namespace lanecfg_test
