#include "families/sxb/sxb_silicon.h"
#include "families/sxb/sxb_tx_rule_groups.h"

namespace sable_lanecfg {

namespace {

/// 1 for the margins of the first two PCIe rates, 2 for presets, 0 without PCIe.
void driveMode(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto rate = rule.reads<double>("TX_LINE_RATE");
    rule.gives([=] {
        if (!pcie()) {
            return 0U;
        }
        return rate() == 2.5 || rate() == 5.0 ? 1U : 2U;
    });
}

}  // namespace

void addTxDriverRules(logicRules& rules) {
    rules["PIPE_TX_EQ_CFG0.TX_DRIVE_MODE"] = driveMode;
    rules["PIPE_TX_EQ_CFG3.TX_DEEMPH_0"] = bySilicon(9, 18);
    rules["PIPE_TX_EQ_CFG3.TX_DEEMPH_1"] = bySilicon(6, 12);
    rules["TX_DRV_CFG0.TX_CTL_DRV_EN"] = bySilicon(0, 4);
}

}  // namespace sable_lanecfg
