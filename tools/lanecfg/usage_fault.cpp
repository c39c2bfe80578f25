#include "usage_fault.h"

#include "json_shape.h"

#include <cstddef>

namespace sable_lanecfg::tool {
namespace {

using nlohmann::json;

std::string wrongShape(const std::string& key, const char* wanted, const json& value) {
    return "the key \"" + key + "\" must be " + wanted + ", and is " + shownValue(value) + ".";
}

std::string elementKey(const std::string& key, std::size_t index) {
    return key + "[" + std::to_string(index) + "]";
}

std::string textFault(const std::string& key, const json& value) {
    return hasText(value) ? std::string() : wrongShape(key, "a text", value);
}

std::string listFault(const std::string& key, const json& value) {
    if (!isReadAsList(value)) {
        return wrongShape(key, "a list", value);
    }
    std::string fault;
    if (value.is_array()) {
        for (std::size_t index = 0; index < value.size() && fault.empty(); ++index) {
            fault = textFault(elementKey(key, index), value[index]);
        }
    }
    return fault;
}

/// Fault of one member of a group of lanes; a key that is missing is the library's to tell.
std::string laneMemberFault(const std::string& key, const json& lane, const char* name) {
    const auto found = lane.find(name);
    if (found == lane.end()) {
        return {};
    }
    const std::string memberKey = key + "." + name;
    return name == std::string("group") ? textFault(memberKey, *found)
                                        : listFault(memberKey, *found);
}

std::string laneUsageFault(const json& laneUsage) {
    for (std::size_t index = 0; index < laneUsage.size(); ++index) {
        for (const char* const name : {"group", "tx", "rx", "txrate", "rxrate", "rates"}) {
            const std::string fault =
                laneMemberFault(elementKey("laneUsage", index), laneUsage[index], name);
            if (!fault.empty()) {
                return fault;
            }
        }
    }
    return {};
}

/// Fault of one quad: its flag is a value that the library tells about, all else are lists.
std::string quadFault(const std::string& key, const json& quad) {
    if (!quad.is_object()) {
        return wrongShape(key, "an object", quad);
    }
    for (const auto& [name, value] : quad.items()) {
        const std::string fault =
            name == "IS_CURRENT_QUAD" ? std::string() : listFault(key + "." + name, value);
        if (!fault.empty()) {
            return fault;
        }
    }
    return {};
}

/// Quads stand in a list, or each in an object that repeats its own key; an object without that
/// key is the library's to tell.
std::string quadsFault(const std::string& key, const json& quads) {
    if (!quads.is_structured() && !isReadAsList(quads)) {
        return wrongShape(key, "a list of quads", quads);
    }
    std::size_t index = 0;
    for (const auto& [name, entry] : quads.items()) {
        std::string fault;
        if (quads.is_array()) {
            fault = quadFault(elementKey(key, index++), entry);
        } else if (entry.is_object() && entry.contains(name)) {
            fault = quadFault(key + "." + name + "." + name, entry[name]);
        }
        if (!fault.empty()) {
            return fault;
        }
    }
    return {};
}

}  // namespace

std::string usageFault(const json& root) {
    const auto laneUsage = root.find("laneUsage");
    std::string fault =
        laneUsage == root.end() || !laneUsage->is_array() ? "" : laneUsageFault(*laneUsage);
    const auto quadUsage = root.find("quadUsage");
    if (fault.empty() && quadUsage != root.end() && quadUsage->is_object()) {
        for (auto quads = quadUsage->begin(); quads != quadUsage->end() && fault.empty(); ++quads) {
            fault = quadsFault("quadUsage." + quads.key(), *quads);
        }
    }
    return fault;
}

}  // namespace sable_lanecfg::tool
