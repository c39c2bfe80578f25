#include "families/frozen/sxb_stable_packing_values.h"

#include "block/default_values.h"
#include "packing/lane_parameters.h"
#include "packing/packing_rows.h"

#include <lanecfg/rule_engine_utilities.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

namespace {

using parameterMap = std::map<std::string, ruleValue>;

/// What the packing has of a PLL in the first packing group of a dual that has it, by result name;
/// null where no group has it.
template <class T>
const std::map<std::string, std::vector<std::vector<T>>>* resultsOf(
    const packingResultMap<T>& results, const std::string& dual, const std::string& pll) {
    const auto* const groups = elementOf(results, dual);
    if (groups == nullptr) {
        return nullptr;
    }
    for (const auto& [group, plls] : *groups) {
        if (const auto* const found = elementOf(plls, pll)) {
            return found;
        }
    }
    return nullptr;
}

/// First entry of a slot's row, null without one.
template <class T>
const T* firstOf(const std::map<std::string, std::vector<std::vector<T>>>* results,
                 const std::string& name, std::size_t slot) {
    const auto* const rows = rowsOfResult(results, name);
    if (rows == nullptr) {
        return nullptr;
    }
    const std::size_t row = rowOfSlot(*rows, slot);
    const bool isThere = row < rows->size() && !(*rows)[row].empty();
    return isThere ? &(*rows)[row].front() : nullptr;
}

template <class T>
T valueOr(const T* found, const T& fallback) {
    return found == nullptr ? fallback : *found;
}

/// The lanes of a direction that the quad has.
std::size_t laneCount(const gt_rule_engine& engine, std::size_t direction) {
    const auto lanesOfQuad =
        static_cast<std::size_t>(rule_engine_utilities::ChPerBlock(engine.family));
    return direction < engine.userParams.size()
               ? std::min(engine.userParams[direction].size(), lanesOfQuad)
               : 0;
}

/// Calls `visit(lane, slot)` for every rate that the request gives in a direction.
template <class Visit>
void visitRates(const gt_rule_engine& engine, laneDirection direction, const Visit& visit) {
    const auto side = static_cast<std::size_t>(direction);
    for (std::size_t lane = 0; lane < laneCount(engine, side); ++lane) {
        for (std::size_t slot = 0; slot < engine.userParams[side][lane].size(); ++slot) {
            visit(lane, slot);
        }
    }
}

void enterMissing(gt_rule_engine& engine) {
    const auto ratesOfNone = ratesOfDefaults(defaultValues(engine.paramTypes));
    for (const laneDirection direction : laneDirections) {
        const auto side = static_cast<std::size_t>(direction);
        const parameterMap& defaults = ratesOfNone.at(side).front();
        visitRates(engine, direction, [&](std::size_t lane, std::size_t slot) {
            engine.userParams[side][lane][slot].insert(defaults.begin(), defaults.end());
        });
    }
}

void enterReceivePll(gt_rule_engine& engine, std::size_t lane, std::size_t slot) {
    const auto side = static_cast<std::size_t>(laneDirection::receive);
    const laneParameters parameters(engine.userParams, laneDirection::receive,
                                    static_cast<int>(lane), static_cast<int>(slot));
    const std::string& pll = parameters.get<std::string>("_PLL_TYPE");
    const std::string dual = dualName(dualOf(static_cast<int>(lane)));
    const auto* const numbers = resultsOf(engine.intersectedCoordinates, dual, pll);
    const auto* const texts = resultsOf(engine.refclkSourceIntersectedCoordinates, dual, pll);
    const double* const clock = firstOf(numbers, "pllClkFreqs", slot);
    parameterMap& rate = engine.userParams[side][lane][slot];
    rate["RX_PLL_VCO"] = valueOr(clock, 0.0);
    rate["RX_PLL_REFCLK_FREQUENCY"] = valueOr(firstOf(numbers, "refclks", slot), 0.0);
    rate["RX_PLL_POWERDOWN"] = clock == nullptr;
    rate["RX_PLL_REFCLK_SOURCE"] =
        valueOr(firstOf(texts, "refclkSources", slot), std::string("R0"));
}

}  // namespace

void enterStablePackingValues(gt_rule_engine& engine) {
    enterMissing(engine);
    engine.findMode();
    visitRates(engine, laneDirection::receive, [&engine](std::size_t lane, std::size_t slot) {
        enterReceivePll(engine, lane, slot);
    });
}

}  // namespace sable_lanecfg
