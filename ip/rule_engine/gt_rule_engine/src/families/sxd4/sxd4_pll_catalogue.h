#pragma once

#include "families/common/register_catalogue.h"

#include <string_view>

namespace sable_lanecfg {

/// Steps of the PLL set that belong to no single register.
namespace sxd4_pll_step {
constexpr std::string_view transmitSymbolRate = "TX symbol rate";
constexpr std::string_view receiveSymbolRate = "RX symbol rate";
constexpr std::string_view vcoSolver = "VCO solver";
constexpr std::string_view clockRate = "PLL clock rate";
constexpr std::string_view outputDividers = "PLL output dividers";
constexpr std::string_view feedbackDivider = "PLL feedback divider";
constexpr std::string_view transmitResetMasks = "TX reset masks";
constexpr std::string_view receiveResetMasks = "RX reset masks";
}  // namespace sxd4_pll_step

/// The PLL, error correction, reset and bias registers of the SXD4 family, 371 rules.
const register_catalogue& sxd4PllCatalogue();

}  // namespace sable_lanecfg
