#include "families/sxb/sxb_packing_values.h"

#include "packing/lane_parameters.h"
#include "packing/packing_rows.h"

#include <lanecfg/gt_quad_packing.h>
#include <lanecfg/rule_engine_utilities.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {

namespace {

using parameterMap = std::map<std::string, ruleValue>;

constexpr std::size_t slotOfGen3 = 2;
constexpr unsigned int usualGen3Width = 16;

/// A lane and direction at one rate slot.
struct ratePlace {
    laneDirection direction;
    int lane;
    std::size_t slot;
};

/// The rate slots that a request gives for a lane and direction.
std::size_t slotCount(const userParamStore& store, laneDirection direction, int lane) {
    const auto side = static_cast<std::size_t>(direction);
    const auto index = static_cast<std::size_t>(lane);
    return side < store.size() && index < store[side].size() ? store[side][index].size() : 0;
}

laneParameters parametersAt(const userParamStore& store, const ratePlace& at) {
    return {store, at.direction, at.lane, static_cast<int>(at.slot)};
}

bool isInUse(const std::vector<channelUsageInfo>& usage, const ratePlace& at) {
    return std::any_of(usage.begin(), usage.end(), [&at](const channelUsageInfo& record) {
        return hasLane(record, at.direction, at.lane);
    });
}

/// What the lanes of a quad have in common, whatever their rate.
struct quadSummary {
    std::map<int, unsigned int> gen3Width;                 ///< by lane
    std::map<int, unsigned int> lastSlot;                  ///< by lane
    bool hasSeveralRates = false;                          ///< of any lane
    std::set<std::pair<int, std::string>> pllsOfRateZero;  ///< dual and PLL of a data path
};

void addLane(const userParamStore& store, int lane, quadSummary& summary) {
    std::size_t slots = 0;
    for (const laneDirection direction : laneDirections) {
        const std::size_t own = slotCount(store, direction, lane);
        slots = std::max(slots, own);
        const std::string* const pll =
            own == 0 ? nullptr
                     : parametersAt(store, {direction, lane, 0}).find<std::string>("_PLL_TYPE");
        if (pll != nullptr) {
            summary.pllsOfRateZero.emplace(dualOf(lane), *pll);
        }
    }
    const bool hasGen3 = slotCount(store, laneDirection::transmit, lane) > slotOfGen3;
    const auto* const width = hasGen3
                                  ? parametersAt(store, {laneDirection::transmit, lane, slotOfGen3})
                                        .find<unsigned int>("_INT_DATA_WIDTH")
                                  : nullptr;
    summary.gen3Width[lane] = width == nullptr ? usualGen3Width : *width;
    summary.lastSlot[lane] = slots == 0 ? 0 : static_cast<unsigned int>(slots - 1);
    summary.hasSeveralRates = summary.hasSeveralRates || slots > 1;
}

quadSummary summaryOf(const gt_rule_engine& engine) {
    quadSummary summary;
    const int lanes = rule_engine_utilities::ChPerBlock(engine.family);
    for (int lane = 0; lane < lanes; ++lane) {
        addLane(engine.userParams, lane, summary);
    }
    return summary;
}

/// What the packing left of one PLL in a dual and packing group; it looks at the tables of the
/// packing, which have to outlive it.
class pll_outcome {
  public:
    /// `sources` may be null.
    pll_outcome(const std::map<std::string, packingNumbers>& numbers,
                const std::map<std::string, packingTexts>* sources)
        : frequencies_(rowsOf(&numbers, "pllClkFreqs")),
          shared_(rowsOf(&numbers, "pllShared")),
          clocks_(rowsOf(&numbers, "refclks")),
          clockIds_(rowsOf(&numbers, "refclkIDs")),
          sources_(rowsOf(sources, "refclkSources")) {}

    bool hasFrequencies() const {
        return std::any_of(frequencies_->begin(), frequencies_->end(),
                           [](const std::vector<double>& row) { return !row.empty(); });
    }

    bool hasFrequencies(std::size_t row) const {
        return row < frequencies_->size() && !(*frequencies_)[row].empty();
    }

    std::size_t rowOf(std::size_t slot) const { return rowOfSlot(*frequencies_, slot); }

    /// Whether lanes hold the PLL at one frequency at all of their rates.
    bool isShared() const { return shared_->at(0).at(0) != 0.0; }

    /// The five parameters that tell the rules of the PLL; `prefix` is direction and PLL.
    parameterMap parameters(const std::string& prefix, std::size_t row, bool powerDown) const {
        return {{prefix + "_PLLCLKOUT_FREQ_VECTOR", frequencies_->at(row)},
                {prefix + "_REFCLK_FREQUENCY", clocks_->at(row).at(0)},
                {prefix + "_POWERDOWN", powerDown},
                {prefix + "_REFCLK_SOURCE", sources_->at(row).at(0)},
                {prefix + "_REFCLK_ID", static_cast<unsigned int>(clockIds_->at(row).at(0))}};
    }

  private:
    template <class Rows>
    static const Rows* rowsOf(const std::map<std::string, Rows>* rows, const char* name) {
        static const Rows none;
        const Rows* const found = rowsOfResult(rows, name);
        return found == nullptr ? &none : found;
    }

