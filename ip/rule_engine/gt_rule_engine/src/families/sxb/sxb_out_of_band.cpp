#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

/// Clock (MHz) that out-of-band signalling is sampled with.
constexpr double samplingClock = 25.0;
constexpr unsigned int idleClockDivider = 7;
constexpr unsigned int idleElectricalIdleMode = 3;

void signallingEnable(rule_declaration& rule) {
    const auto requested = rule.reads<bool>("OOB_ENABLE");
    const auto enabled = rule.writes<bool>("INT_OOB_EN");
    const auto powerDown = rule.writes("PIPE_CTRL_CFG1.OOB_PD");
    rule.body([=] {
        enabled.set(requested());
        powerDown.set(requested() ? 0U : 1U);
    });
}

void samplingClockDivider(rule_declaration& rule) {
    const auto enabled = rule.reads<bool>("INT_OOB_EN");
    const auto pll = rule.reads<std::string>("RX_PLL_TYPE");
    const auto lcpllReference = rule.reads<double>("RX_LCPLL_REFCLK_FREQUENCY");
    const auto rpllReference = rule.reads<double>("RX_RPLL_REFCLK_FREQUENCY");
    rule.gives([=] {
        if (!enabled()) {
            return idleClockDivider;
        }
        const double reference = pll() == "LCPLL" ? lcpllReference() : rpllReference();
        return truncated(reference / samplingClock - 1.0);
    });
}

}  // namespace

void addOutOfBandRules(logicRules& rules) {
    rules.emplace("PIPE_CTRL_CFG1.OOB_PD", signallingEnable);
    rules.emplace("PIPE_CTRL_CFG6.RXOOB_CLKDIV_VAL", samplingClockDivider);
    rules.emplace("PIPE_CTRL_CFG0.RX_ELECIDLE_MODE",
                  byFlag("INT_OOB_EN", 0, idleElectricalIdleMode));
}

}  // namespace sable_lanecfg
