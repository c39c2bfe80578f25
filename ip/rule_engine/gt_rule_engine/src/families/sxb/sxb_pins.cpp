#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

/// Power down of a direction that nobody uses.
constexpr unsigned int deepestPowerDown = 3;

/// A field that is 1 where `condition(xpu, pcie)` holds for the two modes.
template <class Condition>
ruleDeclarer whenModes(const Condition& condition) {
    return [condition](rule_declaration& rule) {
        const auto xpuMode = rule.reads<float>("XPU_MODE");
        const auto pcie = rule.reads<bool>("PCIE_ENABLE");
        rule.gives([=] { return condition(xpuMode() != 0.0F, pcie()) ? 1U : 0U; });
    };
}

void pinsWithoutXpu(rule_declaration& rule) {
    const auto xpuMode = rule.reads<float>("XPU_MODE");
    rule.gives([=] { return xpuMode() == 0.0F ? 1U : 0U; });
}

}  // namespace

ruleDeclarer lowPowerEqualiser(const std::string& modeName) {
    return [modeName](rule_declaration& rule) {
        const auto mode = rule.reads<std::string>(modeName);
        rule.gives([=] { return mode() == "DFE" ? 0U : 1U; });
    };
}

void addPinRules(logicRules& rules) {
    const auto either = [](bool xpu, bool pcie) { return xpu || pcie; };
    const auto xpuAlone = [](bool xpu, bool pcie) { return xpu && !pcie; };
    const auto notXpuAlone = [](bool xpu, bool pcie) { return pcie || !xpu; };
    const auto notPcieAlone = [](bool xpu, bool pcie) { return !(pcie && !xpu); };
    rules.emplace("FABRIC_INTF_CFG0.PERSTB_PIN_EN", whenModes(either));
    rules.emplace("PIPE_CTRL_CFG1.PIPE_FUND_RST_EN", whenModes(either));
    rules.emplace("FABRIC_INTF_CFG0.USRRDY_PIN_EN", whenModes(notXpuAlone));
    rules.emplace("FABRIC_INTF_CFG2.A_TXUSRRDY", whenModes(xpuAlone));
    rules.emplace("FABRIC_INTF_CFG2.A_RXUSRRDY", whenModes(xpuAlone));
    rules.emplace("PIPE_CTRL_CFG3.PIPE_FUND_RST_UB_BYPASS", whenModes(xpuAlone));
    rules.emplace("PIN_CFG0.UCORE_FABRIC_PIN_EN", whenModes(notPcieAlone));
    rules.emplace("PIN_CFG0.GTREFCLK0_PD_PIN_EN", pinsWithoutXpu);
    rules.emplace("PIN_CFG0.GTREFCLK1_PD_PIN_EN", pinsWithoutXpu);
    rules.emplace("FABRIC_INTF_CFG0.APT_PIN_EN", byFlag("PCIE_ENABLE", 0, 1));
    rules.emplace("FABRIC_INTF_CFG1.A_RXPD", byFlag("RX_IN_USE", 0, deepestPowerDown));
    rules.emplace("FABRIC_INTF_CFG3.A_TXPD", byFlag("TX_IN_USE", 0, deepestPowerDown));
    rules.emplace("FABRIC_INTF_CFG1.A_RXLPMEN", lowPowerEqualiser("INT_RX_EQ_MODE"));
}

}  // namespace sable_lanecfg
