#include "sxb_field_case.h"
#include "sxb_pll_sides.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

std::vector<FieldCase> distributionCases() {
    return {{"HSDIST_CFG.HSDIST_DIV2SEL", {{"INT_LCPLLCLKOUTRATE", "FULL"s}}, 0},
            {"HSDIST_CFG.HSDIST_DIV2SEL", {{"INT_LCPLLCLKOUTRATE", "HALF"s}}, 1},
            {"CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", {{"TX_PLL_TYPE", "LCPLL"s}}, 1},
            {"CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", {{"TX_PLL_TYPE", "RPLL"s}}, 0}};
}

std::vector<FieldCase> bandCases() {
    std::vector<FieldCase> cases;
    for (const TestedSide& side : testedSides()) {
        const std::string field =
            side.word == "TX" ? "CHCLK_TXPI_CFG0.TXPI_BAND_SEL" : "CHCLK_RXPI_CFG.RXPI_BAND_SEL";
        const auto lcpll = [&](double clock, const std::string& rate) {
            return VariableValues{{side.word + "_PLL_TYPE", "LCPLL"s},
                                  {"INT_LCPLL_PLLCLKOUT", clock},
                                  {"INT_LCPLLCLKOUTRATE", rate},
                                  {"INT_RPLL_PLLCLKOUT", 1.0}};
        };
        const auto rpll = [&](double clock) {
            return VariableValues{{side.word + "_PLL_TYPE", "RPLL"s},
                                  {"INT_LCPLL_PLLCLKOUT", 13.0},
                                  {"INT_LCPLLCLKOUTRATE", "HALF"s},
                                  {"INT_RPLL_PLLCLKOUT", clock}};
        };
        append(cases, {{field, lcpll(6.999999, "FULL"), 0},
                       {field, lcpll(7.0, "FULL"), 2},
                       {field, lcpll(11.999999, "FULL"), 2},
                       {field, lcpll(12.0, "FULL"), 3},
                       {field, lcpll(16.375, "FULL"), 3},
                       // Halved to 6.999999, 7, 11.999999 and 12.
                       {field, lcpll(13.999998, "HALF"), 0},
                       {field, lcpll(14.0, "HALF"), 2},
                       {field, lcpll(23.999998, "HALF"), 2},
                       {field, lcpll(24.0, "HALF"), 3},
                       {field, rpll(6.999999), 0},
                       {field, rpll(7.0), 2},
                       {field, rpll(11.999999), 2},
                       {field, rpll(12.0), 3}});
    }
    return cases;
}

std::vector<FieldCase> oscillatorSourceCases() {
    const auto lane = [](bool transmit, bool receive, const std::string& transmitPll,
                         const std::string& receivePll) {
        return VariableValues{{"TX_IN_USE", transmit},
                              {"RX_IN_USE", receive},
                              {"TX_PLL_TYPE", transmitPll},
                              {"RX_PLL_TYPE", receivePll}};
    };
    const std::string field = "CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL";
    return {{field, lane(true, false, "LCPLL", "RPLL"), 1},
            {field, lane(true, false, "RPLL", "LCPLL"), 0},
            {field, lane(true, true, "LCPLL", "RPLL"), 0},
            {field, lane(true, true, "RPLL", "LCPLL"), 1},
            {field, lane(false, true, "LCPLL", "RPLL"), 0},
            {field, lane(false, true, "RPLL", "LCPLL"), 1},
            {field, lane(false, false, "LCPLL", "RPLL"), 0},
            {field, lane(false, false, "RPLL", "LCPLL"), 1}};
}

std::vector<FieldCase> oscillatorCases() {
    const auto clocks = [](unsigned int source, double lcpll, double rpll) {
        return VariableValues{{"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", source},
                              {"INT_LCPLL_PLLCLKOUT", lcpll},
                              {"INT_RPLL_PLLCLKOUT", rpll}};
    };
    const std::string boost = "CHCLK_ILO_CFG.RESERVED_BIT17";
    const std::string lock = "RESET_CFG.ILORESET_PLLLOCK_SEL";
    return {{boost, clocks(1, 14.105, 20.0), 0},
            {boost, clocks(1, 14.105001, 0.0), 1},
            {boost, clocks(0, 20.0, 14.105), 0},
            {boost, clocks(0, 0.0, 14.105001), 1},
            {boost, clocks(2, 0.0, 15.0), 1},
            {lock, {{"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 0U}}, 1},
            {lock, {{"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 1U}}, 0}};
}

std::vector<FieldCase> programmableClockCases() {
    const auto divider = [](bool interpolator, bool enabled, const std::string& source) {
        return VariableValues{{"TX_PIPM_ENABLE", interpolator},
                              {"TXPROGDIV_FREQ_ENABLE", enabled},
                              {"TXPROGDIV_FREQ_SOURCE", source}};
    };
    const std::string source = "CHCLK_TXPI_CFG0.TX_PROGCLK_SEL";
    const std::string bypass = "CHCLK_TXPI_CFG0.TXPI_BYPASS";
    return {{source, divider(true, true, "RPLL"), 0},
            {source, divider(true, false, "LCPLL"), 0},
            {source, divider(false, true, "RPLL"), 2},
            {source, divider(false, true, "LCPLL"), 1},
            {source, divider(false, false, "RPLL"), 1},
            {bypass, {{"TX_BUFFER_MODE", 1U}, {"TX_PIPM_ENABLE", false}}, 1},
            {bypass, {{"TX_BUFFER_MODE", 2U}, {"TX_PIPM_ENABLE", false}}, 1},
            {bypass, {{"TX_BUFFER_MODE", 1U}, {"TX_PIPM_ENABLE", true}}, 0},
            {bypass, {{"TX_BUFFER_MODE", 0U}, {"TX_PIPM_ENABLE", false}}, 0},
            {bypass, {{"TX_BUFFER_MODE", 0U}, {"TX_PIPM_ENABLE", true}}, 0}};
}

INSTANTIATE_TEST_SUITE_P(Distribution, SxbLaneRule,
                         testing::ValuesIn(ruleCases(distributionCases())), caseName);
INSTANTIATE_TEST_SUITE_P(InterpolatorBands, SxbLaneRule, testing::ValuesIn(ruleCases(bandCases())),
                         caseName);
INSTANTIATE_TEST_SUITE_P(OscillatorSource, SxbLaneRule,
                         testing::ValuesIn(ruleCases(oscillatorSourceCases())), caseName);
INSTANTIATE_TEST_SUITE_P(Oscillator, SxbLaneRule, testing::ValuesIn(ruleCases(oscillatorCases())),
                         caseName);
INSTANTIATE_TEST_SUITE_P(ProgrammableClock, SxbLaneRule,
                         testing::ValuesIn(ruleCases(programmableClockCases())), caseName);

}  // namespace
}  // namespace lanecfg_test
