#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

std::vector<RuleCase> dataSelectCases() {
    const std::vector<std::pair<std::string, unsigned int>> codes{
        {"128B130B", 0},          {"8B10B", 1},       {"RAW", 2},    {"64B66B_ASYNC", 3},
        {"64B66B_ASYNC_CAUI", 3}, {"64B66B_SYNC", 4}, {"64B67B", 4}, {"64B66B_CAUI", 4},
        {"64B67B_CAUI", 4},       {"other", 0},       {"", 0}};
    std::vector<RuleCase> cases;
    for (const auto& [coding, code] : codes) {
        cases.push_back(
            fieldCase("TX_PCS_CFG0.TX_PMA_DATA_SEL", {{"TX_DATA_ENCODING", coding}}, code));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfTransmittedData, SxbLaneRule, testing::ValuesIn(dataSelectCases()),
                         caseName);

TEST(SxbTxCoding, PrbsHasADataSelectOf5AndNoneOnTheReceiveSide) {
    RuleAlone transmitted("TX_PCS_CFG0.TX_PMA_DATA_SEL", {{"TX_DATA_ENCODING", "PRBS"s}});
    transmitted.runPass();
    EXPECT_EQ(transmitted.value("TX_PCS_CFG0.TX_PMA_DATA_SEL"), ruleValue(5U));
    RuleAlone received("RX_PCS_CFG1.RX_FABRIC_DATA_SEL", {{"RX_DATA_DECODING", "PRBS"s}});
    received.runPass();
    EXPECT_EQ(received.value("RX_PCS_CFG1.RX_FABRIC_DATA_SEL"), ruleValue(0U));
}

std::vector<RuleCase> firstReadAddressCases() {
    const std::vector<std::pair<unsigned int, unsigned int>> addresses{{16, 12}, {20, 12}, {32, 4},
                                                                       {40, 4},  {80, 4},  {0, 4}};
    std::vector<RuleCase> cases;
    for (const auto& [width, address] : addresses) {
        cases.push_back(
            fieldCase("TX_PCS_CFG0.FIFO_INIT_RD_ADDR", {{"TX_INT_DATA_WIDTH", width}}, address));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfTheTransmitReadAddress, SxbLaneRule,
                         testing::ValuesIn(firstReadAddressCases()), caseName);

TEST(SxbTxCoding, AWidthOf64HasAReadAddressOf4HereAnd3OnTheReceiveSide) {
    RuleAlone transmit("TX_PCS_CFG0.FIFO_INIT_RD_ADDR", {{"TX_INT_DATA_WIDTH", 64U}});
    transmit.runPass();
    EXPECT_EQ(transmit.value("TX_PCS_CFG0.FIFO_INIT_RD_ADDR"), ruleValue(4U));
    RuleAlone receive("RX_PCS_CFG2.FIFO_INIT_RD_ADDR", {{"RX_INT_DATA_WIDTH", 64U}});
    receive.runPass();
    EXPECT_EQ(receive.value("RX_PCS_CFG2.FIFO_INIT_RD_ADDR"), ruleValue(3U));
}

RuleCase phaseBufferCase(unsigned int bufferMode, unsigned int asynchronous, unsigned int value) {
    return fieldCase("TX_PCS_CFG3.TX_PHASE_BUFFER_USE",
                     {{"TX_BUFFER_MODE", bufferMode}, {"INT_TX_ASYNC_GEARBOX_EN", asynchronous}},
                     value);
}

RuleCase dedicatedPathCase(unsigned int bufferMode, bool pcie, unsigned int value) {
    return fieldCase("TX_PCS_CFG3.TX_DEDICATED_CCIX_CHICO_PATH_EN",
                     {{"TX_BUFFER_MODE", bufferMode}, {"PCIE_ENABLE", pcie}}, value);
}

INSTANTIATE_TEST_SUITE_P(OfTheTransmitBuffer, SxbLaneRule,
                         testing::Values(phaseBufferCase(1, 0, 1), phaseBufferCase(2, 0, 1),
                                         phaseBufferCase(0, 0, 0), phaseBufferCase(1, 1, 0),
                                         dedicatedPathCase(0, true, 1),
                                         dedicatedPathCase(0, false, 0),
                                         dedicatedPathCase(1, true, 0),
                                         dedicatedPathCase(1, false, 0)),
                         caseName);

}  // namespace
}  // namespace lanecfg_test
