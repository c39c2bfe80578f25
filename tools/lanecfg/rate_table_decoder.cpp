#include "rate_table_decoder.h"

#include "errors.h"
#include "rate_table_bits.h"
#include "rate_table_groups.h"

namespace sable_lanecfg::tool {
namespace {

constexpr std::size_t digitsOfWord = 32;
constexpr const char* limitsOfHeader =
    "a table with more than 255 rates or 1023 words for a rate does not fit its header";

using Words = std::vector<std::uint32_t>;

std::size_t structureWordOf(TableDirection direction) {
    return static_cast<std::size_t>(direction);
}

std::size_t channelWordOf(std::size_t channel, TableDirection direction) {
    return 2 + 2 * channel + static_cast<std::size_t>(direction);
}

void decodeStructure(const Words& words, TableDirection direction, DecodedRateTable& table) {
    const std::size_t index = structureWordOf(direction);
    const std::uint32_t word = words[index];
    if (bitsOf(word, 0, 0) == 0) {
        throwTableFault(index, "the structure is not valid, bit 0 is not set");
    }
    if (bitsOf(word, 31, 29) != 0) {
        throwTableFault(index, "reserved bits of the structure are set");
    }
    for (unsigned channel = 0; channel < rateTableChannelCount; ++channel) {
        ChannelHeader& header = table.channels[channel];
        header.isDuplex = bitsOf(word, 25 + channel, 25 + channel) == 1;
        DirectionHeader& side = header.directions[static_cast<std::size_t>(direction)];
        side.master = bitsOf(word, 18 + 2 * channel, 17 + 2 * channel);
        side.group = bitsOf(word, 4 + 4 * channel, 1 + 4 * channel);
    }
}

void decodeChannelWord(const Words& words, std::size_t channel, TableDirection direction,
                       DecodedRateTable& table) {
    const std::size_t index = channelWordOf(channel, direction);
    const std::uint32_t word = words[index];
    ChannelHeader& header = table.channels[channel];
    DirectionHeader& side = header.directions[static_cast<std::size_t>(direction)];
    side.isPcie = bitsOf(word, 31, 31) == 1;
    side.rates = bitsOf(word, 27, 20);
    side.blockSize = bitsOf(word, 19, 10);
    side.offset = bitsOf(word, 9, 0);
    if (bitsOf(word, 30, 28) != 0) {
        throwTableFault(index, "reserved bits of the channel are set");
    }
    if (direction == TableDirection::receive) {
        if (header.isDuplex && word != words[channelWordOf(channel, TableDirection::transmit)]) {
            throwTableFault(index, "the two words of a duplex channel are not the same");
        }
        if (!header.isDuplex && side.isPcie) {
            throwTableFault(index, "the receive word of a simplex channel tells of PCIe");
        }
        if ((side.rates == 0) != (header.of(TableDirection::transmit).rates == 0)) {
            throwTableFault(index, std::string("the channel has rates in one direction only; ") +
                                       limitsOfHeader);
        }
    }
    if (side.isPcie && side.rates == 0) {
        throwTableFault(index,
                        std::string("a channel without rates tells of PCIe; ") + limitsOfHeader);
    }
}

/// A channel is in the group of its master, and in no other one; one that the quad does not have is
/// in none and has only zeros.
void checkGroups(TableDirection direction, DecodedRateTable& table) {
    const std::size_t index = structureWordOf(direction);
    for (std::size_t member = 0; member < rateTableChannelCount; ++member) {
        ChannelHeader& header = table.channels[member];
        const std::size_t master = header.of(direction).master;
        const std::string name = "channel " + std::to_string(member);
        if (master > member) {
            throwTableFault(index, name + " has a master above itself");
        }
        if (table.channels[master].of(direction).master != master) {
            throwTableFault(index, name + " has a master that follows another channel");
        }
        for (std::size_t owner = 0; owner < rateTableChannelCount; ++owner) {
            if (owner != master && table.channels[owner].of(direction).group.test(member)) {
                throwTableFault(index, name +
                                           " is in the group of a channel that is not its "
                                           "master");
            }
        }
        const bool isMember = table.channels[master].of(direction).group.test(member);
        if (direction == TableDirection::transmit) {
            header.isPresent = isMember;
        } else if (header.isPresent != isMember) {
            throwTableFault(index, name + " is in a group of one direction only");
        }
    }
}

/// A channel is duplex if its rate pins have the same name in both directions. So duplex channels
/// that are together in one direction are together in the other, and never with a simplex one in
/// both.
void checkDuplexFlags(const DecodedRateTable& table) {
    const auto areTogether = [](const ChannelHeader& first, const ChannelHeader& second,
                                TableDirection direction) {
        return first.of(direction).master == second.of(direction).master;
    };
    for (std::size_t second = 1; second < rateTableChannelCount; ++second) {
        for (std::size_t first = 0; first < second; ++first) {
            const ChannelHeader& one = table.channels[first];
            const ChannelHeader& other = table.channels[second];
            if (!one.isPresent || !other.isPresent) {
                continue;
            }
            const bool transmit = areTogether(one, other, TableDirection::transmit);
            const bool receive = areTogether(one, other, TableDirection::receive);
            const bool areBothDuplex = one.isDuplex && other.isDuplex;
            const bool isOneDuplex = one.isDuplex != other.isDuplex;
            if ((areBothDuplex && transmit != receive) || (isOneDuplex && transmit && receive)) {
                throwTableFault(structureWordOf(TableDirection::receive),
                                "the duplex flags of channels " + std::to_string(first) + " and " +
                                    std::to_string(second) + " contradict their groups");
            }
        }
    }
}

void checkAbsentChannels(const Words& words, const DecodedRateTable& table) {
    for (std::size_t channel = 0; channel < rateTableChannelCount; ++channel) {
        const ChannelHeader& header = table.channels[channel];
        for (const TableDirection direction : bothTableDirections) {
            const std::size_t index = channelWordOf(channel, direction);
            if (!header.isPresent &&
                (words[index] != 0 || header.isDuplex || header.of(direction).master != 0)) {
                throwTableFault(index, "channel " + std::to_string(channel) +
                                           " is in no group, but the header tells of it");
            }
        }
    }
}

/// Where a body stands, and how long it is.
struct BodyPlace {
    unsigned channel;
    TableDirection direction;
    std::size_t begin;
};

/// The bodies in the order of their words. Offsets have ten bits, so the places are added up and
/// the offsets compared with them.
std::vector<BodyPlace> placesOfBodies(const DecodedRateTable& table) {
    std::vector<BodyPlace> places;
    std::size_t next = rateTableHeaderWords;
    for (const TableDirection direction : bothTableDirections) {
        for (unsigned channel = 0; channel < rateTableChannelCount; ++channel) {
            const ChannelHeader& header = table.channels[channel];
            const DirectionHeader& side = header.of(direction);
            const bool isServedByTransmit = header.isDuplex && direction == TableDirection::receive;
            if (!header.isPresent || isServedByTransmit) {
                continue;
            }
            const std::size_t index = channelWordOf(channel, direction);
            if (side.offset != next % rateTableAddresses) {
                throwTableFault(index, "the offset is " + std::to_string(side.offset) +
                                           ", but the words before this body end at " +
                                           std::to_string(next) + "; " + limitsOfHeader);
            }
            if (side.blockSize != 0 && (side.master != channel || side.rates == 0)) {
                throwTableFault(
                    index, std::string("a body without an owner or without a rate has a size; ") +
                               limitsOfHeader);
            }
            if (side.master == channel && side.rates != 0) {
                places.push_back({channel, direction, next});
            }
            next += std::size_t{side.rates} * side.blockSize;
        }
    }
    if (next != table.wordCount) {
        throw RequestError("The rate table has " + std::to_string(table.wordCount) +
                           " words, but the sizes in its header add up to " + std::to_string(next) +
                           ". Either it is not whole, or it is too large: " + limitsOfHeader + ".");
    }
    return places;
}

RateBody decodeBody(const Words& words, const BodyPlace& place, const DirectionHeader& side) {
    RateBody body{place.channel, place.direction, {}};
    for (std::size_t rate = 0; rate < side.rates; ++rate) {
        const std::size_t begin = place.begin + rate * side.blockSize;
        body.rates.push_back(decodeRateWrites(words, begin, begin + side.blockSize));
        if (!haveSameLayout(body.rates.front(), body.rates.back())) {
            throwTableFault(begin, "rate " + std::to_string(rate) +
                                       " does not write the registers of the first rate");
        }
    }
    return body;
}

}  // namespace

void throwTableFault(std::size_t index, const std::string& text) {
    throw RequestError("Word " + std::to_string(index) + " of the rate table: " + text + ".");
}

const char* wordOf(TableDirection direction) {
    return direction == TableDirection::transmit ? "TX" : "RX";
}

std::vector<std::uint32_t> rateTableWords(const std::string& digits) {
    const std::size_t fault = digits.find_first_not_of("01");
    if (fault != std::string::npos) {
        throwTableFault(fault / digitsOfWord,
                        "place " + std::to_string(fault % digitsOfWord) + " is no binary digit");
    }
    if (digits.size() % digitsOfWord != 0) {
        throwTableFault(
            digits.size() / digitsOfWord,
            "it has " + std::to_string(digits.size() % digitsOfWord) + " binary digits, not 32");
    }
    Words words;
    words.reserve(digits.size() / digitsOfWord);
    for (std::size_t start = 0; start < digits.size(); start += digitsOfWord) {
        const std::bitset<digitsOfWord> word(digits, start, digitsOfWord);
        words.push_back(static_cast<std::uint32_t>(word.to_ulong()));
    }
    return words;
}

DecodedRateTable decodeRateTable(const std::vector<std::uint32_t>& words) {
    if (words.size() < rateTableHeaderWords) {
        throw RequestError("The rate table has " + std::to_string(words.size()) +
                           " words, but its header alone takes " +
                           std::to_string(rateTableHeaderWords) + ".");
    }
    DecodedRateTable table;
    table.wordCount = words.size();
    for (const TableDirection direction : bothTableDirections) {
        decodeStructure(words, direction, table);
        checkGroups(direction, table);
    }
    if (bitsOf(words[0], 28, 25) != bitsOf(words[1], 28, 25)) {
        throwTableFault(1, "the duplex flags are not those of word 0");
    }
    checkDuplexFlags(table);
    for (std::size_t channel = 0; channel < rateTableChannelCount; ++channel) {
        for (const TableDirection direction : bothTableDirections) {
            decodeChannelWord(words, channel, direction, table);
        }
    }
    checkAbsentChannels(words, table);
    for (const BodyPlace& place : placesOfBodies(table)) {
        table.bodies.push_back(
            decodeBody(words, place, table.channels[place.channel].of(place.direction)));
    }
    return table;
}

}  // namespace sable_lanecfg::tool
