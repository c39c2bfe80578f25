#include "families/sxb/packed_quad_instance.h"

#include "families/sxb/sxb_output_clocks.h"
#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_quad_attributes.h"

#include <utility>

namespace sable_lanecfg {

packed_quad_instance::packed_quad_instance(
    const std::string& name, const std::string& familyWord, const quadRuleSets& rules,
    const std::vector<channelUsageInfo>& usage, const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceData)
    : packed_quad(name, familyWord, usage, quads, types, params, std::move(registers), deviceData) {
    build(rules, sxbPassStartValues(), [this] { consumePackingIntersect(); });
}

std::map<std::string, std::string> packed_quad_instance::getAttributes() {
    return quadAttributes(*this);
}

std::map<std::string, std::string> packed_quad_instance::getOutClkFrequencies() {
    return outputClocks(*this);
}

void packed_quad_instance::consumePackingIntersect() {
    catchServiceFaults(__LINE__, [this] {
        findGrouping();
        enterPackingValues(*this);
    });
}

}  // namespace sable_lanecfg
