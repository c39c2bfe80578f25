#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

const std::string report = "RX outclock report";
constexpr double infinity = std::numeric_limits<double>::infinity();

/// 10 Gb/s in words of 20 bits, 500 MHz; the LCPLL's divider path gives 10 / 5 / 2 = 1 GHz, the
/// RPLL's 8 / 5 / 2 = 0.8 GHz.
VariableValues lane() {
    return {{"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 1U},
            {"RX_PCS_CFG0.RX_DATA_WIDTH", 3U},
            {"RX_LINE_RATE", 10.0},
            {"INT_LCPLL_PLLCLKOUT", 10.0},
            {"INT_RPLL_PLLCLKOUT", 8.0},
            {"PIPE_CTRL_CFG7.RXOUTCLKCTL", 2U},
            {"INT_RXPROGDIV_SEL", 5.0},
            {"INT_RXOUTCLKDIV_FOR_PROGDIV_PATH", 2U},
            {"INT_LCPLL_REFCLKFREQ", 100.0},
            {"INT_RPLL_REFCLKFREQ", 156.25},
            {"PIPE_CTRL_CFG7.RX_DA_BYP", 1U},
            {"DA_CFG.RX_DA_REFCLK_SEL", 1U},
            {"LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL", 1U},
            {"RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL", 6U},
            {"INT_TXOUTCLK_FREQ", 77.5}};
}

RuleCase reportCase(const VariableValues& others, double frequency, unsigned int clocksPerWord) {
    return {report,
            with(lane(), others),
            {{"INT_RXOUTCLK_FREQ", frequency}, {"RX_PHALIGN_CFG0.DAPI_BUFG_DIV", clocksPerWord}}};
}

RuleCase controlled(unsigned int control, const VariableValues& others, double frequency,
                    unsigned int clocksPerWord = 0) {
    return reportCase(with({{"PIPE_CTRL_CFG7.RXOUTCLKCTL", control}}, others), frequency,
                      clocksPerWord);
}

INSTANTIATE_TEST_SUITE_P(
    OfTheReceiveClock, SxbLaneRule,
    testing::Values(controlled(1, {}, 500.0), controlled(2, {}, 500.0), controlled(3, {}, 100.0),
                    controlled(3, {{"DA_CFG.RX_DA_REFCLK_SEL", 0U}}, 156.25),
                    controlled(3, {{"DA_CFG.RX_DA_REFCLK_SEL", 2U}}, 156.25),
                    controlled(4, {}, 50.0),
                    controlled(4, {{"DA_CFG.RX_DA_REFCLK_SEL", 0U}}, 78.125),
                    controlled(6, {}, 77.5), controlled(0, {}, 1.0), controlled(7, {}, 1.0),
                    // Two words a clock, times the output divider.
                    controlled(5, {}, 1000.0, 4),
                    // 0.8 GHz over half a gigaword a second is 1.6, which rounds to 2.
                    controlled(5, {{"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 0U}}, 800.0, 4),
                    controlled(5, {{"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 2U}}, 800.0, 4),
                    // The aligner halves the clock.
                    controlled(5, {{"PIPE_CTRL_CFG7.RX_DA_BYP", 0U}}, 500.0, 2),
                    controlled(5, {{"PIPE_CTRL_CFG7.RX_DA_BYP", 2U}}, 500.0, 2),
                    // A quarter of a clock a word rounds to none, and half of one to one.
                    controlled(5, {{"INT_RXPROGDIV_SEL", 40.0}}, 125.0, 0),
                    controlled(5, {{"INT_RXPROGDIV_SEL", 20.0}}, 250.0, 2),
                    controlled(5, {{"INT_RXOUTCLKDIV_FOR_PROGDIV_PATH", 1U}}, 2000.0, 4)),
    caseName);

std::vector<RuleCase> widthCases() {
    const std::vector<std::pair<unsigned int, double>> bits{
        {2, 16.0}, {3, 20.0}, {4, 32.0}, {5, 40.0}, {6, 64.0}, {7, 80.0}, {8, 128.0}, {9, 160.0}};
    std::vector<RuleCase> cases;
    for (const auto& [code, width] : bits) {
        // 10 Gb/s are 10000 over the bits in megawords a second.
        cases.push_back(controlled(1, {{"RX_PCS_CFG0.RX_DATA_WIDTH", code}}, 10000.0 / width));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfReceiveWidths, SxbLaneRule, testing::ValuesIn(widthCases()), caseName);

INSTANTIATE_TEST_SUITE_P(
    OfReceiveClocksWithoutAnEnd, SxbLaneRule,
    testing::Values(controlled(1, {{"RX_PCS_CFG0.RX_DATA_WIDTH", 0U}}, infinity),
                    controlled(2, {{"RX_PCS_CFG0.RX_DATA_WIDTH", 10U}}, infinity),
                    controlled(1, {{"RX_PCS_CFG0.RX_DATA_WIDTH", 1U}, {"RX_LINE_RATE", 0.0}},
                               infinity),
                    // The clock itself needs no width.
                    controlled(5, {{"RX_PCS_CFG0.RX_DATA_WIDTH", 0U}}, 1000.0, 0),
                    controlled(5, {{"RX_LINE_RATE", 0.0}}, 1000.0, 0),
                    controlled(5, {{"INT_RXPROGDIV_SEL", 0.0}}, infinity, 0),
                    controlled(5, {{"INT_RXOUTCLKDIV_FOR_PROGDIV_PATH", 0U}}, infinity, 0)),
    caseName);

TEST(SxbRxOutclock, AnIdlePllWithoutADividerGivesNoClockToADivider) {
    RuleAlone rule(report, with(lane(), {{"PIPE_CTRL_CFG7.RXOUTCLKCTL", 5U},
                                         {"INT_LCPLL_PLLCLKOUT", 0.0},
                                         {"INT_RXPROGDIV_SEL", 0.0},
                                         {"INT_RXOUTCLKDIV_FOR_PROGDIV_PATH", 0U}}));
    rule.runPass();
    EXPECT_TRUE(std::isnan(boost::get<double>(rule.value("INT_RXOUTCLK_FREQ"))));
    EXPECT_EQ(rule.value("RX_PHALIGN_CFG0.DAPI_BUFG_DIV"), ruleValue(0U));
}

RuleCase sourceCase(unsigned int lcpll, unsigned int selector, double frequency,
                    const std::string& source) {
    const std::string selectorName = lcpll == 1 ? "LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL"
                                                : "RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL";
    return {report,
            with(lane(), {{"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", lcpll}, {selectorName, selector}}),
            {{"INT_RXOUTCLK_REFCLK_FREQ", frequency}, {"INT_RXOUTCLK_REFCLK_SOURCE", source}}};
}

INSTANTIATE_TEST_SUITE_P(
    OfTheReceiveReference, SxbLaneRule,
    testing::Values(
        sourceCase(1, 1, 100.0, "LCPLLGTREFCLK0"), sourceCase(1, 2, 100.0, "LCPLLGTREFCLK1"),
        sourceCase(1, 3, 100.0, "LCPLLNORTHREFCLK0"), sourceCase(1, 4, 100.0, "LCPLLNORTHREFCLK1"),
        sourceCase(1, 5, 100.0, "LCPLLSOUTHREFCLK0"), sourceCase(1, 6, 100.0, "LCPLLSOUTHREFCLK1"),
        sourceCase(1, 7, 100.0, "LCPLLGTGREFCLK"), sourceCase(1, 0, 100.0, "LCPLL"),
        sourceCase(1, 8, 100.0, "LCPLL"), sourceCase(0, 1, 156.25, "RPLLGTREFCLK0"),
        sourceCase(0, 7, 156.25, "RPLLGTGREFCLK"), sourceCase(0, 0, 156.25, "RPLL"),
        sourceCase(3, 2, 156.25, "RPLLGTREFCLK1")),
    caseName);

}  // namespace
}  // namespace lanecfg_test
