#pragma once

#include "families/common/register_catalogue.h"

#include <string_view>

namespace sable_lanecfg {

// Steps of the frozen sets that the current ones lack.
namespace sxb_stable_pll_step {
constexpr std::string_view pipeClockDivider = "pipe clock divider";
}  // namespace sxb_stable_pll_step
// In the places of the outclock reports.
namespace sxb_stable_rx_step {
constexpr std::string_view clocksPerWord = "RX clocks per word";
}  // namespace sxb_stable_rx_step
namespace sxb_stable_tx_step {
constexpr std::string_view clocksPerWord = "TX clocks per word";
}  // namespace sxb_stable_tx_step

// The frozen registers of the SXB family, as differences over the current ones. Rows that no longer
// fit the current catalogue are refused, so that the frozen rules don't change with the current.

/// 804 rules.
const register_catalogue& sxbStablePllCatalogue();
/// 827 rules.
const register_catalogue& sxbStableRxCatalogue();
/// 198 rules.
const register_catalogue& sxbStableTxCatalogue();

/// All three: the receive, the transmit and the PLL set, in this order, which is that of
/// registration.
const register_catalogue& sxbStableCatalogue();

}  // namespace sable_lanecfg
