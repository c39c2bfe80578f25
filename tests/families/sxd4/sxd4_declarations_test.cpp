#include <lanecfg/family_rules.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

/// What a rule declares, in order.
struct DeclaredRule {
    std::vector<std::string> outputs;
    std::vector<std::string> inputs;
};

const std::vector<std::string> lineOfReceiver{"TEST_LOOPBACK", "INS_LOSS_NYQ", "INT_RX_BAUD_RATE",
                                              "RX_PAM_SEL"};

const std::vector<DeclaredRule>& declaredRules() {
    static const std::vector<DeclaredRule> rules{
        // PLL
        {{"INT_TX_BAUD_RATE"}, {"TX_PAM_SEL", "TX_LINE_RATE"}},
        {{"INT_RX_BAUD_RATE"}, {"RX_PAM_SEL", "RX_LINE_RATE"}},
        {{"INT_PLL_VCO", "INT_PLL_REFCLK_FREQUENCY"},
         {"INT_TX_BAUD_RATE", "INT_RX_BAUD_RATE", "TXPROGDIV_FREQ_ENABLE", "RXPROGDIV_FREQ_ENABLE",
          "TXPROGDIV_FREQ_VAL", "RXPROGDIV_FREQ_VAL", "TX_REFCLK_FREQUENCY", "RX_REFCLK_FREQUENCY",
          "TX_ENABLE", "RX_ENABLE", "TX_PAM_SEL", "RX_PAM_SEL"}},
        {{"INT_LCPLL_PLLCLKOUT", "INT_LCPLL_REFCLKFREQ", "INT_LCPLLCLKOUTRATE"},
         {"INT_PLL_VCO", "INT_PLL_REFCLK_FREQUENCY"}},
        {{"INT_TX_OUTDIV", "INT_RX_OUTDIV"},
         {"INT_LCPLL_PLLCLKOUT", "INT_TX_BAUD_RATE", "INT_RX_BAUD_RATE", "TX_ENABLE", "RX_ENABLE"}},
        {{"INT_LCPLL_REF_DIV", "INT_LCPLL_FBDIV", "SDMDATA", "A_SDM_DATA_CFG0.A_SDM_DATA",
          "A_SDM_DATA_CFG1.A_SDM_DATA", "SDM_CFG0.BYPASS"},
         {"INT_LCPLL_PLLCLKOUT", "INT_LCPLL_REFCLKFREQ", "INT_LCPLLCLKOUTRATE"}},
        {{"A_CFG.A_PLLFBDIV"}, {"INT_LCPLL_FBDIV"}},
        {{"PLL_CFG1.LCPLL_REFCLK_DIV"}, {"INT_LCPLL_REF_DIV"}},
        {{"PLL_CFG0.LCPLLCLKOUT_RATE"}, {"INT_LCPLLCLKOUTRATE"}},
        // Error correction, clocks and resets
        {{"FEC_CFG0.CTL_RX0_MODE", "FEC_CFG0.CTL_RX1_MODE", "FEC_CFG3.FEC_RX0_BYPASS",
          "FEC_CFG3.FEC_RX1_BYPASS"},
         {"RX_FEC_MODE"}},
        {{"FEC_CFG0.CTL_TX0_MODE", "FEC_CFG0.CTL_TX1_MODE", "FEC_CFG3.FEC_TX0_BYPASS",
          "FEC_CFG3.FEC_TX1_BYPASS"},
         {"TX_FEC_MODE"}},
        {{"FEC_CFG1.FRM_LNGTH_SLICE0"}, {"RX_FEC_MODE"}},
        {{"FEC_CFG2.FRM_LNGTH_SLICE1"}, {"RX_FEC_MODE"}},
        {{"A_CH_CFG4.A_TXOUTCLKSEL", "TXOUTCLKSEL"}, {"TX_OUTCLK_SOURCE"}},
        {{"A_CH_CFG6.A_RXOUTCLKSEL", "RXOUTCLKSEL"}, {"RX_OUTCLK_SOURCE"}},
        {{"TXPCSRESETMASK", "TXPMARESETMASK"}, {"TX_FEC_MODE"}},
        {{"RXPCSRESETMASK", "RXPMARESETMASK"}, {"RX_FEC_MODE", "DSP_RESET_SEQ"}},
        // Receiver
        {{"RX_APT_CFG21B.NRZFORM"}, {"RX_PAM_SEL"}},
        {{"RX_APT_CTRL_CFG2.RX_NRZ"}, {"RX_PAM_SEL"}},
        {{"RX_CDR_CFG1B.NRZMODE"}, {"RX_PAM_SEL"}},
        {{"RX_CDR_CFG0A.CDRENF"}, {"RX_PPM_OFFSET"}},
        {{"RX_PCS_CFG0.RX_GRAY_ENDIAN"}, {"RX_GRAY_LITTLEENDIAN"}},
        {{"RX_PCS_CFG0.RX_GRAY_BYP_EN"}, {"RX_GRAY_BYP"}},
        {{"RX_PCS_CFG0.RX_PRECODE_ENDIAN"}, {"RX_PRECODE_LITTLEENDIAN"}},
        {{"RX_PCS_CFG0.RX_PRECODE_BYP_EN"}, {"RX_PRECODE_BYP"}},
        {{"RX_PCS_CFG0.RX_DATA_WIDTH"}, {"RX_USER_DATA_WIDTH", "RX_DATA_DECODING"}},
        {{"RX_PCS_CFG0.RX_INT_DATA_WIDTH"}, {"RX_INT_DATA_WIDTH"}},
        {{"RX_ANA_CFG0.CTLE_HF1_RCAL_ENB"}, lineOfReceiver},
        {{"RX_ANA_CFG0.CTLE_HF2_RCAL_ENB"}, lineOfReceiver},
        {{"RX_APT_CFG11A.RATIO_ADJ"}, lineOfReceiver},
        {{"RX_CTLE_CFG0.CTLE_BIAS_CTRL_CODE"}, lineOfReceiver},
        {{"RX_CTLE_CFG1.AGC_EXT_RL_CTRL"}, lineOfReceiver},
        {{"RX_CTLE_CFG1.CTLE_MF_EXT_RL_CTRL"}, lineOfReceiver},
        {{"RX_CTLE_CFG2.CTLE_EXT_RDEG_CTRL"}, lineOfReceiver},
        // Transmitter
        {{"TX_ANA_CFG1.CTL_PAM2_HIBT"}, {"TX_PAM_SEL"}},
        {{"TX_DRV_CFG4.PROGDIV_PDBV_DIV"}, {"TXPROGDIV_FREQ_ENABLE"}},
        {{"TX_PCS_CFG0.TX_GRAY_ENDIAN"}, {"TX_GRAY_LITTLEENDIAN"}},
        {{"TX_PCS_CFG0.TX_GRAY_BYP_EN"}, {"TX_GRAY_BYP"}},
        {{"TX_PCS_CFG0.TX_PRECODE_ENDIAN"}, {"TX_PRECODE_LITTLEENDIAN"}},
        {{"TX_PCS_CFG0.TX_PRECODE_BYP_EN"}, {"TX_PRECODE_BYP"}},
        {{"TX_PCS_CFG0.TX_DATA_WIDTH"}, {"TX_USER_DATA_WIDTH", "TX_DATA_ENCODING"}},
        {{"TX_PCS_CFG0.TX_INT_DATA_WIDTH"}, {"TX_INT_DATA_WIDTH"}}};
    return rules;
}

