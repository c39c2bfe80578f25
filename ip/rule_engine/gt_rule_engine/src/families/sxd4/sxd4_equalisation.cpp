#include "families/sxd4/sxd4_rule_groups.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace sable_lanecfg {

namespace {

// Stand-in for the hardware's tables, which are not known: how much a line asks of the equaliser is
// one number, and each field rises with it. To put the real tables in, replace the limits and the
// rows.

/// Insertion losses (dB) from which on the equaliser has to do one step more.
constexpr std::array<float, 4> lossSteps{10.0F, 15.0F, 20.0F, 25.0F};
/// A symbol rate (GHz) from which on the same loss asks for one step more.
constexpr double highSymbolRate = 20.0;
/// PAM4 has a third of the eye, which is one step more.
constexpr std::size_t mostSteps = lossSteps.size() + 2;

struct equalisationField {
    std::string_view name;
    std::array<unsigned int, mostSteps + 1> values;  ///< by step
};

constexpr std::array<equalisationField, 7> equalisationFields{
    {{"RX_CTLE_CFG0.CTLE_BIAS_CTRL_CODE", {0, 1, 2, 3, 4, 5, 6}},
     {"RX_ANA_CFG0.CTLE_HF1_RCAL_ENB", {0, 0, 0, 0, 1, 1, 1}},
     {"RX_ANA_CFG0.CTLE_HF2_RCAL_ENB", {0, 0, 1, 1, 1, 1, 1}},
     {"RX_CTLE_CFG2.CTLE_EXT_RDEG_CTRL", {0, 1, 2, 3, 4, 5, 6}},
     {"RX_CTLE_CFG1.AGC_EXT_RL_CTRL", {0, 0, 1, 1, 2, 2, 3}},
     {"RX_CTLE_CFG1.CTLE_MF_EXT_RL_CTRL", {0, 0, 0, 1, 1, 2, 2}},
     {"RX_APT_CFG11A.RATIO_ADJ", {0, 2, 4, 6, 8, 10, 12}}}};

std::size_t stepsOfLoss(float loss) {
    const auto passed = std::count_if(lossSteps.begin(), lossSteps.end(),
                                      [loss](float step) { return loss >= step; });
    return static_cast<std::size_t>(passed);
}

/// A looped back signal never leaves the device.
ruleDeclarer equalisation(const equalisationField& field) {
    return [&field](rule_declaration& rule) {
        const auto loopback = rule.reads<bool>("TEST_LOOPBACK");
        const auto loss = rule.reads<float>("INS_LOSS_NYQ");
        const auto symbolRate = rule.reads<double>("INT_RX_BAUD_RATE");
        const auto pamSelection = rule.reads<unsigned int>("RX_PAM_SEL");
        rule.gives([=, values = &field.values] {
            if (loopback()) {
                return values->front();
            }
            const std::size_t steps = stepsOfLoss(loss()) +
                                      (symbolRate() >= highSymbolRate ? 1 : 0) +
                                      (pamSelection() == 0 ? 1 : 0);
            return (*values)[steps];
        });
    };
}

}  // namespace

void addSxd4EqualisationRules(logicRules& rules) {
    for (const equalisationField& field : equalisationFields) {
        rules.emplace(field.name, equalisation(field));
    }
}

}  // namespace sable_lanecfg
