#include "families/sxb/sxb_pll_rules.h"
#include "sxb_rule_alone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::LaneEngine;
using lanecfg_test::ruleValue;
using lanecfg_test::VariableValues;
using lanecfg_test::with;
using namespace std::string_literals;

/// Lane 0 with both directions at 10.3125 Gb/s from the LCPLL at 156.25 MHz, and what the rules of
/// the receiver give it.
VariableValues tenGigabitEthernet() {
    VariableValues inputs{{"DUAL", 0U},
                          {"LaneNum", 0U},
                          {"LaneTxRxMode", "txrx_rate_together"s},
                          {"siliconRev", "r1"s},
                          {"RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE", 0U},
                          {"INT_RX_EQ_MODE", "DFE"s},
                          {"MULTI_RATE", false},
                          {"PCIE_ENABLE", false},
                          {"XPU_MODE", 0.0F},
                          {"PCIE_USERCLK_FREQ", 250.0F},
                          {"PCIE_USERCLK2_FREQ", 250.0F},
                          {"GEN3_INT_DATA_WIDTH", 16U},
                          {"MAX_RATE", 0U},
                          {"OOB_ENABLE", false},
                          {"RPLL_USED_FOR_SERIAL_DATA_RATE0", false},
                          {"TX_PIPM_ENABLE", false},
                          {"TX_DATA_ENCODING", "64B66B_SYNC"s},
                          {"RX_DATA_DECODING", "64B66B_SYNC"s},
                          {"RX_PPM_OFFSET", 0U},
                          {"RX_SSC_PPM", 0U}};
    for (const std::string& side : {"TX"s, "RX"s}) {
        const VariableValues ofSide{
            {side + "_IN_USE", true},
            {side + "_PLL_TYPE", "LCPLL"s},
            {side + "_LINE_RATE", 10.3125},
            {side + "_BUFFER_MODE", 1U},
            {side + "_BUFFER_BYPASS_MODE", "Fast_Sync"s},
            {side + "_INT_DATA_WIDTH", 32U},
            {side + "_USER_DATA_WIDTH", 64U},
            {side + "_OUTCLK_SOURCE", side + "OUTCLKPMA"},
            {side + "_PIPE_POSITION", "single"s},
            {side + "_SYNCDONE_POSITION", "single"s},
            {side + "_MAINTAIN_MASTER", false},
            {side + "PROGDIV_FREQ_ENABLE", false},
            {side + "PROGDIV_FREQ_SOURCE", "LCPLL"s},
            {side + "PROGDIV_FREQ_VAL", 322.265625},
            {side + "_LCPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>{10.3125}},
            {side + "_LCPLL_REFCLK_FREQUENCY", 156.25},
            {side + "_LCPLL_POWERDOWN", false},
            {side + "_LCPLL_REFCLK_SOURCE", "R0"s},
            {side + "_LCPLL_REFCLK_ID", 0U},
            {side + "_RPLL_REFCLK_FREQUENCY", 0.0},
            {side + "_RPLL_POWERDOWN", true},
            {side + "_RPLL_REFCLK_SOURCE", "R0"s},
            {side + "_RPLL_REFCLK_ID", 0U}};
        inputs = with(inputs, ofSide);
        for (const std::string& channel : {"0"s, "1"s, "2"s, "3"s}) {
            inputs[side + "_CH" + channel + "_SYNCDONE_POSITION"] = "single"s;
        }
    }
    return inputs;
}

class SxbPllPass : public testing::Test {
  protected:
    SxbPllPass() {
        engine.set(tenGigabitEthernet());
        registerSxbPllRules(engine);
    }

    void pass(const VariableValues& changes = {}) {
        engine.set(changes);
        engine.runPass();
    }

    void expect(const std::string& name, const ruleValue& expected) {
        EXPECT_EQ(engine.value(name), expected) << name;
    }

    LaneEngine engine;
};

TEST_F(SxbPllPass, SolvesTenGigabitEthernetWithoutAFraction) {
    pass();
    expect("INT_LCPLL_REF_DIV", 1U);
    expect("INT_LCPLL_FBDIV", 66U);
    expect("INT_LCPLL_SDMDATA", 0U);
    expect("INT_LCPLLCLKOUTRATE", "FULL"s);
    expect("INT_LCPLL_PLLCLKOUT", 10.3125);
    expect("INT_TX_OUTDIV", 2.0);
    expect("INT_RX_OUTDIV", 2.0);
}

TEST_F(SxbPllPass, FieldsFollowTheSolution) {
    pass();
    expect("LCPLL_CFG0.LCPLL_PREDIV", 4U);
    expect("LCPLL_CFG0.LCPLL_CP", 15U);
    expect("LCPLL_CFG2.LCPLL_LFT_RZ", 102U);
    expect("A_CFG1.A_HS0_LCPLLFBDIV", 64U);
    expect("A_CFG1.A_HS1_LCPLLFBDIV", 78U);
    expect("HSDIST_CFG.HSDIST_DIV2SEL", 0U);
    expect("PIPE_CTRL_CFG3.TXOUT_DIV", 1U);
    expect("PIPE_CTRL_CFG3.RXOUT_DIV", 1U);
    expect("CHCLK_TXPI_CFG0.TXPI_BAND_SEL", 2U);
    expect("LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL", 1U);
    expect("MST_RESET_CFG.CH0_LCPLL_RESET_EN", 1U);
    expect("MST_RESET_CFG.CH1_LCPLL_RESET_EN", 0U);
    // 10312.5 over 64 is 161.1328125, 10.3125 over 4 and 16.
    expect("INT_TXPROGDIV_SEL", 4.0);
    expect("PIPE_CTRL_CFG8.TXPROGDIVSEL", 600U);
}

TEST_F(SxbPllPass, AnIdlePllReadsLikeAnIdleSlot) {
    pass();
    expect("A_CFG1.A_HS0_RPLLFBDIV", 78U);
    expect("A_CFG1.A_HS1_RPLLFBDIV", 78U);
    expect("A_CFG3.A_HS0_RPLLPD", 1U);
    expect("RPLL_CFG0.RPLL_REFDIV", 4U);
}

TEST_F(SxbPllPass, AnIdleLaneLeavesTheSolutionOfTheLaneBefore) {
    pass();
    pass({{"TX_LCPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>()},
          {"RX_LCPLL_PLLCLKOUT_FREQ_VECTOR", std::vector<double>()}});
    expect("INT_LCPLL_REF_DIV", 1U);
    expect("INT_LCPLL_FBDIV", 66U);
    expect("INT_LCPLL_PLLCLKOUT", 10.3125);
    expect("A_CFG1.A_HS0_LCPLLFBDIV", 64U);
}

TEST_F(SxbPllPass, OnlyTheHalfRateOfTheRpllStaysWithoutAValue) {
    pass();
    std::vector<std::string> blank;
    for (const auto& [name, info] : engine.varMap) {
        if (info.value.which() == 0) {
            blank.push_back(name);
        }
    }
    EXPECT_THAT(blank, testing::ElementsAre("INT_RPLLCLKOUTRATE"));
}

TEST_F(SxbPllPass, FieldsAndWordsAreUnsigned) {
    pass();
    for (const auto& [name, info] : engine.varMap) {
        const bool isIntermediate = name.compare(0, 4, "INT_") == 0;
        if (info.ruleNumber && !isIntermediate) {
            EXPECT_EQ(info.value.which(), 2) << name;
        }
    }
}

TEST_F(SxbPllPass, CopiedFlagsAreOneOrZero) {
    const std::vector<std::string> copies{
        "PIPE_CTRL_CFG7.CDR_CTRL_ADAPT_HOLD_EN", "PIPE_CTRL_CFG8.CDR_CTRL_GEN12_ON_EIDLE",
        "PIPE_CTRL_CFG8.CDR_CTRL_GEN34_ON_EIDLE", "PIPE_CTRL_CFG4.PIPE_RATE_EN",
        "PIPE_CTRL_CFG5.PIPE_BUFGT_CTRL_EN"};
    pass({{"PCIE_ENABLE", true}});
    for (const std::string& field : copies) {
        expect(field, 1U);
    }
    pass({{"PCIE_ENABLE", false}});
    for (const std::string& field : copies) {
        expect(field, 0U);
    }
}

TEST_F(SxbPllPass, SixWordsWithoutFieldsAreZero) {
    pass();
    for (const std::string word : {"CHCLK_RSV_CFG", "CHCLK_RXCAL_CFG2", "CHL_RSV_CFG1",
                                   "CHL_RSV_CFG2", "CHL_RSV_CFG3", "CHL_RSV_CFG4"}) {
        expect(word, 0U);
    }
}

TEST_F(SxbPllPass, AZeroInternalWidthLeavesAsADomainError) {
    engine.set({{"TX_INT_DATA_WIDTH", 0U}});
    EXPECT_THROW(engine.runPass(), std::domain_error);
}

/// Registers without logic have the same fields whatever the parameters are.
TEST_F(SxbPllPass, ConstantFieldsAreTheSameInEveryConfiguration) {
    pass();
    const std::set<std::string> logic = [this] {
        std::set<std::string> names;
        for (const auto& [name, rule] : sxbPllLogicRules(engine)) {
            names.insert(name);
        }
        return names;
    }();
    const std::vector<std::string> allConstant{"LCPLL_LGC_CFG0.",
                                               "RPLL_LGC_CFG0.",
                                               "CFG1.",
                                               "CFG2.",
                                               "CFG3.",
                                               "CFG5.",
                                               "PIPE_CTRL_CFG2.",
                                               "RESET_LOOPER_ID_CFG.",
                                               "POR_CFG.",
                                               "FABRIC_INTF_CFG4.",
                                               "FABRIC_INTF_CFG5.",
                                               "UB_CFG0."};
    const auto fields = [&] {
        VariableValues values;
        for (const std::string& prefix : allConstant) {
            for (const auto& [name, info] : engine.varMap) {
                if (name.compare(0, prefix.size(), prefix) == 0) {
                    EXPECT_EQ(logic.count(name), 0U) << name;
                    values[name] = info.value;
                }
            }
        }
        return values;
    };
    const VariableValues before = fields();
    EXPECT_FALSE(before.empty());
    std::mt19937 random(5);
    for (int round = 0; round < 8; ++round) {
        const auto flag = [&] { return std::uniform_int_distribution<int>(0, 1)(random) == 1; };
        pass({{"PCIE_ENABLE", flag()},
              {"TX_IN_USE", flag()},
              {"RX_IN_USE", flag()},
              {"OOB_ENABLE", flag()},
              {"DUAL", flag() ? 1U : 0U},
              {"TX_BUFFER_MODE", flag() ? 1U : 0U},
              {"TX_PLL_TYPE", flag() ? "LCPLL"s : "RPLL"s},
              {"TX_LINE_RATE", flag() ? 10.3125 : 8.0}});
        EXPECT_EQ(fields(), before);
    }
}

}  // namespace
}  // namespace sable_lanecfg
