#pragma once

#include <lanecfg/gt_db_load.h>

#include <array>
#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Default of every user parameter as a value of its type; a parameter of unknown type is left
/// out.
std::map<std::string, ruleValue> defaultValues(const std::map<std::string, paramTypeInfo>& types);

/// Rates of a channel in one direction, a dictionary for each.
using channelRates = std::vector<std::map<std::string, ruleValue>>;

/// By direction, the one rate of a channel that is given none: the direction's share of `defaults`.
std::array<channelRates, 2> ratesOfDefaults(const std::map<std::string, ruleValue>& defaults);

/// Gives every channel (of the first `channels`) and direction without a rate one rate that holds
/// the direction's share of `defaults`. Missing directions and channels are added.
void fillEmptyRates(userParamStore& params, int channels,
                    const std::map<std::string, ruleValue>& defaults);

}  // namespace sable_lanecfg
