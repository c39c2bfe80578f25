#pragma once

#include "database.h"
#include "request.h"

#include <lanecfg/gt_db_load.h>

namespace sable_lanecfg::tool {

/// What the library loads of a request and its database, without the usage of quads. Reports what
/// the loader reports, and throws what it throws.
gt_db_load loadRequest(const Request& request, const Database& database);

}  // namespace sable_lanecfg::tool
