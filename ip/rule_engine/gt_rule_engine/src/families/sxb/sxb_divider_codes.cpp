#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

constexpr code_table<double, 7> outputDividerCodes{
    {{1.0, 0}, {2.0, 1}, {4.0, 2}, {8.0, 3}, {16.0, 4}, {32.0, 5}, {2.5, 7}}};

constexpr code_table<double, 11> programmableDividerCodes{{{16.0, 64},
                                                           {32.0, 66},
                                                           {8.0, 88},
                                                           {20.0, 96},
                                                           {40.0, 98},
                                                           {10.0, 120},
                                                           {33.0, 280},
                                                           {4.0, 600},
                                                           {5.0, 632},
                                                           {16.5, 792},
                                                           {5.5, 920}}};

/// The ILO counts against a fixed divider; the lane's own only orders the rules.
void oscillatorFeedback(rule_declaration& rule) {
    constexpr unsigned int feedback = 31;
    rule.alsoDeclares("INT_RX_OUTDIV");
    rule.gives([] { return feedback; });
}

}  // namespace

void addDividerCodeRules(logicRules& rules) {
    rules.emplace("LCPLL_CFG0.LCPLL_PREDIV", referenceDividerCode("INT_LCPLL_REF_DIV"));
    rules.emplace("RPLL_CFG0.RPLL_REFDIV", referenceDividerCode("INT_RPLL_REF_DIV"));
    for (const laneSide& side : {transmitSide, receiveSide}) {
        rules.emplace(side.within("PIPE_CTRL_CFG3.", "OUT_DIV"),
                      codeOfVariable<double>(side.within("INT_", "_OUTDIV"), outputDividerCodes));
        rules.emplace(
            side.within("PIPE_CTRL_CFG8.", "PROGDIVSEL"),
            codeOfVariable<double>(side.within("INT_", "PROGDIV_SEL"), programmableDividerCodes));
    }
    rules.emplace("CHCLK_MISC_CFG.CHCLK_FBDIV_VAL", oscillatorFeedback);
}

}  // namespace sable_lanecfg
