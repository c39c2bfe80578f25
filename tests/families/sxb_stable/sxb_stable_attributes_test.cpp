#include "families/frozen/sxb_stable_quad_words.h"
#include "families/sxb/sxb_instance_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using testing::Contains;
using testing::Key;
using testing::Not;
using namespace std::string_literals;

const std::vector<std::string> registersOfQuad{"A_CFG1",        "A_CFG2",       "A_CFG3",
                                               "A_CFG4",        "A_CFG5",       "MST_RESET_CFG",
                                               "CTRL_RSV_CFG0", "MEMCELLX0C12", "MEMCELLX0F12",
                                               "MEMCELLX0C13",  "MEMCELLX0F13", "TX_ANA_CFG0"};

/// Word and begin of the field names of each PLL of each dual.
struct Cell {
    std::string word;
    std::string pll;
};

const std::vector<Cell> cells{{"MEMCELLX0C12", "HS0_LCPLL"},
                              {"MEMCELLX0C13", "HS0_RPLL"},
                              {"MEMCELLX0F12", "HS1_LCPLL"},
                              {"MEMCELLX0F13", "HS1_RPLL"}};

std::vector<std::string> prefixesOfCells() {
    std::vector<std::string> prefixes;
    for (const Cell& cell : cells) {
        prefixes.push_back(cell.word + "." + cell.pll);
    }
    return prefixes;
}

class SxbStableQuadAttributes : public lanecfg_test::QuadWordsEngine {
  protected:
    SxbStableQuadAttributes() { makeQuad("SXB-stable", registersOfQuad, prefixesOfCells()); }

    std::map<std::string, std::string> attributes() {
        return quadAttributes(*engine, stableQuadWords());
    }

    unsigned long word(const std::string& name) { return std::stoul(attributes().at(name)); }
};

TEST_F(SxbStableQuadAttributes, TakeEveryPllFromTheFirstLaneOfItsDual) {
    const std::map<std::string, std::string> answer = attributes();
    // Lanes 0 and 2.
    EXPECT_EQ(answer.at("A_CFG1"),
              std::to_string(10UL + (20UL << 8) + (12UL << 16) + (22UL << 24)));
    EXPECT_EQ(answer.at("A_CFG2"), "100");
    EXPECT_EQ(answer.at("A_CFG3"), "100");
    EXPECT_EQ(answer.at("A_CFG4"), "102");
    EXPECT_EQ(answer.at("A_CFG5"), "102");
    EXPECT_EQ(answer.at("HS0_LCPLL_IPS_REFCLK_SEL"), "1");
    EXPECT_EQ(answer.at("HS0_RPLL_IPS_REFCLK_SEL"), "1");
    EXPECT_EQ(answer.at("HS1_LCPLL_IPS_REFCLK_SEL"), "3");
    EXPECT_EQ(answer.at("HS1_RPLL_IPS_REFCLK_SEL"), "3");
}

TEST_F(SxbStableQuadAttributes, DoNotAskWhichLaneUsesAPll) {
    for (const std::size_t lane : {1U, 3U}) {
        set(lane, "TX_IN_USE", true);
        set(lane, "TX_PLL_TYPE", "LCPLL"s);
    }
    EXPECT_EQ(word("A_CFG2"), 100U);
    EXPECT_EQ(word("A_CFG4"), 102U);
}

TEST_F(SxbStableQuadAttributes, ComposeTheWordOfEachPllOfEachDual) {
    // Pin at bit 0, selector at bit 1, map 7 to map 0, which hold (map + lane) mod 8, from bit 4
    // on.
    const auto wordOfLane = [](unsigned long lane) {
        unsigned long expected = lane % 2 + ((1 + lane) << 1);
        for (unsigned long map = 0; map < 8; ++map) {
            expected += ((map + lane) % 8) << (4 + 3 * (7 - map));
        }
        return expected;
    };
    EXPECT_EQ(word("MEMCELLX0C12"), wordOfLane(0));
    EXPECT_EQ(word("MEMCELLX0C13"), wordOfLane(0));
    EXPECT_EQ(word("MEMCELLX0F12"), wordOfLane(2));
    EXPECT_EQ(word("MEMCELLX0F13"), wordOfLane(2));
}

