#pragma once

#include "families/common/catalogue_rules.h"

#include <lanecfg/gt_rule_engine.h>

#include <map>
#include <string>

namespace sable_lanecfg {

// The rules beside the frozen catalogues: those of the current sets with changes.
logicRules sxbStableRxLogicRules();
logicRules sxbStableTxLogicRules();
logicRules sxbStablePllLogicRules(const gt_rule_engine& engine);

/// Values that every pass starts with: a receive PLL without frequency, powered down.
std::map<std::string, ruleValue> sxbStablePassStartValues();

// Each registers a whole set: 827, 198 and 804 rules.
void registerSxbStableRxRules(gt_rule_engine& engine);
void registerSxbStableTxRules(gt_rule_engine& engine);
/// Also enters the start values, among them those of intermediates that frozen rules read and none
/// writes.
void registerSxbStablePllRules(gt_rule_engine& engine);

}  // namespace sable_lanecfg
