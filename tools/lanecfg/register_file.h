#pragma once

#include "controller_registers.h"
#include "rate_table_decoder.h"

#include <array>
#include <cstdint>

namespace sable_lanecfg::tool {

/// The registers of a quad as the embedded controller reaches them. An address leads to a register
/// of a lane and to one that the lanes share; which of them is there is for the reader to know.
class RegisterFile {
  public:
    std::uint32_t read(const RegisterPlace& place, unsigned lane) const {
        return place.isOfLane ? lanes_[lane][place.address] : shared_[place.address];
    }
    void set(const RegisterPlace& place, unsigned lane, std::uint32_t word) {
        (place.isOfLane ? lanes_[lane][place.address] : shared_[place.address]) = word;
    }

    /// Carries out the writes of a rate, for a table of this channel. Bits that a mask leaves out
    /// keep their value; a group for a single lane goes to that one.
    void apply(const RateWrites& rate, unsigned tableChannel);

  private:
    using Registers = std::array<std::uint32_t, rateTableAddresses>;

    std::array<Registers, rateTableChannelCount> lanes_{};
    Registers shared_{};
};

/// Whether a rate writes a channel's register at this place.
bool writesTo(const RateWrites& rate, unsigned tableChannel, const RegisterPlace& place,
              unsigned channel);

}  // namespace sable_lanecfg::tool
