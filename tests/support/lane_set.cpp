#include "support/lane_set.h"

#include <utility>

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

VariableValues pllInputs() {
    return {{"DUAL", 0U},
            {"GEN3_INT_DATA_WIDTH", 16U},
            {"LaneNum", 0U},
            {"LaneTxRxMode", "txrx_rate_together"s},
            {"MAX_RATE", 0U},
            {"MULTI_RATE", false},
            {"OOB_ENABLE", false},
            {"PCIE_USERCLK2_FREQ", 250.0F},
            {"PCIE_USERCLK_FREQ", 250.0F},
            {"RPLL_USED_FOR_SERIAL_DATA_RATE0", false},
            {"XPU_MODE", 0.0F}};
}

VariableValues pllInputsOf(const std::string& side) {
    VariableValues values{
        {side + "PROGDIV_FREQ_ENABLE", false},
        {side + "PROGDIV_FREQ_SOURCE", "LCPLL"s},
        {side + "PROGDIV_FREQ_VAL", 322.265625},
        {side + "_IN_USE", true},
        // Twice, since PCIe at 8.0 Gb/s leaves the first out.
        {side + "_LCPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>{10.3125, 10.3125}},
        {side + "_LCPLL_POWERDOWN", false},
        {side + "_LCPLL_REFCLK_FREQUENCY", 156.25},
        {side + "_LCPLL_REFCLK_ID", 0U},
        {side + "_LCPLL_REFCLK_SOURCE", "R2"s},
        {side + "_OUTCLK_SOURCE", side + "PROGDIVCLK"},
        {side + "_PLL_TYPE", "LCPLL"s},
        {side + "_RPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>{3.90625}},
        {side + "_RPLL_POWERDOWN", true},
        {side + "_RPLL_REFCLK_FREQUENCY", 156.25},
        {side + "_RPLL_REFCLK_ID", 0U},
        {side + "_RPLL_REFCLK_SOURCE", "R0"s}};
    for (const std::string channel : {"CH0", "CH1", "CH2", "CH3"}) {
        values[side + "_" + channel + "_SYNCDONE_POSITION"] = "single"s;
    }
    return values;
}

}  // namespace

VariableValues laneInputs() {
    return with(with(pllResults(), receiverParameters()),
                with(transmitterParameters(), sequenceParameters()));
}

VariableValues quadInputs() {
    return with(laneInputs(), with(pllInputs(), with(pllInputsOf("TX"), pllInputsOf("RX"))));
}

VariableValues randomLane(std::mt19937& random) {
    static const std::vector<std::pair<std::string, std::vector<ruleValue>>> choices{
        {"RX_DATA_DECODING", {"RAW"s, "8B10B"s, "64B66B_ASYNC"s, "128B130B"s}},
        {"TX_DATA_ENCODING", {"RAW"s, "8B10B"s, "64B66B_ASYNC"s, "PRBS"s}},
        {"RX_INT_DATA_WIDTH", {16U, 20U, 32U, 40U, 64U, 80U}},
        {"TX_INT_DATA_WIDTH", {16U, 20U, 32U, 40U, 64U, 80U}},
        {"RX_LINE_RATE", {2.5, 8.0, 10.3125, 16.0, 32.0}},
        {"TX_LINE_RATE", {2.5, 8.0, 10.3125, 16.0, 32.0}},
        {"RX_PLL_TYPE", {"LCPLL"s, "RPLL"s}},
        {"TX_PLL_TYPE", {"LCPLL"s, "RPLL"s}},
        {"RX_OUTCLK_SOURCE", {"RXPROGDIVCLK"s, "RXOUTCLKPMA"s, "RXPLLREFCLK"s}},
        {"TX_OUTCLK_SOURCE", {"TXPROGDIVCLK"s, "TXOUTCLKPMA"s, "TXPLLREFCLK"s}},
        {"RX_SYNCDONE_POSITION", {"single"s, "IM"s, "below"s, "above"s}},
        {"TX_SYNCDONE_POSITION", {"single"s, "IM"s, "below"s, "above"s}},
        {"RX_BUFFER_MODE", {0U, 1U}},
        {"TX_BUFFER_MODE", {0U, 1U}},
        {"RX_IN_USE", {false, true}},
        {"TX_IN_USE", {false, true}},
        {"TX_PIPM_ENABLE", {false, true}},
        {"PCIE_ENABLE", {false, true}},
        {"RX_PPM_OFFSET", {0U, 300U}},
        {"RX_SSC_PPM", {0U, 5000U}},
        {"RX_CC_NUM_SEQ", {0U, 1U, 2U}},
        {"RX_CB_NUM_SEQ", {0U, 1U, 2U}},
        {"RX_EQ_MODE", {"AUTO"s, "LPM"s}},
        {"LaneNum", {0U, 1U, 2U, 3U}},
        {"siliconRev", {"es1"s, "es2"s}}};
    VariableValues lane;
    for (const auto& [name, values] : choices) {
        lane[name] =
            values[std::uniform_int_distribution<std::size_t>(0, values.size() - 1)(random)];
    }
    return lane;
}

std::vector<std::string> differences(const VariableValues& left, const VariableValues& right) {
    std::vector<std::string> names;
    for (const auto& [name, value] : left) {
        const auto found = right.find(name);
        if (found == right.end() || !(found->second == value)) {
            names.push_back(name);
        }
    }
    for (const auto& [name, value] : right) {
        if (left.count(name) == 0) {
            names.push_back(name);
        }
    }
    return names;
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
