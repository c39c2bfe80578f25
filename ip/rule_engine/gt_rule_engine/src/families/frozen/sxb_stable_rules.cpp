#include "families/frozen/sxb_stable_rules.h"

#include "families/frozen/sxb_stable_catalogue.h"
#include "families/frozen/sxb_stable_rule_groups.h"
#include "families/sxb/sxb_coding.h"
#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_pll_rule_groups.h"
#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_rx_rule_groups.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_catalogue.h"
#include "families/sxb/sxb_tx_rules.h"

#include <array>
#include <string_view>

namespace sable_lanecfg {

namespace {

/// The receiver's equaliser as the request has it; nothing decides for "AUTO".
constexpr const char* equaliserMode = "RX_EQ_MODE";

constexpr std::string_view pipeClockDividerField = "PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK";

/// A word of the memory cells and the PLL whose reference clock it selects.
struct memoryCell {
    const char* selectField;
    const char* pll;
};

constexpr std::array<memoryCell, 4> memoryCells{{{"MEMCELLX0C12.HS0_LCPLL_IPS_REFCLK_SEL", "LCPLL"},
                                                 {"MEMCELLX0F12.HS1_LCPLL_IPS_REFCLK_SEL", "LCPLL"},
                                                 {"MEMCELLX0C13.HS0_RPLL_IPS_REFCLK_SEL", "RPLL"},
                                                 {"MEMCELLX0F13.HS1_RPLL_IPS_REFCLK_SEL", "RPLL"}}};

void replaceRules(logicRules& rules, const logicRules& others) {
    for (const auto& [name, rule] : others) {
        replaceRule(rules, name, rule);
    }
}

void replaceStep(logicRules& rules, std::string_view step, ruleDeclarer rule) {
    replaceRule(rules, std::string(step), std::move(rule));
}

/// Intermediates that no frozen rule writes.
startValues unwrittenIntermediates() {
    return {{"INT_TX_ASYNC_GEARBOX_EN", 0U}};
}

}  // namespace

logicRules sxbStableRxLogicRules() {
    logicRules rules = sxbRxLogicRules();
    removeRulesWithoutPlace(rules, sxbRxCatalogue(), sxbStableRxCatalogue());
    replaceRules(rules, equaliserFieldRules(equaliserMode));
    addRule(rules, std::string(sxb_stable_rx_step::clocksPerWord), stableReceiveClocksPerWord);
    return rules;
}

logicRules sxbStableTxLogicRules() {
    logicRules rules = sxbTxLogicRules();
    removeRulesWithoutPlace(rules, sxbTxCatalogue(), sxbStableTxCatalogue());
    addRule(rules, std::string(sxb_stable_tx_step::clocksPerWord), stableTransmitClocksPerWord);
    replaceRule(rules, "TX_PCS_CFG0.USE_GB",
                gearbox(transmitSide, "TX_PCS_CFG0", gearboxContent::fields));
    return rules;
}

logicRules sxbStablePllLogicRules(const gt_rule_engine& engine) {
    logicRules rules = sxbPllLogicRules(engine);
    removeRulesWithoutPlace(rules, sxbPllCatalogue(), sxbStablePllCatalogue());
    replaceStep(rules, sxb_pll_step::inputSelection, stableInputSelection);
    replaceStep(rules, sxb_pll_step::lcpllSolver, stableLcpllSolver);
    replaceStep(rules, sxb_pll_step::rpllSolver, stableRpllSolver);
    addRule(rules, std::string(sxb_stable_pll_step::pipeClockDivider),
            ruleBeside(rules, std::string(pipeClockDividerField)));
    replaceStep(rules, pipeClockDividerField, firstGenerationBufferDivider());
    for (const memoryCell& cell : memoryCells) {
        addRule(rules, cell.selectField, referenceClockSelect(cell.pll));
    }
    replaceRule(rules, "FABRIC_INTF_CFG1.A_RXLPMEN", lowPowerEqualiser(equaliserMode));
    return rules;
}

std::map<std::string, ruleValue> sxbStablePassStartValues() {
    return {{"RX_PLL_VCO", 0.0},
            {"RX_PLL_REFCLK_FREQUENCY", 0.0},
            {"RX_PLL_POWERDOWN", true},
            {"RX_PLL_REFCLK_SOURCE", std::string("R0")}};
}

void registerSxbStableRxRules(gt_rule_engine& engine) {
    static const catalogue_plan plan(sxbStableRxCatalogue());
    registerCatalogue(engine, plan, sxbStableRxLogicRules());
}

void registerSxbStableTxRules(gt_rule_engine& engine) {
    static const catalogue_plan plan(sxbStableTxCatalogue());
    registerCatalogue(engine, plan, sxbStableTxLogicRules());
}

void registerSxbStablePllRules(gt_rule_engine& engine) {
    const std::map<std::string, ruleValue> ofPass = sxbStablePassStartValues();
    enterStartValues(engine, {ofPass.begin(), ofPass.end()});
    enterStartValues(engine, sxbSolverStartValues());
    enterStartValues(engine, unwrittenIntermediates());
    static const catalogue_plan plan(sxbStablePllCatalogue());
    registerCatalogue(engine, plan, sxbStablePllLogicRules(engine));
}

}  // namespace sable_lanecfg
