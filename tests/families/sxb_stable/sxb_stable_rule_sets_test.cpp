#include "families/frozen/sxb_stable_rules.h"
#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_rules.h"
#include "support/lane_set.h"

#include <lanecfg/family_rules.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

// The three frozen sets together, alone and beside the current ones.

namespace lanecfg_test {
namespace {

using namespace std::string_literals;
using sable_lanecfg::ruleDescription;
using sable_lanecfg::ruleKind;
using sable_lanecfg::rulesOfFamily;
using testing::IsEmpty;

/// A receive PLL of 10.3125 GHz on the LCPLL, from the source of the current inputs.
const VariableValues receivePll{{"RX_PLL_VCO", 10.3125},
                                {"RX_PLL_REFCLK_FREQUENCY", 156.25},
                                {"RX_PLL_POWERDOWN", false},
                                {"RX_PLL_REFCLK_SOURCE", "R2"s},
                                {"RX_EQ_MODE", "LPM"s}};

void registerStable(LaneEngine& engine) {
    sable_lanecfg::registerSxbStableRxRules(engine);
    sable_lanecfg::registerSxbStableTxRules(engine);
    sable_lanecfg::registerSxbStablePllRules(engine);
}

class SxbStableRuleSets : public testing::Test {
  protected:
    SxbStableRuleSets() {
        registerStable(engine);
        engine.set(with(quadInputs(), receivePll));
    }

