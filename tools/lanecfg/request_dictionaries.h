#pragma once

#include "json_document.h"
#include "request.h"

#include <string>

namespace sable_lanecfg::tool {

/// Takes the dictionaries of a request in the dictionary form. A number or flag counts as its
/// text. Throws RequestError, naming the file and the key, when a value has another shape, a key
/// stands twice, or there are no user parameters.
RequestDictionaries readDictionaries(const std::string& file, const JsonDocument& document);

}  // namespace sable_lanecfg::tool
