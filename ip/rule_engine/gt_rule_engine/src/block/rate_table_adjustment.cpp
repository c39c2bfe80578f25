#include "block/rate_table_limits.h"
#include "block/register_series.h"

#include <lanecfg/gt_rule_engine.h>
#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/predicate.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <utility>

namespace sable_lanecfg {

namespace {

using boost::algorithm::starts_with;
using attributeList = std::vector<RateTableAttribute>;
using attributeTest = std::function<bool(const RateTableAttribute&)>;

/// Bits of PIPE_CTRL_CFG7 that a table must always write, whatever differs between the rates.
constexpr std::uint32_t txPipeBits = 0x7007;
constexpr std::uint32_t rxPipeBits = 0x7000;

/// One direction of a channel, so that both go through the same steps.
struct direction {
    int RateTableChannel::*master;
    attributeList RateTableChannel::*attributes;
    const char* word;
};

constexpr direction bothDirections[] = {
    {&RateTableChannel::txMaster, &RateTableChannel::txAttributes, "TX"},
    {&RateTableChannel::rxMaster, &RateTableChannel::rxAttributes, "RX"}};

bool inOtherDual(int first, int second) {
    return first / 2 != second / 2;
}

/// Calls `visit(target, follower, direction)` for each follower in the other dual.
template <class Visit>
void forFollowersInOtherDual(const RateTableChannel* channels, const Visit& visit) {
    for (int target = 0; target < rateTableChannels; ++target) {
        for (int follower = 0; follower < rateTableChannels; ++follower) {
            for (const direction& side : bothDirections) {
                if (inOtherDual(target, follower) && channels[follower].*side.master == target) {
                    visit(target, follower, side);
                }
            }
        }
    }
}

/// Calls `visit(master, follower)` for each transmit follower, in any dual.
template <class Visit>
void forTransmitFollowers(const RateTableChannel* channels, const Visit& visit) {
    for (int master = 0; master < rateTableChannels; ++master) {
        for (int follower = 0; follower < rateTableChannels; ++follower) {
            if (follower != master && channels[follower].txMaster == master) {
                visit(master, follower);
            }
        }
    }
}

void widenMask(attributeList& attributes, std::uint32_t bits) {
    for (RateTableAttribute& attribute : attributes) {
        if (attribute.name == "PIPE_CTRL_CFG7") {
            attribute.mask |= bits;
        }
    }
}

/// Gives a master what its followers in the other dual have to write there. Of several followers
/// with the same register the lowest channel's is taken.
void takeOverFromFollowers(RateTableChannel* channels, const attributeTest& wanted) {
    std::set<std::string> taken[rateTableChannels][2];
    forFollowersInOtherDual(channels, [&](int target, int follower, const direction& side) {
        std::set<std::string>& names = taken[target][&side - bothDirections];
        attributeList& own = channels[target].*side.attributes;
        for (const RateTableAttribute& attribute : channels[follower].*side.attributes) {
            if (wanted(attribute) && names.insert(attribute.name).second) {
                own.push_back(attribute);
                rule_engine_utilities::write_log(attribute.name + " added to Channel " +
                                                 std::to_string(target) + " " + side.word);
            }
        }
    });
}

/// A_CFG1 holds the feedback dividers of the first dual in its low half, those of the second in
/// its high half.
std::uint64_t lowHalfDoubled(std::uint64_t value) {
    return (value & 0xffff) * 0x10001;
}

void copyBit(std::bitset<32>& word, std::size_t from, std::size_t to) {
    word[to] = word[from];
}

/// Bits of MST_RESET_CFG: three flags and a field of five bits for each channel.
void copyResetBits(std::bitset<32>& word, std::size_t from, std::size_t to) {
    copyBit(word, from, to);
    copyBit(word, 4 + from, 4 + to);
    for (std::size_t bit = 0; bit < 5; ++bit) {
        copyBit(word, 8 + 5 * from + bit, 8 + 5 * to + bit);
    }
    copyBit(word, 28 + from, 28 + to);
}

void copyReservedBit(std::bitset<32>& word, std::size_t from, std::size_t to) {
    copyBit(word, 28 + from, 28 + to);
}

using bitCopy = void (*)(std::bitset<32>&, std::size_t, std::size_t);

/// Copies a master's bits of one register to the places of a follower, in the master's snapshots
/// and masks.
void copyToFollower(RateTableChannel& master, std::vector<variableMap>& passes,
                    const std::string& name, bitCopy copy, std::size_t from, std::size_t to) {
    rule_engine_utilities::write_log("Channel " + std::to_string(from) + " " + name + " adjusted");
    for (variableMap& snapshot : passes) {
        if (ruleValue* const value = definedValue(snapshot, name)) {
            std::bitset<32> word = registerWord(*value);
            copy(word, from, to);
            *value = static_cast<unsigned int>(word.to_ulong());
        }
    }
    for (attributeList* const attributes : {&master.txAttributes, &master.rxAttributes}) {
        for (RateTableAttribute& attribute : *attributes) {
            if (attribute.name == name) {
                copy(attribute.mask, from, to);
            }
        }
    }
}

void doubleFeedbackDividers(std::vector<variableMap>& passes, attributeList& attributes) {
    const std::string name = "A_CFG1";
    for (variableMap& snapshot : passes) {
        if (ruleValue* const value = definedValue(snapshot, name)) {
            const std::uint64_t word = std::stoul(registerText(*value));
            *value = std::to_string(lowHalfDoubled(word));
        }
    }
    for (RateTableAttribute& attribute : attributes) {
        if (attribute.name == name) {
            attribute.mask = lowHalfDoubled(attribute.mask.to_ulong());
        }
    }
}

}  // namespace

void gt_rule_engine::adjustRateTable_New(RateTableChannel* channels) {
    std::vector<variableMap> none;
    const auto passes = [&](int channel) -> std::vector<variableMap>& {
        const auto index = static_cast<std::size_t>(channel);
        return index < blockVarMap.size() ? blockVarMap[index] : none;
    };

    for (int channel = 0; channel < rateTableChannels; ++channel) {
        widenMask(channels[channel].txAttributes, txPipeBits);
        widenMask(channels[channel].rxAttributes, rxPipeBits);
    }
    takeOverFromFollowers(channels, [](const RateTableAttribute& attribute) {
        return starts_with(attribute.type, "hs_clk");
    });
    for (const char* const name : {"A_CFG4", "A_CFG5"}) {
        takeOverFromFollowers(channels, [name](const RateTableAttribute& attribute) {
            return starts_with(attribute.name, name);
        });
    }
    forFollowersInOtherDual(channels, [&](int target, int, const direction& side) {
        rule_engine_utilities::write_log("Channel " + std::to_string(target) + " A_CFG1 adjusted");
        doubleFeedbackDividers(passes(target), channels[target].*side.attributes);
    });

    const std::pair<const char*, bitCopy> sharedRegisters[] = {{"MST_RESET_CFG", copyResetBits},
                                                               {"CTRL_RSV_CFG0", copyReservedBit}};
    for (const auto& [name, copy] : sharedRegisters) {
        forTransmitFollowers(channels, [&, registerName = name, copyBits = copy](int master,
                                                                                 int follower) {
            copyToFollower(channels[master], passes(master), registerName, copyBits,
                           static_cast<std::size_t>(master), static_cast<std::size_t>(follower));
        });
    }
}

}  // namespace sable_lanecfg
