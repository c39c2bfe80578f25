#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_catalogue.h"
#include "families/sxb/sxb_tx_rules.h"
#include "support/lane_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;
using testing::IsEmpty;

class SxbTxRegistration : public testing::Test {
  protected:
    SxbTxRegistration() { sable_lanecfg::registerSxbTxRules(engine); }

    LaneEngine engine;
};

TEST_F(SxbTxRegistration, Gives198Rules) {
    EXPECT_EQ(sable_lanecfg::sxbTxCatalogue().ruleCount(), 198U);
    EXPECT_EQ(engine.ruleNumbers().size(), 198U);
}

TEST_F(SxbTxRegistration, NumbersRegistersInTheirOrderAndEachWordBehindItsFields) {
    expectStretches(engine, {{"TX_PCS_CFG0.TX_PMA_DATA_SEL", 4},
                             {"PIPE_TX_EQ_CFG0.TX_DRIVE_MODE", 1},
                             {"INT_TXOUTCLK_FREQ", 1},
                             {"PIPE_TX_EQ_CFG0", 6},
                             {"PIPE_TX_EQ_CFG1", 5},
                             {"PIPE_TX_EQ_CFG2", 3},
                             {"PIPE_TX_EQ_CFG3", 5},
                             {"TX_10G_CFG0", 2},
                             {"TX_10G_CFG1", 6},
                             {"TX_10G_CFG2", 2},
                             {"TX_10G_CFG3", 2},
                             {"TX_ANA_CFG0", 7},
                             {"TX_CRC_CFG0", 9},
                             {"TX_CRC_CFG1", 2},
                             {"TX_CRC_CFG2", 2},
                             {"TX_CRC_CFG3", 2},
                             {"TX_DRV_CFG0", 10},
                             {"TX_DRV_CFG1", 13},
                             {"TX_PCS_CFG0", 8},
                             {"TX_PCS_CFG1", 6},
                             {"TX_PCS_CFG2", 5},
                             {"TX_PCS_CFG3", 10},
                             {"TX_PHALIGN_CFG0", 14},
                             {"TX_PHALIGN_CFG1", 9},
                             {"TX_PHALIGN_CFG2", 8},
                             {"TX_PHALIGN_CFG3", 8},
                             {"TX_PHALIGN_CFG4", 9},
                             {"TX_PHALIGN_CFG5", 6},
                             {"TX_PIPPM_CFG", 10},
                             {"TX_SER_CFG0", 5},
                             {"TXRSTDONE_DIST_SEL", 13},
                             {"TERMPROG_CFG", 5}});
}

TEST_F(SxbTxRegistration, OneRuleWritesEachGroupOfFields) {
    const std::vector<std::vector<std::string>> groups{
        {"TX_PCS_CFG0.USE_GB", "TX_PCS_CFG0.MODE", "INT_TX_ASYNC_GEARBOX_EN"},
        {"INT_TXOUTCLK_FREQ", "TX_PHALIGN_CFG0.DAPI_BUFG_DIV", "INT_TXOUTCLK_REFCLK_FREQ",
         "INT_TXOUTCLK_REFCLK_SOURCE"},
        {"TX_PHALIGN_CFG1.SETINIT_PH_CNT", "TX_PHALIGN_CFG4.MLDLY_SETINIT_PH_CNT"}};
    for (const auto& group : groups) {
        for (const std::string& name : group) {
            EXPECT_EQ(engine.ruleNumber(name), engine.ruleNumber(group.front())) << name;
        }
    }
}

TEST_F(SxbTxRegistration, APassGivesEveryVariableAValue) {
    engine.set(laneInputs());
    engine.runPass();
    EXPECT_THAT(blankResults(engine), IsEmpty());
    EXPECT_EQ(engine.value("INT_TXOUTCLK_FREQ"), ruleValue(257.8125));
    EXPECT_EQ(engine.value("INT_TXOUTCLK_REFCLK_SOURCE"), ruleValue("LCPLLGTREFCLK0"s));
    EXPECT_EQ(engine.value("TX_PHALIGN_CFG5.TXPI_PMA_DIV"), ruleValue(32U));
}

TEST_F(SxbTxRegistration, ACopiedFlagIs1Or0) {
    engine.set(laneInputs());
    engine.runPass();
    EXPECT_EQ(engine.value("TX_ANA_CFG0.TX_FIR_MAPPING_PCIE"), ruleValue(0U));
    EXPECT_EQ(engine.value("TX_PIPPM_CFG.TXPIPPMSEL"), ruleValue(0U));
    engine.set({{"PCIE_ENABLE", true}, {"TX_PIPM_ENABLE", true}});
    engine.runPass();
    EXPECT_EQ(engine.value("TX_ANA_CFG0.TX_FIR_MAPPING_PCIE"), ruleValue(1U));
    EXPECT_EQ(engine.value("TX_PIPPM_CFG.TXPIPPMSEL"), ruleValue(1U));
}

TEST(SxbLaneRegistration, TransmitRulesFollowTheReceiveRules) {
    LaneEngine engine;
    sable_lanecfg::registerSxbRxRules(engine);
    sable_lanecfg::registerSxbTxRules(engine);
    EXPECT_EQ(engine.ruleNumbers().size(), 813U + 198U);
    EXPECT_EQ(engine.ruleNumber("TX_PCS_CFG0.TX_DATA_WIDTH"), 813);
    engine.set(laneInputs());
    engine.runPass();
    EXPECT_THAT(blankResults(engine), IsEmpty());
}

TEST(SxbLaneRegistration, AnOutclockThatFollowsTheTransmitterHasItsFrequency) {
    LaneEngine engine;
    sable_lanecfg::registerSxbRxRules(engine);
    sable_lanecfg::registerSxbTxRules(engine);
    engine.set(with(laneInputs(), {{"PIPE_CTRL_CFG7.RXOUTCLKCTL", 6U}, {"TX_LINE_RATE", 20.0}}));
    engine.runPass();
    // 20 Gb/s in words of 40 bits.
    EXPECT_EQ(engine.value("INT_RXOUTCLK_FREQ"), ruleValue(500.0));
}

}  // namespace
}  // namespace lanecfg_test
