#include "models/output_divider_enable.h"

#include "models/parameter_values.h"

#include <string>

namespace sable_lanecfg::models {

namespace {

/// `direction` is "TX" or "RX".
void updateOutputDividerEnable(updater& record, const std::string& direction) {
    const std::string divider = direction + "PROGDIV";
    record.enabled = textOf(record, direction + "_OUTCLK_SOURCE") == divider + "CLK";
    setFlag(record, divider + "_FREQ_ENABLE", record.enabled);
}

}  // namespace

void updateTxOutputDividerEnable(updater& record) {
    updateOutputDividerEnable(record, "TX");
}

void updateRxOutputDividerEnable(updater& record) {
    updateOutputDividerEnable(record, "RX");
}

}  // namespace sable_lanecfg::models
