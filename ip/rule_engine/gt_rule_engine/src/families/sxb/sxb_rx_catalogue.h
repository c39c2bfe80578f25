#pragma once

#include "families/common/register_catalogue.h"

#include <string_view>

namespace sable_lanecfg {

/// Steps of the receive set that belong to no single register. Those of one intermediate have its
/// name.
namespace sxb_rx_step {
constexpr std::string_view outclockReport = "RX outclock report";
constexpr std::string_view equaliserMode = "INT_RX_EQ_MODE";
constexpr std::string_view referenceMode = "INT_PHY_REFCLK_MODE";
}  // namespace sxb_rx_step

/// The receive registers of the SXB family, 813 rules. Families that differ in a few registers
/// edit a copy.
const register_catalogue& sxbRxCatalogue();

}  // namespace sable_lanecfg
