#pragma once

#include "finding.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// Checks a device data file: the speed grade that is read is there, its items are texts or lists
/// of texts, the wanted limits are numbers, and no ..._MIN is above its ..._MAX.
void checkDeviceData(const nlohmann::json& root, const std::vector<std::string>& limits,
                     FindingList& findings);

}  // namespace sable_lanecfg::tool
