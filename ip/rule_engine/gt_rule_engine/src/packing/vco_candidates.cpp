#include "database/device_limit.h"

#include <lanecfg/gt_quad_packing.h>

#include <array>
#include <stdexcept>

namespace sable_lanecfg {

namespace {

const std::string lcpllWord = "LCPLL";
const std::string rpllWord = "RPLL";

constexpr std::array<double, 5> lineDividers{1, 2, 4, 8, 16};
/// With it the LCPLL runs 10.3125 at the VCO clock of 25.78125.
constexpr double pairDivider = 2.5;
constexpr double lowerPairRate = 10.3125;
/// Both edges of the clock carry data above this line rate.
constexpr double halvingThreshold = 16.375;

constexpr std::array<double, 8> firstStageDividers{4.0, 5.0, 5.5, 8.0, 10.0, 16.0, 16.5, 20.0};
constexpr std::array<double, 10> secondStageDividers{1, 2, 3, 4, 6, 8, 12, 16, 24, 32};

/// An interval of clocks (GHz), taken a little wider so that rounding keeps none out.
struct clockRange {
    double lowest;
    double highest;

    bool contains(double clock) const {
        constexpr double tolerance = 1e-9;
        return lowest - tolerance <= clock && clock <= highest + tolerance;
    }
};

/// What the second stage of the programmable divider can take.
constexpr clockRange stageClock{0.5, 2.0};

/// `pll` is the begin of the keys, the word of the PLL.
clockRange vcoRange(const deviceSettings& limits, const std::string& pll) {
    const auto limitOf = [&limits](const std::string& key) {
        return deviceLimit<std::out_of_range>(limits, key);
    };
    return {limitOf("F" + pll + "RANGE_MIN"), limitOf("F" + pll + "RANGE_MAX")};
}

std::vector<double> rpllCandidates(double lineRate, const clockRange& range) {
    std::vector<double> candidates;
    for (const double divider : lineDividers) {
        const double clock = lineRate * divider * 0.5;
        if (range.contains(clock)) {
            candidates.push_back(clock);
        }
    }
    return candidates;
}

/// With two internal words to a user word of this coding the PLL clock itself, not the VCO, has to
/// be within the limits: a clock that the LCPLL would put out at half of its VCO is no candidate.
bool holdsClockToLimits(const std::string& encoding, unsigned intDataWidth,
                        unsigned userDataWidth) {
    if (intDataWidth == 0) {
        throw std::domain_error("the internal data width of an LCPLL rate is 0");
    }
    return userDataWidth / intDataWidth == 2 && encoding == "64B66B_ASYNC";
}

/// Candidates of the LCPLL over the dividers that it may use at a line rate.
class lcpllWalk {
  public:
    lcpllWalk(double lineRate, const clockRange& range) : lineRate_(lineRate), range_(range) {}

    /// The PLL clock is half of the VCO's, which is what the limits are about unless they hold the
    /// clock itself.
    void addFromWholeRate(double divider, bool isClockLimited) {
        const double vco = divider * lineRate_;
        addIfInRange(isClockLimited ? vco * 0.5 : vco, vco * 0.5);
    }

    /// The PLL clock is the VCO's.
    void addFromHalfRate(double divider) {
        const double clock = divider * lineRate_ * 0.5;
        addIfInRange(clock, clock);
    }

    std::vector<double> candidates;

  private:
    void addIfInRange(double tested, double stored) {
        if (range_.contains(tested)) {
            candidates.push_back(stored);
        }
    }

    double lineRate_;
    clockRange range_;
};

}  // namespace

std::vector<double> gt_quad_packing::VCO_FrequencyCalculation(
    const std::string& pllType, double lineRate, const std::string& encoding, unsigned intDataWidth,
    unsigned userDataWidth, bool dualRate) const {
    if (pllType == rpllWord) {
        return rpllCandidates(lineRate, vcoRange(deviceLimits, rpllWord));
    }
    if (pllType != lcpllWord) {
        return {};
    }
    const bool isPair = dualRate && lineRate == lowerPairRate && encoding == "RAW";
    const std::vector<double> dividers =
        isPair ? std::vector<double>{pairDivider}
               : std::vector<double>(lineDividers.begin(), lineDividers.end());
    const bool isClockLimited = holdsClockToLimits(encoding, intDataWidth, userDataWidth);
    const bool isLowRate = lineRate <= halvingThreshold;
    lcpllWalk walk(lineRate, vcoRange(deviceLimits, lcpllWord));
    for (const double divider : dividers) {
        if (isLowRate && !isPair) {
            walk.addFromWholeRate(divider, isClockLimited);
        } else {
            walk.addFromHalfRate(divider);
        }
    }
    if (isLowRate) {
        for (const double divider : dividers) {
            walk.addFromHalfRate(divider);
        }
    }
    return walk.candidates;
}

std::vector<double> gt_quad_packing::VCO_FrequencyProgDivCalculation(const std::string& pllType,
                                                                     double progDivFreq) const {
    const bool isLcpll = pllType == lcpllWord;
    if (!isLcpll && pllType != rpllWord) {
        return {};
    }
    const clockRange range = vcoRange(deviceLimits, pllType);
    const double outputClock = progDivFreq / 1000.0;
    std::vector<double> candidates;
    for (const double firstStage : firstStageDividers) {
        for (const double secondStage : secondStageDividers) {
            const double clock = 2.0 * (secondStage * firstStage * outputClock);
            if (!stageClock.contains(clock / firstStage)) {
                continue;
            }
            if (range.contains(clock)) {
                candidates.push_back(clock);
            }
            // The LCPLL may also run at twice this clock and halve it itself.
            if (isLcpll && range.contains(2.0 * clock)) {
                candidates.push_back(clock);
            }
        }
    }
    return candidates;
}

}  // namespace sable_lanecfg
