#pragma once

#include <string>

namespace sable_lanecfg::tool {

/// Check of an option whose value must not be empty: text about the fault, empty when there is
/// none. An empty value would otherwise count as an option that was left out.
std::string emptyValueFault(const std::string& value);

}  // namespace sable_lanecfg::tool
