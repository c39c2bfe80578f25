#include "sxb_field_case.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

VariableValues lcpll(unsigned int fraction, bool pcie, double lineRate) {
    return {{"INT_LCPLL_SDMDATA", fraction}, {"PCIE_ENABLE", pcie}, {"TX_LINE_RATE", lineRate}};
}

std::vector<FieldCase> chargePumpCases() {
    const std::string field = "LCPLL_CFG0.LCPLL_CP";
    return {{field, lcpll(0, false, 10.0), 15},      {field, lcpll(1, false, 10.0), 3},
            {field, lcpll(16777215, false, 8.0), 3}, {field, lcpll(0, false, 2.5), 15},
            {field, lcpll(0, true, 2.5), 255},       {field, lcpll(0, true, 5.0), 255},
            {field, lcpll(0, true, 8.0), 255},       {field, lcpll(0, true, 16.0), 255},
            {field, lcpll(1, true, 16.0), 255},      {field, lcpll(0, true, 10.0), 15},
            {field, lcpll(1, true, 32.0), 3}};
}

std::vector<FieldCase> capacitorCases() {
    const std::string first = "LCPLL_CFG2.LCPLL_LFT_CP1";
    const std::string second = "LCPLL_CFG2.LCPLL_LFT_CP2";
    const std::string resistance = "LCPLL_CFG2.LCPLL_LFT_RP";
    return {{first, lcpll(0, true, 2.5), 0},
            {first, lcpll(0, true, 5.0), 0},
            {first, lcpll(0, true, 8.0), 1},
            {first, lcpll(0, true, 16.0), 1},
            {first, lcpll(0, false, 2.5), 1},
            {first, lcpll(0, false, 5.0), 1},
            {second, {{"INT_LCPLL_SDMDATA", 0U}}, 0},
            {second, {{"INT_LCPLL_SDMDATA", 1U}}, 2},
            {resistance, {{"INT_LCPLL_SDMDATA", 0U}}, 0},
            {resistance, {{"INT_LCPLL_SDMDATA", 5U}}, 1}};
}

std::vector<FieldCase> logicCases() {
    return {{"LCPLL_LGC_CFG1.BYPASS", {{"INT_LCPLL_SDMDATA", 0U}}, 1},
            {"LCPLL_LGC_CFG1.BYPASS", {{"INT_LCPLL_SDMDATA", 1U}}, 0},
            {"RPLL_LGC_CFG1.BYPASS", {{"INT_RPLL_SDMDATA", 0U}}, 1},
            {"RPLL_LGC_CFG1.BYPASS", {{"INT_RPLL_SDMDATA", 9U}}, 0},
            {"LCPLL_LGC_CFG1.PLL_RESET_DLY_TIME", {{"PCIE_ENABLE", true}}, 1},
            {"LCPLL_LGC_CFG1.PLL_RESET_DLY_TIME", {{"PCIE_ENABLE", false}}, 148},
            {"LCPLL_LGC_CFG2.REFCLK_ID", {{"INT_LCPLL_REFCLK_ID", 0U}}, 0},
            {"LCPLL_LGC_CFG2.REFCLK_ID", {{"INT_LCPLL_REFCLK_ID", 21U}}, 21},
            {"RPLL_LGC_CFG2.REFCLK_ID", {{"INT_RPLL_REFCLK_ID", 0U}}, 0},
            {"RPLL_LGC_CFG2.REFCLK_ID", {{"INT_RPLL_REFCLK_ID", 12U}}, 12}};
}

INSTANTIATE_TEST_SUITE_P(LcpllChargePump, SxbLaneRule,
                         testing::ValuesIn(ruleCases(chargePumpCases())), caseName);
INSTANTIATE_TEST_SUITE_P(LcpllCapacitors, SxbLaneRule,
                         testing::ValuesIn(ruleCases(capacitorCases())), caseName);
INSTANTIATE_TEST_SUITE_P(PllLogic, SxbLaneRule, testing::ValuesIn(ruleCases(logicCases())),
                         caseName);

VariableValues oscillator(unsigned int feedback, double clock, const std::string& rate) {
    return {{"PCIE_ENABLE", false},
            {"TX_LINE_RATE", 10.0},
            {"INT_LCPLL_PLLCLKOUT", clock},
            {"INT_LCPLLCLKOUTRATE", rate},
            {"INT_LCPLL_FBDIV", feedback}};
}

struct ResistanceRow {
    std::array<unsigned int, 2> ends;
    std::array<unsigned int, 5> codes;
};

/// Both ends of each row at both ends of each column, GHz.
std::vector<FieldCase> resistanceCases() {
    const std::vector<ResistanceRow> rows{
        {{0, 19}, {80, 178, 178, 0, 0}},   {{20, 39}, {127, 149, 149, 231, 254}},
        {{40, 59}, {78, 92, 74, 104, 80}}, {{60, 79}, {8, 102, 77, 113, 113}},
        {{80, 104}, {60, 67, 8, 118, 90}}, {{105, 139}, {33, 41, 60, 74, 74}},
        {{140, 160}, {0, 50, 63, 78, 78}}, {{161, 400}, {56, 56, 56, 56, 56}}};
    const std::array<std::array<double, 2>, 5> columns{
        {{8.2, 8.999999}, {9.0, 10.999999}, {11.0, 12.999999}, {13.0, 14.999999}, {15.0, 16.375}}};
    std::vector<FieldCase> cases;
    for (const ResistanceRow& row : rows) {
        for (std::size_t column = 0; column < columns.size(); ++column) {
            for (const unsigned int feedback : row.ends) {
                for (const double clock : columns[column]) {
                    cases.push_back({"LCPLL_CFG2.LCPLL_LFT_RZ", oscillator(feedback, clock, "FULL"),
                                     row.codes[column]});
                }
            }
        }
    }
    return cases;
}

