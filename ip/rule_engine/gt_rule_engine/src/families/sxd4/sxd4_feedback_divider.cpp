#include "clocking_domains.h"
#include "families/common/rule_arithmetic.h"
#include "families/common/rule_shapes.h"
#include "families/sxd4/sxd4_pll_catalogue.h"
#include "families/sxd4/sxd4_rule_groups.h"

#include <array>
#include <cmath>
#include <optional>
#include <string>

namespace sable_lanecfg {

namespace {

constexpr auto referenceDividers = clocking::consecutive<1, 5>();

/// The modulator of a fraction steps around the integer part and needs room above it.
constexpr clocking::interval fractionalFeedback =
    clocking::closedInterval(clocking::lowestFractionalFeedback, 157);
/// Feedback dividers without a fraction: low ones first, then all. Since the feedback grows with
/// the reference divider, the first divider in range is the one found either way.
constexpr std::array<clocking::interval, 2> integerFeedbacks{
    clocking::closedInterval(clocking::lowestFractionalFeedback,
                             clocking::sxdPll::probedFeedbackLimit),
    clocking::closedInterval(clocking::lowestFractionalFeedback, clocking::highestFeedback)};

/// What the feedback divider's field counts from.
constexpr unsigned int feedbackOffset = 2;

constexpr unsigned int lowFractionBits = 16;
constexpr unsigned int lowFractionMask = (1U << lowFractionBits) - 1U;

struct pllDividers {
    unsigned int reference = 0;
    unsigned int feedback = 0;
    unsigned int fraction = 0;  ///< in 2^24 parts
};

/// The oscillator against one reference divider.
struct feedbackRatio {
    double whole;
    unsigned int fraction;

    bool isWithin(const clocking::interval& integers) const {
        return (fraction == 0 ? integers : fractionalFeedback).contains(whole);
    }
};

/// Finds the dividers between reference clock (MHz) and oscillator.
class feedback_search {
  public:
    feedback_search(double pllClock, bool isFullRate, double reference)
        : pllClock_(pllClock),
          megahertz_(isFullRate ? clocking::megahertzPerGigahertz
                                : 2.0 * clocking::megahertzPerGigahertz),
          reference_(reference) {}

    /// All 0 when no divider passes.
    pllDividers found() const {
        for (const clocking::interval& integers : integerFeedbacks) {
            if (const auto dividers = foundWithin(integers)) {
                return *dividers;
            }
        }
        return {};
    }

  private:
    std::optional<pllDividers> foundWithin(const clocking::interval& integers) const {
        for (const int divider : referenceDividers) {
            if (!clocking::sxdPll::referenceClock.contains(reference_ / divider)) {
                continue;
            }
            const feedbackRatio ratio = ratioOf(divider);
            if (ratio.isWithin(integers)) {
                return pllDividers{static_cast<unsigned int>(divider), truncated(ratio.whole),
                                   ratio.fraction};
            }
        }
        return std::nullopt;
    }

    feedbackRatio ratioOf(int divider) const {
        const double ratio = pllClock_ * divider * megahertz_ / reference_;
        const double whole = std::floor(ratio);
        return {whole, truncated((ratio - whole) * clocking::fractionScale)};
    }

    double pllClock_;
    double megahertz_;  ///< of the oscillator for each GHz of the PLL clock
    double reference_;
};

void feedbackDivider(rule_declaration& rule) {
    const auto clock = rule.reads<double>("INT_LCPLL_PLLCLKOUT");
    const auto reference = rule.reads<double>("INT_LCPLL_REFCLKFREQ");
    const auto rate = rule.reads<std::string>("INT_LCPLLCLKOUTRATE");
    const auto referenceDivider = rule.writes("INT_LCPLL_REF_DIV");
    const auto feedback = rule.writes("INT_LCPLL_FBDIV");
    const auto fraction = rule.writes("SDMDATA");
    const auto lowFraction = rule.writes("A_SDM_DATA_CFG0.A_SDM_DATA");
    const auto highFraction = rule.writes("A_SDM_DATA_CFG1.A_SDM_DATA");
    const auto bypass = rule.writes("SDM_CFG0.BYPASS");
    rule.body([=] {
        const pllDividers dividers =
            feedback_search(clock(), rate() == "FULL", reference()).found();
        referenceDivider.set(dividers.reference);
        feedback.set(dividers.feedback);
        fraction.set(dividers.fraction);
        lowFraction.set(dividers.fraction & lowFractionMask);
        highFraction.set(dividers.fraction >> lowFractionBits);
        bypass.set(dividers.fraction == 0 ? 1 : 0);
    });
}

/// 0 for a PLL without a solution.
void feedbackField(rule_declaration& rule) {
    const auto feedback = rule.reads<unsigned int>("INT_LCPLL_FBDIV");
    rule.gives([=] { return feedback() > feedbackOffset ? feedback() - feedbackOffset : 0U; });
}

}  // namespace

void addSxd4FeedbackDividerRules(logicRules& rules) {
    rules.emplace(sxd4_pll_step::feedbackDivider, feedbackDivider);
    rules.emplace("A_CFG.A_PLLFBDIV", feedbackField);
    rules.emplace("PLL_CFG1.LCPLL_REFCLK_DIV", referenceDividerCode("INT_LCPLL_REF_DIV"));
}

}  // namespace sable_lanecfg
