#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

/// Descriptions of both PLLs by both sides, all of them different.
VariableValues descriptions() {
    return {{"TX_LCPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>{10.3125, 8.0}},
            {"RX_LCPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>{12.5}},
            {"TX_RPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>{5.0, 4.5}},
            {"RX_RPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>{6.25}},
            {"TX_LCPLL_REFCLK_FREQUENCY", 156.25},
            {"RX_LCPLL_REFCLK_FREQUENCY", 125.0},
            {"TX_RPLL_REFCLK_FREQUENCY", 100.0},
            {"RX_RPLL_REFCLK_FREQUENCY", 200.0},
            {"TX_LCPLL_POWERDOWN", true},
            {"RX_LCPLL_POWERDOWN", false},
            {"TX_RPLL_POWERDOWN", false},
            {"RX_RPLL_POWERDOWN", true},
            {"TX_LCPLL_REFCLK_SOURCE", "R0"s},
            {"RX_LCPLL_REFCLK_SOURCE", "R1"s},
            {"TX_RPLL_REFCLK_SOURCE", "R2"s},
            {"RX_RPLL_REFCLK_SOURCE", "R3"s},
            {"TX_LCPLL_REFCLK_ID", 10U},
            {"RX_LCPLL_REFCLK_ID", 11U},
            {"TX_RPLL_REFCLK_ID", 12U},
            {"RX_RPLL_REFCLK_ID", 13U}};
}

struct SelectionCase {
    std::string name;
    bool transmitInUse;
    std::string transmitPll;
    bool dividerEnabled;
    std::string dividerSource;
    bool lcpllFromTransmit;
    bool rpllFromTransmit;
};

void PrintTo(const SelectionCase& row, std::ostream* output) {
    *output << row.name;
}

class SxbPllInputSelection : public testing::TestWithParam<SelectionCase> {
  protected:
    SxbPllInputSelection() : rule("PLL input selection") {
        rule.set(with(descriptions(), {{"TX_IN_USE", GetParam().transmitInUse},
                                       {"TX_PLL_TYPE", GetParam().transmitPll},
                                       {"TXPROGDIV_FREQ_ENABLE", GetParam().dividerEnabled},
                                       {"TXPROGDIV_FREQ_SOURCE", GetParam().dividerSource}}));
        rule.runPass();
    }

    void expect(const std::string& name, const ruleValue& expected) {
        EXPECT_EQ(rule.value(name), expected) << name;
    }

    RuleAlone rule;
};

TEST_P(SxbPllInputSelection, TakesTheLcpllFromItsSide) {
    const bool isTransmit = GetParam().lcpllFromTransmit;
    expect("INT_LCPLL_PLLCLKOUT_VECTOR",
           isTransmit ? std::vector<double>{10.3125, 8.0} : std::vector<double>{12.5});
    expect("INT_LCPLL_REFCLKFREQ", isTransmit ? 156.25 : 125.0);
    expect("INT_LCPLL_POWERDOWN", isTransmit);
    expect("INT_LCPLL_REFCLK_SOURCE", isTransmit ? "R0"s : "R1"s);
    expect("INT_LCPLL_REFCLK_ID", isTransmit ? 10U : 11U);
}

TEST_P(SxbPllInputSelection, TakesTheRpllFromItsSide) {
    const bool isTransmit = GetParam().rpllFromTransmit;
    expect("INT_RPLL_PLLCLKOUT_VECTOR",
           isTransmit ? std::vector<double>{5.0, 4.5} : std::vector<double>{6.25});
    expect("INT_RPLL_REFCLKFREQ", isTransmit ? 100.0 : 200.0);
    expect("INT_RPLL_POWERDOWN", !isTransmit);
    expect("INT_RPLL_REFCLK_SOURCE", isTransmit ? "R2"s : "R3"s);
    expect("INT_RPLL_REFCLK_ID", isTransmit ? 12U : 13U);
}

INSTANTIATE_TEST_SUITE_P(
    Of, SxbPllInputSelection,
    testing::Values(
        SelectionCase{"SerialLcpll", true, "LCPLL", false, "RPLL", true, false},
        SelectionCase{"SerialRpll", true, "RPLL", false, "LCPLL", false, true},
        SelectionCase{"SerialLcpllAndDividerOfTheSame", true, "LCPLL", true, "LCPLL", true, false},
        SelectionCase{"SerialLcpllAndDividerOfTheRpll", true, "LCPLL", true, "RPLL", true, true},
        SelectionCase{"SerialRpllAndDividerOfTheLcpll", true, "RPLL", true, "LCPLL", true, true},
        SelectionCase{"SerialRpllAndDividerOfTheSame", true, "RPLL", true, "RPLL", false, true},
        SelectionCase{"AnotherWord", true, "", true, "", false, false},
        SelectionCase{"UnusedTransmitter", false, "LCPLL", true, "RPLL", false, false}),
    [](const auto& row) { return row.param.name; });

TEST(SxbPllInputSelectionAlone, NeedsNoDividerWithoutATransmitter) {
    RuleAlone rule("PLL input selection");
    rule.set(with(descriptions(), {{"TX_IN_USE", false}}));
    rule.runPass();
    EXPECT_EQ(rule.value("INT_LCPLL_REFCLK_SOURCE"), ruleValue("R1"s));
}

TEST(SxbPllInputSelectionAlone, AnUnservedPllHasNoClocks) {
    RuleAlone rule("PLL input selection");
    rule.set(with(descriptions(), {{"TX_IN_USE", false},
                                   {"RX_RPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>()}}));
    rule.runPass();
    EXPECT_EQ(rule.value("INT_RPLL_PLLCLKOUT_VECTOR"), ruleValue(std::vector<double>()));
}

}  // namespace
}  // namespace lanecfg_test
