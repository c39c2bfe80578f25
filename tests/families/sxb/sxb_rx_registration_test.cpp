#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_rx_rules.h"
#include "support/lane_set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;
using testing::IsEmpty;

class SxbRxRegistration : public testing::Test {
  protected:
    SxbRxRegistration() { sable_lanecfg::registerSxbRxRules(engine); }

    LaneEngine engine;
};

TEST_F(SxbRxRegistration, Gives813Rules) {
    EXPECT_EQ(sable_lanecfg::sxbRxCatalogue().ruleCount(), 813U);
    EXPECT_EQ(engine.ruleNumbers().size(), 813U);
}

TEST_F(SxbRxRegistration, NumbersRegistersInTheirOrderAndEachWordBehindItsFields) {
    expectStretches(engine, {{"RX_PCS_CFG0.RX_ALIGN_MCOMMA_VAL", 5},
                             {"RX_PCS_CFG1.RX_SIG_VALID_DLY", 8},
                             {"RX_PCS_CFG2.EIOS_ERR_MASK_DIS", 17},
                             {"INT_RXOUTCLK_FREQ", 1},
                             {"INT_RX_EQ_MODE", 1},
                             {"ADAPT_APT_CFG", 30},
                             {"ADAPT_CAL_CFG", 13},
                             {"ADAPT_DFE_CFG", 8},
                             {"ADAPT_GC_CFG0", 13},
                             {"ADAPT_GC_CFG1", 8},
                             {"ADAPT_GC_CFG2", 14},
                             {"ADAPT_GC_CFG3", 6},
                             {"ADAPT_GEN_CFG0", 33},
                             {"ADAPT_GEN_CFG1", 30},
                             {"ADAPT_GEN_CFG2", 31},
                             {"ADAPT_GEN_CFG3", 30},
                             {"ADAPT_H01_CFG", 12},
                             {"ADAPT_H23_CFG", 9},
                             {"ADAPT_H45_CFG", 10},
                             {"ADAPT_H67_CFG", 9},
                             {"ADAPT_H89_CFG", 9},
                             {"ADAPT_HAB_CFG", 9},
                             {"ADAPT_HCD_CFG", 9},
                             {"ADAPT_HEF_CFG", 9},
                             {"ADAPT_KH_CFG0", 7},
                             {"ADAPT_KH_CFG1", 3},
                             {"ADAPT_KH_CFG2", 6},
                             {"ADAPT_KH_CFG3", 1},
                             {"ADAPT_KH_CFG4", 6},
                             {"ADAPT_KH_CFG5", 1},
                             {"ADAPT_KL_CFG0", 6},
                             {"ADAPT_KL_CFG1", 6},
                             {"ADAPT_LCK_CFG0", 8},
                             {"ADAPT_LCK_CFG1", 11},
                             {"ADAPT_LCK_CFG2", 6},
                             {"ADAPT_LCK_CFG3", 1},
                             {"ADAPT_LOP_CFG", 15},
                             {"ADAPT_OS_CFG", 6},
                             {"EYESCAN_CFG0", 7},
                             {"EYESCAN_CFG1", 2},
                             {"EYESCAN_CFG2", 2},
                             {"EYESCAN_CFG3", 2},
                             {"EYESCAN_CFG4", 2},
                             {"EYESCAN_CFG5", 2},
                             {"EYESCAN_CFG6", 2},
                             {"EYESCAN_CFG7", 2},
                             {"EYESCAN_CFG8", 2},
                             {"EYESCAN_CFG9", 2},
                             {"EYESCAN_CFG10", 2},
                             {"EYESCAN_CFG11", 2},
                             {"EYESCAN_CFG12", 2},
                             {"EYESCAN_CFG13", 2},
                             {"EYESCAN_CFG14", 2},
                             {"EYESCAN_CFG15", 2},
                             {"EYESCAN_CFG16", 10},
                             {"RX_CDR_CFG0", 9},
                             {"RX_CDR_CFG1", 11},
                             {"RX_CDR_CFG2", 8},
                             {"RX_CDR_CFG3", 13},
                             {"RX_CDR_CFG4", 9},
                             {"RX_CRC_CFG0", 10},
                             {"RX_CRC_CFG1", 2},
                             {"RX_CRC_CFG2", 2},
                             {"RX_CRC_CFG3", 2},
                             {"RX_CTLE_CFG0", 15},
                             {"RX_CTLE_CFG1", 16},
                             {"RX_DACI2V_CFG0", 17},
                             {"RX_DFE_CFG0", 16},
                             {"INT_PHY_REFCLK_MODE", 1},
                             {"RX_ELASTIC_BUF_CFG0", 8},
                             {"RX_ELASTIC_BUF_CFG1", 6},
                             {"RX_ELASTIC_BUF_CFG2", 5},
                             {"RX_ELASTIC_BUF_CFG3", 9},
                             {"RX_ELASTIC_BUF_CFG4", 5},
                             {"RX_ELASTIC_BUF_CFG5", 5},
                             {"RX_ELASTIC_BUF_CFG6", 6},
                             {"RX_ELASTIC_BUF_CFG7", 19},
                             {"RX_ELASTIC_BUF_CFG8", 8},
                             {"RX_ELASTIC_BUF_CFG9", 8},
                             {"RX_MISC_CFG0", 11},
                             {"RX_OOB_CFG0", 7},
                             {"RX_OOB_CFG1", 5},
                             {"RX_PAD_CFG0", 7},
                             {"RX_PAD_CFG1", 19},
                             {"RX_PCS_CFG0", 1},
                             {"RX_PCS_CFG1", 1},
                             {"RX_PCS_CFG2", 1},
                             {"RX_PCS_CFG3", 15},
                             {"RX_PCS_CFG4", 6},
                             {"RX_PHALIGN_CFG0", 12},
                             {"RX_PHALIGN_CFG1", 11},
                             {"RX_PHALIGN_CFG2", 7},
                             {"RX_PHALIGN_CFG3", 9},
                             {"RX_PHALIGN_CFG4", 8},
                             {"RX_PHALIGN_CFG5", 16},
                             {"RXRSTDONE_DIST_SEL", 13}});
}

