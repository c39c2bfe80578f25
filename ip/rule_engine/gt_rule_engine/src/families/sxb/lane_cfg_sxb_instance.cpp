#include "families/sxb/lane_cfg_sxb_instance.h"

#include "families/sxb/sxb_output_clocks.h"
#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_rules.h"

#include <utility>

namespace sable_lanecfg {

lane_cfg_sxb_instance::lane_cfg_sxb_instance(
    const std::string& name, const std::vector<channelUsageInfo>& usage,
    const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceData)
    : packed_quad_instance(name, "SXB",
                           {registerSxbRxRules, registerSxbTxRules, registerSxbPllRules}, usage,
                           quads, types, params, std::move(registers), deviceData) {}

std::map<std::string, std::string> lane_cfg_sxb_instance::getOutClkFrequenciesInternal() const {
    return outputClocksWithReferences(*this);
}

int lane_cfg_sxb_instance::numberOfRatesForThisChannel(int direction, int lane) const {
    return numberOfRates(channelUsage, direction, lane);
}

}  // namespace sable_lanecfg
