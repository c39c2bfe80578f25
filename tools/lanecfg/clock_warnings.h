#pragma once

#include "console.h"
#include "request.h"
#include "table.h"

#include <lanecfg/gt_quad_packing.h>
#include <lanecfg/gt_rule_engine.h>

#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// Reference clocks for which registers are made although the request gives others. What can't be
/// told apart by the values, since there are several, can be read in the text.
struct ClockWarning {
    std::set<int> lanes;
    std::set<std::string> directions;  ///< "TX", "RX"
    std::set<std::string> groups;
    std::set<std::string> plls;
    std::set<std::string> sources;
    std::set<int> rates;
    std::set<double> requested;  ///< MHz
    std::set<double> used;       ///< MHz
    std::string text;            ///< one sentence on what is asked for and used, one on the way out
};

/// One for each lane, direction and packing group with a clock more than 100 parts per million off
/// the requested one; then one for each source and requested clock where uses of one rate have
/// several. Only PLLs that have a frequency and one clock count: the others are reasons why
/// channels don't fit.
std::vector<ClockWarning> clockWarnings(const gt_quad_packing& packing);
/// The same from what an instance took over from its packing; none for a family that doesn't pack.
std::vector<ClockWarning> clockWarnings(const gt_rule_engine& engine);

Json clockWarningDocument(const std::vector<ClockWarning>& warnings);
/// Shows each as a warning about the request.
void tellOfClocks(const Request& request, const std::vector<ClockWarning>& warnings,
                  Console& console);

}  // namespace sable_lanecfg::tool