TEST_F(SxbRxRegistration, OneRuleWritesEachGroupOfFields) {
    const std::vector<std::vector<std::string>> groups{
        {"RX_PCS_CFG0.RX_INT_DATA_WIDTH", "INT_WID"},
        {"RX_PCS_CFG0.RX_COMMADETEN", "RX_PCS_CFG0.RX_MCOMMA_ALIGNEN",
         "RX_PCS_CFG0.RX_PCOMMA_ALIGNEN", "RX_PCS_CFG0.RX_ALIGN_PCOMMA_DET",
         "RX_PCS_CFG0.RX_ALIGN_MCOMMA_DET", "RX_PCS_CFG2.RX_DEC_PCOMMA_DET",
         "RX_PCS_CFG2.RX_DEC_MCOMMA_DET"},
        {"RX_PCS_CFG1.RX_FABRIC_DATA_SEL", "RX_PCS_CFG1.RX_FIFO_DATA_SEL"},
        {"RX_PCS_CFG2.USE_GB", "RX_PCS_CFG2.MODE", "INT_RX_ASYNC_GEARBOX_EN"},
        {"INT_RXOUTCLK_FREQ", "RX_PHALIGN_CFG0.DAPI_BUFG_DIV", "INT_RXOUTCLK_REFCLK_FREQ",
         "INT_RXOUTCLK_REFCLK_SOURCE"},
        {"EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN", "EYESCAN_CFG16.RXPMA_DES_WIDTH_OVRD",
         "RX_CDR_CFG0.CDRENF", "RX_CDR_CFG0.X_SEL_Y", "RX_CDR_CFG2.PDIVFAC", "RX_CDR_CFG2.VOTEWY"},
        {"RX_ELASTIC_BUF_CFG0.EB8B10B_OVFL_THRESH", "INT_UND_NO_CC_CB",
         "RX_ELASTIC_BUF_CFG0.EB8B10B_UDFL_THRESH"},
        {"RX_PHALIGN_CFG1.SETINIT_PH_CNT", "RX_PHALIGN_CFG3.MLDLY_SETINIT_PH_CNT"}};
    for (const auto& group : groups) {
        for (const std::string& name : group) {
            EXPECT_EQ(engine.ruleNumber(name), engine.ruleNumber(group.front())) << name;
        }
    }
}

TEST_F(SxbRxRegistration, LeavesTheRunTogetherNameWithoutARule) {
    EXPECT_EQ(engine.varMap.count("RX_BUFFER_MODERX_DATA_DECODING"), 1U);
    EXPECT_EQ(engine.ruleNumber("RX_BUFFER_MODERX_DATA_DECODING"), -1);
}

TEST_F(SxbRxRegistration, APassGivesEveryVariableAValue) {
    engine.set(laneInputs());
    engine.setVal("INT_TXOUTCLK_FREQ", 322.265625);
    engine.runPass();
    EXPECT_THAT(blankResults(engine), IsEmpty());
    // 10.3125 Gb/s in words of 40 bits, since only 8B10B counts 8 for 8.
    EXPECT_EQ(engine.value("INT_RXOUTCLK_FREQ"), ruleValue(257.8125));
    EXPECT_EQ(engine.value("INT_RX_EQ_MODE"), ruleValue("DFE"s));
    EXPECT_EQ(engine.value("RX_CDR_CFG2.FDIVFAC"), ruleValue(4U));
}

TEST_F(SxbRxRegistration, ACopiedFlagIs1Or0) {
    engine.set(laneInputs());
    engine.setVal("INT_TXOUTCLK_FREQ", 322.265625);
    engine.runPass();
    EXPECT_EQ(engine.value("RX_PCS_CFG1.RX_ALIGN_COMMA_DOUBLE"), ruleValue(0U));
    engine.setVal("RX_COMMA_DOUBLE_ENABLE", true);
    engine.runPass();
    EXPECT_EQ(engine.value("RX_PCS_CFG1.RX_ALIGN_COMMA_DOUBLE"), ruleValue(1U));
}

}  // namespace
}  // namespace lanecfg_test
