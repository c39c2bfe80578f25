#include <lanecfg/rule_engine_utilities.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace {

using sable_lanecfg::rule_engine_utilities;
using testing::DoubleEq;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pointwise;
using Clocks = std::vector<double>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// Output clocks at the usual line rates. The dividers get c = D * lineRate / 2 on either PLL, so
// that a clock of R times the target needs P * Q = D * width / (2 * R), or half of that without
// buffer, where besides c / P must be from 0.5 to 2.

struct OutputClockCase {
    double lineRate;
    const char* pllType;
    float userDataWidth;
    const char* encoding;
    const char* bufferMode;
    Clocks clocks;
};

std::ostream& operator<<(std::ostream& stream, const OutputClockCase& tested) {
    return stream << tested.lineRate << " GHz, " << tested.pllType << ", " << tested.userDataWidth
                  << " bits " << tested.encoding << ", buffer " << tested.bufferMode;
}

class OutputClockList : public testing::TestWithParam<OutputClockCase> {};

TEST_P(OutputClockList, isTheSameInBothDirections) {
    const OutputClockCase& tested = GetParam();
    EXPECT_THAT(rule_engine_utilities::findRXOUTCLKlist(tested.lineRate, tested.pllType,
                                                        tested.userDataWidth, tested.encoding,
                                                        tested.bufferMode),
                Pointwise(DoubleEq(), tested.clocks));
    for (const char* otherPll : {"LCPLL", "RPLL", ""}) {
        EXPECT_THAT(rule_engine_utilities::findTXOUTCLKlist(
                        tested.lineRate, notANumber, tested.pllType, otherPll, tested.pllType,
                        tested.userDataWidth, tested.encoding, tested.bufferMode),
                    Pointwise(DoubleEq(), tested.clocks));
    }
}

