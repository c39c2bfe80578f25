#include "families/common/outclock_control.h"
#include "families/common/rule_arithmetic.h"
#include "families/sxd4/sxd4_rule_groups.h"

#include <string>
#include <string_view>

namespace sable_lanecfg {

namespace {

using outclockCodes = code_table<std::string_view, 5>;

/// The source stands in a register and at a port of the channel.
ruleDeclarer outclockSelect(const laneSide& side, const std::string& field,
                            const outclockCodes& codes) {
    return [side, field, codes](rule_declaration& rule) {
        const auto source = rule.reads<std::string>(side.parameter("OUTCLK_SOURCE"));
        const auto registered = rule.writes(field);
        const auto port = rule.writes(side.within("", "OUTCLKSEL"));
        rule.body([=] {
            const unsigned int code = codeOf(codes, source());
            registered.set(code);
            port.set(code);
        });
    };
}

}  // namespace

void addSxd4OutclockRules(logicRules& rules) {
    const auto add = [&rules](const laneSide& side, const std::string& field,
                              const outclockCodes& codes) {
        rules.emplace(field, outclockSelect(side, field, codes));
    };
    add(transmitSide, "A_CH_CFG4.A_TXOUTCLKSEL", transmitClockControlCodes);
    add(receiveSide, "A_CH_CFG6.A_RXOUTCLKSEL", receiveClockControlCodes);
}

}  // namespace sable_lanecfg
