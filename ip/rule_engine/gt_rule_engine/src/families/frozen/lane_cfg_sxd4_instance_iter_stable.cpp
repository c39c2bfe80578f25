#include "families/frozen/lane_cfg_sxd4_instance_iter_stable.h"

#include <utility>

namespace sable_lanecfg {

lane_cfg_sxd4_instance_iter_stable::lane_cfg_sxd4_instance_iter_stable(
    const std::string& name, const std::vector<channelUsageInfo>& usage,
    const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceData)
    : lane_cfg_instance_iter_stable(name, "SXD4", usage, quads, types, params, std::move(registers),
                                    deviceData) {
    gt_rule_engine::runBlockRules();
}

std::map<std::string, std::string> lane_cfg_sxd4_instance_iter_stable::getAttributes() {
    return getAttribMap();
}

}  // namespace sable_lanecfg