INSTANTIATE_TEST_SUITE_P(
    , OutputClockList,
    testing::Values(
        // c = 5 (D = 8), width 20, target 62.5: P * Q = 80, 40, 20 and 10.
        OutputClockCase{1.25, "LCPLL", 16.0F, "8B10B", "1", {62.5, 125.0, 250.0, 500.0}},
        // c = 5 (D = 8, VCO 5): the same.
        OutputClockCase{1.25, "RPLL", 16.0F, "8B10B", "1", {62.5, 125.0, 250.0, 500.0}},
        // c = 5 (D = 4), width 20, target 125: P * Q = 40, 20, 10 and 5, up to 1000 sharp.
        OutputClockCase{2.5, "LCPLL", 16.0F, "8B10B", "1", {125.0, 250.0, 500.0, 1000.0}},
        // Without buffer 20, 10, 5 and 2.5; there is no 2.5.
        OutputClockCase{2.5, "LCPLL", 16.0F, "8B10B", "0", {125.0, 250.0, 500.0}},
        // c = 5 (D = 8), target 0.9765625: P * Q = 5120, 2560, 1280 and 640.
        OutputClockCase{1.25, "LCPLL", 1280.0F, "RAW", "1", {0.9765625, 1.953125, 3.90625, 7.8125}},
        // c = 6.25 (D = 4), width 20, target 156.25: 40, 20 and 10; 1250 is above the ceiling.
        OutputClockCase{3.125, "LCPLL", 16.0F, "8B10B", "1", {156.25, 312.5, 625.0}},
        // c = 5 (D = 2), target 156.25: 32, 16 and 8.
        OutputClockCase{5.0, "LCPLL", 32.0F, "RAW", "1", {156.25, 312.5, 625.0}},
        // c = 6.25 (D = 2), target 195.3125: 32, 16 and 8.
        OutputClockCase{6.25, "LCPLL", 32.0F, "RAW", "1", {195.3125, 390.625, 781.25}},
        // c = 6.25 (D = 2), width 66, target 6250 / 66, without buffer: 33 and 16.5, both with
        // P = 5.5; there is no 8.25.
        OutputClockCase{6.25, "LCPLL", 64.0F, "64B66B_ASYNC", "0", {6250.0 / 66.0, 6250.0 / 33.0}},
        // Target 100. c = 4 (D = 1): 20, 10 and 5. c = 8 (D = 2): 5 for 800.
        OutputClockCase{8.0, "LCPLL", 80.0F, "RAW", "0", {100.0, 200.0, 400.0, 800.0}},
        // Target 125. c = 4 (D = 1, VCO 4): 32, 16, 8 and 4.
        OutputClockCase{8.0, "RPLL", 64.0F, "RAW", "1", {125.0, 250.0, 500.0, 1000.0}},
        // c = 4.9152, target 307.2: 16 and 8.
        OutputClockCase{9.8304, "LCPLL", 32.0F, "RAW", "1", {307.2, 614.4}},
        // c = 5.15625, width 66, target 156.25: 33 and 16.5.
        OutputClockCase{10.3125, "LCPLL", 64.0F, "64B66B_ASYNC", "1", {156.25, 312.5}},
        // Without buffer 16.5 with P = 5.5; there is no 8.25.
        OutputClockCase{10.3125, "LCPLL", 64.0F, "64B66B_ASYNC", "0", {156.25}},
        // c = 5.15625 (VCO 5.15625), target 322.265625, without buffer: 8 and 4.
        OutputClockCase{10.3125, "RPLL", 32.0F, "RAW", "0", {322.265625, 644.53125}},
        // c = 6.25, width 20, target 625: 10.
        OutputClockCase{12.5, "LCPLL", 16.0F, "8B10B", "1", {625.0}},
        // c = 8.1875, from VCO 16.375, target 255.859375: 32 and 16; 1023 is above the ceiling.
        OutputClockCase{16.375, "LCPLL", 64.0F, "RAW", "1", {255.859375, 511.71875}},
        // c = VCO = 8.25, target 8250 / 99, without buffer: 49.5 with c / 16.5 = 0.5, the lowest.
        OutputClockCase{16.5, "LCPLL", 198.0F, "RAW", "0", {8250.0 / 99.0}},
        // VCO 8.1875.
        OutputClockCase{16.375, "RPLL", 64.0F, "RAW", "1", {}},
        // c = VCO = 12.890625, width 66, target 390.625: 33 and 16.5.
        OutputClockCase{25.78125, "LCPLL", 64.0F, "64B66B_ASYNC", "1", {390.625, 781.25}},
        // Without buffer 16.5, in one stage: c / 5.5 is above 2.
        OutputClockCase{25.78125, "LCPLL", 64.0F, "64B66B_ASYNC", "0", {390.625}},
        // c = VCO = 14.025, target 350.625: 40 and 20.
        OutputClockCase{28.05, "LCPLL", 80.0F, "RAW", "1", {350.625, 701.25}},
        // c = VCO = 14.05, width 40, target 702.5: 20.
        OutputClockCase{28.1, "LCPLL", 32.0F, "8B10B", "1", {702.5}},
        // c = VCO = 16.375, target 409.375, without buffer: 20 and 10.
        OutputClockCase{32.75, "LCPLL", 80.0F, "RAW", "0", {409.375, 818.75}},
        // VCO 26.5625, 28.125 and 29.
        OutputClockCase{53.125, "LCPLL", 80.0F, "RAW", "1", {}},
        OutputClockCase{56.25, "LCPLL", 80.0F, "RAW", "1", {}},
        OutputClockCase{58.0, "LCPLL", 80.0F, "RAW", "1", {}}));

std::set<double> receiveClocks(float userDataWidth, const char* encoding, const char* bufferMode) {
    return rule_engine_utilities::findRXOUTCLKlist(10.3125, "LCPLL", userDataWidth, encoding,
                                                   bufferMode);
}

TEST(OutputClocks, areBufferedByTheTextOneOnly) {
    const std::set<double> unbuffered = receiveClocks(64.0F, "64B66B_ASYNC", "0");
    EXPECT_THAT(unbuffered, ElementsAre(156.25));
    for (const char* bufferMode : {"true", "", "1 ", "01", "2"}) {
        EXPECT_EQ(receiveClocks(64.0F, "64B66B_ASYNC", bufferMode), unbuffered) << bufferMode;
    }
}

TEST(OutputClocks, takeUnknownEncodingsAsNone) {
    // 322.265625 for 32 bits.
    for (const char* encoding : {"", "RAW", "8b10b", "64B66B", "64B66B_SYNC"}) {
        EXPECT_THAT(receiveClocks(32.0F, encoding, "1"), ElementsAre(322.265625, 644.53125))
            << encoding;
    }
}

