#include "families/sxb/sxb_pll_rules.h"

#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <string>
#include <vector>

namespace sable_lanecfg {

namespace {

/// Feedback divider of a PLL that was never solved; its field reads 78, as that of an idle slot.
constexpr unsigned int idleFeedbackDivider = 80;

void enterIfUnset(gt_rule_engine& engine, const std::string& name, const ruleValue& value) {
    const variable* const known = engine.findVariable(name);
    if (known == nullptr || known->second.value.which() == 0) {
        engine.setVal(name, value);
    }
}

}  // namespace

std::map<std::string, ruleValue> sxbPassStartValues() {
    std::map<std::string, ruleValue> values;
    for (const std::string pll : {"LCPLL", "RPLL"}) {
        for (const std::string side : {"TX_", "RX_"}) {
            values[side + pll + "_PLLCLKOUT_FREQ_VECTOR"] = std::vector<double>();
        }
    }
    return values;
}

void enterSxbPllStartValues(gt_rule_engine& engine) {
    for (const auto& [name, value] : sxbPassStartValues()) {
        enterIfUnset(engine, name, value);
    }
    for (const std::string pll : {"LCPLL", "RPLL"}) {
        enterIfUnset(engine, "INT_" + pll + "_REF_DIV", 1U);
        enterIfUnset(engine, "INT_" + pll + "_FBDIV", idleFeedbackDivider);
        enterIfUnset(engine, "INT_" + pll + "_PLLCLKOUT", 0.0);
        enterIfUnset(engine, "INT_" + pll + "_SDMDATA", 0U);
    }
    enterIfUnset(engine, "INT_LCPLLCLKOUTRATE", std::string("FULL"));
    enterIfUnset(engine, "INT_DOUBLER_EN", 0U);
}

logicRules sxbPllLogicRules(const gt_rule_engine& engine) {
    logicRules rules;
    addPllInputRules(rules);
    addOutputDividerRules(rules);
    addLcpllSolverRules(rules, engine.settings);
    addRpllSolverRules(rules);
    addDividerSearchRules(rules);
    addDividerCodeRules(rules);
    addDelayAlignerRules(rules);
    addLcpllFilterRules(rules);
    addRpllFilterRules(rules);
    addHighSpeedSlotRules(rules);
    addReferenceClockRules(rules);
    addClockDistributionRules(rules);
    addPhaseAlignmentRules(rules);
    addPipePositionRules(rules);
    addPcieRules(rules);
    addOutOfBandRules(rules);
    addBufferRules(rules);
    addPinRules(rules);
    addResetEnableRules(rules);
    return rules;
}

void registerSxbPllRules(gt_rule_engine& engine) {
    enterSxbPllStartValues(engine);
    registerCatalogue(engine, sxbPllCatalogue(), sxbPllLogicRules(engine));
}

}  // namespace sable_lanecfg
