#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace sable_lanecfg::tool {

/// A JSON value in words for a message: "a list", "an object", else its text, unless that is long.
std::string shownValue(const nlohmann::json& value);

/// Whether the library reads the value as a list. An empty text or object is an empty list, as the
/// host's own writer has it.
bool isReadAsList(const nlohmann::json& value);

/// Whether the library takes the value's text: a list, an object and a null have none.
bool hasText(const nlohmann::json& value);

}  // namespace sable_lanecfg::tool
