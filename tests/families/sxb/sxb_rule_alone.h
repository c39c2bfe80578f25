#pragma once

#include "support/family_rule.h"

#include <gtest/gtest.h>

#include <string>

namespace lanecfg_test {

/// The rules of the three SXB sets.
sable_lanecfg::logicRules rulesOfSxb(const sable_lanecfg::gt_rule_engine& engine);

/// A rule of any of the three sets, alone on an engine.
class RuleAlone : public FamilyRule {
  public:
    explicit RuleAlone(const std::string& name, const VariableValues& inputs = {},
                       const DeviceSettings& device = {})
        : FamilyRule(rulesOfSxb, name, inputs, device) {}
};

/// The test that every case is what its rule gives stands with this class; the file of a topic
/// instantiates it with its cases.
class SxbLaneRule : public testing::TestWithParam<RuleCase> {};

/// The same for what a rule declares.
class SxbLaneDeclaration : public testing::TestWithParam<DeclaredNames> {};

}  // namespace lanecfg_test
