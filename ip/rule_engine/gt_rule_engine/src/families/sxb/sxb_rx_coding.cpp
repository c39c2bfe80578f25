#include "families/common/data_widths.h"
#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_coding.h"
#include "families/sxb/sxb_data_selects.h"
#include "families/sxb/sxb_rx_rule_groups.h"

namespace sable_lanecfg {

namespace {

void internalWidth(rule_declaration& rule) {
    const auto width = rule.reads<unsigned int>("RX_INT_DATA_WIDTH");
    const auto code = rule.writes("RX_PCS_CFG0.RX_INT_DATA_WIDTH");
    const auto bytes = rule.writes("INT_WID");
    rule.body([=] {
        code.set(codeOf(internalWidthCodes, width()));
        bytes.set(codeOf(internalWidthBytes, width()));
    });
}

void fabricAndBufferDataSelect(rule_declaration& rule) {
    const auto coding = rule.reads<std::string>("RX_DATA_DECODING");
    const auto fabric = rule.writes("RX_PCS_CFG1.RX_FABRIC_DATA_SEL");
    const auto buffer = rule.writes("RX_PCS_CFG1.RX_FIFO_DATA_SEL");
    rule.body([=] {
        const unsigned int code = codeOf(receiveDataSelects, coding());
        fabric.set(code);
        buffer.set(code);
    });
}

void electricalIdleExitPattern(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto rate = rule.reads<double>("RX_LINE_RATE");
    rule.gives([=] {
        if (!pcie() || rate() == 2.5 || rate() == 5.0 || rate() == 8.0) {
            return 0U;
        }
        return rate() == 16.0 ? 1U : 2U;
    });
}

void firstReadAddress(rule_declaration& rule) {
    const auto width = rule.reads<unsigned int>("RX_INT_DATA_WIDTH");
    rule.gives([=] {
        switch (width()) {
            case 16:
            case 20:
                return 12U;
            case 64:
            case 80:
                return 3U;
            default:
                return 4U;
        }
    });
}

}  // namespace

void addRxCodingRules(logicRules& rules) {
    rules["RX_PCS_CFG0.RX_DATA_WIDTH"] = userWidthCode(receiveSide);
    rules["RX_PCS_CFG0.RX_INT_DATA_WIDTH"] = internalWidth;
    rules["RX_PCS_CFG1.RX_FABRIC_DATA_SEL"] = fabricAndBufferDataSelect;
    rules["RX_PCS_CFG2.RX_EIEOS_PATTERN_SEL"] = electricalIdleExitPattern;
    rules["RX_PCS_CFG2.FIFO_INIT_RD_ADDR"] = firstReadAddress;
    rules["RX_PCS_CFG2.USE_GB"] = gearbox(receiveSide, "RX_PCS_CFG2");
    for (const char* const field :
         {"RX_PCS_CFG2.RX_8B10B_EN", "RX_PCS_CFG2.RX_CBCC_DATA_SEL",
          "RX_ELASTIC_BUF_CFG3.EB8B10B_DATA_SOURCE_SEL", "RX_PCS_CFG4.RXVALID_GEN_EN"}) {
        rules[field] = oneForWord("RX_DATA_DECODING", "8B10B");
    }
}

}  // namespace sable_lanecfg
