#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace sable_lanecfg::tool {

/// Text about the first value in `laneUsage` and `quadUsage` of a request's root in the file form
/// that the library would take without a word for something else: no list where it reads one, or
/// a list, an object or a null where it reads a text. Empty when there is none.
std::string usageFault(const nlohmann::json& root);

}  // namespace sable_lanecfg::tool
