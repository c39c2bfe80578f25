#pragma once

#include "families/common/catalogue_plan.h"
#include "families/common/register_catalogue.h"
#include "families/common/rule_declaration.h"

#include <lanecfg/gt_rule_engine.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// The rules beside a catalogue, by what they stand beside: "REGISTER.FIELD" of a logic field, or
/// the name of a step. The rule of a field either `gives` it or has it among its `writes`.
using logicRules = std::map<std::string, ruleDeclarer, std::less<>>;

/// The rule that stands beside a catalogue under this name. Throws std::logic_error, naming it,
/// when there is none.
const ruleDeclarer& ruleBeside(const logicRules& rules, const std::string& name);

/// Edits for a family whose rules are those of another one with changes. An edit whose rule is not
/// there, or whose addition is there already, throws std::invalid_argument that names it: it is a
/// slip in the table of differences.
void addRule(logicRules& rules, const std::string& name, ruleDeclarer rule);
void replaceRule(logicRules& rules, const std::string& name, ruleDeclarer rule);
void removeRule(logicRules& rules, const std::string& name);
/// Removes the rules of the logic fields and steps that one catalogue has and the other lacks.
void removeRulesWithoutPlace(logicRules& rules, const register_catalogue& before,
                             const register_catalogue& after);

/// The variables of a register's fields, which its word declares as inputs.
std::vector<std::string> fieldNames(const std::string& registerName,
                                    const std::vector<registerField>& fields);

/// Registers every rule of a catalogue in its order: the fields' rules as they stand, and after
/// them the rule that composes the register's word and declares its fields as inputs in that order.
///
/// Throws std::logic_error, naming the rule or field, when catalogue and rules do not belong
/// together: a logic field or step without a rule, or a rule that neither stands beside, before
/// anything is registered; a rule that does not write its own field, or a shared field that no rule
/// of the set writes, when it is met.
///
/// `rulesOfEngine` stand beside the catalogue as `rules` do. They are those that refer to this
/// engine, so that the others can be made once for all engines.
void registerCatalogue(gt_rule_engine& engine, const catalogue_plan& plan, const logicRules& rules,
                       const logicRules& rulesOfEngine = {});

}  // namespace sable_lanecfg
