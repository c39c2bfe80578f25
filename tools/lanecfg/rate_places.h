#pragma once

#include <lanecfg/gt_db_load.h>

#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace sable_lanecfg::tool {

/// Where a request uses a rate: lane, direction and number of the rate.
struct RatePlace {
    int lane;
    bool isReceive;
    int rate;

    bool operator<(const RatePlace& other) const {
        return std::tie(lane, isReceive, rate) < std::tie(other.lane, other.isReceive, other.rate);
    }
};

using ParameterValues = std::map<std::string, ruleValue>;

/// The places that the groups of lanes use, with parameters or not.
std::set<RatePlace> placesOf(const std::vector<channelUsageInfo>& usage);

/// The parameters of a place, null where it has none.
const ParameterValues* valuesAt(const userParamStore& params, const RatePlace& at);

/// "TX" or "RX", with which the parameters of the place begin.
std::string directionOf(const RatePlace& at);

/// "lane 1 TX".
std::string placeText(const RatePlace& at);

/// Numbers as "0, 1".
std::string listed(const std::set<int>& numbers);

/// "rate 1", "rates 0, 1".
std::string counted(const std::string& noun, const std::set<int>& numbers);

}  // namespace sable_lanecfg::tool
