#include "sxb_field_case.h"
#include "sxb_pll_sides.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

std::vector<FieldCase> flagCases() {
    std::vector<FieldCase> cases;
    for (const std::string& field : {"PIPE_CTRL_CFG0.PCIE_MODE"s, "PIPE_CTRL_CFG8.CDR_CTRL_EN"s,
                                     "PIPE_CTRL_CFG8.PMA_OOB_CLKDIV_VAL"s}) {
        append(cases, {{field, {{"PCIE_ENABLE", true}}, 1}, {field, {{"PCIE_ENABLE", false}}, 0}});
    }
    const std::string control = "PIPE_CTRL_CFG7.RXPD_IND_CONTROL";
    append(cases, {{control, {{"PCIE_ENABLE", true}}, 0}, {control, {{"PCIE_ENABLE", false}}, 1}});
    return cases;
}

std::vector<FieldCase> flagAndParameterCases() {
    const std::string outputClock = "PIPE_CTRL_CFG7.RATE_USE_LCPLL_OUTCLK_ESM56";
    const std::string calibration = "PIPE_CTRL_CFG1.UCORE_PLL_ILO_CAL_EN";
    const std::string hold = "PIPE_CTRL_CFG8.CDR_CTRL_HOLDCDR_RX_PHALIGN";
    const std::string mode = "PIPE_CTRL_CFG8.CDR_CTRL_REFCLK_MODE";
    const std::string rate = "PIPE_CTRL_CFG4.RX_RATE_EN";
    return {{outputClock, {{"PCIE_ENABLE", true}, {"TXPROGDIV_FREQ_SOURCE", "LCPLL"s}}, 1},
            {outputClock, {{"PCIE_ENABLE", true}, {"TXPROGDIV_FREQ_SOURCE", "RPLL"s}}, 0},
            {outputClock, {{"PCIE_ENABLE", false}, {"TXPROGDIV_FREQ_SOURCE", "LCPLL"s}}, 0},
            {calibration, {{"PCIE_ENABLE", true}, {"MAX_RATE", 2U}}, 1},
            {calibration, {{"PCIE_ENABLE", true}, {"MAX_RATE", 3U}}, 1},
            {calibration, {{"PCIE_ENABLE", true}, {"MAX_RATE", 1U}}, 0},
            {calibration, {{"PCIE_ENABLE", false}, {"MAX_RATE", 2U}}, 0},
            {hold, {{"PCIE_ENABLE", true}, {"RX_BUFFER_MODE", 0U}}, 1},
            {hold, {{"PCIE_ENABLE", true}, {"RX_BUFFER_MODE", 1U}}, 0},
            {hold, {{"PCIE_ENABLE", false}, {"RX_BUFFER_MODE", 0U}}, 0},
            {mode, {{"PCIE_ENABLE", true}, {"RX_PPM_OFFSET", 100U}}, 1},
            {mode, {{"PCIE_ENABLE", true}, {"RX_PPM_OFFSET", 0U}}, 0},
            {mode, {{"PCIE_ENABLE", false}, {"RX_PPM_OFFSET", 100U}}, 0},
            {rate, {{"PCIE_ENABLE", true}, {"LaneTxRxMode", "txrx_rate_seperate"s}}, 0},
            {rate, {{"PCIE_ENABLE", true}, {"LaneTxRxMode", "txrx_rate_together"s}}, 0},
            {rate, {{"PCIE_ENABLE", false}, {"LaneTxRxMode", "txrx_rate_seperate"s}}, 1},
            {rate, {{"PCIE_ENABLE", false}, {"LaneTxRxMode", "txrx_rate_together"s}}, 0}};
}

INSTANTIATE_TEST_SUITE_P(PcieFlags, SxbLaneRule, testing::ValuesIn(ruleCases(flagCases())),
                         caseName);
INSTANTIATE_TEST_SUITE_P(PcieWithParameters, SxbLaneRule,
                         testing::ValuesIn(ruleCases(flagAndParameterCases())), caseName);

VariableValues pcie(double frequency) {
    return {{"PCIE_ENABLE", true}, {"TXPROGDIV_FREQ_VAL", frequency}};
}

