#include "sxb_field_case.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

/// A pin with its value in the four modes.
struct PinRow {
    std::string field;
    unsigned int neither;
    unsigned int xpu;
    unsigned int pcie;
    unsigned int both;
};

VariableValues modes(float xpu, bool pcie) {
    return {{"XPU_MODE", xpu}, {"PCIE_ENABLE", pcie}};
}

std::vector<FieldCase> pinCases() {
    const std::vector<PinRow> rows{{"FABRIC_INTF_CFG0.PERSTB_PIN_EN", 0, 1, 1, 1},
                                   {"PIPE_CTRL_CFG1.PIPE_FUND_RST_EN", 0, 1, 1, 1},
                                   {"FABRIC_INTF_CFG0.USRRDY_PIN_EN", 1, 0, 1, 1},
                                   {"FABRIC_INTF_CFG2.A_TXUSRRDY", 0, 1, 0, 0},
                                   {"FABRIC_INTF_CFG2.A_RXUSRRDY", 0, 1, 0, 0},
                                   {"PIPE_CTRL_CFG3.PIPE_FUND_RST_UB_BYPASS", 0, 1, 0, 0},
                                   {"PIN_CFG0.UCORE_FABRIC_PIN_EN", 1, 1, 0, 1},
                                   {"PIN_CFG0.GTREFCLK0_PD_PIN_EN", 1, 0, 1, 0},
                                   {"PIN_CFG0.GTREFCLK1_PD_PIN_EN", 1, 0, 1, 0},
                                   {"FABRIC_INTF_CFG0.APT_PIN_EN", 1, 1, 0, 0}};
    std::vector<FieldCase> cases;
    for (const PinRow& row : rows) {
        append(cases, {{row.field, modes(0.0F, false), row.neither},
                       {row.field, modes(1.0F, false), row.xpu},
                       {row.field, modes(0.25F, false), row.xpu},
                       {row.field, modes(0.0F, true), row.pcie},
                       {row.field, modes(2.0F, true), row.both}});
    }
    return cases;
}

std::vector<FieldCase> useCases() {
    return {{"FABRIC_INTF_CFG1.A_RXPD", {{"RX_IN_USE", true}}, 0},
            {"FABRIC_INTF_CFG1.A_RXPD", {{"RX_IN_USE", false}}, 3},
            {"FABRIC_INTF_CFG3.A_TXPD", {{"TX_IN_USE", true}}, 0},
            {"FABRIC_INTF_CFG3.A_TXPD", {{"TX_IN_USE", false}}, 3},
            {"FABRIC_INTF_CFG1.A_RXLPMEN", {{"INT_RX_EQ_MODE", "DFE"s}}, 0},
            {"FABRIC_INTF_CFG1.A_RXLPMEN", {{"INT_RX_EQ_MODE", "LPM"s}}, 1},
            {"FABRIC_INTF_CFG1.A_RXLPMEN", {{"INT_RX_EQ_MODE", ""s}}, 1}};
}

INSTANTIATE_TEST_SUITE_P(Pins, SxbLaneRule, testing::ValuesIn(ruleCases(pinCases())), caseName);
INSTANTIATE_TEST_SUITE_P(Use, SxbLaneRule, testing::ValuesIn(ruleCases(useCases())), caseName);

/// The reset enables of one channel with inputs that set them on its own lane, and each change
/// that clears one.
struct ResetRow {
    std::array<std::string, 4> fields;
    VariableValues inputs;
    std::vector<VariableValues> changes;
};

