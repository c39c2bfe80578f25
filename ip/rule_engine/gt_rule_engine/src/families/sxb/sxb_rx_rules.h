#pragma once

#include "families/common/catalogue_rules.h"

#include <lanecfg/gt_rule_engine.h>

namespace sable_lanecfg {

/// The rules beside the receive catalogue. Families that differ in a few rules edit the result.
logicRules sxbRxLogicRules();

/// Registers the whole receive set, 813 rules.
void registerSxbRxRules(gt_rule_engine& engine);

}  // namespace sable_lanecfg
