#include "families/frozen/sxb_stable_rule_groups.h"
#include "families/sxb/sxb_pll_dividers.h"

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

/// The solver's inputs for one PLL.
struct pll_request {
    std::vector<double> clocks = {};
    double clock = 0.0;
    double referenceClock = 0.0;
    bool powerDown = true;
    std::string source = "R0";
};

pll_request requestOf(const receive_pll& receiver, const char* pll) {
    if (receiver.type() != pll) {
        return {};
    }
    return {{receiver.clock()},
            receiver.clock(),
            receiver.referenceClock(),
            receiver.powerDown(),
            receiver.source()};
}

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
    const auto lcpllClocks = rule.writes<std::vector<double>>("INT_LCPLL_PLLCLKOUT_VECTOR");
    const auto rpllClocks = rule.writes<std::vector<double>>("INT_RPLL_PLLCLKOUT_VECTOR");
    const auto rpllReferenceClock = rule.writes<double>("INT_RPLL_REFCLKFREQ");
    const auto lcpllReferenceClock = rule.writes<double>("INT_LCPLL_REFCLKFREQ");
    const auto rpllPowerDown = rule.writes<bool>("INT_RPLL_POWERDOWN");
    const auto lcpllPowerDown = rule.writes<bool>("INT_LCPLL_POWERDOWN");
    const auto lcpllSource = rule.writes<std::string>("INT_LCPLL_REFCLK_SOURCE");
    const auto rpllSource = rule.writes<std::string>("INT_RPLL_REFCLK_SOURCE");
    const auto lcpllIdentifier = rule.writes("INT_LCPLL_REFCLK_ID");
    const auto rpllIdentifier = rule.writes("INT_RPLL_REFCLK_ID");
    const auto lcpllClock = rule.writes<double>("INT_LCPLL_PLLCLKOUT");
    const auto rpllClock = rule.writes<double>("INT_RPLL_PLLCLKOUT");
    rule.body([=] {
        const pll_request lcpll = requestOf(receiver, "LCPLL");
        const pll_request rpll = requestOf(receiver, "RPLL");
        lcpllClocks.set(lcpll.clocks);
        rpllClocks.set(rpll.clocks);
        rpllReferenceClock.set(rpll.referenceClock);
        lcpllReferenceClock.set(lcpll.referenceClock);
        rpllPowerDown.set(rpll.powerDown);
        lcpllPowerDown.set(lcpll.powerDown);
        lcpllSource.set(lcpll.source);
        rpllSource.set(rpll.source);
        lcpllIdentifier.set(0);
        rpllIdentifier.set(0);
        lcpllClock.set(lcpll.clock);
        rpllClock.set(rpll.clock);
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
