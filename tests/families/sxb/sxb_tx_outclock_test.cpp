#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

const std::string report = "TX outclock report";
constexpr double infinity = std::numeric_limits<double>::infinity();

/// 10 Gb/s in words of 20 bits, 500 MHz; the LCPLL's divider path gives 10 / 5 / 2 = 1 GHz, the
/// RPLL's 8 / 5 / 2 = 0.8 GHz.
VariableValues lane() {
    return {{"PIPE_CTRL_CFG7.TXOUTCLKCTL", 2U},
            {"TX_PCS_CFG0.TX_DATA_WIDTH", 3U},
            {"DA_CFG.TX_DA_REFCLK_SEL", 1U},
            {"PIPE_CTRL_CFG7.TX_DA_BYP", 1U},
            {"CHCLK_TXPI_CFG0.TX_PROGCLK_SEL", 1U},
            {"CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", 1U},
            {"INT_TXOUTCLKDIV_FOR_PROGDIV_PATH", 2U},
            {"INT_TXPROGDIV_SEL", 5.0},
            {"TX_LINE_RATE", 10.0},
            {"INT_LCPLL_REFCLKFREQ", 100.0},
            {"INT_RPLL_REFCLKFREQ", 156.25},
            {"INT_LCPLL_PLLCLKOUT", 10.0},
            {"INT_RPLL_PLLCLKOUT", 8.0},
            {"CHCLK_TXPI_CFG0.TXPI_BYPASS", 0U},
            {"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 1U},
            {"LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL", 1U},
            {"RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL", 6U}};
}

enum class Pll { lcpll, rpll };

RuleCase controlled(unsigned int control, const VariableValues& others, double frequency,
                    unsigned int clocksPerWord, Pll reported) {
    const bool isLcpll = reported == Pll::lcpll;
    return {report,
            with(with(lane(), {{"PIPE_CTRL_CFG7.TXOUTCLKCTL", control}}), others),
            {{"INT_TXOUTCLK_FREQ", frequency},
             {"TX_PHALIGN_CFG0.DAPI_BUFG_DIV", clocksPerWord},
             {"INT_TXOUTCLK_REFCLK_FREQ", isLcpll ? 100.0 : 156.25},
             {"INT_TXOUTCLK_REFCLK_SOURCE", isLcpll ? "LCPLLGTREFCLK0"s : "RPLLSOUTHREFCLK1"s}}};
}

const VariableValues rpllServesTheLine{{"CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", 0U}};
const VariableValues alignerFollowsRpll{{"DA_CFG.TX_DA_REFCLK_SEL", 0U}};

INSTANTIATE_TEST_SUITE_P(OfTheTransmitClock, SxbLaneRule,
                         testing::Values(controlled(1, {}, 500.0, 0, Pll::lcpll),
                                         controlled(2, {}, 500.0, 0, Pll::lcpll),
                                         controlled(1, rpllServesTheLine, 500.0, 0, Pll::rpll),
                                         controlled(2, rpllServesTheLine, 500.0, 0, Pll::rpll),
                                         controlled(2, alignerFollowsRpll, 500.0, 0, Pll::lcpll),
                                         controlled(3, {}, 100.0, 0, Pll::lcpll),
                                         controlled(3, alignerFollowsRpll, 156.25, 0, Pll::rpll),
                                         controlled(3, rpllServesTheLine, 100.0, 0, Pll::lcpll),
                                         controlled(4, {}, 50.0, 0, Pll::lcpll),
                                         controlled(4, alignerFollowsRpll, 78.125, 0, Pll::rpll),
                                         controlled(6, {}, 1.0, 0, Pll::lcpll),
                                         controlled(6, alignerFollowsRpll, 1.0, 0, Pll::rpll),
                                         controlled(0, rpllServesTheLine, 1.0, 0, Pll::lcpll),
                                         controlled(7, alignerFollowsRpll, 1.0, 0, Pll::rpll)),
                         caseName);

VariableValues programmable(unsigned int programmableClock, unsigned int interpolatorBypass,
                            unsigned int pllClock, unsigned int clockSource) {
    return {{"CHCLK_TXPI_CFG0.TX_PROGCLK_SEL", programmableClock},
            {"CHCLK_TXPI_CFG0.TXPI_BYPASS", interpolatorBypass},
            {"CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", pllClock},
            {"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", clockSource}};
}

const VariableValues alignerInUse{{"PIPE_CTRL_CFG7.TX_DA_BYP", 0U}};

INSTANTIATE_TEST_SUITE_P(
    OfTheTransmitDivider, SxbLaneRule,
    testing::Values(
        // The programmable clock is the RPLL's, whatever else is chosen.
        controlled(5, programmable(2, 1, 1, 1), 800.0, 4, Pll::rpll),
        controlled(5, programmable(2, 0, 0, 0), 800.0, 4, Pll::rpll),
        controlled(5, with(programmable(2, 1, 1, 1), alignerInUse), 400.0, 2, Pll::rpll),
        // It follows the line's PLL by its own choice or by a bypassed interpolator.
        controlled(5, programmable(1, 0, 1, 0), 1000.0, 4, Pll::lcpll),
        controlled(5, programmable(1, 0, 0, 1), 800.0, 4, Pll::rpll),
        controlled(5, programmable(0, 1, 1, 0), 1000.0, 4, Pll::lcpll),
        controlled(5, programmable(0, 1, 0, 1), 800.0, 4, Pll::rpll),
        controlled(5, with(programmable(1, 1, 1, 0), alignerInUse), 500.0, 2, Pll::lcpll),
        controlled(5, with(programmable(1, 1, 0, 0), alignerInUse), 400.0, 2, Pll::rpll),
        // Otherwise it follows the oscillator's source, and the report the line's PLL.
        controlled(5, programmable(0, 0, 1, 1), 1000.0, 4, Pll::lcpll),
        controlled(5, programmable(0, 0, 1, 0), 800.0, 4, Pll::lcpll),
        controlled(5, programmable(0, 0, 0, 1), 1000.0, 4, Pll::rpll),
        controlled(5, programmable(3, 2, 0, 0), 800.0, 4, Pll::rpll),
        controlled(5, with(programmable(0, 0, 1, 1), alignerInUse), 500.0, 2, Pll::lcpll),
        // Any bypass but 1 halves.
        controlled(5, {{"PIPE_CTRL_CFG7.TX_DA_BYP", 2U}}, 500.0, 2, Pll::lcpll),
        // The aligner's reference has no part in it.
        controlled(5, alignerFollowsRpll, 1000.0, 4, Pll::lcpll),
        controlled(5, {{"INT_TXPROGDIV_SEL", 40.0}}, 125.0, 0, Pll::lcpll),
        controlled(5, {{"INT_TXPROGDIV_SEL", 20.0}}, 250.0, 2, Pll::lcpll)),
    caseName);

INSTANTIATE_TEST_SUITE_P(
    OfTransmitClocksWithoutAnEnd, SxbLaneRule,
    testing::Values(controlled(1, {{"TX_PCS_CFG0.TX_DATA_WIDTH", 0U}}, infinity, 0, Pll::lcpll),
                    controlled(2, {{"TX_PCS_CFG0.TX_DATA_WIDTH", 1U}}, infinity, 0, Pll::lcpll),
                    controlled(5, {{"TX_PCS_CFG0.TX_DATA_WIDTH", 0U}}, 1000.0, 0, Pll::lcpll),
                    controlled(5, {{"TX_LINE_RATE", 0.0}}, 1000.0, 0, Pll::lcpll),
                    controlled(5, {{"INT_TXPROGDIV_SEL", 0.0}}, infinity, 0, Pll::lcpll),
                    controlled(5, {{"INT_TXOUTCLKDIV_FOR_PROGDIV_PATH", 0U}}, infinity, 0,
                               Pll::lcpll)),
    caseName);

std::vector<RuleCase> widthCases() {
    const std::vector<std::pair<unsigned int, double>> bits{
        {2, 16.0}, {3, 20.0}, {4, 32.0}, {5, 40.0}, {6, 64.0}, {7, 80.0}, {8, 128.0}, {9, 160.0}};
    std::vector<RuleCase> cases;
    for (const auto& [code, width] : bits) {
        cases.push_back(
            controlled(1, {{"TX_PCS_CFG0.TX_DATA_WIDTH", code}}, 10000.0 / width, 0, Pll::lcpll));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfTransmitWidths, SxbLaneRule, testing::ValuesIn(widthCases()), caseName);

struct SourceRow {
    unsigned int selector;
    std::string name;
};

std::vector<RuleCase> sourceCases() {
    const std::vector<SourceRow> rows{{1, "GTREFCLK0"},
                                      {2, "GTREFCLK1"},
                                      {3, "NORTHREFCLK0"},
                                      {4, "NORTHREFCLK1"},
                                      {5, "SOUTHREFCLK0"},
                                      {6, "SOUTHREFCLK1"},
                                      {7, "GTGREFCLK"},
                                      {0, ""},
                                      {8, ""}};
    std::vector<RuleCase> cases;
    for (const SourceRow& row : rows) {
        cases.push_back({report,
                         with(lane(), {{"LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL", row.selector}}),
                         {{"INT_TXOUTCLK_REFCLK_SOURCE", "LCPLL" + row.name}}});
        cases.push_back({report,
                         with(with(lane(), rpllServesTheLine),
                              {{"RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL", row.selector}}),
                         {{"INT_TXOUTCLK_REFCLK_SOURCE", "RPLL" + row.name}}});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfTheTransmitReference, SxbLaneRule, testing::ValuesIn(sourceCases()),
                         caseName);

}  // namespace
}  // namespace lanecfg_test
