#pragma once

#include <lanecfg/host/ToolDRCModel.h>

/// The programmable output divider runs, and can be edited, exactly when it is the source of the
/// output clock. The same in all models.
namespace sable_lanecfg::models {

void updateTxOutputDividerEnable(updater& record);
void updateRxOutputDividerEnable(updater& record);

}  // namespace sable_lanecfg::models
