#pragma once

#include "families/common/catalogue_rules.h"

#include <lanecfg/gt_rule_engine.h>

namespace sable_lanecfg {

/// The rules beside the PLL catalogue. The solvers read the engine's settings.
logicRules sxd4PllLogicRules(const gt_rule_engine& engine);

/// Registers the whole PLL set, 371 rules.
void registerSxd4PllRules(gt_rule_engine& engine);

}  // namespace sable_lanecfg
