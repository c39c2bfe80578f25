#include "sxc_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

const std::string recovery = "EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN";

/// The width settings of the clock data recovery: the three analogue widths and whether they
/// override, the data width, the selected mode, and the inputs of the decision.
VariableValues widthFields(unsigned int analogue, unsigned int enable, unsigned int data,
                           unsigned int select, unsigned int decision) {
    VariableValues fields{{"EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN", enable},
                          {"RX_CDR_CFG0.DATAWIDTH_OVR", data}};
    for (const char* const field :
         {"RXPMA_ADAP_WIDTH_OVRD", "RXPMA_CDR_WIDTH_OVRD", "RXPMA_DES_WIDTH_OVRD"}) {
        fields["EYESCAN_CFG16."s + field] = analogue;
    }
    for (const char* const field : {"SELMODE", "LOWLATENCY_OVR"}) {
        fields["RX_CDR_CFG0."s + field] = select;
    }
    for (const char* const field : {"D_SEL_P", "X_SEL_Y"}) {
        fields["RX_CDR_CFG0."s + field] = decision;
    }
    return fields;
}

/// A lane without feedback in the equaliser, whose decision inputs follow that at most widths.
RuleCase recoveryCase(const VariableValues& others, const VariableValues& widths) {
    const VariableValues lane{{"INT_RX_OUTDIV", 1.0},
                              {"INT_RX_EQ_MODE", "LPM"s},
                              {"RX_SSC_PPM", 0U},
                              {"RX_PPM_OFFSET", 0U}};
    return {recovery, with(lane, others), widths};
}

INSTANTIATE_TEST_SUITE_P(
    OfPcieRecovery, SxcRule,
    testing::Values(recoveryCase(pcieReceiver(8.0, 32), widthFields(10, 1, 2, 1, 1)),
                    recoveryCase(pcieReceiver(32.0, 64), widthFields(12, 1, 0, 0, 1)),
                    // With feedback in the equaliser the decision inputs are 0 in both.
                    recoveryCase(with(pcieReceiver(8.0, 32), {{"INT_RX_EQ_MODE", "DFE"s}}),
                                 widthFields(10, 1, 2, 1, 0)),
                    recoveryCase(with(pcieReceiver(32.0, 64), {{"INT_RX_EQ_MODE", "DFE"s}}),
                                 widthFields(12, 1, 0, 0, 0)),
                    // The revision of the silicon changes nothing.
                    recoveryCase(with(pcieReceiver(8.0, 32), {{"siliconRev", "es1"s}}),
                                 widthFields(10, 1, 2, 1, 1)),
                    recoveryCase(with(pcieReceiver(32.0, 64), {{"siliconRev", "ES1"s}}),
                                 widthFields(12, 1, 0, 0, 1))),
    caseName);

TEST(SxcRecovery, PcieAt32WithAWidthOf64IsOverriddenTheSameWidthAt16IsNot) {
    expectCase(rulesOfSxc, recoveryCase(pcieReceiver(32.0, 64), widthFields(12, 1, 0, 0, 1)));
    expectCase(rulesOfSxc, recoveryCase(pcieReceiver(16.0, 64), widthFields(0, 0, 6, 1, 1)));
}

INSTANTIATE_TEST_SUITE_P(
    OfPlainRecovery, SxcRule,
    testing::Values(recoveryCase(pcieReceiver(8.0, 64), widthFields(0, 0, 6, 1, 1)),
                    recoveryCase(pcieReceiver(16.0, 32), widthFields(0, 0, 4, 1, 1)),
                    recoveryCase(pcieReceiver(32.0, 32), widthFields(0, 0, 0, 0, 0)),
                    recoveryCase(pcieReceiver(2.5, 20), widthFields(11, 1, 0, 0, 0)),
                    recoveryCase(pcieReceiver(5.0, 20), widthFields(1, 1, 0, 0, 0)),
                    recoveryCase(with(pcieReceiver(8.0, 32), {{"PCIE_ENABLE", false}}),
                                 widthFields(0, 0, 4, 1, 1)),
                    recoveryCase(with(pcieReceiver(32.0, 64), {{"PCIE_ENABLE", false}}),
                                 widthFields(0, 0, 6, 1, 1))),
    caseName);

