#include <lanecfg/gt_rule_engine.h>
#include <lanecfg/rule_engine_utilities.h>

#include <algorithm>
#include <iterator>

namespace sable_lanecfg {

namespace {

/// What a PLL can do: half-rate multipliers and the range of its oscillator in GHz.
struct pllReach {
    std::vector<int> multipliers;
    double lowest;
    double highest;
};

const pllReach& reachOf(bool isLcpll) {
    static const pllReach lcpll{{2, 1}, 8.0, 16.375};
    static const pllReach rpll{{1}, 4.0, 8.0};
    return isLcpll ? lcpll : rpll;
}

/// Enters the PLL frequencies (GHz) from which a line rate (Gb/s) can be divided down; the map is
/// left alone when there is none.
void enterPllRates(float lineRate, const pllReach& reach, int rate,
                   std::map<int, std::set<double>>& found) {
    for (const int multiplier : reach.multipliers) {
        for (const double divider : {8.0, 4.0, 2.5, 2.0, 1.0}) {
            const double oscillator = (multiplier * divider) * (lineRate * 0.5);
            if (reach.lowest <= oscillator && oscillator <= reach.highest) {
                found[rate].insert(oscillator / multiplier);
            }
        }
    }
}

/// Value of a rate's parameter, boost::bad_get when it is missing or another alternative.
template <class T>
T parameterOf(const std::map<std::string, ruleValue>& rate, const std::string& name) {
    const auto entry = rate.find(name);
    if (entry == rate.end()) {
        throw boost::bad_get();
    }
    return boost::get<T>(entry->second);
}

}  // namespace

std::array<std::array<std::map<int, std::set<double>>, 4>, 4> gt_rule_engine::findPllRates() {
    std::array<std::array<std::map<int, std::set<double>>, 4>, 4> result;
    const std::array<std::string, 2> directionNames{"TX", "RX"};
    const auto channels = static_cast<std::size_t>(rule_engine_utilities::ChPerBlock(family));
    for (std::size_t channel = 0; channel < channels; ++channel) {
        for (std::size_t direction = 0; direction < directionNames.size(); ++direction) {
            if (direction >= userParams.size() || channel >= userParams[direction].size()) {
                continue;
            }
            const auto& rates = userParams[direction][channel];
            const std::string& prefix = directionNames[direction];
            for (std::size_t rate = 0; rate < rates.size(); ++rate) {
                const auto lineRate = parameterOf<float>(rates[rate], prefix + "_LINE_RATE");
                const auto pll = parameterOf<std::string>(rates[rate], prefix + "_PLL_TYPE");
                const bool isLcpll = pll == pllNames.at(0);
                const std::size_t row = (channel & ~std::size_t{1}) + (isLcpll ? 0 : 1);
                const std::size_t column = (channel % 2) * 2 + direction;
                enterPllRates(lineRate, reachOf(isLcpll), static_cast<int>(rate),
                              result[row][column]);
            }
        }
    }
    return result;
}

boost::optional<std::set<double>> gt_rule_engine::intersectNSets(
    const std::map<int, std::set<double>>& sets) {
    if (sets.empty()) {
        return boost::none;
    }
    std::set<double> common = sets.begin()->second;
    for (const auto& [number, other] : sets) {
        std::set<double> both;
        std::set_intersection(common.begin(), common.end(), other.begin(), other.end(),
                              std::inserter(both, both.end()));
        common.swap(both);
    }
    return common;
}

}  // namespace sable_lanecfg
