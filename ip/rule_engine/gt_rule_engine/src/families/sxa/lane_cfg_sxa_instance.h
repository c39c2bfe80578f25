#pragma once

#include <lanecfg/lane_cfg_instance.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Instance of a quad of the SXA family. All of its rules are constants, so every quad has the
/// same register words whatever its user parameters are.
class lane_cfg_sxa_instance : public lane_cfg_instance {
  public:
    lane_cfg_sxa_instance(const std::string& name, const std::vector<channelUsageInfo>& usage,
                          const std::map<std::string, quadsUsageInfo*>& quads,
                          const std::map<std::string, paramTypeInfo>& types,
                          const userParamStore& params,
                          std::map<std::string, attributeInfo> registers,
                          const std::map<std::string, std::vector<std::string>>& deviceSettings);

    /// The attribute map of the block as it stands.
    std::map<std::string, std::string> getAttributes() override;
};

}  // namespace sable_lanecfg
