#pragma once

#include "families/common/catalogue_rules.h"

#include <lanecfg/gt_rule_engine.h>

namespace sable_lanecfg {

/// The rules beside the receive catalogue.
logicRules sxd4RxLogicRules();

/// Registers the whole receive set, 568 rules.
void registerSxd4RxRules(gt_rule_engine& engine);

}  // namespace sable_lanecfg
