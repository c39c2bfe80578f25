#pragma once

#include "families/sxb/packed_quad.h"

#include <lanecfg/lane_cfg_instance.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// What instances of the SXB family and of its relatives with current rules have in common.
class packed_quad_instance : public packed_quad<lane_cfg_instance> {
  public:
    packed_quad_instance(const std::string& name, const std::string& familyWord,
                         const quadRuleSets& rules, const std::vector<channelUsageInfo>& usage,
                         const std::map<std::string, quadsUsageInfo*>& quads,
                         const std::map<std::string, paramTypeInfo>& types,
                         const userParamStore& params,
                         std::map<std::string, attributeInfo> registers,
                         const std::map<std::string, std::vector<std::string>>& deviceData);

    /// Register words by prefixed name, see `quadAttributes`. Makes the rate table.
    std::map<std::string, std::string> getAttributes() override;
    /// Output clocks (MHz) by "CH0_TXOUTCLK" and so on, the fastest of each lane's rates.
    std::map<std::string, std::string> getOutClkFrequencies() override;

    /// Step of the construction, which begins with `findGrouping` and enters user parameters; a
    /// fault of it is told to the user and leaves the rest as it is.
    void consumePackingIntersect();
};

}  // namespace sable_lanecfg
