#include "families/sxc/sxc_catalogue.h"

#include "families/common/catalogue_differences.h"
#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_tx_catalogue.h"

namespace sable_lanecfg {

namespace {

// The PLL set.

constexpr changedConstant changedPllConstants[] = {{"HSDIST_CFG", "HSDIST_CTRL", 6, 0},
                                                   // A pin for each lane.
                                                   {"PIN_CFG0", "MST_TX_RESET_PIN_EN", 1, 15},
                                                   {"PIN_CFG0", "MST_RX_RESET_PIN_EN", 1, 15}};

constexpr removedRule removedPllRules[] = {{"CHCLK_ILO_CFG", "RESERVED_BIT17"},
                                           {"CHCLK_ILO_CFG", "RESERVED_BIT15"}};

constexpr fieldOfRegister replacedPllFields[] = {
    {"A_CFG0", constant("A_BGRCALOVRD_EN", 1)},
    {"RESET_CFG", copy("ILORESET_PLLLOCK_SEL", "RX_IN_USE")},
    // Directions keep their power whether they are in use or not.
    {"FABRIC_INTF_CFG1", constant("A_RXPD", 0)},
    {"FABRIC_INTF_CFG3", constant("A_TXPD", 0)},
    // The ILO of a lane is reset as its transmitter needs it.
    {"MST_RESET_CFG", logic("CH0_ILO_RESET_EN")},
    {"MST_RESET_CFG", logic("CH1_ILO_RESET_EN")},
    {"MST_RESET_CFG", logic("CH2_ILO_RESET_EN")},
    {"MST_RESET_CFG", logic("CH3_ILO_RESET_EN")}};

constexpr fieldOfRegister addedPllFields[] = {
    {"RESET_CFG", logic("TX_PLLLOCK_SEL")},
    {"RESET_CFG", logic("RX_PLLLOCK_SEL")},
    {"CHL_RSV_CFG0", constant("XPIPE5_PIPELINE_OVRD_EN", 0)},
    {"CHL_RSV_CFG0", constant("XPIPE5_PIPELINE_OVRD", 0)},
    {"CHL_RSV_CFG0", constant("GEN5_RATE_IN_PROG_OVRD_EN", 0)},
    {"CHL_RSV_CFG0", constant("GEN5_RATE_IN_PROG_OVRD", 0)},
    {"CHL_RSV_CFG0", constant("RATE_DATA_PLL_RESET_OPTION", 0)},
    {"CHL_RSV_CFG0", constant("RATE_TX_SIMPLEX_WAIT_MST_RST_EN", 1)},
    {"CHL_RSV_CFG0", constant("RATE_RX_SIMPLEX_WAIT_MST_RST_EN", 1)},
    {"CHL_RSV_CFG0", constant("RX128B130B_RESET_ON_CDRSLIP_DIS", 0)},
    // Receivers have an ILO reset of their own.
    {"CTRL_RSV_CFG0", constant("CH0_RX_ILO_RESET_EN", 1)},
    {"CTRL_RSV_CFG0", constant("CH1_RX_ILO_RESET_EN", 1)},
    {"CTRL_RSV_CFG0", constant("CH2_RX_ILO_RESET_EN", 1)},
    {"CTRL_RSV_CFG0", constant("CH3_RX_ILO_RESET_EN", 1)}};

/// Words of 0 in SXB that have fields here, among them the elastic buffer of 64 bits.
void defineReservedRegisters(register_catalogue& catalogue) {
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

// The receive set.

constexpr fieldOfRegister replacedRxFields[] = {{"RX_CTLE_CFG1", constant("RCAL_OS_PAD", 0)},
                                                {"RX_CTLE_CFG1", constant("CDR2APT_SCANMODE1", 1)},
                                                {"RX_PCS_CFG2", constant("FIFO_INIT_RD_ADDR", 4)}};

constexpr fieldOfRegister addedRxFields[] = {{"ADAPT_APT_CFG", logic("divider_data")}};

// The transmit set.

constexpr fieldOfRegister replacedTxFields[] = {{"TX_PCS_CFG0", constant("FIFO_INIT_RD_ADDR", 4)},
                                                {"PIPE_TX_EQ_CFG3", constant("TX_DEEMPH_0", 18)},
                                                {"PIPE_TX_EQ_CFG3", constant("TX_DEEMPH_1", 12)},
                                                {"TX_DRV_CFG0", constant("TX_CTL_DRV_EN", 0)}};

}  // namespace

const register_catalogue& sxcPllCatalogue() {
    static const register_catalogue catalogue = [] {
        register_catalogue changed = sxbPllCatalogue();
        applyDifferences(changed, changedPllConstants);
        applyDifferences(changed, removedPllRules);
        replaceFields(changed, replacedPllFields);
        addFields(changed, addedPllFields);
        defineReservedRegisters(changed);
        return changed;
    }();
    return catalogue;
}

const register_catalogue& sxcRxCatalogue() {
    static const register_catalogue catalogue = [] {
        register_catalogue changed = sxbRxCatalogue();
        replaceFields(changed, replacedRxFields);
        addFields(changed, addedRxFields);
        return changed;
    }();
    return catalogue;
}

const register_catalogue& sxcTxCatalogue() {
    static const register_catalogue catalogue = [] {
        register_catalogue changed = sxbTxCatalogue();
        replaceFields(changed, replacedTxFields);
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
