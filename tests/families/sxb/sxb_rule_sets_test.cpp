#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_rules.h"
#include "sxb_lane_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

// The three rule sets together, registered in the order in which an instance registers them.

namespace lanecfg_test {
namespace {

using namespace std::string_literals;
using testing::IsEmpty;

/// Everything that only the PLL set reads: both directions run from an LCPLL of 10.3125 GHz.
VariableValues pllInputs() {
    return {{"DUAL", 0U},
            {"GEN3_INT_DATA_WIDTH", 16U},
            {"LaneNum", 0U},
            {"LaneTxRxMode", "txrx_rate_together"s},
            {"MAX_RATE", 0U},
            {"MULTI_RATE", false},
            {"OOB_ENABLE", false},
            {"PCIE_USERCLK2_FREQ", 250.0F},
            {"PCIE_USERCLK_FREQ", 250.0F},
            {"RPLL_USED_FOR_SERIAL_DATA_RATE0", false},
            {"XPU_MODE", 0.0F}};
}

VariableValues pllInputsOf(const std::string& side) {
    VariableValues values{{side + "PROGDIV_FREQ_ENABLE", false},
                          {side + "PROGDIV_FREQ_SOURCE", "LCPLL"s},
                          {side + "PROGDIV_FREQ_VAL", 322.265625},
                          {side + "_IN_USE", true},
                          {side + "_LCPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>{10.3125}},
                          {side + "_LCPLL_POWERDOWN", false},
                          {side + "_LCPLL_REFCLK_FREQUENCY", 156.25},
                          {side + "_LCPLL_REFCLK_ID", 0U},
                          {side + "_LCPLL_REFCLK_SOURCE", "R2"s},
                          {side + "_OUTCLK_SOURCE", side + "PROGDIVCLK"},
                          {side + "_PLL_TYPE", "LCPLL"s},
                          {side + "_RPLL_POWERDOWN", true},
                          {side + "_RPLL_REFCLK_FREQUENCY", 0.0},
                          {side + "_RPLL_REFCLK_ID", 0U},
                          {side + "_RPLL_REFCLK_SOURCE", "R0"s}};
    for (const std::string channel : {"CH0", "CH1", "CH2", "CH3"}) {
        values[side + "_" + channel + "_SYNCDONE_POSITION"] = "single"s;
    }
    return values;
}

class SxbRuleSets : public testing::Test {
  protected:
    SxbRuleSets() {
        engine.settings = {{"FLCPLLRANGE_MIN", {"8.0"}}, {"FLCPLLRANGE_MAX", {"16.375"}}};
        sable_lanecfg::registerSxbRxRules(engine);
        sable_lanecfg::registerSxbTxRules(engine);
        sable_lanecfg::registerSxbPllRules(engine);
        // What one set leaves to another is overwritten in the first pass.
        engine.set(
            with(laneInputs(), with(pllInputs(), with(pllInputsOf("TX"), pllInputsOf("RX")))));
    }

    LaneEngine engine;
};

TEST_F(SxbRuleSets, Have1909RulesInTheOrderReceiveTransmitPll) {
    EXPECT_EQ(engine.ruleNumbers().size(), 1909U);
    EXPECT_EQ(engine.ruleNumber("RX_PCS_CFG0.RX_DATA_WIDTH"), 0);
    EXPECT_EQ(engine.ruleNumber("TX_PCS_CFG0.TX_DATA_WIDTH"), 813);
    EXPECT_EQ(engine.ruleNumber("INT_LCPLL_PLLCLKOUT_VECTOR"), 1011);
    EXPECT_EQ(engine.ruleNumber("RPLL_REFCLK_IPS"), 1908);
}

TEST_F(SxbRuleSets, HaveNoCycleAndGiveEveryVariableAValue) {
    engine.runPass();
    EXPECT_THAT(blankResults(engine), IsEmpty());
}

TEST_F(SxbRuleSets, TenGigabitFromAnLcpllOf10Point3125) {
    engine.runPass();
    EXPECT_EQ(engine.value("INT_LCPLL_REF_DIV"), ruleValue(1U));
    EXPECT_EQ(engine.value("INT_LCPLL_FBDIV"), ruleValue(66U));
    EXPECT_EQ(engine.value("INT_RX_OUTDIV"), ruleValue(2.0));
    // 10.3125 GHz over 4 and 8 is 322.265625 MHz, the rate over 32 bits; in words of 40 bits, as
    // their code counts, that is 1.25 clocks a word, in steps of 8.
    for (const std::string side : {"TX", "RX"}) {
        EXPECT_EQ(engine.value("INT_" + side + "OUTCLK_FREQ"), ruleValue(322.265625)) << side;
        EXPECT_EQ(engine.value(side + "_PHALIGN_CFG0.DAPI_BUFG_DIV"), ruleValue(8U)) << side;
        EXPECT_EQ(engine.value("INT_" + side + "OUTCLK_REFCLK_SOURCE"),
                  ruleValue("LCPLLNORTHREFCLK0"s))
            << side;
    }
    // 32 over the output divider of 2.
    EXPECT_EQ(engine.value("RX_CDR_CFG2.FDIVFAC"), ruleValue(4U));
}

TEST_F(SxbRuleSets, ACommonClockMakesTheReceiverFollowTheTransmitter) {
    engine.set({{"TX_COMMON_USRCLK", true},
                {"TX_BUFFER_MODE", 0U},
                {"RX_BUFFER_MODE", 0U},
                {"RX_OUTCLK_SOURCE", "RXOUTCLKPMA"s}});
    engine.runPass();
    EXPECT_EQ(engine.value("RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE"), ruleValue(3U));
    EXPECT_EQ(engine.value("INT_RXOUTCLK_FREQ"), engine.value("INT_TXOUTCLK_FREQ"));
}

TEST_F(SxbRuleSets, APassDoesNotDependOnTheOneBefore) {
    std::mt19937 random{7};
    const auto oneOf = [&random](const std::vector<ruleValue>& values) {
        return values[std::uniform_int_distribution<std::size_t>(0, values.size() - 1)(random)];
    };
    const std::vector<std::pair<std::string, std::vector<ruleValue>>> choices{
        {"RX_DATA_DECODING", {"RAW"s, "8B10B"s, "64B66B_ASYNC"s, "128B130B"s}},
        {"TX_DATA_ENCODING", {"RAW"s, "8B10B"s, "64B66B_ASYNC"s, "PRBS"s}},
        {"RX_INT_DATA_WIDTH", {16U, 20U, 32U, 40U, 64U, 80U}},
        {"TX_INT_DATA_WIDTH", {16U, 20U, 32U, 40U, 64U, 80U}},
        {"RX_BUFFER_MODE", {0U, 1U}},
        {"TX_BUFFER_MODE", {0U, 1U}},
        {"PCIE_ENABLE", {false, true}},
        {"RX_PPM_OFFSET", {0U, 300U}},
        {"RX_SSC_PPM", {0U, 5000U}},
        {"RX_CC_NUM_SEQ", {0U, 1U, 2U}},
        {"RX_CB_NUM_SEQ", {0U, 1U, 2U}},
        {"RX_EQ_MODE", {"AUTO"s, "LPM"s}}};
    const auto resultsOf = [this](const VariableValues& inputs) {
        engine.set(inputs);
        engine.runPass();
        VariableValues results;
        for (const auto& [name, info] : engine.varMap) {
            results[name] = info.value;
        }
        return results;
    };
    std::vector<std::pair<VariableValues, VariableValues>> runs;
    for (int run = 0; run < 50; ++run) {
        VariableValues inputs;
        for (const auto& [name, values] : choices) {
            inputs[name] = oneOf(values);
        }
        runs.emplace_back(inputs, resultsOf(inputs));
    }
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        EXPECT_EQ(resultsOf(run->first), run->second);
    }
}

}  // namespace
}  // namespace lanecfg_test
