#pragma once

#include "families/common/catalogue_rules.h"
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
using RuleInputs = std::map<std::string, ruleValue>;
using DeviceSettings = std::map<std::string, std::vector<std::string>>;

/// The first inputs with the others put over them.
RuleInputs with(RuleInputs inputs, const RuleInputs& others);

/// An engine whose passes can be run from outside.
class PassingEngine : public sable_lanecfg::gt_rule_engine {
  public:
    explicit PassingEngine(const DeviceSettings& device = {});

    void set(const RuleInputs& inputs);
    void runPass();
};

/// A rule of the PLL set, alone on an engine: "REGISTER.FIELD" or the name of a step.
class PllRuleAlone {
  public:
    explicit PllRuleAlone(const std::string& name, const DeviceSettings& device = {});

    void set(const RuleInputs& inputs) { engine_.set(inputs); }
    void runPass() { engine_.runPass(); }
    void runPass(const RuleInputs& inputs);
    /// Value of a variable; blank when nothing gave it one.
    ruleValue value(const std::string& name) const;

    template <class T>
    T valueOf(const std::string& name) const {
        return boost::get<T>(value(name));
    }

  private:
    PassingEngine engine_;
};

/// What the rule of one field gives for its inputs.
struct FieldCase {
    std::string field;
    RuleInputs inputs;
    unsigned int expected;
};

/// The test that each of the cases is what the rule gives stands with this class; a file of a topic
/// adds its cases.
class SxbPllField : public testing::TestWithParam<FieldCase> {};

/// Field and number of a case as the name of a test.
std::string caseName(const testing::TestParamInfo<FieldCase>& info);

void PrintTo(const FieldCase& row, std::ostream* output);

/// Adds cases to those at hand.
void append(std::vector<FieldCase>& cases, const std::vector<FieldCase>& others);

}  // namespace lanecfg_test
