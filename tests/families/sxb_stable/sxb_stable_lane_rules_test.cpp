#include "sxb_stable_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

/// A field that follows the equaliser's mode: with feedback and without. "AUTO" is without, since
/// nothing decides for it.
struct EqualiserField {
    std::string name;
    unsigned int withFeedback;
    unsigned int without;
};

std::vector<RuleCase> equaliserCases() {
    const std::vector<EqualiserField> fields{
        {"ADAPT_GEN_CFG0.gc1_disloop", 0, 1},   {"ADAPT_KH_CFG0.khcdeg_mshift", 2, 12},
        {"ADAPT_KL_CFG0.kl_mshift", 1, 12},     {"ADAPT_KL_CFG0.kl_initdac", 16, 15},
        {"RX_CTLE_CFG0.RX_AGC1_LOW_PWR", 0, 0}, {"RX_CTLE_CFG0.RX_AGC2_LOW_PWR", 0, 0},
        {"RX_CTLE_CFG0.RX_CTLE1_LOW_PWR", 0, 0}};
    std::vector<RuleCase> cases;
    for (const EqualiserField& field : fields) {
        cases.push_back(fieldCase(field.name, {{"RX_EQ_MODE", "DFE"s}}, field.withFeedback));
        cases.push_back(fieldCase(field.name, {{"RX_EQ_MODE", "LPM"s}}, field.without));
        cases.push_back(fieldCase(field.name, {{"RX_EQ_MODE", "AUTO"s}}, field.without));
    }
    const auto crossed = [](const std::string& mode, double rate, unsigned int value) {
        return fieldCase("RX_MISC_CFG0.RX_XMODE_SEL",
                         {{"RX_EQ_MODE", mode}, {"RX_LINE_RATE", rate}}, value);
    };
    append(cases, {crossed("DFE", 10.3, 1), crossed("DFE", 10.4, 0), crossed("LPM", 10.3, 0),
                   crossed("AUTO", 10.3, 0)});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(Equaliser, SxbStableRule, testing::ValuesIn(equaliserCases()), caseName);

RuleCase gearboxCase(const std::string& coding, unsigned int use, unsigned int mode) {
    return {"TX_PCS_CFG0.USE_GB",
            {{"TX_DATA_ENCODING", coding}},
            {{"TX_PCS_CFG0.USE_GB", use}, {"TX_PCS_CFG0.MODE", mode}}};
}

INSTANTIATE_TEST_SUITE_P(Gearbox, SxbStableRule,
                         testing::Values(gearboxCase("RAW", 0, 0), gearboxCase("8B10B", 0, 0),
                                         gearboxCase("64B66B_SYNC", 1, 1),
                                         gearboxCase("64B67B", 1, 0),
                                         gearboxCase("64B67B_CAUI", 1, 4),
                                         gearboxCase("64B66B_ASYNC", 1, 17),
                                         gearboxCase("64B66B_ASYNC_CAUI", 1, 21)),
                         caseName);

TEST(SxbStableGearbox, TellsNobodyThatItIsAsynchronous) {
    StableRule rule("TX_PCS_CFG0.USE_GB", {{"TX_DATA_ENCODING", "64B66B_ASYNC"s}});
    rule.runPass();
    EXPECT_EQ(rule.value("INT_TX_ASYNC_GEARBOX_EN"), ruleValue());
}

/// A side whose fabric clock is the programmable divider's: words of 40 bits at 10 Gb/s come at
/// 0.25 GHz, the LCPLL runs at 10 GHz and the RPLL at 5 GHz, and the divider is 4, so that a word
/// has 10 clocks from the LCPLL and 5 from the RPLL.
VariableValues dividedClock(const std::string& side) {
    return {{"PIPE_CTRL_CFG7." + side + "OUTCLKCTL", 5U},
            {side + "_PCS_CFG0." + side + "_DATA_WIDTH", 5U},
            {side + "_LINE_RATE", 10.0},
            {"INT_" + side + "PROGDIV_SEL", 4.0},
            {"INT_" + side + "OUTCLKDIV_FOR_PROGDIV_PATH", 1U},
            {"PIPE_CTRL_CFG7." + side + "_DA_BYP", 1U},
            {"INT_LCPLL_PLLCLKOUT", 10.0},
            {"INT_RPLL_PLLCLKOUT", 5.0}};
}

RuleCase clocksCase(const std::string& side, const VariableValues& inputs, unsigned int clocks) {
    const VariableValues selects = side == "RX"
                                       ? VariableValues{{"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 1U}}
                                       : VariableValues{{"CHCLK_TXPI_CFG0.TX_PROGCLK_SEL", 1U},
                                                        {"CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", 1U},
                                                        {"CHCLK_TXPI_CFG0.TXPI_BYPASS", 1U},
                                                        {"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 1U}};
    return {side + " clocks per word",
            with(with(dividedClock(side), selects), inputs),
            {{side + "_PHALIGN_CFG0.DAPI_BUFG_DIV", clocks}}};
}

/// What both directions have.
std::vector<RuleCase> commonClocksCases() {
    std::vector<RuleCase> cases;
    for (const std::string side : {"RX", "TX"}) {
        cases.push_back(clocksCase(side, {}, 10));
        // The aligner halves the clock; the output divider counts in steps of itself.
        cases.push_back(clocksCase(side, {{"PIPE_CTRL_CFG7." + side + "_DA_BYP", 0U}}, 5));
        cases.push_back(clocksCase(side, {{"INT_" + side + "OUTCLKDIV_FOR_PROGDIV_PATH", 4U}}, 12));
        // Without a width, or without a divider, there is no number of clocks.
        cases.push_back(clocksCase(side, {{side + "_PCS_CFG0." + side + "_DATA_WIDTH", 0U}}, 0));
        cases.push_back(clocksCase(side, {{"INT_" + side + "PROGDIV_SEL", 0.0}}, 0));
        for (const unsigned int control : {0U, 1U, 2U, 3U, 4U, 6U}) {
            cases.push_back(
                clocksCase(side, {{"PIPE_CTRL_CFG7." + side + "OUTCLKCTL", control}}, 0));
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(ClocksInAWord, SxbStableRule, testing::ValuesIn(commonClocksCases()),
                         caseName);

INSTANTIATE_TEST_SUITE_P(
    ReceiveClocksInAWord, SxbStableRule,
    testing::Values(clocksCase("RX", {{"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 0U}}, 5)), caseName);

/// Selects of the transmitter: programmable clock, PLL clock, interpolator bypass, oscillator.
RuleCase transmitCase(unsigned int programmable, unsigned int pll, unsigned int bypass,
                      unsigned int oscillator, unsigned int clocks) {
    return clocksCase("TX",
                      {{"CHCLK_TXPI_CFG0.TX_PROGCLK_SEL", programmable},
                       {"CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", pll},
                       {"CHCLK_TXPI_CFG0.TXPI_BYPASS", bypass},
                       {"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", oscillator}},
                      clocks);
}

INSTANTIATE_TEST_SUITE_P(TransmitClocksInAWord, SxbStableRule,
                         testing::Values(
                             // 2 is the RPLL, whatever the others say.
                             transmitCase(2, 1, 1, 1, 5),
                             // 1, or a bypassed interpolator, follows the PLL clock.
                             transmitCase(1, 1, 0, 0, 10), transmitCase(1, 0, 0, 1, 5),
                             transmitCase(0, 1, 1, 0, 10), transmitCase(0, 0, 1, 1, 5),
                             // What is left follows the oscillator.
                             transmitCase(0, 0, 0, 1, 10), transmitCase(0, 1, 0, 0, 5)),
                         caseName);

}  // namespace
}  // namespace lanecfg_test
