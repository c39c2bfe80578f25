#include "clocking_domains.h"
#include "families/common/rule_arithmetic.h"
#include "families/sxb/sxb_pll_catalogue.h"
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
        : serialAtRate0_(rule.reads<bool>("RPLL_USED_FOR_SERIAL_DATA_RATE0")),
          transmitInUse_(rule.reads<bool>("TX_IN_USE")),
          receiveInUse_(rule.reads<bool>("RX_IN_USE")),
          clocks_(rule.reads<std::vector<double>>("INT_RPLL_PLLCLKOUT_VECTOR")),
          referenceClock_(rule.reads<double>("INT_RPLL_REFCLKFREQ")),
          transmitPll_(rule.peeks<std::string>("TX_PLL_TYPE")),
          receivePll_(rule.peeks<std::string>("RX_PLL_TYPE")),
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
    bool servesSerialData() const {
        return (transmitPll_() == "RPLL" && transmitInUse_()) ||
               (receivePll_() == "RPLL" && receiveInUse_()) || serialAtRate0_();
    }

    /// Result of this and of `solveWithFraction`: whether the clock found needs the doubler.
    bool solve() const {
        if (servesSerialData()) {
            // Only these dividers keep the clock clean enough, and no fraction does.
            solveWithoutFraction(clocking::rpll::feedbackDividers);
            return false;
        }
        return !solveWithoutFraction(clocking::rpll::freeFeedbackDividers) && solveWithFraction();
    }

    template <class Dividers>
    bool solveWithoutFraction(const Dividers& dividers) const {
        for (const double clock : clocks_()) {
            const double ratio = clocking::megahertzPerGigahertz * clock / referenceClock_();
            if (takeDividers(clock, ratio, dividers)) {
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
            if (takeDividers(clock, whole, clocking::rpll::freeFeedbackDividers)) {
                return ratio.isDoubled;
            }
        }
        return false;
    }

    template <class Dividers>
    bool takeDividers(double clock, double ratio, const Dividers& dividers) const {
        for (const int divider : clocking::rpll::preDividers) {
            for (const int feedback : dividers) {
                if (clocking::agree(feedback, divider * ratio)) {
                    referenceDivider_.set(static_cast<unsigned int>(divider));
                    feedbackDivider_.set(static_cast<unsigned int>(feedback));
                    clock_.set(clock);
                    return true;
                }
            }
        }
        return false;
    }

    rule_input<bool> serialAtRate0_;
    rule_input<bool> transmitInUse_;
    rule_input<bool> receiveInUse_;
    rule_input<std::vector<double>> clocks_;
    rule_input<double> referenceClock_;
    // Parameters of the rate, which are there before any rule runs.
    rule_peek<std::string> transmitPll_;
    rule_peek<std::string> receivePll_;
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
