#include "families/common/catalogue_differences.h"
#include "families/frozen/sxb_stable_catalogue.h"
#include "families/sxb/sxb_tx_catalogue.h"

namespace sable_lanecfg {

namespace {

// What only the current rules have.
constexpr removedRule removedRules[] = {
    {sxb_tx_step::outclockReport, {}},
    // Fields.
    {"TX_ANA_CFG0", "TX_FIR_MAPPING_PCIE"},
    {"TX_ANA_CFG0", "TX_FIR_MAPPING_PCIE_PRE"},
    {"TX_ANA_CFG0", "TX_FIR_MAPPING_PCIE_POST"},
    {"TX_PCS_CFG2", "TX_FIFO_STATUS_SEL"},
};

// What only the frozen rules have, beside three words of the gearbox.
constexpr fieldOfRegister addedFields[] = {
    {"TX_PCS_CFG0", constant("USB_LFPS_TPERIOD_ACCURATE", 0)},
};

// Constants of both: the current value, the frozen one.
constexpr changedConstant changedConstants[] = {
    {"PIPE_TX_EQ_CFG0", "TX_MARGIN_FULL_0", 88, 78},
    {"PIPE_TX_EQ_CFG0", "TX_MARGIN_FULL_1", 87, 73},
    {"PIPE_TX_EQ_CFG0", "TX_MARGIN_FULL_2", 85, 69},
    {"PIPE_TX_EQ_CFG0", "TX_MARGIN_FULL_3", 83, 66},
    {"PIPE_TX_EQ_CFG1", "TX_MARGIN_FULL_4", 81, 64},
    {"PIPE_TX_EQ_CFG1", "TX_MARGIN_LOW_0", 76, 70},
    {"PIPE_TX_EQ_CFG1", "TX_MARGIN_LOW_1", 75, 68},
    {"PIPE_TX_EQ_CFG1", "TX_MARGIN_LOW_2", 72, 66},
    {"PIPE_TX_EQ_CFG2", "TX_MARGIN_LOW_3", 66, 64},
    {"TX_PIPPM_CFG", "TXPI_SYNFREQ_PPM", 1, 0},
};

constexpr fieldOfRegister replacedFields[] = {
    // Follows the phase interpolator's switch now.
    {"TX_PIPPM_CFG", constant("TXPIPPMSEL", 0)},
    // The outclock report has it now.
    {"TX_PHALIGN_CFG0", shared("DAPI_BUFG_DIV", sxb_stable_tx_step::clocksPerWord)},
};

register_catalogue made(register_catalogue catalogue) {
    catalogue.insertBefore(sxb_tx_step::outclockReport, step(sxb_stable_tx_step::clocksPerWord));
    catalogue.insertAfter("TX_DRV_CFG1", constantWord("TX_GB_ENC_CFG1", 0));
    catalogue.insertAfter("TX_GB_ENC_CFG1", constantWord("TX_GB_ENC_CFG2", 0));
    catalogue.insertAfter("TX_GB_ENC_CFG2", constantWord("TX_GB_ENC_CFG3", 0));
    replaceFields(catalogue, replacedFields);
    applyDifferences(catalogue, changedConstants);
    addFields(catalogue, addedFields);
    applyDifferences(catalogue, removedRules);
    return catalogue;
}

}  // namespace

const register_catalogue& sxbStableTxCatalogue() {
    static const register_catalogue catalogue = made(sxbTxCatalogue());
    return catalogue;
}

}  // namespace sable_lanecfg
