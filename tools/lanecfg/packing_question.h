#pragma once

#include "console.h"
#include "database.h"
#include "request.h"

#include <lanecfg/gt_quad_packing.h>

#include <map>
#include <string>

namespace sable_lanecfg::tool {

/// Whether the channels of a request can share a quad, as the library answers it.
struct PackingQuestion {
    gt_quad_packing packing;              ///< with its tables filled
    std::map<int, std::string> messages;  ///< why the channels do not fit; empty when they do
};

/// Asks the library about a request. Throws RequestError when the request can't be judged.
PackingQuestion askForPacking(const Request& request, const Database& database, Console& console);

}  // namespace sable_lanecfg::tool
