#pragma once

#include "output.h"

#include <lanecfg/family_rules.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// A rule with its number in its family.
struct NumberedRule {
    std::size_t number = 0;
    ruleDescription rule;
};

/// All rules of a family and selector with their numbers; of some there are none.
std::vector<NumberedRule> numberedRules(const std::string& family, const std::string& selector);

std::string wordOf(ruleKind kind);
/// All words of kinds, in the order of the enumeration.
std::vector<std::string> kindWords();

/// A rule on one line, "A_CFG1 <- A_CFG1.A ..." or "A_CFG1.A = 3"; the widest lists would push
/// columns of their own apart.
std::string sentenceOf(const ruleDescription& rule);

/// The columns number, set, kind, outputs, inputs and value of a rule.
std::vector<std::string> ruleColumns();
std::vector<Cell> ruleCells(const NumberedRule& rule);

/// A rule that only one family has, or that the second has otherwise than the first.
struct RuleDifference {
    std::optional<NumberedRule> first;
    std::optional<NumberedRule> second;
};

/// What leads from the rules of one family to those of another: removed and changed ones in the
/// order of the first family, then added ones in that of the second. Rules belong together when
/// they have the same outputs, else when they share one. Numbers and sets do not count.
std::vector<RuleDifference> ruleDifferences(const std::vector<NumberedRule>& first,
                                            const std::vector<NumberedRule>& second);

/// The answer about the differences: change, set, outputs and what changed for each; in JSON both
/// rules whole.
Answer answerOf(const std::vector<RuleDifference>& differences, const std::string& firstName,
                const std::string& secondName);

}  // namespace sable_lanecfg::tool
