#include "clocking_domains.h"
#include "reference_clock_search.h"

#include <lanecfg/rule_engine_utilities.h>

#include <cmath>
#include <cstdint>
#include <optional>

/// Reference clocks and fractions of the PLLs.
namespace sable_lanecfg {

using namespace clocking;

namespace {

/// A feedback divider that reaches a wanted reference clock.
struct feedbackDivider {
    int integerPart;
    std::uint32_t fractionWord;
};

/// Line rate as a PLL sees it that puts two bits into each clock period above `halvingThreshold`.
double rateAtPll(double lineRate, double halvingThreshold) {
    return lineRate > halvingThreshold ? 0.5 * lineRate : lineRate;
}

/// The feedback divider for a product of the other dividers, none when the integer part is one
/// that cannot carry a fraction. The test comes before the conversion, so that no infinity and no
/// NaN is ever made an integer.
std::optional<feedbackDivider> feedbackFor(int dividers, double rate, double refclk) {
    const double quotient = dividers * rate * megahertzPerGigahertz / refclk;
    const double whole = std::floor(quotient);
    if (!fractionalFeedback.contains(whole)) {
        return std::nullopt;
    }
    return feedbackDivider{static_cast<int>(whole),
                           static_cast<std::uint32_t>(fractionScale * (quotient - whole))};
}

/// What remains of a list of fraction words: the first one, unless one is 0. A setting that
/// reaches the clock exactly makes the fraction needless, whatever the others say.
class fractionWords {
  public:
    void add(std::uint32_t word) {
        if (empty_) {
            word_ = word;
            empty_ = false;
        } else if (word == 0) {
            word_ = 0;
        }
    }

    bool empty() const { return empty_; }
    /// 0 while empty.
    std::uint32_t word() const { return word_; }

  private:
    bool empty_ = true;
    std::uint32_t word_ = 0;
};

/// Fraction word with which the LCPLL gets nearest to `refclk`, whatever the line rate.
std::uint32_t probeLcpll(double rate, double refclk) {
    fractionWords words;
    for (const int preDivider : lcpll::preDividers) {
        for (const int lineDivider : lcpll::lineDividers) {
            if (!lcpll::vco.contains(lineDivider * rate)) {
                continue;
            }
            if (const auto feedback = feedbackFor(preDivider * lineDivider, rate, refclk)) {
                words.add(feedback->fractionWord);
            }
        }
    }
    return words.word();
}

/// Fraction word of the SXD PLL. `takes(M)` says whether a pre-divider is looked at,
/// `lists(empty, N)` whether its word enters the list of words that is empty or not. A word that
/// enters no list still stands when the list stays empty.
template <class Takes, class Lists>
std::uint32_t probeSxd(double rate, double refclk, const Takes& takes, const Lists& lists) {
    if (!sxdPll::vco.contains(rate)) {
        return 0;
    }
    fractionWords words;
    std::uint32_t latest = 0;
    for (const int preDivider : sxdPll::preDividers) {
        if (!takes(preDivider)) {
            continue;
        }
        const auto feedback = feedbackFor(preDivider, rate, refclk);
        if (!feedback) {
            continue;
        }
        latest = feedback->fractionWord;
        if (lists(words.empty(), feedback->integerPart)) {
            words.add(latest);
        }
    }
    return words.empty() ? latest : words.word();
}

double calculateRpll(double lineRate, double refclk) {
    return nearestReferenceClock<rpll>(lineRate, rpll::feedbackDividers, 0.0, refclk);
}

double calculateLcpll(double lineRate, double refclk) {
    const double rate = rateAtPll(lineRate, lcpll::halvingThreshold);
    const std::uint32_t word = lineRate > lcpll::fractionalCeiling ? 0 : probeLcpll(rate, refclk);
    if (word == 0) {
        return nearestReferenceClock<lcpll>(rate, lcpll::integerFeedbackDividers, 0.0, refclk);
    }
    return nearestReferenceClock<lcpll>(rate, fractionalFeedbackDividers, word / fractionScale,
                                        refclk);
}

}  // namespace

double rule_engine_utilities::calculateActualRefclk(double lineRate, double refclk,
                                                    std::string pllType) {
    // Every word but LCPLL means RPLL here; fracNEnable and the output clocks tell them apart
    // differently.
    return pllType == lcpllWord ? calculateLcpll(lineRate, refclk)
                                : calculateRpll(lineRate, refclk);
}

double rule_engine_utilities::calculateActualRefclk_SXD(double lineRate, double refclk) {
    const double rate = rateAtPll(lineRate, sxdPll::halvingThreshold);
    // Unlike in fracNEnable_SXD no reference clock is refused, and a list begins only with an
    // integer part up to the limit.
    const std::uint32_t word = probeSxd(
        rate, refclk, [](int) { return true; },
        [](bool empty, int integerPart) {
            return !empty || integerPart <= sxdPll::probedFeedbackLimit;
        });
    const double fraction = lineRate > sxdPll::fractionalCeiling ? 0.0 : word / fractionScale;
    // Unlike on the LCPLL the lowest feedback divider is the same without a fraction.
    return nearestReferenceClock<sxdPll>(rate, fractionalFeedbackDividers, fraction, refclk);
}

bool rule_engine_utilities::fracNEnable(double lineRate, double refclk, std::string pllType) {
    return pllType == lcpllWord && lineRate <= lcpll::fractionalCeiling &&
           probeLcpll(rateAtPll(lineRate, lcpll::halvingThreshold), refclk) != 0;
}

bool rule_engine_utilities::fracNEnable_SXD(double lineRate, double refclk) {
    // Unlike in calculateActualRefclk_SXD a pre-divided clock out of range is passed over, and
    // the first word always enters the list, later ones only up to the limit.
    const std::uint32_t word = probeSxd(
        rateAtPll(lineRate, sxdPll::halvingThreshold), refclk,
        [refclk](int preDivider) {
            return sxdPll::probedReferenceClock.contains(refclk / preDivider);
        },
        [](bool empty, int integerPart) {
            return empty || integerPart <= sxdPll::probedFeedbackLimit;
        });
    return word != 0 && lineRate <= sxdPll::fractionalCeiling;
}

}  // namespace sable_lanecfg
