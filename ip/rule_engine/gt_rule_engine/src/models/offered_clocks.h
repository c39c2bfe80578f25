#pragma once

#include <lanecfg/host/ToolDRCModel.h>

#include <functional>
#include <set>
#include <string>

/// How clocks (MHz) become values and ranges of parameters.
namespace sable_lanecfg::models {

/// A number in fixed notation, the same in every locale.
std::string fixedText(double number, int decimals);

/// Adds all clocks, lowest first, to the range. Those that are `chosen` become the value one after
/// another, so the highest of them stays. Clocks with the same text are all added.
void offerClocks(updater& record, const std::string& parameter, const std::set<double>& clocks,
                 int decimals, const std::function<bool(double)>& chosen);

/// The same with the clock chosen that agrees with a user clock.
void offerOutputClocks(updater& record, const std::string& parameter,
                       const std::set<double>& clocks, int decimals, double userClock);

}  // namespace sable_lanecfg::models
