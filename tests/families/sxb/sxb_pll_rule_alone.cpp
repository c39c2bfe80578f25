#include "sxb_pll_rule_alone.h"

#include "families/sxb/sxb_pll_rules.h"

#include <algorithm>

namespace lanecfg_test {

RuleInputs with(RuleInputs inputs, const RuleInputs& others) {
    for (const auto& [name, value] : others) {
        inputs[name] = value;
    }
    return inputs;
}

PassingEngine::PassingEngine(const DeviceSettings& device)
    : gt_rule_engine("SXB", {}, {}, {}, {}, device) {}

void PassingEngine::set(const RuleInputs& inputs) {
    for (const auto& [name, value] : inputs) {
        setVal(name, value);
    }
}

void PassingEngine::runPass() {
    runRules();
    passFlag = !passFlag;
}

PllRuleAlone::PllRuleAlone(const std::string& name, const DeviceSettings& device)
    : engine_(device) {
    const bool isField = name.find('.') != std::string::npos;
    declareRule(engine_, sable_lanecfg::sxbPllLogicRules(engine_).at(name),
                isField ? name : std::string());
}

void PllRuleAlone::runPass(const RuleInputs& inputs) {
    set(inputs);
    runPass();
}

ruleValue PllRuleAlone::value(const std::string& name) const {
    const auto found = engine_.varMap.find(name);
    return found == engine_.varMap.end() ? ruleValue() : found->second.value;
}

std::string caseName(const testing::TestParamInfo<FieldCase>& info) {
    std::string name = info.param.field;
    std::replace(name.begin(), name.end(), '.', '_');
    return name + "_" + std::to_string(info.index);
}

void PrintTo(const FieldCase& row, std::ostream* output) {
    *output << row.field << " of";
    for (const auto& [name, value] : row.inputs) {
        *output << ' ' << name << '=' << testing::PrintToString(value);
    }
}

void append(std::vector<FieldCase>& cases, const std::vector<FieldCase>& others) {
    cases.insert(cases.end(), others.begin(), others.end());
}

TEST_P(SxbPllField, IsAsTheRuleSays) {
    PllRuleAlone rule(GetParam().field);
    rule.runPass(GetParam().inputs);
    EXPECT_EQ(rule.value(GetParam().field), ruleValue(GetParam().expected));
}

}  // namespace lanecfg_test
