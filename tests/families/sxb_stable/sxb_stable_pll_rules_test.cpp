#include "sxb_stable_rule_alone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

/// What the selection makes of a receive PLL of 10.3125 GHz at 156.25 MHz from R3.
RuleCase selection(const std::string& type, const VariableValues& lcpll,
                   const VariableValues& rpll) {
    const VariableValues idle{{"INT_LCPLL_PLLCLKOUT_VECTOR", std::vector<double>()},
                              {"INT_LCPLL_REFCLKFREQ", 0.0},
                              {"INT_LCPLL_POWERDOWN", true},
                              {"INT_LCPLL_REFCLK_SOURCE", "R0"s},
                              {"INT_LCPLL_PLLCLKOUT", 0.0},
                              {"INT_RPLL_PLLCLKOUT_VECTOR", std::vector<double>()},
                              {"INT_RPLL_REFCLKFREQ", 0.0},
                              {"INT_RPLL_POWERDOWN", true},
                              {"INT_RPLL_REFCLK_SOURCE", "R0"s},
                              {"INT_RPLL_PLLCLKOUT", 0.0},
                              {"INT_LCPLL_REFCLK_ID", 0U},
                              {"INT_RPLL_REFCLK_ID", 0U}};
    return {"PLL input selection",
            {{"RX_PLL_TYPE", type},
             {"RX_PLL_VCO", 10.3125},
             {"RX_PLL_REFCLK_FREQUENCY", 156.25},
             {"RX_PLL_POWERDOWN", false},
             {"RX_PLL_REFCLK_SOURCE", "R3"s}},
            with(idle, with(lcpll, rpll))};
}

VariableValues fed(const std::string& pll) {
    return {{"INT_" + pll + "_PLLCLKOUT_VECTOR", std::vector<double>{10.3125}},
            {"INT_" + pll + "_REFCLKFREQ", 156.25},
            {"INT_" + pll + "_POWERDOWN", false},
            {"INT_" + pll + "_REFCLK_SOURCE", "R3"s},
            {"INT_" + pll + "_PLLCLKOUT", 10.3125}};
}

INSTANTIATE_TEST_SUITE_P(InputSelection, SxbStableRule,
                         testing::Values(selection("LCPLL", fed("LCPLL"), {}),
                                         selection("RPLL", {}, fed("RPLL")),
                                         selection("none", {}, {})),
                         caseName);

TEST(SxbStableInputSelection, PassesThePowerDownOn) {
    StableRule rule("PLL input selection", {{"RX_PLL_TYPE", "RPLL"s},
                                            {"RX_PLL_VCO", 0.0},
                                            {"RX_PLL_REFCLK_FREQUENCY", 0.0},
                                            {"RX_PLL_POWERDOWN", true},
                                            {"RX_PLL_REFCLK_SOURCE", "R0"s}});
    rule.runPass();
    EXPECT_TRUE(rule.valueOf<bool>("INT_RPLL_POWERDOWN"));
    EXPECT_EQ(rule.value("INT_RPLL_PLLCLKOUT_VECTOR"), ruleValue(std::vector<double>{0.0}));
}

/// Dividers that no rule gives.
const VariableValues dividersBefore{{"INT_LCPLL_REF_DIV", 9U},
                                    {"INT_LCPLL_FBDIV", 999U},
                                    {"INT_RPLL_REF_DIV", 9U},
                                    {"INT_RPLL_FBDIV", 999U}};

RuleCase lcpllCase(const std::vector<double>& clocks, double reference, unsigned int divider,
                   unsigned int feedback) {
    return {"LCPLL solver",
            with(dividersBefore,
                 {{"INT_LCPLL_PLLCLKOUT_VECTOR", clocks}, {"INT_LCPLL_REFCLKFREQ", reference}}),
            {{"INT_LCPLL_REF_DIV", divider}, {"INT_LCPLL_FBDIV", feedback}}};
}

