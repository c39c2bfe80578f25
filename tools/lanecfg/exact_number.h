#pragma once

#include "table.h"

#include <string>

namespace sable_lanecfg::tool {

/// The fewest decimal digits from which a number is read back as it is; "inf", "-inf" and "nan" for
/// those without digits.
std::string exactText(float number);
std::string exactText(double number);

/// A number for JSON, which writes as many digits; as a text where JSON has no number for it.
Json exactJson(double number);

}  // namespace sable_lanecfg::tool