    LaneEngine engine;
};

TEST_F(SxbStableRuleSets, Have1829RulesInTheOrderReceiveTransmitPll) {
    EXPECT_EQ(engine.ruleNumbers().size(), 1829U);
    EXPECT_EQ(engine.ruleNumber("RX_PCS_CFG0.RX_DATA_WIDTH"), 0);
    EXPECT_EQ(engine.ruleNumber("TX_PCS_CFG0.TX_DATA_WIDTH"), 827);
    EXPECT_EQ(engine.ruleNumber("INT_LCPLL_PLLCLKOUT_VECTOR"), 827 + 198);
    EXPECT_EQ(engine.ruleNumber("MEMCELLX0F13"), 827 + 198 + 804 - 1);
}

TEST_F(SxbStableRuleSets, TheLaterOfTwoRulesOfAFieldHasIt) {
    EXPECT_GT(engine.ruleNumber("PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK"),
              engine.ruleNumber("INT_BUFGTDIV_G1_PIPECLK"));
}

TEST_F(SxbStableRuleSets, AreListedAsTheyAreRegistered) {
    const std::vector<ruleDescription> rules = rulesOfFamily("SXB", "stable");
    ASSERT_EQ(rules.size(), 1829U);
    for (std::size_t number = 0; number < rules.size(); ++number) {
        EXPECT_EQ(engine.ruleNumber(rules[number].outputs.front()), static_cast<int>(number))
            << rules[number].outputs.front();
    }
}

TEST_F(SxbStableRuleSets, HaveNoCycleAndGiveEveryVariableAValue) {
    engine.runPass();
    EXPECT_THAT(blankResults(engine), IsEmpty());
}

TEST_F(SxbStableRuleSets, TenGigabitFromAnLcpllOf10Point3125) {
    engine.runPass();
    EXPECT_EQ(engine.value("INT_LCPLL_REF_DIV"), ruleValue(1U));
    EXPECT_EQ(engine.value("INT_LCPLL_FBDIV"), ruleValue(66U));
    // Twice the clock over 10.3125 Gb/s.
    EXPECT_EQ(engine.value("INT_RX_OUTDIV"), ruleValue(2.0));
    EXPECT_EQ(engine.value("INT_TX_OUTDIV"), ruleValue(2.0));
    EXPECT_EQ(engine.value("MEMCELLX0C12.HS0_LCPLL_IPS_REFCLK_SEL"), ruleValue(3U));
    // 10.3125 GHz over 4 and 8 is 322.265625 MHz, 1.25 clocks in a word of 40 bits, in steps of 8.
    EXPECT_EQ(engine.value("RX_PHALIGN_CFG0.DAPI_BUFG_DIV"), ruleValue(8U));
    EXPECT_EQ(engine.value("TX_PHALIGN_CFG0.DAPI_BUFG_DIV"), ruleValue(8U));
}

TEST_F(SxbStableRuleSets, FollowTheReceiverAloneWhicheverPllTheTransmitterNames) {
    engine.set({{"RX_PLL_TYPE", "RPLL"s},
                {"RX_PLL_VCO", 5.0},
                {"RX_PLL_REFCLK_FREQUENCY", 125.0},
                {"TX_PLL_TYPE", "LCPLL"s}});
    engine.runPass();
    EXPECT_EQ(engine.value("INT_RPLL_FBDIV"), ruleValue(80U));
    EXPECT_EQ(engine.value("INT_LCPLL_PLLCLKOUT"), ruleValue(0.0));
    // A PLL without a clock leaves an output divider of 1.
    EXPECT_EQ(engine.value("INT_TX_OUTDIV"), ruleValue(1.0));
    EXPECT_EQ(engine.value("A_CFG2.A_HS0_LCPLLPD"), ruleValue(1U));
    EXPECT_EQ(engine.value("A_CFG3.A_HS0_RPLLPD"), ruleValue(0U));
}

TEST_F(SxbStableRuleSets, KeepTheSolutionOfThePassBeforeForAnIdlePll) {
    engine.runPass();
    engine.set({{"RX_PLL_TYPE", "RPLL"s}, {"RX_PLL_VCO", 5.0}, {"RX_PLL_REFCLK_FREQUENCY", 125.0}});
    engine.runPass();
    EXPECT_EQ(engine.value("INT_LCPLL_FBDIV"), ruleValue(66U));
}

TEST_F(SxbStableRuleSets, TheTransmitBufferKnowsOfNoAsynchronousGearbox) {
    engine.set({{"TX_DATA_ENCODING", "64B66B_ASYNC"s}, {"TX_BUFFER_MODE", 1U}});
    engine.runPass();
    EXPECT_EQ(engine.value("TX_PCS_CFG3.TX_PHASE_BUFFER_USE"), ruleValue(1U));
}

TEST_F(SxbStableRuleSets, ARateOf8GbWithPcieUsesNoLimitAndNoCandidateLess) {
    engine.set({{"PCIE_ENABLE", true},
                {"RX_LINE_RATE", 8.0},
                {"TX_LINE_RATE", 8.0},
                {"RX_PLL_VCO", 8.0},
                {"RX_PLL_REFCLK_FREQUENCY", 100.0}});
    engine.runPass();
    EXPECT_EQ(engine.value("INT_LCPLL_FBDIV"), ruleValue(160U));
}

TEST(SxbStableStartValues, StandForWhatNoFrozenRuleWrites) {
    LaneEngine engine;
    registerStable(engine);
    const VariableValues expected{{"INT_LCPLLCLKOUTRATE", "FULL"s}, {"INT_LCPLL_SDMDATA", 0U},
                                  {"INT_RPLL_SDMDATA", 0U},         {"INT_DOUBLER_EN", 0U},
                                  {"INT_TX_ASYNC_GEARBOX_EN", 0U},  {"RX_PLL_VCO", 0.0},
                                  {"RX_PLL_REFCLK_FREQUENCY", 0.0}, {"RX_PLL_POWERDOWN", true},
                                  {"RX_PLL_REFCLK_SOURCE", "R0"s}};
    for (const auto& [name, value] : expected) {
        EXPECT_EQ(engine.value(name), value) << name;
        EXPECT_EQ(engine.ruleNumber(name), -1) << name;
    }
}

TEST(SxbStableStartValues, LeaveWhatIsThere) {
    LaneEngine engine;
    engine.set({{"RX_PLL_VCO", 7.5}});
    registerStable(engine);
    EXPECT_EQ(engine.value("RX_PLL_VCO"), ruleValue(7.5));
}

/// Variables that the two states give in another way, and whatever either computes from them.
std::set<std::string> whatDiffers() {
    const auto textOf = [](const ruleDescription& rule) {
        return std::to_string(static_cast<int>(rule.kind)) + " " + std::to_string(rule.value);
    };
    std::map<std::string, std::vector<std::string>> ofCurrent;
    for (const ruleDescription& rule : rulesOfFamily("SXB", "live")) {
        for (const std::string& output : rule.outputs) {
            ofCurrent[output] = {textOf(rule)};
            ofCurrent[output].insert(ofCurrent[output].end(), rule.inputs.begin(),
                                     rule.inputs.end());
        }
    }
    std::set<std::string> names;
    for (const ruleDescription& rule : rulesOfFamily("SXB", "stable")) {
        std::vector<std::string> mine{textOf(rule)};
        mine.insert(mine.end(), rule.inputs.begin(), rule.inputs.end());
        for (const std::string& output : rule.outputs) {
            const auto found = ofCurrent.find(output);
            if (found != ofCurrent.end() && found->second != mine) {
                names.insert(output);
            }
        }
    }
    return names;
}

/// What is alike however it is computed: the PLLs are given the same work, and the equaliser's mode
/// is no "AUTO".
const std::set<std::string>& alikeAllTheSame() {
    static const std::set<std::string> names{"INT_LCPLL_PLLCLKOUT",
                                             "INT_LCPLL_REFCLKFREQ",
                                             "INT_LCPLL_POWERDOWN",
                                             "INT_LCPLL_REFCLK_SOURCE",
                                             "INT_LCPLL_REFCLK_ID",
                                             "INT_RPLL_PLLCLKOUT",
                                             "INT_RPLL_POWERDOWN",
                                             "RX_PHALIGN_CFG0.DAPI_BUFG_DIV",
                                             "TX_PHALIGN_CFG0.DAPI_BUFG_DIV",
                                             "TX_PCS_CFG0.USE_GB",
                                             "TX_PCS_CFG0.MODE",
                                             "ADAPT_GEN_CFG0.gc1_disloop",
                                             "ADAPT_KH_CFG0.khcdeg_mshift",
                                             "ADAPT_KL_CFG0.kl_mshift",
                                             "ADAPT_KL_CFG0.kl_initdac",
                                             "RX_MISC_CFG0.RX_XMODE_SEL",
                                             "FABRIC_INTF_CFG1.A_RXLPMEN",
                                             "PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK",
                                             "INT_BUFGTDIV_G1_PIPECLK"};
    return names;
}

TEST(SxbStableRulesBesideCurrent, GiveTheSameWhereTheListsHaveNothingAndThePllIsTheSame) {
    LaneEngine frozen;
    registerStable(frozen);
    LaneEngine current({{"FLCPLLRANGE_MIN", {"8.0"}}, {"FLCPLLRANGE_MAX", {"16.375"}}});
    sable_lanecfg::registerSxbRxRules(current);
    sable_lanecfg::registerSxbTxRules(current);
    sable_lanecfg::registerSxbPllRules(current);

    std::set<std::string> differing = whatDiffers();
    for (const std::string& name : alikeAllTheSame()) {
        differing.erase(name);
    }
    // The transmit buffer asks for an asynchronous gearbox in the current rules alone.
    differing.insert("TX_PCS_CFG3.TX_PHASE_BUFFER_USE");

    std::mt19937 random{9};
    for (int run = 0; run < 60; ++run) {
        VariableValues inputs = with(quadInputs(), with(randomLane(random), receivePll));
        // The receiver's PLL is the LCPLL, and the RPLL has no work in either state.
        inputs["RX_PLL_TYPE"] = "LCPLL"s;
        inputs["TX_RPLL_PLLCLKOUT_FREQ_VECTOR"] = std::vector<double>();
        inputs["RX_RPLL_PLLCLKOUT_FREQ_VECTOR"] = std::vector<double>();
        frozen.set(inputs);
        current.set(inputs);
        frozen.runPass();
        current.runPass();
        const VariableValues ofFrozen = frozen.values();
        int compared = 0;
        for (const auto& [name, value] : current.values()) {
            const auto found = ofFrozen.find(name);
            // A word is made of its fields, which are compared one by one.
            const bool isField = name.find('.') != std::string::npos;
            const bool isIntermediate = name.rfind("INT_", 0) == 0;
            if (found != ofFrozen.end() && (isField || isIntermediate) &&
                current.ruleNumber(name) >= 0 && frozen.ruleNumber(name) >= 0 &&
                differing.count(name) == 0) {
                EXPECT_EQ(found->second, value) << name << " in run " << run;
                ++compared;
            }
        }
        EXPECT_GT(compared, 1000);
    }
}

}  // namespace
}  // namespace lanecfg_test
