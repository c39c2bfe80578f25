#include "block/default_values.h"

#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/predicate.hpp>
#include <boost/optional.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace sable_lanecfg {

namespace {

boost::optional<ruleValue> defaultValue(const paramTypeInfo& parameter) {
    const std::string& type = parameter.type;
    const std::string& text = parameter.default_value;
    if (type == "int") {
        return ruleValue(rule_engine_utilities::getInt(text));
    }
    if (type == "float") {
        return ruleValue(rule_engine_utilities::getFloat(text));
    }
    if (type == "double") {
        return ruleValue(rule_engine_utilities::getDouble(text));
    }
    if (type == "string") {
        return ruleValue(text);
    }
    if (type == "bool") {
        return ruleValue(rule_engine_utilities::stringToBool(text));
    }
    return boost::none;
}

std::size_t directionOf(const std::string& parameterName) {
    return boost::algorithm::starts_with(parameterName, "RX") ? 1 : 0;
}

}  // namespace

std::map<std::string, ruleValue> defaultValues(const std::map<std::string, paramTypeInfo>& types) {
    std::map<std::string, ruleValue> defaults;
    for (const auto& [name, parameter] : types) {
        if (auto value = defaultValue(parameter)) {
            defaults.emplace_hint(defaults.end(), name, std::move(*value));
        }
    }
    return defaults;
}

void fillEmptyRates(userParamStore& params, int channels,
                    const std::map<std::string, ruleValue>& defaults) {
    constexpr std::size_t directions = 2;
    const auto channelCount = static_cast<std::size_t>(channels);

    std::map<std::string, ruleValue> allDefaults[directions];
    for (const auto& [name, value] : defaults) {
        allDefaults[directionOf(name)].emplace(name, value);
    }

    params.resize(std::max(params.size(), directions));
    for (std::size_t direction = 0; direction < directions; ++direction) {
        auto& lanes = params[direction];
        lanes.resize(std::max(lanes.size(), channelCount));
        for (std::size_t channel = 0; channel < channelCount; ++channel) {
            if (lanes[channel].empty()) {
                lanes[channel].push_back(allDefaults[direction]);
            }
        }
    }
}

}  // namespace sable_lanecfg
