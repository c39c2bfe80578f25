#include "families/common/rule_shapes.h"
#include "families/sxd4/sxd4_rule_groups.h"

#include <array>
#include <string>

namespace sable_lanecfg {

namespace {

/// The words hold both channels of the block, and a channel writes its mode for both: which of them
/// is whose is settled when the attributes are put together.
ruleDeclarer correctionOfBothChannels(const laneSide& side) {
    return [side](rule_declaration& rule) {
        const auto mode = rule.reads<unsigned int>(side.parameter("FEC_MODE"));
        const auto field = [&](const std::string& before, const std::string& after) {
            return rule.writes(side.within(before, after));
        };
        const std::array modes{field("FEC_CFG0.CTL_", "0_MODE"), field("FEC_CFG0.CTL_", "1_MODE")};
        const std::array bypasses{field("FEC_CFG3.FEC_", "0_BYPASS"),
                                  field("FEC_CFG3.FEC_", "1_BYPASS")};
        rule.body([=] {
            for (const auto& output : modes) {
                output.set(mode());
            }
            for (const auto& output : bypasses) {
                output.set(mode() == 0 ? 1 : 0);
            }
        });
    };
}

}  // namespace

void addSxd4ErrorCorrectionRules(logicRules& rules) {
    rules.emplace("FEC_CFG0.CTL_RX0_MODE", correctionOfBothChannels(receiveSide));
    rules.emplace("FEC_CFG0.CTL_TX0_MODE", correctionOfBothChannels(transmitSide));
    rules.emplace("FEC_CFG1.FRM_LNGTH_SLICE0", sameNumber("RX_FEC_MODE"));
    rules.emplace("FEC_CFG2.FRM_LNGTH_SLICE1", sameNumber("RX_FEC_MODE"));
}

}  // namespace sable_lanecfg
