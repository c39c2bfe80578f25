#include "block/default_values.h"

#include "database/parameter_values.h"

#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace sable_lanecfg {

namespace {

std::size_t directionOf(const std::string& parameterName) {
    return boost::algorithm::starts_with(parameterName, "RX") ? 1 : 0;
}

}  // namespace

std::map<std::string, ruleValue> defaultValues(const std::map<std::string, paramTypeInfo>& types) {
    std::map<std::string, ruleValue> defaults;
    for (const auto& [name, parameter] : types) {
        ruleValue value = typedValue(parameter.default_value, parameter.type, textConverter());
        if (value.which() != 0) {
            defaults.emplace_hint(defaults.end(), name, std::move(value));
        }
    }
    return defaults;
}

std::array<channelRates, 2> ratesOfDefaults(const std::map<std::string, ruleValue>& defaults) {
    std::array<channelRates, 2> rates{channelRates(1), channelRates(1)};
    for (const auto& [name, value] : defaults) {
        rates.at(directionOf(name)).front().emplace(name, value);
    }
    return rates;
}

void fillEmptyRates(userParamStore& params, int channels,
                    const std::map<std::string, ruleValue>& defaults) {
    const auto channelCount = static_cast<std::size_t>(channels);
    const auto ratesOfNone = ratesOfDefaults(defaults);
    params.resize(std::max(params.size(), ratesOfNone.size()));
    for (std::size_t direction = 0; direction < ratesOfNone.size(); ++direction) {
        auto& lanes = params[direction];
        lanes.resize(std::max(lanes.size(), channelCount));
        for (std::size_t channel = 0; channel < channelCount; ++channel) {
            if (lanes[channel].empty()) {
                lanes[channel] = ratesOfNone.at(direction);
            }
        }
    }
}

}  // namespace sable_lanecfg
