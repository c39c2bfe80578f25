#include "register_file.h"

#include <algorithm>

namespace sable_lanecfg::tool {
namespace {

void writeUnderMask(std::uint32_t& target, const RegisterWrite& write) {
    const std::uint32_t mask = write.mask.value_or(~std::uint32_t{0});
    target = (target & ~mask) | (write.value & mask);
}

}  // namespace

void RegisterFile::apply(const RateWrites& rate, unsigned tableChannel) {
    for (const WriteGroup& group : rate) {
        Registers& lane = lanes_.at(group.lane.value_or(tableChannel));
        for (const RegisterWrite& write : group.writes) {
            writeUnderMask(lane.at(write.address), write);
            writeUnderMask(shared_.at(write.address), write);
        }
    }
}

bool writesTo(const RateWrites& rate, unsigned tableChannel, const RegisterPlace& place,
              unsigned channel) {
    return std::any_of(rate.begin(), rate.end(), [&](const WriteGroup& group) {
        const bool reachesLane = !place.isOfLane || group.lane.value_or(tableChannel) == channel;
        return reachesLane && std::any_of(group.writes.begin(), group.writes.end(),
                                          [&place](const RegisterWrite& write) {
                                              return write.address == place.address;
                                          });
    });
}

}  // namespace sable_lanecfg::tool
