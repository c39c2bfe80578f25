#pragma once

#include "families/common/register_catalogue.h"

#include <string_view>

namespace sable_lanecfg {

/// Steps of the PLL set that belong to no single register.
namespace sxb_pll_step {
constexpr std::string_view inputSelection = "PLL input selection";
constexpr std::string_view outputDividers = "PLL output dividers";
constexpr std::string_view lcpllSolver = "LCPLL solver";
constexpr std::string_view rpllSolver = "RPLL solver";
constexpr std::string_view transmitDividerSearch = "TX programmable divider search";
constexpr std::string_view receiveDividerSearch = "RX programmable divider search";
}  // namespace sxb_pll_step

/// The PLL, clock and quad registers of the SXB family. Families that differ in a few registers
/// edit a copy.
const register_catalogue& sxbPllCatalogue();

}  // namespace sable_lanecfg
