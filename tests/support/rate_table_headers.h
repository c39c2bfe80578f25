#pragma once

#include <cstdint>
#include <vector>

namespace lanecfg_test {

// The first word of a group of writes in a rate table, from addresses.

constexpr std::uint32_t firstMasked = 0x00800000;
constexpr std::uint32_t secondMasked = 0x01000000;
/// Of a lone register too, which counts as the first and as the second.
constexpr std::uint32_t bothMasked = firstMasked | secondMasked;

/// Header word of an unmasked group of one register.
constexpr std::uint32_t loneHeader(std::uint32_t address) {
    return (address << 13) | (address << 3);
}

/// Header word of an unmasked group of two registers.
constexpr std::uint32_t pairHeader(std::uint32_t first, std::uint32_t second) {
    return (second << 13) | (first << 3) | 4U;
}

/// Header word of a burst, with the distances of its registers.
inline std::uint32_t burstHeader(std::uint32_t start, const std::vector<std::uint32_t>& distances) {
    std::uint32_t word = (start << 22) | (distances.back() << 2) | 2U;
    for (const std::uint32_t distance : distances) {
        word |= 1U << (6 + distance);
    }
    return word;
}

}  // namespace lanecfg_test