RuleCase dividerCase(const VariableValues& lane, unsigned int value) {
    return fieldCase("ADAPT_APT_CFG.divider_data", lane, value);
}

INSTANTIATE_TEST_SUITE_P(
    OfTheAdaptation, SxcRule,
    testing::Values(dividerCase(pcieReceiver(8.0, 32), 1), dividerCase(pcieReceiver(32.0, 64), 1),
                    dividerCase(pcieReceiver(8.0, 64), 0), dividerCase(pcieReceiver(32.0, 32), 0),
                    dividerCase(pcieReceiver(16.0, 32), 0), dividerCase(pcieReceiver(16.0, 64), 0),
                    dividerCase(with(pcieReceiver(8.0, 32), {{"PCIE_ENABLE", false}}), 0),
                    dividerCase(with(pcieReceiver(32.0, 64), {{"PCIE_ENABLE", false}}), 0)),
    caseName);

const std::string minimum = "RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MIN_LAT";

/// A buffer with a minimum latency of 30 and words of 4 bytes, which take no part.
RuleCase latencyCase(const VariableValues& others, unsigned int value) {
    const VariableValues buffer{{minimum, 30U},
                                {"INT_WID", 4U},
                                {"RX_INT_DATA_WIDTH", 32U},
                                {"RX_CC_LEN_SEQ", 2U},
                                {"RX_CC_NUM_SEQ", 0U},
                                {"PCIE_ENABLE", false},
                                {"INT_PHY_REFCLK_MODE", 0U},
                                {"RX_BUFFER_MODE", 1U},
                                {"RX_DATA_DECODING", "8B10B"s}};
    return fieldCase("RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MAX_LAT", with(buffer, others), value);
}

INSTANTIATE_TEST_SUITE_P(
    OfTheMaximumLatency, SxcRule,
    testing::Values(latencyCase({}, 62), latencyCase({{"RX_INT_DATA_WIDTH", 80U}}, 110),
                    latencyCase({{"INT_WID", 8U}}, 62), latencyCase({{"RX_CC_NUM_SEQ", 1U}}, 64),
                    latencyCase({{"RX_CC_NUM_SEQ", 2U}, {"RX_CC_LEN_SEQ", 4U}}, 66),
                    // More than the seven bits of the field hold.
                    latencyCase({{minimum, 47U},
                                 {"RX_INT_DATA_WIDTH", 80U},
                                 {"RX_CC_NUM_SEQ", 1U},
                                 {"RX_CC_LEN_SEQ", 4U}},
                                131),
                    latencyCase({{"RX_BUFFER_MODE", 0U}}, 62),
                    latencyCase({{"RX_DATA_DECODING", "ASYNC"s}}, 62),
                    latencyCase({{"PCIE_ENABLE", true}}, 20),
                    latencyCase({{"PCIE_ENABLE", true}, {"INT_PHY_REFCLK_MODE", 1U}}, 20),
                    latencyCase({{"PCIE_ENABLE", true}, {"INT_PHY_REFCLK_MODE", 2U}}, 28)),
    caseName);

