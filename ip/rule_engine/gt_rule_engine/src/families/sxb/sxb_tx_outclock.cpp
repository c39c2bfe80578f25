#include "families/common/data_widths.h"
#include "families/sxb/sxb_outclock.h"
#include "families/sxb/sxb_tx_catalogue.h"
#include "families/sxb/sxb_tx_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

/// What the report of the transmitter's output clock is made of.
class transmit_outclock {
  public:
    explicit transmit_outclock(rule_declaration& rule)
        : control_(rule.reads<unsigned int>("PIPE_CTRL_CFG7.TXOUTCLKCTL")),
          widthCode_(rule.reads<unsigned int>("TX_PCS_CFG0.TX_DATA_WIDTH")),
          referenceSelect_(rule.reads<unsigned int>("DA_CFG.TX_DA_REFCLK_SEL")),
          bypassesAligner_(rule.reads<unsigned int>("PIPE_CTRL_CFG7.TX_DA_BYP")),
          programmableClockSelect_(rule.reads<unsigned int>("CHCLK_TXPI_CFG0.TX_PROGCLK_SEL")),
          pllClockSelect_(rule.reads<unsigned int>("CHCLK_TXPI_CFG0.TX_PLLCLK_SEL")),
          outputDivider_(rule.reads<unsigned int>("INT_TXOUTCLKDIV_FOR_PROGDIV_PATH")),
          programmableDivider_(rule.reads<double>("INT_TXPROGDIV_SEL")),
          lineRate_(rule.reads<double>("TX_LINE_RATE")),
          references_(readReferenceFrequencies(rule)),
          pllClocks_(readPllClocks(rule)),
          bypassesInterpolator_(rule.reads<unsigned int>("CHCLK_TXPI_CFG0.TXPI_BYPASS")),
          clockSource_(rule.reads<unsigned int>("CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL")),
          selectors_(readReferenceSelectors(rule)) {}

    unsigned int control() const { return control_(); }
    double lineRate() const { return lineRate_(); }
    unsigned int bits() const { return bitsOfWidthCode(widthCode_()); }
    double selectedReference() const { return references_.of(referenceSelect_() == 1); }

    programmablePath path() const {
        return {pllClocks_.of(dividerSelects().dividesLcpll()), programmableDivider_(),
                bypassesAligner_() == 1, outputDivider_()};
    }

    /// The transmitter's test signal is no clock.
    static double testSignal() { return frequencyOfNoClock; }

    double referenceFrequency() const { return references_.of(reportsLcpll()); }

    std::string source() const { return referenceSource(reportsLcpll(), selectors_); }

  private:
    /// The PLL of the programmable divider need not be the one reported.
    transmitDividerSelects dividerSelects() const {
        return {programmableClockSelect_, pllClockSelect_, bypassesInterpolator_, clockSource_};
    }

    bool reportsLcpll() const {
        switch (control_()) {
            case outclockOfCodingLayer:
            case outclockOfAnalogueLayer:
                return pllClockSelect_() == 1;
            case outclockOfProgrammableDivider:
                return !dividerSelects().takesRpll() && pllClockSelect_() == 1;
            default:
                return referenceSelect_() == 1;
        }
    }

    rule_input<unsigned int> control_;
    rule_input<unsigned int> widthCode_;
    rule_input<unsigned int> referenceSelect_;
    rule_input<unsigned int> bypassesAligner_;
    rule_input<unsigned int> programmableClockSelect_;
    rule_input<unsigned int> pllClockSelect_;
    rule_input<unsigned int> outputDivider_;
    rule_input<double> programmableDivider_;
    rule_input<double> lineRate_;
    pllPair<double> references_;
    pllPair<double> pllClocks_;
    rule_input<unsigned int> bypassesInterpolator_;
    rule_input<unsigned int> clockSource_;
    pllPair<unsigned int> selectors_;
};

}  // namespace

ruleDeclarer transmitOutclockReport(outclockContent content) {
    return outclockReport<transmit_outclock>(transmitSide, content);
}

void addTxOutclockRules(logicRules& rules) {
    rules[std::string(sxb_tx_step::outclockReport)] =
        transmitOutclockReport(outclockContent::clockAndReference);
}

}  // namespace sable_lanecfg
