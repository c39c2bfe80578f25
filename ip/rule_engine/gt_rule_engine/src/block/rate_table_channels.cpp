#include "block/rate_table_limits.h"
#include "block/register_series.h"

#include <lanecfg/gt_rule_engine.h>
#include <lanecfg/rule_engine_utilities.h>

#include <cstddef>
#include <set>
#include <string>

namespace sable_lanecfg {

namespace {

using netOfChannel = std::string RateTableChannel::*;

void assignNets(RateTableChannel* channels, netOfChannel net, int channelCount,
                const std::vector<int>& lanes, const std::vector<std::string>& names) {
    for (std::size_t i = 0; i < lanes.size() && i < names.size(); ++i) {
        if (lanes[i] >= 0 && lanes[i] < channelCount) {
            channels[lanes[i]].*net = names[i];
        }
    }
}

int lowestChannelOfNet(const RateTableChannel* channels, netOfChannel net, int channel) {
    int master = 0;
    while (channels[master].*net != channels[channel].*net) {
        ++master;
    }
    return master;
}

/// Number of distinct values of the run variable "TX" or "RX".
int countRates(const std::vector<variableMap>& passes, const std::string& label) {
    std::set<std::string> rates;
    for (const variableMap& snapshot : passes) {
        const auto found = snapshot.find(label);
        rates.insert(found == snapshot.end() ? std::string() : registerText(found->second.value));
    }
    return static_cast<int>(rates.size());
}

void logChannel(const RateTableChannel& channel, int number) {
    using utilities = rule_engine_utilities;
    utilities::write_log("Channel " + std::to_string(number) + ":");
    if (channel.txNet.empty() && channel.rxNet.empty()) {
        utilities::write_log("Unused");
        return;
    }
    utilities::write_log(channel.duplex ? "Duplex" : "Simplex");
    utilities::write_log("TX Master: Channel " + std::to_string(channel.txMaster));
    utilities::write_log("RX Master: Channel " + std::to_string(channel.rxMaster));
    utilities::write_log("Tx Net: " + channel.txNet);
    utilities::write_log("Rx Net: " + channel.rxNet);
    utilities::write_log("Number of Tx Rates: " + std::to_string(channel.numTxRates));
    utilities::write_log("Number of Rx Rates: " + std::to_string(channel.numRxRates));
    utilities::write_log("");
}

}  // namespace

void gt_rule_engine::parseHeaderInfo_New(RateTableChannel* channels) {
    const int channelCount = rule_engine_utilities::ChPerBlock(family);
    for (const channelUsageInfo& usage : channelUsage) {
        assignNets(channels, &RateTableChannel::txNet, channelCount, usage.tx, usage.txrate);
        assignNets(channels, &RateTableChannel::rxNet, channelCount, usage.rx, usage.rxrate);
    }
    for (int i = 0; i < rateTableChannels; ++i) {
        RateTableChannel& channel = channels[i];
        channel.duplex = channel.txNet == channel.rxNet;
        if (i >= channelCount) {
            // A channel that the quad does not have follows nobody.
            channel.txMaster = channel.rxMaster = i;
            continue;
        }
        channel.txMaster = lowestChannelOfNet(channels, &RateTableChannel::txNet, i);
        channel.rxMaster = lowestChannelOfNet(channels, &RateTableChannel::rxNet, i);
        channel.numTxRates = countRates(passesOf(i), "TX");
        channel.numRxRates = channel.duplex ? 0 : countRates(passesOf(i), "RX");
    }
    for (int i = 0; i < rateTableChannels; ++i) {
        logChannel(channels[i], i);
    }
}

const std::vector<variableMap>& gt_rule_engine::passesOf(int channel) const {
    static const std::vector<variableMap> none;
    const auto index = static_cast<std::size_t>(channel);
    return index < blockVarMap.size() ? blockVarMap[index] : none;
}

}  // namespace sable_lanecfg