INSTANTIATE_TEST_SUITE_P(
    LcpllSolver, SxbStableRule,
    testing::Values(
        // 10312.5 MHz is 66 times the reference.
        lcpllCase({10.3125}, 156.25, 1, 66),
        // Up to 8.1875 GHz the oscillator runs twice as fast: 10312.5 and 16375 MHz.
        lcpllCase({5.15625}, 156.25, 1, 66), lcpllCase({8.1875}, 125.0, 1, 131),
        // Above it does not: 8250 MHz is 66 times 125 MHz.
        lcpllCase({8.25}, 125.0, 1, 66),
        // 66.5 times; the reference has to be halved.
        lcpllCase({10.390625}, 156.25, 2, 133),
        // The lowest and the highest feedback divider, and one beyond each.
        lcpllCase({4.0625}, 625.0, 1, 13), lcpllCase({16.0}, 100.0, 1, 160),
        lcpllCase({3.75}, 625.0, 2, 24), lcpllCase({8.05}, 100.0, 9, 999),
        // The second clock when the first has no dividers.
        lcpllCase({10.1, 10.3125}, 156.25, 1, 66),
        // No fraction is looked for, and no clock changes nothing.
        lcpllCase({10.1}, 156.25, 9, 999), lcpllCase({}, 156.25, 9, 999)),
    caseName);

TEST(SxbStableLcpllSolver, LeavesNoCandidateOutForPcie) {
    StableRule rule("LCPLL solver", {{"INT_LCPLL_PLLCLKOUT_VECTOR", std::vector<double>{8.0}},
                                     {"INT_LCPLL_REFCLKFREQ", 100.0},
                                     {"PCIE_ENABLE", true},
                                     {"TX_LINE_RATE", 8.0}});
    rule.runPass();
    // 8 GHz is half of the oscillator's 16.
    EXPECT_EQ(rule.value("INT_LCPLL_FBDIV"), ruleValue(160U));
}

TEST(SxbStableLcpllSolver, NeedsNoLimitOfTheDevice) {
    StableRule rule("LCPLL solver", {{"INT_LCPLL_PLLCLKOUT_VECTOR", std::vector<double>{10.1}},
                                     {"INT_LCPLL_REFCLKFREQ", 156.25}});
    EXPECT_NO_THROW(rule.runPass());
}

TEST(SxbStableLcpllSolver, WritesNothingButTheDividers) {
    StableRule rule("LCPLL solver", {{"INT_LCPLL_PLLCLKOUT_VECTOR", std::vector<double>{5.15625}},
                                     {"INT_LCPLL_REFCLKFREQ", 156.25},
                                     {"INT_LCPLLCLKOUTRATE", "FULL"s},
                                     {"INT_LCPLL_SDMDATA", 0U}});
    rule.runPass();
    EXPECT_EQ(rule.value("INT_LCPLLCLKOUTRATE"), ruleValue("FULL"s));
    EXPECT_EQ(rule.value("INT_LCPLL_SDMDATA"), ruleValue(0U));
    EXPECT_EQ(rule.value("INT_LCPLL_PLLCLKOUT"), ruleValue());
}

/// An RPLL that nothing uses for data.
const VariableValues freeRpll{{"RPLL_USED_FOR_SERIAL_DATA_RATE0", false},
                              {"TX_IN_USE", true},
                              {"RX_IN_USE", true},
                              {"TX_PLL_TYPE", "LCPLL"s},
                              {"RX_PLL_TYPE", "LCPLL"s}};

RuleCase rpllCase(const VariableValues& use, const std::vector<double>& clocks, double reference,
                  unsigned int divider, unsigned int feedback) {
    return {"RPLL solver",
            with(with(dividersBefore, with(freeRpll, use)),
                 {{"INT_RPLL_PLLCLKOUT_VECTOR", clocks}, {"INT_RPLL_REFCLKFREQ", reference}}),
            {{"INT_RPLL_REF_DIV", divider}, {"INT_RPLL_FBDIV", feedback}}};
}

