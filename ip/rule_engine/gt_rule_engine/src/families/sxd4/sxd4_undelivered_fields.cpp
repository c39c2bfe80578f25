#include "families/sxd4/sxd4_undelivered_fields.h"

#include "families/common/register_catalogue.h"
#include "families/sxd4/sxd4_rule_groups.h"

namespace sable_lanecfg {

const std::vector<undeliveredField>& undeliveredFields() {
    static const std::vector<undeliveredField> fields{
        // Receiver.
        {"RX_APT_CFG23A", "DLN_INITDAC", 0},
        {"RX_APT_CFG8A", "DLP_INITDAC", 0},
        {"RX_APT_CFG19B", "H0_INITDAC", 0},
        {"RX_APT_CFG28B", "H0MODE", 0},
        {"RX_ANA_CFG1", "PROGDIV_FBDIV", 0},
        {"RX_ANA_CFG1", "PROGDIV_SELFR", 0},
        {"RX_PAD_CFG0", "PAD_RTERM_VCOM_LVL", 0},
        {"RX_ANA_CFG0", "CTLE_HF1_RDEG_RCAL_ENB", 0},
        {"RX_ANA_CFG0", "CTLE_HF2_RDEG_RCAL_ENB", 0},
        {"RX_ANA_CFG0", "CTLE_MF_RCAL_ENB", 0},
        {"RX_APT_CFG16B", "HYSTEN", 0},
        {"RX_APT_CFG18A", "GC_INITDAC", 0},
        {"RX_APT_CFG18A", "KH_INITDAC", 0},
        {"RX_APT_CFG23B", "DHN_INITDAC", 0},
        {"RX_APT_CFG28A", "OS_OVWREN_ENABLE", 0},
        {"RX_APT_CFG28A", "OVWREN", 0},
        {"RX_APT_CFG8B", "DHP_INITDAC", 0},
        {"RX_APT_CFG9B", "SHIFT", 0},
        {"RX_APT_CTRL_CFG3", "RCALOFFSET", 0},
        {"RX_APT_CTRL_CFG3", "SNRMODTARGET", 0},
        {"RX_CDR_CFG2A", "PDIVFAC", 0},
        {"RX_CDR_CFG2A", "FDIVFAC", 0},
        {"RX_CLKGN_CFG0", "CLKGN_DRP_PI_CURRENT_BOOST", 0},
        {"RX_CLKGN_CFG0", "CLKGN_CLK_RATE_SEL", 0},
        {"RX_CLKGN_CFG0", "CLKGN_DRP_PI_DAC_MIXER_ICAP", 0},
        {"RX_CLKGN_CFG1", "CLKGN_SA_RXPI_BOOST", 0},
        {"RX_CLKGN_CFG1", "CLKGN_PI_PRE_ZERO_CAPCTRL", 0},
        {"RX_CLKGN_CFG1", "CLKGN_PI_LA_ZERO_CAPCTRL", 0},
        {"RX_CLKGN_CFG1", "CLKGN_PI_MIX_ZERO_CAPCTRL", 0},
        {"RX_CTLE_CFG0", "AGC_BIAS_CTRL", 0},
        {"RX_CTLE_CFG0", "CTLE_BIAS_CTRL", 0},
        {"RX_CTLE_CFG0", "AGC_RCAL_ENB", 0},
        {"RX_CTLE_CFG0", "CTLE_LBEN_LV", 0},
        {"RX_CTLE_CFG1", "CTLE_EXT_RL_CTRL", 0},
        {"RX_CTLE_CFG2", "AGC_OCAP_EXT_EN", 0},
        {"RX_CTLE_CFG3", "AGC_OS_MIRROR_CODE", 0},
        // Transmitter.
        {"TX_ANA_CFG1", "PROGDIV_CLK_ENB", 0},
        {"TX_ANA_CFG1", "TX_PDIVSEL", 0},
        {"TX_DRV_CFG4", "PROGDIV_FBKDIV", 0},
        {"TX_DRV_CFG4", "PROGDIV_SEL_FULLRATE", 0},
        // PLL, error correction, clocks and resets.
        {"A_CFG", "A_PLLRESETMASK", 0},
        {"PLL_CFG0", "PPF_MUX_CRNT_CTRL", 0},
        {"PLL_CFG0", "PPF_MUX_TERM_CTRL", 0},
        {"FEC_CFG3", "FEC_RX1_CLK_MODE", 0},
        {"FEC_CFG3", "FEC_TX1_CLK_MODE", 0},
        {"FEC_CFG4", "LN_ALGN_MRK_ID0_0", 0},
        {"FEC_CFG5", "LN_ALGN_MRK_ID0_1", 0},
        {"FEC_CFG6", "LN_ALGN_MRK_ID0_2", 0},
        {"FEC_CFG7", "LN_ALGN_MRK_ID0_3", 0},
        {"FEC_CFG8", "LN_ALGN_MRK_ID1_0", 0},
        {"FEC_CFG9", "LN_ALGN_MRK_ID1_1", 0},
        {"FEC_CFG10", "LN_ALGN_MRK_ID1_2", 0},
        {"FEC_CFG11", "LN_ALGN_MRK_ID1_3", 0},
        {"FEC_CFG12", "LN_ALGN_MRK_ID4_0", 0},
        {"FEC_CFG13", "LN_ALGN_MRK_ID4_1", 0},
        {"FEC_CFG14", "LN_ALGN_MRK_ID4_2", 0},
        {"FEC_CFG15", "LN_ALGN_MRK_ID4_3", 0},
        {"FEC_CFG16", "LN_ALGN_MRK_ID5_0", 0},
        {"FEC_CFG17", "LN_ALGN_MRK_ID5_1", 0},
        {"FEC_CFG18", "LN_ALGN_MRK_ID5_2", 0},
        {"FEC_CFG19", "LN_ALGN_MRK_ID5_3", 0},
        {"FEC_CFG20", "LN_ALGN_MRK_ID6_0", 0},
        {"FEC_CFG21", "LN_ALGN_MRK_ID6_1", 0},
        {"FEC_CFG22", "LN_ALGN_MRK_ID6_2", 0},
        {"FEC_CFG23", "LN_ALGN_MRK_ID6_3", 0},
        {"FEC_CFG24", "LN_ALGN_MRK_ID7_0", 0},
        {"FEC_CFG25", "LN_ALGN_MRK_ID7_1", 0},
        {"FEC_CFG26", "LN_ALGN_MRK_ID7_2", 0},
        {"FEC_CFG27", "LN_ALGN_MRK_ID7_3", 0},
        {"A_CH_CFG0", "RX_FABINT_USRCLK_FLOP", 0},
        {"PLL_CFG4", "LCPLL_CP", 0},
        {"PLL_CFG5", "LCPLL_LPF", 0},
        {"PLL_CFG5", "LCPLL_LPF_PCIE_RES", 0},
        {"PLL_CFG5", "LCPLL_LOW_RES", 0},
        {"RST_LP_CFG1", "RX_DSP_RESET_LOOP_ID", 0},
        {"RST_LP_CFG1", "RX_DFE_RESET_LOOP_ID", 0},
        {"RST_LP_CFG3", "RX_PRBS_RESET_LOOP_ID", 0},
        {"RST_LP_CFG3", "RX_PCS_RESET_LOOP_ID", 0},
        {"RST_LP_ID_CFG0", "RX_PCS_LOOPER_END_ID", 0},
        {"RST_LP_ID_CFG0", "RX_PMA_LOOPER_END_ID", 0}};
    return fields;
}

void addUndeliveredFieldRules(logicRules& rules, const register_catalogue& catalogue) {
    for (const catalogueEntry& entry : catalogue.entries()) {
        for (const undeliveredField& row : undeliveredFields()) {
            if (row.registerName == entry.name) {
                rules.emplace(fieldName(row.registerName, row.field),
                              [value = row.value](rule_declaration& rule) {
                                  rule.gives([value] { return value; });
                              });
            }
        }
    }
}

}  // namespace sable_lanecfg
