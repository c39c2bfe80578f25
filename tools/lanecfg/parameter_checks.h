#pragma once

#include "finding.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>

namespace sable_lanecfg::tool {

/// Checks a parameter types file: each parameter has its three texts, a known type and a default
/// that is wholly a value of it. Gives the number of parameters.
std::size_t checkParameters(const nlohmann::json& root, FindingList& findings);

/// What a value of a parameter type is, in words; empty for an unknown type.
std::string parameterTypeMeaning(const std::string& type);

/// Whether a text is wholly a value of a parameter type; true for an unknown type.
bool isParameterValue(const std::string& type, const std::string& text);

}  // namespace sable_lanecfg::tool
