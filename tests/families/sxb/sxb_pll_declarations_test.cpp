#include "families/sxb/sxb_pll_rules.h"
#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

/// Rules that need more than a line.
std::vector<DeclaredNames> stepRows() {
    return {{"PLL input selection",
             {"TX_IN_USE",
              "TX_PLL_TYPE",
              "TX_LCPLL_PLLCLKOUT_FREQ_VECTOR",
              "TX_LCPLL_REFCLK_FREQUENCY",
              "TX_LCPLL_POWERDOWN",
              "TX_LCPLL_REFCLK_SOURCE",
              "TX_LCPLL_REFCLK_ID",
              "RX_LCPLL_PLLCLKOUT_FREQ_VECTOR",
              "RX_LCPLL_REFCLK_FREQUENCY",
              "RX_LCPLL_POWERDOWN",
              "RX_LCPLL_REFCLK_SOURCE",
              "RX_LCPLL_REFCLK_ID",
              "TX_RPLL_PLLCLKOUT_FREQ_VECTOR",
              "TX_RPLL_REFCLK_FREQUENCY",
              "TX_RPLL_POWERDOWN",
              "TX_RPLL_REFCLK_SOURCE",
              "TX_RPLL_REFCLK_ID",
              "RX_RPLL_PLLCLKOUT_FREQ_VECTOR",
              "RX_RPLL_REFCLK_FREQUENCY",
              "RX_RPLL_POWERDOWN",
              "RX_RPLL_REFCLK_SOURCE",
              "RX_RPLL_REFCLK_ID",
              "RX_IN_USE",
              "RX_PLL_TYPE",
              "MULTI_RATE"},
             {"INT_LCPLL_PLLCLKOUT_VECTOR", "INT_RPLL_PLLCLKOUT_VECTOR", "INT_RPLL_REFCLKFREQ",
              "INT_LCPLL_REFCLKFREQ", "INT_RPLL_POWERDOWN", "INT_LCPLL_POWERDOWN",
              "INT_LCPLL_REFCLK_SOURCE", "INT_RPLL_REFCLK_SOURCE", "INT_LCPLL_REFCLK_ID",
              "INT_RPLL_REFCLK_ID"}},
            {"PLL output dividers",
             {"INT_LCPLL_PLLCLKOUT", "INT_RPLL_PLLCLKOUT", "INT_LCPLLCLKOUTRATE"},
             {"INT_TX_OUTDIV", "INT_RX_OUTDIV"}},
            {"LCPLL solver",
             {"INT_LCPLL_PLLCLKOUT_VECTOR", "INT_LCPLL_REFCLKFREQ", "PCIE_ENABLE"},
             {"INT_LCPLL_REF_DIV", "INT_LCPLL_FBDIV", "INT_LCPLLCLKOUTRATE", "INT_LCPLL_PLLCLKOUT",
              "INT_LCPLL_SDMDATA"}},
            {"RPLL solver",
             {"RPLL_USED_FOR_SERIAL_DATA_RATE0", "TX_IN_USE", "RX_IN_USE",
              "INT_RPLL_PLLCLKOUT_VECTOR", "INT_RPLL_REFCLKFREQ", "INT_RPLLCLKOUTRATE"},
             {"INT_RPLL_REF_DIV", "INT_RPLL_FBDIV", "INT_RPLL_PLLCLKOUT", "INT_RPLL_SDMDATA",
              "INT_DOUBLER_EN"}},
            {"TX programmable divider search",
             {"TX_USER_DATA_WIDTH", "INT_RPLL_PLLCLKOUT", "INT_LCPLL_PLLCLKOUT",
              "TXPROGDIV_FREQ_ENABLE", "TXPROGDIV_FREQ_SOURCE", "TXPROGDIV_FREQ_VAL",
              "PIPE_CTRL_CFG7.TX_DA_BYP"},
             {"INT_TXPROGDIV_SEL", "INT_TXOUTCLKDIV_FOR_PROGDIV_PATH", "INT_FREQ_INTO_TX_DA"}},
            {"RX programmable divider search",
             {"RX_USER_DATA_WIDTH", "INT_RPLL_PLLCLKOUT", "INT_LCPLL_PLLCLKOUT",
              "RXPROGDIV_FREQ_ENABLE", "RXPROGDIV_FREQ_SOURCE", "RXPROGDIV_FREQ_VAL",
              "PIPE_CTRL_CFG7.RX_DA_BYP"},
             {"INT_RXPROGDIV_SEL", "INT_RXOUTCLKDIV_FOR_PROGDIV_PATH", "INT_FREQ_INTO_RX_DA"}},
            {"PIPE_CTRL_CFG1.OOB_PD", {"OOB_ENABLE"}, {"INT_OOB_EN", "PIPE_CTRL_CFG1.OOB_PD"}},
            {"PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK",
             {"PCIE_ENABLE", "TXPROGDIV_FREQ_VAL"},
             {"INT_BUFGTDIV_G1_PIPECLK", "PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK"}}};
}

