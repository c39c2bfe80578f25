#include "families/common/rule_shapes.h"
#include "families/sxb/sxb_pll_rule_groups.h"

#include <array>
#include <string>

namespace sable_lanecfg {

namespace {

// Line rates of the PCIe generations (Gb/s).
constexpr double pcieFirstGeneration = 2.5;
constexpr double pcieSecondGeneration = 5.0;
constexpr double pcieThirdGeneration = 8.0;
constexpr double pcieFourthGeneration = 16.0;

bool isSlowPcieRate(double lineRate) {
    return lineRate == pcieFirstGeneration || lineRate == pcieSecondGeneration;
}

bool isFastPcieRate(double lineRate) {
    return lineRate == pcieThirdGeneration || lineRate == pcieFourthGeneration;
}

/// Filter resistance by oscillator clock, a row for a range of feedback dividers.
struct resistance_row {
    unsigned int highestFeedback;
    std::array<unsigned int, 5> codes;
};

/// Upper ends (GHz), not included, of the columns but the last.
constexpr std::array<double, 4> oscillatorColumns{9.0, 11.0, 13.0, 15.0};

constexpr std::array<resistance_row, 7> resistanceRows{{
    {19, {80, 178, 178, 0, 0}},
    {39, {127, 149, 149, 231, 254}},
    {59, {78, 92, 74, 104, 80}},
    {79, {8, 102, 77, 113, 113}},
    {104, {60, 67, 8, 118, 90}},
    {139, {33, 41, 60, 74, 74}},
    {160, {0, 50, 63, 78, 78}},
}};

constexpr unsigned int resistanceBeyondTable = 56;
constexpr unsigned int fastPcieResistance = 16;
constexpr unsigned int slowPcieResistance = 5;

std::size_t oscillatorColumn(double oscillator) {
    std::size_t column = 0;
    while (column < oscillatorColumns.size() && !(oscillator < oscillatorColumns[column])) {
        ++column;
    }
    return column;
}

unsigned int tableResistance(unsigned int feedback, double oscillator) {
    for (const resistance_row& row : resistanceRows) {
        if (feedback <= row.highestFeedback) {
            return row.codes[oscillatorColumn(oscillator)];
        }
    }
    return resistanceBeyondTable;
}

void filterResistance(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto lineRate = rule.reads<double>("TX_LINE_RATE");
    const auto clock = rule.reads<double>("INT_LCPLL_PLLCLKOUT");
    const auto clockRate = rule.reads<std::string>("INT_LCPLLCLKOUTRATE");
    const auto feedback = rule.reads<unsigned int>("INT_LCPLL_FBDIV");
    rule.gives([=] {
        if (pcie() && isFastPcieRate(lineRate())) {
            return fastPcieResistance;
        }
        if (pcie() && isSlowPcieRate(lineRate())) {
            return slowPcieResistance;
        }
        const double oscillator = clockRate() == "FULL" ? clock() : 2.0 * clock();
        return tableResistance(feedback(), oscillator);
    });
}

void chargePump(rule_declaration& rule) {
    constexpr unsigned int strongest = 255;
    constexpr unsigned int withFraction = 3;
    constexpr unsigned int withoutFraction = 15;
    const auto fraction = rule.reads<unsigned int>("INT_LCPLL_SDMDATA");
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto lineRate = rule.reads<double>("TX_LINE_RATE");
    rule.gives([=] {
        if (pcie() && (isSlowPcieRate(lineRate()) || isFastPcieRate(lineRate()))) {
            return strongest;
        }
        return fraction() != 0 ? withFraction : withoutFraction;
    });
}

void firstCapacitor(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto lineRate = rule.reads<double>("TX_LINE_RATE");
    rule.gives([=] { return pcie() && isSlowPcieRate(lineRate()) ? 0U : 1U; });
}

constexpr unsigned int longResetDelay = 148;
/// PCIe has no time for the long reset.
constexpr unsigned int pcieResetDelay = 1;

}  // namespace

void addLcpllFilterRules(logicRules& rules) {
    rules.emplace("LCPLL_CFG0.LCPLL_CP", chargePump);
    rules.emplace("LCPLL_CFG2.LCPLL_LFT_CP1", firstCapacitor);
    rules.emplace("LCPLL_CFG2.LCPLL_LFT_CP2", byNumber("INT_LCPLL_SDMDATA", 2, 0));
    rules.emplace("LCPLL_CFG2.LCPLL_LFT_RP", byNumber("INT_LCPLL_SDMDATA", 1, 0));
    rules.emplace("LCPLL_CFG2.LCPLL_LFT_RZ", filterResistance);
    rules.emplace("LCPLL_LGC_CFG1.BYPASS", byNumber("INT_LCPLL_SDMDATA", 0, 1));
    rules.emplace("LCPLL_LGC_CFG1.PLL_RESET_DLY_TIME",
                  byFlag("PCIE_ENABLE", pcieResetDelay, longResetDelay));
    rules.emplace("LCPLL_LGC_CFG2.REFCLK_ID", sameNumber("INT_LCPLL_REFCLK_ID"));
}

}  // namespace sable_lanecfg
