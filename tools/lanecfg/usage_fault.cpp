#include "usage_fault.h"

#include "json_shape.h"

#include <array>
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

/// The number of a lane or a rate.
std::string numberFault(const std::string& key, const json& value) {
    const std::string text = readerText(value);
    const bool isNumber = convertsTo<int>(text) && text.find('-') == std::string::npos;
    return isNumber ? std::string() : wrongShape(key, "a whole number from 0 on", value);
}

std::string flagFault(const std::string& key, const json& value) {
    return convertsTo<bool>(readerText(value)) ? std::string()
                                               : wrongShape(key, "true, false, 1 or 0", value);
}

using faultSearch = std::string (*)(const std::string& key, const json& value);

std::string listFault(const std::string& key, const json& value, faultSearch elementFault) {
    if (!isReadAsList(value)) {
        return wrongShape(key, "a list", value);
    }
    std::string fault;
    if (value.is_array()) {
        for (std::size_t index = 0; index < value.size() && fault.empty(); ++index) {
            fault = elementFault(elementKey(key, index), value[index]);
        }
    }
    return fault;
}

std::string listOfTextsFault(const std::string& key, const json& value) {
    return listFault(key, value, textFault);
}

std::string listOfNumbersFault(const std::string& key, const json& value) {
    return listFault(key, value, numberFault);
}

/// A key that every group of lanes has, and what its value must be.
struct LaneMember {
    const char* name;
    faultSearch fault;
};

constexpr std::array<LaneMember, 6> laneMembers = {{{"group", textFault},
                                                    {"tx", listOfNumbersFault},
                                                    {"rx", listOfNumbersFault},
                                                    {"txrate", listOfTextsFault},
                                                    {"rxrate", listOfTextsFault},
                                                    {"rates", listOfNumbersFault}}};

std::string laneFault(const std::string& key, const json& lane) {
    if (!lane.is_object()) {
        return wrongShape(key, "an object", lane);
    }
    for (const LaneMember& member : laneMembers) {
        const std::string memberKey = key + "." + member.name;
        const auto found = lane.find(member.name);
        const std::string fault =
            found == lane.end()
                ? "the key \"" + memberKey +
                      "\" is missing; a group of lanes has group, tx, rx, txrate, rxrate and rates."
                : member.fault(memberKey, *found);
        if (!fault.empty()) {
            return fault;
        }
    }
    return {};
}

std::string laneUsageFault(const json& laneUsage) {
    return listFault("laneUsage", laneUsage, laneFault);
}

/// Fault of one quad: a flag, all else are lists.
std::string quadFault(const std::string& key, const json& quad) {
    if (!quad.is_object()) {
        return wrongShape(key, "an object", quad);
    }
    for (const auto& [name, value] : quad.items()) {
        const std::string memberKey = key + "." + name;
        const std::string fault = name == "IS_CURRENT_QUAD" ? flagFault(memberKey, value)
                                                            : listOfTextsFault(memberKey, value);
        if (!fault.empty()) {
            return fault;
        }
    }
    return {};
}

/// A quad in an object that repeats its own key.
std::string quadBelowItsNameFault(const std::string& key, const std::string& name,
                                  const json& entry) {
    const std::string entryKey = key + "." + name;
    // To the library a dot leads from one key to the next.
    if (name.find('.') != std::string::npos) {
        return "the key \"" + entryKey +
               "\" can't name a quad by a name with a dot. Put the quad into a list, where its "
               "name "
               "may have one.";
    }
    if (!entry.is_object() || !entry.contains(name)) {
        return "the key \"" + entryKey +
               "\" must be an object that holds the quad under the same key. Quads may also stand "
               "in a list.";
    }
    return quadFault(entryKey + "." + name, entry[name]);
}

/// Quads stand in a list, or each in an object that repeats its own key.
std::string quadsFault(const std::string& key, const json& quads) {
    if (!quads.is_structured() && !isReadAsList(quads)) {
        return wrongShape(key, "a list of quads", quads);
    }
    if (!quads.is_object()) {
        return listFault(key, quads, quadFault);
    }
    for (const auto& [name, entry] : quads.items()) {
        const std::string fault = quadBelowItsNameFault(key, name, entry);
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