std::vector<DeclaredNames> pllRows() {
    return {{"A_CFG1.A_HS0_LCPLLFBDIV", {"DUAL", "INT_LCPLL_FBDIV"}},
            {"A_CFG1.A_HS1_LCPLLFBDIV", {"DUAL", "INT_LCPLL_FBDIV"}},
            {"A_CFG1.A_HS0_RPLLFBDIV", {"DUAL", "INT_RPLL_FBDIV"}},
            {"A_CFG1.A_HS1_RPLLFBDIV", {"DUAL", "INT_RPLL_FBDIV"}},
            {"A_CFG2.A_HS0_LCPLLPD", {"DUAL", "INT_LCPLL_POWERDOWN"}},
            {"A_CFG2.A_HS0_LCPLLSDMDATA", {"DUAL", "INT_LCPLL_SDMDATA"}},
            {"A_CFG3.A_HS0_RPLLPD", {"DUAL", "INT_RPLL_POWERDOWN"}},
            {"A_CFG3.A_HS0_RPLLSDMDATA", {"DUAL", "INT_RPLL_SDMDATA"}},
            {"A_CFG4.A_HS1_LCPLLSDMDATA", {"DUAL", "INT_LCPLL_SDMDATA"}},
            {"A_CFG4.A_HS1_LCPLLPD", {"DUAL", "INT_LCPLL_POWERDOWN"}},
            {"A_CFG5.A_HS1_RPLLPD", {"DUAL", "INT_RPLL_POWERDOWN"}},
            {"A_CFG5.A_HS1_RPLLSDMDATA", {"DUAL", "INT_RPLL_SDMDATA"}},
            {"A_CFG0.A_BGRCALOVRD_EN", {"siliconRev"}},
            {"HSDIST_CFG.HSDIST_DIV2SEL", {"INT_LCPLLCLKOUTRATE"}},
            {"LCPLL_CFG0.LCPLL_PREDIV", {"INT_LCPLL_REF_DIV"}},
            {"LCPLL_CFG0.LCPLL_CP", {"INT_LCPLL_SDMDATA", "PCIE_ENABLE", "TX_LINE_RATE"}},
            {"LCPLL_CFG2.LCPLL_LFT_CP2", {"INT_LCPLL_SDMDATA"}},
            {"LCPLL_CFG2.LCPLL_LFT_RP", {"INT_LCPLL_SDMDATA"}},
            {"LCPLL_CFG2.LCPLL_LFT_CP1", {"PCIE_ENABLE", "TX_LINE_RATE"}},
            {"LCPLL_CFG2.LCPLL_LFT_RZ",
             {"PCIE_ENABLE", "TX_LINE_RATE", "INT_LCPLL_PLLCLKOUT", "INT_LCPLLCLKOUTRATE",
              "INT_LCPLL_FBDIV"},
             {}},
            {"LCPLL_LGC_CFG1.PLL_RESET_DLY_TIME", {"PCIE_ENABLE"}},
            {"LCPLL_LGC_CFG1.BYPASS", {"INT_LCPLL_SDMDATA"}},
            {"LCPLL_LGC_CFG2.REFCLK_ID", {"INT_LCPLL_REFCLK_ID"}},
            {"RPLL_CFG2.RPLL_DOUBLER_BAND_SEL", {"INT_DOUBLER_EN"}},
            {"RPLL_CFG2.RPLL_DOUBLER_REG_PDB", {"INT_DOUBLER_EN"}},
            {"RPLL_CFG2.RPLL_IF_CTRL_RZ",
             {"INT_RPLL_SDMDATA", "INT_RPLL_FBDIV", "INT_RPLL_PLLCLKOUT"},
             {}},
            {"RPLL_CFG0.RPLL_CP2CFG", {"INT_RPLL_SDMDATA", "INT_RPLL_PLLCLKOUT"}},
            {"RPLL_CFG0.RPLL_CP1CFG", {"INT_RPLL_SDMDATA"}},
            {"RPLL_CFG0.RPLL_CPEN", {"INT_RPLL_SDMDATA"}},
            {"RPLL_CFG0.RPLL_REFDIV", {"INT_RPLL_REF_DIV"}},
            {"RPLL_CFG1.RPLL_DOUBLER_BYPASSB", {"INT_DOUBLER_EN"}},
            {"RPLL_LGC_CFG1.BYPASS", {"INT_RPLL_SDMDATA"}},
            {"RPLL_LGC_CFG2.REFCLK_ID", {"INT_RPLL_REFCLK_ID"}},
            {"CFG4.ibg_vc_50u_rpll1_ctrl", {"INT_RPLL_SDMDATA", "INT_RPLL_PLLCLKOUT"}},
            {"LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL", {"INT_LCPLL_REFCLK_SOURCE"}},
            {"LCPLL_REFCLK_IPS.LCPLL_REFCLK_MAP2", {"DUAL"}},
            {"LCPLL_REFCLK_IPS.LCPLL_REFCLK_MAP1", {"DUAL"}},
            {"RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL", {"INT_RPLL_REFCLK_SOURCE"}},
            {"RPLL_REFCLK_IPS.RPLL_REFCLK_MAP2", {"DUAL"}},
            {"RPLL_REFCLK_IPS.RPLL_REFCLK_MAP1", {"DUAL"}}};
}

