#include "families/common/data_widths.h"
#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_coding.h"
#include "families/sxb/sxb_data_selects.h"
#include "families/sxb/sxb_tx_rule_groups.h"

namespace sable_lanecfg {

namespace {

void firstReadAddress(rule_declaration& rule) {
    const auto width = rule.reads<unsigned int>("TX_INT_DATA_WIDTH");
    rule.gives([=] { return width() == 16 || width() == 20 ? 12U : 4U; });
}

void phaseBufferUse(rule_declaration& rule) {
    const auto bufferMode = rule.reads<unsigned int>("TX_BUFFER_MODE");
    const auto asynchronous = rule.reads<unsigned int>("INT_TX_ASYNC_GEARBOX_EN");
    rule.gives([=] { return bufferMode() != 0 && asynchronous() == 0 ? 1U : 0U; });
}

void dedicatedPath(rule_declaration& rule) {
    const auto bufferMode = rule.reads<unsigned int>("TX_BUFFER_MODE");
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    rule.gives([=] { return bufferMode() == 0 && pcie() ? 1U : 0U; });
}

}  // namespace

void addTxCodingRules(logicRules& rules) {
    rules["TX_PCS_CFG0.TX_DATA_WIDTH"] = userWidthCode(transmitSide);
    rules["TX_PCS_CFG0.TX_INT_DATA_WIDTH"] =
        codeOfVariable<unsigned int>("TX_INT_DATA_WIDTH", internalWidthCodes);
    rules["TX_PCS_CFG0.TX_8B10B_EN"] = oneForWord("TX_DATA_ENCODING", "8B10B");
    rules["TX_PCS_CFG0.TX_PMA_DATA_SEL"] =
        codeOfVariable<std::string>("TX_DATA_ENCODING", transmitDataSelects);
    rules["TX_PCS_CFG0.FIFO_INIT_RD_ADDR"] = firstReadAddress;
    rules["TX_PCS_CFG0.USE_GB"] = gearbox(transmitSide, "TX_PCS_CFG0");
    rules["TX_PCS_CFG3.TX_PHASE_BUFFER_USE"] = phaseBufferUse;
    rules["TX_PCS_CFG3.TX_DEDICATED_CCIX_CHICO_PATH_EN"] = dedicatedPath;
}

}  // namespace sable_lanecfg
