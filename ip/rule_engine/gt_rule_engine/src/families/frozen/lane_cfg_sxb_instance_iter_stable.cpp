#include "families/frozen/lane_cfg_sxb_instance_iter_stable.h"

#include "families/frozen/sxb_stable_packing_values.h"
#include "families/frozen/sxb_stable_quad_words.h"
#include "families/frozen/sxb_stable_rules.h"
#include "families/sxb/sxb_channel_positions.h"
#include "families/sxb/sxb_packing_values.h"
#include "families/sxb/sxb_service_fault.h"

#include <utility>

namespace sable_lanecfg {

lane_cfg_sxb_instance_iter_stable::lane_cfg_sxb_instance_iter_stable(
    const std::string& name, const std::vector<channelUsageInfo>& usage,
    const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceData)
    : lane_cfg_instance_iter_stable(name, "SXB", usage, quads, types, params, std::move(registers),
                                    deviceData),
      ipName(name),
      quadsUsage(quads) {
    takePacking(*this);
    passStartValues = sxbStablePassStartValues();
    // Rules are numbered as they are registered, so the order is part of the snapshots.
    runRXRules();
    runTXRules();
    runPLLRules();
    consumePackingIntersect();
    findAndSetCHPosition();
    gt_rule_engine::runBlockRules();
}

std::map<std::string, std::string> lane_cfg_sxb_instance_iter_stable::getAttributes() {
    return quadAttributes(*this, stableQuadWords());
}

int lane_cfg_sxb_instance_iter_stable::numberOfRatesForThisChannel(int direction, int lane) const {
    return numberOfRates(channelUsage, direction, lane);
}

void lane_cfg_sxb_instance_iter_stable::findGrouping() {
    rateGroups = rateGroupsOf(channelUsage, family);
}

void lane_cfg_sxb_instance_iter_stable::consumePackingIntersect() {
    catchServiceFaults(__LINE__, [this] { enterStablePackingValues(*this); });
}

void lane_cfg_sxb_instance_iter_stable::findAndSetCHPosition() {
    catchServiceFaults(__LINE__, [this] { enterChannelPositions(*this, quadsUsage); });
}

void lane_cfg_sxb_instance_iter_stable::runRXRules() {
    registerSxbStableRxRules(*this);
}

void lane_cfg_sxb_instance_iter_stable::runTXRules() {
    registerSxbStableTxRules(*this);
}

void lane_cfg_sxb_instance_iter_stable::runPLLRules() {
    registerSxbStablePllRules(*this);
}

}  // namespace sable_lanecfg
