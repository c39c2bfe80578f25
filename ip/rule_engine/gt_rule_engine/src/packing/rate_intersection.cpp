#include "packing/packing_faults.h"
#include "packing/packing_records.h"

#include <lanecfg/gt_quad_packing.h>

#include <algorithm>
#include <optional>
#include <set>
#include <stdexcept>

namespace sable_lanecfg {

namespace {

/// Tells users and hosts which fault this is, so it stays whatever moves in this file.
constexpr int emptyIntersectionLine = 107;

/// The first element of the first list, and whether all elements of all lists equal it.
template <class Lists>
auto agreementOf(const Lists& lists) {
    using element = typename Lists::value_type::value_type;
    const element first =
        lists.empty() || lists.front().empty() ? element() : lists.front().front();
    const bool agrees = std::all_of(lists.begin(), lists.end(), [&first](const auto& list) {
        return std::all_of(list.begin(), list.end(),
                           [&first](const element& other) { return other == first; });
    });
    return std::make_pair(first, agrees && !lists.empty());
}

/// What several uses of a PLL ask of it, a list for each use of a slot.
struct slotDemands {
    packingNumbers rates;
    packingNumbers refclks;
    packingTexts sources;

    void add(const packingRecord& record, std::size_t slot) {
        rates.push_back(slotOf(listsOf<packingNumbers>(record, ratesField), slot));
        refclks.push_back(slotOf(listsOf<packingNumbers>(record, refclksField), slot));
        sources.push_back(slotOf(listsOf<packingTexts>(record, refclkSourcesField), slot));
    }
};

/// How a PLL meets the demands on a slot: its common frequencies, and a number or text for each.
struct slotSolution {
    std::vector<double> frequencies;
    std::vector<double> shared;
    std::vector<double> refclks;
    std::vector<double> refclkIds;
    std::vector<double> refclkValid;
    std::vector<double> sourcesValid;
    std::vector<std::string> sources;
};

double flagNumber(bool flag) {
    return flag ? 1.0 : 0.0;
}

double indexOf(double clock, const std::vector<double>& clocks) {
    const auto found = std::find(clocks.begin(), clocks.end(), clock);
    return found == clocks.end() ? 0.0 : static_cast<double>(found - clocks.begin());
}

slotSolution solve(const slotDemands& demands, bool isShared, const std::vector<double>& clocks) {
    slotSolution solution;
    solution.frequencies = gt_quad_packing::mainIntersectionLogic(demands.rates);
    const std::size_t count = solution.frequencies.size();
    const refclkFreqCheck refclk = gt_quad_packing::checkRefclkFreq(demands.refclks);
    const refclkSourceCheck source = gt_quad_packing::checkRefclkSource(demands.sources);
    solution.shared.assign(count, flagNumber(isShared));
    solution.refclks.assign(count, refclk.frequency);
    solution.refclkIds.assign(count, indexOf(refclk.frequency, clocks));
    solution.refclkValid.assign(count, flagNumber(refclk.isValid));
    solution.sourcesValid.assign(count, flagNumber(source.isValid));
    solution.sources.assign(count, source.source);
    return solution;
}

std::size_t slotCount(const packingRecords& records) {
    std::size_t count = 0;
    for (const auto& [key, record] : records) {
        count = std::max(count, listsOf<packingNumbers>(record, ratesField).size());
    }
    return count;
}

/// Lanes on different pins change rate independently of each other.
bool hasDifferentPins(const packingRecords& records) {
    std::set<std::string> pins;
    for (const auto& [key, record] : records) {
        const auto pin = record.find(ratePinField);
        if (pin != record.end()) {
            pins.insert(boost::get<std::string>(pin->second));
        }
    }
    return pins.size() > 1;
}

/// One frequency for all slots of all lanes.
std::vector<slotSolution> solveTogether(const packingRecords& records,
                                        const std::vector<double>& clocks) {
    slotDemands demands;
    for (const auto& [key, record] : records) {
        const std::size_t count = listsOf<packingNumbers>(record, ratesField).size();
        for (std::size_t slot = 0; slot < count; ++slot) {
            if (usesSlot(record, slot)) {
                demands.add(record, slot);
            }
        }
    }
    return {solve(demands, true, clocks)};
}

/// A frequency for each slot that a lane uses, none for the others.
std::vector<std::optional<slotSolution>> solveUsedSlots(const packingRecords& records,
                                                        const std::vector<double>& clocks) {
    std::vector<std::optional<slotSolution>> solutions(slotCount(records));
    for (std::size_t slot = 0; slot < solutions.size(); ++slot) {
        slotDemands demands;
        for (const auto& [key, record] : records) {
            if (usesSlot(record, slot)) {
                demands.add(record, slot);
            }
        }
        if (!demands.rates.empty()) {
            solutions[slot] = solve(demands, false, clocks);
        }
    }
    return solutions;
}

/// At a slot that no lane uses the PLL stays as it is at the one before, and at the slots before
/// the first one as it is there.
std::vector<slotSolution> solveSlots(const packingRecords& records,
                                     const std::vector<double>& clocks) {
    const std::vector<std::optional<slotSolution>> used = solveUsedSlots(records, clocks);
    const auto first =
        std::find_if(used.begin(), used.end(), [](const auto& slot) { return slot.has_value(); });
    slotSolution latest = first == used.end() ? slotSolution() : **first;
    std::vector<slotSolution> solutions;
    for (const std::optional<slotSolution>& solution : used) {
        latest = solution.value_or(latest);
        solutions.push_back(latest);
    }
    return solutions;
}

void enterSolutions(const std::vector<slotSolution>& solutions,
                    std::map<std::string, packingNumbers>& numbers,
                    std::map<std::string, packingTexts>& texts) {
    for (const slotSolution& slot : solutions) {
        numbers["pllClkFreqs"].push_back(slot.frequencies);
        numbers["pllShared"].push_back(slot.shared);
        numbers["refclks"].push_back(slot.refclks);
        numbers["refclkIDs"].push_back(slot.refclkIds);
        numbers["refclk_valid"].push_back(slot.refclkValid);
        numbers["refclkSourcesValid"].push_back(slot.sourcesValid);
        texts["refclkSources"].push_back(slot.sources);
    }
}

}  // namespace

std::vector<double> gt_quad_packing::mainIntersectionLogic(const packingNumbers& lists) {
    if (lists.empty()) {
        showPackingFault(packingFaultFormat, std::out_of_range("no list to intersect"),
                         emptyIntersectionLine);
        return {};
    }
    if (lists.size() == 1) {
        return lists.front();
    }
    std::set<double> common;
    for (const double value : lists.front()) {
        const bool isEverywhere =
            std::all_of(lists.begin(), lists.end(), [value](const std::vector<double>& list) {
                return std::find(list.begin(), list.end(), value) != list.end();
            });
        if (isEverywhere) {
            common.insert(value);
        }
    }
    return {common.begin(), common.end()};
}

refclkFreqCheck gt_quad_packing::checkRefclkFreq(const packingNumbers& lists) {
    const auto [frequency, agrees] = agreementOf(lists);
    return {"", frequency, agrees};
}

refclkSourceCheck gt_quad_packing::checkRefclkSource(const packingTexts& lists) {
    const auto [source, agrees] = agreementOf(lists);
    return {"", source, agrees};
}

std::map<int, std::string> gt_quad_packing::runIntersection(bool logErrors) {
    packingMessages messages = intermediateDSCreation(logErrors);
    const auto intersect = [this](const std::string& dual, const std::string& group,
                                  const std::string& pll, const packingRecords& records) {
        const auto known = refclkFrequencies.find(dual + pll);
        const std::vector<double> clocks =
            known == refclkFrequencies.end() ? std::vector<double>() : known->second;
        const std::vector<slotSolution> solutions = hasDifferentPins(records)
                                                        ? solveTogether(records, clocks)
                                                        : solveSlots(records, clocks);
        enterSolutions(solutions, intersectedCoordinates[dual][group][pll],
                       refclkSourceIntersectedCoordinates[dual][group][pll]);
    };
    catchPackingFaults(__LINE__, logErrors, messages, [&] {
        for (const auto& [dual, groups] : intermediateData) {
            for (const auto& [group, plls] : groups) {
                for (const auto& [pll, records] : plls) {
                    intersect(dual, group, pll, records);
                }
            }
        }
    });
    return messages;
}

}  // namespace sable_lanecfg
