#pragma once

#include "rate_table_decoder.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// The same write in each rate of a table.
using WriteOverRates = std::vector<const RegisterWrite*>;

/// What a write changes against the rate before it, as "FIELD 1 -> 2, FIELD 3 -> 0"; in the first
/// rate the fields that any rate changes, as "FIELD 1". Only bits that are written count. Bits that
/// are in no field appear as a mask and their values.
std::string fieldChanges(const WriteOverRates& writes, std::size_t rate,
                         const std::map<std::string, std::vector<int>>& fields);

}  // namespace sable_lanecfg::tool
