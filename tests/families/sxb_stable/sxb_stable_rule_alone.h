#pragma once

#include "support/family_rule.h"

#include <gtest/gtest.h>

#include <string>

namespace lanecfg_test {

/// The rules of the three frozen SXB sets.
sable_lanecfg::logicRules rulesOfSxbStable(const sable_lanecfg::gt_rule_engine& engine);

/// A rule of any of the three sets, alone on an engine.
class StableRule : public FamilyRule {
  public:
    explicit StableRule(const std::string& name, const VariableValues& inputs = {})
        : FamilyRule(rulesOfSxbStable, name, inputs, {}) {}
};

/// The test that every case is what its rule gives stands with this class; the file of a topic
/// instantiates it with its cases.
class SxbStableRule : public testing::TestWithParam<RuleCase> {};

/// The same for what a rule declares.
class SxbStableDeclaration : public testing::TestWithParam<DeclaredNames> {};

}  // namespace lanecfg_test
