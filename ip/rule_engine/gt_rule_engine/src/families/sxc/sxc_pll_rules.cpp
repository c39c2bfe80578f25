#include "families/sxb/sxb_lane_alignment.h"
#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_pll_rule_groups.h"
#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rule_groups.h"
#include "families/sxc/sxc_catalogue.h"
#include "families/sxc/sxc_rules.h"

#include <string>

namespace sable_lanecfg {

namespace {

/// A transmitter whose interpolator is passed by needs no ILO.
ruleDeclarer oscillatorReset(unsigned int lane) {
    return [lane](rule_declaration& rule) {
        const auto laneNumber = rule.reads<unsigned int>("LaneNum");
        const auto bypass = rule.reads<unsigned int>("CHCLK_TXPI_CFG0.TXPI_BYPASS");
        rule.gives([=] { return laneNumber() == lane && bypass() != 1 ? 1U : 0U; });
    };
}

void changeResetEnables(logicRules& rules) {
    for (unsigned int lane = 0; lane < channelsOfQuad; ++lane) {
        const std::string channel = "MST_RESET_CFG.CH" + std::to_string(lane);
        addRule(rules, channel + "_ILO_RESET_EN", oscillatorReset(lane));
        replaceRule(rules, channel + "_RX_LCPLL_RESET_EN", pllReset(lane, receiveSide, "LCPLL"));
    }
}

}  // namespace

logicRules sxcPllLogicRules(const gt_rule_engine& engine) {
    logicRules rules = sxbPllLogicRules(engine);
    removeRulesWithoutPlace(rules, sxbPllCatalogue(), sxcPllCatalogue());
    for (const laneSide& side : {transmitSide, receiveSide}) {
        addRule(rules, side.within("RESET_CFG.", "_PLLLOCK_SEL"),
                zeroForWord(side.parameter("PLL_TYPE"), "LCPLL"));
    }
    addRule(rules, "CHL_RSV_CFG2.EB128B130B_64_EN", enableFor128b130b(64));
    replaceRule(rules, "PIPE_CTRL_CFG7.TX_DA_BYP", delayAlignerBypass(transmitSide));
    changeResetEnables(rules);
    return rules;
}

void registerSxcPllRules(gt_rule_engine& engine) {
    enterSxbPllStartValues(engine);
    static const catalogue_plan plan(sxcPllCatalogue());
    registerCatalogue(engine, plan, sxcPllLogicRules(engine));
}

}  // namespace sable_lanecfg
