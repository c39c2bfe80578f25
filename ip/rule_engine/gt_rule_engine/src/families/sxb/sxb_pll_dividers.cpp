#include "families/sxb/sxb_pll_dividers.h"

namespace sable_lanecfg {

namespace {

/// PLL clocks (GHz) up to here are half of the oscillator's.
constexpr double highestHalfRateClock = 8.1875;

/// The first pair of dividers that agrees, reference dividers outer.
template <class References, class Feedbacks>
std::optional<pll_dividers> dividersFor(const References& references, const Feedbacks& feedbacks,
                                        double ratio) {
    for (const int reference : references) {
        if (const auto feedback = feedbackFor(feedbacks, reference * ratio)) {
            return pll_dividers{static_cast<unsigned int>(reference), *feedback};
        }
    }
    return std::nullopt;
}

}  // namespace

lcpll_candidate::lcpll_candidate(double pllClock)
    : clock(pllClock),
      isFullRate(pllClock > highestHalfRateClock),
      oscillator(isFullRate ? pllClock : 2.0 * pllClock) {}

std::optional<pll_dividers> wholeLcpllDividers(const lcpll_candidate& candidate,
                                               double referenceClock) {
    return dividersFor(clocking::lcpll::preDividers, clocking::lcpll::integerFeedbackDividers,
                       candidate.megahertz() / referenceClock);
}

std::optional<pll_dividers> wholeRpllDividers(double ratio, bool servesData) {
    return servesData
               ? dividersFor(clocking::rpll::preDividers, clocking::rpll::feedbackDividers, ratio)
               : dividersFor(clocking::rpll::preDividers, clocking::rpll::freeFeedbackDividers,
                             ratio);
}

rpll_use::rpll_use(rule_declaration& rule)
    : serialAtRate0_(rule.reads<bool>("RPLL_USED_FOR_SERIAL_DATA_RATE0")),
      transmitInUse_(rule.reads<bool>("TX_IN_USE")),
      receiveInUse_(rule.reads<bool>("RX_IN_USE")),
      transmitPll_(rule.peeks<std::string>("TX_PLL_TYPE")),
      receivePll_(rule.peeks<std::string>("RX_PLL_TYPE")) {}

bool rpll_use::servesSerialData() const {
    return (transmitPll_() == "RPLL" && transmitInUse_()) ||
           (receivePll_() == "RPLL" && receiveInUse_()) || serialAtRate0_();
}

}  // namespace sable_lanecfg
