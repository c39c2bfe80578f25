#pragma once

#include <array>
#include <limits>
#include <string_view>

/// What the clocking hardware can be set to, and the limits it must keep to: divider values in the
/// order in which they are walked, line rates and VCO clocks in GHz, reference and output clocks in
/// MHz. The numbers are the hardware's contract; the searches take them from here only.
namespace sable_lanecfg::clocking {

/// An interval of numbers; a value that is not a number lies in none.
struct interval {
    double lower;
    double upper;
    bool closed;

    constexpr bool contains(double value) const {
        return closed ? lower <= value && value <= upper : lower < value && value < upper;
    }
};

/// Both ends belong to it.
constexpr interval closedInterval(double lower, double upper) {
    return {lower, upper, true};
}
/// Neither end belongs to it.
constexpr interval openInterval(double lower, double upper) {
    return {lower, upper, false};
}

/// The integers from `first` to `last`, both included.
template <int first, int last>
constexpr std::array<int, last - first + 1> consecutive() {
    std::array<int, last - first + 1> values{};
    int next = first;
    for (int& value : values) {
        value = next++;
    }
    return values;
}

inline constexpr double megahertzPerGigahertz = 1000.0;

/// Words of the PLL parameters.
inline constexpr std::string_view lcpllWord = "LCPLL";
inline constexpr std::string_view rpllWord = "RPLL";

/// Reference clock pre-dividers of every PLL.
inline constexpr auto preDividers = consecutive<1, 4>();

/// The 24-bit fraction of a feedback divider, and the integer parts beside which it works.
inline constexpr double fractionScale = 16777216.0;
inline constexpr int lowestFractionalFeedback = 16;
inline constexpr int highestFeedback = 160;
inline constexpr auto fractionalFeedbackDividers =
    consecutive<lowestFractionalFeedback, highestFeedback>();
inline constexpr interval fractionalFeedback =
    closedInterval(lowestFractionalFeedback, highestFeedback);

/// The LC tank PLL of SXA, SXB and SXC.
struct lcpll {
    static constexpr auto preDividers = clocking::preDividers;
    static constexpr std::array<int, 5> lineDividers{1, 2, 4, 8, 16};
    /// Without a fraction the feedback divider reaches lower than with one.
    static constexpr auto integerFeedbackDividers = consecutive<13, highestFeedback>();
    static constexpr int feedbackMultiplier = 1;
    /// Both edges of the clock carry data above this line rate, so the PLL runs at half of it.
    static constexpr double halvingThreshold = 16.375;
    static constexpr double vcoPerRate = 1.0;
    static constexpr interval vco = closedInterval(8.0, 16.375);
    static constexpr interval searchedVco = vco;
    static constexpr interval referenceClock = closedInterval(60.0, 820.0);
    /// Highest line rate at which the feedback divider may have a fraction.
    static constexpr double fractionalCeiling = 25.78125;
};

/// The ring PLL of SXA, SXB and SXC: no fraction, and no halving of the line rate.
struct rpll {
    static constexpr auto preDividers = clocking::preDividers;
    static constexpr auto lineDividers = lcpll::lineDividers;
    /// Nothing between 25 and 80 is wanted here.
    static constexpr std::array<int, 22> feedbackDividers{
        5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 80};
    static constexpr int feedbackMultiplier = 2;
    static constexpr double vcoPerRate = 0.5;
    static constexpr interval vco = closedInterval(4.0, 8.0);
    static constexpr interval searchedVco = vco;
    static constexpr interval referenceClock = lcpll::referenceClock;
    /// Feedback dividers of an RPLL that drives no line and is free to make an output clock.
    static constexpr auto freeFeedbackDividers = consecutive<5, 125>();
};

/// The one PLL of SXD.
struct sxdPll {
    static constexpr auto preDividers = clocking::preDividers;
    static constexpr std::array<int, 1> lineDividers{1};
    static constexpr int feedbackMultiplier = 1;
    static constexpr double halvingThreshold = 14.5;
    static constexpr double vcoPerRate = 1.0;
    static constexpr interval vco = closedInterval(9.8, 14.5);
    /// The search takes every VCO: a line rate without one still gets its nearest clock.
    static constexpr interval searchedVco =
        closedInterval(std::numeric_limits<double>::lowest(), std::numeric_limits<double>::max());
    static constexpr interval referenceClock = openInterval(59.999999, 820.000001);
    /// One digit shorter than the line above, and so a little wider.
    static constexpr interval probedReferenceClock = openInterval(59.99999, 820.00001);
    static constexpr double fractionalCeiling = 28.1;
    /// Integer parts above this don't count as a reason for a fraction, see the two probes.
    static constexpr int probedFeedbackLimit = 80;
};

/// Nearest clock search: only a candidate closer than this (MHz) is ever taken.
inline constexpr double farthestDistance = 10000000.0;

/// Two stages divide the clock for the fabric.
inline constexpr std::array<double, 11> firstStageDividers{4.0,  5.0,  5.5,  8.0,  10.0, 16.0,
                                                           16.5, 20.0, 32.0, 33.0, 40.0};
inline constexpr std::array<int, 14> secondStageDividers{1,  2,  3,  4,  6,  8,  12,
                                                         16, 24, 32, 48, 64, 96, 128};
/// SXD has one stage, by line coding.
inline constexpr std::array<int, 4> sxdNrzDividers{10, 16, 20, 32};
inline constexpr std::array<int, 4> sxdPam4Dividers{20, 32, 40, 64};

/// How many times the user clock an output clock may be.
inline constexpr std::array<int, 4> outputClockRatios{1, 2, 4, 8};
inline constexpr double outputClockCeiling = 1000.0;
/// Relative, over the smaller of the two clocks.
inline constexpr double matchTolerance = 0.0001;

/// The one text of a buffer mode parameter that means buffered.
inline constexpr std::string_view bufferedWord = "1";
/// Clock (GHz) between the two stages that a transceiver without buffer can take.
inline constexpr interval unbufferedStageClock = closedInterval(0.5, 2.0);

/// Bits on the wire for each user bit, in single precision as the widths are.
struct encodingFactor {
    std::string_view encoding;
    float factor;
};
inline constexpr std::array<encodingFactor, 2> encodingFactors{
    {{"8B10B", 1.25F}, {"64B66B_ASYNC", 1.03125F}}};

}  // namespace sable_lanecfg::clocking
