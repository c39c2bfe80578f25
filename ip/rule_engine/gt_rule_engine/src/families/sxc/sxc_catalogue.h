#pragma once

#include "families/common/register_catalogue.h"

namespace sable_lanecfg {

// The registers of the SXC family, each set as what differs from that of the SXB family.

/// 936 rules.
const register_catalogue& sxcPllCatalogue();
/// 814 rules.
const register_catalogue& sxcRxCatalogue();
/// 198 rules.
const register_catalogue& sxcTxCatalogue();

/// All registers: the receive, the transmit and the PLL set, in this order, which is that of
/// registration.
const register_catalogue& sxcCatalogue();

}  // namespace sable_lanecfg
