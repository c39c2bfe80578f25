#pragma once

#include <string>

namespace sable_lanecfg {

/// Sends `format` with `argument` in the place of its "%s" to the user, as an error.
void reportError(const char* format, const std::string& argument);

/// Tells the user that a file is missing or is not what it should be.
void reportParseError(const std::string& file);

/// Tells the user that the types file does not know the parameter.
void reportUnknownParameter(const std::string& name);

}  // namespace sable_lanecfg
