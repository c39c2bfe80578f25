#pragma once

#include "request.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// Takes the dictionaries of a request in the dictionary form from its root. A number or flag
/// counts as its text. Throws RequestError, naming the file and the key, when a value has another
/// shape, there are no user parameters, or they have a section besides TX_SETTINGS and RX_SETTINGS.
RequestDictionaries readDictionaries(const std::string& file, const nlohmann::json& root);

/// What is taken but probably not meant so: lane keys that name no lane, and rates whose numbers
/// have gaps. A sentence or two for each, with the key.
std::vector<std::string> doubtsOf(const userParamMap& userParams);

/// The same for lists of lanes and rates that hold something else than numbers, or nothing.
std::vector<std::string> doubtsOf(const laneUsageMap& laneUsage);

}  // namespace sable_lanecfg::tool
