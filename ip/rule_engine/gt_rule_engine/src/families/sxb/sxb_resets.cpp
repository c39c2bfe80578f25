#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

/// The LCPLL is reset only by a receiver that is in use.
ruleDeclarer usedReceiverLcpllReset(unsigned int lane) {
    return [lane](rule_declaration& rule) {
        const auto laneNumber = rule.reads<unsigned int>("LaneNum");
        const auto pllType = rule.reads<std::string>("RX_PLL_TYPE");
        const auto inUse = rule.reads<bool>("RX_IN_USE");
        const auto powerDown = rule.reads<bool>("INT_LCPLL_POWERDOWN");
        rule.gives([=] {
            const bool isReset =
                laneNumber() == lane && pllType() == "LCPLL" && inUse() && !powerDown();
            return isReset ? 1U : 0U;
        });
    };
}

ruleDeclarer dividerReset(unsigned int lane, const laneSide& side) {
    return [lane, side](rule_declaration& rule) {
        const auto laneNumber = rule.reads<unsigned int>("LaneNum");
        const auto source = rule.reads<std::string>(side.parameter("OUTCLK_SOURCE"));
        const std::string programmable = side.within({}, "PROGDIVCLK");
        rule.gives([=] { return laneNumber() == lane && source() == programmable ? 1U : 0U; });
    };
}

}  // namespace

ruleDeclarer pllReset(unsigned int lane, const laneSide& side, std::string_view pll) {
    return [lane, side, pll = std::string(pll)](rule_declaration& rule) {
        const auto laneNumber = rule.reads<unsigned int>("LaneNum");
        const auto pllType = rule.reads<std::string>(side.parameter("PLL_TYPE"));
        const auto powerDown = rule.reads<bool>("INT_" + pll + "_POWERDOWN");
        rule.gives(
            [=] { return laneNumber() == lane && pllType() == pll && !powerDown() ? 1U : 0U; });
    };
}

void addBufferRules(logicRules& rules) {
    for (const laneSide& side : {transmitSide, receiveSide}) {
        const std::string bufferMode = side.parameter("BUFFER_MODE");
        rules.emplace(side.within("PIPE_CTRL_CFG1.", "SYNC_EN"), byNumber(bufferMode, 0, 1));
        rules.emplace(side.within("PIPE_CTRL_CFG10.PIPE_", "SYNC_RST_MASK"),
                      byNumber(bufferMode, 0, 1));
        rules.emplace(side.within("FABRIC_INTF_CFG3.A_", "_PHALIGN_RESETMASK"),
                      byNumber(bufferMode, 0, 1));
    }
    rules.emplace("PIPE_CTRL_CFG10.PIPE_TXDAPI_RST_MASK", byNumber("TX_BUFFER_MODE", 2, 3));
}

void addResetEnableRules(logicRules& rules) {
    for (unsigned int lane = 0; lane < channelsOfQuad; ++lane) {
        const std::string channel = "CH" + std::to_string(lane);
        const std::string master = "MST_RESET_CFG." + channel;
        rules.emplace(master + "_LCPLL_RESET_EN", pllReset(lane, transmitSide, "LCPLL"));
        rules.emplace(master + "_RPLL_RESET_EN", pllReset(lane, transmitSide, "RPLL"));
        rules.emplace(master + "_RX_LCPLL_RESET_EN", usedReceiverLcpllReset(lane));
        rules.emplace("CTRL_RSV_CFG0." + channel + "_RX_RPLL_RESET_EN",
                      pllReset(lane, receiveSide, "RPLL"));
        rules.emplace(master + "_TX_PROGDIV_RESET_EN", dividerReset(lane, transmitSide));
        rules.emplace(master + "_RX_PROGDIV_RESET_EN", dividerReset(lane, receiveSide));
    }
}

}  // namespace sable_lanecfg
