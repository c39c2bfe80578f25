#pragma once

#include "support/family_rule.h"

#include <gtest/gtest.h>

namespace lanecfg_test {

/// The rules of the three SXC sets.
sable_lanecfg::logicRules rulesOfSxc(const sable_lanecfg::gt_rule_engine& engine);

/// Values that a receiver on the PCIe rates with settings of their own adds to others.
VariableValues pcieReceiver(double lineRate, unsigned int internalWidth);

/// The tests of these stand with them; the file of a topic instantiates them.
class SxcRule : public testing::TestWithParam<RuleCase> {};
class SxcDeclaration : public testing::TestWithParam<DeclaredNames> {};

}  // namespace lanecfg_test
