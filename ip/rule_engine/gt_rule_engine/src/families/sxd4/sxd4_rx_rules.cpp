#include "families/sxd4/sxd4_rx_rules.h"

#include "families/common/rule_shapes.h"
#include "families/sxd4/sxd4_rule_groups.h"
#include "families/sxd4/sxd4_rx_catalogue.h"

namespace sable_lanecfg {

namespace {

/// PAM4 is the number 0.
void addNrzRules(logicRules& rules) {
    for (const char* const field :
         {"RX_APT_CFG21B.NRZFORM", "RX_APT_CTRL_CFG2.RX_NRZ", "RX_CDR_CFG1B.NRZMODE"}) {
        rules.emplace(field, byNumber("RX_PAM_SEL", 1, 0));
    }
}

}  // namespace

logicRules sxd4RxLogicRules() {
    logicRules rules;
    addNrzRules(rules);
    addSxd4LineCodingRules(rules, receiveSide);
    addSxd4EqualisationRules(rules);
    rules.emplace("RX_CDR_CFG0A.CDRENF", byNumber("RX_PPM_OFFSET", 1, 0));
    addUndeliveredFieldRules(rules, sxd4RxCatalogue());
    return rules;
}

void registerSxd4RxRules(gt_rule_engine& engine) {
    static const catalogue_plan plan(sxd4RxCatalogue());
    registerCatalogue(engine, plan, sxd4RxLogicRules());
}

}  // namespace sable_lanecfg
