#pragma once

#include "database/device_limit.h"

#include <vector>

namespace sable_lanecfg {

/// Slack of every limit of the oscillator (GHz).
inline constexpr double vcoLimitSlack = 0.000000001;

/// The PLL clocks that could serve a use, from the limits of the device.
///
/// Clocks and symbol rates are in GHz, output clocks in MHz.
class sxd4_vco_candidates {
  public:
    /// The settings have to outlive this.
    explicit sxd4_vco_candidates(const deviceSettings& settings) : settings_(&settings) {}

    // Both throw std::invalid_argument on a limit that is absent or no number.

    /// For a line, at most one for each of the dividers 1 and 2, in this order.
    std::vector<double> ofSymbolRate(double symbolRate) const;
    /// For an output clock of the programmable divider, by divider and doubling. `pamSelection` is
    /// 0 for PAM4, and the symbol rate is that of the line beside which the divider runs.
    std::vector<double> ofOutputClock(double frequency, unsigned int pamSelection,
                                      double symbolRate) const;

  private:
    const deviceSettings* settings_;
};

/// The clocks that all lists hold: ascending, each once; a list alone stays as it is. Nothing
/// without a list.
std::vector<double> commonCandidates(const std::vector<std::vector<double>>& lists);

}  // namespace sable_lanecfg
