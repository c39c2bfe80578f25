#pragma once

#include "families/common/register_catalogue.h"

namespace sable_lanecfg {

/// The transmit registers of the SXD4 family, 108 rules.
const register_catalogue& sxd4TxCatalogue();

}  // namespace sable_lanecfg
