#include "models/reference_clock_offer.h"

#include "models/offered_clocks.h"

namespace sable_lanecfg::models {

void referenceClockOffer::meet(double clock, bool mayBeDefault) {
    if (!limits_.contains(clock)) {
        return;
    }
    clocks_.insert(clock);
    if (mayBeDefault && !default_) {
        default_ = clock;
    }
}

void referenceClockOffer::writeTo(updater& record, const std::string& parameter) const {
    constexpr int decimals = 7;
    offerClocks(record, parameter, clocks_, decimals,
                [this](double clock) { return default_ == clock; });
}

}  // namespace sable_lanecfg::models