INSTANTIATE_TEST_SUITE_P(
    RpllSolver, SxbStableRule,
    testing::Values(
        // 5 GHz is 40 times 125 MHz, which only an RPLL that serves no data divides by.
        rpllCase({}, {5.0}, 125.0, 1, 40),
        rpllCase({{"RX_PLL_TYPE", "RPLL"s}}, {5.0}, 125.0, 2, 80),
        rpllCase({{"TX_PLL_TYPE", "RPLL"s}}, {5.0}, 125.0, 2, 80),
        rpllCase({{"RPLL_USED_FOR_SERIAL_DATA_RATE0", true}}, {5.0}, 125.0, 2, 80),
        rpllCase({{"RX_PLL_TYPE", "RPLL"s}, {"RX_IN_USE", false}}, {5.0}, 125.0, 1, 40),
        rpllCase({{"TX_PLL_TYPE", "RPLL"s}, {"TX_IN_USE", false}}, {5.0}, 125.0, 1, 40),
        // 25 is the last of the list before 80: 26 has to be made with a divider.
        rpllCase({{"RX_PLL_TYPE", "RPLL"s}}, {6.25}, 250.0, 1, 25),
        rpllCase({{"RX_PLL_TYPE", "RPLL"s}}, {6.5}, 250.0, 9, 999),
        // The ends of the free list: 5 and 125, and one beyond.
        rpllCase({}, {4.0}, 800.0, 1, 5), rpllCase({}, {6.25}, 50.0, 1, 125),
        rpllCase({}, {6.3}, 50.0, 9, 999),
        // The second clock; no fraction, no clock.
        rpllCase({}, {5.01, 5.0}, 125.0, 1, 40), rpllCase({}, {5.01}, 125.0, 9, 999),
        rpllCase({}, {}, 125.0, 9, 999)),
    caseName);

/// The pipe clock's buffer divides the programmable clock down to 125 MHz.
std::vector<RuleCase> pipeClockCases() {
    std::vector<RuleCase> cases;
    const auto add = [&cases](bool pcie, double clock, unsigned int field) {
        const VariableValues inputs{{"PCIE_ENABLE", pcie}, {"TXPROGDIV_FREQ_VAL", clock}};
        cases.push_back(fieldCase("PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK", inputs, field));
        cases.push_back(
            {"pipe clock divider",
             inputs,
             {{"INT_BUFGTDIV_G1_PIPECLK", field}, {"PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK", field}}});
    };
    add(true, 1000.0, 7);
    add(true, 312.5, 1);
    add(false, 1000.0, 0);
    return cases;
}

INSTANTIATE_TEST_SUITE_P(PipeClock, SxbStableRule, testing::ValuesIn(pipeClockCases()), caseName);

/// The selector code, whatever dual the lane is in.
std::vector<RuleCase> memoryCellCases() {
    const std::vector<std::pair<std::string, unsigned int>> codes{
        {"R0", 1}, {"R1", 2}, {"R2", 3}, {"R3", 4}, {"R4", 5}, {"R5", 6}, {"R6", 7}, {"R7", 0}};
    std::vector<RuleCase> cases;
    for (const auto& [field, pll] : std::vector<std::pair<std::string, std::string>>{
             {"MEMCELLX0C12.HS0_LCPLL_IPS_REFCLK_SEL", "LCPLL"},
             {"MEMCELLX0F12.HS1_LCPLL_IPS_REFCLK_SEL", "LCPLL"},
             {"MEMCELLX0C13.HS0_RPLL_IPS_REFCLK_SEL", "RPLL"},
             {"MEMCELLX0F13.HS1_RPLL_IPS_REFCLK_SEL", "RPLL"}}) {
        const std::string source = "INT_" + pll + "_REFCLK_SOURCE";
        for (const auto& [word, code] : codes) {
            cases.push_back(fieldCase(field, {{source, word}, {"DUAL", code % 2}}, code));
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(MemoryCells, SxbStableRule, testing::ValuesIn(memoryCellCases()),
                         caseName);

INSTANTIATE_TEST_SUITE_P(
    LowPowerEqualiser, SxbStableRule,
    testing::Values(fieldCase("FABRIC_INTF_CFG1.A_RXLPMEN", {{"RX_EQ_MODE", "DFE"s}}, 0),
                    fieldCase("FABRIC_INTF_CFG1.A_RXLPMEN", {{"RX_EQ_MODE", "LPM"s}}, 1),
                    fieldCase("FABRIC_INTF_CFG1.A_RXLPMEN", {{"RX_EQ_MODE", "AUTO"s}}, 1)),
    caseName);

}  // namespace
}  // namespace lanecfg_test