TEST(OutputClocks, widenTheDataInSinglePrecision) {
    // At 10 GHz the clock of P * Q = 8 is 625 MHz, and it matches up to a width of 16.0016. This
    // width times 1.03125 is 16.00159961, which single precision rounds up to 16.00160027.
    const auto clocks = [](float width) {
        return rule_engine_utilities::findRXOUTCLKlist(10.0, "LCPLL", width, "64B66B_ASYNC", "1");
    };
    constexpr float width = 15.5167027F;
    EXPECT_THAT(clocks(width), IsEmpty());
    EXPECT_THAT(clocks(std::nextafter(width, 0.0F)), ElementsAre(625.0));
}

TEST(OutputClocks, matchWithinATenthOfAThousandthOfTheSmallerClock) {
    // At 10 GHz the clock of P = 10 is 500 MHz. A width of 20 / 1.0001 = 19.9980002 makes the
    // target 1.0001 times that, a width of 20 * 1.0001 = 20.002 makes it the part of 1.0001.
    const auto clocks = [](double width) {
        return rule_engine_utilities::findTXOUTCLKlist_SXD(10.0, 1, width);
    };
    EXPECT_THAT(clocks(19.9980001), IsEmpty());
    EXPECT_THAT(clocks(19.9980003), ElementsAre(500.0));
    EXPECT_THAT(clocks(20.0019999), ElementsAre(500.0));
    EXPECT_THAT(clocks(20.0020001), IsEmpty());
}

TEST(OutputClocks, thatDifferInTheLastPlaceAreAllOffered) {
    // c = 14.025, width 66, target 425: 33 is 5.5 * 6, 16.5 * 2 and 33 * 1, and 16.5 is 5.5 * 3
    // and 16.5 * 1. The quotients round differently.
    const std::set<double> expected{1000.0 * (14.025 / 5.5 / 6), 1000.0 * (14.025 / 16.5 / 2),
                                    1000.0 * (14.025 / 33.0 / 1), 1000.0 * (14.025 / 5.5 / 3),
                                    1000.0 * (14.025 / 16.5 / 1)};
    EXPECT_EQ(expected.size(), 4U);
    EXPECT_EQ(rule_engine_utilities::findRXOUTCLKlist(28.05, "LCPLL", 64.0F, "64B66B_ASYNC", "1"),
              expected);
}

TEST(OutputClocks, ofAnUnknownReceiverPllHaveTheLimitsOfTheRpll) {
    // VCO 6.25 (D = 1), c = 3.125, target 195.3125: P * Q = 16, 8 and 4.
    EXPECT_THAT(rule_engine_utilities::findRXOUTCLKlist(6.25, "QPLL", 32.0F, "RAW", "1"),
                ElementsAre(195.3125, 390.625, 781.25));
    // VCO 10.3125, where the RPLL would have half of it.
    EXPECT_THAT(rule_engine_utilities::findRXOUTCLKlist(10.3125, "QPLL", 32.0F, "RAW", "1"),
                IsEmpty());
}

TEST(OutputClocks, ofALineRateThatMakesNoSenseAreNone) {
    for (const double lineRate : {0.0, -10.3125, infinity, -infinity, notANumber}) {
        EXPECT_THAT(rule_engine_utilities::findRXOUTCLKlist(lineRate, "LCPLL", 32.0F, "RAW", "1"),
                    IsEmpty());
        EXPECT_THAT(rule_engine_utilities::findTXOUTCLKlist_SXD(lineRate, 1, 64.0), IsEmpty());
        EXPECT_THAT(rule_engine_utilities::findRXOUTCLKlist_SXD(lineRate, 1, 64.0), IsEmpty());
    }
}

