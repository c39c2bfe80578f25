#include "packing/lane_parameters.h"

#include <lanecfg/rule_engine_utilities.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace sable_lanecfg {

namespace {

std::string placeOf(laneDirection direction, int lane, int slot) {
    return std::string(wordOf(direction)) + " of lane " + std::to_string(lane) + " at rate " +
           std::to_string(slot);
}

/// An element by its number, null beyond the list. A negative number is beyond every list.
template <class Element>
const Element* elementAt(const std::vector<Element>& list, int number) {
    const auto index = static_cast<std::size_t>(number);
    return index < list.size() ? &list[index] : nullptr;
}

const std::map<std::string, ruleValue>& valuesOf(const userParamStore& store,
                                                 laneDirection direction, int lane, int slot) {
    const auto* const lanes = elementAt(store, static_cast<int>(direction));
    const auto* const slots = lanes == nullptr ? nullptr : elementAt(*lanes, lane);
    const auto* const values = slots == nullptr ? nullptr : elementAt(*slots, slot);
    if (values == nullptr) {
        throw std::out_of_range("no user parameters for " + placeOf(direction, lane, slot));
    }
    return *values;
}

}  // namespace

const char* wordOf(laneDirection direction) {
    return direction == laneDirection::transmit ? "TX" : "RX";
}

const std::vector<int>& lanesOf(const channelUsageInfo& channel, laneDirection direction) {
    return direction == laneDirection::transmit ? channel.tx : channel.rx;
}

bool hasLane(const channelUsageInfo& channel, laneDirection direction, int lane) {
    const std::vector<int>& lanes = lanesOf(channel, direction);
    return std::find(lanes.begin(), lanes.end(), lane) != lanes.end();
}

std::string dualName(int dual) {
    return "DUAL_" + std::to_string(dual);
}

const std::string& ratePinOf(const channelUsageInfo& channel, laneDirection direction,
                             std::size_t position) {
    const std::vector<std::string>& pins =
        direction == laneDirection::transmit ? channel.txrate : channel.rxrate;
    if (position >= pins.size()) {
        throw std::out_of_range("no rate pin for " + std::string(wordOf(direction)) + " of lane " +
                                std::to_string(lanesOf(channel, direction).at(position)));
    }
    return pins[position];
}

laneParameters::laneParameters(const userParamStore& store, laneDirection direction, int lane,
                               int slot)
    : direction_(direction),
      lane_(lane),
      slot_(slot),
      values_(&valuesOf(store, direction, lane, slot)) {}

std::string laneParameters::nameWith(const char* ending) const {
    return wordOf(direction_) + std::string(ending);
}

void laneParameters::throwMissing(const std::string& name) const {
    throw std::out_of_range(name + " is missing in " + place());
}

void laneParameters::throwWrongType(const std::string& name) const {
    throw std::invalid_argument(name + " has another type in " + place());
}

std::string laneParameters::place() const {
    return placeOf(direction_, lane_, slot_);
}

double actualRefclks::of(double lineRate, double requestedRefclk, const std::string& pll) {
    // What is not a number has no place in the order of the known ones.
    if (std::isunordered(lineRate, requestedRefclk)) {
        return rule_engine_utilities::calculateActualRefclk(lineRate, requestedRefclk, pll);
    }
    const auto [entry, isNew] = known_.try_emplace({lineRate, requestedRefclk, pll});
    if (isNew) {
        entry->second =
            rule_engine_utilities::calculateActualRefclk(lineRate, requestedRefclk, pll);
    }
    return entry->second;
}

laneClocking::laneClocking(const laneParameters& parameters, actualRefclks& clocks)
    : source(parameters.get<std::string>("_REFCLK_SOURCE")),
      pll(parameters.get<std::string>("_PLL_TYPE")),
      requestedRefclk(parameters.get<double>("_REFCLK_FREQUENCY")),
      lineRate(parameters.get<double>("_LINE_RATE")),
      dividerPll(parameters.get<std::string>("PROGDIV_FREQ_SOURCE")),
      isDividerEnabled(parameters.get<bool>("PROGDIV_FREQ_ENABLE")),
      actualRefclk(clocks.of(lineRate, requestedRefclk, pll)) {}

}  // namespace sable_lanecfg
