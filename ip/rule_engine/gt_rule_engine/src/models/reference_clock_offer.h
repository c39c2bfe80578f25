#pragma once

#include "clocking_domains.h"

#include <lanecfg/host/ToolDRCModel.h>

#include <optional>
#include <set>
#include <string>

namespace sable_lanecfg::models {

/// Collects the reference clocks (MHz) within limits that a walk over dividers meets.
class referenceClockOffer {
  public:
    explicit referenceClockOffer(const clocking::interval& limits) : limits_(limits) {}

    /// Takes the next clock of the walk. The first one within the limits that `mayBeDefault` is the
    /// default.
    void meet(double clock, bool mayBeDefault);

    /// Offers the clocks with 7 decimals; the default becomes the value. Without a default the
    /// value stays, without clocks nothing changes.
    void writeTo(updater& record, const std::string& parameter) const;

  private:
    clocking::interval limits_;
    std::set<double> clocks_;
    std::optional<double> default_;
};

/// Feedback dividers of a PLL with a fraction, as the models walk them; the highest is one below
/// that of the clocking math.
inline constexpr int highestWalkedFeedback = 159;
/// From here on, at a pre-divider of 1, a clock may be the default.
inline constexpr int defaultFeedback = 40;
/// The numerator of the fraction counts twenty-sixths here; a power of two would be another clock.
inline constexpr int fractionParts = 26;

/// Meets the clocks `P * D * rate * 1000 / (2 * (K + numerator / 26))`, all in the precision of
/// `Number`, for every pre-divider P, feedback divider K from `lowestFeedback` and line divider D,
/// the last one fastest. Line dividers are powers of two, so that their place in the product makes
/// no difference.
template <class Number, class LineDividers>
void walkFractionalPll(Number rate, Number numerator, int lowestFeedback,
                       const LineDividers& lineDividers, referenceClockOffer& offer) {
    const Number fraction = numerator / Number{fractionParts};
    for (const int preDivider : clocking::preDividers) {
        for (int feedback = lowestFeedback; feedback <= highestWalkedFeedback; ++feedback) {
            const bool mayBeDefault = preDivider > 1 || feedback >= defaultFeedback;
            const Number divisor = Number{2} * (static_cast<Number>(feedback) + fraction);
            for (const int lineDivider : lineDividers) {
                const Number multiplied =
                    static_cast<Number>(preDivider * lineDivider) * rate * Number{1000};
                offer.meet(multiplied / divisor, mayBeDefault);
            }
        }
    }
}

}  // namespace sable_lanecfg::models
