#pragma once

#include "request.h"

#include <string>

namespace sable_lanecfg::tool {

/// Text about the first user parameter of a request that the library can't take, with its
/// direction, lane and rate and what is wanted: one that the parameter types file does not declare
/// with a known type, or, in the file form, a value that does not convert to its type. Empty when
/// there is none or one of the files can't be read.
std::string userParameterFault(const Request& request, const std::string& parametersFile);

}  // namespace sable_lanecfg::tool
