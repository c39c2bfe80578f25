#include "sxb_stable_rule_alone.h"

#include "families/frozen/sxb_stable_rules.h"

namespace lanecfg_test {

sable_lanecfg::logicRules rulesOfSxbStable(const sable_lanecfg::gt_rule_engine& engine) {
    sable_lanecfg::logicRules rules = sable_lanecfg::sxbStableRxLogicRules();
    rules.merge(sable_lanecfg::sxbStableTxLogicRules());
    rules.merge(sable_lanecfg::sxbStablePllLogicRules(engine));
    return rules;
}

TEST_P(SxbStableRule, GivesWhatItsInputsCallFor) {
    expectCase(rulesOfSxbStable, GetParam());
}

TEST_P(SxbStableDeclaration, HasTheNamesInOrder) {
    expectDeclaration(rulesOfSxbStable, GetParam());
}

}  // namespace lanecfg_test
