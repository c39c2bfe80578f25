#include "models/output_divider_enable.h"
#include "models/update_procedure.h"

#include <lanecfg/ToolGTDRCModel.h>

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

ToolGTDRCModel::ToolGTDRCModel(const std::string& ipName) : ToolDRCModel(ipName) {
    // Qualified, since no virtual call can reach further while the object is made.
    ToolGTDRCModel::init();
}

ToolGTDRCModel::~ToolGTDRCModel() = default;

void ToolGTDRCModel::init() {
    for (const updateProcedure& procedure : updateProcedures()) {
        registerUpdateProc(procedureName(procedure), argumentKeys(procedure), procedure.body);
    }
}
