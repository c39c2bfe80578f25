#pragma once

#include "clocking_domains.h"

#include <cmath>

namespace sable_lanecfg::clocking {

/// The candidate nearest to a wanted clock, kept while candidates pass by in any order. Of two at
/// the same distance the lower one stays, and 0.0 stands for none.
class nearestClock {
  public:
    explicit nearestClock(double wanted) : wanted_(wanted) {}

    void offer(double candidate) {
        const double distance = std::fabs(wanted_ - candidate);
        if (distance < distance_ || (distance == distance_ && candidate < clock_)) {
            distance_ = distance;
            clock_ = candidate;
        }
    }

    double clock() const { return clock_; }

  private:
    double wanted_;
    double distance_ = farthestDistance;
    double clock_ = 0.0;
};

/// The reference clock (MHz) nearest to `wanted` from which `Pll` runs a line of `rate` (GHz, as
/// the PLL sees it) with an integer part out of `feedbackDividers` and this fraction; 0.0 when
/// there is none. Candidates are `M * D * rate * 1000 / (multiplier * N + fraction)`, multiplied
/// from left to right.
template <class Pll, class FeedbackDividers>
double nearestReferenceClock(double rate, const FeedbackDividers& feedbackDividers, double fraction,
                             double wanted) {
    nearestClock nearest(wanted);
    for (const int preDivider : Pll::preDividers) {
        for (const int lineDivider : Pll::lineDividers) {
            if (!Pll::searchedVco.contains(lineDivider * rate * Pll::vcoPerRate)) {
                continue;
            }
            const double multiplied = preDivider * lineDivider * rate * megahertzPerGigahertz;
            for (const int feedback : feedbackDividers) {
                const double candidate =
                    multiplied / (Pll::feedbackMultiplier * feedback + fraction);
                if (Pll::referenceClock.contains(candidate)) {
                    nearest.offer(candidate);
                }
            }
        }
    }
    return nearest.clock();
}

}  // namespace sable_lanecfg::clocking
