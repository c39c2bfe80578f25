#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_pll_rules.h"
#include "sxb_rule_alone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::LaneEngine;
using lanecfg_test::ruleValue;
using namespace std::string_literals;

/// A register in the order of registration, with the fields that have rules of their own.
struct RegisteredGroup {
    std::string registerName;
    int fields;
};

const std::vector<RegisteredGroup>& groupsAfterTheSolvers() {
    static const std::vector<RegisteredGroup> groups{
        {"A_CFG1", 4},
        {"HSDIST_CFG", 4},
        {"LCPLL_CFG0", 6},
        {"LCPLL_CFG2", 15},
        {"RPLL_CFG2", 14},
        {"A_CFG2", 6},
        {"A_CFG3", 6},
        {"A_CFG4", 6},
        {"A_CFG5", 6},
        {"A_CFG0", 10},
        {"LCPLL_CFG1", 13},
        {"LCPLL_LGC_CFG0", 17},
        {"LCPLL_LGC_CFG1", 13},
        {"LCPLL_LGC_CFG2", 2},
        {"RPLL_CFG0", 7},
        {"RPLL_CFG1", 15},
        {"RPLL_LGC_CFG0", 17},
        {"RPLL_LGC_CFG1", 13},
        {"RPLL_LGC_CFG2", 2},
        {"CFG0", 4},
        {"CFG1", 7},
        {"CFG2", 9},
        {"CFG3", 5},
        {"CFG4", 11},
        {"CFG5", 4},
        {"", 2},
        {"PIPE_CTRL_CFG7", 15},
        {"PIPE_CTRL_CFG3", 12},
        {"PIPE_CTRL_CFG8", 12},
        {"PIPE_CTRL_CFG0", 17},
        {"PIPE_CTRL_CFG1", 31},
        {"PIPE_CTRL_CFG10", 11},
        {"PIPE_CTRL_CFG2", 6},
        {"PIPE_CTRL_CFG4", 24},
        {"PIPE_CTRL_CFG5", 14},
        {"PIPE_CTRL_CFG6", 12},
        {"PIPE_CTRL_CFG9", 14},
        {"RESET_BYP_HDSHK_CFG", 10},
        {"RESET_CFG", 20},
        {"RESET_LOOPER_ID_CFG", 8},
        {"RESET_LOOP_ID_CFG0", 4},
        {"RESET_LOOP_ID_CFG1", 8},
        {"RESET_LOOP_ID_CFG2", 4},
        {"RESET_TIME_CFG0", 5},
        {"RESET_TIME_CFG1", 6},
        {"RESET_TIME_CFG2", 6},
        {"RESET_TIME_CFG3", 8},
        {"POR_CFG", 6},
        {"FABRIC_INTF_CFG0", 32},
        {"FABRIC_INTF_CFG1", 16},
        {"FABRIC_INTF_CFG2", 18},
        {"FABRIC_INTF_CFG3", 27},
        {"FABRIC_INTF_CFG4", 19},
        {"FABRIC_INTF_CFG5", 10},
        {"PIN_CFG0", 23},
        {"CHCLK_ILO_CFG", 20},
        {"CHCLK_MISC_CFG", 13},
        {"CHCLK_RSV_CFG", 0},
        {"CHCLK_RXCAL_CFG", 19},
        {"CHCLK_RXCAL_CFG1", 2},
        {"CHCLK_RXCAL_CFG2", 0},
        {"CHCLK_RXPI_CFG", 11},
        {"CHCLK_TXCAL_CFG", 13},
        {"CHCLK_TXPI_CFG0", 15},
        {"CHL_RSV_CFG0", 9},
        {"CHL_RSV_CFG1", 0},
        {"CHL_RSV_CFG2", 0},
        {"CHL_RSV_CFG3", 0},
        {"CHL_RSV_CFG4", 0},
        {"CTRL_RSV_CFG0", 12},
        {"CTRL_RSV_CFG1", 6},
        {"DA_CFG", 14},
        {"MONITOR_CFG", 9},
        {"MST_RESET_CFG", 32},
        {"UB_CFG0", 7},
        {"LCPLL_REFCLK_IPS", 10},
        {"RPLL_REFCLK_IPS", 10},
    };
    return groups;
}

class SxbPllRegistration : public testing::Test {
  protected:
    SxbPllRegistration() { registerSxbPllRules(engine); }

    std::set<int> fieldNumbers(const std::string& registerName) {
        std::set<int> numbers;
        const std::string prefix = registerName + ".";
        for (const auto& [name, info] : engine.varMap) {
            if (name.compare(0, prefix.size(), prefix) == 0 && info.ruleNumber) {
                numbers.insert(*info.ruleNumber);
            }
        }
        return numbers;
    }

