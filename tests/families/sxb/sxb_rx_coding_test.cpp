#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

std::vector<RuleCase> dataSelectCases() {
    const std::vector<std::pair<std::string, unsigned int>> codes{{"128B130B", 0},
                                                                  {"8B10B", 1},
                                                                  {"RAW", 2},
                                                                  {"64B66B_SYNC", 3},
                                                                  {"64B67B", 3},
                                                                  {"64B66B_CAUI", 3},
                                                                  {"64B67B_CAUI", 3},
                                                                  {"64B66B_ASYNC", 5},
                                                                  {"64B66B_ASYNC_CAUI", 5},
                                                                  {"PRBS", 0},
                                                                  {"", 0}};
    std::vector<RuleCase> cases;
    for (const auto& [coding, code] : codes) {
        cases.push_back(
            {"RX_PCS_CFG1.RX_FABRIC_DATA_SEL",
             {{"RX_DATA_DECODING", coding}},
             {{"RX_PCS_CFG1.RX_FABRIC_DATA_SEL", code}, {"RX_PCS_CFG1.RX_FIFO_DATA_SEL", code}}});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfReceivedData, SxbLaneRule, testing::ValuesIn(dataSelectCases()),
                         caseName);

std::vector<RuleCase> firstReadAddressCases() {
    const std::vector<std::pair<unsigned int, unsigned int>> addresses{
        {16, 12}, {20, 12}, {32, 4}, {40, 4}, {64, 3}, {80, 3}, {0, 4}};
    std::vector<RuleCase> cases;
    for (const auto& [width, address] : addresses) {
        cases.push_back(
            fieldCase("RX_PCS_CFG2.FIFO_INIT_RD_ADDR", {{"RX_INT_DATA_WIDTH", width}}, address));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfTheReadAddress, SxbLaneRule, testing::ValuesIn(firstReadAddressCases()),
                         caseName);

std::vector<RuleCase> idleExitCases() {
    const std::vector<std::pair<double, unsigned int>> patterns{{2.5, 0},  {5.0, 0},  {8.0, 0},
                                                                {16.0, 1}, {32.0, 2}, {10.3125, 2}};
    std::vector<RuleCase> cases;
    for (const auto& [rate, pattern] : patterns) {
        const VariableValues lineRate{{"RX_LINE_RATE", rate}};
        cases.push_back(fieldCase("RX_PCS_CFG2.RX_EIEOS_PATTERN_SEL",
                                  with(lineRate, {{"PCIE_ENABLE", true}}), pattern));
        cases.push_back(fieldCase("RX_PCS_CFG2.RX_EIEOS_PATTERN_SEL",
                                  with(lineRate, {{"PCIE_ENABLE", false}}), 0));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfTheIdleExit, SxbLaneRule, testing::ValuesIn(idleExitCases()), caseName);

}  // namespace
}  // namespace lanecfg_test
