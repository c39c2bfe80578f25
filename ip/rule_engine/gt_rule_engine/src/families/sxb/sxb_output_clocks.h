#pragma once

#include <lanecfg/gt_rule_engine.h>

#include <map>
#include <string>

namespace sable_lanecfg {

/// Output clocks (MHz) of the lanes that the request lists, "CH0_TXOUTCLK" and "CH0_RXOUTCLK" for
/// lane 0: of the lane's rates the fastest, of several the first. A lane without a clock above 0
/// has no entry.
std::map<std::string, std::string> outputClocks(const gt_rule_engine& engine);

/// The same with the reference clock behind each: for transmit "CH0_TXOUTCLK_FREQ",
/// "CH0_TXOUTCLK_REF_FREQ" (MHz) and "CH0_TXOUTCLK_REF_SOURCE", a port of the quad.
std::map<std::string, std::string> outputClocksWithReferences(const gt_rule_engine& engine);

}  // namespace sable_lanecfg
