#include "elf/rate_table_update.h"
#include "families/common/memory_image.h"

#include <lanecfg/lane_cfg_instance.h>

#include <utility>

namespace sable_lanecfg {

namespace {

/// Bytes of rate table that the controller's own memory holds.
constexpr unsigned int controllerTableBytes = 8192;

}  // namespace

lane_cfg_instance::lane_cfg_instance(
    const std::string& name, const std::string& familyWord,
    const std::vector<channelUsageInfo>& usage,
    const std::map<std::string, quadsUsageInfo*>& /*quads*/,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceData)
    : gt_rule_engine_live(familyWord, usage, types, params, std::move(registers), deviceData),
      familyName(familyWord),
      instanceName(name) {}

lane_cfg_instance::~lane_cfg_instance() = default;

std::map<std::string, std::string> lane_cfg_instance::getAttributes() {
    return {};
}

std::map<std::string, std::string> lane_cfg_instance::getMemContent() {
    std::map<std::string, std::string> sections = memoryImageSections(liveMemoryImage(settings));
    sections[rateTableKey] = generateRateTable(true);
    return sections;
}

std::map<std::string, std::string> lane_cfg_instance::getOutClkFrequencies() {
    return {};
}

bool lane_cfg_instance::updateELF(const std::string& elfFile, const std::string& workDir) {
    return updateElfWithRateTable([this] { return generateRateTableInBinary(); }, instanceName,
                                  elfFile, workDir);
}

bool lane_cfg_instance::isFabricBramNeeded() {
    return static_cast<unsigned int>(getRateTableSize()) > controllerTableBytes;
}

}  // namespace sable_lanecfg
