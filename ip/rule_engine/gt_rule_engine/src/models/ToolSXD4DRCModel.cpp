#include "clocking_domains.h"
#include "models/offered_clocks.h"
#include "models/output_divider_enable.h"
#include "models/parameter_values.h"
#include "models/reference_clock_offer.h"
#include "models/update_procedure.h"

#include <lanecfg/ToolSXD4DRCModel.h>
#include <lanecfg/rule_engine_utilities.h>

#include <array>
#include <set>
#include <string>
#include <vector>

using namespace sable_lanecfg;
using namespace sable_lanecfg::models;

namespace {

// Directions are "TX" and "RX", with which the names of their parameters begin.

/// A line is PAM4 unless it says otherwise.
bool isPam4(const updater& record, const std::string& direction) {
    const std::string lineCoding = textOf(record, direction + "_PAM_SEL");
    return lineCoding.empty() || lineCoding == "PAM4";
}

/// Symbols of the transmitter's line in GHz, for which the PLL of both directions is set.
double symbolRate(const updater& record) {
    const double lineRate = numberOf(record, "TX_LINE_RATE", 0.0);
    return isPam4(record, "TX") ? lineRate * 0.5 : lineRate;
}

double requestedReferenceClock(const updater& record) {
    return numberOf(record, "REQUESTED_REFCLK_FREQ", 0.0);
}

void updateFractionNumerator(updater& record) {
    const bool tooFast = symbolRate(record) > clocking::sxdPll::fractionalCeiling;
    record.enabled = !tooFast;
    if (tooFast) {
        setValue(record, "FRACN_NUMERATOR", "0");
    }
}

void updateFractionEnabled(updater& record) {
    setFlag(record, "FRACN_ENABLED",
            rule_engine_utilities::fracNEnable_SXD(symbolRate(record),
                                                   requestedReferenceClock(record)));
    record.enabled = false;
}

void updateActualReferenceClock(updater& record) {
    constexpr int decimals = 12;
    const double actual = rule_engine_utilities::calculateActualRefclk_SXD(
        symbolRate(record), requestedReferenceClock(record));
    setValue(record, "ACTUAL_REFCLK_FREQ", fixedText(actual, decimals));
    record.enabled = false;
}

void updateRequestedReferenceClock(updater& record) {
    constexpr clocking::interval limits = clocking::closedInterval(60.0, 820.0);
    const double rate = symbolRate(record);
    const double numerator = numberOf(record, "FRACN_NUMERATOR", 0.0);
    const std::array<int, 1> lineDivider{rate > clocking::sxdPll::halvingThreshold ? 1 : 2};
    referenceClockOffer offer(limits);
    walkFractionalPll(rate, numerator, clocking::lowestFractionalFeedback, lineDivider, offer);
    offer.writeTo(record, "REQUESTED_REFCLK_FREQ");
}

using FindClocks = std::set<double> (*)(double lineRate, int notPam4, double intDataWidth);

/// The clocks are offered whether the divider is enabled or not.
void updateOutputClock(updater& record, const std::string& direction, FindClocks findClocks) {
    constexpr double defaultLineRate = 56.0;
    constexpr double defaultDataWidth = 128.0;
    constexpr int decimals = 10;
    const double lineRate = numberOf(record, direction + "_LINE_RATE", defaultLineRate);
    const double width = numberOf(record, direction + "_INT_DATA_WIDTH", defaultDataWidth);
    const std::string divider = direction + "PROGDIV";
    record.enabled = isTrue(record, divider + "_FREQ_ENABLE");
    record.range.clear();
    offerOutputClocks(record, divider + "_FREQ_VAL",
                      findClocks(lineRate, isPam4(record, direction) ? 0 : 1, width), decimals,
                      lineRate * 1000.0 / width);
}

void updateTxOutputClock(updater& record) {
    updateOutputClock(record, "TX", rule_engine_utilities::findTXOUTCLKlist_SXD);
}

void updateRxOutputClock(updater& record) {
    updateOutputClock(record, "RX", rule_engine_utilities::findRXOUTCLKlist_SXD);
}

std::vector<updateProcedure> updateProcedures() {
    return {
        {"FRACN_NUMERATOR",
         {"TX_LINE_RATE", "FRACN_NUMERATOR", "TX_PAM_SEL"},
         updateFractionNumerator},
        {"REQUESTED_REFCLK_FREQ",
         {"TX_LINE_RATE", "FRACN_NUMERATOR", "REQUESTED_REFCLK_FREQ", "TX_PAM_SEL"},
         updateRequestedReferenceClock},
        {"ACTUAL_REFCLK_FREQ",
         {"TX_LINE_RATE", "REQUESTED_REFCLK_FREQ", "ACTUAL_REFCLK_FREQ", "TX_PAM_SEL"},
         updateActualReferenceClock},
        {"FRACN_ENABLED",
         {"TX_LINE_RATE", "REQUESTED_REFCLK_FREQ", "FRACN_ENABLED", "TX_PAM_SEL"},
         updateFractionEnabled},
        {"TXPROGDIV_FREQ_ENABLE",
         {"TX_OUTCLK_SOURCE", "TXPROGDIV_FREQ_ENABLE"},
         updateTxOutputDividerEnable},
        {"TXPROGDIV_FREQ_VAL",
         {"ACTUAL_REFCLK_FREQ", "TX_LINE_RATE", "TX_INT_DATA_WIDTH", "TX_OUTCLK_SOURCE",
          "TXPROGDIV_FREQ_ENABLE", "TXPROGDIV_FREQ_VAL", "TX_PAM_SEL"},
         updateTxOutputClock},
        {"RXPROGDIV_FREQ_ENABLE",
         {"RX_OUTCLK_SOURCE", "RXPROGDIV_FREQ_ENABLE"},
         updateRxOutputDividerEnable},
        {"RXPROGDIV_FREQ_VAL",
         {"RX_LINE_RATE", "RX_INT_DATA_WIDTH", "RX_OUTCLK_SOURCE", "RXPROGDIV_FREQ_ENABLE",
          "RXPROGDIV_FREQ_SOURCE", "RXPROGDIV_FREQ_VAL", "RX_PAM_SEL"},
         updateRxOutputClock},
    };
}

}  // namespace

ToolSXD4DRCModel::ToolSXD4DRCModel(const std::string& ipName) : ToolDRCModel(ipName) {
    // Qualified, since no virtual call can reach further while the object is made.
    ToolSXD4DRCModel::init();
}

ToolSXD4DRCModel::~ToolSXD4DRCModel() = default;

void ToolSXD4DRCModel::init() {
    for (const updateProcedure& procedure : updateProcedures()) {
        registerUpdateProc(procedureName(procedure), argumentKeys(procedure), procedure.body);
    }
}
