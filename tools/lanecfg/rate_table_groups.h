#pragma once

#include "rate_table_decoder.h"

namespace sable_lanecfg::tool {

/// Decodes the groups of one rate, which are the words from `begin` to before `end`.
RateWrites decodeRateWrites(const std::vector<std::uint32_t>& words, std::size_t begin,
                            std::size_t end);

/// Whether two rates write the same registers, in the same groups, under the same masks.
bool haveSameLayout(const RateWrites& first, const RateWrites& second);

}  // namespace sable_lanecfg::tool
