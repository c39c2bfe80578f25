#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_rules.h"
#include "families/sxc/sxc_rules.h"
#include "support/lane_set.h"

#include <lanecfg/family_rules.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

// The rules of both families side by side: what the changes of SXC do not reach is as in SXB.

namespace lanecfg_test {
namespace {

using sable_lanecfg::ruleDescription;
using sable_lanecfg::ruleKind;
using sable_lanecfg::rulesOfFamily;

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

/// The outputs of a rule and whatever is computed from them.
void addReach(const std::vector<ruleDescription>& rules, std::set<std::string>& reach) {
    const auto isReached = [&reach](const std::string& name) { return reach.count(name) != 0; };
    for (std::size_t before = 0; before != reach.size();) {
        before = reach.size();
        for (const ruleDescription& rule : rules) {
            if (std::any_of(rule.inputs.begin(), rule.inputs.end(), isReached) ||
                std::any_of(rule.outputs.begin(), rule.outputs.end(), isReached)) {
                reach.insert(rule.outputs.begin(), rule.outputs.end());
            }
        }
    }
}

/// Constants and logic that SXC has in another way, and what either family computes from them.
std::set<std::string> whatDiffers() {
    std::set<std::string> reach = otherwiseDeclared();
    std::map<std::string, ruleDescription> ofSxb;
    for (const ruleDescription& rule : rulesOfFamily("SXB", "live")) {
        ofSxb[rule.outputs.front()] = rule;
    }
    for (const ruleDescription& rule : rulesOfFamily("SXC", "live")) {
        const auto found = ofSxb.find(rule.outputs.front());
        if (found == ofSxb.end() || found->second.kind != rule.kind ||
            found->second.value != rule.value || found->second.inputs != rule.inputs) {
            reach.insert(rule.outputs.begin(), rule.outputs.end());
        }
        if (found != ofSxb.end()) {
            ofSxb.erase(found);
        }
    }
    for (const auto& [name, rule] : ofSxb) {
        reach.insert(name);
    }
    // The input that is two names in one; it never has a value.
    reach.insert("RX_CC_NUM_SEQRX_INT_DATA_WIDTH");
    addReach(rulesOfFamily("SXB", "live"), reach);
    addReach(rulesOfFamily("SXC", "live"), reach);
    return reach;
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

    static VariableValues passOf(LaneEngine& engine, const VariableValues& inputs) {
        engine.set(inputs);
        engine.runPass();
        return engine.values();
    }

    LaneEngine sxb{ranges()};
    LaneEngine sxc{ranges()};
    std::mt19937 random{11};
};

TEST_F(SxcPasses, GiveWhatNoChangeReachesAsSxbDoes) {
    const std::set<std::string> different = whatDiffers();
    EXPECT_LT(different.size(), 200U);
    for (int run = 0; run < 100; ++run) {
        const VariableValues lane = randomLane(random);
        const VariableValues expected = passOf(sxb, lane);
        const VariableValues actual = passOf(sxc, lane);
        for (const std::string& name : differences(actual, expected)) {
            EXPECT_EQ(different.count(name), 1U) << name << " in run " << run;
        }
    }
}

TEST_F(SxcPasses, AreTheSameOnEverySilicon) {
    for (int run = 0; run < 100; ++run) {
        VariableValues lane = randomLane(random);
        lane.erase("siliconRev");
        VariableValues early = passOf(sxc, with(lane, {{"siliconRev", std::string("es1")}}));
        VariableValues later = passOf(sxc, with(lane, {{"siliconRev", std::string("es2")}}));
        EXPECT_EQ(early.erase("siliconRev"), 1U);
        EXPECT_EQ(later.erase("siliconRev"), 1U);
        EXPECT_THAT(differences(early, later), testing::IsEmpty());
    }
}

}  // namespace
}  // namespace lanecfg_test
