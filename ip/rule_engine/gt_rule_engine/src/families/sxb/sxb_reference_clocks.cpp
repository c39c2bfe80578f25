#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_pll_rule_groups.h"
#include "families/sxb/sxb_silicon.h"

#include <string>

namespace sable_lanecfg {

namespace {

constexpr code_table<std::string_view, 7> referenceSourceCodes{
    {{"R0", 1}, {"R1", 2}, {"R2", 3}, {"R3", 4}, {"R4", 5}, {"R5", 6}, {"R6", 7}}};

}  // namespace

ruleDeclarer referenceClockSelect(const std::string& pll) {
    return codeOfVariable<std::string>("INT_" + pll + "_REFCLK_SOURCE", referenceSourceCodes);
}

void addReferenceClockRules(logicRules& rules) {
    for (const std::string pll : {"LCPLL", "RPLL"}) {
        const std::string field = pll + "_REFCLK_IPS." + pll;
        rules.emplace(field + "_IPS_REFCLK_SEL", referenceClockSelect(pll));
        // The upper dual sees the quad's two reference clocks in the other order.
        rules.emplace(field + "_REFCLK_MAP1", byNumber("DUAL", 2, 1));
        rules.emplace(field + "_REFCLK_MAP2", byNumber("DUAL", 1, 2));
    }
    // Early silicon needs its band gap reference trimmed.
    rules.emplace("A_CFG0.A_BGRCALOVRD_EN", bySilicon(1, 0));
}

}  // namespace sable_lanecfg
