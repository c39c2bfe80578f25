#include "sxb_field_case.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

template <class Key>
std::vector<FieldCase> casesOf(const std::string& field, const std::string& input,
                               const std::vector<std::pair<Key, unsigned int>>& rows) {
    std::vector<FieldCase> cases;
    cases.reserve(rows.size());
    for (const auto& [key, code] : rows) {
        cases.push_back({field, {{input, key}}, code});
    }
    return cases;
}

std::vector<FieldCase> referenceDividerCases() {
    const std::vector<std::pair<unsigned int, unsigned int>> rows{
        {1, 4}, {2, 0}, {3, 1}, {4, 2}, {5, 3}, {0, 4}, {6, 4}, {4294967295U, 4}};
    std::vector<FieldCase> cases;
    append(cases, casesOf("LCPLL_CFG0.LCPLL_PREDIV", "INT_LCPLL_REF_DIV", rows));
    append(cases, casesOf("RPLL_CFG0.RPLL_REFDIV", "INT_RPLL_REF_DIV", rows));
    return cases;
}

std::vector<FieldCase> outputDividerCases() {
    const std::vector<std::pair<double, unsigned int>> rows{
        {1.0, 0}, {2.0, 1},  {4.0, 2}, {8.0, 3},      {16.0, 4}, {32.0, 5},     {2.5, 7},
        {3.0, 0}, {64.0, 0}, {0.0, 0}, {INFINITY, 0}, {NAN, 0},  {2.0000001, 0}};
    std::vector<FieldCase> cases;
    append(cases, casesOf("PIPE_CTRL_CFG3.TXOUT_DIV", "INT_TX_OUTDIV", rows));
    append(cases, casesOf("PIPE_CTRL_CFG3.RXOUT_DIV", "INT_RX_OUTDIV", rows));
    return cases;
}

std::vector<FieldCase> programmableDividerCases() {
    const std::vector<std::pair<double, unsigned int>> rows{
        {16.0, 64}, {32.0, 66}, {8.0, 88},   {20.0, 96}, {40.0, 98}, {10.0, 120}, {33.0, 280},
        {4.0, 600}, {5.0, 632}, {16.5, 792}, {5.5, 920}, {0.0, 0},   {6.0, 0},    {NAN, 0}};
    std::vector<FieldCase> cases;
    append(cases, casesOf("PIPE_CTRL_CFG8.TXPROGDIVSEL", "INT_TXPROGDIV_SEL", rows));
    append(cases, casesOf("PIPE_CTRL_CFG8.RXPROGDIVSEL", "INT_RXPROGDIV_SEL", rows));
    return cases;
}

/// The oscillator's feedback is the same for every configuration.
std::vector<FieldCase> oscillatorFeedbackCases() {
    return casesOf<double>("CHCLK_MISC_CFG.CHCLK_FBDIV_VAL", "INT_RX_OUTDIV",
                           {{1.0, 31}, {2.5, 31}, {32.0, 31}, {0.0, 31}, {NAN, 31}});
}

INSTANTIATE_TEST_SUITE_P(ReferenceDividers, SxbLaneRule,
                         testing::ValuesIn(ruleCases(referenceDividerCases())), caseName);
INSTANTIATE_TEST_SUITE_P(OutputDividers, SxbLaneRule,
                         testing::ValuesIn(ruleCases(outputDividerCases())), caseName);
INSTANTIATE_TEST_SUITE_P(ProgrammableDividers, SxbLaneRule,
                         testing::ValuesIn(ruleCases(programmableDividerCases())), caseName);
INSTANTIATE_TEST_SUITE_P(OscillatorFeedbackIs31ForEveryConfiguration, SxbLaneRule,
                         testing::ValuesIn(ruleCases(oscillatorFeedbackCases())), caseName);

}  // namespace
}  // namespace lanecfg_test
