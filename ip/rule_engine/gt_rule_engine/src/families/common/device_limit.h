#pragma once

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// First-entry settings of the device, as `gt_rule_engine::settings`.
using deviceSettings = std::map<std::string, std::vector<std::string>>;

/// A limit of the device. Throws std::invalid_argument on a text that is no number and
/// std::out_of_range on a number that no double holds; an absent limit is an empty text.
inline double deviceLimit(const deviceSettings& settings, const std::string& name) {
    const auto entry = settings.find(name);
    const bool isThere = entry != settings.end() && !entry->second.empty();
    return std::stod(isThere ? entry->second.front() : std::string());
}

}  // namespace sable_lanecfg
