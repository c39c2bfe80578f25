#include "families/common/rule_arithmetic.h"
#include "families/common/rule_shapes.h"
#include "families/sxd4/sxd4_pll_catalogue.h"
#include "families/sxd4/sxd4_rule_groups.h"
#include "families/sxd4/sxd4_vco_candidates.h"

#include <cmath>
#include <string>
#include <string_view>
#include <vector>

namespace sable_lanecfg {

namespace {

/// Finds the one PLL clock with which everything that the channel uses can run.
class vco_solver {
  public:
    vco_solver(rule_declaration& rule, const deviceSettings& settings)
        : symbolRate_(read<double>(rule, "INT_", "_BAUD_RATE")),
          dividerEnable_(read<bool>(rule, "", "PROGDIV_FREQ_ENABLE")),
          dividerClock_(read<double>(rule, "", "PROGDIV_FREQ_VAL")),
          reference_(read<double>(rule, "", "_REFCLK_FREQUENCY")),
          enable_(read<bool>(rule, "", "_ENABLE")),
          pamSelection_(read<unsigned int>(rule, "", "_PAM_SEL")),
          clock_(rule.writes<double>("INT_PLL_VCO")),
          clockReference_(rule.writes<double>("INT_PLL_REFCLK_FREQUENCY")),
          settings_(&settings) {}

    void operator()() const {
        const std::vector<double> common = commonCandidates(candidatesOfUses());
        clock_.set(common.empty() ? 0.0 : common.front());
        clockReference_.set(enable_.transmit() ? reference_.transmit() : reference_.receive());
    }

  private:
    /// The same variable of both directions.
    template <class T>
    struct both {
        rule_input<T> transmit;
        rule_input<T> receive;

        const rule_input<T>& of(bool ofTransmitter) const {
            return ofTransmitter ? transmit : receive;
        }
    };

    template <class T>
    static both<T> read(rule_declaration& rule, std::string_view before, std::string_view after) {
        return {rule.reads<T>(transmitSide.within(before, after)),
                rule.reads<T>(receiveSide.within(before, after))};
    }

    std::vector<std::vector<double>> candidatesOfUses() const {
        std::vector<std::vector<double>> uses;
        const sxd4_vco_candidates candidates(*settings_);
        for (const bool ofTransmitter : {true, false}) {
            if (enable_.of(ofTransmitter)()) {
                uses.push_back(candidates.ofSymbolRate(symbolRate_.of(ofTransmitter)()));
            }
            if (dividerEnable_.of(ofTransmitter)()) {
                uses.push_back(candidates.ofOutputClock(dividerClock_.of(ofTransmitter)(),
                                                        pamSelection_.of(ofTransmitter)(),
                                                        symbolRate_.of(ofTransmitter)()));
            }
        }
        return uses;
    }

    both<double> symbolRate_;
    both<bool> dividerEnable_;
    both<double> dividerClock_;
    both<double> reference_;
    both<bool> enable_;
    both<unsigned int> pamSelection_;
    rule_output<double> clock_;
    rule_output<double> clockReference_;
    const deviceSettings* settings_;
};

/// Below its range the oscillator runs at twice the PLL clock.
ruleDeclarer clockRate(const deviceSettings& settings) {
    return [&settings](rule_declaration& rule) {
        const auto solved = rule.reads<double>("INT_PLL_VCO");
        const auto solvedReference = rule.reads<double>("INT_PLL_REFCLK_FREQUENCY");
        const auto clock = rule.writes<double>("INT_LCPLL_PLLCLKOUT");
        const auto reference = rule.writes<double>("INT_LCPLL_REFCLKFREQ");
        const auto rate = rule.writes<std::string>("INT_LCPLLCLKOUTRATE");
        rule.body([=, held = &settings] {
            const double lowest = deviceLimit(*held, "FLCPLLRANGE_MIN");
            clock.set(solved());
            reference.set(solvedReference());
            rate.set(solved() >= lowest - vcoLimitSlack ? "FULL" : "HALF");
        });
    };
}

void outputDividers(rule_declaration& rule) {
    const auto clock = rule.reads<double>("INT_LCPLL_PLLCLKOUT");
    const auto transmitRate = rule.reads<double>("INT_TX_BAUD_RATE");
    const auto receiveRate = rule.reads<double>("INT_RX_BAUD_RATE");
    const auto transmits = rule.reads<bool>("TX_ENABLE");
    const auto receives = rule.reads<bool>("RX_ENABLE");
    const auto transmitDivider = rule.writes("INT_TX_OUTDIV");
    const auto receiveDivider = rule.writes("INT_RX_OUTDIV");
    rule.body([=] {
        // Both edges of the clock carry symbols.
        const auto divider = [&clock](bool isUsed, const rule_input<double>& symbolRate) {
            return isUsed ? truncated(std::round(2.0 * clock() / symbolRate())) : 1U;
        };
        transmitDivider.set(divider(transmits(), transmitRate));
        receiveDivider.set(divider(receives(), receiveRate));
    });
}

}  // namespace

void addSxd4VcoRules(logicRules& rules, const deviceSettings& settings) {
    rules.emplace(sxd4_pll_step::vcoSolver,
                  [&settings](rule_declaration& rule) { rule.body(vco_solver(rule, settings)); });
    rules.emplace(sxd4_pll_step::clockRate, clockRate(settings));
    rules.emplace(sxd4_pll_step::outputDividers, outputDividers);
    rules.emplace("PLL_CFG0.LCPLLCLKOUT_RATE", oneForWord("INT_LCPLLCLKOUTRATE", "FULL"));
}

}  // namespace sable_lanecfg
