#include "families/sxd4/sxd4_vco_candidates.h"

#include "clocking_domains.h"

#include <lanecfg/gt_quad_packing.h>

#include <array>

namespace sable_lanecfg {

namespace {

constexpr std::array<double, 2> lineDividers{1.0, 2.0};
constexpr std::array<double, 4> programmableDividers{40.0, 64.0, 80.0, 128.0};

/// How the input of the programmable divider may stand to the symbol rate.
constexpr clocking::interval inputPerSymbolRate =
    clocking::closedInterval(0.0499999999, 2.000000001);

/// What the oscillator reaches (GHz).
clocking::interval oscillatorRange(const deviceSettings& settings) {
    return clocking::closedInterval(deviceLimit(settings, "FLCPLLRANGE_MIN") - vcoLimitSlack,
                                    deviceLimit(settings, "FLCPLLRANGE_MAX") + vcoLimitSlack);
}

}  // namespace

std::vector<double> sxd4_vco_candidates::ofSymbolRate(double symbolRate) const {
    std::vector<double> candidates;
    const clocking::interval range = oscillatorRange(*settings_);
    // From this symbol rate on the oscillator runs at half of it.
    const double lowestHalved = deviceLimit(*settings_, "FSXDLCRANGE_MIN");
    const bool isHalved = symbolRate > lowestHalved - vcoLimitSlack;
    for (const double divider : lineDividers) {
        const double oscillator = isHalved ? 0.5 * divider * symbolRate : divider * symbolRate;
        if (range.contains(oscillator)) {
            candidates.push_back(isHalved ? oscillator : 0.5 * oscillator);
        }
    }
    return candidates;
}

std::vector<double> sxd4_vco_candidates::ofOutputClock(double frequency, unsigned int pamSelection,
                                                       double symbolRate) const {
    const clocking::interval range = oscillatorRange(*settings_);
    const double megahertzPerInput =
        pamSelection == 0 ? 2.0 * clocking::megahertzPerGigahertz : clocking::megahertzPerGigahertz;
    std::vector<double> candidates;
    for (const double divider : programmableDividers) {
        for (const double doubling : lineDividers) {
            const double input = frequency / megahertzPerInput * divider * doubling;
            const double clock = 0.5 * input;
            if (range.contains(clock) && inputPerSymbolRate.contains(input / symbolRate)) {
                candidates.push_back(clock);
            }
        }
    }
    return candidates;
}

std::vector<double> commonCandidates(const std::vector<std::vector<double>>& lists) {
    // To the packing no list at all is a fault; here it is a channel that uses nothing.
    return lists.empty() ? std::vector<double>() : gt_quad_packing::mainIntersectionLogic(lists);
}

}  // namespace sable_lanecfg