std::vector<DeclaredNames> outputClockRows() {
    return {{"PIPE_CTRL_CFG7.TX_DA_BYP",
             {"TX_BUFFER_MODE", "TX_OUTCLK_SOURCE", "TX_DATA_ENCODING", "TX_PLL_TYPE",
              "RX_PLL_TYPE", "TX_SYNCDONE_POSITION", "TX_USER_DATA_WIDTH", "TX_INT_DATA_WIDTH"},
             {}},
            {"PIPE_CTRL_CFG7.RX_DA_BYP",
             {"RX_BUFFER_MODE", "RX_DATA_DECODING", "RX_SYNCDONE_POSITION", "RX_USER_DATA_WIDTH",
              "RX_INT_DATA_WIDTH"},
             {}},
            {"PIPE_CTRL_CFG7.TXOUTCLKCTL", {"TX_OUTCLK_SOURCE"}},
            {"PIPE_CTRL_CFG7.RXOUTCLKCTL",
             {"RX_OUTCLK_SOURCE", "RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE"},
             {}},
            {"PIPE_CTRL_CFG7.TX_DABYP_DIVSEL",
             {"TX_DATA_ENCODING", "TX_USER_DATA_WIDTH", "TX_INT_DATA_WIDTH", "TX_OUTCLK_SOURCE",
              "INT_TXOUTCLKDIV_FOR_PROGDIV_PATH"},
             {}},
            {"PIPE_CTRL_CFG7.RX_DABYP_DIVSEL",
             {"RX_DATA_DECODING", "RX_USER_DATA_WIDTH", "RX_INT_DATA_WIDTH", "RX_OUTCLK_SOURCE",
              "INT_RXOUTCLKDIV_FOR_PROGDIV_PATH"},
             {}},
            {"PIPE_CTRL_CFG7.TX_DA_DIVSEL",
             {"TX_DATA_ENCODING", "TX_USER_DATA_WIDTH", "TX_INT_DATA_WIDTH", "TX_OUTCLK_SOURCE",
              "INT_TXOUTCLKDIV_FOR_PROGDIV_PATH", "TX_SYNCDONE_POSITION", "TX_BUFFER_BYPASS_MODE",
              "PIPE_CTRL_CFG7.TX_DA_BYP", "TX_MAINTAIN_MASTER"},
             {}},
            {"PIPE_CTRL_CFG7.RX_DA_DIVSEL",
             {"RX_DATA_DECODING", "RX_USER_DATA_WIDTH", "RX_INT_DATA_WIDTH", "RX_OUTCLK_SOURCE",
              "INT_RXOUTCLKDIV_FOR_PROGDIV_PATH", "RX_SYNCDONE_POSITION", "RX_BUFFER_BYPASS_MODE",
              "PIPE_CTRL_CFG7.RX_DA_BYP", "RX_MAINTAIN_MASTER"},
             {}},
            {"PIPE_CTRL_CFG7.RATE_USE_LCPLL_OUTCLK_ESM56",
             {"PCIE_ENABLE", "TXPROGDIV_FREQ_SOURCE"},
             {}},
            {"PIPE_CTRL_CFG7.RXPD_IND_CONTROL", {"PCIE_ENABLE"}},
            {"PIPE_CTRL_CFG3.TXOUT_DIV", {"INT_TX_OUTDIV"}},
            {"PIPE_CTRL_CFG3.RXOUT_DIV", {"INT_RX_OUTDIV"}},
            {"PIPE_CTRL_CFG8.TXPROGDIVSEL", {"INT_TXPROGDIV_SEL"}},
            {"PIPE_CTRL_CFG8.RXPROGDIVSEL", {"INT_RXPROGDIV_SEL"}},
            {"CHCLK_MISC_CFG.CHCLK_FBDIV_VAL", {"INT_RX_OUTDIV"}},
            {"DA_CFG.TX_DA_REFCLK_SEL", {"TX_PLL_TYPE"}},
            {"DA_CFG.RX_DA_REFCLK_SEL", {"RX_PLL_TYPE"}},
            {"DA_CFG.TX_DA_RANGE", {"INT_FREQ_INTO_TX_DA"}},
            {"DA_CFG.RX_DA_RANGE", {"INT_FREQ_INTO_RX_DA"}},
            {"DA_CFG.TX_DA_PWRDNB",
             {"PIPE_CTRL_CFG7.TX_DA_BYP", "TX_DATA_ENCODING", "TX_USER_DATA_WIDTH",
              "TX_INT_DATA_WIDTH"},
             {}},
            {"DA_CFG.RX_DA_PWRDNB",
             {"PIPE_CTRL_CFG7.RX_DA_BYP", "RX_DATA_DECODING", "RX_USER_DATA_WIDTH",
              "RX_INT_DATA_WIDTH"},
             {}},
            {"CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", {"TX_PLL_TYPE"}},
            {"CHCLK_TXPI_CFG0.TXPI_BAND_SEL",
             {"TX_PLL_TYPE", "INT_LCPLL_PLLCLKOUT", "INT_LCPLLCLKOUTRATE", "INT_RPLL_PLLCLKOUT"},
             {}},
            {"CHCLK_RXPI_CFG.RXPI_BAND_SEL",
             {"RX_PLL_TYPE", "INT_LCPLL_PLLCLKOUT", "INT_LCPLLCLKOUTRATE", "INT_RPLL_PLLCLKOUT"},
             {}},
            {"CHCLK_TXPI_CFG0.TX_PROGCLK_SEL",
             {"TX_PIPM_ENABLE", "TXPROGDIV_FREQ_ENABLE", "TXPROGDIV_FREQ_SOURCE"},
             {}},
            {"CHCLK_TXPI_CFG0.TXPI_BYPASS", {"TX_BUFFER_MODE", "TX_PIPM_ENABLE"}},
            {"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL",
             {"TX_IN_USE", "RX_IN_USE", "TX_PLL_TYPE", "RX_PLL_TYPE"},
             {}},
            {"CHCLK_ILO_CFG.RESERVED_BIT17",
             {"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", "INT_LCPLL_PLLCLKOUT", "INT_RPLL_PLLCLKOUT"},
             {}},
            {"RESET_CFG.ILORESET_PLLLOCK_SEL", {"CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL"}}};
}

