#include "families/sxb/sxb_rx_rules.h"

#include "families/sxb/sxb_reset_done.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_rx_rule_groups.h"

namespace sable_lanecfg {

logicRules sxbRxLogicRules() {
    logicRules rules;
    addRxCodingRules(rules);
    addRxCommaRules(rules);
    addRxOutclockRules(rules);
    addRxEqualiserRules(rules);
    addRxRecoveryRules(rules);
    addRxElasticBufferRules(rules);
    addRxLatencyRules(rules);
    addRxSequenceRules(rules);
    addRxPhaseAlignmentRules(rules);
    addResetDoneRules(rules, receiveSide);
    return rules;
}

void registerSxbRxRules(gt_rule_engine& engine) {
    // The same for every engine.
    static const logicRules rules = sxbRxLogicRules();
    static const catalogue_plan plan(sxbRxCatalogue());
    registerCatalogue(engine, plan, rules);
}

}  // namespace sable_lanecfg
