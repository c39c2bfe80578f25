#pragma once

#include "clocking_domains.h"

#include <algorithm>
#include <cmath>
#include <string_view>

/// What decides whether an output clock goes with the clock of the user's data.
namespace sable_lanecfg::clocking {

/// Width of the encoded data; single precision, as the widths of the parameters are.
inline float effectiveWidth(float userDataWidth, std::string_view encoding) {
    for (const encodingFactor& known : encodingFactors) {
        if (encoding == known.encoding) {
            return userDataWidth * known.factor;
        }
    }
    return userDataWidth;
}

/// True when the two clocks differ by less than the tolerance, relative to the smaller one.
inline bool agree(double first, double second) {
    return std::fabs(first - second) / std::min(first, second) < matchTolerance;
}

}  // namespace sable_lanecfg::clocking