std::vector<DeclaredNames> alignmentRows() {
    const std::string mode = "RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE";
    return {
        {"PIPE_CTRL_CFG9.TXSYNCDONE_DISTNORTH_SEL",
         {mode, "TX_SYNCDONE_POSITION", "RX_SYNCDONE_POSITION"}},
        {"PIPE_CTRL_CFG9.TXSYNCDONE_DISTSOUTH_SEL",
         {mode, "TX_SYNCDONE_POSITION", "RX_SYNCDONE_POSITION"}},
        {"PIPE_CTRL_CFG9.TXSYNCDONE_CONSUMPT_SEL",
         {mode, "TX_SYNCDONE_POSITION", "RX_SYNCDONE_POSITION", "TX_DATA_ENCODING",
          "TX_USER_DATA_WIDTH", "TX_INT_DATA_WIDTH"}},
        {"PIPE_CTRL_CFG9.RXSYNCDONE_DISTNORTH_SEL", {"RX_SYNCDONE_POSITION"}},
        {"PIPE_CTRL_CFG9.RXSYNCDONE_DISTSOUTH_SEL", {"RX_SYNCDONE_POSITION"}},
        {"PIPE_CTRL_CFG9.RXSYNCDONE_CONSUMPT_SEL",
         {"RX_SYNCDONE_POSITION", "RX_DATA_DECODING", "RX_USER_DATA_WIDTH", "RX_INT_DATA_WIDTH"}},
        {"PIPE_CTRL_CFG9.TXSYNCDONE_DIST_IN_SEL", {mode}},
        {"PIPE_CTRL_CFG1.RPLL_EN",
         {mode, "TX_SYNCDONE_POSITION", "RX_SYNCDONE_POSITION", "LaneNum",
          "TX_CH0_SYNCDONE_POSITION", "TX_CH1_SYNCDONE_POSITION", "TX_CH2_SYNCDONE_POSITION",
          "TX_CH3_SYNCDONE_POSITION", "RX_CH0_SYNCDONE_POSITION", "RX_CH1_SYNCDONE_POSITION",
          "RX_CH2_SYNCDONE_POSITION", "RX_CH3_SYNCDONE_POSITION", "PCIE_ENABLE", "XPU_MODE"}},
        {"PIPE_CTRL_CFG0.TX_PCSCLK_SEL",
         {"TX_DATA_ENCODING", "TX_INT_DATA_WIDTH", "TX_USER_DATA_WIDTH", "TX_PIPE_POSITION"}},
        {"PIPE_CTRL_CFG0.RX_PCSCLK_SEL",
         {"RX_DATA_DECODING", "RX_INT_DATA_WIDTH", "RX_USER_DATA_WIDTH", "RX_PIPE_POSITION"}},
        {"PIPE_CTRL_CFG6.PIPE_DISTNORTH_SEL", {"TX_PIPE_POSITION"}},
        {"PIPE_CTRL_CFG6.PIPE_DISTSOUTH_SEL", {"TX_PIPE_POSITION"}},
        {"PIPE_CTRL_CFG6.PIPE_CONSUMPT_SEL", {"TX_PIPE_POSITION"}},
        {"PIPE_CTRL_CFG1.TXSYNC_EN", {"TX_BUFFER_MODE"}},
        {"PIPE_CTRL_CFG1.RXSYNC_EN", {"RX_BUFFER_MODE"}},
        {"PIPE_CTRL_CFG10.PIPE_TXSYNC_RST_MASK", {"TX_BUFFER_MODE"}},
        {"PIPE_CTRL_CFG10.PIPE_RXSYNC_RST_MASK", {"RX_BUFFER_MODE"}},
        {"PIPE_CTRL_CFG10.PIPE_TXDAPI_RST_MASK", {"TX_BUFFER_MODE"}},
        {"FABRIC_INTF_CFG3.A_TX_PHALIGN_RESETMASK", {"TX_BUFFER_MODE"}},
        {"FABRIC_INTF_CFG3.A_RX_PHALIGN_RESETMASK", {"RX_BUFFER_MODE"}}};
}

