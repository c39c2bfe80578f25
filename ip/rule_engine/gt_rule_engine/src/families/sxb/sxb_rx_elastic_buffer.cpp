#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_rx_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

constexpr code_table<unsigned int, 3> sequenceLengths{{{1, 0}, {2, 1}, {4, 3}}};

/// How far the reference may be off the partner's: 0 not at all, 1 by an offset, 2 spread too.
void referenceMode(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto spread = rule.reads<unsigned int>("RX_SSC_PPM");
    const auto offset = rule.reads<unsigned int>("RX_PPM_OFFSET");
    const auto mode = rule.writes("INT_PHY_REFCLK_MODE");
    rule.body([=] {
        if (!pcie() || offset() == 0) {
            mode.set(0);
        } else {
            mode.set(spread() != 0 ? 2 : 1);
        }
    });
}

void enableFor8b10b(rule_declaration& rule) {
    // Two names run into one: a variable of that name orders nothing and is never read.
    rule.alsoDeclares("RX_BUFFER_MODERX_DATA_DECODING");
    const auto bufferMode = rule.peeks<unsigned int>("RX_BUFFER_MODE");
    const auto coding = rule.peeks<std::string>("RX_DATA_DECODING");
    const auto corrections = rule.reads<unsigned int>("RX_CC_NUM_SEQ");
    const auto bonds = rule.reads<unsigned int>("RX_CB_NUM_SEQ");
    const auto spread = rule.reads<unsigned int>("RX_SSC_PPM");
    const auto offset = rule.reads<unsigned int>("RX_PPM_OFFSET");
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    rule.gives([=] {
        const bool hasWork =
            corrections() != 0 || bonds() != 0 || spread() != 0 || offset() != 0 || pcie();
        return bufferMode() == 1 && coding() == "8B10B" && hasWork ? 1U : 0U;
    });
}

/// The plain buffer stands in when no elastic one does the work.
void phaseBufferUse(rule_declaration& rule) {
    const auto for8b10b = rule.reads<unsigned int>("RX_ELASTIC_BUF_CFG0.ELASTICBUF_8B10B_EN");
    const auto wide = rule.reads<unsigned int>("RX_ELASTIC_BUF_CFG8.ELASTICBUF_128B130B_EN");
    const auto narrow = rule.reads<unsigned int>("RX_ELASTIC_BUF_CFG9.EB128B130B_16_EN");
    const auto bufferMode = rule.reads<unsigned int>("RX_BUFFER_MODE");
    const auto asynchronous = rule.reads<unsigned int>("INT_RX_ASYNC_GEARBOX_EN");
    rule.gives([=] {
        const bool elastic = for8b10b() != 0 || wide() != 0 || narrow() != 0;
        return !elastic && bufferMode() != 0 && asynchronous() == 0 ? 1U : 0U;
    });
}

void thresholdOverride(rule_declaration& rule) {
    const auto corrections = rule.reads<unsigned int>("RX_CC_NUM_SEQ");
    const auto bonds = rule.reads<unsigned int>("RX_CB_NUM_SEQ");
    const auto bufferMode = rule.reads<unsigned int>("RX_BUFFER_MODE");
    const auto coding = rule.reads<std::string>("RX_DATA_DECODING");
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    rule.gives([=] {
        const bool overrides = corrections() == 0 && bonds() == 0 && bufferMode() != 0 &&
                               coding() != "64B66B_ASYNC" && coding() != "64B66B_ASYNC_CAUI";
        return overrides || pcie() ? 1U : 0U;
    });
}

struct bufferThresholds {
    unsigned int overflow;
    unsigned int latency;  ///< of a buffer without correction and bonding
    unsigned int underflow;
};

bufferThresholds pcieThresholds(unsigned int referenceMode) {
    switch (referenceMode) {
        case 2:
            return {63, 1, 8};
        case 1:
            return {31, 1, 8};
        default:
            return {31, 1, 1};
    }
}

bufferThresholds overriddenThresholds(unsigned int bytes) {
    switch (bytes) {
        case 2:
            return {61, 1, 1};
        case 4:
            return {57, 3, 3};
        case 8:
            return {49, 7, 7};
        default:
            return {0, 0, 0};
    }
}