    LaneEngine engine;
};

TEST_F(SxbPllRegistration, GivesOut898Numbers) {
    std::vector<int> expected(898);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(engine.ruleNumbers(), expected);
}

TEST_F(SxbPllRegistration, BeginsWithTheInputsTheDividersAndTheSolvers) {
    EXPECT_EQ(engine.ruleNumber("INT_LCPLL_PLLCLKOUT_VECTOR"), 0);
    EXPECT_EQ(engine.ruleNumber("INT_TX_OUTDIV"), 1);
    EXPECT_EQ(engine.ruleNumber("INT_RX_OUTDIV"), 1);
    EXPECT_EQ(engine.ruleNumber("INT_LCPLL_REF_DIV"), 2);
    EXPECT_EQ(engine.ruleNumber("INT_RPLL_REF_DIV"), 3);
    EXPECT_EQ(engine.ruleNumber("A_CFG1.A_HS0_LCPLLFBDIV"), 4);
}

TEST_F(SxbPllRegistration, NumbersRegistersInTheirOrderAndEachWordBehindItsFields) {
    int next = 4;
    for (const RegisteredGroup& group : groupsAfterTheSolvers()) {
        if (group.registerName.empty()) {
            EXPECT_EQ(engine.ruleNumber("INT_TXPROGDIV_SEL"), next);
            EXPECT_EQ(engine.ruleNumber("INT_RXPROGDIV_SEL"), next + 1);
            next += group.fields;
            continue;
        }
        std::set<int> expected;
        for (int field = 0; field < group.fields; ++field) {
            expected.insert(next++);
        }
        EXPECT_EQ(fieldNumbers(group.registerName), expected) << group.registerName;
        EXPECT_EQ(engine.ruleNumber(group.registerName), next++) << group.registerName;
    }
    EXPECT_EQ(next, 898);
}

TEST_F(SxbPllRegistration, SeventyWordsAreComposedAndSixAreConstant) {
    const auto& groups = groupsAfterTheSolvers();
    const auto constantWords = std::count_if(groups.begin(), groups.end(),
                                             [](const auto& group) { return group.fields == 0; });
    EXPECT_EQ(constantWords, 6);
    // One group is the two divider searches.
    EXPECT_EQ(groups.size() - 1U, 76U);
}

struct StartValue {
    std::string name;
    ruleValue value;
};

void PrintTo(const StartValue& row, std::ostream* output) {
    *output << row.name;
}

class SxbPllStartValue : public testing::TestWithParam<StartValue> {};

TEST_P(SxbPllStartValue, IsEnteredWhereTheVariableIsAbsent) {
    LaneEngine engine;
    enterSxbPllStartValues(engine);
    EXPECT_EQ(engine.value(GetParam().name), GetParam().value);
}

TEST_P(SxbPllStartValue, IsEnteredWhereTheVariableIsBlank) {
    LaneEngine engine;
    engine.setVal(GetParam().name, boost::blank());
    registerSxbPllRules(engine);
    EXPECT_EQ(engine.value(GetParam().name), GetParam().value);
}

TEST_P(SxbPllStartValue, LeavesAValueThatIsThere) {
    LaneEngine engine;
    engine.setVal(GetParam().name, "present"s);
    registerSxbPllRules(engine);
    EXPECT_EQ(engine.value(GetParam().name), ruleValue("present"s));
}

INSTANTIATE_TEST_SUITE_P(
    OfAnIdlePll, SxbPllStartValue,
    testing::Values(StartValue{"TX_LCPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>()},
                    StartValue{"TX_RPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>()},
                    StartValue{"RX_LCPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>()},
                    StartValue{"RX_RPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>()},
                    StartValue{"INT_LCPLL_REF_DIV", 1U}, StartValue{"INT_RPLL_REF_DIV", 1U},
                    StartValue{"INT_LCPLL_FBDIV", 80U}, StartValue{"INT_RPLL_FBDIV", 80U},
                    StartValue{"INT_LCPLL_PLLCLKOUT", 0.0}, StartValue{"INT_RPLL_PLLCLKOUT", 0.0},
                    StartValue{"INT_LCPLL_SDMDATA", 0U}, StartValue{"INT_RPLL_SDMDATA", 0U},
                    StartValue{"INT_LCPLLCLKOUTRATE", "FULL"s}, StartValue{"INT_DOUBLER_EN", 0U}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace sable_lanecfg
