#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_binary_text.h"
#include "families/sxb/sxb_rx_rule_groups.h"

#include <string>
#include <string_view>

namespace sable_lanecfg {

namespace {

constexpr code_table<std::string_view, 4> slideModes{
    {{"OFF", 0}, {"AUTO", 1}, {"PCS", 2}, {"PMA", 3}}};

void commaEnables(rule_declaration& rule) {
    const auto slideMode = rule.reads<std::string>("RX_SLIDE_MODE");
    const auto minus = rule.reads<bool>("RX_COMMA_M_ENABLE");
    const auto plus = rule.reads<bool>("RX_COMMA_P_ENABLE");
    const auto detects = rule.writes("RX_PCS_CFG0.RX_COMMADETEN");
    const auto alignsMinus = rule.writes("RX_PCS_CFG0.RX_MCOMMA_ALIGNEN");
    const auto alignsPlus = rule.writes("RX_PCS_CFG0.RX_PCOMMA_ALIGNEN");
    const auto alignerDetectsPlus = rule.writes("RX_PCS_CFG0.RX_ALIGN_PCOMMA_DET");
    const auto alignerDetectsMinus = rule.writes("RX_PCS_CFG0.RX_ALIGN_MCOMMA_DET");
    const auto decoderDetectsPlus = rule.writes("RX_PCS_CFG2.RX_DEC_PCOMMA_DET");
    const auto decoderDetectsMinus = rule.writes("RX_PCS_CFG2.RX_DEC_MCOMMA_DET");
    rule.body([=] {
        detects.set(slideMode() != "OFF" || minus() || plus() ? 1 : 0);
        for (const auto& field : {alignsMinus, alignerDetectsMinus, decoderDetectsMinus}) {
            field.set(minus() ? 1 : 0);
        }
        for (const auto& field : {alignsPlus, alignerDetectsPlus, decoderDetectsPlus}) {
            field.set(plus() ? 1 : 0);
        }
    });
}

/// The number that a parameter of binary digits writes out.
ruleDeclarer binaryNumber(const std::string& parameter) {
    return [parameter](rule_declaration& rule) {
        const auto digits = rule.reads<std::string>(parameter);
        rule.gives([=] { return leadingBinaryNumber(digits()); });
    };
}

void showRealignComma(rule_declaration& rule) {
    const auto slideMode = rule.reads<std::string>("RX_SLIDE_MODE");
    const auto doubleComma = rule.reads<bool>("RX_COMMA_DOUBLE_ENABLE");
    rule.gives([=] { return slideMode() == "OFF" && !doubleComma() ? 1U : 0U; });
}

}  // namespace

void addRxCommaRules(logicRules& rules) {
    rules["RX_PCS_CFG0.RX_COMMADETEN"] = commaEnables;
    rules["RX_PCS_CFG0.RX_ALIGN_PCOMMA_VAL"] = binaryNumber("RX_COMMA_P_VAL");
    rules["RX_PCS_CFG0.RX_ALIGN_MCOMMA_VAL"] = binaryNumber("RX_COMMA_M_VAL");
    rules["RX_PCS_CFG1.RX_ALIGN_COMMA_ENABLE"] = binaryNumber("RX_COMMA_MASK");
    rules["RX_PCS_CFG1.RX_ALIGN_COMMA_WORD"] = sameNumber("RX_COMMA_ALIGN_WORD");
    rules["RX_PCS_CFG1.RX_SLIDE_MODE"] = codeOfVariable<std::string>("RX_SLIDE_MODE", slideModes);
    rules["RX_PCS_CFG1.RX_SHOW_REALIGN_COMMA"] = showRealignComma;
}

}  // namespace sable_lanecfg
