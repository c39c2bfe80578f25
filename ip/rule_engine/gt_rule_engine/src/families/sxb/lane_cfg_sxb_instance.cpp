#include "families/sxb/lane_cfg_sxb_instance.h"

#include "families/sxb/sxb_channel_positions.h"
#include "families/sxb/sxb_output_clocks.h"
#include "families/sxb/sxb_packing_values.h"
#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_quad_attributes.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_service_fault.h"
#include "families/sxb/sxb_tx_rules.h"

#include <utility>

namespace sable_lanecfg {

lane_cfg_sxb_instance::lane_cfg_sxb_instance(
    const std::string& name, const std::vector<channelUsageInfo>& usage,
    const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceSettings)
    : lane_cfg_instance(name, "SXB", usage, quads, types, params, std::move(registers),
                        deviceSettings),
      ipName(name),
      quadsUsage(quads) {
    takePacking(*this);
    passStartValues = sxbPassStartValues();
    // Rules are numbered as they are registered, so the order is part of the snapshots.
    runRXRules();
    runTXRules();
    runPLLRules();
    consumePackingIntersect();
    findAndSetCHPosition();
    gt_rule_engine::runBlockRules();
}

std::map<std::string, std::string> lane_cfg_sxb_instance::getAttributes() {
    return quadAttributes(*this);
}

std::map<std::string, std::string> lane_cfg_sxb_instance::getOutClkFrequencies() {
    return outputClocks(*this);
}

std::map<std::string, std::string> lane_cfg_sxb_instance::getOutClkFrequenciesInternal() const {
    return outputClocksWithReferences(*this);
}

int lane_cfg_sxb_instance::numberOfRatesForThisChannel(int direction, int lane) const {
    return numberOfRates(channelUsage, direction, lane);
}

void lane_cfg_sxb_instance::findGrouping() {
    rateGroups = rateGroupsOf(channelUsage, family);
}

void lane_cfg_sxb_instance::consumePackingIntersect() {
    catchServiceFaults(__LINE__, [this] {
        findGrouping();
        enterPackingValues(*this);
    });
}

void lane_cfg_sxb_instance::findAndSetCHPosition() {
    catchServiceFaults(__LINE__, [this] { enterChannelPositions(*this, quadsUsage); });
}

void lane_cfg_sxb_instance::runRXRules() {
    registerSxbRxRules(*this);
}

void lane_cfg_sxb_instance::runTXRules() {
    registerSxbTxRules(*this);
}

void lane_cfg_sxb_instance::runPLLRules() {
    registerSxbPllRules(*this);
}

}  // namespace sable_lanecfg
