#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

RuleCase wordDividerCase(unsigned int width, double divider, unsigned int value) {
    return fieldCase("TX_PHALIGN_CFG5.TXPI_PMA_DIV",
                     {{"TX_INT_DATA_WIDTH", width}, {"INT_TX_OUTDIV", divider}}, value);
}

INSTANTIATE_TEST_SUITE_P(OfTheInterpolatorDivider, SxbLaneRule,
                         testing::Values(wordDividerCase(16, 1.0, 8), wordDividerCase(80, 2.5, 100),
                                         wordDividerCase(20, 16.0, 160),
                                         wordDividerCase(80, 32.0, 1280),
                                         wordDividerCase(33, 1.0, 16), wordDividerCase(0, 4.0, 0),
                                         wordDividerCase(32, infinity, 0),
                                         wordDividerCase(32, -1.0, 0)),
                         caseName);

RuleCase countCase(unsigned int width, double divider, unsigned int stepSize, unsigned int code) {
    return fieldCase("TX_PHALIGN_CFG2.TXPI_SETINIT_PH_CNT",
                     {{"TX_INT_DATA_WIDTH", width},
                      {"INT_TX_OUTDIV", divider},
                      {"TX_PHALIGN_CFG4.TXPI_SETINIT_STEPSIZE", stepSize}},
                     code);
}

std::vector<RuleCase> countCases() {
    const std::vector<std::pair<unsigned int, unsigned int>> codes{
        {6, 1},    {8, 2},    {16, 3},   {20, 4},   {24, 5},   {28, 6},   {32, 7},   {40, 8},
        {48, 9},   {56, 10},  {64, 11},  {72, 12},  {80, 13},  {96, 14},  {120, 15}, {132, 16},
        {140, 17}, {156, 18}, {168, 19}, {172, 20}, {180, 21}, {196, 23}, {200, 22}, {216, 25},
        {228, 26}, {232, 27}, {248, 28}, {250, 29}, {254, 30}, {0, 0},    {10, 0},   {256, 0}};
    std::vector<RuleCase> cases;
    for (const auto& [count, code] : codes) {
        // A step size of 15 and a width of 2 bytes leave twice the divider.
        cases.push_back(countCase(16, count / 2.0, 15, code));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfInterpolatorCounts, SxbLaneRule, testing::ValuesIn(countCases()),
                         caseName);

INSTANTIATE_TEST_SUITE_P(OfInterpolatorWidths, SxbLaneRule,
                         testing::Values(
                             // With a step size of 3, four times the bytes and the divider.
                             countCase(16, 1.0, 3, 2), countCase(20, 1.0, 3, 2),
                             countCase(32, 1.0, 3, 3), countCase(40, 1.0, 3, 3),
                             countCase(64, 1.0, 3, 7), countCase(80, 1.0, 3, 7),
                             countCase(64, 2.5, 3, 13), countCase(16, 16.0, 3, 0),
                             countCase(128, 1.0, 3, 0),
                             // 6.9 is cut to 6.
                             countCase(16, 3.45, 15, 1), countCase(16, infinity, 3, 0),
                             // A step size of 0 does not divide by 0.
                             countCase(16, 0.25, 0, 2)),
                         caseName);

}  // namespace
}  // namespace lanecfg_test
