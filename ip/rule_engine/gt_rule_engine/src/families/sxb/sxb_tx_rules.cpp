#include "families/sxb/sxb_tx_rules.h"

#include "families/sxb/sxb_reset_done.h"
#include "families/sxb/sxb_tx_catalogue.h"
#include "families/sxb/sxb_tx_rule_groups.h"

namespace sable_lanecfg {

logicRules sxbTxLogicRules() {
    logicRules rules;
    addTxCodingRules(rules);
    addTxDriverRules(rules);
    addTxOutclockRules(rules);
    addTxPhaseAlignmentRules(rules);
    addResetDoneRules(rules, transmitSide);
    return rules;
}

void registerSxbTxRules(gt_rule_engine& engine) {
    // The same for every engine.
    static const logicRules rules = sxbTxLogicRules();
    static const catalogue_plan plan(sxbTxCatalogue());
    registerCatalogue(engine, plan, rules);
}

}  // namespace sable_lanecfg
