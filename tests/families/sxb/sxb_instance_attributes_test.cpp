#include "families/sxb/sxb_quad_attributes.h"
#include "sxb_instance_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::SizeIs;
using namespace std::string_literals;

/// Registers that more than one lane has a say in, and one that each lane has for itself.
const std::vector<std::string> registersOfQuad{
    "A_CFG1",        "A_CFG2",        "A_CFG3",           "A_CFG4",          "A_CFG5",
    "MST_RESET_CFG", "CTRL_RSV_CFG0", "LCPLL_REFCLK_IPS", "RPLL_REFCLK_IPS", "TX_ANA_CFG0"};

std::string channelOf(std::size_t lane) {
    return "CH" + std::to_string(lane);
}

class SxbQuadAttributes : public lanecfg_test::QuadWordsEngine {
  protected:
    /// Lanes that use no PLL.
    SxbQuadAttributes() {
        makeQuad("SXB", registersOfQuad, {"LCPLL_REFCLK_IPS.LCPLL", "RPLL_REFCLK_IPS.RPLL"});
        for (std::size_t lane = 0; lane < 4; ++lane) {
            for (const std::string side : {"TX", "RX"}) {
                set(lane, side + "_IN_USE", true);
                set(lane, side + "_PLL_TYPE", "none"s);
                set(lane, side + "PROGDIV_FREQ_ENABLE", false);
                set(lane, side + "PROGDIV_FREQ_SOURCE", "none"s);
            }
        }
    }

    /// Lets a lane send on a PLL.
    void use(std::size_t lane, const std::string& pll) { set(lane, "TX_PLL_TYPE", pll); }

    std::map<std::string, std::string> attributes() { return quadAttributes(*engine); }

    unsigned long word(const std::string& name) { return std::stoul(attributes().at(name)); }
};

/// Which of a dual's lanes use a PLL, and which of them configures it.
struct PllChoice {
    const char* name;
    bool firstUses;
    bool secondUses;
    unsigned int chosen;
};

class SxbPllChoice : public SxbQuadAttributes, public testing::WithParamInterface<PllChoice> {
  protected:
    /// Lets the lanes of both duals use a PLL.
    void useInBothDuals(const std::string& pll) {
        for (const std::size_t dual : {0U, 1U}) {
            if (GetParam().firstUses) {
                use(2 * dual, pll);
            }
            if (GetParam().secondUses) {
                use(2 * dual + 1, pll);
            }
        }
    }
};

TEST_P(SxbPllChoice, GivesTheLcpllItsDividerWordAndReferenceClock) {
    useInBothDuals("LCPLL");
    const std::map<std::string, std::string> answer = attributes();
    const unsigned int chosen = GetParam().chosen;
    // The RPLL, which no lane uses, is as the first lane of each dual has it.
    const unsigned long word =
        (10UL + chosen) + (20UL << 8) + ((12UL + chosen) << 16) + (22UL << 24);
    EXPECT_EQ(answer.at("A_CFG1"), std::to_string(word));
    EXPECT_EQ(answer.at("A_CFG2"), std::to_string(100 + chosen));
    EXPECT_EQ(answer.at("A_CFG3"), "100");
    EXPECT_EQ(answer.at("A_CFG4"), std::to_string(102 + chosen));
    EXPECT_EQ(answer.at("A_CFG5"), "102");
    EXPECT_EQ(answer.at("HS0_LCPLL_IPS_REFCLK_SEL"), std::to_string(1 + chosen));
    EXPECT_EQ(answer.at("HS1_LCPLL_IPS_REFCLK_SEL"), std::to_string(3 + chosen));
    EXPECT_EQ(answer.at("HS0_RPLL_IPS_REFCLK_SEL"), "1");
}

TEST_P(SxbPllChoice, GivesTheRpllItsDividerWordAndReferenceClock) {
    useInBothDuals("RPLL");
    const std::map<std::string, std::string> answer = attributes();
    const unsigned int chosen = GetParam().chosen;
    const unsigned long word =
        10UL + ((20UL + chosen) << 8) + (12UL << 16) + ((22UL + chosen) << 24);
    EXPECT_EQ(answer.at("A_CFG1"), std::to_string(word));
    EXPECT_EQ(answer.at("A_CFG2"), "100");
    EXPECT_EQ(answer.at("A_CFG3"), std::to_string(100 + chosen));
    EXPECT_EQ(answer.at("A_CFG4"), "102");
    EXPECT_EQ(answer.at("A_CFG5"), std::to_string(102 + chosen));
    EXPECT_EQ(answer.at("HS0_RPLL_IPS_PIN_EN"), std::to_string(chosen));
    EXPECT_EQ(answer.at("HS1_RPLL_REFCLK_MAP0 "), std::to_string(2 + chosen));
}

