#pragma once

#include <cstdint>

namespace sable_lanecfg {

/// A rate table has places for four channels, also for a block that has fewer.
constexpr int rateTableChannels = 4;

/// Registers less than this many addresses behind the first one may share its burst; the burst's
/// header has one bit for each.
constexpr std::int64_t burstSpan = 16;

}  // namespace sable_lanecfg
