#pragma once

#include "families/common/register_catalogue.h"

#include <string_view>

namespace sable_lanecfg {

/// Steps of the transmit set that belong to no single register.
namespace sxb_tx_step {
constexpr std::string_view outclockReport = "TX outclock report";
}  // namespace sxb_tx_step

/// The transmit registers of the SXB family, 198 rules. Families that differ in a few registers
/// edit a copy.
const register_catalogue& sxbTxCatalogue();

}  // namespace sable_lanecfg
