#pragma once

#include "families/common/register_catalogue.h"

namespace sable_lanecfg {

/// All registers of the SXD4 family: the receive, the transmit and the PLL set, in this order,
/// which is that of registration.
const register_catalogue& sxd4Catalogue();

}  // namespace sable_lanecfg
