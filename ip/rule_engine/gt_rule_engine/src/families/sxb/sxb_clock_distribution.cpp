#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <string>

namespace sable_lanecfg {

namespace {

// Upper ends (GHz), not included, of the phase interpolator's bands.
constexpr double lowBandEnd = 7.0;
constexpr double middleBandEnd = 12.0;
constexpr unsigned int lowBand = 0;
// Band 1 is never chosen.
constexpr unsigned int middleBand = 2;
constexpr unsigned int highBand = 3;

/// Above this clock (GHz) the lane's ILO needs its boost.
constexpr double highestPlainOscillatorClock = 14.105;

void halfRateDistribution(rule_declaration& rule) {
    const auto clockRate = rule.reads<std::string>("INT_LCPLLCLKOUTRATE");
    rule.gives([=] { return clockRate() == "FULL" ? 0U : 1U; });
}

ruleDeclarer interpolatorBand(const laneSide& side) {
    return [side](rule_declaration& rule) {
        const auto pll = rule.reads<std::string>(side.parameter("PLL_TYPE"));
        const auto lcpllClock = rule.reads<double>("INT_LCPLL_PLLCLKOUT");
        const auto clockRate = rule.reads<std::string>("INT_LCPLLCLKOUTRATE");
        const auto rpllClock = rule.reads<double>("INT_RPLL_PLLCLKOUT");
        const auto clock = [=] {
            if (pll() != "LCPLL") {
                return rpllClock();
            }
            return clockRate() == "HALF" ? lcpllClock() / 2.0 : lcpllClock();
        };
        rule.gives([=] {
            const double present = clock();
            if (present < lowBandEnd) {
                return lowBand;
            }
            return present < middleBandEnd ? middleBand : highBand;
        });
    };
}

/// The lane's ILO follows the PLL of the receiver unless only the transmitter is in use.
void oscillatorSource(rule_declaration& rule) {
    const auto transmitInUse = rule.reads<bool>("TX_IN_USE");
    const auto receiveInUse = rule.reads<bool>("RX_IN_USE");
    const auto transmitPll = rule.reads<std::string>("TX_PLL_TYPE");
    const auto receivePll = rule.reads<std::string>("RX_PLL_TYPE");
    rule.gives([=] {
        const bool followsTransmitter = transmitInUse() && !receiveInUse();
        return (followsTransmitter ? transmitPll() : receivePll()) == "LCPLL" ? 1U : 0U;
    });
}

void oscillatorBoost(rule_declaration& rule) {
    const auto source = rule.reads<unsigned int>("CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL");
    const auto lcpllClock = rule.reads<double>("INT_LCPLL_PLLCLKOUT");
    const auto rpllClock = rule.reads<double>("INT_RPLL_PLLCLKOUT");
    rule.gives([=] {
        const double clock = source() == 1 ? lcpllClock() : rpllClock();
        return clock > highestPlainOscillatorClock ? 1U : 0U;
    });
}

/// Source of the transmitter's programmable clock.
void programmableClockSource(rule_declaration& rule) {
    const auto interpolator = rule.reads<bool>("TX_PIPM_ENABLE");
    const auto dividerEnabled = rule.reads<bool>("TXPROGDIV_FREQ_ENABLE");
    const auto dividerSource = rule.reads<std::string>("TXPROGDIV_FREQ_SOURCE");
    rule.gives([=] {
        if (interpolator()) {
            return 0U;
        }
        return dividerEnabled() && dividerSource() == "RPLL" ? 2U : 1U;
    });
}

void interpolatorBypass(rule_declaration& rule) {
    const auto bufferMode = rule.reads<unsigned int>("TX_BUFFER_MODE");
    const auto interpolator = rule.reads<bool>("TX_PIPM_ENABLE");
    rule.gives([=] { return bufferMode() != 0 && !interpolator() ? 1U : 0U; });
}

}  // namespace

void addClockDistributionRules(logicRules& rules) {
    rules.emplace("HSDIST_CFG.HSDIST_DIV2SEL", halfRateDistribution);
    rules.emplace("CHCLK_TXPI_CFG0.TXPI_BAND_SEL", interpolatorBand(transmitSide));
    rules.emplace("CHCLK_RXPI_CFG.RXPI_BAND_SEL", interpolatorBand(receiveSide));
    rules.emplace("CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", oscillatorSource);
    rules.emplace("CHCLK_ILO_CFG.RESERVED_BIT17", oscillatorBoost);
    rules.emplace("RESET_CFG.ILORESET_PLLLOCK_SEL", oneAt("CHCLK_ILO_CFG.CHCLK_CLKSRCMUX_SEL", 0));
    rules.emplace("CHCLK_TXPI_CFG0.TX_PROGCLK_SEL", programmableClockSource);
    rules.emplace("CHCLK_TXPI_CFG0.TXPI_BYPASS", interpolatorBypass);
    rules.emplace("CHCLK_TXPI_CFG0.TX_PLLCLK_SEL", oneForWord("TX_PLL_TYPE", "LCPLL"));
}

}  // namespace sable_lanecfg
