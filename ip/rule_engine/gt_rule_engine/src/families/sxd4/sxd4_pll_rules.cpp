#include "families/sxd4/sxd4_pll_rules.h"

#include "families/sxd4/sxd4_pll_catalogue.h"
#include "families/sxd4/sxd4_rule_groups.h"

namespace sable_lanecfg {

logicRules sxd4PllLogicRules(const gt_rule_engine& engine) {
    logicRules rules;
    addSxd4SymbolRateRules(rules);
    addSxd4VcoRules(rules, engine.settings);
    addSxd4FeedbackDividerRules(rules);
    addSxd4ErrorCorrectionRules(rules);
    addSxd4OutclockRules(rules);
    addSxd4ResetMaskRules(rules);
    addUndeliveredFieldRules(rules, sxd4PllCatalogue());
    return rules;
}

void registerSxd4PllRules(gt_rule_engine& engine) {
    static const catalogue_plan plan(sxd4PllCatalogue());
    registerCatalogue(engine, plan, sxd4PllLogicRules(engine));
}

}  // namespace sable_lanecfg
