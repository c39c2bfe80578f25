#include "clock_warnings.h"

#include "families.h"
#include "packing/packing_rows.h"
#include "rate_places.h"

#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

/// Oscillators are good to this; what a fraction leaves is far below.
constexpr double toleratedDifference = 100e-6;

/// A reference clock as the request gives it, and that for which the registers are made (MHz).
struct ClockUse {
    RatePlace at;
    std::string group;
    std::string pll;
    std::string source;
    double lineRate;  ///< Gb/s
    double requested;
    double used;
};

using PllResults = std::map<std::string, packingNumbers>;

bool areApart(double requested, double used) {
    return std::abs(used - requested) > toleratedDifference * std::abs(requested);
}

/// A parameter of the place's direction, null where it is missing or has another type.
template <class Value>
const Value* parameterAt(const ParameterValues& values, const RatePlace& at, const char* ending) {
    const ruleValue* const value = elementOf(values, directionOf(at) + ending);
    return value == nullptr ? nullptr : boost::get<Value>(value);
}

const PllResults* resultsOf(const packingTable<PllResults>& left, int lane,
                            const std::string& group, const std::string& pll) {
    const auto* const groups = elementOf(left, lane > 1 ? "DUAL_1" : "DUAL_0");
    const auto* const plls = groups == nullptr ? nullptr : elementOf(*groups, group);
    return plls == nullptr ? nullptr : elementOf(*plls, pll);
}

/// The first number of a rate's row, none where the PLL has no frequency.
std::optional<double> firstOfRow(const PllResults& results, const std::string& name, int rate) {
    const packingNumbers* const rows = rowsOfResult(&results, name);
    if (rows == nullptr || rate < 0) {
        return std::nullopt;
    }
    const std::size_t row = rowOfSlot(*rows, static_cast<std::size_t>(rate));
    return row < rows->size() && !(*rows)[row].empty() ? std::optional((*rows)[row].front())
                                                       : std::nullopt;
}

std::optional<ClockUse> clockUseAt(const RatePlace& at, const userParamStore& params,
                                   const packingTable<PllResults>& left) {
    const ParameterValues* const values = valuesAt(params, at);
    if (values == nullptr) {
        return std::nullopt;
    }
    const auto* const group = parameterAt<std::string>(*values, at, "_RATE_GROUP");
    const auto* const pll = parameterAt<std::string>(*values, at, "_PLL_TYPE");
    const auto* const source = parameterAt<std::string>(*values, at, "_REFCLK_SOURCE");
    const auto* const lineRate = parameterAt<double>(*values, at, "_LINE_RATE");
    const auto* const requested = parameterAt<double>(*values, at, "_REFCLK_FREQUENCY");
    if (group == nullptr || pll == nullptr || source == nullptr || lineRate == nullptr ||
        requested == nullptr) {
        return std::nullopt;
    }
    const PllResults* const results = resultsOf(left, at.lane, *group, *pll);
    if (results == nullptr || firstOfRow(*results, "refclk_valid", at.rate) != 1.0) {
        return std::nullopt;
    }
    const std::optional<double> used = firstOfRow(*results, "refclks", at.rate);
    return used ? std::optional(ClockUse{at, *group, *pll, *source, *lineRate, *requested, *used})
                : std::nullopt;
}

ClockWarning warningOf(const std::vector<ClockUse>& uses, std::string text) {
    ClockWarning warning;
    for (const ClockUse& use : uses) {
        warning.lanes.insert(use.at.lane);
        warning.directions.insert(directionOf(use.at));
        warning.groups.insert(use.group);
        warning.plls.insert(use.pll);
        warning.sources.insert(use.source);
        warning.rates.insert(use.at.rate);
        warning.requested.insert(use.requested);
        warning.used.insert(use.used);
    }
    warning.text = std::move(text);
    return warning;
}

std::string megahertz(double clock) {
    return jsonText(Json(clock)) + " MHz";
}

/// Whether the PLL that a rate doesn't take reaches it from the requested clock.
bool suitsOtherPll(const ClockUse& use) {
    const std::string other = use.pll == "LCPLL" ? "RPLL" : "LCPLL";
    return !areApart(use.requested, rule_engine_utilities::calculateActualRefclk(
                                        use.lineRate, use.requested, other));
}

/// One lane, direction and packing group, whose clocks are all others than requested.
std::string textOfLane(const std::vector<ClockUse>& uses) {
    std::map<std::tuple<double, double, std::string>, std::set<int>> rates;
    for (const ClockUse& use : uses) {
        rates[{use.requested, use.used, use.pll}].insert(use.at.rate);
    }
    std::vector<std::string> clauses;
    for (const auto& [clocks, ratesOfThem] : rates) {
        const auto& [requested, used, pll] = clocks;
        clauses.push_back("of " + megahertz(used) + " where the request gives " +
                          megahertz(requested) + " (" + pll + ", " + counted("rate", ratesOfThem) +
                          ")");
    }
    const ClockUse& first = uses.front();
    // The group is any text of the user, so it is quoted to keep the line one.
    return placeText(first.at) + " in packing group " + jsonText(Json(first.group)) +
           ": the registers are made for a reference clock " +
           boost::algorithm::join(clauses, ", ") +
           ". Put the clock that they are made for into the request and supply it, " +
           (std::all_of(uses.begin(), uses.end(), suitsOtherPll)
                ? "or take the other PLL where it is free: it can use what is asked for."
                : "or choose another clock; lanecfg refclk tells which ones the PLL can use.");
}

