#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace sable_lanecfg::tool {

/// The bits `high` to `low` of a word of a rate table, fewer than 32.
constexpr unsigned bitsOf(std::uint32_t word, unsigned high, unsigned low) {
    return (word >> low) & ((1U << (high - low + 1)) - 1U);
}

/// Throws RequestError about the word at an index of a rate table.
[[noreturn]] void throwTableFault(std::size_t index, const std::string& text);

}  // namespace sable_lanecfg::tool
