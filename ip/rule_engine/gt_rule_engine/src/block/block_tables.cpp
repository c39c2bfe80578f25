#include "block/block_tables.h"

#include <lanecfg/rule_engine_utilities.h>

namespace sable_lanecfg::block_tables {

namespace {

/// Where the blocks of some types stand; both lists have the same index.
struct blockPlaces {
    std::vector<std::string> types;
    std::vector<int> offsets;
    std::vector<int> bases;
};

std::vector<blockPlaces> placesOfBlocks() {
    return {
        {{"CH", "channel"}, {0, 0, 0, 0}, {0xC00, 0xD00, 0xE00, 0xF00}},
        {{"HSCLK", "hs_clk_0", "hs_clk_2", "hs_clk_4"}, {0, 512}, {0xC00, 0xE00}},
        {{"hs_clk_1", "hs_clk_3"}, {256, 768}, {0xD00, 0xF00}},
        {{"hs_clk_ips"}, {0, 768}, {0xC00, 0xF00}},
        {{"CTRL", "ctrl_0"}, {0}, {0xC00}},
        {{"ctrl_1"}, {256}, {0xD00}},
        {{"ctrl_2"}, {512}, {0xE00}},
        {{"ctrl_3"}, {768}, {0xF00}},
        {{"ctrl_4"}, {0}, {0xC00}},
        {{"ctrl_5"}, {768}, {0xF00}},
        {{"rcalbg"}, {0, 768}, {0xC00, 0xF00}},
        {{"rcalbg_0"}, {0}, {0xC00}},
        {{"rcalbg_1"}, {768}, {0xF00}},
        {{"rcalbg_2"}, {0}, {0xC00}},
        // From here on the bases don't follow the offsets: the hardware has it so.
        {{"rcalbg_3"}, {768}, {0xC00}},
        {{"rcalbg_4"}, {0}, {0xF00}},
        {{"rcalbg_5"}, {768}, {0xC00}},
    };
}

std::map<std::string, std::vector<int>> byType(std::vector<int> blockPlaces::*list) {
    std::map<std::string, std::vector<int>> result;
    for (const blockPlaces& places : placesOfBlocks()) {
        for (const std::string& type : places.types) {
            result[type] = places.*list;
        }
    }
    return result;
}

}  // namespace

std::map<int, std::string> pllNames() {
    return {{0, "LCPLL"}, {1, "RPLL"}};
}

std::map<std::string, int> blockSpan(const std::string& family) {
    const int channels = rule_engine_utilities::ChPerBlock(family);
    const int perControlUnit = channels / rule_engine_utilities::CtrlPerBlock(family);
    const int perClockGroup = channels / rule_engine_utilities::HsClkPerBlock(family);
    const int perCalibrationUnit = channels / rule_engine_utilities::RcalPerBlock(family);
    return {
        {"CH", 1},
        {"CH_PORT", 1},
        {"dual", 2},
        {"DUAL_PORT", 2},
        {"QUAD_PORT", perControlUnit},
        {"CTRL", perControlUnit},
        {"ctrl_0", perControlUnit},
        {"ctrl_1", perControlUnit},
        {"ctrl_2", perControlUnit},
        {"ctrl_3", perControlUnit},
        {"ctrl_4", perControlUnit},
        {"ctrl_5", perControlUnit},
        // Registers of type "channel" are counted by clock group, unlike those of type "CH".
        {"channel", perClockGroup},
        {"HSCLK_PORT", perClockGroup},
        {"HSCLK", perClockGroup},
        {"hs_clk_0", perClockGroup},
        {"hs_clk_1", perClockGroup},
        {"hs_clk_2", perClockGroup},
        {"hs_clk_3", perClockGroup},
        {"hs_clk_4", perClockGroup},
        {"hs_clk_ips", perClockGroup},
        {"rcalbg", perCalibrationUnit},
        {"rcalbg_0", perCalibrationUnit},
        {"rcalbg_1", perCalibrationUnit},
        {"rcalbg_2", perCalibrationUnit},
        {"rcalbg_3", perCalibrationUnit},
        {"rcalbg_4", perCalibrationUnit},
        {"rcalbg_5", perCalibrationUnit},
        {" ", -1},
    };
}

std::map<std::string, std::vector<int>> blockOffsets() {
    return byType(&blockPlaces::offsets);
}

std::map<std::string, std::vector<int>> blockBases() {
    return byType(&blockPlaces::bases);
}

std::set<std::string> staticExcluded() {
    return {
        "CHCLK_MISC_CFG",   "PIPE_CTRL_CFG10",  "PIN_CFG0",       "A_CFG3",
        "MST_RESET_CFG",    "A_CFG0",           "RESET_CFG",      "CHL_RSV_CFG4",
        "FABRIC_INTF_CFG0", "FABRIC_INTF_CFG3", "CHCLK_ILO_CFG",  "TX_ANA_CFG0",
        "CTRL_RSV_CFG0",    "RX_PCS_CFG0",      "EYESCAN_CFG0",   "EYESCAN_CFG16",
        "RX_DACI2V_CFG0",   "PIPE_CTRL_CFG2",   "PIPE_CTRL_CFG4", "PIPE_CTRL_CFG1",
        "PIPE_CTRL_CFG6",   "RX_CDR_CFG0",      "LCPLL_LGC_CFG0",
    };
}

std::set<std::string> forcedCritical() {
    return {"PIPE_CTRL_CFG7"};
}

std::set<std::string> alwaysMasked() {
    return {
        "RPLL_REFCLK_IPS", "LCPLL_REFCLK_IPS", "TX_PHALIGN_CFG0", "TX_PHALIGN_CFG1",
        "RX_PHALIGN_CFG0", "RX_PHALIGN_CFG1",  "PIPE_CTRL_CFG5",  "PIPE_CTRL_CFG6",
        "PIPE_CTRL_CFG9",  "PIPE_CTRL_CFG7",
    };
}

std::map<std::string, std::string> nibbleToHex() {
    return {
        {"0000", "0"}, {"0001", "1"}, {"0010", "2"}, {"0011", "3"}, {"0100", "4"}, {"0101", "5"},
        {"0110", "6"}, {"0111", "7"}, {"1000", "8"}, {"1001", "9"}, {"1010", "a"}, {"1011", "b"},
        {"1100", "c"}, {"1101", "d"}, {"1110", "e"}, {"1111", "f"},
    };
}

}  // namespace sable_lanecfg::block_tables
