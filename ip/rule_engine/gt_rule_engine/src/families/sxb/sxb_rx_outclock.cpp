#include "families/common/data_widths.h"
#include "families/sxb/sxb_outclock.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_rx_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

/// What the report of the receiver's output clock is made of.
class receive_outclock {
  public:
    explicit receive_outclock(rule_declaration& rule)
        : clockSource_(rule.reads<unsigned int>("CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL")),
          widthCode_(rule.reads<unsigned int>("RX_PCS_CFG0.RX_DATA_WIDTH")),
          lineRate_(rule.reads<double>("RX_LINE_RATE")),
          pllClocks_(readPllClocks(rule)),
          control_(rule.reads<unsigned int>("PIPE_CTRL_CFG7.RXOUTCLKCTL")),
          programmableDivider_(rule.reads<double>("INT_RXPROGDIV_SEL")),
          outputDivider_(outputDividerBehindUnread(rule)),
          references_(readReferenceFrequencies(rule)),
          bypassesAligner_(rule.reads<unsigned int>("PIPE_CTRL_CFG7.RX_DA_BYP")),
          referenceSelect_(rule.reads<unsigned int>("DA_CFG.RX_DA_REFCLK_SEL")),
          selectors_(readReferenceSelectors(rule)),
          transmitOutclock_(rule.reads<double>("INT_TXOUTCLK_FREQ")) {}

    unsigned int control() const { return control_(); }
    double lineRate() const { return lineRate_(); }
    unsigned int bits() const { return bitsOfWidthCode(widthCode_()); }
    double selectedReference() const { return references_.of(referenceSelect_() == 1); }

    programmablePath path() const {
        return {pllClocks_.of(usesLcpll()), programmableDivider_(), bypassesAligner_() == 1,
                outputDivider_()};
    }

    /// The receiver's test signal is the transmitter's output clock.
    double testSignal() const { return transmitOutclock_(); }

    double referenceFrequency() const { return references_.of(usesLcpll()); }

    std::string source() const { return referenceSource(usesLcpll(), selectors_); }

  private:
    /// The output divider of the PLL has no part in the report but is settled before it.
    static rule_input<unsigned int> outputDividerBehindUnread(rule_declaration& rule) {
        rule.alsoDeclares("INT_RX_OUTDIV");
        return rule.reads<unsigned int>("INT_RXOUTCLKDIV_FOR_PROGDIV_PATH");
    }

    bool usesLcpll() const { return clockSource_() == 1; }

    rule_input<unsigned int> clockSource_;
    rule_input<unsigned int> widthCode_;
    rule_input<double> lineRate_;
    pllPair<double> pllClocks_;
    rule_input<unsigned int> control_;
    rule_input<double> programmableDivider_;
    rule_input<unsigned int> outputDivider_;
    pllPair<double> references_;
    rule_input<unsigned int> bypassesAligner_;
    rule_input<unsigned int> referenceSelect_;
    pllPair<unsigned int> selectors_;
    rule_input<double> transmitOutclock_;
};

}  // namespace

ruleDeclarer receiveOutclockReport(outclockContent content) {
    return outclockReport<receive_outclock>(receiveSide, content);
}

void addRxOutclockRules(logicRules& rules) {
    rules[std::string(sxb_rx_step::outclockReport)] =
        receiveOutclockReport(outclockContent::clockAndReference);
}

}  // namespace sable_lanecfg
