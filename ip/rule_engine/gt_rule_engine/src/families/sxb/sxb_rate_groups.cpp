#include "families/sxb/sxb_rate_groups.h"

#include "packing/lane_parameters.h"

#include <lanecfg/rule_engine_utilities.h>

namespace sable_lanecfg {

namespace {

laneDirection directionOf(int number) {
    return number == 0 ? laneDirection::transmit : laneDirection::receive;
}

void enterGroup(rateGroupTable& groups, laneDirection direction, int lane, int rates,
                const std::string& group) {
    for (int slot = 0; slot < rates; ++slot) {
        groups[static_cast<int>(direction)][lane][slot] = group;
    }
}

}  // namespace

int numberOfRates(const std::vector<channelUsageInfo>& usage, int direction, int lane) {
    std::size_t rates = 1;
    for (const channelUsageInfo& record : usage) {
        if (hasLane(record, directionOf(direction), lane)) {
            rates = record.rates.size();
        }
    }
    return static_cast<int>(rates);
}

rateGroupTable rateGroupsOf(const std::vector<channelUsageInfo>& usage, const std::string& family) {
    rateGroupTable groups;
    if (usage.empty()) {
        return groups;
    }
    const int lanes = rule_engine_utilities::ChPerBlock(family);
    for (int lane = 0; lane < lanes; ++lane) {
        for (const laneDirection direction : laneDirections) {
            const int rates = numberOfRates(usage, static_cast<int>(direction), lane);
            enterGroup(groups, direction, lane, rates, usage.front().group);
        }
    }
    for (const channelUsageInfo& record : usage) {
        for (const laneDirection direction : laneDirections) {
            for (const int lane : lanesOf(record, direction)) {
                for (const int slot : record.rates) {
                    groups[static_cast<int>(direction)][lane][slot] = record.group;
                }
            }
        }
    }
    return groups;
}

}  // namespace sable_lanecfg
