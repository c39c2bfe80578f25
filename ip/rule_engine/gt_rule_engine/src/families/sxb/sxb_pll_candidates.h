#pragma once

#include <array>

namespace sable_lanecfg {

/// Reference dividers of both PLLs, in the order in which they are tried.
constexpr std::array<unsigned int, 4> referenceDividers{1, 2, 3, 4};

/// The fraction of a feedback divider is a number of 24 bits.
constexpr double fractionScale = 16777216.0;

constexpr double megahertzPerGigahertz = 1000.0;

}  // namespace sable_lanecfg
