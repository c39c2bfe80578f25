#include "sxb_lane_set.h"

namespace lanecfg_test {

using namespace std::string_literals;

void expectStretches(const LaneEngine& engine, const std::vector<RuleStretch>& stretches) {
    int next = 0;
    for (const RuleStretch& stretch : stretches) {
        next += stretch.rules;
        EXPECT_EQ(engine.ruleNumber(stretch.last), next - 1) << stretch.last;
    }
    EXPECT_EQ(engine.ruleNumbers().size(), static_cast<std::size_t>(next));
    EXPECT_EQ(engine.ruleNumbers().back(), next - 1);
}

namespace {

VariableValues pllResults() {
    return {{"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 1U},
            {"CHCLK_TXPI_CFG0.TXPI_BYPASS", 1U},
            {"CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", 1U},
            {"CHCLK_TXPI_CFG0.TX_PROGCLK_SEL", 1U},
            {"DA_CFG.RX_DA_REFCLK_SEL", 1U},
            {"DA_CFG.TX_DA_REFCLK_SEL", 1U},
            {"INT_LCPLL_PLLCLKOUT", 10.3125},
            {"INT_LCPLL_REFCLKFREQ", 156.25},
            {"INT_RPLL_PLLCLKOUT", 0.0},
            {"INT_RPLL_REFCLKFREQ", 0.0},
            {"INT_RXOUTCLKDIV_FOR_PROGDIV_PATH", 1U},
            {"INT_RXPROGDIV_SEL", 32.0},
            {"INT_RX_OUTDIV", 2.0},
            {"INT_TXOUTCLKDIV_FOR_PROGDIV_PATH", 1U},
            {"INT_TXPROGDIV_SEL", 32.0},
            {"INT_TX_OUTDIV", 2.0},
            {"LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL", 1U},
            {"PIPE_CTRL_CFG7.RXOUTCLKCTL", 2U},
            {"PIPE_CTRL_CFG7.RX_DA_BYP", 1U},
            {"PIPE_CTRL_CFG7.TXOUTCLKCTL", 2U},
            {"PIPE_CTRL_CFG7.TX_DA_BYP", 1U},
            {"RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL", 0U}};
}

VariableValues receiverParameters() {
    return {{"INS_LOSS_NYQ", 20.0F},
            {"RX_BUFFER_BYPASS_MODE", "Fast_Sync"s},
            {"RX_BUFFER_MODE", 1U},
            {"RX_CB_LEN_SEQ", 1U},
            {"RX_CB_MAX_LEVEL", 1U},
            {"RX_CB_MAX_SKEW", 1U},
            {"RX_CB_NUM_SEQ", 0U},
            {"RX_CC_KEEP_IDLE", "DISABLE"s},
            {"RX_CC_LEN_SEQ", 1U},
            {"RX_CC_NUM_SEQ", 0U},
            {"RX_CC_PERIODICITY", 5000U},
            {"RX_CC_PRECEDENCE", "ENABLE"s},
            {"RX_CC_REPEAT_WAIT", 0U},
            {"RX_COMMA_ALIGN_WORD", 1U},
            {"RX_COMMA_DOUBLE_ENABLE", false},
            {"RX_COMMA_MASK", "0000000000"s},
            {"RX_COMMA_M_ENABLE", false},
            {"RX_COMMA_M_VAL", "1010000011"s},
            {"RX_COMMA_P_ENABLE", false},
            {"RX_COMMA_P_VAL", "0101111100"s},
            {"RX_DATA_DECODING", "RAW"s},
            {"RX_EQ_MODE", "AUTO"s},
            {"RX_INT_DATA_WIDTH", 32U},
            {"RX_LINE_RATE", 10.3125},
            {"RX_MAINTAIN_MASTER", false},
            {"RX_PIPE_POSITION", "single"s},
            {"RX_PPM_OFFSET", 0U},
            {"RX_SLIDE_MODE", "OFF"s},
            {"RX_SSC_PPM", 0U},
            {"RX_SYNCDONE_POSITION", "single"s},
            {"RX_USER_DATA_WIDTH", 32U}};
}

VariableValues transmitterParameters() {
    return {{"PCIE_ENABLE", false},
            {"TX_BUFFER_BYPASS_MODE", "Fast_Sync"s},
            {"TX_BUFFER_MODE", 1U},
            {"TX_COMMON_USRCLK", false},
            {"TX_DATA_ENCODING", "RAW"s},
            {"TX_INT_DATA_WIDTH", 32U},
            {"TX_LINE_RATE", 10.3125},
            {"TX_MAINTAIN_MASTER", false},
            {"TX_PIPE_POSITION", "single"s},
            {"TX_PIPM_ENABLE", false},
            {"TX_SYNCDONE_POSITION", "single"s},
            {"TX_USER_DATA_WIDTH", 32U},
            {"siliconRev", "es2"s}};
}

VariableValues sequenceParameters() {
    VariableValues values;
    for (const std::string kind : {"RX_CC_", "RX_CB_"}) {
        for (const std::string element : {"0_0", "0_1", "0_2", "0_3", "1_0", "1_1", "1_2", "1_3"}) {
            values[kind + "VAL_" + element] = "00000000"s;
            values[kind + "K_" + element] = false;
            values[kind + "DISP_" + element] = false;
            values[kind + "MASK_" + element] = false;
        }
    }
    for (const std::string channel : {"CH0", "CH1", "CH2", "CH3"}) {
        values["RX_" + channel + "_RESETDONE_POSITION"] = "single"s;
        values["TX_" + channel + "_RESETDONE_POSITION"] = "single"s;
    }
    return values;
}

}  // namespace

VariableValues laneInputs() {
    return with(with(pllResults(), receiverParameters()),
                with(transmitterParameters(), sequenceParameters()));
}

std::vector<std::string> blankResults(const LaneEngine& engine) {
    std::vector<std::string> names;
    for (const auto& [name, info] : engine.varMap) {
        if (info.ruleNumber && info.value.which() == 0) {
            names.push_back(name);
        }
    }
    return names;
}

}  // namespace lanecfg_test
