#include "families/sxb/sxb_outclock.h"

#include "families/common/rule_arithmetic.h"

#include <array>
#include <cmath>
#include <limits>

namespace sable_lanecfg {

namespace {

/// By selector code.
constexpr std::array<const char*, 8> referenceNames{"",
                                                    "GTREFCLK0",
                                                    "GTREFCLK1",
                                                    "NORTHREFCLK0",
                                                    "NORTHREFCLK1",
                                                    "SOUTHREFCLK0",
                                                    "SOUTHREFCLK1",
                                                    "GTGREFCLK"};

}  // namespace

pllPair<double> readPllClocks(rule_declaration& rule) {
    return {rule.reads<double>("INT_LCPLL_PLLCLKOUT"), rule.reads<double>("INT_RPLL_PLLCLKOUT")};
}

pllPair<double> readReferenceFrequencies(rule_declaration& rule) {
    return {rule.reads<double>("INT_LCPLL_REFCLKFREQ"), rule.reads<double>("INT_RPLL_REFCLKFREQ")};
}

pllPair<unsigned int> readReferenceSelectors(rule_declaration& rule) {
    return {rule.reads<unsigned int>("LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL"),
            rule.reads<unsigned int>("RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL")};
}

std::string referenceSource(bool ofLcpll, const pllPair<unsigned int>& selectors) {
    const unsigned int selector = selectors.of(ofLcpll);
    const std::string pll = ofLcpll ? "LCPLL" : "RPLL";
    return selector < referenceNames.size() ? pll + referenceNames[selector] : pll;
}

double wordFrequency(double lineRate, unsigned int bits) {
    return bits == 0 ? std::numeric_limits<double>::infinity() : lineRate * 1000.0 / bits;
}

bool transmitDividerSelects::dividesLcpll() const {
    if (takesRpll()) {
        return false;
    }
    const bool followsPllClock = programmableClock() == 1 || bypassesInterpolator() == 1;
    return (followsPllClock ? pllClock() : oscillatorSource()) == 1;
}

double programmablePath::clock() const {
    return pllClock / divider / (bypassesAligner ? 1.0 : 2.0) / outputDivider;
}

unsigned int programmablePath::clocksPerWord(double lineRate, unsigned int bits) const {
    if (bits == 0) {
        return 0;
    }
    return truncated(std::round(clock() / (lineRate / bits))) * outputDivider;
}

}  // namespace sable_lanecfg
