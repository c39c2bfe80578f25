#pragma once

#include <lanecfg/gt_rule_engine.h>

namespace sable_lanecfg {

/// Packs the channels of the engine into the quad and takes the outcome: the messages, which wait
/// in `packedChannels`, and the frequencies and reference clocks that are left of each PLL. Of a
/// fault the user is told.
void takePacking(gt_rule_engine& engine);

/// Enters what the packing found into the user parameters of every lane, direction and rate that
/// the request gives: use, frequencies, reference clock and power of each PLL, and what the rates
/// of a lane and of its dual have in common. A rate whose PLL has no frequency is left as it is.
/// Throws, with what is entered so far, where a rate lacks a parameter or has it in another type.
void enterPackingValues(gt_rule_engine& engine);

}  // namespace sable_lanecfg