INSTANTIATE_TEST_SUITE_P(Lanes, SxbPllChoice,
                         testing::Values(PllChoice{"NeitherUses", false, false, 0},
                                         PllChoice{"FirstUses", true, false, 0},
                                         PllChoice{"BothUse", true, true, 0},
                                         PllChoice{"SecondUses", false, true, 1}),
                         [](const auto& row) { return row.param.name; });

/// Values of lane 1, and whether they make it a user of the LCPLL.
struct PllUse {
    const char* name;
    std::vector<std::pair<std::string, ruleValue>> values;
    bool uses;
};

class SxbPllUse : public SxbQuadAttributes, public testing::WithParamInterface<PllUse> {};

TEST_P(SxbPllUse, MakesTheSecondLaneThePllsOrNot) {
    for (const auto& [name, value] : GetParam().values) {
        set(1, name, value);
    }
    EXPECT_EQ(word("A_CFG2"), GetParam().uses ? 101U : 100U);
}

INSTANTIATE_TEST_SUITE_P(
    Values, SxbPllUse,
    testing::Values(
        PllUse{"DataToTransmit", {{"TX_PLL_TYPE", "LCPLL"s}}, true},
        PllUse{"DataToReceive", {{"RX_PLL_TYPE", "LCPLL"s}}, true},
        PllUse{"DividerToTransmit",
               {{"TXPROGDIV_FREQ_ENABLE", true}, {"TXPROGDIV_FREQ_SOURCE", "LCPLL"s}},
               true},
        PllUse{"DividerToReceive",
               {{"RXPROGDIV_FREQ_ENABLE", true}, {"RXPROGDIV_FREQ_SOURCE", "LCPLL"s}},
               true},
        PllUse{"TransmitterOutOfUse", {{"TX_PLL_TYPE", "LCPLL"s}, {"TX_IN_USE", false}}, false},
        PllUse{"ReceiverOutOfUse", {{"RX_PLL_TYPE", "LCPLL"s}, {"RX_IN_USE", false}}, false},
        PllUse{"DividerOutOfUse",
               {{"TXPROGDIV_FREQ_ENABLE", true},
                {"TXPROGDIV_FREQ_SOURCE", "LCPLL"s},
                {"TX_IN_USE", false}},
               false},
        PllUse{"DividerSwitchedOff", {{"RXPROGDIV_FREQ_SOURCE", "LCPLL"s}}, false},
        PllUse{"DividerOfTheOtherDirection",
               {{"TXPROGDIV_FREQ_ENABLE", true}, {"RXPROGDIV_FREQ_SOURCE", "LCPLL"s}},
               false},
        PllUse{"OtherPll", {{"TX_PLL_TYPE", "RPLL"s}, {"RX_PLL_TYPE", "RPLL"s}}, false}),
    [](const auto& row) { return row.param.name; });

TEST_F(SxbQuadAttributes, NameTheReferenceClockFieldsOfBothDuals) {
    std::set<std::string> expected;
    for (const std::string prefix : {"HS0_LCPLL_", "HS0_RPLL_", "HS1_LCPLL_", "HS1_RPLL_"}) {
        expected.insert(prefix + "IPS_PIN_EN");
        expected.insert(prefix + "IPS_REFCLK_SEL");
        for (int map = 0; map < 8; ++map) {
            expected.insert(prefix + "REFCLK_MAP" + std::to_string(map) + " ");
        }
    }
    std::set<std::string> names;
    for (const auto& [name, value] : attributes()) {
        if (name.rfind("HS0_", 0) == 0 || name.rfind("HS1_", 0) == 0) {
            names.insert(name);
        }
    }
    EXPECT_EQ(names, expected);
    EXPECT_THAT(names, SizeIs(40));
}

