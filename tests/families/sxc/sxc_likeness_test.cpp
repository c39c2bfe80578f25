#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_rules.h"
#include "families/sxc/sxc_rules.h"
#include "support/lane_set.h"
#include "sxc_rule_alone.h"

#include <lanecfg/family_rules.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

// The rules of both families side by side: what the changes of SXC do not reach is as in SXB.

namespace lanecfg_test {
namespace {

using namespace std::string_literals;
using sable_lanecfg::ruleDescription;
using sable_lanecfg::ruleKind;
using sable_lanecfg::rulesOfFamily;
using testing::AnyOfArray;
using testing::Contains;

/// Rules whose inputs or outputs differ though both families compute them.
const std::set<std::string>& otherwiseDeclared() {
    static const std::set<std::string> names{"PIPE_CTRL_CFG7.TX_DA_BYP",
                                             "MST_RESET_CFG.CH0_RX_LCPLL_RESET_EN",
                                             "MST_RESET_CFG.CH1_RX_LCPLL_RESET_EN",
                                             "MST_RESET_CFG.CH2_RX_LCPLL_RESET_EN",
                                             "MST_RESET_CFG.CH3_RX_LCPLL_RESET_EN",
                                             "EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN",
                                             "RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MAX_LAT",
                                             "INT_TXOUTCLK_FREQ",
                                             "TX_PCS_CFG3.TX_DEDICATED_CCIX_CHICO_PATH_EN"};
    return names;
}

/// Declarations of the logic rules that both families have alike, by their first output.
std::map<std::string, std::pair<std::vector<std::string>, std::vector<std::string>>> logicOf(
    const std::string& family) {
    std::map<std::string, std::pair<std::vector<std::string>, std::vector<std::string>>> rules;
    for (const ruleDescription& rule : rulesOfFamily(family, "live")) {
        if (rule.kind == ruleKind::logic && otherwiseDeclared().count(rule.outputs.front()) == 0) {
            rules[rule.outputs.front()] = {rule.inputs, rule.outputs};
        }
    }
    return rules;
}

TEST(SxcRulesBesideSxb, DeclareTheSameNamesWhereNothingIsToldOfThem) {
    auto ofSxb = logicOf("SXB");
    for (const char* const constantNow :
         {"A_CFG0.A_BGRCALOVRD_EN", "FABRIC_INTF_CFG1.A_RXPD", "FABRIC_INTF_CFG3.A_TXPD",
          "RX_CTLE_CFG1.RCAL_OS_PAD", "RX_CTLE_CFG1.CDR2APT_SCANMODE1",
          "RX_PCS_CFG2.FIFO_INIT_RD_ADDR", "TX_PCS_CFG0.FIFO_INIT_RD_ADDR",
          "PIPE_TX_EQ_CFG3.TX_DEEMPH_0", "PIPE_TX_EQ_CFG3.TX_DEEMPH_1", "TX_DRV_CFG0.TX_CTL_DRV_EN",
          "RESET_CFG.ILORESET_PLLLOCK_SEL", "CHCLK_ILO_CFG.RESERVED_BIT17"}) {
        EXPECT_EQ(ofSxb.erase(constantNow), 1U) << constantNow;
    }
    auto ofSxc = logicOf("SXC");
    for (const char* const added :
         {"RESET_CFG.TX_PLLLOCK_SEL", "RESET_CFG.RX_PLLLOCK_SEL", "CHL_RSV_CFG2.EB128B130B_64_EN",
          "ADAPT_APT_CFG.divider_data", "MST_RESET_CFG.CH0_ILO_RESET_EN",
          "MST_RESET_CFG.CH1_ILO_RESET_EN", "MST_RESET_CFG.CH2_ILO_RESET_EN",
          "MST_RESET_CFG.CH3_ILO_RESET_EN"}) {
        EXPECT_EQ(ofSxc.erase(added), 1U) << added;
    }
    EXPECT_EQ(ofSxc, ofSxb);
}

TEST(SxcRulesBesideSxb, NeverReadTheSiliconRevision) {
    const auto readers = [](const std::string& family) {
        const std::vector<ruleDescription> rules = rulesOfFamily(family, "live");
        return std::count_if(rules.begin(), rules.end(), [](const ruleDescription& rule) {
            return std::count(rule.inputs.begin(), rule.inputs.end(), "siliconRev") != 0;
        });
    };
    EXPECT_GT(readers("SXB"), 0);
    EXPECT_EQ(readers("SXC"), 0);
}

/// Names that hold something else in SXC by a rule of their own, or that one family alone has.
std::set<std::string> whatHasAnotherRule() {
    // The references that the outclock report leaves out, and two input names in one, which never
    // has a value.
    std::set<std::string> names{"INT_TXOUTCLK_REFCLK_FREQ", "INT_TXOUTCLK_REFCLK_SOURCE",
                                "RX_CC_NUM_SEQRX_INT_DATA_WIDTH"};
    std::map<std::string, ruleDescription> ofSxb;
    for (const ruleDescription& rule : rulesOfFamily("SXB", "live")) {
        ofSxb[rule.outputs.front()] = rule;
    }
    for (const ruleDescription& rule : rulesOfFamily("SXC", "live")) {
        const auto found = ofSxb.find(rule.outputs.front());
        if (found == ofSxb.end() || found->second.kind != rule.kind ||
            found->second.value != rule.value || found->second.inputs != rule.inputs) {
            names.insert(rule.outputs.begin(), rule.outputs.end());
        }
        if (found != ofSxb.end()) {
            ofSxb.erase(found);
        }
    }
    for (const auto& [name, rule] : ofSxb) {
        names.insert(name);
    }
    // It only waits for an input more.
    names.erase("TX_PCS_CFG3.TX_DEDICATED_CCIX_CHICO_PATH_EN");
    return names;
}

/// What the rule of each output reads.
std::map<std::string, std::vector<std::string>> inputsOfSxc() {
    std::map<std::string, std::vector<std::string>> inputs;
    for (const ruleDescription& rule : rulesOfFamily("SXC", "live")) {
        for (const std::string& output : rule.outputs) {
            inputs[output] = rule.inputs;
        }
    }
    return inputs;
}

const DeviceSettings& ranges() {
    static const DeviceSettings settings{{"FLCPLLRANGE_MIN", {"8.0"}},
                                         {"FLCPLLRANGE_MAX", {"16.375"}}};
    return settings;
}

class SxcPasses : public testing::Test {
  protected:
    SxcPasses() {
        sable_lanecfg::registerSxbRxRules(sxb);
        sable_lanecfg::registerSxbTxRules(sxb);
        sable_lanecfg::registerSxbPllRules(sxb);
        sable_lanecfg::registerSxcRxRules(sxc);
        sable_lanecfg::registerSxcTxRules(sxc);
        sable_lanecfg::registerSxcPllRules(sxc);
        sxb.set(quadInputs());
        sxc.set(quadInputs());
    }

