#include "families/sxd4/lane_cfg_sxd4_instance.h"

#include "families/sxd4/sxd4_block_attributes.h"
#include "families/sxd4/sxd4_pll_rules.h"
#include "families/sxd4/sxd4_rx_rules.h"
#include "families/sxd4/sxd4_tx_rules.h"
#include "families/sxd4/sxd4_vco_candidates.h"

#include <utility>

namespace sable_lanecfg {

lane_cfg_sxd4_instance::lane_cfg_sxd4_instance(
    const std::string& name, const std::vector<channelUsageInfo>& usage,
    const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceData)
    : lane_cfg_instance(name, "SXD4", usage, quads, types, params, std::move(registers),
                        deviceData),
      ipName(name) {
    // Rules are numbered as they are registered, so the order is part of the snapshots.
    runRXRules();
    runTXRules();
    runPLLRules();
    gt_rule_engine::runBlockRules();
}

std::map<std::string, std::string> lane_cfg_sxd4_instance::getAttributes() {
    return blockAttributes(*this);
}

std::vector<double> lane_cfg_sxd4_instance::VCO_FrequencyCalculation(double symbolRate) const {
    return sxd4_vco_candidates(settings).ofSymbolRate(symbolRate);
}

std::vector<double> lane_cfg_sxd4_instance::VCO_FrequencyProgDivCalculation(
    double frequency, unsigned int pamSelection, double symbolRate) const {
    return sxd4_vco_candidates(settings).ofOutputClock(frequency, pamSelection, symbolRate);
}

std::vector<double> lane_cfg_sxd4_instance::mainIntersectionLogic(
    const std::vector<std::vector<double>>& lists) {
    return commonCandidates(lists);
}

void lane_cfg_sxd4_instance::runRXRules() {
    registerSxd4RxRules(*this);
}

void lane_cfg_sxd4_instance::runTXRules() {
    registerSxd4TxRules(*this);
}

void lane_cfg_sxd4_instance::runPLLRules() {
    registerSxd4PllRules(*this);
}

}  // namespace sable_lanecfg
