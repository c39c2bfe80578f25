#include "families/common/data_widths.h"
#include "families/common/outclock_control.h"
#include "families/frozen/sxb_stable_rule_groups.h"
#include "families/sxb/sxb_outclock.h"

namespace sable_lanecfg {

namespace {

/// What the clocks of a word depend on in both directions, beside the choice of the PLL.
struct divided_clock {
    rule_input<unsigned int> control;
    rule_input<unsigned int> widthCode;
    rule_input<double> lineRate;
    rule_input<double> programmableDivider;
    rule_input<unsigned int> outputDivider;
    rule_input<unsigned int> bypassesAligner;
    pllPair<double> pllClocks;

    /// `dividesLcpll` tells which PLL is divided; it is asked only if one is.
    template <class DividesLcpll>
    unsigned int clocksPerWord(const DividesLcpll& dividesLcpll) const {
        if (control() != outclockOfProgrammableDivider) {
            return 0;
        }
        const programmablePath path{pllClocks.of(dividesLcpll()), programmableDivider(),
                                    bypassesAligner() == 1, outputDivider()};
        return path.clocksPerWord(lineRate(), bitsOfWidthCode(widthCode()));
    }
};

void declareReferenceFrequencies(rule_declaration& rule) {
    rule.alsoDeclares("INT_LCPLL_REFCLKFREQ");
    rule.alsoDeclares("INT_RPLL_REFCLKFREQ");
}

}  // namespace

// Both declare what the current reports declare and the frozen set has, in the order of those, so
// that they wait for the same rules; each reads less of it.

void stableReceiveClocksPerWord(rule_declaration& rule) {
    const auto oscillatorSource = rule.reads<unsigned int>("CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL");
    const auto widthCode = rule.reads<unsigned int>("RX_PCS_CFG0.RX_DATA_WIDTH");
    const auto lineRate = rule.reads<double>("RX_LINE_RATE");
    const pllPair<double> pllClocks = readPllClocks(rule);
    const auto control = rule.reads<unsigned int>("PIPE_CTRL_CFG7.RXOUTCLKCTL");
    const auto programmableDivider = rule.reads<double>("INT_RXPROGDIV_SEL");
    rule.alsoDeclares("INT_RX_OUTDIV");
    const auto outputDivider = rule.reads<unsigned int>("INT_RXOUTCLKDIV_FOR_PROGDIV_PATH");
    declareReferenceFrequencies(rule);
    const auto bypassesAligner = rule.reads<unsigned int>("PIPE_CTRL_CFG7.RX_DA_BYP");
    rule.alsoDeclares("DA_CFG.RX_DA_REFCLK_SEL");
    const auto clocksPerWord = rule.writes("RX_PHALIGN_CFG0.DAPI_BUFG_DIV");
    const divided_clock clock{control,       widthCode,       lineRate, programmableDivider,
                              outputDivider, bypassesAligner, pllClocks};
    rule.body(
        [=] { clocksPerWord.set(clock.clocksPerWord([&] { return oscillatorSource() == 1; })); });
}

void stableTransmitClocksPerWord(rule_declaration& rule) {
    const auto control = rule.reads<unsigned int>("PIPE_CTRL_CFG7.TXOUTCLKCTL");
    const auto widthCode = rule.reads<unsigned int>("TX_PCS_CFG0.TX_DATA_WIDTH");
    rule.alsoDeclares("DA_CFG.TX_DA_REFCLK_SEL");
    const auto bypassesAligner = rule.reads<unsigned int>("PIPE_CTRL_CFG7.TX_DA_BYP");
    const auto programmableClock = rule.reads<unsigned int>("CHCLK_TXPI_CFG0.TX_PROGCLK_SEL");
    const auto pllClock = rule.reads<unsigned int>("CHCLK_TXPI_CFG0.TX_PLLCLK_SEL");
    const auto outputDivider = rule.reads<unsigned int>("INT_TXOUTCLKDIV_FOR_PROGDIV_PATH");
    const auto programmableDivider = rule.reads<double>("INT_TXPROGDIV_SEL");
    const auto lineRate = rule.reads<double>("TX_LINE_RATE");
    declareReferenceFrequencies(rule);
    const pllPair<double> pllClocks = readPllClocks(rule);
    const auto bypassesInterpolator = rule.reads<unsigned int>("CHCLK_TXPI_CFG0.TXPI_BYPASS");
    const auto oscillatorSource = rule.reads<unsigned int>("CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL");
    const auto clocksPerWord = rule.writes("TX_PHALIGN_CFG0.DAPI_BUFG_DIV");
    const divided_clock clock{control,       widthCode,       lineRate, programmableDivider,
                              outputDivider, bypassesAligner, pllClocks};
    const transmitDividerSelects selects{programmableClock, pllClock, bypassesInterpolator,
                                         oscillatorSource};
    rule.body(
        [=] { clocksPerWord.set(clock.clocksPerWord([&] { return selects.dividesLcpll(); })); });
}

}  // namespace sable_lanecfg
