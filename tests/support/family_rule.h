#pragma once

#include "families/common/catalogue_rules.h"
#include "support/declared_names.h"
#include "support/print_rule_value.h"

#include <lanecfg/gt_rule_engine.h>

#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace lanecfg_test {

using sable_lanecfg::ruleValue;

/// Values of variables by name.
using VariableValues = std::map<std::string, ruleValue>;
using DeviceSettings = std::map<std::string, std::vector<std::string>>;

/// The first values with the others put over them.
VariableValues with(VariableValues values, const VariableValues& others);

/// An engine of a quad without a database, whose passes can be run from outside.
class LaneEngine : public sable_lanecfg::gt_rule_engine {
  public:
    explicit LaneEngine(const DeviceSettings& device = {});

    void set(const VariableValues& values);
    void runPass();
    /// Value of a variable; blank when nothing gave it one.
    ruleValue value(const std::string& name) const;
    /// All variables.
    VariableValues values() const;
    /// Number of the rule that writes a variable, -1 without one.
    int ruleNumber(const std::string& name) const;
    /// All numbers in use, each once.
    std::vector<int> ruleNumbers() const;
};

/// The rules beside all catalogues of a family.
using FamilyRules = sable_lanecfg::logicRules (*)(const sable_lanecfg::gt_rule_engine&);

/// A rule of a family, alone on an engine: "REGISTER.FIELD" or the name of a step. What uses it
/// links the vocabulary of the rules.
class FamilyRule {
  public:
    FamilyRule(FamilyRules rules, const std::string& name, const VariableValues& inputs,
               const DeviceSettings& device);

    void set(const VariableValues& inputs) { engine_.set(inputs); }
    void runPass() { engine_.runPass(); }
    ruleValue value(const std::string& name) const { return engine_.value(name); }
    template <class T>
    T valueOf(const std::string& name) const {
        return boost::get<T>(value(name));
    }
    const sable_lanecfg::ruleSignature& signature() const { return signature_; }

  private:
    LaneEngine engine_;
    sable_lanecfg::ruleSignature signature_;
};

/// What a rule makes of its inputs.
struct RuleCase {
    std::string rule;
    VariableValues inputs;
    VariableValues outputs;
};

/// A case of a rule that writes its own field only.
RuleCase fieldCase(const std::string& field, const VariableValues& inputs, unsigned int value);

/// Checks that the rule gives what the case says.
void expectCase(FamilyRules rules, const RuleCase& row);
/// Checks that the rule declares the names in their order.
void expectDeclaration(FamilyRules rules, const DeclaredNames& row);

/// Rule and number of a case as the name of a test.
std::string caseName(const testing::TestParamInfo<RuleCase>& info);

void PrintTo(const RuleCase& row, std::ostream* output);

/// Adds cases to those at hand.
void append(std::vector<RuleCase>& cases, const std::vector<RuleCase>& others);

}  // namespace lanecfg_test
