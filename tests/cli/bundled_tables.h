#pragma once

#include <array>
#include <cstddef>
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

// Every SXB and SXC table holds PIPE_CTRL_CFG7, a register of the lane at offset 0x90, under a
// mask: two output clock controls of 2, both buffers (0x48), the receive power control (0x800), and
// what the ratio of the widths adds.
constexpr std::uint32_t sxbPipeHeader = 0x01920480;
constexpr std::uint32_t equalWidths = 0x0000284a;
// Twice as wide at the fabric: divider code 1 at bits 15, 19, 23 and 27.
constexpr std::uint32_t doubleWidth = equalWidths | 0x08888000;

/// A header for one lane: the lane at bit 26, enabled by bit 25.
constexpr std::uint32_t inLane(std::uint32_t header, std::uint32_t lane) {
    return header | (lane << 26) | (1U << 25);
}

/// A register that changes with the rate.
struct ChangingRegister {
    std::uint32_t address;
    std::array<std::uint32_t, 5> values;  ///< by rate
    std::uint32_t mask = 0;               ///< 0 where it is written without one
};

/// Registers that are written together, by address: one or two, or a burst of more.
using WriteGroup = std::vector<ChangingRegister>;

/// The words of a table for all its rates: at each the same groups, each with a header, and for
/// each register its mask, if it has one, and its value.
std::vector<std::uint32_t> bodyOf(const std::vector<WriteGroup>& groups, std::size_t rates);

/// Words and behind them more words.
std::vector<std::uint32_t> joined(std::vector<std::uint32_t> words,
                                  const std::vector<std::uint32_t>& body);

/// The ten words in front of the table of four duplex channels on one rate pin, which has this
/// many words for its one rate.
std::vector<std::uint32_t> oneGroup(std::uint32_t rateWords);

// The rate tables of bundled requests, worked out by hand.

/// SXB with the current rules, but for PCIe.
std::vector<BundledTable> sxbTables();
/// SXB with the frozen rules.
std::vector<BundledTable> sxbStableTables();
/// PCIe of SXB and SXC.
std::vector<BundledTable> pcieTables();
/// SXD4, a block of two channels.
std::vector<BundledTable> sxd4Tables();

}  // namespace lanecfg_test
