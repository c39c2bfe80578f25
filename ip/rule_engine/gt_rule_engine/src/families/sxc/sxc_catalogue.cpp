#include "families/sxc/sxc_catalogue.h"

#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_tx_catalogue.h"

#include <string>

namespace sable_lanecfg {

namespace {

void addFields(register_catalogue& catalogue, std::string_view registerName,
               const std::vector<registerField>& fields) {
    for (const registerField& field : fields) {
        catalogue.addField(registerName, field);
    }
}

/// Words that SXB leaves at 0; here they hold the settings of the fifth PCIe generation.
void defineReservedRegisters(register_catalogue& catalogue) {
    addFields(
        catalogue, "CHL_RSV_CFG0",
        {constant("XPIPE5_PIPELINE_OVRD_EN", 0), constant("XPIPE5_PIPELINE_OVRD", 0),
         constant("GEN5_RATE_IN_PROG_OVRD_EN", 0), constant("GEN5_RATE_IN_PROG_OVRD", 0),
         constant("RATE_DATA_PLL_RESET_OPTION", 0), constant("RATE_TX_SIMPLEX_WAIT_MST_RST_EN", 1),
         constant("RATE_RX_SIMPLEX_WAIT_MST_RST_EN", 1),
         constant("RX128B130B_RESET_ON_CDRSLIP_DIS", 0)});
    catalogue.replace(
        {"CHL_RSV_CFG1",
         {constant("PIPERST_CHNL_RST_CONTRL_DIS", 0), constant("PIPERST_HSCK_RST_CONTRL_DIS", 0),
          constant("TXPRBSFORCEERR_PIN_EN", 0), constant("TXELECIDLE_PIN_EN", 1),
          constant("TXDETECTRXLOOPBACK_PIN_EN", 1), constant("A_TXPRBSFORCEERR", 0),
          constant("A_TXELECIDLE", 0), constant("A_TXDETECTRXLOOPBACK", 0),
          constant("BUFGT_FORCE_CEMASK_MACCLK", 0), constant("PIPE_128B130B_RX_DELAY_TIME", 3)}});
    catalogue.replace(
        {"CHL_RSV_CFG2",
         {logic("EB128B130B_64_EN"), constant("EB128B130B_64_MIN_LAT", 8),
          constant("EB128B130B_64_MAX_LAT", 22), constant("EB128B130B_64_EMPTY_THRESH", 0),
          constant("EB128B130B_64_FULL_THRESH", 31), constant("EB128B130B_64_EIOS_LPBK4_BYP", 0),
          constant("EB128B130B_64_ONE_SKP_INS_DEL", 1), constant("EB128B130B_64_BLKALGN_CTL", 0),
          constant("RX128B130B_DECODER_AUTO_EN", 0),
          constant("RX128B130B_64_DECODER_RXDATAVALID_ADJ_EN", 0),
          constant("EB128B130B_64_AUTO_REALIGN", 0), constant("RX128B130B_DECODER_DIS", 0),
          constant("EB128B130B_64_EIOS_DEL_SEL", 0)}});
    catalogue.replace({"CHL_RSV_CFG3",
                       {constant("PCIE_LPBK_BLOCK_INIT_DATA_DIS", 0),
                        constant("PCIE_128B130B_64BIT_TX_ENC_SEL", 0),
                        constant("PCIE_128B130B_64B_TX_LPBK_RXDATAVALID_ADJ_DIS", 0)}});
}

/// Each lane's reset of the oscillator follows its transmitter, and receivers have one of their
/// own.
void changeOscillatorResets(register_catalogue& catalogue) {
    for (const std::string_view enable :
         {"CH0_ILO_RESET_EN", "CH1_ILO_RESET_EN", "CH2_ILO_RESET_EN", "CH3_ILO_RESET_EN"}) {
        catalogue.replaceField("MST_RESET_CFG", logic(enable));
    }
    addFields(catalogue, "CTRL_RSV_CFG0",
              {constant("CH0_RX_ILO_RESET_EN", 1), constant("CH1_RX_ILO_RESET_EN", 1),
               constant("CH2_RX_ILO_RESET_EN", 1), constant("CH3_RX_ILO_RESET_EN", 1)});
    catalogue.replaceField("RESET_CFG", copy("ILORESET_PLLLOCK_SEL", "RX_IN_USE"));
    catalogue.removeField("CHCLK_ILO_CFG", "RESERVED_BIT17");
    catalogue.removeField("CHCLK_ILO_CFG", "RESERVED_BIT15");
}

}  // namespace

const register_catalogue& sxcPllCatalogue() {
    static const register_catalogue catalogue = [] {
        register_catalogue changed = sxbPllCatalogue();
        changed.setConstant("HSDIST_CFG", "HSDIST_CTRL", 0);
        changed.replaceField("A_CFG0", constant("A_BGRCALOVRD_EN", 1));
        addFields(changed, "RESET_CFG", {logic("TX_PLLLOCK_SEL"), logic("RX_PLLLOCK_SEL")});
        // Directions keep their power whether they are in use or not.
        changed.replaceField("FABRIC_INTF_CFG1", constant("A_RXPD", 0));
        changed.replaceField("FABRIC_INTF_CFG3", constant("A_TXPD", 0));
        // A pin for each lane.
        changed.setConstant("PIN_CFG0", "MST_TX_RESET_PIN_EN", 15);
        changed.setConstant("PIN_CFG0", "MST_RX_RESET_PIN_EN", 15);
        defineReservedRegisters(changed);
        changeOscillatorResets(changed);
        return changed;
    }();
    return catalogue;
}

const register_catalogue& sxcRxCatalogue() {
    static const register_catalogue catalogue = [] {
        register_catalogue changed = sxbRxCatalogue();
        changed.addField("ADAPT_APT_CFG", logic("divider_data"));
        changed.replaceField("RX_CTLE_CFG1", constant("RCAL_OS_PAD", 0));
        changed.replaceField("RX_CTLE_CFG1", constant("CDR2APT_SCANMODE1", 1));
        changed.replaceField("RX_PCS_CFG2", constant("FIFO_INIT_RD_ADDR", 4));
        return changed;
    }();
    return catalogue;
}

const register_catalogue& sxcTxCatalogue() {
    static const register_catalogue catalogue = [] {
        register_catalogue changed = sxbTxCatalogue();
        changed.replaceField("TX_PCS_CFG0", constant("FIFO_INIT_RD_ADDR", 4));
        changed.replaceField("PIPE_TX_EQ_CFG3", constant("TX_DEEMPH_0", 18));
        changed.replaceField("PIPE_TX_EQ_CFG3", constant("TX_DEEMPH_1", 12));
        changed.replaceField("TX_DRV_CFG0", constant("TX_CTL_DRV_EN", 0));
        return changed;
    }();
    return catalogue;
}

const register_catalogue& sxcCatalogue() {
    static const register_catalogue catalogue = [] {
        register_catalogue all = sxcRxCatalogue();
        all.append(sxcTxCatalogue());
        all.append(sxcPllCatalogue());
        return all;
    }();
    return catalogue;
}

}  // namespace sable_lanecfg
