#include "block/rate_table_limits.h"
#include "block/register_offset.h"
#include "block/register_series.h"

#include <lanecfg/gt_rule_engine.h>
#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/predicate.hpp>

#include <cstddef>
#include <iostream>
#include <stdexcept>
#include <string>
#include <utility>

namespace sable_lanecfg {

namespace {

using boost::algorithm::starts_with;

/// Bits in which neighbours differ, the step from the last rate back to the first included.
std::bitset<32> differingBits(const registerSeries& series) {
    std::uint32_t bits = 0;
    std::uint32_t previous = registerWord(*series.back());
    for (const ruleValue* const value : series) {
        const std::uint32_t current = registerWord(*value);
        bits |= current ^ previous;
        previous = current;
    }
    return bits;
}

/// A register of a port block has no address in the controller's range. The prefixes of the
/// addressed blocks are looked at first.
bool isPort(const std::string& type) {
    for (const char* const prefix : {"ch", "hs", "ctrl", "rcalbg"}) {
        if (starts_with(type, prefix)) {
            return false;
        }
    }
    return type.find("PORT") != std::string::npos;
}

}  // namespace

void gt_rule_engine::parseRateTableData_New(RateTableChannel* channels) {
    for (int channel = 0; channel < rateTableChannels; ++channel) {
        if (channels[channel].duplex) {
            populateDuplexLane_New(channels, channel);
        } else {
            populateSimplexLane_New(channels, channel);
        }
    }
}

void gt_rule_engine::populateSimplexLane_New(RateTableChannel* channels, int channel) {
    // Each direction is looked at with the other one at its first rate.
    const snapshotList txSnapshots = snapshotsWith(passesOf(channel), "RX", "0");
    const snapshotList rxSnapshots = snapshotsWith(passesOf(channel), "TX", "0");
    const std::string parsing = "Parsing Channel " + std::to_string(channel);
    rule_engine_utilities::write_log(parsing + " TX");
    channels[channel].txAttributes = criticalAttributes(txSnapshots, channel);
    rule_engine_utilities::write_log(parsing + " RX");
    channels[channel].rxAttributes = criticalAttributes(rxSnapshots, channel);
}

void gt_rule_engine::populateDuplexLane_New(RateTableChannel* channels, int channel) {
    rule_engine_utilities::write_log("Parsing Channel " + std::to_string(channel) + " Duplex");
    channels[channel].txAttributes = criticalAttributes(snapshotsOf(passesOf(channel)), channel);
    channels[channel].rxAttributes.clear();
}

std::vector<RateTableAttribute> gt_rule_engine::findCriticalAttributes_New(
    std::vector<std::map<std::string, varInfo>> rates, int channel) {
    return criticalAttributes(snapshotsOf(rates), channel);
}

std::vector<RateTableAttribute> gt_rule_engine::criticalAttributes(
    const std::vector<const variableMap*>& snapshots, int channel) const {
    std::vector<RateTableAttribute> critical;
    if (snapshots.empty()) {
        return critical;
    }
    seriesCache own;
    const std::vector<registerSeries>& values =
        (analysedSeries == nullptr ? own : *analysedSeries).of(attributes, snapshots);
    std::size_t row = 0;
    for (const auto& [name, info] : attributes) {
        const registerSeries& series = values[row++];
        const bool isCritical = differsInSeries(series) || forcedCritical.count(name) != 0;
        if (!isCritical || isPort(info.dstSubBlock)) {
            continue;
        }
        const auto mask =
            series.empty() ? differingBits(seriesOf(name, snapshots)) : differingBits(series);
        critical.push_back(
            {mask, name, info.dstSubBlock, criticalAddress(name, info, channel), channel});
    }
    return critical;
}

std::int64_t gt_rule_engine::criticalAddress(const std::string& name, const attributeInfo& info,
                                             int channel) const {
    const std::string& type = info.dstSubBlock;
    const auto offset = static_cast<std::int64_t>(registerOffset(name, info));
    if (starts_with(type, "ch")) {
        return offset + blockNumber(blockOffsets, "CH", channel, name, info, channel);
    }
    if (starts_with(type, "hs")) {
        return offset + blockNumber(blockOffsets, type, channel / 2, name, info, channel);
    }
    if (starts_with(type, "ctrl")) {
        return offset + blockNumber(blockOffsets, type, 0, name, info, channel);
    }
    if (starts_with(type, "rcalbg")) {
        return offset + blockNumber(blockOffsets, type, channel, name, info, channel);
    }
    std::cout << "Unexpected Attribute Type: " << name << std::endl;
    return offset;
}

int gt_rule_engine::blockNumber(const std::map<std::string, std::vector<int>>& table,
                                const std::string& key, int index, const std::string& name,
                                const attributeInfo& info, int channel) const {
    const auto row = table.find(key);
    if (row == table.end() || index < 0 || static_cast<std::size_t>(index) >= row->second.size()) {
        throw std::out_of_range("register " + name + " of type " + info.dstSubBlock +
                                " has no block for channel " + std::to_string(channel));
    }
    return row->second[static_cast<std::size_t>(index)];
}

}  // namespace sable_lanecfg
