#pragma once

#include "families/sxb/packed_quad_instance.h"

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Instance of a quad of the SXB family.
class lane_cfg_sxb_instance : public packed_quad_instance {
  public:
    lane_cfg_sxb_instance(const std::string& name, const std::vector<channelUsageInfo>& usage,
                          const std::map<std::string, quadsUsageInfo*>& quads,
                          const std::map<std::string, paramTypeInfo>& types,
                          const userParamStore& params,
                          std::map<std::string, attributeInfo> registers,
                          const std::map<std::string, std::vector<std::string>>& deviceData);

    /// As `getOutClkFrequencies`, with the reference clock behind each, see
    /// `outputClocksWithReferences`.
    std::map<std::string, std::string> getOutClkFrequenciesInternal() const;

    /// Rates of a lane in a direction (0 transmit, else receive), 1 for a lane without channel.
    int numberOfRatesForThisChannel(int direction, int lane) const;
};

}  // namespace sable_lanecfg
