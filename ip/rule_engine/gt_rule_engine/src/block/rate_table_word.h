#pragma once

#include <bitset>
#include <cstdint>
#include <string>

namespace sable_lanecfg {

/// One 32 bit word of a rate table under construction.
class rate_table_word {
  public:
    /// Puts the low bits of `value` at bits `high` to `low`; the rest of it is cut off.
    rate_table_word& put(unsigned int high, unsigned int low, std::uint64_t value) {
        const std::uint64_t mask = (std::uint64_t{1} << (high - low + 1)) - 1;
        bits_ |= static_cast<std::uint32_t>((value & mask) << low);
        return *this;
    }

    /// 32 binary digits, most significant first.
    std::string digits() const { return std::bitset<32>(bits_).to_string(); }

  private:
    std::uint32_t bits_ = 0;
};

}  // namespace sable_lanecfg
