#include "families/sxd4/sxd4_tx_rules.h"

#include "families/common/rule_shapes.h"
#include "families/sxd4/sxd4_rule_groups.h"
#include "families/sxd4/sxd4_tx_catalogue.h"

namespace sable_lanecfg {

logicRules sxd4TxLogicRules() {
    logicRules rules;
    rules.emplace("TX_ANA_CFG1.CTL_PAM2_HIBT", byNumber("TX_PAM_SEL", 1, 0));
    addSxd4LineCodingRules(rules, transmitSide);
    rules.emplace("TX_DRV_CFG4.PROGDIV_PDBV_DIV", byFlag("TXPROGDIV_FREQ_ENABLE", 1, 0));
    addUndeliveredFieldRules(rules, sxd4TxCatalogue());
    return rules;
}

void registerSxd4TxRules(gt_rule_engine& engine) {
    static const catalogue_plan plan(sxd4TxCatalogue());
    registerCatalogue(engine, plan, sxd4TxLogicRules());
}

}  // namespace sable_lanecfg