TEST_F(SxbQuadAttributes, HaveTheReferenceClockWordsOfTheSecondDual) {
    // As lane 2 has it: pin 0; selector 3 at bit 1; map 7 to map 0, which hold (map + 2) mod 8, at
    // bits 4, 7 and so on.
    unsigned long expected = 3UL << 1;
    for (unsigned long map = 0; map < 8; ++map) {
        expected += ((map + 2) % 8) << (4 + 3 * (7 - map));
    }
    EXPECT_EQ(word("LCPLL_REFCLK_IPS"), expected);
    EXPECT_EQ(word("RPLL_REFCLK_IPS"), expected);
}

TEST_F(SxbQuadAttributes, TakeEachChannelsResetEnablesFromItsOwnLane) {
    // Each lane says that all channels reset what only its own channel resets in the end.
    const std::vector<std::string> enables{
        "_LCPLL_RESET_EN", "_RPLL_RESET_EN",       "_ILO_RESET_EN",   "_TX_PROGDIV_RESET_EN",
        "_TX_CH_RESET_EN", "_RX_PROGDIV_RESET_EN", "_RX_CH_RESET_EN", "_RX_LCPLL_RESET_EN"};
    for (std::size_t lane = 0; lane < 4; ++lane) {
        for (std::size_t channel = 0; channel < 4; ++channel) {
            for (std::size_t enable = 0; enable < enables.size(); ++enable) {
                const bool isReset = enable / 2 == lane;
                set(lane, "MST_RESET_CFG." + channelOf(channel) + enables[enable],
                    isReset ? 1U : 0U);
            }
        }
    }
    // Channel 0: LCPLL at bit 0, RPLL at 4. Channel 1: ILO at 8 + 5, transmit divider behind it.
    // Channel 2: transmit channel at 10 + 10, receive divider behind it. Channel 3: receive
    // channel at 12 + 15, the receiver's LCPLL at 28 + 3.
    const unsigned long expected = (1UL << 0) + (1UL << 4) + (1UL << 13) + (1UL << 14) +
                                   (1UL << 20) + (1UL << 21) + (1UL << 27) + (1UL << 31);
    EXPECT_EQ(word("MST_RESET_CFG"), expected);
}

TEST_F(SxbQuadAttributes, TakeEachChannelsResetOfTheReceiversRpllFromItsOwnLane) {
    for (std::size_t channel = 0; channel < 4; ++channel) {
        set(2, "CTRL_RSV_CFG0." + channelOf(channel) + "_RX_RPLL_RESET_EN", 1U);
    }
    // What else is in the word stays as the rules left it.
    engine->setVal("CTRL_RSV_CFG0.DMON_EN", 1U);
    EXPECT_EQ(word("CTRL_RSV_CFG0"), (1UL << 30) + (1UL << 8));
}

TEST_F(SxbQuadAttributes, CountAMissingFieldAsZero) {
    engine->blockVarMap[0][0].erase("A_CFG1.A_HS0_LCPLLFBDIV");
    engine->blockVarMap[0][0].erase("A_CFG2");
    engine->blockVarMap[0][0].erase("LCPLL_REFCLK_IPS.LCPLL_REFCLK_MAP7");
    const std::map<std::string, std::string> answer = attributes();
    EXPECT_EQ(std::stoul(answer.at("A_CFG1")) & 0xffU, 0U);
    EXPECT_EQ(answer.at("A_CFG2"), "0");
    EXPECT_EQ(answer.at("HS0_LCPLL_REFCLK_MAP7 "), "0");
}

TEST_F(SxbQuadAttributes, CountOnlyThePassOfRateZero) {
    variableMap other = engine->blockVarMap[0][0];
    other["A_CFG2"].value = 107U;
    other["TX"].value = 1U;
    engine->blockVarMap[0].push_back(other);
    other["TX"].value = 0U;
    other["RX"].value = 1U;
    engine->blockVarMap[0].insert(engine->blockVarMap[0].begin(), other);
    EXPECT_EQ(word("A_CFG2"), 100U);
}

TEST_F(SxbQuadAttributes, CountALaneWithoutPassOfRateZeroAsUnused) {
    set(0, "TX_PLL_TYPE", "LCPLL"s);
    set(0, "RX", 1U);
    use(1, "LCPLL");
    EXPECT_EQ(word("A_CFG2"), 101U);
    EXPECT_EQ(word("A_CFG3"), 0U);
}

