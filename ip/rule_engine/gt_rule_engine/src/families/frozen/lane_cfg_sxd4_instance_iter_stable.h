#pragma once

#include <lanecfg/lane_cfg_instance.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Instance of a dual of the SXD4 family with the frozen rules, of which there are none: its
/// passes hold the user parameters, and it has no register words.
class lane_cfg_sxd4_instance_iter_stable : public lane_cfg_instance_iter_stable {
  public:
    lane_cfg_sxd4_instance_iter_stable(
        const std::string& name, const std::vector<channelUsageInfo>& usage,
        const std::map<std::string, quadsUsageInfo*>& quads,
        const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
        std::map<std::string, attributeInfo> registers,
        const std::map<std::string, std::vector<std::string>>& deviceData);

    /// `getAttribMap` as it stands.
    std::map<std::string, std::string> getAttributes() override;
};

}  // namespace sable_lanecfg
