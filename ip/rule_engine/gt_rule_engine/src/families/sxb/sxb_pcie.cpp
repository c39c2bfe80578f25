#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

// Clocks (MHz) that the fabric's buffers divide the programmable clock down to.
constexpr double firstGenerationPipeClock = 125.0;
constexpr double pipeClock = 250.0;
constexpr double widePipeClock = 500.0;
/// Internal width with which the third generation runs at the faster pipe clock.
constexpr unsigned int thirdGenerationNarrowWidth = 16;
/// PCIe generation from which the controller calibrates PLL and ILO.
constexpr unsigned int firstCalibratedRate = 2;

// Programmable clocks (MHz) whose pipe clock must not be divided while overridden.
constexpr double firstUndividedClock = 625.0;
constexpr double secondUndividedClock = 781.25;

/// Field of a divider, which divides by one more. The difference is one of single precision.
unsigned int bufferDividerField(double clock, double wanted) {
    return truncated(static_cast<float>(clock / wanted) - 1.0F);
}

/// Divider field of a buffer, 0 without PCIe.
class buffer_divider {
  public:
    explicit buffer_divider(rule_declaration& rule)
        : pcie_(rule.reads<bool>("PCIE_ENABLE")),
          clock_(rule.reads<double>("TXPROGDIV_FREQ_VAL")) {}

    /// `wanted` is a function that gives the clock (MHz) behind the buffer.
    template <class Wanted>
    unsigned int operator()(const Wanted& wanted) const {
        return pcie_() ? bufferDividerField(clock_(), wanted()) : 0U;
    }

  private:
    rule_input<bool> pcie_;
    rule_input<double> clock_;
};

void firstGenerationDivider(rule_declaration& rule) {
    const buffer_divider divider(rule);
    const auto intermediate = rule.writes("INT_BUFGTDIV_G1_PIPECLK");
    const auto field = rule.writes("PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK");
    rule.body([=] {
        const unsigned int value = divider([] { return firstGenerationPipeClock; });
        intermediate.set(value);
        field.set(value);
    });
}

ruleDeclarer generationDivider(double wanted) {
    return [wanted](rule_declaration& rule) {
        const buffer_divider divider(rule);
        rule.gives([=] { return divider([=] { return wanted; }); });
    };
}

void thirdGenerationDivider(rule_declaration& rule) {
    const buffer_divider divider(rule);
    const auto width = rule.reads<unsigned int>("GEN3_INT_DATA_WIDTH");
    const auto wanted = [=] {
        return width() == thirdGenerationNarrowWidth ? widePipeClock : pipeClock;
    };
    rule.gives([=] { return divider(wanted); });
}

ruleDeclarer userClockDivider(const std::string& frequencyName) {
    return [frequencyName](rule_declaration& rule) {
        const buffer_divider divider(rule);
        const auto frequency = rule.reads<float>(frequencyName);
        rule.gives([=] { return divider([=] { return static_cast<double>(frequency()); }); });
    };
}

void overriddenDivider(rule_declaration& rule) {
    const auto divider = rule.reads<unsigned int>("INT_BUFGTDIV_G1_PIPECLK");
    const auto clock = rule.reads<double>("TXPROGDIV_FREQ_VAL");
    rule.gives([=] {
        const bool isUndivided = clock() == firstUndividedClock || clock() == secondUndividedClock;
        return isUndivided ? 0U : divider();
    });
}

void rateOutputClock(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto source = rule.reads<std::string>("TXPROGDIV_FREQ_SOURCE");
    rule.gives([=] { return pcie() && source() == "LCPLL" ? 1U : 0U; });
}

void controllerCalibration(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto highestRate = rule.reads<unsigned int>("MAX_RATE");
    rule.gives([=] { return pcie() && highestRate() >= firstCalibratedRate ? 1U : 0U; });
}

/// Receive rates of their own; PCIe always changes both directions.
void receiveRateEnable(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto laneMode = rule.reads<std::string>("LaneTxRxMode");
    rule.gives([=] { return !pcie() && laneMode() != "txrx_rate_together" ? 1U : 0U; });
}

void recoveryHold(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto bufferMode = rule.reads<unsigned int>("RX_BUFFER_MODE");
    rule.gives([=] { return pcie() && bufferMode() == 0 ? 1U : 0U; });
}

void recoveryReferenceMode(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto offset = rule.reads<unsigned int>("RX_PPM_OFFSET");
    rule.gives([=] { return pcie() && offset() != 0 ? 1U : 0U; });
}

}  // namespace

ruleDeclarer firstGenerationBufferDivider() {
    return generationDivider(firstGenerationPipeClock);
}

void addPcieRules(logicRules& rules) {
    rules.emplace("PIPE_CTRL_CFG0.PCIE_MODE", byFlag("PCIE_ENABLE", 1, 0));
    rules.emplace("PIPE_CTRL_CFG8.CDR_CTRL_EN", byFlag("PCIE_ENABLE", 1, 0));
    rules.emplace("PIPE_CTRL_CFG8.PMA_OOB_CLKDIV_VAL", byFlag("PCIE_ENABLE", 1, 0));
    rules.emplace("PIPE_CTRL_CFG7.RXPD_IND_CONTROL", byFlag("PCIE_ENABLE", 0, 1));
    rules.emplace("PIPE_CTRL_CFG7.RATE_USE_LCPLL_OUTCLK_ESM56", rateOutputClock);
    rules.emplace("PIPE_CTRL_CFG5.BUFGTDIV_G1_PIPECLK", firstGenerationDivider);
    rules.emplace("PIPE_CTRL_CFG5.BUFGTDIV_G2_PIPECLK", generationDivider(pipeClock));
    rules.emplace("PIPE_CTRL_CFG5.BUFGTDIV_G3_PIPECLK", thirdGenerationDivider);
    rules.emplace("PIPE_CTRL_CFG5.BUFGTDIV_G4_PIPECLK", generationDivider(widePipeClock));
    rules.emplace("PIPE_CTRL_CFG5.BUFGTDIV_USERCLK", userClockDivider("PCIE_USERCLK_FREQ"));
    rules.emplace("PIPE_CTRL_CFG5.BUFGTDIV_USERCLK2", userClockDivider("PCIE_USERCLK2_FREQ"));
    rules.emplace("PIPE_CTRL_CFG6.BUFGTDIV_PIPECLK_OVRD", overriddenDivider);
    rules.emplace("PIPE_CTRL_CFG1.UCORE_PLL_ILO_CAL_EN", controllerCalibration);
    rules.emplace("PIPE_CTRL_CFG4.RX_RATE_EN", receiveRateEnable);
    rules.emplace("PIPE_CTRL_CFG8.CDR_CTRL_HOLDCDR_RX_PHALIGN", recoveryHold);
    rules.emplace("PIPE_CTRL_CFG8.CDR_CTRL_REFCLK_MODE", recoveryReferenceMode);
}

}  // namespace sable_lanecfg
