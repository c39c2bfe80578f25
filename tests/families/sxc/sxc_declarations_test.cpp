#include "sxc_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// The names of every rule that SXB does not have, or has in another way.

namespace lanecfg_test {
namespace {

std::vector<DeclaredNames> resetDeclarations() {
    std::vector<DeclaredNames> rows;
    for (const std::string channel : {"CH0", "CH1", "CH2", "CH3"}) {
        rows.push_back({"MST_RESET_CFG." + channel + "_ILO_RESET_EN",
                        {"LaneNum", "CHCLK_TXPI_CFG0.TXPI_BYPASS"}});
        rows.push_back({"MST_RESET_CFG." + channel + "_RX_LCPLL_RESET_EN",
                        {"LaneNum", "RX_PLL_TYPE", "INT_LCPLL_POWERDOWN"}});
    }
    return rows;
}

INSTANTIATE_TEST_SUITE_P(OfResets, SxcDeclaration, testing::ValuesIn(resetDeclarations()), nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfThePllSet, SxcDeclaration,
    testing::Values(DeclaredNames{"RESET_CFG.TX_PLLLOCK_SEL", {"TX_PLL_TYPE"}},
                    DeclaredNames{"RESET_CFG.RX_PLLLOCK_SEL", {"RX_PLL_TYPE"}},
                    DeclaredNames{"CHL_RSV_CFG2.EB128B130B_64_EN",
                                  {"RX_DATA_DECODING", "RX_PPM_OFFSET", "RX_SSC_PPM", "PCIE_ENABLE",
                                   "RX_INT_DATA_WIDTH"}},
                    // Neither the clock's source nor the PLLs.
                    DeclaredNames{"PIPE_CTRL_CFG7.TX_DA_BYP",
                                  {"TX_BUFFER_MODE", "TX_DATA_ENCODING", "TX_SYNCDONE_POSITION",
                                   "TX_USER_DATA_WIDTH", "TX_INT_DATA_WIDTH"}}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfTheReceiveSet, SxcDeclaration,
    testing::Values(DeclaredNames{"ADAPT_APT_CFG.divider_data",
                                  {"PCIE_ENABLE", "RX_LINE_RATE", "RX_INT_DATA_WIDTH"}},
                    // No silicon revision.
                    DeclaredNames{
                        "EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN",
                        {"RX_LINE_RATE", "INT_RX_OUTDIV", "RX_INT_DATA_WIDTH", "INT_RX_EQ_MODE",
                         "RX_SSC_PPM", "RX_PPM_OFFSET", "PCIE_ENABLE"},
                        {"EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN", "EYESCAN_CFG16.RXPMA_ADAP_WIDTH_OVRD",
                         "EYESCAN_CFG16.RXPMA_CDR_WIDTH_OVRD", "EYESCAN_CFG16.RXPMA_DES_WIDTH_OVRD",
                         "RX_CDR_CFG0.CDRENF", "RX_CDR_CFG0.SELMODE", "RX_CDR_CFG0.DATAWIDTH_OVR",
                         "RX_CDR_CFG0.LOWLATENCY_OVR", "RX_CDR_CFG0.D_SEL_Y", "RX_CDR_CFG0.D_SEL_P",
                         "RX_CDR_CFG0.Y_SEL_X", "RX_CDR_CFG0.X_SEL_Y", "RX_CDR_CFG2.PDIVFAC",
                         "RX_CDR_CFG2.PMULFAC", "RX_CDR_CFG2.FDIVFAC", "RX_CDR_CFG2.VOTEWX",
                         "RX_CDR_CFG2.VOTEWY"}},
                    // One name in place of the two that it is made of.
                    DeclaredNames{"RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MAX_LAT",
                                  {"RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MIN_LAT", "RX_CC_LEN_SEQ",
                                   "RX_CC_NUM_SEQRX_INT_DATA_WIDTH", "PCIE_ENABLE",
                                   "INT_PHY_REFCLK_MODE", "RX_BUFFER_MODE", "RX_DATA_DECODING"}}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    OfTheTransmitSet, SxcDeclaration,
    testing::Values(
        // No reference clock behind the output clock.
        DeclaredNames{
            "TX outclock report",
            {"PIPE_CTRL_CFG7.TXOUTCLKCTL", "TX_PCS_CFG0.TX_DATA_WIDTH", "DA_CFG.TX_DA_REFCLK_SEL",
             "PIPE_CTRL_CFG7.TX_DA_BYP", "CHCLK_TXPI_CFG0.TX_PROGCLK_SEL",
             "CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", "INT_TXOUTCLKDIV_FOR_PROGDIV_PATH",
             "INT_TXPROGDIV_SEL", "TX_LINE_RATE", "INT_LCPLL_REFCLKFREQ", "INT_RPLL_REFCLKFREQ",
             "INT_LCPLL_PLLCLKOUT", "INT_RPLL_PLLCLKOUT", "CHCLK_TXPI_CFG0.TXPI_BYPASS",
             "CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", "LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL",
             "RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL"},
            {"INT_TXOUTCLK_FREQ", "TX_PHALIGN_CFG0.DAPI_BUFG_DIV"}},
        DeclaredNames{"TX_PCS_CFG3.TX_DEDICATED_CCIX_CHICO_PATH_EN",
                      {"TX_BUFFER_MODE", "PCIE_ENABLE", "TX_INT_DATA_WIDTH"}}),
    nameOf);

}  // namespace
}  // namespace lanecfg_test