/// Places that ask for the same clock from one source and, at the same rate, need several.
std::string textOfSource(const std::vector<ClockUse>& uses) {
    std::map<double, std::vector<std::string>> places;
    std::set<int> rates;
    for (const ClockUse& use : uses) {
        std::vector<std::string>& ofClock = places[use.used];
        const std::string place = placeText(use.at);
        if (std::find(ofClock.begin(), ofClock.end(), place) == ofClock.end()) {
            ofClock.push_back(place);
        }
        rates.insert(use.at.rate);
    }
    std::vector<std::string> clauses;
    for (const auto& [used, ofClock] : places) {
        clauses.push_back(megahertz(used) + " (" + listed(ofClock) + ")");
    }
    return "source " + jsonText(Json(uses.front().source)) + ": where the request gives " +
           megahertz(uses.front().requested) + " the registers are made for " +
           boost::algorithm::join(clauses, " and ") + " at " + counted("rate", rates) +
           ". Choose a clock that all of them can use, or a source for each of the clocks.";
}

using UsesByPlace = std::map<std::tuple<int, bool, std::string>, std::vector<ClockUse>>;
using UsesBySource = std::map<std::pair<std::string, double>, std::vector<ClockUse>>;

/// The uses of other clocks than requested, by lane, direction and packing group.
UsesByPlace usesOfOtherClocks(const std::vector<ClockUse>& uses) {
    UsesByPlace found;
    for (const ClockUse& use : uses) {
        if (areApart(use.requested, use.used)) {
            found[{use.at.lane, use.at.isReceive, use.group}].push_back(use);
        }
    }
    return found;
}

/// The uses of a source at rates at which it would have to give several clocks, by source and
/// requested clock. Where the request itself gives several, it is meant so.
UsesBySource usesOfSeveralClocks(const std::vector<ClockUse>& uses) {
    std::map<std::tuple<std::string, double, int>, std::vector<ClockUse>> atOneTime;
    for (const ClockUse& use : uses) {
        atOneTime[{use.source, use.requested, use.at.rate}].push_back(use);
    }
    UsesBySource found;
    for (const auto& [key, together] : atOneTime) {
        const double first = together.front().used;
        if (std::any_of(together.begin(), together.end(),
                        [first](const ClockUse& use) { return areApart(first, use.used); })) {
            std::vector<ClockUse>& ofSource = found[{std::get<0>(key), std::get<1>(key)}];
            ofSource.insert(ofSource.end(), together.begin(), together.end());
        }
    }
    return found;
}

std::vector<ClockWarning> warningsOf(const std::vector<channelUsageInfo>& usage,
                                     const userParamStore& params,
                                     const packingTable<PllResults>& left) {
    std::vector<ClockUse> uses;
    for (const RatePlace& at : placesOf(usage)) {
        if (const std::optional<ClockUse> use = clockUseAt(at, params, left)) {
            uses.push_back(*use);
        }
    }
    std::vector<ClockWarning> warnings;
    for (const auto& [place, ofPlace] : usesOfOtherClocks(uses)) {
        warnings.push_back(warningOf(ofPlace, textOfLane(ofPlace)));
    }
    for (const auto& [source, ofSource] : usesOfSeveralClocks(uses)) {
        warnings.push_back(warningOf(ofSource, textOfSource(ofSource)));
    }
    return warnings;
}

}  // namespace

std::vector<ClockWarning> clockWarnings(const gt_quad_packing& packing) {
    return warningsOf(packing.channels, packing.userParams, packing.intersectedCoordinates);
}

std::vector<ClockWarning> clockWarnings(const gt_rule_engine& engine) {
    return warningsOf(engine.channelUsage, engine.userParams, engine.intersectedCoordinates);
}

Json clockWarningDocument(const std::vector<ClockWarning>& warnings) {
    Json list = Json::array();
    for (const ClockWarning& warning : warnings) {
        list.push_back({{"lanes", warning.lanes},
                        {"directions", warning.directions},
                        {"groups", warning.groups},
                        {"plls", warning.plls},
                        {"sources", warning.sources},
                        {"rates", warning.rates},
                        {"requested_mhz", warning.requested},
                        {"used_mhz", warning.used},
                        {"warning", warning.text}});
    }
    return list;
}

void tellOfClocks(const Request& request, const std::vector<ClockWarning>& warnings,
                  Console& console) {
    for (const ClockWarning& warning : warnings) {
        console.warning("Request " + request.file + ": " + warning.text);
    }
}

}  // namespace sable_lanecfg::tool
