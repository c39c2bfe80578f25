#pragma once

#include <lanecfg/gt_rule_engine.h>

namespace sable_lanecfg {

/// Enters what the frozen rules need into the user parameters, at the rates that the request gives:
/// the defaults of what a rate lacks, names that begin with "RX" at receive rates and all others at
/// transmit ones, and of each receive rate's PLL the first frequency that the packing found, its
/// reference clock and that clock's source. A PLL without frequency is powered down. Then finds the
/// lane modes again. Throws, with what is entered so far, where a receive rate has no PLL.
void enterStablePackingValues(gt_rule_engine& engine);

}  // namespace sable_lanecfg
