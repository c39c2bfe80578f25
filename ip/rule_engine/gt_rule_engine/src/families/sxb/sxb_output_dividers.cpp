#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <cmath>
#include <string>

namespace sable_lanecfg {

namespace {

/// The one divider with a fraction; only the LCPLL has it.
constexpr double fractionalOutputDivider = 2.5;
/// Divider of a lane without a clock.
constexpr double idleOutputDivider = 1.0;

/// Divider from twice the PLL clock (GHz), both edges of which carry data, to the line rate.
double outputDivider(bool isLcpll, double pllClock, double lineRate) {
    const double ratio = 2.0 * pllClock / lineRate;
    const bool keepsFraction = isLcpll && ratio == fractionalOutputDivider;
    const double divider = keepsFraction ? ratio : std::round(ratio);
    return divider == 0.0 ? idleOutputDivider : divider;
}

void outputDividers(rule_declaration& rule) {
    const auto lcpllClock = rule.reads<double>("INT_LCPLL_PLLCLKOUT");
    const auto rpllClock = rule.reads<double>("INT_RPLL_PLLCLKOUT");
    rule.alsoDeclares("INT_LCPLLCLKOUTRATE");
    // Parameters of the rate, which are there before any rule runs.
    const auto transmitPll = rule.peeks<std::string>("TX_PLL_TYPE");
    const auto receivePll = rule.peeks<std::string>("RX_PLL_TYPE");
    const auto transmitRate = rule.peeks<double>("TX_LINE_RATE");
    const auto receiveRate = rule.peeks<double>("RX_LINE_RATE");
    const auto transmitDivider = rule.writes<double>("INT_TX_OUTDIV");
    const auto receiveDivider = rule.writes<double>("INT_RX_OUTDIV");
    rule.body([=] {
        const auto divider = [&](const std::string& pll, double lineRate) {
            const bool isLcpll = pll == "LCPLL";
            return outputDivider(isLcpll, isLcpll ? lcpllClock() : rpllClock(), lineRate);
        };
        transmitDivider.set(divider(transmitPll(), transmitRate()));
        receiveDivider.set(divider(receivePll(), receiveRate()));
    });
}

}  // namespace

void addOutputDividerRules(logicRules& rules) {
    rules.emplace(sxb_pll_step::outputDividers, outputDividers);
}

}  // namespace sable_lanecfg
