#pragma once

#include "rate_table_decoder.h"

#include <lanecfg/gt_rule_engine.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg::tool {

/// Register words of one pass. A register that the pass lacks, or that holds no number, has none.
struct PassWords {
    unsigned txRate = 0;
    unsigned rxRate = 0;
    std::vector<std::optional<std::uint32_t>> words;  ///< in the order of `RateSnapshots::names`
};

/// The registers of all passes, as a copy that the making of the rate table does not adjust.
struct RateSnapshots {
    std::vector<std::string> names;  ///< all registers of the database, in name order
    std::array<std::vector<PassWords>, rateTableChannelCount> channels;
    /// Index of a channel's pass by its rates, transmit first; of equal ones the first.
    std::array<std::map<std::pair<unsigned, unsigned>, std::size_t>, rateTableChannelCount>
        indexOfRates;

    /// The pass of a channel at these rates, null when it ran none.
    const PassWords* find(std::size_t channel, unsigned txRate, unsigned rxRate) const;
};

/// Copies the registers of an engine's passes.
RateSnapshots takeSnapshots(const gt_rule_engine& engine);

}  // namespace sable_lanecfg::tool
