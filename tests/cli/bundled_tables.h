#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lanecfg_test {

/// All words of the rate table of a bundled request.
struct BundledTable {
    std::string name;
    std::vector<std::uint32_t> words;
};

// Masks of the output clock controls, to transmit or for both directions, and to receive.
constexpr std::uint32_t txMask = 0x00007007;
constexpr std::uint32_t rxMask = 0x00007000;

/// The rate tables of SXB requests, worked out by hand.
std::vector<BundledTable> sxbTables();

}  // namespace lanecfg_test
