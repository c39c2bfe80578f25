#include "table_adjustment.h"

#include <boost/algorithm/string/predicate.hpp>

namespace sable_lanecfg::tool {
namespace {

using boost::algorithm::starts_with;

constexpr std::uint32_t wholeRegister = ~std::uint32_t{0};

/// Output clock controls in PIPE_CTRL_CFG7: a transmit table always writes both, a receive table
/// its own.
constexpr std::uint32_t bothClockControls = 0x7007;
constexpr std::uint32_t rxClockControl = 0x7000;

/// The half of A_CFG1 that holds the feedback dividers of the second dual.
constexpr std::uint32_t secondDualDividers = 0xffff0000;

constexpr std::uint32_t bit(std::size_t place) {
    return std::uint32_t{1} << place;
}

/// A channel's bits in MST_RESET_CFG.
std::uint32_t resetBits(std::size_t channel) {
    return bit(channel) | bit(4 + channel) | (std::uint32_t{0x1f} << (8 + 5 * channel)) |
           bit(28 + channel);
}

/// A channel's bit in CTRL_RSV_CFG0.
std::uint32_t reservedBits(std::size_t channel) {
    return bit(28 + channel);
}

std::uint32_t bitsOfAll(const ChannelSet& channels, std::uint32_t (*bitsOfChannel)(std::size_t)) {
    std::uint32_t bits = 0;
    for (std::size_t channel = 0; channel < rateTableChannelCount; ++channel) {
        bits |= channels.test(channel) ? bitsOfChannel(channel) : 0;
    }
    return bits;
}

}  // namespace

TableAdjustment::TableAdjustment(const DecodedRateTable& table, const RateBody& body,
                                 const RateSnapshots& snapshots)
    : table_(table), body_(body), snapshots_(snapshots) {}

std::uint32_t TableAdjustment::changingBits(std::size_t channel, std::size_t index) const {
    const bool isDuplex = table_.channels.at(channel).isDuplex;
    const bool transmits = body_.direction == TableDirection::transmit;
    std::uint32_t bits = 0;
    std::optional<std::uint32_t> first;
    for (unsigned rate = 0; rate < body_.rates.size(); ++rate) {
        // A table is made with the other direction at its first rate.
        const PassWords* const pass = snapshots_.find(channel, isDuplex || transmits ? rate : 0,
                                                      isDuplex || !transmits ? rate : 0);
        if (pass != nullptr && pass->words[index]) {
            first = first.value_or(*pass->words[index]);
            bits |= *first ^ *pass->words[index];
        }
    }
    return bits;
}

ChannelSet TableAdjustment::followersInOtherDual(TableDirection direction) const {
    const ChannelSet ownDual = body_.channel / 2 == 0 ? 0b0011 : 0b1100;
    return table_.channels.at(body_.channel).of(direction).group & ~ownDual;
}

std::uint32_t TableAdjustment::overwrittenBits(std::size_t index) const {
    const std::string& name = snapshots_.names[index];
    const bool transmits = body_.direction == TableDirection::transmit;
    if (name == "PIPE_CTRL_CFG7") {
        return (transmits ? bothClockControls : rxClockControl) &
               ~changingBits(body_.channel, index);
    }
    if (name == "A_CFG1") {
        const bool isDoubled = (followersInOtherDual(TableDirection::transmit) |
                                followersInOtherDual(TableDirection::receive))
                                   .any();
        return isDoubled ? secondDualDividers : 0;
    }
    ChannelSet followers = table_.channels.at(body_.channel).of(TableDirection::transmit).group;
    followers.reset(body_.channel);
    if (name == "MST_RESET_CFG") {
        return bitsOfAll(followers, resetBits);
    }
    if (name == "CTRL_RSV_CFG0") {
        return bitsOfAll(followers, reservedBits);
    }
    if (starts_with(name, "A_CFG4") || starts_with(name, "A_CFG5")) {
        const ChannelSet others = followersInOtherDual(body_.direction);
        for (std::size_t channel = 0; channel < rateTableChannelCount; ++channel) {
            if (others.test(channel) && changingBits(channel, index) != 0) {
                return wholeRegister;
            }
        }
    }
    return 0;
}

}  // namespace sable_lanecfg::tool
