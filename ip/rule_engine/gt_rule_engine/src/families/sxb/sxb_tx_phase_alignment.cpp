#include "families/common/rule_arithmetic.h"
#include "families/sxb/sxb_coding.h"
#include "families/sxb/sxb_lane_alignment.h"
#include "families/sxb/sxb_tx_rule_groups.h"

namespace sable_lanecfg {

namespace {

/// Counts of the phase interpolator. 200 stands twice, and the first code is the one in force.
constexpr code_table<unsigned int, 30> interpolatorCounts{
    {{6, 1},    {8, 2},    {16, 3},   {20, 4},   {24, 5},   {28, 6},   {32, 7},   {40, 8},
     {48, 9},   {56, 10},  {64, 11},  {72, 12},  {80, 13},  {96, 14},  {120, 15}, {132, 16},
     {140, 17}, {156, 18}, {168, 19}, {172, 20}, {180, 21}, {200, 22}, {196, 23}, {200, 24},
     {216, 25}, {228, 26}, {232, 27}, {248, 28}, {250, 29}, {254, 30}}};

void interpolatorWordDivider(rule_declaration& rule) {
    const auto width = rule.reads<unsigned int>("TX_INT_DATA_WIDTH");
    const auto divider = rule.reads<double>("INT_TX_OUTDIV");
    rule.gives([=] { return truncated(width() * divider() * 0.5); });
}

void interpolatorCount(rule_declaration& rule) {
    const auto width = rule.reads<unsigned int>("TX_INT_DATA_WIDTH");
    const auto divider = rule.reads<double>("INT_TX_OUTDIV");
    const auto stepSize = rule.reads<unsigned int>("TX_PHALIGN_CFG4.TXPI_SETINIT_STEPSIZE");
    rule.gives([=] {
        const double steps = codeOf(internalWidthBytes, width()) * divider() * 16.0;
        return codeOf(interpolatorCounts, truncated(steps / (stepSize() + 1.0)));
    });
}

}  // namespace

void addTxPhaseAlignmentRules(logicRules& rules) {
    addLaneAlignmentRules(rules, transmitSide, "TX_PHALIGN_CFG4.MLDLY_SETINIT_PH_CNT");
    rules["TX_PHALIGN_CFG5.TXPI_PMA_DIV"] = interpolatorWordDivider;
    rules["TX_PHALIGN_CFG2.TXPI_SETINIT_PH_CNT"] = interpolatorCount;
}

}  // namespace sable_lanecfg
