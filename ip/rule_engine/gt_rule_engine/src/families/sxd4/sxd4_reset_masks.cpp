#include "families/sxd4/sxd4_pll_catalogue.h"
#include "families/sxd4/sxd4_rule_groups.h"

#include <array>

namespace sable_lanecfg {

namespace {

/// What a reset of the receiver's PCS and PMA reaches: bit 0 is itself, bit 1 what else belongs to
/// it.
struct receiveMasks {
    unsigned int codingLayer;
    unsigned int analogueLayer;
};

/// Stand-in for the masks of the hardware, which are not known. Rows are without and with error
/// correction, columns without and with a reset sequence of the signal processor's own; more of
/// either never clears a bit.
constexpr std::array<std::array<receiveMasks, 2>, 2> receiveMasksOfUse{
    {{{{1, 1}, {1, 3}}}, {{{3, 1}, {3, 3}}}}};

void receiveResetMasks(rule_declaration& rule) {
    const auto mode = rule.reads<unsigned int>("RX_FEC_MODE");
    const auto sequence = rule.reads<unsigned int>("DSP_RESET_SEQ");
    const auto codingLayer = rule.writes("RXPCSRESETMASK");
    const auto analogueLayer = rule.writes("RXPMARESETMASK");
    rule.body([=] {
        const auto& row = receiveMasksOfUse[mode() == 0 ? 0 : 1];
        const receiveMasks& masks = row[sequence() == 0 ? 0 : 1];
        codingLayer.set(masks.codingLayer);
        analogueLayer.set(masks.analogueLayer);
    });
}

void transmitResetMasks(rule_declaration& rule) {
    const auto mode = rule.reads<unsigned int>("TX_FEC_MODE");
    const auto codingLayer = rule.writes("TXPCSRESETMASK");
    const auto analogueLayer = rule.writes("TXPMARESETMASK");
    rule.body([=] {
        codingLayer.set(mode());
        analogueLayer.set(mode());
    });
}

}  // namespace

void addSxd4ResetMaskRules(logicRules& rules) {
    rules.emplace(sxd4_pll_step::transmitResetMasks, transmitResetMasks);
    rules.emplace(sxd4_pll_step::receiveResetMasks, receiveResetMasks);
}

}  // namespace sable_lanecfg
