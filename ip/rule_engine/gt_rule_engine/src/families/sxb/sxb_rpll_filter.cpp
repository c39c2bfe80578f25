#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_pll_rule_groups.h"

namespace sable_lanecfg {

namespace {

/// Below this clock (GHz) the filter of a fractional RPLL is set for low noise.
constexpr double highestLowBandClock = 5.5;

unsigned int resistanceWithFraction(unsigned int feedback, double clock) {
    if (clock < highestLowBandClock) {
        return 24;
    }
    if (feedback <= 23) {
        return 42;
    }
    if (feedback <= 64) {
        return 30;
    }
    return feedback == 65 ? 8 : 27;
}

unsigned int resistanceWithoutFraction(unsigned int feedback) {
    if (feedback <= 9) {
        return 30;
    }
    return feedback <= 25 ? 22 : 9;
}

void filterResistance(rule_declaration& rule) {
    const auto fraction = rule.reads<unsigned int>("INT_RPLL_SDMDATA");
    const auto feedback = rule.reads<unsigned int>("INT_RPLL_FBDIV");
    const auto clock = rule.reads<double>("INT_RPLL_PLLCLKOUT");
    rule.gives([=] {
        return fraction() != 0 ? resistanceWithFraction(feedback(), clock())
                               : resistanceWithoutFraction(feedback());
    });
}

/// A field that is 0 without a fraction and has one value for each band with it.
ruleDeclarer byBandOfFraction(unsigned int lowBand, unsigned int highBand) {
    return [lowBand, highBand](rule_declaration& rule) {
        const auto fraction = rule.reads<unsigned int>("INT_RPLL_SDMDATA");
        const auto clock = rule.reads<double>("INT_RPLL_PLLCLKOUT");
        rule.gives([=] {
            if (fraction() == 0) {
                return 0U;
            }
            return clock() < highestLowBandClock ? lowBand : highBand;
        });
    };
}

void doublerBand(rule_declaration& rule) {
    const auto doubler = rule.reads<unsigned int>("INT_DOUBLER_EN");
    rule.gives([=] { return doubler() == 1 ? 7U : 0U; });
}

}  // namespace

void addRpllFilterRules(logicRules& rules) {
    rules.emplace("RPLL_CFG2.RPLL_IF_CTRL_RZ", filterResistance);
    rules.emplace("RPLL_CFG0.RPLL_CP2CFG", byBandOfFraction(2, 7));
    rules.emplace("CFG4.ibg_vc_50u_rpll1_ctrl", byBandOfFraction(2, 0));
    rules.emplace("RPLL_CFG0.RPLL_CP1CFG", byNumber("INT_RPLL_SDMDATA", 2, 0));
    rules.emplace("RPLL_CFG0.RPLL_CPEN", byNumber("INT_RPLL_SDMDATA", 1, 511));
    rules.emplace("RPLL_CFG2.RPLL_DOUBLER_BAND_SEL", doublerBand);
    rules.emplace("RPLL_CFG2.RPLL_DOUBLER_REG_PDB", oneAt("INT_DOUBLER_EN", 1));
    rules.emplace("RPLL_CFG1.RPLL_DOUBLER_BYPASSB", oneAt("INT_DOUBLER_EN", 1));
    rules.emplace("RPLL_LGC_CFG1.BYPASS", byNumber("INT_RPLL_SDMDATA", 0, 1));
    rules.emplace("RPLL_LGC_CFG2.REFCLK_ID", sameNumber("INT_RPLL_REFCLK_ID"));
}

}  // namespace sable_lanecfg
