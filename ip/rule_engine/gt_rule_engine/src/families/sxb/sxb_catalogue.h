#pragma once

#include "families/common/register_catalogue.h"

namespace sable_lanecfg {

/// All registers of the SXB family: the receive, the transmit and the PLL set, in this order, which
/// is that of registration.
const register_catalogue& sxbCatalogue();

}  // namespace sable_lanecfg
