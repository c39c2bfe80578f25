#pragma once

#include <cstdint>
#include <vector>

namespace lanecfg_test {

/// A rate table of one duplex channel, 0, whose rates are the parts of `body` of equal length; the
/// other channels are unused, so that channel 1 is their master, and have no rates.
std::vector<std::uint32_t> tableOfOneChannel(std::uint32_t rates,
                                             const std::vector<std::uint32_t>& body);

/// A rate table of one simplex channel, 0, with a table for each direction.
std::vector<std::uint32_t> tableOfOneSimplexChannel(std::uint32_t txRates,
                                                    const std::vector<std::uint32_t>& txBody,
                                                    std::uint32_t rxRates,
                                                    const std::vector<std::uint32_t>& rxBody);

}  // namespace lanecfg_test
