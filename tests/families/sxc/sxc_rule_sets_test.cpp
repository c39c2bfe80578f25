#include "families/sxc/sxc_rules.h"
#include "support/lane_set.h"
#include "sxc_rule_alone.h"

#include <lanecfg/family_rules.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

// The three rule sets together, registered in the order in which an instance registers them.

namespace lanecfg_test {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class SxcRuleSets : public testing::Test {
  protected:
    SxcRuleSets() {
        engine.settings = {{"FLCPLLRANGE_MIN", {"8.0"}}, {"FLCPLLRANGE_MAX", {"16.375"}}};
        sable_lanecfg::registerSxcRxRules(engine);
        sable_lanecfg::registerSxcTxRules(engine);
        sable_lanecfg::registerSxcPllRules(engine);
        engine.set(quadInputs());
    }

    unsigned int word(const std::string& name) const {
        return boost::get<unsigned int>(engine.value(name));
    }

    LaneEngine engine;
};

TEST_F(SxcRuleSets, Have1948RulesInTheOrderReceiveTransmitPll) {
    std::vector<int> expected(814 + 198 + 936);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(engine.ruleNumbers(), expected);
    EXPECT_EQ(engine.ruleNumber("RX_PCS_CFG0.RX_DATA_WIDTH"), 0);
    EXPECT_EQ(engine.ruleNumber("TX_PCS_CFG0.TX_DATA_WIDTH"), 814);
    EXPECT_EQ(engine.ruleNumber("INT_LCPLL_PLLCLKOUT_VECTOR"), 814 + 198);
    EXPECT_EQ(engine.ruleNumber("RPLL_REFCLK_IPS"), 1947);
}

TEST_F(SxcRuleSets, AreListedUnderTheFamily) {
    std::vector<std::pair<std::string, int>> sets;
    for (const auto& rule : sable_lanecfg::rulesOfFamily("SXC", "live")) {
        if (sets.empty() || sets.back().first != rule.set) {
            sets.emplace_back(rule.set, 0);
        }
        ++sets.back().second;
    }
    EXPECT_THAT(sets, ElementsAre(Pair("RX", 814), Pair("TX", 198), Pair("PLL", 936)));
    EXPECT_THAT(sable_lanecfg::rulesOfFamily("SXC", "stable"), IsEmpty());
}

/// A register and its fields in the order of their rules.
struct OrderedRegister {
    std::string name;
    std::string firstField;
    std::string lastField;
    int fields;
};

TEST_F(SxcRuleSets, ComposeEveryChangedWordBehindItsFields) {
    const std::vector<OrderedRegister> registers{
        {"ADAPT_APT_CFG", "kl_looplbk", "divider_data", 30},
        {"RESET_CFG", "EB8B10B_RESET_DEFER_EN", "RX_PLLLOCK_SEL", 22},
        {"CHCLK_ILO_CFG", "CHCLK_PDB_BIAS", "CHCLK_VCTRL_FTL_EN_OW", 18},
        {"CHL_RSV_CFG0", "PD_TRANS_TIME_CPMIN", "RX128B130B_RESET_ON_CDRSLIP_DIS", 17},
        {"CHL_RSV_CFG1", "PIPERST_CHNL_RST_CONTRL_DIS", "PIPE_128B130B_RX_DELAY_TIME", 10},
        {"CHL_RSV_CFG2", "EB128B130B_64_EN", "EB128B130B_64_EIOS_DEL_SEL", 13},
        {"CHL_RSV_CFG3", "PCIE_LPBK_BLOCK_INIT_DATA_DIS",
         "PCIE_128B130B_64B_TX_LPBK_RXDATAVALID_ADJ_DIS", 3},
        {"CTRL_RSV_CFG0", "DMON_CH_SEL", "CH3_RX_ILO_RESET_EN", 16}};
    for (const OrderedRegister& row : registers) {
        const int wordNumber = engine.ruleNumber(row.name);
        EXPECT_EQ(engine.ruleNumber(row.name + "." + row.lastField), wordNumber - 1) << row.name;
        EXPECT_EQ(engine.ruleNumber(row.name + "." + row.firstField), wordNumber - row.fields)
            << row.name;
    }
}

TEST_F(SxcRuleSets, HaveNoCycleAndGiveEveryVariableAValue) {
    engine.runPass();
    EXPECT_THAT(blankResults(engine), IsEmpty());
}

TEST_F(SxcRuleSets, KnowNeitherTheReferenceOfTheTransmittersOutputClockNorTheReservedBits) {
    engine.runPass();
    for (const char* const name :
         {"INT_TXOUTCLK_REFCLK_FREQ", "INT_TXOUTCLK_REFCLK_SOURCE", "CHCLK_ILO_CFG.RESERVED_BIT17",
          "CHCLK_ILO_CFG.RESERVED_BIT15"}) {
        EXPECT_EQ(engine.varMap.count(name), 0U) << name;
    }
    // The receiver's is reported as in SXB.
    EXPECT_EQ(engine.value("INT_RXOUTCLK_REFCLK_SOURCE"), ruleValue("LCPLLNORTHREFCLK0"s));
}

TEST_F(SxcRuleSets, CopyTheUseOfTheReceiverForTheOscillatorsLock) {
    for (const bool inUse : {true, false}) {
        engine.set({{"RX_IN_USE", inUse}, {"TX_IN_USE", !inUse}});
        engine.runPass();
        EXPECT_EQ(word("RESET_CFG.ILORESET_PLLLOCK_SEL"), inUse ? 1U : 0U);
    }
}

TEST_F(SxcRuleSets, GiveTheConstantsThatWereComputedInEveryPass) {
    std::mt19937 random{5};
    const std::vector<std::pair<std::string, unsigned int>> constants{
        {"A_CFG0.A_BGRCALOVRD_EN", 1},         {"FABRIC_INTF_CFG1.A_RXPD", 0},
        {"FABRIC_INTF_CFG3.A_TXPD", 0},        {"RX_CTLE_CFG1.RCAL_OS_PAD", 0},
        {"RX_CTLE_CFG1.CDR2APT_SCANMODE1", 1}, {"RX_PCS_CFG2.FIFO_INIT_RD_ADDR", 4},
        {"TX_PCS_CFG0.FIFO_INIT_RD_ADDR", 4},  {"PIPE_TX_EQ_CFG3.TX_DEEMPH_0", 18},
        {"PIPE_TX_EQ_CFG3.TX_DEEMPH_1", 12},   {"TX_DRV_CFG0.TX_CTL_DRV_EN", 0}};
    for (int run = 0; run < 50; ++run) {
        engine.set(randomLane(random));
        engine.runPass();
        for (const auto& [name, value] : constants) {
            EXPECT_EQ(word(name), value) << name;
        }
    }
}

TEST_F(SxcRuleSets, PcieAt32UsesTheWideElasticBufferAndKeepsThePlainOne) {
    engine.set(
        with(pcieReceiver(32.0, 64),
             {{"RX_DATA_DECODING", "128B130B"s}, {"RX_PPM_OFFSET", 300U}, {"TX_LINE_RATE", 32.0}}));
    engine.runPass();
    EXPECT_EQ(word("CHL_RSV_CFG2.EB128B130B_64_EN"), 1U);
    EXPECT_EQ(word("RX_ELASTIC_BUF_CFG8.ELASTICBUF_128B130B_EN"), 0U);
    EXPECT_EQ(word("RX_ELASTIC_BUF_CFG9.EB128B130B_16_EN"), 0U);
    // The plain buffer does not ask whether the wide elastic one is in use.
    EXPECT_EQ(word("RX_PCS_CFG2.RX_PHASE_BUFFER_USE"), 1U);
    EXPECT_EQ(word("ADAPT_APT_CFG.divider_data"), 1U);
    EXPECT_EQ(word("EYESCAN_CFG16.RXPMA_CDR_WIDTH_OVRD"), 12U);
}

}  // namespace
}  // namespace lanecfg_test
