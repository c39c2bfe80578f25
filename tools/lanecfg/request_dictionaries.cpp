#include "request_dictionaries.h"

#include "errors.h"
#include "json_shape.h"
#include "parameter_checks.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <algorithm>
#include <cstddef>
#include <map>

namespace sable_lanecfg::tool {
namespace {

/// A value of the request with the words for messages about it.
struct Place {
    const std::string& file;
    std::string key;

    Place below(const std::string& name) const { return {file, key + "." + name}; }
};

[[noreturn]] void throwWrongShape(const Place& place, const std::string& wanted) {
    throw RequestError("Request " + place.file + ": the key \"" + place.key + "\" must be " +
                       wanted + " in the dictionary form.");
}

void take(const nlohmann::json& value, const Place& place, std::string& target) {
    if (value.is_string()) {
        target = value.get<std::string>();
    } else if (value.is_number() || value.is_boolean()) {
        target = value.dump();
    } else {
        throwWrongShape(place, "a text, with commas between several values,");
    }
}

template <class Element>
void take(const nlohmann::json& value, const Place& place, std::map<std::string, Element>& target) {
    if (!value.is_object()) {
        throwWrongShape(place, "an object");
    }
    for (const auto& [name, element] : value.items()) {
        take(element, place.below(name), target[name]);
    }
}

template <class Element>
void takeRootKey(const std::string& file, const nlohmann::json& root, const std::string& key,
                 std::map<std::string, Element>& target) {
    const auto found = root.find(key);
    if (found != root.end()) {
        take(*found, {file, key}, target);
    }
}

void refuseUnknownSections(const std::string& file, const userParamMap& userParams) {
    for (const auto& [section, lanes] : userParams) {
        if (section != "TX_SETTINGS" && section != "RX_SETTINGS") {
            throw RequestError("Request " + file + ": the key \"userParams." + section +
                               "\" is unknown. The sections of the dictionary form are "
                               "\"TX_SETTINGS\" and \"RX_SETTINGS\".");
        }
    }
}

bool namesLane(const std::string& key) {
    return key.find_first_of("0123") != std::string::npos;
}

bool isListOfNumbers(const std::string& text) {
    std::vector<std::string> tokens;
    boost::algorithm::split(tokens, text, boost::is_any_of(","));
    return std::all_of(tokens.begin(), tokens.end(),
                       [](const std::string& token) { return isParameterValue("int", token); });
}

/// The first of the numbered rate keys that is not there, empty when there are all.
std::string firstMissingRate(const std::map<std::string, textMap>& rates) {
    for (std::size_t rate = 0; rate < rates.size(); ++rate) {
        std::string key = "LR" + std::to_string(rate) + "_SETTINGS";
        if (rates.count(key) == 0) {
            return key;
        }
    }
    return {};
}

}  // namespace

RequestDictionaries readDictionaries(const std::string& file, const nlohmann::json& root) {
    RequestDictionaries result;
    takeRootKey(file, root, "options", result.options);
    takeRootKey(file, root, "laneUsage", result.laneUsage);
    takeRootKey(file, root, "quadUsage", result.quadUsage);
    takeRootKey(file, root, "userParams", result.userParams);
    if (result.userParams.empty()) {
        throw RequestError("Request " + file +
                           ": the key \"userParams\" must hold the sections "
                           "\"TX_SETTINGS\" and \"RX_SETTINGS\" in the dictionary form.");
    }
    refuseUnknownSections(file, result.userParams);
    return result;
}

std::vector<std::string> doubtsOf(const userParamMap& userParams) {
    std::vector<std::string> doubts;
    for (const auto& [section, lanes] : userParams) {
        for (const auto& [lane, rates] : lanes) {
            const std::string key = "The key \"userParams." + section + "." + lane + "\" ";
            if (!namesLane(lane)) {
                doubts.push_back(key +
                                 "names no lane, 0 to 3: with a part of the family tessera no lane "
                                 "takes its parameters, else the order of the keys decides.");
            }
            const std::string missing = firstMissingRate(rates);
            if (!missing.empty()) {
                doubts.push_back(key + "holds " + std::to_string(rates.size()) +
                                 " rates, but no \"" + missing +
                                 "\". Rates are numbered from LR0_SETTINGS on without gaps; the "
                                 "missing one runs without parameters, and those beyond the count "
                                 "are not read.");
            }
        }
    }
    return doubts;
}

std::vector<std::string> doubtsOf(const laneUsageMap& laneUsage) {
    std::vector<std::string> doubts;
    for (const auto& [group, members] : laneUsage) {
        for (const char* const name : {"tx", "rx", "rates"}) {
            const auto list = members.find(name);
            if (list != members.end() && !isListOfNumbers(list->second)) {
                doubts.push_back("The key \"laneUsage." + group + "." + name +
                                 "\" must be whole numbers with commas between, and is " +
                                 shownValue(list->second) +
                                 ". What can't be read of a number counts as 0, an empty text too; "
                                 "where there is none, leave the key out.");
            }
        }
    }
    return doubts;
}

}  // namespace sable_lanecfg::tool
