#include "families/sxd4/sxd4_tx_catalogue.h"

namespace sable_lanecfg {

const register_catalogue& sxd4TxCatalogue() {
    // In registration order.
    static const register_catalogue catalogue{
        // What line coding, word and output clock decide.
        {"TX_ANA_CFG1",
         {logic("CTL_PAM2_HIBT"), logic("PROGDIV_CLK_ENB"), constant("TX_FIFO_BYP_EN", 1),
          constant("BSR_ENABLE", 0), constant("CTL_SER_PCSCK_INV", 0),
          constant("ENB_PR2_6X_IND", 0), constant("ENB_PR2_1P5X_IND", 0),
          constant("ENB_PR2_3X_IND", 0), logic("TX_PDIVSEL")}},
        {"TX_PCS_CFG0",
         {logic("TX_GRAY_ENDIAN"), logic("TX_GRAY_BYP_EN"), logic("TX_PRECODE_ENDIAN"),
          logic("TX_PRECODE_BYP_EN"), logic("TX_DATA_WIDTH"), logic("TX_INT_DATA_WIDTH"),
          constant("TX_FIFO_INIT_WR_ADDR", 11), constant("GEN_TXUSRCLK", 0)}},
        {"TX_DRV_CFG4",
         {logic("PROGDIV_PDBV_DIV"), logic("PROGDIV_FBKDIV"), logic("PROGDIV_SEL_FULLRATE"),
          constant("PROGDIV_PDBV_DIV66", 0), constant("PROGDIV_DIV66CTL", 0),
          constant("PROGDIV_SEL_DIV66", 0), constant("PROGDIV_PDBV_DIV5", 1)}},
        // Analogue transmitter.
        {"TX_ANA_CFG0",
         {constant("TXDRVPWRDN_B_SA", 1), constant("REGN_PDB", 1), constant("SARC_LPBK_ENB", 0),
          constant("SARC_ENB_HSCLK", 0), constant("N_SLICE_OVR_EN", 0), constant("TXSERPWRDN_B", 1),
          constant("REGP_PDB", 1), constant("SARC_ENB", 1), constant("CTL_DRV_EN", 5)}},
        {"TX_ANA_CFG2",
         {constant("TXVREG_PD", 0), constant("TXVREG_VREFSEL", 1), constant("TX_CAL_BYPASS_EN", 0),
          constant("DCDC_CTRL_I", 64), constant("TXVREG_CTRL", 2)}},
        {"TX_ANA_CFG3",
         {constant("REFBIAS_ENB_IPP", 0), constant("VSWING_SEL_OVR_EN", 0),
          constant("REGP_VSWING_SEL_OVR", 17), constant("REFBIAS_BIAS_CTRL", 0),
          constant("REGN_VSWING_SEL_OVR", 10), constant("REFBIAS_EN_AVCC_LV", 0)}},
        {"TX_ANA_CFG4",
         {constant("ZCTRLP_OVR_EN", 0), constant("ZCTRLN_OVR_EN", 0),
          constant("ZRES_RATIO_OVR_EN", 0), constant("TX_SAPSEL", 0),
          constant("ZCTRLN_OVER_SEL", 0), constant("ZCTRLP_OVER_SEL", 0),
          constant("ZRES_RATIO_SEL", 0)}},
        // Calibration, driver, loopback and PCS.
        {"TX_CAL_CFG0",
         {constant("TXDCC_ACC_MULT", 0), constant("TXDCC_ACC_FILTER_SIZE", 0),
          constant("TXDCC_DAC_SIZE", 0), constant("TXDCC_TESTDATA", 0),
          constant("TXDCC_REFRESH_CYCLE", 0), constant("TXDCC_TESTEN", 0),
          constant("TXDCC_CAL_DIR", 0), constant("TXDCC_CALEN", 1)}},
        {"TX_CAL_CFG1",
         {constant("TXDCC_FORCE_READY", 0), constant("TXDCC_INITDAC", 64),
          constant("TXDCC_CNT_TIGHTEN", 0)}},
        {"TX_DRV_CFG0",
         {constant("CTL_DRV_PR_OVREN", 0), constant("CTL_DRV_PO_OVREN", 0),
          constant("CTL_DRV_PR2_OVREN", 0), constant("CTL_DRV_MN_OVREN", 0),
          constant("TXEMPMAIN_INDEP", 0)}},
        {"TX_DRV_CFG1",
         {constant("ACJTAG_SHUNT_PR2PO1X_EN_OVR", 0), constant("ACJTAG_SHUNT_MN4X_EN_OVR", 0),
          constant("ACJTAG_SHUNT_POPR8X_EN_OVR", 0), constant("ACJTAG_SHUNT_PR2_4X_EN_OVR", 0),
          constant("ACJTAG_SHUNT_OVR_EN", 0), constant("ACJTAG_SHUNT_POPR16X_EN_OVR", 0),
          constant("ACJTAG_SHUNT_MN8X_EN_OVR", 0), constant("CTL_DRC_SHUNT_INIT", 39),
          constant("ACJTAG_SHUNT_PR2_2X_EN_OVR", 0)}},
        {"TX_DRV_CFG2", {constant("CTL_DRV_PR", 0), constant("CTL_DRV_PR2", 0)}},
        {"TX_DRV_CFG3",
         {constant("CTL_DRV_PO", 0), constant("TXEMPMAIN4", 3), constant("CTL_DRV_MAIN4", 3)}},
        {"TX_LPBK_CFG0",
         {constant("TXLPBK_CM_OW_CTRL", 0), constant("TXLPBK_MLS", 2),
          constant("TXLPBK_CM_SW_EN", 0), constant("TXLPBK_SW_CM_CTRL", 1)}},
        {"TX_LPBK_CFG1",
         {constant("TXLPBK_MSB_DELAY_CONTROL", 14), constant("TXLPBK_LSB_DELAY_CONTROL", 14)}},
        {"TX_PCS_CFG1",
         {constant("TX_TERM_RCAL_OVRD", 0), constant("RXPRBSERR_LOOPBACK", 0),
          constant("TX_CLK_PAT_SEL", 0), constant("TX_XCLK_SEL", 0),
          constant("TX_TERM_RCAL_CFG", 0)}}};
    return catalogue;
}

}  // namespace sable_lanecfg
