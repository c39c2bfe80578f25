#include "families/common/rule_arithmetic.h"
#include "families/sxb/sxb_pll_candidates.h"
#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <cmath>
#include <numeric>
#include <string>
#include <vector>

namespace sable_lanecfg {

namespace {

constexpr unsigned int lowestFeedbackDivider = 5;
constexpr unsigned int highestFeedbackDivider = 125;
/// Reference clocks (MHz) above this can't be doubled.
constexpr double highestDoubledReference = 400.0;
/// Feedback ratio that has to remain when the reference clock is doubled.
constexpr double lowestDoubledRatio = 8.0;

const std::vector<unsigned int>& freeFeedbackDividers() {
    static const std::vector<unsigned int> dividers = [] {
        std::vector<unsigned int> all(highestFeedbackDivider - lowestFeedbackDivider + 1);
        std::iota(all.begin(), all.end(), lowestFeedbackDivider);
        return all;
    }();
    return dividers;
}

/// Those that keep the clock clean enough for serial data.
const std::vector<unsigned int>& serialFeedbackDividers() {
    static const std::vector<unsigned int> dividers{5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
                                                    16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 80};
    return dividers;
}

/// Feedback ratio of a clock with a fraction.
struct rpll_ratio {
    double value;
    bool isDoubled;  ///< the reference clock is doubled in front of the PLL
};

rpll_ratio fractionalRatio(double clock, double referenceClock) {
    const double ratio = megahertzPerGigahertz * clock / referenceClock;
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
        const bool isSerial = servesSerialData();
        const auto& dividers = isSerial ? serialFeedbackDividers() : freeFeedbackDividers();
        const bool isDoubled = !solveWithoutFraction(dividers) && !isSerial && solveWithFraction();
        doubler_.set(isDoubled ? 1U : 0U);
    }

  private:
    bool servesSerialData() const {
        return (transmitPll_() == "RPLL" && transmitInUse_()) ||
               (receivePll_() == "RPLL" && receiveInUse_()) || serialAtRate0_();
    }

    bool solveWithoutFraction(const std::vector<unsigned int>& dividers) const {
        for (const double clock : clocks_()) {
            const double ratio = megahertzPerGigahertz * clock / referenceClock_();
            if (takeDividers(clock, ratio, dividers)) {
                return true;
            }
        }
        return false;
    }

    /// Result: whether the clock found needs the doubler.
    bool solveWithFraction() const {
        for (const double clock : clocks_()) {
            const rpll_ratio ratio = fractionalRatio(clock, referenceClock_());
            const double whole = std::floor(ratio.value);
            // Stays in place also when the clock is not taken.
            fraction_.set(truncated((ratio.value - whole) * fractionScale));
            if (takeDividers(clock, whole, freeFeedbackDividers())) {
                return ratio.isDoubled;
            }
        }
        return false;
    }

    bool takeDividers(double clock, double ratio, const std::vector<unsigned int>& dividers) const {
        for (const unsigned int divider : referenceDividers) {
            for (const unsigned int feedback : dividers) {
                if (agree(feedback, divider * ratio)) {
                    referenceDivider_.set(divider);
                    feedbackDivider_.set(feedback);
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
