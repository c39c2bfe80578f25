#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_lane_alignment.h"
#include "families/sxb/sxb_rx_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

const char* const fastSync = "Fast_Sync";

/// Which direction aligns a user clock that both share: 1 the transmitter, 2 the receiver, 3 both.
void commonClockAlignment(rule_declaration& rule) {
    const auto transmitBuffer = rule.reads<unsigned int>("TX_BUFFER_MODE");
    const auto receiveBuffer = rule.reads<unsigned int>("RX_BUFFER_MODE");
    const auto commonClock = rule.reads<bool>("TX_COMMON_USRCLK");
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    rule.gives([=] {
        if (!commonClock() && !pcie()) {
            return 0U;
        }
        const unsigned int transmitterAligns = transmitBuffer() == 0 ? 1 : 0;
        const unsigned int receiverAligns = receiveBuffer() == 0 ? 2 : 0;
        return transmitterAligns + receiverAligns;
    });
}

}  // namespace

void addRxPhaseAlignmentRules(logicRules& rules) {
    addLaneAlignmentRules(rules, receiveSide, "RX_PHALIGN_CFG3.MLDLY_SETINIT_PH_CNT");
    rules["RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE"] = commonClockAlignment;
    rules["RX_PHALIGN_CFG4.FINE_ALIGN_BYPASS"] = zeroForWord("RX_BUFFER_BYPASS_MODE", fastSync);
    // The edge of both directions follows the receiver.
    for (const char* const field : {"RX_PHALIGN_CFG5.RX_BUFBYPASS_ML_NEGEDGE_MODE",
                                    "RX_PHALIGN_CFG5.TX_BUFBYPASS_ML_NEGEDGE_MODE"}) {
        rules[field] = oneForWord("RX_BUFFER_BYPASS_MODE", fastSync);
    }
}

}  // namespace sable_lanecfg
