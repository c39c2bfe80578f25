#pragma once

#include <lanecfg/gt_rule_engine.h>

#include <map>
#include <string>

namespace sable_lanecfg {

/// Register words of a quad by prefixed name: the engine's attribute map, and above it what is not
/// any one lane's. A PLL of a dual is configured as its first lane has it, unless only the second
/// lane uses it; reset enables come from the lane that each is for. Beside the words there are the
/// fields of the reference clock words of both duals, the registers that no rate changes
/// ("STAT_NPI_REG_LIST"), and at the end the registers as the rules left them, under their bare
/// names. Only the passes of rate 0 in both directions count.
///
/// Makes the rate table, with all that this does to the log and the snapshots, and leaves the
/// chosen values in the engine's variables.
std::map<std::string, std::string> quadAttributes(gt_rule_engine& engine);

}  // namespace sable_lanecfg
