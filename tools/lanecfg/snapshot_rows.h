#pragma once

#include "table.h"

#include <lanecfg/rule_engine_base.h>

#include <cstddef>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// Which variables of which passes are wanted; an empty list means all.
struct SnapshotFilter {
    std::vector<std::string> names;  ///< shell patterns
    std::vector<unsigned> channels;
    std::vector<unsigned> txRates;
    std::vector<unsigned> rxRates;
};

/// The channel and the rates of one snapshot.
struct PassLabel {
    unsigned channel;
    unsigned txRate;
    unsigned rxRate;
};

PassLabel labelOf(std::size_t channel, const variableMap& snapshot);

/// The rates of each channel, as a text for people.
std::string passesAtHand(const std::vector<std::vector<variableMap>>& snapshots);

/// One row for each variable: channel, transmit and receive rate, name, type, value, and the
/// number of the rule that has it as output. Throws RequestError, telling which channels and rates
/// there are, when nothing matches.
Table snapshotRows(const std::vector<std::vector<variableMap>>& snapshots,
                   const SnapshotFilter& filter);

/// A value of a variable: for people a text as in the library's own listing, lists in brackets. CSV
/// has all digits of fractions, and nothing for blank. JSON keeps numbers, flags and lists as such,
/// fractions that it has no number for as texts, and blank is null.
Cell valueCell(const varInfo& variable);

}  // namespace sable_lanecfg::tool