std::vector<FieldCase> bufferDividerCases() {
    const std::string second = "PIPE_CTRL_CFG5.BUFGTDIV_G2_PIPECLK";
    const std::string third = "PIPE_CTRL_CFG5.BUFGTDIV_G3_PIPECLK";
    const std::string fourth = "PIPE_CTRL_CFG5.BUFGTDIV_G4_PIPECLK";
    const VariableValues narrow{{"GEN3_INT_DATA_WIDTH", 16U}};
    const VariableValues wide{{"GEN3_INT_DATA_WIDTH", 32U}};
    return {{second, pcie(1000.0), 3},
            {second, pcie(500.0), 1},
            {second, pcie(749.0), 1},
            {second, pcie(250.0), 0},
            // Minus a half is 0 without its fraction, minus one is out of range.
            {second, pcie(125.0), 0},
            {second, pcie(0.0), 0},
            {second, pcie(-250.0), 0},
            // So near to 500 that single precision does not tell it from it.
            {second, pcie(499.999999), 1},
            {second, pcie(499.99), 0},
            {fourth, pcie(1000.0), 1},
            {fourth, pcie(1500.0), 2},
            {fourth, pcie(500.0), 0},
            {third, with(pcie(1000.0), narrow), 1},
            {third, with(pcie(1000.0), wide), 3},
            {third, with(pcie(500.0), narrow), 0},
            {third, with(pcie(500.0), wide), 1},
            {second, with(pcie(1000.0), {{"PCIE_ENABLE", false}}), 0},
            {third, with(with(pcie(1000.0), wide), {{"PCIE_ENABLE", false}}), 0},
            {fourth, with(pcie(1000.0), {{"PCIE_ENABLE", false}}), 0}};
}

std::vector<FieldCase> userClockCases() {
    std::vector<FieldCase> cases;
    for (const std::string& word : {"USERCLK"s, "USERCLK2"s}) {
        const std::string field = "PIPE_CTRL_CFG5.BUFGTDIV_" + word;
        const std::string frequency = "PCIE_" + word + "_FREQ";
        append(cases,
               {{field, with(pcie(1000.0), {{frequency, 250.0F}}), 3},
                {field, with(pcie(1000.0), {{frequency, 125.0F}}), 7},
                {field, with(pcie(500.0), {{frequency, 62.5F}}), 7},
                {field, with(pcie(250.0), {{frequency, 250.0F}}), 0},
                {field, with(pcie(100.0), {{frequency, 250.0F}}), 0},
                // Not finite.
                {field, with(pcie(1000.0), {{frequency, 0.0F}}), 0},
                {field, with(pcie(0.0), {{frequency, 0.0F}}), 0},
                {field, with(pcie(1000.0), {{"PCIE_ENABLE", false}, {frequency, 125.0F}}), 0}});
    }
    return cases;
}

std::vector<FieldCase> overriddenDividerCases() {
    const std::string field = "PIPE_CTRL_CFG6.BUFGTDIV_PIPECLK_OVRD";
    return {{field, {{"INT_BUFGTDIV_G1_PIPECLK", 7U}, {"TXPROGDIV_FREQ_VAL", 1000.0}}, 7},
            {field, {{"INT_BUFGTDIV_G1_PIPECLK", 4U}, {"TXPROGDIV_FREQ_VAL", 625.0}}, 0},
            {field, {{"INT_BUFGTDIV_G1_PIPECLK", 5U}, {"TXPROGDIV_FREQ_VAL", 781.25}}, 0},
            {field, {{"INT_BUFGTDIV_G1_PIPECLK", 5U}, {"TXPROGDIV_FREQ_VAL", 781.5}}, 5},
            {field, {{"INT_BUFGTDIV_G1_PIPECLK", 0U}, {"TXPROGDIV_FREQ_VAL", 500.0}}, 0}};
}

INSTANTIATE_TEST_SUITE_P(BufferDividers, SxbLaneRule,
                         testing::ValuesIn(ruleCases(bufferDividerCases())), caseName);
INSTANTIATE_TEST_SUITE_P(UserClockDividers, SxbLaneRule,
                         testing::ValuesIn(ruleCases(userClockCases())), caseName);
INSTANTIATE_TEST_SUITE_P(OverriddenDividers, SxbLaneRule,
                         testing::ValuesIn(ruleCases(overriddenDividerCases())), caseName);

struct FirstGenerationCase {
    bool pcie;
    double frequency;
    unsigned int expected;
};

class SxbPllFirstGenerationDivider : public testing::TestWithParam<FirstGenerationCase> {};