void thresholds(rule_declaration& rule) {
    const auto overrides = rule.reads<unsigned int>("RX_ELASTIC_BUF_CFG0.EB8B10B_THRESH_OVRD");
    const auto bytes = rule.reads<unsigned int>("INT_WID");
    const auto mode = rule.reads<unsigned int>("INT_PHY_REFCLK_MODE");
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto overflow = rule.writes("RX_ELASTIC_BUF_CFG0.EB8B10B_OVFL_THRESH");
    const auto latency = rule.writes("INT_UND_NO_CC_CB");
    const auto underflow = rule.writes("RX_ELASTIC_BUF_CFG0.EB8B10B_UDFL_THRESH");
    rule.body([=] {
        bufferThresholds chosen{0, 3 * bytes() - 2, 4};
        if (overrides() != 0) {
            chosen = pcie() ? pcieThresholds(mode()) : overriddenThresholds(bytes());
        }
        overflow.set(chosen.overflow);
        latency.set(chosen.latency);
        underflow.set(chosen.underflow);
    });
}

void addressMode(rule_declaration& rule) {
    const auto corrections = rule.reads<unsigned int>("RX_CC_NUM_SEQ");
    const auto bonds = rule.reads<unsigned int>("RX_CB_NUM_SEQ");
    rule.gives([=] { return corrections() == 0 && bonds() == 0 ? 1U : 0U; });
}

void addCorrectionSettings(logicRules& rules) {
    rules["RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_USE"] = byNumber("RX_CC_NUM_SEQ", 1, 0);
    rules["RX_ELASTIC_BUF_CFG3.EB8B10B_CLK_COR_SEQ_2_USE"] = oneAt("RX_CC_NUM_SEQ", 2);
    rules["RX_ELASTIC_BUF_CFG2.EB8B10B_CLK_COR_SEQ_LEN"] =
        codeOfVariable<unsigned int>("RX_CC_LEN_SEQ", sequenceLengths);
    rules["RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_REPEAT_WAIT"] = sameNumber("RX_CC_REPEAT_WAIT");
    rules["RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_KEEP_IDLE"] =
        oneForWord("RX_CC_KEEP_IDLE", "ENABLE");
    rules["RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_PRECEDENCE"] =
        oneForWord("RX_CC_PRECEDENCE", "ENABLE");
}

void addBondingSettings(logicRules& rules) {
    rules["RX_ELASTIC_BUF_CFG7.EB8B10B_CHAN_BOND_EN"] = byNumber("RX_CB_NUM_SEQ", 1, 0);
    rules["RX_ELASTIC_BUF_CFG5.EB8B10B_CHAN_BOND_SEQ_2_USE"] = oneAt("RX_CB_NUM_SEQ", 2);
    rules["RX_ELASTIC_BUF_CFG4.EB8B10B_CHAN_BOND_SEQ_LEN"] =
        codeOfVariable<unsigned int>("RX_CB_LEN_SEQ", sequenceLengths);
    rules["RX_ELASTIC_BUF_CFG7.EB8B10B_CHAN_BOND_MAX_SKEW"] = sameNumber("RX_CB_MAX_SKEW");
}

}  // namespace

ruleDeclarer enableFor128b130b(unsigned int internalWidth) {
    return [internalWidth](rule_declaration& rule) {
        const auto coding = rule.reads<std::string>("RX_DATA_DECODING");
        const auto offset = rule.reads<unsigned int>("RX_PPM_OFFSET");
        const auto spread = rule.reads<unsigned int>("RX_SSC_PPM");
        const auto pcie = rule.reads<bool>("PCIE_ENABLE");
        const auto width = rule.reads<unsigned int>("RX_INT_DATA_WIDTH");
        rule.gives([=] {
            const bool hasWork = offset() != 0 || spread() != 0 || pcie();
            return coding() == "128B130B" && hasWork && width() == internalWidth ? 1U : 0U;
        });
    };
}

void addRxElasticBufferRules(logicRules& rules) {
    rules[std::string(sxb_rx_step::referenceMode)] = referenceMode;
    rules["RX_ELASTIC_BUF_CFG0.ELASTICBUF_8B10B_EN"] = enableFor8b10b;
    rules["RX_ELASTIC_BUF_CFG8.ELASTICBUF_128B130B_EN"] = enableFor128b130b(32);
    rules["RX_ELASTIC_BUF_CFG9.EB128B130B_16_EN"] = enableFor128b130b(16);
    rules["RX_PCS_CFG2.RX_PHASE_BUFFER_USE"] = phaseBufferUse;
    rules["RX_ELASTIC_BUF_CFG0.EB8B10B_THRESH_OVRD"] = thresholdOverride;
    rules["RX_ELASTIC_BUF_CFG0.EB8B10B_OVFL_THRESH"] = thresholds;
    rules["RX_ELASTIC_BUF_CFG7.EB8B10B_ADDR_MODE"] = addressMode;
    addCorrectionSettings(rules);
    addBondingSettings(rules);
}

}  // namespace sable_lanecfg
