#include "families/sxb/sxb_outclock.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_rx_cdr.h"
#include "families/sxb/sxb_rx_rule_groups.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_catalogue.h"
#include "families/sxb/sxb_tx_rules.h"
#include "families/sxc/sxc_catalogue.h"
#include "families/sxc/sxc_rules.h"

#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {

namespace {

/// The PCIe rates that run on divided clocks, with the recovery that they need.
const std::vector<pcieRecoveryCase>& dividedPcieCases() {
    static const std::vector<pcieRecoveryCase> cases{{8.0, 32, {10, 1, 2, 1}},
                                                     {32.0, 64, {12, 1, 0, 0}}};
    return cases;
}

/// The adaptation divides its data where the recovery has settings of its own.
void dividedAdaptationData(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto lineRate = rule.reads<double>("RX_LINE_RATE");
    const auto internalWidth = rule.reads<unsigned int>("RX_INT_DATA_WIDTH");
    rule.gives([=] {
        const bool isCase =
            pcie() && recoveryCaseOf(dividedPcieCases(), lineRate(), internalWidth()) != nullptr;
        return isCase ? 1U : 0U;
    });
}

/// The reserve of the elastic buffer is the internal width itself, in bits.
latencyReserve ofInternalWidth(rule_declaration& rule) {
    // Two names run into one: a variable of that name orders nothing and is never read.
    rule.alsoDeclares("RX_CC_NUM_SEQRX_INT_DATA_WIDTH");
    return {rule.peeks<unsigned int>("RX_CC_NUM_SEQ"),
            rule.peeks<unsigned int>("RX_INT_DATA_WIDTH")};
}

/// A rule with an input more, which its body does not read.
ruleDeclarer withInput(ruleDeclarer rule, std::string name) {
    return [rule = std::move(rule), name = std::move(name)](rule_declaration& declared) {
        rule(declared);
        declared.alsoDeclares(name);
    };
}

}  // namespace

logicRules sxcRxLogicRules() {
    logicRules rules = sxbRxLogicRules();
    removeRulesWithoutPlace(rules, sxbRxCatalogue(), sxcRxCatalogue());
    addRule(rules, "ADAPT_APT_CFG.divider_data", dividedAdaptationData);
    replaceRule(rules, "EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN",
                clockDataRecovery(dividedPcieCases(), pcieRecoverySilicon::all));
    replaceRule(rules, "RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MAX_LAT",
                maximumBufferLatency(ofInternalWidth));
    return rules;
}

logicRules sxcTxLogicRules() {
    logicRules rules = sxbTxLogicRules();
    removeRulesWithoutPlace(rules, sxbTxCatalogue(), sxcTxCatalogue());
    replaceRule(rules, std::string(sxb_tx_step::outclockReport),
                transmitOutclockReport(outclockContent::clock));
    const std::string dedicatedPath = "TX_PCS_CFG3.TX_DEDICATED_CCIX_CHICO_PATH_EN";
    replaceRule(rules, dedicatedPath,
                withInput(ruleBeside(rules, dedicatedPath), "TX_INT_DATA_WIDTH"));
    return rules;
}

void registerSxcRxRules(gt_rule_engine& engine) {
    static const catalogue_plan plan(sxcRxCatalogue());
    registerCatalogue(engine, plan, sxcRxLogicRules());
}

void registerSxcTxRules(gt_rule_engine& engine) {
    static const catalogue_plan plan(sxcTxCatalogue());
    registerCatalogue(engine, plan, sxcTxLogicRules());
}

}  // namespace sable_lanecfg
