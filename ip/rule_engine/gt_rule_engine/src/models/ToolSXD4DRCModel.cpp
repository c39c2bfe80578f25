#include "models/output_divider_enable.h"
#include "models/update_procedure.h"

#include <lanecfg/ToolSXD4DRCModel.h>

#include <vector>

using namespace sable_lanecfg::models;

namespace {

std::vector<updateProcedure> updateProcedures() {
    return {
        {"TXPROGDIV_FREQ_ENABLE",
         {"TX_OUTCLK_SOURCE", "TXPROGDIV_FREQ_ENABLE"},
         updateTxOutputDividerEnable},
        {"RXPROGDIV_FREQ_ENABLE",
         {"RX_OUTCLK_SOURCE", "RXPROGDIV_FREQ_ENABLE"},
         updateRxOutputDividerEnable},
    };
}

}  // namespace

ToolSXD4DRCModel::ToolSXD4DRCModel(const std::string& ipName) : ToolDRCModel(ipName) {
    // Qualified, since no virtual call can reach further while the object is made.
    ToolSXD4DRCModel::init();
}

ToolSXD4DRCModel::~ToolSXD4DRCModel() = default;

void ToolSXD4DRCModel::init() {
    for (const updateProcedure& procedure : updateProcedures()) {
        registerUpdateProc(procedureName(procedure), argumentKeys(procedure), procedure.body);
    }
}
