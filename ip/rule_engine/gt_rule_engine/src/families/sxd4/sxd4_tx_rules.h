#pragma once

#include "families/common/catalogue_rules.h"

#include <lanecfg/gt_rule_engine.h>

namespace sable_lanecfg {

/// The rules beside the transmit catalogue.
logicRules sxd4TxLogicRules();

/// Registers the whole transmit set, 108 rules.
void registerSxd4TxRules(gt_rule_engine& engine);

}  // namespace sable_lanecfg
