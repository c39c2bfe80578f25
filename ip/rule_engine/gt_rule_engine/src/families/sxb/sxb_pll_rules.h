#pragma once

#include "families/common/catalogue_rules.h"

#include <lanecfg/gt_rule_engine.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {

/// The rules beside the PLL catalogue. Families that differ in a few rules edit the result. The
/// LCPLL solver reads the engine's settings.
logicRules sxbPllLogicRules(const gt_rule_engine& engine);

/// Values that every pass starts with: no candidate clocks for either PLL of either direction, so
/// that a PLL that a rate does not use keeps the solution of the pass before.
std::map<std::string, ruleValue> sxbPassStartValues();

/// Values in the order in which they are entered.
using startValues = std::vector<std::pair<std::string, ruleValue>>;

/// Solver results of PLLs that no pass has solved yet.
startValues sxbSolverStartValues();

/// Enters values where a variable is absent or blank.
void enterStartValues(gt_rule_engine& engine, const startValues& values);

/// Enters what an idle PLL holds before the first pass, where a variable is absent or blank: no
/// candidate clocks, and solver results that stay until a pass solves the PLL.
void enterSxbPllStartValues(gt_rule_engine& engine);

/// Enters the start values and registers the whole PLL set, 898 rules.
void registerSxbPllRules(gt_rule_engine& engine);

}  // namespace sable_lanecfg