TEST(OutputClocks, ofAWidthThatMakesNoSenseAreNone) {
    for (const float width :
         {0.0F, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        EXPECT_THAT(receiveClocks(width, "RAW", "1"), IsEmpty()) << width;
        const auto intDataWidth = static_cast<double>(width);
        EXPECT_THAT(rule_engine_utilities::findTXOUTCLKlist_SXD(12.5, 1, intDataWidth), IsEmpty());
        EXPECT_THAT(rule_engine_utilities::findRXOUTCLKlist_SXD(12.5, 1, intDataWidth), IsEmpty());
    }
}

// The transmitter's choice of the PLL behind its dividers

std::set<double> transmitClocks(double lineRate, double refclk, const std::string& txPllType,
                                const std::string& source, const std::string& rxPllType,
                                const std::string& bufferMode = "1") {
    return rule_engine_utilities::findTXOUTCLKlist(lineRate, refclk, txPllType, rxPllType, source,
                                                   32.0F, "RAW", bufferMode);
}

TEST(TransmitClockSource, withoutAPathOffersNothing) {
    for (const char* rxPllType : {"LCPLL", "RPLL", "QPLL", ""}) {
        EXPECT_THAT(transmitClocks(8.0, 156.25, "RPLL", "LCPLL", rxPllType), IsEmpty());
        EXPECT_THAT(transmitClocks(8.0, 156.25, "QPLL", "QPLL", rxPllType), IsEmpty());
        EXPECT_THAT(transmitClocks(8.0, 156.25, "QPLL", "RPLL", rxPllType), IsEmpty());
        EXPECT_THAT(transmitClocks(8.0, 156.25, "LCPLL", "QPLL", rxPllType), IsEmpty());
        EXPECT_THAT(transmitClocks(8.0, 156.25, "", "", rxPllType), IsEmpty());
    }
}

TEST(TransmitClockSource, rpllIsNotFreeWhileTheReceiverRunsOnIt) {
    EXPECT_THAT(transmitClocks(8.0, 32.0, "LCPLL", "RPLL", "RPLL"), IsEmpty());
    EXPECT_FALSE(transmitClocks(8.0, 32.0, "LCPLL", "RPLL", "LCPLL").empty());
}

TEST(TransmitClockSource, freeRpllScansItsFeedbackDividers) {
    // 125 * 32.1 / 1000 = 4.0125 is the one VCO that a clock of 32.1 MHz reaches, and P * Q = 16
    // makes 250.78125 of it, the target of 8.025 GHz over 32 bits. 1003 is above the ceiling.
    for (const char* rxPllType : {"LCPLL", "QPLL", ""}) {
        EXPECT_THAT(transmitClocks(8.025, 32.1, "LCPLL", "RPLL", rxPllType),
                    ElementsAre(DoubleEq(250.78125), DoubleEq(501.5625)));
        // Without buffer P * Q = 8 and 4, c / 4 being 1.003.
        EXPECT_THAT(transmitClocks(8.025, 32.1, "LCPLL", "RPLL", rxPllType, "0"),
                    ElementsAre(DoubleEq(250.78125), DoubleEq(501.5625)));
    }
}

TEST(TransmitClockSource, freeRpllReachesTheLowestVco) {
    // 125 * 32 / 1000 = 4.
    EXPECT_THAT(transmitClocks(8.0, 32.0, "LCPLL", "RPLL", "LCPLL"),
                ElementsAre(250.0, 500.0, 1000.0));
    EXPECT_THAT(transmitClocks(8.0, 31.9, "LCPLL", "RPLL", "LCPLL"), IsEmpty());
}

TEST(TransmitClockSource, freeRpllReachesItsLowestFeedbackDivider) {
    // Of 3200 MHz only M = 4 and N = 5 make VCO 4, and 4000 over 40 * 128 is the target, 1000 over
    // 1280 bits. All others make 4.8 or more, of which that is 0.9375 at least.
    EXPECT_THAT(rule_engine_utilities::findTXOUTCLKlist(1.0, 3200.0, "LCPLL", "LCPLL", "RPLL",
                                                        1280.0F, "RAW", "1"),
                testing::Contains(0.78125));
}

TEST(TransmitClockSource, freeRpllNeedsAReferenceClock) {
    for (const double refclk : {0.0, -156.25, infinity, notANumber}) {
        EXPECT_THAT(transmitClocks(8.0, refclk, "LCPLL", "RPLL", "LCPLL"), IsEmpty()) << refclk;
    }
}

// SXD: c is half of the rate, target is line rate / width, and P one of 10, 16, 20, 32 for NRZ and
// of 20, 32, 40, 64 for PAM4.

struct SxdClockCase {
    double lineRate;
    int notPam4;
    double intDataWidth;
    Clocks transmit;
    Clocks receive;
};

std::ostream& operator<<(std::ostream& stream, const SxdClockCase& tested) {
    return stream << tested.lineRate << (tested.notPam4 == 0 ? " GHz PAM4, " : " GHz NRZ, ")
                  << tested.intDataWidth << " bits";
}

class SxdClockList : public testing::TestWithParam<SxdClockCase> {};

TEST_P(SxdClockList, isThatOfItsDirection) {
    const SxdClockCase& tested = GetParam();
    EXPECT_THAT(rule_engine_utilities::findTXOUTCLKlist_SXD(tested.lineRate, tested.notPam4,
                                                            tested.intDataWidth),
                Pointwise(DoubleEq(), tested.transmit));
    EXPECT_THAT(rule_engine_utilities::findRXOUTCLKlist_SXD(tested.lineRate, tested.notPam4,
                                                            tested.intDataWidth),
                Pointwise(DoubleEq(), tested.receive));
}

INSTANTIATE_TEST_SUITE_P(
    , SxdClockList,
    testing::Values(
        // Below the VCO range, 16.375 after halving.
        SxdClockCase{1.25, 1, 64.0, {}, {}}, SxdClockCase{2.5, 1, 64.0, {}, {}},
        SxdClockCase{3.125, 1, 64.0, {}, {}}, SxdClockCase{5.0, 1, 64.0, {}, {}},
        SxdClockCase{6.25, 1, 64.0, {}, {}}, SxdClockCase{8.0, 1, 64.0, {}, {}},
        SxdClockCase{16.375, 1, 64.0, {}, {}},
        // c = 4.9152, target 153.6: 4915.2 / 32 and 4915.2 / 16.
        SxdClockCase{9.8304, 1, 64.0, {153.6, 307.2}, {153.6, 307.2}},
        // c = 5.15625, target 128.90625: 5156.25 / 20 is twice, 5156.25 / 10 four times that.
        SxdClockCase{10.3125, 1, 80.0, {257.8125, 515.625}, {257.8125, 515.625}},
        // Every number but 0 is NRZ.
        SxdClockCase{10.3125, -1, 80.0, {257.8125, 515.625}, {257.8125, 515.625}},
        // Symbols 6.25: too low to transmit, but the receiver tests 12.5. c = 6.25, target 156.25:
        // 6250 / 40 and 6250 / 20.
        SxdClockCase{12.5, 0, 80.0, {}, {156.25, 312.5}},
        // c = VCO = 12.890625, target 322.265625: 12890.625 / 20 is twice that.
        SxdClockCase{25.78125, 1, 80.0, {644.53125}, {644.53125}},
        // Symbols 12.890625, c = 6.4453125, target 201.416015625: 6445.3125 / 32. The receiver
        // tests 25.78125.
        SxdClockCase{25.78125, 0, 128.0, {201.416015625}, {}},
        // Symbols 14.025, c = 7.0125, target 175.3125: 7012.5 / 40 and 7012.5 / 20.
        SxdClockCase{28.05, 0, 160.0, {175.3125, 350.625}, {}},
        // c = VCO = 14.05, target 439.0625: 14050 / 32 and 14050 / 16; 14050 / 10 is too much.
        SxdClockCase{28.1, 1, 64.0, {439.0625, 878.125}, {439.0625, 878.125}},
        // Symbols 14.5 are not halved, c = 7.25, target 181.25: 7250 / 40 and 7250 / 20.
        SxdClockCase{29.0, 0, 160.0, {181.25, 362.5}, {}},
        // c = VCO = 14.5 as NRZ, target 362.5: 14500 / 20 is twice that.
        SxdClockCase{29.0, 1, 80.0, {725.0}, {725.0}},
        // VCO 16.375, or 8.1875 for PAM4, where the receiver tests 16.375.
        SxdClockCase{32.75, 1, 64.0, {}, {}}, SxdClockCase{32.75, 0, 64.0, {}, {}},
        // Symbols 26.5625, c = VCO = 13.28125, target 332.03125: 13281.25 / 40 and 13281.25 / 20.
        SxdClockCase{53.125, 0, 160.0, {332.03125, 664.0625}, {}},
        // Symbols 28.125, c = VCO = 14.0625, target 439.453125: 14062.5 / 32.
        SxdClockCase{56.25, 0, 128.0, {439.453125}, {}},
        // Target 219.7265625: 14062.5 / 64 and 14062.5 / 32.
        SxdClockCase{56.25, 0, 256.0, {219.7265625, 439.453125}, {}},
        // Symbols 29, c = VCO = 14.5, target 362.5: 14500 / 40 and 14500 / 20.
        SxdClockCase{58.0, 0, 160.0, {362.5, 725.0}, {}},
        // VCO 29 as NRZ.
        SxdClockCase{58.0, 1, 160.0, {}, {}}));

}  // namespace
