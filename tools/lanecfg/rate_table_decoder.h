#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// The header of a rate table has places for four channels, also for a quad that has fewer.
constexpr std::size_t rateTableChannelCount = 4;
/// Words in front of the first body: two structure words, and two words for each channel.
constexpr std::size_t rateTableHeaderWords = 2 + 2 * rateTableChannelCount;

/// Registers are addressed with ten bits.
constexpr unsigned rateTableAddresses = 1024;

enum class TableDirection { transmit, receive };

constexpr std::array<TableDirection, 2> bothTableDirections = {TableDirection::transmit,
                                                               TableDirection::receive};

/// "TX" or "RX".
const char* wordOf(TableDirection direction);

using ChannelSet = std::bitset<rateTableChannelCount>;

/// One register that a rate writes.
struct RegisterWrite {
    unsigned address = 0;               ///< word address in the controller's ten bit range
    std::optional<std::uint32_t> mask;  ///< bits that are written, none for the whole register
    std::uint32_t value = 0;
};

/// Registers that share one header word.
struct WriteGroup {
    std::size_t position = 0;  ///< index of the header word in the table
    bool isBurst = false;
    std::optional<unsigned> lane;  ///< the one lane that is written, none for the table's own
    std::vector<RegisterWrite> writes;
};

/// All writes that bring a channel to one rate.
using RateWrites = std::vector<WriteGroup>;

/// The table of one channel and direction.
struct RateBody {
    unsigned channel = 0;
    TableDirection direction = TableDirection::transmit;
    std::vector<RateWrites> rates;
};

/// What the header tells of one direction of a channel.
struct DirectionHeader {
    unsigned master = 0;
    ChannelSet group;  ///< the channels that this one is master of, itself included
    bool isPcie = false;
    unsigned rates = 0;
    unsigned blockSize = 0;  ///< words of a rate
    unsigned offset = 0;     ///< index of the first body word, cut to ten bits
};

struct ChannelHeader {
    bool isPresent = false;  ///< whether the quad has this channel
    bool isDuplex = false;   ///< one table, that of TX, serves both directions
    std::array<DirectionHeader, 2> directions;

    const DirectionHeader& of(TableDirection direction) const {
        return directions[static_cast<std::size_t>(direction)];
    }
};

/// A whole rate table.
struct DecodedRateTable {
    std::size_t wordCount = 0;
    std::array<ChannelHeader, rateTableChannelCount> channels;
    /// Transmit tables by channel, then receive tables by channel; none for a channel that follows
    /// another one or has no rates. The rates of an owner may write nothing.
    std::vector<RateBody> bodies;
};

/// Words of a table in binary digits, 32 for a word without separators. Throws RequestError,
/// telling the place, on another character and on a length that is no whole number of words.
std::vector<std::uint32_t> rateTableWords(const std::string& digits);

/// Turns the words of a table back into what they say. Throws RequestError, with the index of the
/// word, on whatever breaks the format or contradicts itself: reserved bits, masters, groups and
/// duplex flags that no rate pins have, offsets and sizes that do not add up to the number of
/// words, a group that runs over the end of its rate, and rates of a table that write different
/// registers. The order of the groups of a rate is free. Tables with more than 255 rates or 1023
/// words for a rate do not fit the header's fields and are refused too.
DecodedRateTable decodeRateTable(const std::vector<std::uint32_t>& words);

}  // namespace sable_lanecfg::tool
