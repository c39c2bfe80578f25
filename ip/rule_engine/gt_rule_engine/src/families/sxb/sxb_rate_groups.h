#pragma once

#include <lanecfg/gt_db_load.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Group by direction (0 transmit, 1 receive), lane and rate slot.
using rateGroupTable = std::map<int, std::map<int, std::map<int, std::string>>>;

/// Number of rates of a lane in a direction (0 transmit, all else receive): that of the last usage
/// record with the lane, 1 for a lane in none.
int numberOfRates(const std::vector<channelUsageInfo>& usage, int direction, int lane);

/// Groups of all lanes of a quad: that of the last usage record with the lane, of the first record
/// for a lane in none. Empty without records.
rateGroupTable rateGroupsOf(const std::vector<channelUsageInfo>& usage, const std::string& family);

}  // namespace sable_lanecfg
