#include "families/common/catalogue_differences.h"
#include "families/frozen/sxb_stable_catalogue.h"
#include "families/sxb/sxb_pll_catalogue.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace sable_lanecfg {

namespace {

// What only the current rules have.
constexpr removedRule removedRules[] = {
    {"LCPLL_CFG0", "LCPLL_VREG_FILTER_EN"},
    {"LCPLL_CFG0", "LCPLL_VREG_FILTER_CTRL"},
    {"LCPLL_CFG2", "LCPLL_LFT_CZ"},
    {"LCPLL_CFG2", "LCPLL_LFT_CP2"},
    {"LCPLL_CFG2", "LCPLL_LFT_RP"},
    {"LCPLL_CFG2", "LCPLL_LFT_CP1"},
    {"LCPLL_CFG2", "LCPLL_LFT_RZ"},
    {"LCPLL_CFG2", "LCPLL_SIGN"},
    {"LCPLL_CFG2", "LCPLL_RCTRL"},
    {"LCPLL_CFG2", "SEL_RCAL"},
    {"RPLL_CFG2", "RPLL_DOUBLER_BAND_SEL"},
    {"RPLL_CFG2", "RPLL_DOUBLER_FBK_RES_SEL"},
    {"RPLL_CFG2", "RPLL_DOUBLER_REG_PDB"},
    {"RPLL_CFG2", "RPLL_DOUBLER_VREG_CT"},
    {"RPLL_CFG2", "RPLL_TC_LOOP_CUR"},
    {"RPLL_CFG2", "RPLL_TC_LOOP_CTRL"},
    {"RPLL_CFG2", "RPLL_SAP_EN_IBG_VCDL"},
    {"RPLL_CFG2", "RPLL_SAP_EN_IBG_VREG"},
    {"RPLL_CFG2", "RPLL_DIV2OPT"},
    {"RPLL_CFG2", "RPLL_IF_CTRL_RP_ENB"},
    {"A_CFG0", "A_GTREFCLK0_PDB"},
    {"A_CFG0", "A_GTREFCLK1_PDB"},
    {"A_CFG0", "MC_A_DRP_RST"},
    {"LCPLL_CFG1", "LCPLL_VCTRL2_EN"},
    {"LCPLL_CFG1", "LCPLL_TC_LOOP_CTRL"},
    {"LCPLL_CFG1", "LCPLL_TC_LOOP_CUR"},
    {"LCPLL_LGC_CFG0", "LCPLL_VCTRL_LATCH_BYPASS"},
    {"LCPLL_LGC_CFG0", "LCPLL_BYP_LOCKDETECT"},
    {"LCPLL_LGC_CFG2", "REFCLK_ID"},
    {"RPLL_CFG0", "RPLL_VREG_EN"},
    {"RPLL_CFG0", "RPLL_CP2CFG"},
    {"RPLL_CFG0", "RPLL_CP1CFG"},
    {"RPLL_CFG0", "RPLL_CZCFG"},
    {"RPLL_CFG0", "RPLL_BYPASSB_SEL"},
    {"RPLL_CFG1", "RPLL_VREG_FILTER_EN"},
    {"RPLL_CFG1", "RPLL_DOUBLER_BYPASSB"},
    {"RPLL_LGC_CFG0", "RPLL_VCTRL_LATCH_BYPASS"},
    {"RPLL_LGC_CFG0", "RPLL_BYP_LOCKDETECT"},
    {"RPLL_LGC_CFG2", "REFCLK_ID"},
    {"CFG0", "ibg_ic_50u_rpll_ctrl"},
    {"CFG0", "ibg_ic_50u_lcpll_ctrl"},
    {"CFG0", "ibg_ic_50u_hsclk_ctrl"},
    {"CFG0", "ibg_ic_300u_lcpll_ctrl"},
    {"CFG0", {}},
    {"CFG1", "BS_SAP_EN"},
    {"CFG1", "RCAL_APROBE"},
    {"CFG1", "SARC_ENB"},
    {"CFG1", "RCALSAP_TESTEN"},
    {"CFG1", "GT_POR_BYPASS"},
    {"CFG1", "RCAL_CTRL_FROM_BOT"},
    {"CFG1", "BS_BYPASS"},
    {"CFG1", {}},
    {"CFG2", "ibg_ic_50u_tx_ctrl"},
    {"CFG2", "ibg_ic_50u_lcpll_op_ctrl"},
    {"CFG2", "ibg100u_ic_rcal_ctrl"},
    {"CFG2", "ibg_ic_50u_refclkrx_ctrl"},
    {"CFG2", "ibg_ic_50u_temp_comp_ctrl"},
    {"CFG2", "ibg_ic_200u_rx_ctrl"},
    {"CFG2", "ibg_ic_50u_rx_ctrl_msb"},
    {"CFG2", "ibg_ic_50u_refclktx_ctrl"},
    {"CFG2", "ibg_ic_50u_chclk_ctrl"},
    {"CFG2", {}},
    {"CFG3", "bs_vbg_cntl"},
    {"CFG3", "avtt_sense_sel"},
    {"CFG3", "meas_ic_en"},
    {"CFG3", "div2_en"},
    {"CFG3", "avcc_sense_sel"},
    {"CFG3", {}},
    {"CFG4", "ibg_vc_50u_rpll0_ctrl"},
    {"CFG4", "ibg_vc_50u_lcpll_ctrl"},
    {"CFG4", "ibg_vc_50u_rpll1_ctrl"},
    {"CFG4", "ibg_vc_200u_rpll_ctrl"},
    {"CFG4", "ibg100u_vc_rcal_ctrl"},
    {"CFG4", "ibg_vc_200u_lcpll_ctrl"},
    {"CFG4", "ibg_vc_50u_tx_ctrl"},
    {"CFG4", "ibg_vc_50u_refclktx_ctrl"},
    {"CFG4", "ibg50u_vc_rcal_ctrl"},
    {"CFG4", "ibg_vc_50u_rx_ctrl"},
    {"CFG4", "ibg_vc_50u_refclkrx_ctrl"},
    {"CFG4", {}},
    {"CFG5", "rcalbg_ctrl_ota_pdx"},
    {"CFG5", "rcalbg_ctrl_ota_pdb"},
    {"CFG5", "temp_sense_cfg"},
    {"CFG5", "rcalbg_pll_temp_ctrl"},
    {"CFG5", {}},
    {"PIPE_CTRL_CFG7", "RATE_USE_LCPLL_OUTCLK_ESM56"},
    {"PIPE_CTRL_CFG7", "RXPD_IND_CONTROL"},
    {"PIPE_CTRL_CFG0", "PIPE_TXELECIDLE_OVRD_EN"},
    {"PIPE_CTRL_CFG0", "PIPE_TXELECIDLE_OVRD"},
    {"PIPE_CTRL_CFG10", "RATE_CHANGE_DURING_RST_EN"},
    {"PIPE_CTRL_CFG2", "PMA_SIGDET_SEL"},
    {"PIPE_CTRL_CFG5", "BUFGT_ESM_DELAY_CE_DIS"},
    {"PIPE_CTRL_CFG6", "PIPE_DIST_UB_DONE_SHARE_EN"},
    {"RESET_CFG", "EB8B10B_RESET_ON_RXVALID"},
    {"POR_CFG", "VCTRL_BYP_RPLL"},
    {"POR_CFG", "LCPLL_TSENSE_BYP"},
    {"POR_CFG", "VCTRL_BYP_LCPLL"},
    {"POR_CFG", "RPLL_TSENSE_BYP"},
    {"POR_CFG", "GTPWRGOOD_DLY_TIME"},
    {"PIN_CFG0", "DRP_RESET_PIN_EN"},
    {"CHCLK_ILO_CFG", "RESERVED_BIT17"},
    {"CHCLK_ILO_CFG", "RESERVED_BIT15"},
    {"CHCLK_MISC_CFG", "CHCLK_IGNORE_FINE_OFFSET"},
    {"CHCLK_MISC_CFG", "CHCLK_UNLOCKCTRL"},
    {"CHCLK_MISC_CFG", "CHCLK_FINE_SWEEP"},
    {"CHCLK_RXCAL_CFG", "skip_rxdcd_d"},
    {"CHCLK_RXCAL_CFG", "skip_rxdcd_x"},
    {"CHCLK_RXCAL_CFG", "skip_rxdcd_s"},
    {"CHCLK_RXCAL_CFG", "skip_ctle_cm"},
    {"CHCLK_RXCAL_CFG", "skip_agc1_cm"},
    {"CHCLK_RXCAL_CFG", "skip_agc2_cm"},
    {"CHCLK_RXCAL_CFG", "skip_rxpad_os"},
    {"CHCLK_RXCAL_CFG", "flip_dir_any"},
    {"CHCLK_RXCAL_CFG", "tos_sel"},
    {"CHCLK_RXCAL_CFG", "teval_sel"},
    {"CHCLK_RXCAL_CFG", "tcyc_per_cal"},
    {"CHCLK_RXCAL_CFG", "clkdiv_sel"},
    {"CHCLK_RXCAL_CFG", "auto_mode"},
    {"CHCLK_RXCAL_CFG", "twait_sel"},
    {"CHCLK_RXCAL_CFG", "rx_cal_pd"},
    {"CHCLK_RXCAL_CFG", "override_code_idx"},
    {"CHCLK_RXCAL_CFG", "dmon_sel"},
    {"CHCLK_RXCAL_CFG", "dmon_en"},
    {"CHCLK_RXCAL_CFG", "hyst_mode"},
    {"CHCLK_RXCAL_CFG1", "override_code"},
    {"CHCLK_RXCAL_CFG1", "override_en"},
    {"CHCLK_TXCAL_CFG", "CHCLK_TXCAL_OVWREN"},
    {"CHCLK_TXCAL_CFG", "CHCLK_TXCAL_EXHOLD"},
    {"CHCLK_TXPI_CFG0", "TXPI_FORCE_ON"},
    {"CHL_RSV_CFG0", "PD_TRANS_TIME_CPMIN"},
    {"CHL_RSV_CFG0", "TXPOWERDOWN_UCORE_CTRL_EN"},
    {"CHL_RSV_CFG0", "UBALZE_GPI_OUT3_SEL"},
    {"CHL_RSV_CFG0", "UB_REPROG_DONE_TXPD_BYPASS"},
    {"CHL_RSV_CFG0", "RXTERMINATION_OVRD"},
    {"CHL_RSV_CFG0", "EB8B10B_RESET_RXVALID_DELAY"},
    {"CHL_RSV_CFG0", "RXPOWERDOWN_UCORE_CTRL_EN"},
    {"CHL_RSV_CFG0", "UB_REPROG_DONE_RXPD_BYPASS"},
    {"CHL_RSV_CFG0", "UBALZE_GPI_OUT1_SEL"},
    {"CTRL_RSV_CFG0", "VCTRL2_RPLL"},
    {"CTRL_RSV_CFG0", "MST_RST_ON_PCIERESET"},
    {"CTRL_RSV_CFG0", "VCTRL3_RPLL"},
    {"CTRL_RSV_CFG0", "UB_PCIE_RESET_EN"},
    {"CTRL_RSV_CFG0", "CH1_RX_RPLL_RESET_EN"},
    {"CTRL_RSV_CFG0", "CH2_RX_RPLL_RESET_EN"},
    {"CTRL_RSV_CFG0", "CH0_RX_RPLL_RESET_EN"},
    {"CTRL_RSV_CFG0", "CH3_RX_RPLL_RESET_EN"},
    {"CTRL_RSV_CFG0", "RXMARGIN_RSTSEL"},
    {"CTRL_RSV_CFG1", "VCTRL1_RPLL"},
    {"CTRL_RSV_CFG1", "VCTRL0_RPLL"},
    {"CTRL_RSV_CFG1", "VCTRL2_LCPLL"},
    {"CTRL_RSV_CFG1", "VCTRL1_LCPLL"},
    {"CTRL_RSV_CFG1", "VCTRL3_LCPLL"},
    {"CTRL_RSV_CFG1", "VCTRL0_LCPLL"},
    {"MST_RESET_CFG", "CH0_RX_LCPLL_RESET_EN"},
    {"MST_RESET_CFG", "CH1_RX_LCPLL_RESET_EN"},
    {"MST_RESET_CFG", "CH2_RX_LCPLL_RESET_EN"},
    {"MST_RESET_CFG", "CH3_RX_LCPLL_RESET_EN"},
    {"LCPLL_REFCLK_IPS", "LCPLL_IPS_PIN_EN"},
    {"LCPLL_REFCLK_IPS", "LCPLL_IPS_REFCLK_SEL"},
    {"LCPLL_REFCLK_IPS", "LCPLL_REFCLK_MAP7"},
    {"LCPLL_REFCLK_IPS", "LCPLL_REFCLK_MAP6"},
    {"LCPLL_REFCLK_IPS", "LCPLL_REFCLK_MAP5"},
    {"LCPLL_REFCLK_IPS", "LCPLL_REFCLK_MAP4"},
    {"LCPLL_REFCLK_IPS", "LCPLL_REFCLK_MAP3"},
    {"LCPLL_REFCLK_IPS", "LCPLL_REFCLK_MAP2"},
    {"LCPLL_REFCLK_IPS", "LCPLL_REFCLK_MAP1"},
    {"LCPLL_REFCLK_IPS", "LCPLL_REFCLK_MAP0"},
    {"LCPLL_REFCLK_IPS", {}},
    {"RPLL_REFCLK_IPS", "RPLL_IPS_PIN_EN"},
    {"RPLL_REFCLK_IPS", "RPLL_IPS_REFCLK_SEL"},
    {"RPLL_REFCLK_IPS", "RPLL_REFCLK_MAP7"},
    {"RPLL_REFCLK_IPS", "RPLL_REFCLK_MAP6"},
    {"RPLL_REFCLK_IPS", "RPLL_REFCLK_MAP5"},
    {"RPLL_REFCLK_IPS", "RPLL_REFCLK_MAP4"},
    {"RPLL_REFCLK_IPS", "RPLL_REFCLK_MAP3"},
    {"RPLL_REFCLK_IPS", "RPLL_REFCLK_MAP2"},
    {"RPLL_REFCLK_IPS", "RPLL_REFCLK_MAP1"},
    {"RPLL_REFCLK_IPS", "RPLL_REFCLK_MAP0"},
    {"RPLL_REFCLK_IPS", {}},
};

// What only the frozen rules have, beside the words that `addRegisters` enters.
constexpr fieldOfRegister addedFields[] = {
    {"LCPLL_CFG0", constant("LCPLL_VREG_GILTER_CTRL", 0)},
    {"LCPLL_CFG0", constant("LCPLL_VCTRL_RESET", 9)},
    {"LCPLL_CFG0", constant("LCPLL_VREG_GILTER_BYPASS", 0)},
    {"LCPLL_CFG2", constant("LCPLL_LPF", 0)},
    {"RPLL_CFG2", constant("RPLL_BAND_SEL", 0)},
    {"RPLL_CFG2", constant("RPLL_FBK_RES_SEL", 0)},
    {"RPLL_CFG2", constant("RPLL_IF_CTRL_RP_EN", 0)},
    {"A_CFG0", constant("A_GTREFCLK0_PD", 0)},
    {"A_CFG0", constant("A_GTREFCLK1_PD", 0)},
    {"LCPLL_CFG1", constant("LCPLL_RCTRL", 0)},
    {"LCPLL_CFG1", constant("LCPLL_AVCC_EN", 0)},
    {"RPLL_CFG0", constant("RPLL_ENPFD", 0)},
    {"RPLL_CFG0", constant("RPLL_IF_CTRL_CP1", 0)},
    {"RPLL_CFG0", constant("RPLL_IF_CTRL_CP2", 0)},
    {"RPLL_CFG0", constant("RPLL_IF_CTRL_CZ", 0)},
    {"RPLL_CFG0", constant("RPLL_RSTSEL", 0)},
    {"RPLL_CFG1", constant("RPLL_VREG_FILTER_BYPASS", 0)},
    {"RCALBG_TOP_CFG0", constant("RCAL_APROBE", 0)},
    {"RCALBG_TOP_CFG0", constant("RCALSAP_TESTEN", 0)},
    {"RESET_CFG", constant("EB8B10B_RESET_ON_RATE_CHANGE", 1)},
    {"RESET_CFG", constant("PCIE_MST_RESET_EN", 0)},
    {"RESET_TIME_CFG0", constant("PRE_PI_RESET_TIME", 1)},
    {"POR_CFG", constant("GT_POR_BYPASS", 0)},
    {"PIN_CFG0", constant("RCAL_PIN_EN", 0)},
    {"PIN_CFG0", constant("DBG_NPICLK_SEL", 0)},
    {"CHCLK_MISC_CFG", constant("CHCLK_FBLOCKDET", 0)},
    {"CHCLK_MISC_CFG", constant("CHCLK_REFLOCKDET", 0)},
    {"CHCLK_RXCAL_CFG", constant("RXCAL_CFG", 0)},
    {"MEMCELLX0C12", constant("HS0_LCPLL_IPS_PIN_EN", 0)},
    {"MEMCELLX0C12", logic("HS0_LCPLL_IPS_REFCLK_SEL")},
    {"MEMCELLX0C12", constant("HS0_LCPLL_REFCLK_MAP7", 7)},
    {"MEMCELLX0C12", constant("HS0_LCPLL_REFCLK_MAP6", 6)},
    {"MEMCELLX0C12", constant("HS0_LCPLL_REFCLK_MAP5", 5)},
    {"MEMCELLX0C12", constant("HS0_LCPLL_REFCLK_MAP4", 4)},
    {"MEMCELLX0C12", constant("HS0_LCPLL_REFCLK_MAP3", 3)},
    {"MEMCELLX0C12", constant("HS0_LCPLL_REFCLK_MAP2", 2)},
    {"MEMCELLX0C12", constant("HS0_LCPLL_REFCLK_MAP1", 1)},
    {"MEMCELLX0C12", constant("HS0_LCPLL_REFCLK_MAP0", 0)},
    {"MEMCELLX0F12", constant("HS1_LCPLL_IPS_PIN_EN", 0)},
    {"MEMCELLX0F12", logic("HS1_LCPLL_IPS_REFCLK_SEL")},
    {"MEMCELLX0F12", constant("HS1_LCPLL_REFCLK_MAP7", 7)},
    {"MEMCELLX0F12", constant("HS1_LCPLL_REFCLK_MAP6", 6)},
    {"MEMCELLX0F12", constant("HS1_LCPLL_REFCLK_MAP5", 5)},
    {"MEMCELLX0F12", constant("HS1_LCPLL_REFCLK_MAP4", 4)},
    {"MEMCELLX0F12", constant("HS1_LCPLL_REFCLK_MAP3", 3)},
    {"MEMCELLX0F12", constant("HS1_LCPLL_REFCLK_MAP2", 2)},
    {"MEMCELLX0F12", constant("HS1_LCPLL_REFCLK_MAP1", 1)},
    {"MEMCELLX0F12", constant("HS1_LCPLL_REFCLK_MAP0", 0)},
    {"MEMCELLX0C13", constant("HS0_RPLL_IPS_PIN_EN", 0)},
    {"MEMCELLX0C13", logic("HS0_RPLL_IPS_REFCLK_SEL")},
    {"MEMCELLX0C13", constant("HS0_RPLL_REFCLK_MAP7", 7)},
    {"MEMCELLX0C13", constant("HS0_RPLL_REFCLK_MAP6", 6)},
    {"MEMCELLX0C13", constant("HS0_RPLL_REFCLK_MAP5", 5)},
    {"MEMCELLX0C13", constant("HS0_RPLL_REFCLK_MAP4", 4)},
    {"MEMCELLX0C13", constant("HS0_RPLL_REFCLK_MAP3", 3)},
    {"MEMCELLX0C13", constant("HS0_RPLL_REFCLK_MAP2", 2)},
    {"MEMCELLX0C13", constant("HS0_RPLL_REFCLK_MAP1", 1)},
    {"MEMCELLX0C13", constant("HS0_RPLL_REFCLK_MAP0", 0)},
    {"MEMCELLX0F13", constant("HS1_RPLL_IPS_PIN_EN", 0)},
    {"MEMCELLX0F13", logic("HS1_RPLL_IPS_REFCLK_SEL")},
    {"MEMCELLX0F13", constant("HS1_RPLL_REFCLK_MAP7", 7)},
    {"MEMCELLX0F13", constant("HS1_RPLL_REFCLK_MAP6", 6)},
    {"MEMCELLX0F13", constant("HS1_RPLL_REFCLK_MAP5", 5)},
    {"MEMCELLX0F13", constant("HS1_RPLL_REFCLK_MAP4", 4)},
    {"MEMCELLX0F13", constant("HS1_RPLL_REFCLK_MAP3", 3)},
    {"MEMCELLX0F13", constant("HS1_RPLL_REFCLK_MAP2", 2)},
    {"MEMCELLX0F13", constant("HS1_RPLL_REFCLK_MAP1", 1)},
    {"MEMCELLX0F13", constant("HS1_RPLL_REFCLK_MAP0", 0)},
};

// Constants of both: the current value, the frozen one.
constexpr changedConstant changedConstants[] = {
    {"HSDIST_CFG", "HSDIST_CTRL", 6, 0},
    {"HSDIST_CFG", "HSDIST_VREFSEL", 3, 0},
    {"LCPLL_CFG0", "LCPLL_VCCSEL", 4, 0},
    {"LCPLL_CFG2", "LCPLL_REFCLK_EN", 0, 1},
    {"LCPLL_CFG2", "LCPLL_FBCLK_EN", 0, 1},
    {"RPLL_CFG2", "RPLL_IF_CTRL_RP", 7, 0},
    {"A_CFG2", "A_HS0_LCPLLRESETMASK", 3, 0},
    {"A_CFG3", "A_HS0_RPLLRESETMASK", 3, 0},
    {"A_CFG4", "A_HS1_LCPLLRESETMASK", 3, 0},
    {"A_CFG5", "A_HS1_RPLLRESETMASK", 3, 0},
    {"A_CFG0", "A_BGRCALOVRD", 16, 31},
    {"A_CFG0", "A_UB_ENABLE", 1, 0},
    {"LCPLL_CFG1", "LCPLL_RDAC_CTB", 3, 0},
    {"LCPLL_CFG1", "LCPLL_VCO_TCOMP_EN", 1, 0},
    {"LCPLL_CFG1", "LCPLL_IVCO_CNTRL", 15, 0},
    {"LCPLL_LGC_CFG0", "LCPLL_AUTO_FINE_EN", 1, 0},
    {"LCPLL_LGC_CFG0", "LCPLL_FINE_SWEEP", 3, 0},
    {"LCPLL_LGC_CFG1", "CLKSEL", 0, 1},
    {"LCPLL_LGC_CFG2", "SDM_SEED", 1114385, 0},
    {"RPLL_CFG1", "RPLL_VREG_FILTER_CTRL", 15, 0},
    {"RPLL_CFG1", "RPLL_VCCSEL", 4, 0},
    {"RPLL_CFG1", "RPLL_RVCO_CCI", 8, 0},
    {"RPLL_CFG1", "RPLL_RVCO_TC_EXTB", 63, 0},
    {"RPLL_CFG1", "RPLL_TCMP_ENABLE", 1, 0},
    {"RPLL_LGC_CFG0", "RPLL_AUTO_FINE_EN", 1, 0},
    {"RPLL_LGC_CFG0", "RPLL_FINE_SWEEP", 3, 0},
    {"RPLL_LGC_CFG0", "RPLL_ALLOW_LB2UB", 1, 0},
    {"RPLL_LGC_CFG0", "RPLL_ALLOW_UB2LB", 0, 1},
    {"RPLL_LGC_CFG0", "RPLL_VCO_SEL", 1, 0},
    {"RPLL_LGC_CFG1", "PLL_RESET_DLY_TIME", 148, 118},
    {"RPLL_LGC_CFG1", "CLKSEL", 0, 1},
    {"RPLL_LGC_CFG2", "SDM_SEED", 1114385, 0},
    {"PIPE_CTRL_CFG0", "TX_EIDLE_ASSERT_DLY", 4, 0},
    {"PIPE_CTRL_CFG2", "PD_TRANS_TIME_FROM_P2", 303, 0},
    {"PIPE_CTRL_CFG4", "RATE_DATA_FLUSH_CNT", 8, 0},
    {"PIPE_CTRL_CFG4", "RATE_PHYSTATUS_CNT", 4, 0},
    {"PIPE_CTRL_CFG5", "PIPE_SPECIAL_OFF_RESET_EN", 1, 0},
    {"PIPE_CTRL_CFG6", "BUFGT_OVRD_EN", 1, 0},
    {"PIPE_CTRL_CFG6", "BUFGT_RESET_OVRD", 1, 0},
    {"PIPE_CTRL_CFG6", "BUFGT_WAIT_CNT", 4, 0},
    {"RESET_CFG", "EB8B10B_RESET_DEFER_EN", 0, 1},
    {"RESET_CFG", "PRESCALE_DIV", 5, 7},
    {"RESET_CFG", "ILORESET_ON_PLLLOCK", 1, 0},
    {"RESET_TIME_CFG3", "TX_DAPI_RESET_TIME", 4, 1},
    {"FABRIC_INTF_CFG0", "QPI_PIN_EN", 1, 0},
    {"FABRIC_INTF_CFG2", "A_RX_PMA_RESETMASK", 127, 0},
    {"FABRIC_INTF_CFG2", "A_TX_PMA_RESETMASK", 7, 0},
    {"FABRIC_INTF_CFG2", "A_ILO_RESETMASK", 1, 0},
    {"FABRIC_INTF_CFG2", "A_RX_PCS_RESETMASK", 31, 0},
    {"FABRIC_INTF_CFG2", "A_TX_PCS_RESETMASK", 1, 0},
    {"FABRIC_INTF_CFG4", "A_RXDAPIRESETMASK", 2, 0},
    {"FABRIC_INTF_CFG4", "A_TXDAPIRESETMASK", 2, 0},
    {"FABRIC_INTF_CFG5", "TX_EQ_PIN_EN", 1, 0},
    {"FABRIC_INTF_CFG5", "A_TXDRVAMP", 25, 0},
    {"CHCLK_ILO_CFG", "CHCLK_VREG_CTRL", 0, 4},
    {"CHCLK_ILO_CFG", "CHCLK_PDB_VBUF", 0, 1},
    {"CHCLK_ILO_CFG", "CHCLK_FTL_TUNE_OWEN", 0, 1},
    {"CHCLK_ILO_CFG", "CHCLK_ILO_MODE_TUNE_OW", 3, 0},
    {"CHCLK_ILO_CFG", "CHCLK_PDB_VTOI_OW", 0, 1},
    {"CHCLK_ILO_CFG", "CHCLK_VCTRL_FTL_EN_OW", 0, 1},
    {"CHCLK_MISC_CFG", "CHCLK_MONCLKCYCLE", 7, 0},
    {"CHCLK_MISC_CFG", "CHCLK_ILOLOCKCOARSE", 2, 1},
    {"CHCLK_MISC_CFG", "CHCLK_CRS_ACCURACY", 3, 0},
    {"CHCLK_RXPI_CFG", "RXPI_STEP_BYP_EN", 0, 1},
    {"CHCLK_TXCAL_CFG", "CHCLK_TXCAL_CALEN", 1, 0},
    {"CHCLK_TXCAL_CFG", "CHCLK_TXCAL_INITDAC", 64, 0},
    {"CHCLK_TXPI_CFG0", "TXPI_STEP_BYP_EN", 0, 1},
    {"UB_CFG0", "MEM_CTRL", 1844, 1162},
};

constexpr fieldOfRegister replacedFields[] = {
    // Follows the PCIe switch now.
    {"PIPE_CTRL_CFG7", constant("CDR_CTRL_ADAPT_HOLD_EN", 0)},
};

constexpr emptiedWord emptiedWords[] = {
    {"CHCLK_RXCAL_CFG1", 0},
    {"CHL_RSV_CFG0", 0},
    {"CTRL_RSV_CFG1", 0},
};

/// Registers that the current rules lack. Calibration stands where theirs does, the memory cells
/// with the reference clocks where their reference clock words do.
void addRegisters(register_catalogue& catalogue) {
    for (const std::string_view name : {"RCALBG_BOT_CFG0", "RCALBG_BOT_CFG1", "RCALBG_BOT_CFG2",
                                        "RCALBG_BOT_CFG3", "RCALBG_BOT_CFG4", "RCALBG_BOT_CFG5"}) {
        catalogue.insertBefore("CFG0", constantWord(name, 0));
    }
    catalogue.insertBefore("CFG0", {"RCALBG_TOP_CFG0"});
    for (const std::string_view name : {"RCALBG_TOP_CFG1", "RCALBG_TOP_CFG2", "RCALBG_TOP_CFG3",
                                        "RCALBG_TOP_CFG4", "RCALBG_TOP_CFG5"}) {
        catalogue.insertBefore("CFG0", constantWord(name, 0));
    }
    for (const std::string_view name :
         {"MEMCELLX0C12", "MEMCELLX0F12", "MEMCELLX0C13", "MEMCELLX0F13"}) {
        catalogue.insertBefore("LCPLL_REFCLK_IPS", {name});
    }
}

/// Gives the field of the pipe clock a rule of its own, right behind the current one, which also
/// writes the intermediate and stays where the field stands.
void splitPipeClock(register_catalogue& catalogue) {
    constexpr std::string_view name = "PIPE_CTRL_CFG5";
    const std::vector<registerField> fields = catalogue.fieldsOf(name);
    const auto own = std::find_if(fields.begin(), fields.end(), [](const registerField& field) {
        return field.name == "BUFGTDIV_G1_PIPECLK";
    });
    catalogue.replace(fieldsOnly(name, {own, fields.end()}));
    catalogue.insertAfter(name, word(name));
    catalogue.insertBefore(name, step(sxb_stable_pll_step::pipeClockDivider));
    catalogue.insertBefore(sxb_stable_pll_step::pipeClockDivider,
                           fieldsOnly(name, {fields.begin(), own}));
}

register_catalogue made(register_catalogue catalogue) {
    addRegisters(catalogue);
    replaceFields(catalogue, replacedFields);
    applyDifferences(catalogue, changedConstants);
    addFields(catalogue, addedFields);
    applyDifferences(catalogue, removedRules);
    applyDifferences(catalogue, emptiedWords);
    splitPipeClock(catalogue);
    return catalogue;
}

}  // namespace

const register_catalogue& sxbStablePllCatalogue() {
    static const register_catalogue catalogue = made(sxbPllCatalogue());
    return catalogue;
}

}  // namespace sable_lanecfg