std::vector<DeclaredNames> pcieRows() {
    return {{"PIPE_CTRL_CFG0.PCIE_MODE", {"PCIE_ENABLE"}},
            {"PIPE_CTRL_CFG8.CDR_CTRL_EN", {"PCIE_ENABLE"}},
            {"PIPE_CTRL_CFG8.PMA_OOB_CLKDIV_VAL", {"PCIE_ENABLE"}},
            {"PIPE_CTRL_CFG8.CDR_CTRL_HOLDCDR_RX_PHALIGN", {"PCIE_ENABLE", "RX_BUFFER_MODE"}},
            {"PIPE_CTRL_CFG8.CDR_CTRL_REFCLK_MODE", {"PCIE_ENABLE", "RX_PPM_OFFSET"}},
            {"PIPE_CTRL_CFG1.UCORE_PLL_ILO_CAL_EN", {"PCIE_ENABLE", "MAX_RATE"}},
            {"PIPE_CTRL_CFG4.RX_RATE_EN", {"PCIE_ENABLE", "LaneTxRxMode"}},
            {"PIPE_CTRL_CFG5.BUFGTDIV_G2_PIPECLK", {"PCIE_ENABLE", "TXPROGDIV_FREQ_VAL"}},
            {"PIPE_CTRL_CFG5.BUFGTDIV_G3_PIPECLK",
             {"PCIE_ENABLE", "TXPROGDIV_FREQ_VAL", "GEN3_INT_DATA_WIDTH"},
             {}},
            {"PIPE_CTRL_CFG5.BUFGTDIV_G4_PIPECLK", {"PCIE_ENABLE", "TXPROGDIV_FREQ_VAL"}},
            {"PIPE_CTRL_CFG5.BUFGTDIV_USERCLK",
             {"PCIE_ENABLE", "TXPROGDIV_FREQ_VAL", "PCIE_USERCLK_FREQ"},
             {}},
            {"PIPE_CTRL_CFG5.BUFGTDIV_USERCLK2",
             {"PCIE_ENABLE", "TXPROGDIV_FREQ_VAL", "PCIE_USERCLK2_FREQ"},
             {}},
            {"PIPE_CTRL_CFG6.BUFGTDIV_PIPECLK_OVRD",
             {"INT_BUFGTDIV_G1_PIPECLK", "TXPROGDIV_FREQ_VAL"},
             {}},
            {"PIPE_CTRL_CFG6.RXOOB_CLKDIV_VAL",
             {"INT_OOB_EN", "RX_PLL_TYPE", "RX_LCPLL_REFCLK_FREQUENCY", "RX_RPLL_REFCLK_FREQUENCY"},
             {}},
            {"PIPE_CTRL_CFG0.RX_ELECIDLE_MODE", {"INT_OOB_EN"}},
            {"FABRIC_INTF_CFG0.PERSTB_PIN_EN", {"XPU_MODE", "PCIE_ENABLE"}},
            {"PIPE_CTRL_CFG1.PIPE_FUND_RST_EN", {"XPU_MODE", "PCIE_ENABLE"}},
            {"FABRIC_INTF_CFG0.USRRDY_PIN_EN", {"XPU_MODE", "PCIE_ENABLE"}},
            {"FABRIC_INTF_CFG2.A_TXUSRRDY", {"XPU_MODE", "PCIE_ENABLE"}},
            {"FABRIC_INTF_CFG2.A_RXUSRRDY", {"XPU_MODE", "PCIE_ENABLE"}},
            {"PIPE_CTRL_CFG3.PIPE_FUND_RST_UB_BYPASS", {"XPU_MODE", "PCIE_ENABLE"}},
            {"PIN_CFG0.UCORE_FABRIC_PIN_EN", {"XPU_MODE", "PCIE_ENABLE"}},
            {"PIN_CFG0.GTREFCLK0_PD_PIN_EN", {"XPU_MODE"}},
            {"PIN_CFG0.GTREFCLK1_PD_PIN_EN", {"XPU_MODE"}},
            {"FABRIC_INTF_CFG0.APT_PIN_EN", {"PCIE_ENABLE"}},
            {"FABRIC_INTF_CFG1.A_RXPD", {"RX_IN_USE"}},
            {"FABRIC_INTF_CFG3.A_TXPD", {"TX_IN_USE"}},
            {"FABRIC_INTF_CFG1.A_RXLPMEN", {"INT_RX_EQ_MODE"}}};
}