TEST_P(SxbPllFirstGenerationDivider, IsTheSameInFieldAndIntermediate) {
    RuleAlone rule("PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK");
    rule.set({{"PCIE_ENABLE", GetParam().pcie}, {"TXPROGDIV_FREQ_VAL", GetParam().frequency}});
    rule.runPass();
    EXPECT_EQ(rule.value("PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK"), ruleValue(GetParam().expected));
    EXPECT_EQ(rule.value("INT_BUFGTDIV_G1_PIPECLK"), ruleValue(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Of, SxbPllFirstGenerationDivider,
    testing::Values(FirstGenerationCase{true, 1000.0, 7}, FirstGenerationCase{true, 500.0, 3},
                    FirstGenerationCase{true, 781.25, 5}, FirstGenerationCase{true, 125.0, 0},
                    FirstGenerationCase{true, 0.0, 0}, FirstGenerationCase{false, 1000.0, 0}),
    [](const auto& row) { return "Row" + std::to_string(row.index); });

TEST(SxbPllOutOfBand, EnableAndPowerDownAreOpposite) {
    RuleAlone rule("PIPE_CTRL_CFG1.OOB_PD");
    rule.set({{"OOB_ENABLE", true}});
    rule.runPass();
    EXPECT_EQ(rule.value("INT_OOB_EN"), ruleValue(true));
    EXPECT_EQ(rule.value("PIPE_CTRL_CFG1.OOB_PD"), ruleValue(0U));
    rule.set({{"OOB_ENABLE", false}});
    rule.runPass();
    EXPECT_EQ(rule.value("INT_OOB_EN"), ruleValue(false));
    EXPECT_EQ(rule.value("PIPE_CTRL_CFG1.OOB_PD"), ruleValue(1U));
}

VariableValues outOfBand(const std::string& pll, double lcpllReference, double rpllReference) {
    return {{"INT_OOB_EN", true},
            {"RX_PLL_TYPE", pll},
            {"RX_LCPLL_REFCLK_FREQUENCY", lcpllReference},
            {"RX_RPLL_REFCLK_FREQUENCY", rpllReference}};
}

std::vector<FieldCase> outOfBandCases() {
    const std::string field = "PIPE_CTRL_CFG6.RXOOB_CLKDIV_VAL";
    return {{field, with(outOfBand("LCPLL", 100.0, 200.0), {{"INT_OOB_EN", false}}), 7},
            {field, outOfBand("LCPLL", 100.0, 200.0), 3},
            {field, outOfBand("RPLL", 100.0, 200.0), 7},
            {field, outOfBand("", 100.0, 250.0), 9},
            // 6.25 less one, and in double precision just below 4 less one.
            {field, outOfBand("LCPLL", 156.25, 200.0), 5},
            {field, outOfBand("LCPLL", 99.9999999, 200.0), 2},
            {field, outOfBand("LCPLL", 0.0, 200.0), 0},
            {"PIPE_CTRL_CFG0.RX_ELECIDLE_MODE", {{"INT_OOB_EN", true}}, 0},
            {"PIPE_CTRL_CFG0.RX_ELECIDLE_MODE", {{"INT_OOB_EN", false}}, 3}};
}

std::vector<FieldCase> bufferCases() {
    std::vector<FieldCase> cases;
    for (const TestedSide& side : testedSides()) {
        const std::string mode = side.word + "_BUFFER_MODE";
        for (const std::string& field :
             {"PIPE_CTRL_CFG1." + side.word + "SYNC_EN",
              "PIPE_CTRL_CFG10.PIPE_" + side.word + "SYNC_RST_MASK",
              "FABRIC_INTF_CFG3.A_" + side.word + "_PHALIGN_RESETMASK"}) {
            append(cases,
                   {{field, {{mode, 0U}}, 1}, {field, {{mode, 1U}}, 0}, {field, {{mode, 2U}}, 0}});
        }
    }
    append(cases, {{"PIPE_CTRL_CFG10.PIPE_TXDAPI_RST_MASK", {{"TX_BUFFER_MODE", 0U}}, 3},
                   {"PIPE_CTRL_CFG10.PIPE_TXDAPI_RST_MASK", {{"TX_BUFFER_MODE", 1U}}, 2},
                   {"PIPE_CTRL_CFG10.PIPE_TXDAPI_RST_MASK", {{"TX_BUFFER_MODE", 2U}}, 2}});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OutOfBand, SxbLaneRule, testing::ValuesIn(ruleCases(outOfBandCases())),
                         caseName);
INSTANTIATE_TEST_SUITE_P(Buffers, SxbLaneRule, testing::ValuesIn(ruleCases(bufferCases())),
                         caseName);

}  // namespace
}  // namespace lanecfg_test
