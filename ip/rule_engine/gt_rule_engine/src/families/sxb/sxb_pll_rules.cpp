#include "families/sxb/sxb_pll_rules.h"

#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <string>
#include <vector>

namespace sable_lanecfg {

namespace {

/// Feedback divider of a PLL that was never solved; its field reads 78, as that of an idle slot.
constexpr unsigned int idleFeedbackDivider = 80;

/// The rules that refer to no engine.
logicRules rulesOfAllEngines() {
    logicRules rules;
    addPllInputRules(rules);
    addOutputDividerRules(rules);
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

logicRules rulesOfEngine(const gt_rule_engine& engine) {
    logicRules rules;
    addLcpllSolverRules(rules, engine.settings);
    return rules;
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

startValues sxbSolverStartValues() {
    startValues values;
    for (const std::string pll : {"LCPLL", "RPLL"}) {
        values.emplace_back("INT_" + pll + "_REF_DIV", 1U);
        values.emplace_back("INT_" + pll + "_FBDIV", idleFeedbackDivider);
        values.emplace_back("INT_" + pll + "_PLLCLKOUT", 0.0);
        values.emplace_back("INT_" + pll + "_SDMDATA", 0U);
    }
    values.emplace_back("INT_LCPLLCLKOUTRATE", std::string("FULL"));
    values.emplace_back("INT_DOUBLER_EN", 0U);
    return values;
}

void enterStartValues(gt_rule_engine& engine, const startValues& values) {
    for (const auto& [name, value] : values) {
        const variable* const known = engine.findVariable(name);
        if (known == nullptr || known->second.value.which() == 0) {
            engine.setVal(name, value);
        }
    }
}

void enterSxbPllStartValues(gt_rule_engine& engine) {
    const std::map<std::string, ruleValue> ofPass = sxbPassStartValues();
    enterStartValues(engine, {ofPass.begin(), ofPass.end()});
    enterStartValues(engine, sxbSolverStartValues());
}

logicRules sxbPllLogicRules(const gt_rule_engine& engine) {
    logicRules rules = rulesOfAllEngines();
    rules.merge(rulesOfEngine(engine));
    return rules;
}

void registerSxbPllRules(gt_rule_engine& engine) {
    enterSxbPllStartValues(engine);
    // The same for every engine.
    static const logicRules rules = rulesOfAllEngines();
    static const catalogue_plan plan(sxbPllCatalogue());
    registerCatalogue(engine, plan, rules, rulesOfEngine(engine));
}

}  // namespace sable_lanecfg
