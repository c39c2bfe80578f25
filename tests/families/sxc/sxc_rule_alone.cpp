#include "sxc_rule_alone.h"

#include "families/sxc/sxc_rules.h"

namespace lanecfg_test {

sable_lanecfg::logicRules rulesOfSxc(const sable_lanecfg::gt_rule_engine& engine) {
    sable_lanecfg::logicRules rules = sable_lanecfg::sxcRxLogicRules();
    rules.merge(sable_lanecfg::sxcTxLogicRules());
    rules.merge(sable_lanecfg::sxcPllLogicRules(engine));
    return rules;
}

VariableValues pcieReceiver(double lineRate, unsigned int internalWidth) {
    return {
        {"PCIE_ENABLE", true}, {"RX_LINE_RATE", lineRate}, {"RX_INT_DATA_WIDTH", internalWidth}};
}

TEST_P(SxcRule, GivesWhatItsInputsCallFor) {
    expectCase(rulesOfSxc, GetParam());
}

TEST_P(SxcDeclaration, HasTheNamesInOrder) {
    expectDeclaration(rulesOfSxc, GetParam());
}

}  // namespace lanecfg_test