/// The family's logic rules that read something, by their first output.
std::map<std::string, ruleDescription> readingRules() {
    std::map<std::string, ruleDescription> rules;
    for (const ruleDescription& rule : rulesOfFamily("SXD4", "live")) {
        if (rule.kind == ruleKind::logic && !rule.inputs.empty()) {
            rules.emplace(rule.outputs.front(), rule);
        }
    }
    return rules;
}

TEST(Sxd4Declarations, HaveTheNamesInOrder) {
    const auto rules = readingRules();
    for (const DeclaredRule& row : declaredRules()) {
        const auto found = rules.find(row.outputs.front());
        ASSERT_NE(found, rules.end()) << row.outputs.front();
        EXPECT_EQ(found->second.outputs, row.outputs) << row.outputs.front();
        EXPECT_EQ(found->second.inputs, row.inputs) << row.outputs.front();
    }
}

TEST(Sxd4Declarations, EveryRuleThatReadsSomethingHasARow) {
    EXPECT_EQ(readingRules().size(), declaredRules().size());
}

TEST(Sxd4Declarations, ReceiveRulesComeFirstThenTransmitThenPll) {
    std::vector<std::string> sets;
    for (const ruleDescription& rule : rulesOfFamily("SXD4", "live")) {
        if (sets.empty() || sets.back() != rule.set) {
            sets.push_back(rule.set);
        }
    }
    EXPECT_EQ(sets, (std::vector<std::string>{"RX", "TX", "PLL"}));
}

}  // namespace
}  // namespace sable_lanecfg