TEST_F(SxbQuadAttributes, NeedNoPasses) {
    engine->blockVarMap.clear();
    EXPECT_EQ(attributes().at("A_CFG1"), "0");
}

TEST_F(SxbQuadAttributes, HaveTheRegistersThatNoRateChanges) {
    for (std::size_t lane = 0; lane < 4; ++lane) {
        set(lane, "TX_ANA_CFG0", 5U);
    }
    const std::string list = attributes().at("STAT_NPI_REG_LIST");
    EXPECT_EQ(list, engine->statNpiRegList);
    EXPECT_THAT(list, Not(IsEmpty()));
}

TEST_F(SxbQuadAttributes, KeepTheWordsOfEachUnit) {
    set(3, "TX_ANA_CFG0", 5U);
    EXPECT_EQ(attributes().at("CH3_TX_ANA_CFG0"), "5");
}

TEST_F(SxbQuadAttributes, EndWithTheRegistersAsTheRulesLeftThem) {
    set(0, "TX_ANA_CFG0", 5U);
    engine->setVal("TX_ANA_CFG0", 6U);
    const std::map<std::string, std::string> answer = attributes();
    EXPECT_EQ(answer.at("CH0_TX_ANA_CFG0"), "5");
    EXPECT_EQ(answer.at("TX_ANA_CFG0"), "6");
}

TEST_F(SxbQuadAttributes, LeaveOutARegisterWithoutValue) {
    EXPECT_THAT(attributes(), Not(Contains(Key("TX_ANA_CFG0"))));
    EXPECT_EQ(engine->findVariable("TX_ANA_CFG0"), nullptr);
    engine->setVal("TX_ANA_CFG0", boost::blank());
    EXPECT_THAT(attributes(), Not(Contains(Key("TX_ANA_CFG0"))));
}

TEST_F(SxbQuadAttributes, LeaveAWordThatIsThereAlready) {
    // A register that units don't tell apart is in the answer under its bare name from the start.
    engine->attributes["TX_ANA_CFG0"].dstSubBlock = "ctrl_0";
    set(3, "TX_ANA_CFG0", 5U);
    engine->setVal("TX_ANA_CFG0", 6U);
    EXPECT_EQ(attributes().at("TX_ANA_CFG0"), "5");
}

TEST_F(SxbQuadAttributes, BeginWithThePrefixOfTheEngine) {
    engine->attributePrefix = "QUAD7_";
    engine->setVal("TX_ANA_CFG0", 6U);
    std::map<std::string, std::string> answer = attributes();
    for (const char* const name :
         {"A_CFG1", "A_CFG5", "HS0_LCPLL_REFCLK_MAP7 ", "LCPLL_REFCLK_IPS", "RPLL_REFCLK_IPS",
          "MST_RESET_CFG", "CTRL_RSV_CFG0", "STAT_NPI_REG_LIST", "TX_ANA_CFG0"}) {
        EXPECT_THAT(answer, Contains(Key("QUAD7_"s + name)));
        EXPECT_THAT(answer, Not(Contains(Key(name))));
    }
}

TEST_F(SxbQuadAttributes, LeaveTheChosenValuesInTheVariables) {
    use(1, "LCPLL");
    use(3, "LCPLL");
    attributes();
    const auto value = [this](const std::string& name) { return engine->getVal<unsigned>(name); };
    EXPECT_EQ(value("A_CFG1.A_HS0_LCPLLFBDIV"), 11U);
    EXPECT_EQ(value("A_CFG1"), 11U + (20U << 8) + (13U << 16) + (22U << 24));
    EXPECT_EQ(value("A_CFG2"), 101U);
    EXPECT_EQ(value("HS0_LCPLL_REFCLK_MAP7 "), 0U);
    EXPECT_EQ(value("HS1_LCPLL_IPS_REFCLK_SEL"), 4U);
    EXPECT_EQ(value("LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL"), 4U);
}

TEST_F(SxbQuadAttributes, AreTheSameWhenAskedAgain) {
    use(1, "LCPLL");
    use(2, "RPLL");
    const std::map<std::string, std::string> first = attributes();
    EXPECT_EQ(attributes(), first);
}

}  // namespace
}  // namespace sable_lanecfg
