#pragma once

#include "families/common/catalogue_rules.h"

#include <lanecfg/gt_rule_engine.h>

namespace sable_lanecfg {

// The rules beside the SXC catalogues, each set as what differs from that of the SXB family. No
// rule reads the silicon revision.

/// The LCPLL solver reads the engine's settings.
logicRules sxcPllLogicRules(const gt_rule_engine& engine);
logicRules sxcRxLogicRules();
logicRules sxcTxLogicRules();

/// Enters the start values and registers the whole PLL set, 936 rules.
void registerSxcPllRules(gt_rule_engine& engine);
/// Registers the whole receive set, 814 rules.
void registerSxcRxRules(gt_rule_engine& engine);
/// Registers the whole transmit set, 198 rules.
void registerSxcTxRules(gt_rule_engine& engine);

}  // namespace sable_lanecfg
