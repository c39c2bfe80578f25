#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_rx_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

/// Loss of the channel, in dB, from which on the equaliser needs feedback.
constexpr double leastLossForFeedback = 15.0;
/// Gb/s.
constexpr double leastRateWithoutXMode = 10.4;

void equaliserMode(rule_declaration& rule) {
    const auto chosen = rule.reads<std::string>("RX_EQ_MODE");
    const auto loss = rule.reads<float>("INS_LOSS_NYQ");
    const auto mode = rule.writes<std::string>("INT_RX_EQ_MODE");
    rule.body([=] {
        if (chosen() == "AUTO") {
            mode.set(loss() >= leastLossForFeedback ? "DFE" : "LPM");
        } else {
            mode.set(chosen());
        }
    });
}

/// One value with decision feedback, another without.
ruleDeclarer byFeedback(const std::string& modeName, unsigned int withFeedback,
                        unsigned int without) {
    return [=](rule_declaration& rule) {
        const auto mode = rule.reads<std::string>(modeName);
        rule.gives([=] { return mode() == "DFE" ? withFeedback : without; });
    };
}

ruleDeclarer xModeSelect(const std::string& modeName) {
    return [modeName](rule_declaration& rule) {
        const auto mode = rule.reads<std::string>(modeName);
        const auto rate = rule.reads<double>("RX_LINE_RATE");
        rule.gives([=] { return mode() == "DFE" && rate() < leastRateWithoutXMode ? 1U : 0U; });
    };
}

/// Full power in every mode and at every rate; the rule still waits for what once decided it.
ruleDeclarer fullPower(const std::string& modeName) {
    return [modeName](rule_declaration& rule) {
        rule.alsoDeclares("PCIE_ENABLE");
        rule.alsoDeclares("TX_LINE_RATE");
        rule.alsoDeclares(modeName);
        rule.gives([] { return 0U; });
    };
}

}  // namespace

logicRules equaliserFieldRules(const std::string& modeName) {
    return {{"ADAPT_GEN_CFG0.gc1_disloop", byFeedback(modeName, 0, 1)},
            {"ADAPT_KH_CFG0.khcdeg_mshift", byFeedback(modeName, 2, 12)},
            {"ADAPT_KL_CFG0.kl_mshift", byFeedback(modeName, 1, 12)},
            {"ADAPT_KL_CFG0.kl_initdac", byFeedback(modeName, 16, 15)},
            {"RX_MISC_CFG0.RX_XMODE_SEL", xModeSelect(modeName)},
            {"RX_CTLE_CFG0.RX_AGC1_LOW_PWR", fullPower(modeName)},
            {"RX_CTLE_CFG0.RX_AGC2_LOW_PWR", fullPower(modeName)},
            {"RX_CTLE_CFG0.RX_CTLE1_LOW_PWR", fullPower(modeName)}};
}

void addRxEqualiserRules(logicRules& rules) {
    rules[std::string(sxb_rx_step::equaliserMode)] = equaliserMode;
    for (const auto& [name, rule] : equaliserFieldRules("INT_RX_EQ_MODE")) {
        addRule(rules, name, rule);
    }
}

}  // namespace sable_lanecfg
