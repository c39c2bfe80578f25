#pragma once

#include "clocking_domains.h"
#include "families/common/rule_declaration.h"
#include "user_clock.h"

#include <optional>
#include <string>

namespace sable_lanecfg {

// What the solvers of all rule sets of the family search with.

/// A candidate clock of the LCPLL with what the oscillator has to run at for it.
struct lcpll_candidate {
    explicit lcpll_candidate(double pllClock);

    /// Oscillator in MHz.
    double megahertz() const { return oscillator * clocking::megahertzPerGigahertz; }

    double clock;  ///< GHz
    bool isFullRate;
    double oscillator;  ///< GHz
};

struct pll_dividers {
    unsigned int reference;
    unsigned int feedback;
};

/// The first of the feedback dividers that agrees with the wanted ratio.
template <class Dividers>
std::optional<unsigned int> feedbackFor(const Dividers& dividers, double wanted) {
    for (const int feedback : dividers) {
        if (clocking::agree(feedback, wanted)) {
            return static_cast<unsigned int>(feedback);
        }
    }
    return std::nullopt;
}

/// Dividers without a fraction; the reference clock is in MHz.
std::optional<pll_dividers> wholeLcpllDividers(const lcpll_candidate& candidate,
                                               double referenceClock);

/// Dividers for a ratio of PLL and reference clock. Of an RPLL that serves data fewer feedback
/// dividers keep the clock clean enough.
std::optional<pll_dividers> wholeRpllDividers(double ratio, bool servesData);

/// What an RPLL is used for.
class rpll_use {
  public:
    explicit rpll_use(rule_declaration& rule);

    bool servesSerialData() const;

  private:
    rule_input<bool> serialAtRate0_;
    rule_input<bool> transmitInUse_;
    rule_input<bool> receiveInUse_;
    // Parameters of the rate, which are there before any rule runs.
    rule_peek<std::string> transmitPll_;
    rule_peek<std::string> receivePll_;
};

}  // namespace sable_lanecfg
