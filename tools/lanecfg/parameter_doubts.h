#pragma once

#include <lanecfg/gt_db_load.h>

#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// Values of a request in use that are taken but can't be meant so: a line rate or reference clock
/// that is not above 0, a width or coding for which the registers have no code. A sentence or two
/// for each lane, direction, parameter and value, with the rates and what is known.
std::vector<std::string> parameterDoubts(const std::vector<channelUsageInfo>& usage,
                                         const userParamStore& params);

/// The codings of the transmitter; the receiver has all but "PRBS".
std::vector<std::string> encodingWords();

}  // namespace sable_lanecfg::tool