/// The reset enables of all channels read the same.
std::vector<DeclaredNames> resetRows() {
    std::vector<DeclaredNames> rows;
    for (const std::string channel : {"CH0", "CH1", "CH2", "CH3"}) {
        const std::vector<DeclaredNames> ofChannel{
            {"MST_RESET_CFG." + channel + "_LCPLL_RESET_EN",
             {"LaneNum", "TX_PLL_TYPE", "INT_LCPLL_POWERDOWN"},
             {}},
            {"MST_RESET_CFG." + channel + "_RPLL_RESET_EN",
             {"LaneNum", "TX_PLL_TYPE", "INT_RPLL_POWERDOWN"},
             {}},
            {"MST_RESET_CFG." + channel + "_RX_LCPLL_RESET_EN",
             {"LaneNum", "RX_PLL_TYPE", "RX_IN_USE", "INT_LCPLL_POWERDOWN"},
             {}},
            {"CTRL_RSV_CFG0." + channel + "_RX_RPLL_RESET_EN",
             {"LaneNum", "RX_PLL_TYPE", "INT_RPLL_POWERDOWN"},
             {}},
            {"MST_RESET_CFG." + channel + "_TX_PROGDIV_RESET_EN",
             {"LaneNum", "TX_OUTCLK_SOURCE"},
             {}},
            {"MST_RESET_CFG." + channel + "_RX_PROGDIV_RESET_EN",
             {"LaneNum", "RX_OUTCLK_SOURCE"},
             {}}};
        rows.insert(rows.end(), ofChannel.begin(), ofChannel.end());
    }
    return rows;
}

std::vector<DeclaredNames> allRows() {
    std::vector<DeclaredNames> rows;
    for (const auto& part :
         {stepRows(), pllRows(), outputClockRows(), alignmentRows(), pcieRows(), resetRows()}) {
        rows.insert(rows.end(), part.begin(), part.end());
    }
    return rows;
}

INSTANTIATE_TEST_SUITE_P(Pll, SxbLaneDeclaration, testing::ValuesIn(allRows()), nameOf);

TEST(SxbPllDeclarations, AreThoseOf149RulesEachOnce) {
    const LaneEngine engine;
    EXPECT_EQ(ruleNames(allRows()).size(), 149U);
    EXPECT_EQ(ruleNames(allRows()), ruleNames(sable_lanecfg::sxbPllLogicRules(engine)));
}

}  // namespace
}  // namespace lanecfg_test
