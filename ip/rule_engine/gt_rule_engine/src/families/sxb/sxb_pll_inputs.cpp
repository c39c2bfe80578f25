#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_pll_rule_groups.h"
#include "families/sxb/sxb_solver_inputs.h"

#include <string>
#include <vector>

namespace sable_lanecfg {

namespace {

/// What one direction says about one PLL.
struct pll_description {
    pll_description(rule_declaration& rule, const laneSide& side, const std::string& pll)
        : clocks(rule.reads<std::vector<double>>(side.parameter(pll + "_PLLCLKOUT_FREQ_VECTOR"))),
          referenceClock(rule.reads<double>(side.parameter(pll + "_REFCLK_FREQUENCY"))),
          powerDown(rule.reads<bool>(side.parameter(pll + "_POWERDOWN"))),
          source(rule.reads<std::string>(side.parameter(pll + "_REFCLK_SOURCE"))),
          identifier(rule.reads<unsigned int>(side.parameter(pll + "_REFCLK_ID"))) {}

    rule_input<std::vector<double>> clocks;
    rule_input<double> referenceClock;
    rule_input<bool> powerDown;
    rule_input<std::string> source;
    rule_input<unsigned int> identifier;
};

/// Whether the transmit side drives a PLL, for its serial clock or its programmable divider.
class transmit_use {
  public:
    explicit transmit_use(rule_declaration& rule)
        : inUse_(rule.reads<bool>("TX_IN_USE")),
          pllType_(rule.reads<std::string>("TX_PLL_TYPE")),
          // The divider follows from the same packing as the type, so it orders nothing.
          dividerEnabled_(rule.peeks<bool>("TXPROGDIV_FREQ_ENABLE")),
          dividerSource_(rule.peeks<std::string>("TXPROGDIV_FREQ_SOURCE")) {}

    bool of(const std::string& pll) const {
        return inUse_() && (pllType_() == pll || (dividerEnabled_() && dividerSource_() == pll));
    }

  private:
    rule_input<bool> inUse_;
    rule_input<std::string> pllType_;
    rule_peek<bool> dividerEnabled_;
    rule_peek<std::string> dividerSource_;
};

void inputSelection(rule_declaration& rule) {
    const transmit_use transmitUses(rule);
    const pll_description transmitLcpll(rule, transmitSide, "LCPLL");
    const pll_description receiveLcpll(rule, receiveSide, "LCPLL");
    const pll_description transmitRpll(rule, transmitSide, "RPLL");
    const pll_description receiveRpll(rule, receiveSide, "RPLL");
    rule.alsoDeclares("RX_IN_USE");
    rule.alsoDeclares("RX_PLL_TYPE");
    rule.alsoDeclares("MULTI_RATE");
    const solver_inputs inputs(rule);
    rule.body([=] {
        const pll_description& lcpll = transmitUses.of("LCPLL") ? transmitLcpll : receiveLcpll;
        const pll_description& rpll = transmitUses.of("RPLL") ? transmitRpll : receiveRpll;
        inputs.set(lcpll, rpll);
    });
}

}  // namespace

void addPllInputRules(logicRules& rules) {
    rules.emplace(sxb_pll_step::inputSelection, inputSelection);
}

}  // namespace sable_lanecfg
