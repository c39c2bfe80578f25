#pragma once

#include <cstddef>
#include <map>
#include <string>

namespace sable_lanecfg {

// Looking into the tables that the packing leaves: by dual, packing group, PLL and result name,
// rows of values.

/// An element by its key, null where there is none.
template <class Content>
const Content* elementOf(const std::map<std::string, Content>& table, const std::string& key) {
    const auto found = table.find(key);
    return found == table.end() ? nullptr : &found->second;
}

/// The rows of a result, null where there are none; `results` may be null.
template <class Rows>
const Rows* rowsOfResult(const std::map<std::string, Rows>* results, const std::string& name) {
    return results == nullptr ? nullptr : elementOf(*results, name);
}

/// The row of a rate slot. Lanes that change rate independently of each other share one row.
template <class Rows>
std::size_t rowOfSlot(const Rows& rows, std::size_t slot) {
    return rows.size() == 1 ? 0 : slot;
}

}  // namespace sable_lanecfg
