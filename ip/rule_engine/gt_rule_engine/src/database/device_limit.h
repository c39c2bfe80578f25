#pragma once

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Settings of the device, as `gt_db_load::m_deviceData`; the first text of an entry counts.
using deviceSettings = std::map<std::string, std::vector<std::string>>;

/// A limit of the device (GHz). Throws, naming the limit, `Missing` where there is none,
/// std::invalid_argument on a text that is no number and std::out_of_range on a number that no
/// double holds.
///
/// To a rule a missing limit is a text without a number; the packing, which looks its limits up in
/// a table, promises std::out_of_range.
template <class Missing = std::invalid_argument>
double deviceLimit(const deviceSettings& settings, const std::string& name) {
    const auto entry = settings.find(name);
    if (entry == settings.end() || entry->second.empty()) {
        throw Missing("device limit " + name + " is missing");
    }
    const std::string& text = entry->second.front();
    try {
        return std::stod(text);
    } catch (const std::invalid_argument&) {
        throw std::invalid_argument("device limit " + name + " is no number: \"" + text + "\"");
    } catch (const std::out_of_range&) {
        throw std::out_of_range("device limit " + name + " is out of range: " + text);
    }
}

}  // namespace sable_lanecfg
