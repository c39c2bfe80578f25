#include "families/sxb/sxb_lane_alignment.h"

#include "families/common/rule_arithmetic.h"
#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_coding.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace sable_lanecfg {

namespace {

constexpr std::array<unsigned int, 30> phaseCountSteps{
    0,   6,   8,   16,  20,  24,  28,  32,  40,  48,  56,  64,  72,  80,  96,
    120, 132, 140, 156, 168, 172, 180, 196, 200, 216, 228, 232, 248, 250, 254};

constexpr unsigned int phasesOfClock = 32;

constexpr code_table<std::string_view, 3> chainModes{{{"top", 1}, {"bottom", 2}, {"middle", 3}}};

/// Tells whether the asynchronous gearbox does the alignment by itself: it does where a user word
/// is two internal ones.
class gearbox_alignment {
  public:
    gearbox_alignment(rule_declaration& rule, const laneSide& side)
        : ratio_(rule, side), coding_(rule.reads<std::string>(std::string(side.coding))) {}

    /// Asks for the ratio first, so that there is no answer without an internal width.
    bool operator()() const { return ratio_() == 2 && coding_() == asynchronousGearbox; }

  private:
    width_ratio ratio_;
    rule_input<std::string> coding_;
};

/// The initial phase count of a single lane and of a lane among many.
ruleDeclarer phaseCounts(const laneSide& side, const std::string& singleLaneField,
                         const std::string& multiLaneField) {
    return [=](rule_declaration& rule) {
        const auto clocksPerWord =
            rule.reads<unsigned int>(side.within({}, "_PHALIGN_CFG0.DAPI_BUFG_DIV"));
        const auto singleLane = rule.writes(singleLaneField);
        const auto multiLane = rule.writes(multiLaneField);
        rule.body([=] {
            const unsigned int count = initialPhaseCount(clocksPerWord() * phasesOfClock);
            singleLane.set(count);
            multiLane.set(count);
        });
    };
}

/// How the lane takes part in the alignment.
ruleDeclarer synchronisationMode(const laneSide& side) {
    return [=](rule_declaration& rule) {
        const auto position = rule.reads<std::string>(side.parameter("SYNCDONE_POSITION"));
        const auto maintainsMaster = rule.reads<bool>(side.parameter("MAINTAIN_MASTER"));
        const auto bypassMode = rule.reads<std::string>(side.parameter("BUFFER_BYPASS_MODE"));
        const gearbox_alignment gearboxAligns(rule, side);
        rule.gives([=] {
            if (gearboxAligns()) {
                return 0U;
            }
            if (position() == "IM") {
                return 1U;
            }
            return maintainsMaster() && bypassMode() != "Fast_Sync" ? 2U : 0U;
        });
    };
}

/// The lane's place in the chain of its lanes.
ruleDeclarer chainMode(const laneSide& side) {
    return [=](rule_declaration& rule) {
        const auto position = rule.reads<std::string>(side.parameter("PIPE_POSITION"));
        const gearbox_alignment gearboxAligns(rule, side);
        rule.gives([=] { return gearboxAligns() ? 0U : codeOf(chainModes, position()); });
    };
}

}  // namespace

void addLaneAlignmentRules(logicRules& rules, const laneSide& side,
                           const std::string& multiLaneCount) {
    const auto field = [&side](std::string_view rest) {
        return side.within({}, std::string("_PHALIGN_CFG").append(rest));
    };
    const std::string bufferMode = side.parameter("BUFFER_MODE");
    for (const std::string& ofBypass : {field("0.DLY_ALIGN_EN"), field("0.PH_ALIGN_EN"),
                                        field("0.") + side.within({}, "BUF_BYPASS_MODE")}) {
        rules[ofBypass] = byNumber(bufferMode, 0, 1);
    }
    rules[field("0.SYNC_MULTI_LANE")] = zeroForWord(side.parameter("SYNCDONE_POSITION"), "single");
    rules[field("0.SYNC_MODE")] = synchronisationMode(side);
    rules[field("1.CHAIN_MODE")] = chainMode(side);
    rules[field("1.ASYNC_GBOX_PHALIGN_EN")] =
        oneForWord(std::string(side.coding), std::string(asynchronousGearbox));
    rules[field("1.SETINIT_PH_CNT")] = phaseCounts(side, field("1.SETINIT_PH_CNT"), multiLaneCount);
}

unsigned int initialPhaseCount(unsigned int position) {
    const auto beyond = std::upper_bound(phaseCountSteps.begin(), phaseCountSteps.end(), position);
    // The first step is 0, so it is always reached.
    return static_cast<unsigned int>(beyond - phaseCountSteps.begin()) - 1;
}

ruleDeclarer zeroForWord(const std::string& textName, const std::string& word) {
    return [=](rule_declaration& rule) {
        const auto text = rule.reads<std::string>(textName);
        rule.gives([=] { return text() == word ? 0U : 1U; });
    };
}

}  // namespace sable_lanecfg