std::vector<FieldCase> resistanceOfRateCases() {
    const std::string field = "LCPLL_CFG2.LCPLL_LFT_RZ";
    const auto pcie = [](double lineRate) {
        return with(oscillator(66, 10.3125, "FULL"),
                    {{"PCIE_ENABLE", true}, {"TX_LINE_RATE", lineRate}});
    };
    return {// 6.5 and 7.5 are doubled to 13 and 15.
            {field, oscillator(20, 6.5, "HALF"), 231},
            {field, oscillator(20, 7.5, "HALF"), 254},
            {field, oscillator(20, 4.499999, "HALF"), 127},
            {field, oscillator(20, 6.5, "FULL"), 127},
            {field, pcie(8.0), 16},
            {field, pcie(16.0), 16},
            {field, pcie(2.5), 5},
            {field, pcie(5.0), 5},
            // PCIe at another rate, and those rates without PCIe, are in the table.
            {field, pcie(10.0), 102},
            {field, pcie(32.0), 102},
            {field, with(pcie(8.0), {{"PCIE_ENABLE", false}}), 102},
            {field, with(pcie(2.5), {{"PCIE_ENABLE", false}}), 102}};
}

INSTANTIATE_TEST_SUITE_P(LcpllResistance, SxbLaneRule,
                         testing::ValuesIn(ruleCases(resistanceCases())), caseName);
INSTANTIATE_TEST_SUITE_P(LcpllResistanceOfRates, SxbLaneRule,
                         testing::ValuesIn(ruleCases(resistanceOfRateCases())), caseName);

VariableValues rpll(unsigned int fraction, unsigned int feedback, double clock) {
    return {{"INT_RPLL_SDMDATA", fraction},
            {"INT_RPLL_FBDIV", feedback},
            {"INT_RPLL_PLLCLKOUT", clock}};
}

std::vector<FieldCase> rpllResistanceCases() {
    const std::string field = "RPLL_CFG2.RPLL_IF_CTRL_RZ";
    return {{field, rpll(1, 20, 5.499999), 24}, {field, rpll(1, 100, 4.0), 24},
            {field, rpll(1, 5, 5.5), 42},       {field, rpll(1, 23, 5.5), 42},
            {field, rpll(1, 24, 6.0), 30},      {field, rpll(1, 64, 6.0), 30},
            {field, rpll(1, 65, 6.0), 8},       {field, rpll(1, 66, 6.0), 27},
            {field, rpll(1, 125, 8.0), 27},     {field, rpll(0, 5, 6.0), 30},
            {field, rpll(0, 9, 6.0), 30},       {field, rpll(0, 10, 6.0), 22},
            {field, rpll(0, 25, 4.0), 22},      {field, rpll(0, 26, 4.0), 9},
            {field, rpll(0, 80, 8.0), 9}};
}

std::vector<FieldCase> rpllBandCases() {
    const std::string second = "RPLL_CFG0.RPLL_CP2CFG";
    const std::string bias = "CFG4.ibg_vc_50u_rpll1_ctrl";
    const std::string first = "RPLL_CFG0.RPLL_CP1CFG";
    const std::string enable = "RPLL_CFG0.RPLL_CPEN";
    return {{second, rpll(0, 20, 4.0), 0},
            {second, rpll(0, 20, 6.0), 0},
            {second, rpll(1, 20, 5.499999), 2},
            {second, rpll(1, 20, 5.5), 7},
            {bias, rpll(0, 20, 4.0), 0},
            {bias, rpll(0, 20, 6.0), 0},
            {bias, rpll(1, 20, 5.499999), 2},
            {bias, rpll(1, 20, 5.5), 0},
            {first, {{"INT_RPLL_SDMDATA", 0U}}, 0},
            {first, {{"INT_RPLL_SDMDATA", 1U}}, 2},
            {enable, {{"INT_RPLL_SDMDATA", 0U}}, 511},
            {enable, {{"INT_RPLL_SDMDATA", 1U}}, 1}};
}

std::vector<FieldCase> doublerCases() {
    return {{"RPLL_CFG2.RPLL_DOUBLER_BAND_SEL", {{"INT_DOUBLER_EN", 0U}}, 0},
            {"RPLL_CFG2.RPLL_DOUBLER_BAND_SEL", {{"INT_DOUBLER_EN", 1U}}, 7},
            {"RPLL_CFG2.RPLL_DOUBLER_REG_PDB", {{"INT_DOUBLER_EN", 0U}}, 0},
            {"RPLL_CFG2.RPLL_DOUBLER_REG_PDB", {{"INT_DOUBLER_EN", 1U}}, 1},
            {"RPLL_CFG1.RPLL_DOUBLER_BYPASSB", {{"INT_DOUBLER_EN", 0U}}, 0},
            {"RPLL_CFG1.RPLL_DOUBLER_BYPASSB", {{"INT_DOUBLER_EN", 1U}}, 1}};
}

INSTANTIATE_TEST_SUITE_P(RpllResistance, SxbLaneRule,
                         testing::ValuesIn(ruleCases(rpllResistanceCases())), caseName);
INSTANTIATE_TEST_SUITE_P(RpllBands, SxbLaneRule, testing::ValuesIn(ruleCases(rpllBandCases())),
                         caseName);
INSTANTIATE_TEST_SUITE_P(RpllDoubler, SxbLaneRule, testing::ValuesIn(ruleCases(doublerCases())),
                         caseName);

}  // namespace
}  // namespace lanecfg_test
