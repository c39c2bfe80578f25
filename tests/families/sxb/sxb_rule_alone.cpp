#include "sxb_rule_alone.h"

#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_rules.h"

namespace lanecfg_test {

sable_lanecfg::logicRules rulesOfSxb(const sable_lanecfg::gt_rule_engine& engine) {
    sable_lanecfg::logicRules rules = sable_lanecfg::sxbRxLogicRules();
    rules.merge(sable_lanecfg::sxbTxLogicRules());
    rules.merge(sable_lanecfg::sxbPllLogicRules(engine));
    return rules;
}

TEST_P(SxbLaneRule, GivesWhatItsInputsCallFor) {
    expectCase(rulesOfSxb, GetParam());
}

TEST_P(SxbLaneDeclaration, HasTheNamesInOrder) {
    expectDeclaration(rulesOfSxb, GetParam());
}

}  // namespace lanecfg_test
