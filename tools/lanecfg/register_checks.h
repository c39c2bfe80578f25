#pragma once

#include "finding.h"

#include <nlohmann/json.hpp>

#include <cstddef>

namespace sable_lanecfg::tool {

/// How much a registers file holds.
struct RegisterCounts {
    std::size_t registers = 0;
    std::size_t fields = 0;
};

/// Checks a registers file by itself: block types are known to the engine, offsets are
/// hexadecimal and distinct within a block type, fields carry their register's name, have an
/// offset and a width, fit 32 bits and do not overlap, and those on which the rate table counts
/// are in their places.
RegisterCounts checkRegisters(const nlohmann::json& root, FindingList& findings);

}  // namespace sable_lanecfg::tool
