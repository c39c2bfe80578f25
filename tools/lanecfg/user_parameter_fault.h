#pragma once

#include "request.h"

#include <string>

namespace sable_lanecfg::tool {

/// Text about the first user parameter of a request that the library can't take, with its
/// direction, lane and rate and what is wanted: one that the parameter types file does not declare
/// with a known type, or, in the file form, a value that does not convert to its type. Empty when
/// there is none or one of the files can't be read.
std::string userParameterFault(const Request& request, const std::string& parametersFile);

/// Text about the first value of a request that the library would take without a word for something
/// else than what is written: in the file form a value of another shape than the library reads at
/// its place, one for a parameter of type "string" that has no text, or a negative one for a whole
/// number; in the dictionary form a text for a parameter that is not wholly a value of its type.
/// Empty when there is none or one of the files can't be read.
std::string misreadValue(const Request& request, const std::string& parametersFile);

}  // namespace sable_lanecfg::tool
