#include "block/default_values.h"

#include <lanecfg/gt_rule_engine.h>
#include <lanecfg/rule_engine_utilities.h>

#include <array>
#include <cstddef>
#include <new>
#include <utility>
#include <vector>

namespace sable_lanecfg {

namespace {

/// A variable that passes set. It is found, or created, when it is first set, for a variable has
/// its place in the evaluation order and in the snapshots from then on; after that it is held.
class pass_variable {
  public:
    explicit pass_variable(std::string name) : name_(std::move(name)) {}

    void set(rule_engine_base& engine, const ruleValue& value) {
        if (held_ != nullptr) {
            held_->second.value = value;
            return;
        }
        engine.setVal(name_, value);
        held_ = engine.findVariable(name_);
    }

  private:
    std::string name_;
    variable* held_ = nullptr;
};

/// Values that passes set together, in key order. The dictionary must outlive this.
class pass_values {
  public:
    explicit pass_values(const std::map<std::string, ruleValue>& values) {
        entries_.reserve(values.size());
        for (const auto& [name, value] : values) {
            entries_.emplace_back(pass_variable(name), &value);
        }
    }

    bool empty() const { return entries_.empty(); }

    void set(rule_engine_base& engine) {
        for (auto& [target, value] : entries_) {
            target.set(engine, *value);
        }
    }

  private:
    std::vector<std::pair<pass_variable, const ruleValue*>> entries_;
};

/// The rates of a channel in one direction, those of `ofNone` where it is given none.
const channelRates& givenRates(const userParamStore& params, std::size_t direction,
                               std::size_t channel, const std::array<channelRates, 2>& ofNone) {
    const bool isThere = direction < params.size() && channel < params[direction].size();
    return isThere && !params[direction][channel].empty() ? params[direction][channel]
                                                          : ofNone.at(direction);
}

std::vector<pass_values> ratesOf(const channelRates& rates) {
    std::vector<pass_values> held;
    held.reserve(rates.size());
    for (const auto& rate : rates) {
        held.emplace_back(rate);
    }
    return held;
}

/// Has the C library merge the small blocks that were just released, as it does when it is asked
/// for a large one.
void mergeReleasedBlocks() {
    constexpr std::size_t largeBlock = 4096;
    void* const volatile block = ::operator new(largeBlock, std::nothrow);
    ::operator delete(block, std::nothrow);
}

/// Leaves no channel. A snapshot's blocks are merged while the processor still has them near: left
/// to the end, those of many snapshots take more than twice as long.
void releaseSnapshots(std::vector<std::vector<variableMap>>& passesOfChannels) {
    for (std::vector<variableMap>& passes : passesOfChannels) {
        for (variableMap& snapshot : passes) {
            snapshot.clear();
            mergeReleasedBlocks();
        }
    }
    passesOfChannels.clear();
}

}  // namespace

/// What a pass sets: the same for all passes, for those of a channel, and by rate.
struct gt_rule_engine::passInputs {
    pass_values defaults;
    pass_values startValues;
    ruleValue siliconRevision;

    std::vector<pass_values> txRates = {};
    std::vector<pass_values> rxRates = {};
    unsigned int dual = 0;
    unsigned int channel = 0;

    pass_variable dualVariable{"DUAL"};
    pass_variable modeVariable{"LaneTxRxMode"};
    pass_variable channelVariable{"LaneNum"};
    pass_variable revisionVariable{"siliconRev"};
    pass_variable rxVariable{"RX"};
    pass_variable txVariable{"TX"};
};

gt_rule_engine::~gt_rule_engine() {
    releaseSnapshots(blockVarMap);
}

void gt_rule_engine::runBlockRules() {
    releaseSnapshots(blockVarMap);
    const auto defaults = defaultValues(paramTypes);
    const auto ratesOfNone = ratesOfDefaults(defaults);
    findMode();

    passInputs inputs{pass_values(defaults), pass_values(passStartValues), siliconRevision()};
    const auto duals = static_cast<unsigned>(rule_engine_utilities::HsClkPerBlock(family));
    const auto channelsOfDual = static_cast<unsigned>(rule_engine_utilities::ChPerHsClk(family));
    for (inputs.dual = 0; inputs.dual < duals; ++inputs.dual) {
        for (unsigned int position = 0; position < channelsOfDual; ++position) {
            inputs.channel = inputs.dual * 2 + position;
            inputs.txRates = ratesOf(givenRates(userParams, 0, inputs.channel, ratesOfNone));
            inputs.rxRates = ratesOf(givenRates(userParams, 1, inputs.channel, ratesOfNone));
            runChannel(inputs);
        }
    }
}

void gt_rule_engine::runChannel(passInputs& inputs) {
    const bool together = laneMode[static_cast<int>(inputs.channel)] == "txrx_rate_together";
    blockVarMap.emplace_back();
    for (std::size_t t = 0; t < inputs.txRates.size(); ++t) {
        for (std::size_t r = 0; r < inputs.rxRates.size(); ++r) {
            const bool nothingGiven = inputs.txRates[t].empty() && inputs.rxRates[r].empty();
            if ((together && t != r) || nothingGiven) {
                continue;
            }
            runPass(inputs, t, r);
        }
    }
}

void gt_rule_engine::runPass(passInputs& inputs, std::size_t txRate, std::size_t rxRate) {
    inputs.defaults.set(*this);
    inputs.startValues.set(*this);
    inputs.txRates[txRate].set(*this);
    inputs.rxRates[rxRate].set(*this);
    inputs.dualVariable.set(*this, inputs.dual);
    inputs.modeVariable.set(*this, laneMode[static_cast<int>(inputs.channel)]);
    inputs.channelVariable.set(*this, inputs.channel);
    inputs.revisionVariable.set(*this, inputs.siliconRevision);

    runRules();

    // Set behind the rules, these label the snapshot; the next pass reads them as they stand.
    inputs.rxVariable.set(*this, static_cast<unsigned int>(rxRate));
    inputs.txVariable.set(*this, static_cast<unsigned int>(txRate));
    blockVarMap.back().push_back(varMap);
    passFlag = !passFlag;
}

std::string gt_rule_engine::siliconRevision() {
    // A missing entry enters the settings, empty.
    const std::vector<std::string>& revisions = settings["siliconRev"];
    return revisions.empty() ? std::string() : revisions.front();
}

}  // namespace sable_lanecfg
