#include "support/family_rule.h"

#include <cctype>
#include <set>

namespace lanecfg_test {

namespace {

bool isField(const std::string& name) {
    return name.find('.') != std::string::npos;
}

}  // namespace

VariableValues with(VariableValues values, const VariableValues& others) {
    for (const auto& [name, value] : others) {
        values[name] = value;
    }
    return values;
}

LaneEngine::LaneEngine(const DeviceSettings& device)
    : gt_rule_engine("SXB", {}, {}, {}, {}, device) {}

void LaneEngine::set(const VariableValues& values) {
    for (const auto& [name, value] : values) {
        setVal(name, value);
    }
}

void LaneEngine::runPass() {
    runRules();
    passFlag = !passFlag;
}

ruleValue LaneEngine::value(const std::string& name) const {
    const auto found = varMap.find(name);
    return found == varMap.end() ? ruleValue() : found->second.value;
}

VariableValues LaneEngine::values() const {
    VariableValues all;
    for (const auto& [name, info] : varMap) {
        all[name] = info.value;
    }
    return all;
}

int LaneEngine::ruleNumber(const std::string& name) const {
    const auto found = varMap.find(name);
    return found == varMap.end() ? -1 : found->second.ruleNumber.value_or(-1);
}

std::vector<int> LaneEngine::ruleNumbers() const {
    std::set<int> numbers;
    for (const auto& [name, info] : varMap) {
        if (info.ruleNumber) {
            numbers.insert(*info.ruleNumber);
        }
    }
    return {numbers.begin(), numbers.end()};
}

FamilyRule::FamilyRule(FamilyRules rules, const std::string& name, const VariableValues& inputs,
                       const DeviceSettings& device)
    : engine_(device),
      signature_(
          declareRule(engine_, rules(engine_).at(name), isField(name) ? name : std::string())) {
    engine_.set(inputs);
}

RuleCase fieldCase(const std::string& field, const VariableValues& inputs, unsigned int value) {
    return {field, inputs, {{field, value}}};
}

void expectCase(FamilyRules rules, const RuleCase& row) {
    FamilyRule rule(rules, row.rule, row.inputs, {});
    rule.runPass();
    for (const auto& [name, value] : row.outputs) {
        EXPECT_EQ(rule.value(name), value) << name;
    }
}

void expectDeclaration(FamilyRules rules, const DeclaredNames& row) {
    const FamilyRule rule(rules, row.rule, {}, {});
    const sable_lanecfg::ruleSignature& declared = rule.signature();
    EXPECT_EQ(declared.inputs, row.inputs);
    const std::vector<std::string> ownField{row.rule};
    EXPECT_EQ(declared.outputs, row.outputs.empty() ? ownField : row.outputs);
}

std::string caseName(const testing::TestParamInfo<RuleCase>& info) {
    std::string name = info.param.rule;
    for (char& letter : name) {
        letter = std::isalnum(static_cast<unsigned char>(letter)) != 0 ? letter : '_';
    }
    return name + "_" + std::to_string(info.index);
}

void PrintTo(const RuleCase& row, std::ostream* output) {
    *output << row.rule << " of";
    for (const auto& [name, value] : row.inputs) {
        *output << ' ' << name << '=' << testing::PrintToString(value);
    }
}

void append(std::vector<RuleCase>& cases, const std::vector<RuleCase>& others) {
    cases.insert(cases.end(), others.begin(), others.end());
}

}  // namespace lanecfg_test
