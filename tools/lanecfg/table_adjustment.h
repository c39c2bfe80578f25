#pragma once

#include "rate_snapshots.h"
#include "rate_table_decoder.h"

#include <cstddef>
#include <cstdint>

namespace sable_lanecfg::tool {

/// What the making of a rate table changes on purpose in the registers of a table's owner, so that
/// one table does the work of the channels that follow.
class TableAdjustment {
  public:
    /// All three must outlive this.
    TableAdjustment(const DecodedRateTable& table, const RateBody& body,
                    const RateSnapshots& snapshots);

    /// Whether the table's own rates differ in this register of its owner, by its index.
    bool changesWithRate(std::size_t index) const {
        return changingBits(body_.channel, index) != 0;
    }

    /// The bits of a register that the table does not write for its owner: those of other channels,
    /// and those that it writes at every rate though none changes them.
    std::uint32_t overwrittenBits(std::size_t index) const;

  private:
    std::uint32_t changingBits(std::size_t channel, std::size_t index) const;
    ChannelSet followersInOtherDual(TableDirection direction) const;

    const DecodedRateTable& table_;
    const RateBody& body_;
    const RateSnapshots& snapshots_;
};

}  // namespace sable_lanecfg::tool
