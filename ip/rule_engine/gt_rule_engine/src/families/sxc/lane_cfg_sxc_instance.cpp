#include "families/sxc/lane_cfg_sxc_instance.h"

#include "families/common/memory_image.h"
#include "families/sxc/sxc_rules.h"

#include <utility>

namespace sable_lanecfg {

lane_cfg_sxc_instance::lane_cfg_sxc_instance(
    const std::string& name, const std::vector<channelUsageInfo>& usage,
    const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceData)
    : packed_quad_instance(name, "SXC",
                           {registerSxcRxRules, registerSxcTxRules, registerSxcPllRules}, usage,
                           quads, types, params, std::move(registers), deviceData) {}

std::map<std::string, std::string> lane_cfg_sxc_instance::getMemContent() {
    std::map<std::string, std::string> sections = memoryImageSections(MemoryImage::sxc);
    sections[rateTableKey] = generateRateTable(true);
    return sections;
}

}  // namespace sable_lanecfg