TEST_F(SxbStableQuadAttributes, NameTheReferenceClockFieldsAsTheCurrentRulesDo) {
    std::set<std::string> expected;
    for (const Cell& cell : cells) {
        expected.insert({cell.pll + "_IPS_PIN_EN", cell.pll + "_IPS_REFCLK_SEL"});
        for (int map = 0; map < 8; ++map) {
            expected.insert(cell.pll + "_REFCLK_MAP" + std::to_string(map) + " ");
        }
    }
    std::set<std::string> names;
    for (const auto& [name, value] : attributes()) {
        if (name.rfind("HS0_", 0) == 0 || name.rfind("HS1_", 0) == 0) {
            names.insert(name);
        }
    }
    EXPECT_EQ(names, expected);
}

TEST_F(SxbStableQuadAttributes, TakeEachChannelsResetEnablesFromItsOwnLane) {
    const std::vector<std::string> enables{
        "_LCPLL_RESET_EN", "_RPLL_RESET_EN",       "_ILO_RESET_EN",  "_TX_PROGDIV_RESET_EN",
        "_TX_CH_RESET_EN", "_RX_PROGDIV_RESET_EN", "_RX_CH_RESET_EN"};
    // Lane 1 says that all channels reset everything.
    for (const std::string channel : {"CH0", "CH1", "CH2", "CH3"}) {
        for (const std::string& enable : enables) {
            set(1, "MST_RESET_CFG." + channel + enable, 1U);
        }
    }
    // The LCPLL at bit 1, the RPLL at bit 5 and five bits from bit 13 on are channel 1's.
    EXPECT_EQ(word("MST_RESET_CFG"), (1UL << 1) + (1UL << 5) + (0b11111UL << 13));
}

TEST_F(SxbStableQuadAttributes, LeaveTheReservedControlWordAsTheRulesDid) {
    engine->setVal("CTRL_RSV_CFG0", 77U);
    set(2, "CTRL_RSV_CFG0.CH2_RX_RPLL_RESET_EN", 1U);
    EXPECT_EQ(word("CTRL_RSV_CFG0"), 77U);
    EXPECT_EQ(engine->findVariable("CTRL_RSV_CFG0.CH2_RX_RPLL_RESET_EN"), nullptr);
}

TEST_F(SxbStableQuadAttributes, DoNotListTheRegistersThatNoRateChanges) {
    EXPECT_THAT(attributes(), Not(Contains(Key("STAT_NPI_REG_LIST"))));
}

TEST_F(SxbStableQuadAttributes, KnowNoReferenceClockWordOfTheCurrentRules) {
    const std::map<std::string, std::string> answer = attributes();
    EXPECT_THAT(answer, Not(Contains(Key("LCPLL_REFCLK_IPS"))));
    EXPECT_THAT(answer, Not(Contains(Key("RPLL_REFCLK_IPS"))));
}

TEST_F(SxbStableQuadAttributes, EndWithTheRegistersAsTheRulesLeftThem) {
    set(0, "TX_ANA_CFG0", 5U);
    engine->setVal("TX_ANA_CFG0", 6U);
    const std::map<std::string, std::string> answer = attributes();
    EXPECT_EQ(answer.at("CH0_TX_ANA_CFG0"), "5");
    EXPECT_EQ(answer.at("TX_ANA_CFG0"), "6");
}

TEST_F(SxbStableQuadAttributes, NeedNoPasses) {
    engine->blockVarMap.clear();
    EXPECT_EQ(attributes().at("A_CFG1"), "0");
    EXPECT_EQ(attributes().at("MEMCELLX0F13"), "0");
}

}  // namespace
}  // namespace sable_lanecfg
