#include "families/sxd4/sxd4_pll_catalogue.h"
#include "families/sxd4/sxd4_rule_groups.h"

namespace sable_lanecfg {

namespace {

/// A PAM4 symbol carries two bits. GHz.
ruleDeclarer symbolRate(const laneSide& side) {
    return [side](rule_declaration& rule) {
        const auto pamSelection = rule.reads<unsigned int>(side.parameter("PAM_SEL"));
        const auto lineRate = rule.reads<double>(side.parameter("LINE_RATE"));
        const auto rate = rule.writes<double>(side.within("INT_", "_BAUD_RATE"));
        rule.body([=] { rate.set(pamSelection() == 0 ? 0.5 * lineRate() : lineRate()); });
    };
}

}  // namespace

void addSxd4SymbolRateRules(logicRules& rules) {
    rules.emplace(sxd4_pll_step::transmitSymbolRate, symbolRate(transmitSide));
    rules.emplace(sxd4_pll_step::receiveSymbolRate, symbolRate(receiveSide));
}

}  // namespace sable_lanecfg
