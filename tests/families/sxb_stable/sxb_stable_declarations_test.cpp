#include "sxb_stable_rule_alone.h"

#include <lanecfg/family_rules.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

// The names of every rule that the current rules lack, or have in another way, and that all others
// declare what they do there.

namespace lanecfg_test {
namespace {

using sable_lanecfg::ruleDescription;
using sable_lanecfg::ruleKind;
using sable_lanecfg::rulesOfFamily;
using testing::IsEmpty;

const std::vector<DeclaredNames>& pllDeclarations() {
    static const std::vector<DeclaredNames> rows{
        {"PLL input selection",
         {"RX_PLL_TYPE", "RX_PLL_VCO", "RX_PLL_REFCLK_FREQUENCY", "RX_PLL_POWERDOWN",
          "RX_PLL_REFCLK_SOURCE"},
         {"INT_LCPLL_PLLCLKOUT_VECTOR", "INT_RPLL_PLLCLKOUT_VECTOR", "INT_RPLL_REFCLKFREQ",
          "INT_LCPLL_REFCLKFREQ", "INT_RPLL_POWERDOWN", "INT_LCPLL_POWERDOWN",
          "INT_LCPLL_REFCLK_SOURCE", "INT_RPLL_REFCLK_SOURCE", "INT_LCPLL_REFCLK_ID",
          "INT_RPLL_REFCLK_ID", "INT_LCPLL_PLLCLKOUT", "INT_RPLL_PLLCLKOUT"}},
        {"LCPLL solver",
         {"INT_LCPLL_PLLCLKOUT_VECTOR", "INT_LCPLL_REFCLKFREQ", "PCIE_ENABLE"},
         {"INT_LCPLL_REF_DIV", "INT_LCPLL_FBDIV"}},
        {"RPLL solver",
         {"RPLL_USED_FOR_SERIAL_DATA_RATE0", "TX_IN_USE", "RX_IN_USE", "INT_RPLL_PLLCLKOUT_VECTOR",
          "INT_RPLL_REFCLKFREQ", "INT_RPLLCLKOUTRATE"},
         {"INT_RPLL_REF_DIV", "INT_RPLL_FBDIV"}},
        {"pipe clock divider",
         {"PCIE_ENABLE", "TXPROGDIV_FREQ_VAL"},
         {"INT_BUFGTDIV_G1_PIPECLK", "PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK"}},
        {"PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK", {"PCIE_ENABLE", "TXPROGDIV_FREQ_VAL"}},
        {"MEMCELLX0C12.HS0_LCPLL_IPS_REFCLK_SEL", {"INT_LCPLL_REFCLK_SOURCE"}},
        {"MEMCELLX0F12.HS1_LCPLL_IPS_REFCLK_SEL", {"INT_LCPLL_REFCLK_SOURCE"}},
        {"MEMCELLX0C13.HS0_RPLL_IPS_REFCLK_SEL", {"INT_RPLL_REFCLK_SOURCE"}},
        {"MEMCELLX0F13.HS1_RPLL_IPS_REFCLK_SEL", {"INT_RPLL_REFCLK_SOURCE"}},
        {"FABRIC_INTF_CFG1.A_RXLPMEN", {"RX_EQ_MODE"}}};
    return rows;
}

const std::vector<DeclaredNames>& laneDeclarations() {
    static const std::vector<std::string> lowPower{"PCIE_ENABLE", "TX_LINE_RATE", "RX_EQ_MODE"};
    static const std::vector<DeclaredNames> rows{
        {"RX clocks per word",
         {"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", "RX_PCS_CFG0.RX_DATA_WIDTH", "RX_LINE_RATE",
          "INT_LCPLL_PLLCLKOUT", "INT_RPLL_PLLCLKOUT", "PIPE_CTRL_CFG7.RXOUTCLKCTL",
          "INT_RXPROGDIV_SEL", "INT_RX_OUTDIV", "INT_RXOUTCLKDIV_FOR_PROGDIV_PATH",
          "INT_LCPLL_REFCLKFREQ", "INT_RPLL_REFCLKFREQ", "PIPE_CTRL_CFG7.RX_DA_BYP",
          "DA_CFG.RX_DA_REFCLK_SEL"},
         {"RX_PHALIGN_CFG0.DAPI_BUFG_DIV"}},
        {"TX clocks per word",
         {"PIPE_CTRL_CFG7.TXOUTCLKCTL", "TX_PCS_CFG0.TX_DATA_WIDTH", "DA_CFG.TX_DA_REFCLK_SEL",
          "PIPE_CTRL_CFG7.TX_DA_BYP", "CHCLK_TXPI_CFG0.TX_PROGCLK_SEL",
          "CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", "INT_TXOUTCLKDIV_FOR_PROGDIV_PATH", "INT_TXPROGDIV_SEL",
          "TX_LINE_RATE", "INT_LCPLL_REFCLKFREQ", "INT_RPLL_REFCLKFREQ", "INT_LCPLL_PLLCLKOUT",
          "INT_RPLL_PLLCLKOUT", "CHCLK_TXPI_CFG0.TXPI_BYPASS", "CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL"},
         {"TX_PHALIGN_CFG0.DAPI_BUFG_DIV"}},
        {"TX_PCS_CFG0.USE_GB", {"TX_DATA_ENCODING"}, {"TX_PCS_CFG0.USE_GB", "TX_PCS_CFG0.MODE"}},
        {"ADAPT_GEN_CFG0.gc1_disloop", {"RX_EQ_MODE"}},
        {"ADAPT_KH_CFG0.khcdeg_mshift", {"RX_EQ_MODE"}},
        {"ADAPT_KL_CFG0.kl_mshift", {"RX_EQ_MODE"}},
        {"ADAPT_KL_CFG0.kl_initdac", {"RX_EQ_MODE"}},
        {"RX_MISC_CFG0.RX_XMODE_SEL", {"RX_EQ_MODE", "RX_LINE_RATE"}},
        {"RX_CTLE_CFG0.RX_AGC1_LOW_PWR", lowPower},
        {"RX_CTLE_CFG0.RX_AGC2_LOW_PWR", lowPower},
        {"RX_CTLE_CFG0.RX_CTLE1_LOW_PWR", lowPower}};
    return rows;
}

INSTANTIATE_TEST_SUITE_P(OfThePllSet, SxbStableDeclaration, testing::ValuesIn(pllDeclarations()),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(OfTheLaneSets, SxbStableDeclaration, testing::ValuesIn(laneDeclarations()),
                         nameOf);

/// First outputs of the rules that are declared otherwise, or are there in one state only.
std::set<std::string> otherwiseDeclared() {
    std::set<std::string> names;
    for (const auto* const rows : {&pllDeclarations(), &laneDeclarations()}) {
        for (const DeclaredNames& row : *rows) {
            names.insert(row.outputs.empty() ? row.rule : row.outputs.front());
        }
    }
    // The current reports begin with their clocks.
    names.insert({"INT_RXOUTCLK_FREQ", "INT_TXOUTCLK_FREQ"});
    return names;
}

using DeclarationTable =
    std::map<std::string, std::pair<std::vector<std::string>, std::vector<std::string>>>;

/// Declarations of the other logic rules by their first output.
DeclarationTable likeDeclarations(const std::string& selector) {
    const std::set<std::string> otherwise = otherwiseDeclared();
    DeclarationTable table;
    for (const ruleDescription& rule : rulesOfFamily("SXB", selector)) {
        if (rule.kind == ruleKind::logic && otherwise.count(rule.outputs.front()) == 0) {
            table[rule.outputs.front()] = {rule.inputs, rule.outputs};
        }
    }
    return table;
}

TEST(SxbStableDeclarations, OfAllOtherRulesAreThoseOfTheCurrentRules) {
    DeclarationTable current = likeDeclarations("live");
    for (const char* const gone : {"INT_RX_EQ_MODE",
                                   "EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN",
                                   "RX_CTLE_CFG1.CDR2APT_SCANMODE1",
                                   "LCPLL_CFG2.LCPLL_LFT_CP2",
                                   "LCPLL_CFG2.LCPLL_LFT_RP",
                                   "LCPLL_CFG2.LCPLL_LFT_CP1",
                                   "LCPLL_CFG2.LCPLL_LFT_RZ",
                                   "RPLL_CFG2.RPLL_DOUBLER_BAND_SEL",
                                   "RPLL_CFG2.RPLL_DOUBLER_REG_PDB",
                                   "LCPLL_LGC_CFG2.REFCLK_ID",
                                   "RPLL_CFG0.RPLL_CP2CFG",
                                   "RPLL_CFG0.RPLL_CP1CFG",
                                   "RPLL_CFG1.RPLL_DOUBLER_BYPASSB",
                                   "RPLL_LGC_CFG2.REFCLK_ID",
                                   "CFG4.ibg_vc_50u_rpll1_ctrl",
                                   "PIPE_CTRL_CFG7.RATE_USE_LCPLL_OUTCLK_ESM56",
                                   "PIPE_CTRL_CFG7.RXPD_IND_CONTROL",
                                   "CHCLK_ILO_CFG.RESERVED_BIT17",
                                   "CTRL_RSV_CFG0.CH0_RX_RPLL_RESET_EN",
                                   "CTRL_RSV_CFG0.CH1_RX_RPLL_RESET_EN",
                                   "CTRL_RSV_CFG0.CH2_RX_RPLL_RESET_EN",
                                   "CTRL_RSV_CFG0.CH3_RX_RPLL_RESET_EN",
                                   "MST_RESET_CFG.CH0_RX_LCPLL_RESET_EN",
                                   "MST_RESET_CFG.CH1_RX_LCPLL_RESET_EN",
                                   "MST_RESET_CFG.CH2_RX_LCPLL_RESET_EN",
                                   "MST_RESET_CFG.CH3_RX_LCPLL_RESET_EN",
                                   "LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL",
                                   "LCPLL_REFCLK_IPS.LCPLL_REFCLK_MAP1",
                                   "LCPLL_REFCLK_IPS.LCPLL_REFCLK_MAP2",
                                   "RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL",
                                   "RPLL_REFCLK_IPS.RPLL_REFCLK_MAP1",
                                   "RPLL_REFCLK_IPS.RPLL_REFCLK_MAP2"}) {
        EXPECT_EQ(current.erase(gone), 1U) << gone;
    }
    EXPECT_EQ(likeDeclarations("stable"), current);
}

/// First outputs of the rules in order of registration.
std::vector<std::string> firstOutputs(const std::string& selector) {
    std::vector<std::string> names;
    for (const ruleDescription& rule : rulesOfFamily("SXB", selector)) {
        names.push_back(rule.outputs.front());
    }
    return names;
}

/// Those that are also among the others, in their order.
std::vector<std::string> sharedWith(const std::vector<std::string>& others,
                                    std::vector<std::string> names) {
    const std::set<std::string> known(others.begin(), others.end());
    names.erase(
        std::remove_if(names.begin(), names.end(),
                       [&known](const std::string& name) { return known.count(name) == 0; }),
        names.end());
    return names;
}

TEST(SxbStableDeclarations, StandInTheOrderOfTheCurrentRules) {
    const std::vector<std::string> frozen = firstOutputs("stable");
    const std::vector<std::string> current = firstOutputs("live");
    const std::vector<std::string> shared = sharedWith(frozen, current);
    EXPECT_GT(shared.size(), 1400U);
    EXPECT_EQ(sharedWith(current, frozen), shared);
}

TEST(SxbStableDeclarations, NameNoVariableThatNothingProvides) {
    std::set<std::string> provided{
        // Of the run, of the start values, and literals without a producer.
        "DUAL",
        "LaneNum",
        "LaneTxRxMode",
        "siliconRev",
        "INT_LCPLLCLKOUTRATE",
        "INT_LCPLL_SDMDATA",
        "INT_RPLL_SDMDATA",
        "INT_TX_ASYNC_GEARBOX_EN",
        "INT_RPLLCLKOUTRATE",
        "RX_BUFFER_MODERX_DATA_DECODING"};
    for (const ruleDescription& rule : rulesOfFamily("SXB", "live")) {
        if (rule.kind == ruleKind::logic || rule.kind == ruleKind::copy) {
            for (const std::string& input : rule.inputs) {
                // User parameters have no point and don't begin as an intermediate does.
                if (input.find('.') == std::string::npos && input.rfind("INT_", 0) != 0) {
                    provided.insert(input);
                }
            }
        }
    }
    provided.insert(
        {"RX_PLL_VCO", "RX_PLL_REFCLK_FREQUENCY", "RX_PLL_POWERDOWN", "RX_PLL_REFCLK_SOURCE"});
    const std::vector<ruleDescription> rules = rulesOfFamily("SXB", "stable");
    for (const ruleDescription& rule : rules) {
        provided.insert(rule.outputs.begin(), rule.outputs.end());
    }
    std::set<std::string> missing;
    for (const ruleDescription& rule : rules) {
        for (const std::string& input : rule.inputs) {
            if (provided.count(input) == 0) {
                missing.insert(input);
            }
        }
    }
    EXPECT_THAT(missing, IsEmpty());
}

}  // namespace
}  // namespace lanecfg_test