std::vector<ResetRow> resetRows() {
    return {{{"MST_RESET_CFG.CH0_LCPLL_RESET_EN", "MST_RESET_CFG.CH1_LCPLL_RESET_EN",
              "MST_RESET_CFG.CH2_LCPLL_RESET_EN", "MST_RESET_CFG.CH3_LCPLL_RESET_EN"},
             {{"TX_PLL_TYPE", "LCPLL"s}, {"INT_LCPLL_POWERDOWN", false}},
             {{{"TX_PLL_TYPE", "RPLL"s}}, {{"INT_LCPLL_POWERDOWN", true}}}},
            {{"MST_RESET_CFG.CH0_RPLL_RESET_EN", "MST_RESET_CFG.CH1_RPLL_RESET_EN",
              "MST_RESET_CFG.CH2_RPLL_RESET_EN", "MST_RESET_CFG.CH3_RPLL_RESET_EN"},
             {{"TX_PLL_TYPE", "RPLL"s}, {"INT_RPLL_POWERDOWN", false}},
             {{{"TX_PLL_TYPE", "LCPLL"s}}, {{"INT_RPLL_POWERDOWN", true}}}},
            {{"MST_RESET_CFG.CH0_RX_LCPLL_RESET_EN", "MST_RESET_CFG.CH1_RX_LCPLL_RESET_EN",
              "MST_RESET_CFG.CH2_RX_LCPLL_RESET_EN", "MST_RESET_CFG.CH3_RX_LCPLL_RESET_EN"},
             {{"RX_PLL_TYPE", "LCPLL"s}, {"RX_IN_USE", true}, {"INT_LCPLL_POWERDOWN", false}},
             {{{"RX_PLL_TYPE", "RPLL"s}}, {{"RX_IN_USE", false}}, {{"INT_LCPLL_POWERDOWN", true}}}},
            {{"CTRL_RSV_CFG0.CH0_RX_RPLL_RESET_EN", "CTRL_RSV_CFG0.CH1_RX_RPLL_RESET_EN",
              "CTRL_RSV_CFG0.CH2_RX_RPLL_RESET_EN", "CTRL_RSV_CFG0.CH3_RX_RPLL_RESET_EN"},
             {{"RX_PLL_TYPE", "RPLL"s}, {"INT_RPLL_POWERDOWN", false}},
             {{{"RX_PLL_TYPE", "LCPLL"s}}, {{"INT_RPLL_POWERDOWN", true}}}},
            {{"MST_RESET_CFG.CH0_TX_PROGDIV_RESET_EN", "MST_RESET_CFG.CH1_TX_PROGDIV_RESET_EN",
              "MST_RESET_CFG.CH2_TX_PROGDIV_RESET_EN", "MST_RESET_CFG.CH3_TX_PROGDIV_RESET_EN"},
             {{"TX_OUTCLK_SOURCE", "TXPROGDIVCLK"s}},
             {{{"TX_OUTCLK_SOURCE", "TXOUTCLKPMA"s}}, {{"TX_OUTCLK_SOURCE", "RXPROGDIVCLK"s}}}},
            {{"MST_RESET_CFG.CH0_RX_PROGDIV_RESET_EN", "MST_RESET_CFG.CH1_RX_PROGDIV_RESET_EN",
              "MST_RESET_CFG.CH2_RX_PROGDIV_RESET_EN", "MST_RESET_CFG.CH3_RX_PROGDIV_RESET_EN"},
             {{"RX_OUTCLK_SOURCE", "RXPROGDIVCLK"s}},
             {{{"RX_OUTCLK_SOURCE", "RXOUTCLKPMA"s}}, {{"RX_OUTCLK_SOURCE", "TXPROGDIVCLK"s}}}}};
}

std::vector<FieldCase> resetCases() {
    std::vector<FieldCase> cases;
    for (const ResetRow& row : resetRows()) {
        for (unsigned int channel = 0; channel < 4; ++channel) {
            for (unsigned int lane = 0; lane < 5; ++lane) {
                cases.push_back({row.fields[channel], with(row.inputs, {{"LaneNum", lane}}),
                                 lane == channel ? 1U : 0U});
            }
            for (const VariableValues& change : row.changes) {
                cases.push_back({row.fields[channel],
                                 with(with(row.inputs, change), {{"LaneNum", channel}}), 0});
            }
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(ResetEnables, SxbLaneRule, testing::ValuesIn(ruleCases(resetCases())),
                         caseName);

}  // namespace
}  // namespace lanecfg_test
