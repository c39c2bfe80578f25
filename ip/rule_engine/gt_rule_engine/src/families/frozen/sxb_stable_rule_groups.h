#pragma once

#include "families/common/rule_declaration.h"

namespace sable_lanecfg {

// Rules that the frozen SXB sets have in place of current ones.

/// Feeds the solver of the PLL that the receiver names with the one clock found for it, and leaves
/// the other PLL idle.
void stableInputSelection(rule_declaration& rule);

// The solvers look for dividers without a fraction only. Without a solution the dividers stay those
// of the pass before.
void stableLcpllSolver(rule_declaration& rule);
void stableRpllSolver(rule_declaration& rule);

// Output clocks in one word of a direction: all that is here of the current outclock reports.
void stableReceiveClocksPerWord(rule_declaration& rule);
void stableTransmitClocksPerWord(rule_declaration& rule);

}  // namespace sable_lanecfg
