#pragma once

#include "families/common/catalogue_rules.h"

#include <lanecfg/gt_rule_engine.h>

namespace sable_lanecfg {

/// The rules beside the transmit catalogue. Families that differ in a few rules edit the result.
logicRules sxbTxLogicRules();

/// Registers the whole transmit set, 198 rules.
void registerSxbTxRules(gt_rule_engine& engine);

}  // namespace sable_lanecfg
