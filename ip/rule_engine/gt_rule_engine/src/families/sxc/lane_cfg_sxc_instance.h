#pragma once

#include "families/sxb/packed_quad_instance.h"

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Instance of a quad of the SXC family.
class lane_cfg_sxc_instance : public packed_quad_instance {
  public:
    lane_cfg_sxc_instance(const std::string& name, const std::vector<channelUsageInfo>& usage,
                          const std::map<std::string, quadsUsageInfo*>& quads,
                          const std::map<std::string, paramTypeInfo>& types,
                          const userParamStore& params,
                          std::map<std::string, attributeInfo> registers,
                          const std::map<std::string, std::vector<std::string>>& deviceData);

    /// The family has one firmware for all silicon revisions.
    std::map<std::string, std::string> getMemContent() override;
};

}  // namespace sable_lanecfg
