#pragma once

#include "families/sxb/packed_quad.h"

#include <lanecfg/lane_cfg_instance.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Instance of a quad of the SXB family with the frozen rules, to which it gives the outcome of the
/// receivers' PLLs. Nothing here reads the groups of the rates.
class lane_cfg_sxb_instance_iter_stable : public packed_quad<lane_cfg_instance_iter_stable> {
  public:
    lane_cfg_sxb_instance_iter_stable(
        const std::string& name, const std::vector<channelUsageInfo>& usage,
        const std::map<std::string, quadsUsageInfo*>& quads,
        const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
        std::map<std::string, attributeInfo> registers,
        const std::map<std::string, std::vector<std::string>>& deviceData);

    /// Register words by prefixed name, see `quadAttributes` and `stableQuadWords`. Makes the rate
    /// table.
    std::map<std::string, std::string> getAttributes() override;

    /// Rates of a lane in a direction (0 transmit, else receive), 1 for a lane without channel.
    int numberOfRatesForThisChannel(int direction, int lane) const;

    /// Step of the construction, which enters user parameters, see `enterStablePackingValues`; a
    /// fault of it is told to the user and leaves the rest as it is.
    void consumePackingIntersect();
};

}  // namespace sable_lanecfg
