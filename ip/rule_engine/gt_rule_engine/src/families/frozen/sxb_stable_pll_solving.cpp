#include "families/frozen/sxb_stable_rule_groups.h"
#include "families/sxb/sxb_pll_dividers.h"
#include "families/sxb/sxb_solver_inputs.h"

#include <string>
#include <vector>

namespace sable_lanecfg {

namespace {

/// What the request has of the one PLL that the receiver runs on.
struct receive_pll {
    explicit receive_pll(rule_declaration& rule)
        : type(rule.reads<std::string>("RX_PLL_TYPE")),
          clock(rule.reads<double>("RX_PLL_VCO")),
          referenceClock(rule.reads<double>("RX_PLL_REFCLK_FREQUENCY")),
          powerDown(rule.reads<bool>("RX_PLL_POWERDOWN")),
          source(rule.reads<std::string>("RX_PLL_REFCLK_SOURCE")) {}

    rule_input<std::string> type;
    rule_input<double> clock;
    rule_input<double> referenceClock;
    rule_input<bool> powerDown;
    rule_input<std::string> source;
};

/// The solver's inputs for one PLL: what the receiver has of it, or an idle one.
class pll_request {
  public:
    pll_request(const receive_pll& receiver, const char* pll)
        : receiver_(receiver.type() == pll ? &receiver : nullptr) {}

    std::vector<double> clocks() const {
        return receiver_ == nullptr ? std::vector<double>() : std::vector<double>{clock()};
    }
    double clock() const { return receiver_ == nullptr ? 0.0 : receiver_->clock(); }
    double referenceClock() const {
        return receiver_ == nullptr ? 0.0 : receiver_->referenceClock();
    }
    bool powerDown() const { return receiver_ == nullptr || receiver_->powerDown(); }
    std::string source() const { return receiver_ == nullptr ? "R0" : receiver_->source(); }
    static unsigned int identifier() { return 0; }

  private:
    const receive_pll* receiver_;
};

/// First dividers that `dividersOf` finds for one of the clocks.
template <class DividersOf>
void solve(const std::vector<double>& clocks, const rule_output<unsigned int>& reference,
           const rule_output<unsigned int>& feedback, const DividersOf& dividersOf) {
    for (const double clock : clocks) {
        if (const auto found = dividersOf(clock)) {
            reference.set(found->reference);
            feedback.set(found->feedback);
            return;
        }
    }
}

}  // namespace

void stableInputSelection(rule_declaration& rule) {
    const receive_pll receiver(rule);
    const solver_inputs inputs(rule);
    const auto lcpllClock = rule.writes<double>("INT_LCPLL_PLLCLKOUT");
    const auto rpllClock = rule.writes<double>("INT_RPLL_PLLCLKOUT");
    rule.body([=] {
        const pll_request lcpll(receiver, "LCPLL");
        const pll_request rpll(receiver, "RPLL");
        inputs.set(lcpll, rpll);
        lcpllClock.set(lcpll.clock());
        rpllClock.set(rpll.clock());
    });
}

void stableLcpllSolver(rule_declaration& rule) {
    const auto clocks = rule.reads<std::vector<double>>("INT_LCPLL_PLLCLKOUT_VECTOR");
    const auto referenceClock = rule.reads<double>("INT_LCPLL_REFCLKFREQ");
    // No candidate is left out for PCIe, but the rule waits for what the current one waits for.
    rule.alsoDeclares("PCIE_ENABLE");
    const auto reference = rule.writes("INT_LCPLL_REF_DIV");
    const auto feedback = rule.writes("INT_LCPLL_FBDIV");
    rule.body([=] {
        solve(clocks(), reference, feedback, [&](double clock) {
            return wholeLcpllDividers(lcpll_candidate(clock), referenceClock());
        });
    });
}

void stableRpllSolver(rule_declaration& rule) {
    const rpll_use use(rule);
    const auto clocks = rule.reads<std::vector<double>>("INT_RPLL_PLLCLKOUT_VECTOR");
    const auto referenceClock = rule.reads<double>("INT_RPLL_REFCLKFREQ");
    // No rule writes it, since this PLL has no half rate.
    rule.alsoDeclares("INT_RPLLCLKOUTRATE");
    const auto reference = rule.writes("INT_RPLL_REF_DIV");
    const auto feedback = rule.writes("INT_RPLL_FBDIV");
    rule.body([=] {
        const bool servesData = use.servesSerialData();
        solve(clocks(), reference, feedback, [&](double clock) {
            const double ratio = clocking::megahertzPerGigahertz * clock / referenceClock();
            return wholeRpllDividers(ratio, servesData);
        });
    });
}

}  // namespace sable_lanecfg