    /// In every fourth run a lane whose transmit aligner is passed by in SXC alone: a buffer, and
    /// raw data with a divided clock that is not from the receiver's PLL.
    VariableValues laneOfRun(int run) {
        const VariableValues lane = randomLane(random);
        if (run % 4 != 0) {
            return lane;
        }
        return with(lane, {{"TX_BUFFER_MODE", 1U},
                           {"TX_DATA_ENCODING", "RAW"s},
                           {"TX_OUTCLK_SOURCE", "TXPROGDIVCLK"s},
                           {"TX_PLL_TYPE", "LCPLL"s},
                           {"RX_PLL_TYPE", "RPLL"s}});
    }

    static VariableValues passOf(LaneEngine& engine, const VariableValues& inputs) {
        engine.set(inputs);
        engine.runPass();
        return engine.values();
    }

    LaneEngine sxb{ranges()};
    LaneEngine sxc{ranges()};
    std::mt19937 random{11};
};

TEST_F(SxcPasses, DifferFromSxbByRulesThatChangedOrInWhatReadsThem) {
    const std::set<std::string> changed = whatHasAnotherRule();
    // 41 fields of SXC, 2 of SXB, 3 constants, 10 that became constants, the 17 fields of the
    // recovery and 11 others, 8 words, and 3 names.
    EXPECT_THAT(changed, testing::SizeIs(41 + 2 + 3 + 10 + 17 + 11 + 8 + 3));
    const auto inputs = inputsOfSxc();
    for (int run = 0; run < 100; ++run) {
        const VariableValues lane = laneOfRun(run);
        const VariableValues expected = passOf(sxb, lane);
        const std::vector<std::string> names = differences(passOf(sxc, lane), expected);
        const std::set<std::string> different(names.begin(), names.end());
        for (const std::string& name : different) {
            if (changed.count(name) == 0) {
                ASSERT_EQ(inputs.count(name), 1U) << name << " in run " << run;
                EXPECT_THAT(inputs.at(name), Contains(AnyOfArray(different))) << name;
            }
        }
    }
}

TEST_F(SxcPasses, ReportTheOutputClockOfSxbWhereTheTransmitAlignersAgree) {
    int agreeing = 0;
    for (int run = 0; run < 100; ++run) {
        const VariableValues lane = laneOfRun(run);
        const VariableValues expected = passOf(sxb, lane);
        const VariableValues actual = passOf(sxc, lane);
        const std::string aligner = "PIPE_CTRL_CFG7.TX_DA_BYP";
        if (actual.at(aligner) == expected.at(aligner)) {
            ++agreeing;
            for (const char* const name : {"INT_TXOUTCLK_FREQ", "TX_PHALIGN_CFG0.DAPI_BUFG_DIV"}) {
                EXPECT_EQ(actual.at(name), expected.at(name)) << name << " in run " << run;
            }
        }
    }
    EXPECT_GE(agreeing, 50);
    EXPECT_LE(agreeing, 75);
}

TEST_F(SxcPasses, AreTheSameOnEverySilicon) {
    std::vector<VariableValues> lanes{with(randomLane(random), pcieReceiver(8.0, 32)),
                                      with(randomLane(random), pcieReceiver(32.0, 64))};
    std::generate_n(std::back_inserter(lanes), 98, [this] { return randomLane(random); });
    for (const VariableValues& lane : lanes) {
        VariableValues early = passOf(sxc, with(lane, {{"siliconRev", "es1"s}}));
        VariableValues later = passOf(sxc, with(lane, {{"siliconRev", "es2"s}}));
        EXPECT_EQ(early.erase("siliconRev"), 1U);
        EXPECT_EQ(later.erase("siliconRev"), 1U);
        EXPECT_THAT(differences(early, later), testing::IsEmpty());
    }
}

}  // namespace
}  // namespace lanecfg_test
