#pragma once

#include <string>

namespace lanecfg_test {

// What the loader says of a database and a request; `file` is the path that it was given.

/// Of a file that it can't use.
std::string parseError(const std::string& file);

/// Of a request file without "quadUsage".
std::string missingQuadUsage(const std::string& file);

/// Of a request file whose "laneUsage" is missing or at fault.
std::string unusableLaneUsage(const std::string& file);

/// Of a user parameter that the types don't know.
std::string unknownParameter(const std::string& name);

/// Of user parameters that are missing or hold a value that does not convert.
std::string unconvertibleParameters();

/// At the end of a load whose user parameters failed in any way.
std::string unusableParameters();

}  // namespace lanecfg_test