    const packingNumbers* frequencies_;
    const packingNumbers* shared_;
    const packingNumbers* clocks_;
    const packingNumbers* clockIds_;
    const packingTexts* sources_;
};

/// What a table of the packing has by PLL for a dual and packing group, null where there is none.
template <class Content>
const std::map<std::string, Content>* pllsOf(const packingTable<Content>& table,
                                             const std::string& dual, const std::string& group) {
    const auto* const groups = elementOf(table, dual);
    return groups == nullptr ? nullptr : elementOf(*groups, group);
}

/// The outcomes of the PLLs that have a frequency.
std::map<std::string, pll_outcome> outcomesOf(const gt_rule_engine& engine, int dualNumber,
                                              const std::string& group) {
    const std::string dual = dualName(dualNumber);
    std::map<std::string, pll_outcome> outcomes;
    const auto* const plls = pllsOf(engine.intersectedCoordinates, dual, group);
    if (plls == nullptr) {
        return outcomes;
    }
    const auto* const sources = pllsOf(engine.refclkSourceIntersectedCoordinates, dual, group);
    for (const auto& [pll, numbers] : *plls) {
        const pll_outcome outcome(numbers, sources == nullptr ? nullptr : elementOf(*sources, pll));
        if (outcome.hasFrequencies()) {
            outcomes.emplace(pll, outcome);
        }
    }
    return outcomes;
}

void overwrite(parameterMap& values, const parameterMap& added) {
    for (const auto& [name, value] : added) {
        values[name] = value;
    }
}

/// Enters the outcomes of the packing for one lane, direction and rate.
class rate_entry {
  public:
    rate_entry(const gt_rule_engine& engine, const ratePlace& at, parameterMap& values)
        : parameters_(parametersAt(engine.userParams, at)),
          word_(wordOf(at.direction)),
          ownPll_(parameters_.get<std::string>("_PLL_TYPE")),
          slot_(at.slot),
          inUse_(isInUse(engine.channelUsage, at)),
          values_(&values) {}

    std::string group() const { return parameters_.get<std::string>("_RATE_GROUP"); }

    void enter(const std::string& pll, const pll_outcome& outcome) {
        if (pll == ownPll_) {
            enterOwnPll(outcome);
        } else {
            enterOtherPll(pll, outcome);
        }
    }

  private:
    void enterOwnPll(const pll_outcome& outcome) {
        const std::size_t row = outcome.rowOf(slot_);
        if (outcome.hasFrequencies(row)) {
            overwrite(*values_, outcome.parameters(word_ + "_" + ownPll_, row, !inUse_));
            (*values_)[word_ + "_IN_USE"] = inUse_;
        }
    }

    /// A PLL that is not even used for the programmable divider rests unless other lanes hold it.
    void enterOtherPll(const std::string& pll, const pll_outcome& outcome) {
        const bool isUsed = parameters_.get<bool>("PROGDIV_FREQ_ENABLE") &&
                            parameters_.get<std::string>("PROGDIV_FREQ_SOURCE") != ownPll_;
        const std::size_t row = isUsed ? outcome.rowOf(slot_) : 0;
        if (outcome.hasFrequencies(row)) {
            const bool powerDown = isUsed ? !inUse_ : !outcome.isShared();
            overwrite(*values_, outcome.parameters(word_ + "_" + pll, row, powerDown));
        }
    }

    laneParameters parameters_;
    std::string word_;
    std::string ownPll_;
    std::size_t slot_;
    bool inUse_;
    parameterMap* values_;
};

void enterPlls(const gt_rule_engine& engine, const ratePlace& at, parameterMap& values) {
    rate_entry entry(engine, at, values);
    for (const auto& [pll, outcome] : outcomesOf(engine, dualOf(at.lane), entry.group())) {
        entry.enter(pll, outcome);
    }
}

void enterSummary(const quadSummary& summary, int lane, parameterMap& values) {
    const auto isUsed = [&summary, lane](const char* pll) {
        return summary.pllsOfRateZero.count({dualOf(lane), pll}) != 0;
    };
    values["GEN3_INT_DATA_WIDTH"] = summary.gen3Width.at(lane);
    values["MAX_RATE"] = summary.lastSlot.at(lane);
    values["MULTI_RATE"] = summary.hasSeveralRates;
    values["RPLL_USED_FOR_SERIAL_DATA_RATE0"] = isUsed("RPLL");
    values["LCPLL_USED_FOR_SERIAL_DATA_RATE0"] = isUsed("LCPLL");
}

}  // namespace

void takePacking(gt_rule_engine& engine) {
    // The packing keeps a copy of what it gets, and no question about it needs the registers.
    const std::map<std::string, attributeInfo> noRegisters;
    gt_quad_packing packing(engine.channelUsage, engine.paramTypes, engine.userParams, noRegisters,
                            engine.settings);
    engine.packedChannels = packing.canBePacked(true);
    engine.intersectedCoordinates = std::move(packing.intersectedCoordinates);
    engine.refclkSourceIntersectedCoordinates =
        std::move(packing.refclkSourceIntersectedCoordinates);
}

void enterPackingValues(gt_rule_engine& engine) {
    const quadSummary summary = summaryOf(engine);
    const int lanes = rule_engine_utilities::ChPerBlock(engine.family);
    for (int lane = 0; lane < lanes; ++lane) {
        for (const laneDirection direction : laneDirections) {
            const std::size_t slots = slotCount(engine.userParams, direction, lane);
            for (std::size_t slot = 0; slot < slots; ++slot) {
                parameterMap& values = engine.userParams[static_cast<std::size_t>(direction)]
                                                        [static_cast<std::size_t>(lane)][slot];
                enterPlls(engine, {direction, lane, slot}, values);
                enterSummary(summary, lane, values);
            }
        }
    }
}

}  // namespace sable_lanecfg
