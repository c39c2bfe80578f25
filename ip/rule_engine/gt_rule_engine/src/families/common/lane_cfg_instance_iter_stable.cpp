#include "elf/rate_table_update.h"
#include "families/common/memory_image.h"

#include <lanecfg/lane_cfg_instance.h>

#include <utility>

namespace sable_lanecfg {

lane_cfg_instance_iter_stable::lane_cfg_instance_iter_stable(
    const std::string& name, const std::string& familyWord,
    const std::vector<channelUsageInfo>& usage,
    const std::map<std::string, quadsUsageInfo*>& /*quads*/,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceData)
    : gt_rule_engine_iter_stable(familyWord, usage, types, params, std::move(registers),
                                 deviceData),
      familyName(familyWord),
      instanceName(name) {}

lane_cfg_instance_iter_stable::~lane_cfg_instance_iter_stable() = default;

std::map<std::string, std::string> lane_cfg_instance_iter_stable::getAttributes() {
    return {};
}

std::map<std::string, std::string> lane_cfg_instance_iter_stable::getMemContent() {
    std::map<std::string, std::string> sections = memoryImageSections(MemoryImage::frozen);
    sections[rateTableKey] = generateRateTable(false);
    return sections;
}

std::map<std::string, std::string> lane_cfg_instance_iter_stable::getOutClkFrequencies() {
    return {};
}

bool lane_cfg_instance_iter_stable::updateELF(const std::string& elfFile,
                                              const std::string& workDir) {
    return updateElfWithRateTable([this] { return generateRateTableInBinary(); }, instanceName,
                                  elfFile, workDir);
}

}  // namespace sable_lanecfg
