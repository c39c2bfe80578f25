#pragma once

#include "families/common/register_catalogue.h"

namespace sable_lanecfg {

/// The receive registers of the SXD4 family, 568 rules.
const register_catalogue& sxd4RxCatalogue();

}  // namespace sable_lanecfg
