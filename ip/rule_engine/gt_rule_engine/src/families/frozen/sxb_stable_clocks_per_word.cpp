#include "families/frozen/sxb_stable_rule_groups.h"
#include "families/sxb/sxb_coding.h"
#include "families/sxb/sxb_outclock.h"

#include <string>

namespace sable_lanecfg {

namespace {

/// What the clocks of a word depend on in both directions.
class divided_clock {
  public:
    divided_clock(rule_declaration& rule, const laneSide& side)
        : control_(rule.reads<unsigned int>(side.within("PIPE_CTRL_CFG7.", "OUTCLKCTL"))),
          widthCode_(rule.reads<unsigned int>(side.within({}, "_PCS_CFG0.") +
                                              side.parameter("DATA_WIDTH"))),
          lineRate_(rule.reads<double>(side.parameter("LINE_RATE"))),
          programmableDivider_(rule.reads<double>(side.within("INT_", "PROGDIV_SEL"))),
          outputDivider_(
              rule.reads<unsigned int>(side.within("INT_", "OUTCLKDIV_FOR_PROGDIV_PATH"))),
          bypassesAligner_(rule.reads<unsigned int>(side.within("PIPE_CTRL_CFG7.", "_DA_BYP"))),
          pllClocks_(readPllClocks(rule)) {}

    /// `dividesLcpll` tells which PLL is divided; it is asked only if one is.
    template <class DividesLcpll>
    unsigned int clocksPerWord(const DividesLcpll& dividesLcpll) const {
        if (control_() != outclockOfProgrammableDivider) {
            return 0;
        }
        const programmablePath path{pllClocks_.of(dividesLcpll()), programmableDivider_(),
                                    bypassesAligner_() == 1, outputDivider_()};
        return path.clocksPerWord(lineRate_(), bitsOfWidthCode(widthCode_()));
    }

  private:
    rule_input<unsigned int> control_;
    rule_input<unsigned int> widthCode_;
    rule_input<double> lineRate_;
    rule_input<double> programmableDivider_;
    rule_input<unsigned int> outputDivider_;
    rule_input<unsigned int> bypassesAligner_;
    pllPair<double> pllClocks_;
};

}  // namespace

void stableReceiveClocksPerWord(rule_declaration& rule) {
    const divided_clock clock(rule, receiveSide);
    const auto oscillatorSource = rule.reads<unsigned int>("CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL");
    const auto clocksPerWord = rule.writes("RX_PHALIGN_CFG0.DAPI_BUFG_DIV");
    rule.body(
        [=] { clocksPerWord.set(clock.clocksPerWord([&] { return oscillatorSource() == 1; })); });
}

void stableTransmitClocksPerWord(rule_declaration& rule) {
    const divided_clock clock(rule, transmitSide);
    const transmitDividerSelects selects{
        rule.reads<unsigned int>("CHCLK_TXPI_CFG0.TX_PROGCLK_SEL"),
        rule.reads<unsigned int>("CHCLK_TXPI_CFG0.TX_PLLCLK_SEL"),
        rule.reads<unsigned int>("CHCLK_TXPI_CFG0.TXPI_BYPASS"),
        rule.reads<unsigned int>("CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL")};
    const auto clocksPerWord = rule.writes("TX_PHALIGN_CFG0.DAPI_BUFG_DIV");
    rule.body(
        [=] { clocksPerWord.set(clock.clocksPerWord([&] { return selects.dividesLcpll(); })); });
}

}  // namespace sable_lanecfg
