#include "sxb_rule_alone.h"

#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_rules.h"
#include "sxb_declared_names.h"

#include <cctype>
#include <set>

namespace lanecfg_test {

namespace {

sable_lanecfg::ruleDeclarer ruleOfAnySet(const std::string& name, const LaneEngine& engine) {
    sable_lanecfg::logicRules rules = sable_lanecfg::sxbRxLogicRules();
    rules.merge(sable_lanecfg::sxbTxLogicRules());
    rules.merge(sable_lanecfg::sxbPllLogicRules(engine));
    return rules.at(name);
}

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

RuleAlone::RuleAlone(const std::string& name, const VariableValues& inputs,
                     const DeviceSettings& device)
    : engine_(device),
      signature_(
          declareRule(engine_, ruleOfAnySet(name, engine_), isField(name) ? name : std::string())) {
    engine_.set(inputs);
}

RuleCase fieldCase(const std::string& field, const VariableValues& inputs, unsigned int value) {
    return {field, inputs, {{field, value}}};
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

TEST_P(SxbLaneRule, GivesWhatItsInputsCallFor) {
    RuleAlone rule(GetParam().rule, GetParam().inputs);
    rule.runPass();
    for (const auto& [name, value] : GetParam().outputs) {
        EXPECT_EQ(rule.value(name), value) << name;
    }
}

TEST_P(SxbLaneDeclaration, HasTheNamesInOrder) {
    const RuleAlone rule(GetParam().rule);
    const sable_lanecfg::ruleSignature& declared = rule.signature();
    EXPECT_EQ(declared.inputs, GetParam().inputs);
    const std::vector<std::string> ownField{GetParam().rule};
    EXPECT_EQ(declared.outputs, GetParam().outputs.empty() ? ownField : GetParam().outputs);
}

}  // namespace lanecfg_test
