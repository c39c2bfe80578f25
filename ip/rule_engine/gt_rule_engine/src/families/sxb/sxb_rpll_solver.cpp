#include "clocking_domains.h"
#include "families/common/rule_arithmetic.h"
#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_pll_dividers.h"
#include "families/sxb/sxb_pll_rule_groups.h"
#include "user_clock.h"

#include <cmath>
#include <string>
#include <vector>

namespace sable_lanecfg {

namespace {

/// Reference clocks (MHz) above this can't be doubled.
constexpr double highestDoubledReference = 400.0;
/// Feedback ratio that has to remain when the reference clock is doubled.
constexpr double lowestDoubledRatio = 8.0;

/// Feedback ratio of a clock with a fraction.
struct rpll_ratio {
    double value;
    bool isDoubled;  ///< the reference clock is doubled in front of the PLL
};

rpll_ratio fractionalRatio(double clock, double referenceClock) {
    const double ratio = clocking::megahertzPerGigahertz * clock / referenceClock;
    const double halved = 0.5 * ratio;
    const bool isDoubled =
        referenceClock <= highestDoubledReference && halved >= lowestDoubledRatio;
    return {isDoubled ? halved : ratio, isDoubled};
}

/// Finds the dividers of the RPLL. Without a solution they stay those of the pass before.
class rpll_solver {
  public:
    explicit rpll_solver(rule_declaration& rule)
        : use_(rule),
          clocks_(rule.reads<std::vector<double>>("INT_RPLL_PLLCLKOUT_VECTOR")),
          referenceClock_(rule.reads<double>("INT_RPLL_REFCLKFREQ")),
          referenceDivider_(rule.writes("INT_RPLL_REF_DIV")),
          feedbackDivider_(rule.writes("INT_RPLL_FBDIV")),
          clock_(rule.writes<double>("INT_RPLL_PLLCLKOUT")),
          fraction_(rule.writes("INT_RPLL_SDMDATA")),
          doubler_(rule.writes("INT_DOUBLER_EN")) {
        // No rule writes it, since this PLL has no half rate.
        rule.alsoDeclares("INT_RPLLCLKOUTRATE");
    }

    void operator()() const {
        fraction_.set(0);
        doubler_.set(solve() ? 1U : 0U);
    }

  private:
    /// Result of this and of `solveWithFraction`: whether the clock found needs the doubler.
    bool solve() const {
        const bool servesData = use_.servesSerialData();
        // No fraction keeps the clock of data clean enough.
        return !solveWithoutFraction(servesData) && !servesData && solveWithFraction();
    }

    bool solveWithoutFraction(bool servesData) const {
        for (const double clock : clocks_()) {
            const double ratio = clocking::megahertzPerGigahertz * clock / referenceClock_();
            if (takeDividers(clock, ratio, servesData)) {
                return true;
            }
        }
        return false;
    }

    bool solveWithFraction() const {
        for (const double clock : clocks_()) {
            const rpll_ratio ratio = fractionalRatio(clock, referenceClock_());
            const double whole = std::floor(ratio.value);
            // Stays in place also when the clock is not taken.
            fraction_.set(truncated((ratio.value - whole) * clocking::fractionScale));
            if (takeDividers(clock, whole, false)) {
                return ratio.isDoubled;
            }
        }
        return false;
    }

    bool takeDividers(double clock, double ratio, bool servesData) const {
        const auto found = wholeRpllDividers(ratio, servesData);
        if (found) {
            referenceDivider_.set(found->reference);
            feedbackDivider_.set(found->feedback);
            clock_.set(clock);
        }
        return found.has_value();
    }

    rpll_use use_;
    rule_input<std::vector<double>> clocks_;
    rule_input<double> referenceClock_;
    rule_output<unsigned int> referenceDivider_;
    rule_output<unsigned int> feedbackDivider_;
    rule_output<double> clock_;
    rule_output<unsigned int> fraction_;
    rule_output<unsigned int> doubler_;
};

}  // namespace

void addRpllSolverRules(logicRules& rules) {
    rules.emplace(sxb_pll_step::rpllSolver,
                  [](rule_declaration& rule) { rule.body(rpll_solver(rule)); });
}

}  // namespace sable_lanecfg
