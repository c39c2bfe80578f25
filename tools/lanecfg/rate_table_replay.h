#pragma once

#include "controller_registers.h"
#include "rate_snapshots.h"
#include "rate_table_decoder.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// How a register stands after a rate has been written, from best to worst.
enum class ReplayClass {
    replays,                  ///< at the value of the rate
    overwrittenByAdjustment,  ///< away from it only in bits that the table writes for other
                              ///< channels
    notInTable,               ///< away from it, and no table of this channel writes it
    differs,                  ///< away from it though a table of this channel writes it
};

constexpr std::size_t replayClassCount = 4;

/// Words for people, for example "overwritten by the adjustment".
const char* wordsOf(ReplayClass outcome);

/// The two rates of a channel.
struct RatePair {
    unsigned tx = 0;
    unsigned rx = 0;
};

/// The worst that happens to one register of one channel when a table writes one rate, whatever
/// rate the channel comes from.
struct ReplayFinding {
    ReplayClass outcome = ReplayClass::replays;
    std::string name;
    unsigned channel = 0;
    unsigned tableChannel = 0;
    TableDirection direction = TableDirection::transmit;
    unsigned rate = 0;
    RatePair from;              ///< where the channel comes from in this case
    RatePair to;                ///< where it should be
    std::uint32_t wanted = 0;   ///< word of the snapshot of `to`
    std::uint32_t reached = 0;  ///< word after the writes

    /// Whether the register is one of the channel that owns the table.
    bool isOwn() const { return channel == tableChannel; }
    /// Whether the table is at fault: an owner's own register differs.
    bool isFailure() const { return isOwn() && outcome == ReplayClass::differs; }
};

struct ReplayReport {
    /// Every register that a table writes, that changes with the rate, or that ends up wrong, in
    /// the order of table, channel, rate and name.
    std::vector<ReplayFinding> findings;
    std::size_t tables = 0;
    std::size_t rates = 0;  ///< of all tables together

    std::size_t count(ReplayClass outcome) const;
    /// The first failure, null when there is none.
    const ReplayFinding* firstFailure() const;
    /// The first register that does not replay, null when all do.
    const ReplayFinding* firstDeviation() const;
};

/// Writes every rate of every table over every snapshot that its channels can come from, and
/// compares the outcome with the snapshot of the rate. Channels that do not move with a table have
/// to stay as they are.
ReplayReport replayRateTable(const DecodedRateTable& table, const ControllerRegisters& registers,
                             const RateSnapshots& snapshots);

}  // namespace sable_lanecfg::tool
