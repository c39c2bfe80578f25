#include "families/sxb/packed_quad_instance.h"

#include "families/sxb/sxb_channel_positions.h"
#include "families/sxb/sxb_output_clocks.h"
#include "families/sxb/sxb_packing_values.h"
#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_quad_attributes.h"
#include "families/sxb/sxb_service_fault.h"

#include <utility>

namespace sable_lanecfg {

packed_quad_instance::packed_quad_instance(
    const std::string& name, const std::string& familyWord, const quadRuleSets& rules,
    const std::vector<channelUsageInfo>& usage, const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceData)
    : lane_cfg_instance(name, familyWord, usage, quads, types, params, std::move(registers),
                        deviceData),
      ipName(name),
      quadsUsage(quads) {
    takePacking(*this);
    passStartValues = sxbPassStartValues();
    // Rules are numbered as they are registered, so the order is part of the snapshots.
    rules.receive(*this);
    rules.transmit(*this);
    rules.pll(*this);
    consumePackingIntersect();
    findAndSetCHPosition();
    gt_rule_engine::runBlockRules();
}

std::map<std::string, std::string> packed_quad_instance::getAttributes() {
    return quadAttributes(*this);
}

std::map<std::string, std::string> packed_quad_instance::getOutClkFrequencies() {
    return outputClocks(*this);
}

void packed_quad_instance::findGrouping() {
    rateGroups = rateGroupsOf(channelUsage, family);
}

void packed_quad_instance::consumePackingIntersect() {
    catchServiceFaults(__LINE__, [this] {
        findGrouping();
        enterPackingValues(*this);
    });
}

void packed_quad_instance::findAndSetCHPosition() {
    catchServiceFaults(__LINE__, [this] { enterChannelPositions(*this, quadsUsage); });
}

}  // namespace sable_lanecfg
