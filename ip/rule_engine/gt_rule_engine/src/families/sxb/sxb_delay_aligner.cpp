#include "families/common/outclock_control.h"
#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_coding.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

constexpr code_table<unsigned int, 14> alignerDividerCodes{{{1, 0},
                                                            {2, 1},
                                                            {3, 2},
                                                            {4, 3},
                                                            {6, 4},
                                                            {8, 5},
                                                            {12, 6},
                                                            {16, 7},
                                                            {24, 8},
                                                            {32, 9},
                                                            {48, 10},
                                                            {64, 11},
                                                            {96, 12},
                                                            {128, 13}}};

/// Control code of a receiver that is aligned together with the transmitter.
constexpr unsigned int commonAlignmentControl = 6;
constexpr unsigned int commonAlignmentMode = 3;

/// Above this clock (GHz) the delay aligner works in its high range.
constexpr double highestLowRangeClock = 1.0;

/// Delay aligners pass a buffered transmitter by, but raw data whose programmable clock comes from
/// another PLL than the receiver's goes through.
void transmitAlignerBypass(rule_declaration& rule) {
    const auto bufferMode = rule.reads<unsigned int>("TX_BUFFER_MODE");
    const auto clockSource = rule.reads<std::string>("TX_OUTCLK_SOURCE");
    const auto coding = rule.reads<std::string>("TX_DATA_ENCODING");
    const auto transmitPll = rule.reads<std::string>("TX_PLL_TYPE");
    const auto receivePll = rule.reads<std::string>("RX_PLL_TYPE");
    const auto position = rule.reads<std::string>("TX_SYNCDONE_POSITION");
    const width_ratio ratio(rule, transmitSide);
    rule.gives([=] {
        if (bufferMode() != 0) {
            const bool isRawClock = clockSource() == "TXPROGDIVCLK" && coding() == "RAW";
            return !isRawClock || transmitPll() == receivePll() ? 1U : 0U;
        }
        return coding() == asynchronousGearbox && position() != "single" && ratio() == 2 ? 1U : 0U;
    });
}

/// The clock of one direction that goes out beside or through the delay aligner.
class aligner_clock {
  public:
    aligner_clock(rule_declaration& rule, const laneSide& side)
        : coding_(rule.reads<std::string>(std::string(side.coding))),
          ratio_(rule, side),
          source_(rule.reads<std::string>(side.parameter("OUTCLK_SOURCE"))),
          pathDivider_(rule.reads<unsigned int>(side.within("INT_", "OUTCLKDIV_FOR_PROGDIV_PATH"))),
          pmaClock_(side.within({}, "OUTCLKPMA")),
          pcsClock_(side.within({}, "OUTCLKPCS")),
          programmableClock_(side.within({}, "PROGDIVCLK")) {}

    std::string coding() const { return coding_(); }
    /// User width on the line in internal widths.
    unsigned int ratio() const { return ratio_.onLine(coding_()); }
    unsigned int pathDivider() const { return pathDivider_(); }
    bool isProgrammable() const { return source_() == programmableClock_; }

    /// Divider of a clock that is not programmable.
    unsigned int fixedDivider(unsigned int ratio) const {
        const bool isInternal = source_() == pmaClock_ || source_() == pcsClock_;
        return isInternal && ratio == 2 ? 2U : 1U;
    }

  private:
    rule_input<std::string> coding_;
    width_ratio ratio_;
    rule_input<std::string> source_;
    rule_input<unsigned int> pathDivider_;
    std::string pmaClock_;
    std::string pcsClock_;
    std::string programmableClock_;
};

ruleDeclarer bypassDivider(const laneSide& side) {
    return [side](rule_declaration& rule) {
        const aligner_clock clock(rule, side);
        rule.gives([=] {
            const unsigned int fixed = clock.fixedDivider(clock.ratio());
            return codeOf(alignerDividerCodes,
                          clock.isProgrammable() ? clock.pathDivider() : fixed);
        });
    };
}