/// 10 Gb/s in words of 20 bits; the LCPLL's divider path gives 10 / 5 / 2 = 1 GHz, the RPLL's
/// 8 / 5 / 2 = 0.8 GHz.
RuleCase outclockCase(unsigned int control, const VariableValues& others, double frequency,
                      unsigned int clocksPerWord) {
    const VariableValues lane{{"PIPE_CTRL_CFG7.TXOUTCLKCTL", control},
                              {"TX_PCS_CFG0.TX_DATA_WIDTH", 3U},
                              {"DA_CFG.TX_DA_REFCLK_SEL", 1U},
                              {"PIPE_CTRL_CFG7.TX_DA_BYP", 1U},
                              {"CHCLK_TXPI_CFG0.TX_PROGCLK_SEL", 1U},
                              {"CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", 1U},
                              {"INT_TXOUTCLKDIV_FOR_PROGDIV_PATH", 2U},
                              {"INT_TXPROGDIV_SEL", 5.0},
                              {"TX_LINE_RATE", 10.0},
                              {"INT_LCPLL_REFCLKFREQ", 100.0},
                              {"INT_RPLL_REFCLKFREQ", 125.0},
                              {"INT_LCPLL_PLLCLKOUT", 10.0},
                              {"INT_RPLL_PLLCLKOUT", 8.0},
                              {"CHCLK_TXPI_CFG0.TXPI_BYPASS", 1U},
                              {"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 1U},
                              {"LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL", 1U},
                              {"RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL", 1U}};
    return {"TX outclock report",
            with(lane, others),
            {{"INT_TXOUTCLK_FREQ", frequency},
             {"TX_PHALIGN_CFG0.DAPI_BUFG_DIV", clocksPerWord},
             // Variables without a rule stay blank.
             {"INT_TXOUTCLK_REFCLK_FREQ", ruleValue()},
             {"INT_TXOUTCLK_REFCLK_SOURCE", ruleValue()}}};
}

INSTANTIATE_TEST_SUITE_P(
    OfTheTransmitOutclock, SxcRule,
    testing::Values(outclockCase(1, {}, 500.0, 0), outclockCase(2, {}, 500.0, 0),
                    outclockCase(3, {}, 100.0, 0),
                    outclockCase(3, {{"DA_CFG.TX_DA_REFCLK_SEL", 0U}}, 125.0, 0),
                    outclockCase(4, {}, 50.0, 0),
                    outclockCase(4, {{"DA_CFG.TX_DA_REFCLK_SEL", 0U}}, 62.5, 0),
                    outclockCase(6, {}, 1.0, 0), outclockCase(0, {}, 1.0, 0),
                    // 1 GHz is 2 clocks a word of 0.5 GHz, in steps of 2.
                    outclockCase(5, {}, 1000.0, 4),
                    outclockCase(5, {{"CHCLK_TXPI_CFG0.TX_PROGCLK_SEL", 2U}}, 800.0, 4),
                    outclockCase(5, {{"CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", 0U}}, 800.0, 4),
                    outclockCase(5, {{"PIPE_CTRL_CFG7.TX_DA_BYP", 0U}}, 500.0, 2),
                    outclockCase(5,
                                 {{"CHCLK_TXPI_CFG0.TX_PROGCLK_SEL", 0U},
                                  {"CHCLK_TXPI_CFG0.TXPI_BYPASS", 0U},
                                  {"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 0U}},
                                 800.0, 4)),
    caseName);

RuleCase pathCase(unsigned int bufferMode, bool pcie, unsigned int internalWidth,
                  unsigned int value) {
    return fieldCase("TX_PCS_CFG3.TX_DEDICATED_CCIX_CHICO_PATH_EN",
                     {{"TX_BUFFER_MODE", bufferMode},
                      {"PCIE_ENABLE", pcie},
                      {"TX_INT_DATA_WIDTH", internalWidth}},
                     value);
}

INSTANTIATE_TEST_SUITE_P(OfTheDedicatedPath, SxcRule,
                         testing::Values(pathCase(0, true, 32, 1), pathCase(0, true, 64, 1),
                                         pathCase(0, true, 16, 1), pathCase(0, false, 32, 0),
                                         pathCase(1, true, 32, 0), pathCase(1, false, 64, 0)),
                         caseName);

}  // namespace
}  // namespace lanecfg_test
