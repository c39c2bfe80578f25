#include "families/frozen/lane_cfg_sxb_instance_iter_stable.h"

#include "families/frozen/sxb_stable_packing_values.h"
#include "families/frozen/sxb_stable_quad_words.h"
#include "families/frozen/sxb_stable_rules.h"

#include <utility>

namespace sable_lanecfg {

lane_cfg_sxb_instance_iter_stable::lane_cfg_sxb_instance_iter_stable(
    const std::string& name, const std::vector<channelUsageInfo>& usage,
    const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceData)
    : packed_quad(name, "SXB", usage, quads, types, params, std::move(registers), deviceData) {
    build({registerSxbStableRxRules, registerSxbStableTxRules, registerSxbStablePllRules},
          sxbStablePassStartValues(), [this] { consumePackingIntersect(); });
}

std::map<std::string, std::string> lane_cfg_sxb_instance_iter_stable::getAttributes() {
    return quadAttributes(*this, stableQuadWords());
}

int lane_cfg_sxb_instance_iter_stable::numberOfRatesForThisChannel(int direction, int lane) const {
    return numberOfRates(channelUsage, direction, lane);
}

void lane_cfg_sxb_instance_iter_stable::consumePackingIntersect() {
    catchServiceFaults(__LINE__, [this] { enterStablePackingValues(*this); });
}

}  // namespace sable_lanecfg
