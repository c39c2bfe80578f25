#include "families/sxa/lane_cfg_sxa_instance.h"

#include "families/common/catalogue_rules.h"
#include "families/sxa/sxa_catalogue.h"

#include <utility>

namespace sable_lanecfg {

lane_cfg_sxa_instance::lane_cfg_sxa_instance(
    const std::string& name, const std::vector<channelUsageInfo>& usage,
    const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceSettings)
    : lane_cfg_instance(name, "SXA", usage, quads, types, params, std::move(registers),
                        deviceSettings) {
    static const catalogue_plan plan(sxaCatalogue());
    registerCatalogue(*this, plan, {});
    gt_rule_engine::runBlockRules();
    dumpVars();
}

std::map<std::string, std::string> lane_cfg_sxa_instance::getAttributes() {
    return getAttribMap();
}

}  // namespace sable_lanecfg
