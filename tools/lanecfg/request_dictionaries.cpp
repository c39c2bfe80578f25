#include "request_dictionaries.h"

#include "errors.h"

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

}  // namespace

RequestDictionaries readDictionaries(const std::string& file, const JsonDocument& document) {
    if (!document.repeatedKeys.empty()) {
        throw RequestError("Request " + file + ": the key \"" + document.repeatedKeys.front() +
                           "\" stands more than once. Remove all but one.");
    }
    RequestDictionaries result;
    takeRootKey(file, document.root, "options", result.options);
    takeRootKey(file, document.root, "laneUsage", result.laneUsage);
    takeRootKey(file, document.root, "quadUsage", result.quadUsage);
    takeRootKey(file, document.root, "userParams", result.userParams);
    if (result.userParams.empty()) {
        throw RequestError("Request " + file +
                           ": the key \"userParams\" must hold the sections "
                           "\"TX_SETTINGS\" and \"RX_SETTINGS\" in the dictionary form.");
    }
    return result;
}

}  // namespace sable_lanecfg::tool