ruleDeclarer alignerDivider(const laneSide& side) {
    return [side](rule_declaration& rule) {
        const aligner_clock clock(rule, side);
        const auto position = rule.reads<std::string>(side.parameter("SYNCDONE_POSITION"));
        const auto bypassMode = rule.reads<std::string>(side.parameter("BUFFER_BYPASS_MODE"));
        const auto bypass = rule.reads<unsigned int>(side.within("PIPE_CTRL_CFG7.", "_DA_BYP"));
        const auto keepsMaster = rule.reads<bool>(side.parameter("MAINTAIN_MASTER"));
        const auto programmable = [=](unsigned int ratio) {
            const unsigned int divider = clock.pathDivider();
            if (clock.coding() == asynchronousGearbox && position() != "single" && ratio == 2) {
                return divider / 4;
            }
            const bool isDoubled =
                ratio == 2 && bypassMode() != "Fast_Sync" && bypass() == 0 && keepsMaster();
            return isDoubled ? 2 * divider : divider;
        };
        rule.gives([=] {
            const unsigned int ratio = clock.ratio();
            return codeOf(alignerDividerCodes,
                          clock.isProgrammable() ? programmable(ratio) : clock.fixedDivider(ratio));
        });
    };
}

void receiveClockControl(rule_declaration& rule) {
    const auto source = rule.reads<std::string>("RX_OUTCLK_SOURCE");
    const auto alignmentMode = rule.reads<unsigned int>("RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE");
    rule.gives([=] {
        return alignmentMode() == commonAlignmentMode ? commonAlignmentControl
                                                      : codeOf(receiveClockControlCodes, source());
    });
}

/// Power of the delay aligner; a bypassed one is needed only by the wide asynchronous gearbox.
ruleDeclarer alignerPower(const laneSide& side) {
    return [side](rule_declaration& rule) {
        const auto bypass = rule.reads<unsigned int>(side.within("PIPE_CTRL_CFG7.", "_DA_BYP"));
        const auto coding = rule.reads<std::string>(std::string(side.coding));
        const width_ratio ratio(rule, side);
        rule.gives([=] {
            const bool isNeeded =
                bypass() == 0 || (coding() == asynchronousGearbox && ratio() == 2);
            return isNeeded ? 1U : 0U;
        });
    };
}

ruleDeclarer alignerRange(const laneSide& side) {
    return [side](rule_declaration& rule) {
        const auto clock = rule.reads<double>(side.within("INT_FREQ_INTO_", "_DA"));
        rule.gives([=] { return clock() > highestLowRangeClock ? 1U : 0U; });
    };
}

}  // namespace

ruleDeclarer delayAlignerBypass(const laneSide& side) {
    return [side](rule_declaration& rule) {
        const auto bufferMode = rule.reads<unsigned int>(side.parameter("BUFFER_MODE"));
        const auto coding = rule.reads<std::string>(std::string(side.coding));
        const auto position = rule.reads<std::string>(side.parameter("SYNCDONE_POSITION"));
        const width_ratio ratio(rule, side);
        rule.gives([=] {
            const bool isBypassed = bufferMode() != 0 || (coding() == asynchronousGearbox &&
                                                          position() != "single" && ratio() == 2);
            return isBypassed ? 1U : 0U;
        });
    };
}

void addDelayAlignerRules(logicRules& rules) {
    rules.emplace("PIPE_CTRL_CFG7.TX_DA_BYP", transmitAlignerBypass);
    rules.emplace("PIPE_CTRL_CFG7.RX_DA_BYP", delayAlignerBypass(receiveSide));
    rules.emplace("PIPE_CTRL_CFG7.TXOUTCLKCTL",
                  codeOfVariable<std::string>("TX_OUTCLK_SOURCE", transmitClockControlCodes));
    rules.emplace("PIPE_CTRL_CFG7.RXOUTCLKCTL", receiveClockControl);
    for (const laneSide& side : {transmitSide, receiveSide}) {
        rules.emplace(side.within("PIPE_CTRL_CFG7.", "_DABYP_DIVSEL"), bypassDivider(side));
        rules.emplace(side.within("PIPE_CTRL_CFG7.", "_DA_DIVSEL"), alignerDivider(side));
        rules.emplace(side.within("DA_CFG.", "_DA_PWRDNB"), alignerPower(side));
        rules.emplace(side.within("DA_CFG.", "_DA_REFCLK_SEL"),
                      oneForWord(side.parameter("PLL_TYPE"), "LCPLL"));
        rules.emplace(side.within("DA_CFG.", "_DA_RANGE"), alignerRange(side));
    }
}

}  // namespace sable_lanecfg
