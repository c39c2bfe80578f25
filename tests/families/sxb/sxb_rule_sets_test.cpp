#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_rules.h"
#include "support/lane_set.h"

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

class SxbRuleSets : public testing::Test {
  protected:
    SxbRuleSets() {
        engine.settings = {{"FLCPLLRANGE_MIN", {"8.0"}}, {"FLCPLLRANGE_MAX", {"16.375"}}};
        sable_lanecfg::registerSxbRxRules(engine);
        sable_lanecfg::registerSxbTxRules(engine);
        sable_lanecfg::registerSxbPllRules(engine);
        // What one set leaves to another is overwritten in the first pass.
        engine.set(quadInputs());
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
    const auto resultsOf = [this](const VariableValues& inputs) {
        engine.set(inputs);
        engine.runPass();
        return engine.values();
    };
    std::vector<std::pair<VariableValues, VariableValues>> runs;
    for (int run = 0; run < 50; ++run) {
        const VariableValues inputs = randomLane(random);
        runs.emplace_back(inputs, resultsOf(inputs));
    }
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        EXPECT_THAT(differences(resultsOf(run->first), run->second), IsEmpty());
    }
}

}  // namespace
}  // namespace lanecfg_test
