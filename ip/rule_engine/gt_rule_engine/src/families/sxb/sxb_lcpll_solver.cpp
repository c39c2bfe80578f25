#include "clocking_domains.h"
#include "database/device_limit.h"
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

/// Line rate (Gb/s) at which PCIe leaves out the first candidate.
constexpr double pcieThirdGeneration = 8.0;
/// Slack of the oscillator's limits (GHz).
constexpr double limitSlack = 0.000000001;

/// Finds the dividers of the LCPLL. Without a solution they stay those of the pass before.
class lcpll_solver {
  public:
    lcpll_solver(rule_declaration& rule, const deviceSettings& settings)
        : clocks_(rule.reads<std::vector<double>>("INT_LCPLL_PLLCLKOUT_VECTOR")),
          referenceClock_(rule.reads<double>("INT_LCPLL_REFCLKFREQ")),
          pcie_(rule.reads<bool>("PCIE_ENABLE")),
          // A parameter of the rate, which is there before any rule runs.
          transmitRate_(rule.peeks<double>("TX_LINE_RATE")),
          referenceDivider_(rule.writes("INT_LCPLL_REF_DIV")),
          feedbackDivider_(rule.writes("INT_LCPLL_FBDIV")),
          clockRate_(rule.writes<std::string>("INT_LCPLLCLKOUTRATE")),
          clock_(rule.writes<double>("INT_LCPLL_PLLCLKOUT")),
          fraction_(rule.writes("INT_LCPLL_SDMDATA")),
          settings_(&settings) {}

    void operator()() const {
        const std::vector<double> clocks = candidateClocks();
        fraction_.set(0);
        if (!solveWithoutFraction(clocks)) {
            solveWithFraction(clocks);
        }
    }

  private:
    std::vector<double> candidateClocks() const {
        std::vector<double> clocks = clocks_();
        if (pcie_() && transmitRate_() == pcieThirdGeneration && !clocks.empty()) {
            clocks.erase(clocks.begin());
        }
        return clocks;
    }

    /// Every clock tried leaves its mark, also one that is not taken.
    lcpll_candidate tried(double clock) const {
        const lcpll_candidate candidate(clock);
        clockRate_.set(candidate.isFullRate ? "FULL" : "HALF");
        return candidate;
    }

    bool solveWithoutFraction(const std::vector<double>& clocks) const {
        for (const double clock : clocks) {
            const lcpll_candidate candidate = tried(clock);
            if (const auto found = wholeLcpllDividers(candidate, referenceClock_())) {
                take(candidate, *found);
                return true;
            }
        }
        return false;
    }

    void solveWithFraction(const std::vector<double>& clocks) const {
        for (const double clock : clocks) {
            const lcpll_candidate candidate = tried(clock);
            if (isWithinLimits(candidate) && solveWithFraction(candidate)) {
                return;
            }
        }
    }

    bool solveWithFraction(const lcpll_candidate& candidate) const {
        for (const int divider : clocking::lcpll::preDividers) {
            const double ratio = candidate.megahertz() / (referenceClock_() / divider);
            const double whole = std::floor(ratio);
            // Stays in place also when the divider is not taken.
            fraction_.set(truncated((ratio - whole) * clocking::fractionScale));
            if (const auto feedback = feedbackFor(clocking::fractionalFeedbackDividers, whole)) {
                take(candidate, {static_cast<unsigned int>(divider), *feedback});
                return true;
            }
        }
        return false;
    }

    bool isWithinLimits(const lcpll_candidate& candidate) const {
        const double lowest = deviceLimit(*settings_, "FLCPLLRANGE_MIN");
        const double highest = deviceLimit(*settings_, "FLCPLLRANGE_MAX");
        return lowest - limitSlack <= candidate.oscillator &&
               candidate.oscillator <= highest + limitSlack;
    }

    void take(const lcpll_candidate& candidate, const pll_dividers& dividers) const {
        referenceDivider_.set(dividers.reference);
        feedbackDivider_.set(dividers.feedback);
        clock_.set(candidate.clock);
    }

    rule_input<std::vector<double>> clocks_;
    rule_input<double> referenceClock_;
    rule_input<bool> pcie_;
    rule_peek<double> transmitRate_;
    rule_output<unsigned int> referenceDivider_;
    rule_output<unsigned int> feedbackDivider_;
    rule_output<std::string> clockRate_;
    rule_output<double> clock_;
    rule_output<unsigned int> fraction_;
    const deviceSettings* settings_;
};

}  // namespace

void addLcpllSolverRules(logicRules& rules, const deviceSettings& settings) {
    rules.emplace(sxb_pll_step::lcpllSolver,
                  [&settings](rule_declaration& rule) { rule.body(lcpll_solver(rule, settings)); });
}

}  // namespace sable_lanecfg
