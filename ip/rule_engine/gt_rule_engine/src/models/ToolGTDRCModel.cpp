#include "clocking_domains.h"
#include "models/offered_clocks.h"
#include "models/output_divider_enable.h"
#include "models/parameter_values.h"
#include "models/reference_clock_offer.h"
#include "models/update_procedure.h"
#include "user_clock.h"

#include <lanecfg/ToolGTDRCModel.h>
#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/predicate.hpp>

#include <locale>
#include <string>
#include <string_view>
#include <vector>

using namespace sable_lanecfg;
using namespace sable_lanecfg::models;

namespace {

// Directions are "TX" and "RX", with which the names of their parameters begin.

/// For choices of the user alone; the clocking math tells the words apart exactly.
bool isPll(const std::string& pllType, std::string_view word) {
    return boost::algorithm::iequals(pllType, word, std::locale::classic());
}

// The fraction of the feedback divider

void updateTxFractionNumerator(updater& record) {
    const float lineRate = numberOf(record, "TX_LINE_RATE", 0.0F);
    const bool tooFast = lineRate > clocking::lcpll::halvingThreshold;
    record.enabled = !tooFast && isPll(textOf(record, "TX_PLL_TYPE"), clocking::lcpllWord);
    if (!record.enabled) {
        setValue(record, "TX_QPLL_FRACN_NUMERATOR", "0");
    }
}

/// What the PLL of a direction has to do.
struct pllTask {
    float lineRate;
    float refclk;
    std::string pllType;
};

pllTask pllTaskOf(const updater& record, const std::string& direction) {
    return {numberOf(record, direction + "_LINE_RATE", 0.0F),
            numberOf(record, direction + "_REFCLK_FREQUENCY", 0.0F),
            textOf(record, direction + "_PLL_TYPE")};
}

void updateFractionEnabled(updater& record, const std::string& direction) {
    const pllTask task = pllTaskOf(record, direction);
    setFlag(record, direction + "_FRACN_ENABLED",
            rule_engine_utilities::fracNEnable(task.lineRate, task.refclk, task.pllType));
    record.enabled = false;
}

void updateTxFractionEnabled(updater& record) {
    updateFractionEnabled(record, "TX");
}

void updateRxFractionEnabled(updater& record) {
    updateFractionEnabled(record, "RX");
}

// Reference clocks

void updateActualReferenceClock(updater& record, const std::string& direction) {
    constexpr int decimals = 12;
    const pllTask task = pllTaskOf(record, direction);
    const double actual =
        rule_engine_utilities::calculateActualRefclk(task.lineRate, task.refclk, task.pllType);
    setValue(record, direction + "_ACTUAL_REFCLK_FREQUENCY", fixedText(actual, decimals));
}

void updateTxActualReferenceClock(updater& record) {
    updateActualReferenceClock(record, "TX");
}

void updateRxActualReferenceClock(updater& record) {
    updateActualReferenceClock(record, "RX");
}

/// Single precision throughout, as the parameters are.
void walkRpll(float lineRate, referenceClockOffer& offer) {
    for (const int preDivider : {1, 2}) {
        for (const int lineDivider : {1, 2, 3, 4, 5}) {
            // The default is what the undivided clock gives with the largest line divider.
            const bool mayBeDefault = preDivider == 1 && lineDivider == 5;
            for (const int feedback : {4, 5}) {
                for (const int ratio : {1, 2, 4, 8}) {
                    const float multiplied =
                        static_cast<float>(ratio * preDivider) * lineRate * 1000.0F;
                    offer.meet(multiplied / static_cast<float>(feedback * 2 * lineDivider),
                               mayBeDefault);
                }
            }
        }
    }
}

void updateTxReferenceClock(updater& record) {
    constexpr clocking::interval limits = clocking::closedInterval(80.0, 1400.0);
    constexpr int lowestFeedback = 13;
    const float lineRate = numberOf(record, "TX_LINE_RATE", 0.0F);
    const float numerator = numberOf(record, "TX_QPLL_FRACN_NUMERATOR", 0.0F);
    referenceClockOffer offer(limits);
    if (isPll(textOf(record, "TX_PLL_TYPE"), clocking::rpllWord)) {
        walkRpll(lineRate, offer);
    } else {
        walkFractionalPll(lineRate, numerator, lowestFeedback, clocking::lcpll::lineDividers,
                          offer);
    }
    offer.writeTo(record, "TX_REFCLK_FREQUENCY");
}

// The programmable output divider

void updateRxOutputClockSource(updater& record) {
    const std::string pllType = textOf(record, "RX_PLL_TYPE");
    setValue(record, "RXPROGDIV_FREQ_SOURCE", pllType);
    record.range = {pllType};
    record.enabled = false;
}

/// Whether an RPLL that runs no line could make any output clock: asked at a line rate of 1,
/// whatever the rate of the line.
bool freeRpllOffersClocks(const updater& record, float refclk, float userDataWidth) {
    constexpr double anyLineRate = 1.0;
    return !rule_engine_utilities::findTXOUTCLKlist(
                anyLineRate, refclk, textOf(record, "TX_PLL_TYPE"), textOf(record, "RX_PLL_TYPE"),
                std::string(clocking::rpllWord), userDataWidth, textOf(record, "TX_DATA_ENCODING"),
                textOf(record, "TX_BUFFER_MODE"))
                .empty();
}

void updateTxOutputClockSource(updater& record) {
    const std::string pllType = textOf(record, "TX_PLL_TYPE");
    const float refclk = numberOf(record, "TX_ACTUAL_REFCLK_FREQUENCY", 0.0F);
    const float userDataWidth = numberOf(record, "TX_USER_DATA_WIDTH", 0.0F);
    setValue(record, "TXPROGDIV_FREQ_SOURCE", pllType);
    record.range = {pllType};
    record.enabled = isTrue(record, "TXPROGDIV_FREQ_ENABLE");
    if (record.enabled && pllType == clocking::lcpllWord &&
        freeRpllOffersClocks(record, refclk, userDataWidth)) {
        record.range.emplace_back(clocking::rpllWord);
    }
}

/// What the fabric's side of a direction is set to.
struct userSide {
    float lineRate;
    float dataWidth;
    std::string encoding;
    std::string bufferMode;

    /// Single precision, as the parameters are.
    float clock() const {
        return lineRate * 1000.0F / clocking::effectiveWidth(dataWidth, encoding);
    }
};

userSide userSideOf(const updater& record, const std::string& direction,
                    const std::string& encodingParameter) {
    constexpr float defaultLineRate = 1.2F;
    constexpr float defaultDataWidth = 16.0F;
    return {numberOf(record, direction + "_LINE_RATE", defaultLineRate),
            numberOf(record, direction + "_USER_DATA_WIDTH", defaultDataWidth),
            textOf(record, encodingParameter), textOf(record, direction + "_BUFFER_MODE")};
}

/// `findClocks()` gives what the divider offers when it is enabled.
template <class FindClocks>
void updateOutputClock(updater& record, const std::string& direction, double userClock,
                       const FindClocks& findClocks) {
    constexpr int decimals = 3;
    const std::string divider = direction + "PROGDIV";
    const std::string parameter = divider + "_FREQ_VAL";
    record.enabled = isTrue(record, divider + "_FREQ_ENABLE");
    if (record.enabled) {
        offerOutputClocks(record, parameter, findClocks(), decimals, userClock);
    } else {
        const std::string unused = "322.265625";
        setValue(record, parameter, unused);
        record.range = {unused};
    }
}

void updateTxOutputClock(updater& record) {
    const userSide user = userSideOf(record, "TX", "TX_DATA_ENCODING");
    const float refclk = numberOf(record, "TX_ACTUAL_REFCLK_FREQUENCY", 0.0F);
    updateOutputClock(record, "TX", user.clock(), [&] {
        return rule_engine_utilities::findTXOUTCLKlist(
            user.lineRate, refclk, textOf(record, "TX_PLL_TYPE"), textOf(record, "RX_PLL_TYPE"),
            textOf(record, "TXPROGDIV_FREQ_SOURCE"), user.dataWidth, user.encoding,
            user.bufferMode);
    });
}

void updateRxOutputClock(updater& record) {
    const userSide user = userSideOf(record, "RX", "RX_DATA_DECODING");
    updateOutputClock(record, "RX", user.clock(), [&] {
        return rule_engine_utilities::findRXOUTCLKlist(user.lineRate, textOf(record, "RX_PLL_TYPE"),
                                                       user.dataWidth, user.encoding,
                                                       user.bufferMode);
    });
}

std::vector<updateProcedure> updateProcedures() {
    return {
        {"TX_QPLL_FRACN_NUMERATOR",
         {"TX_PLL_TYPE", "TX_LINE_RATE", "TX_QPLL_FRACN_NUMERATOR"},
         updateTxFractionNumerator},
        {"TX_REFCLK_FREQUENCY",
         {"TX_PLL_TYPE", "TX_LINE_RATE", "TX_QPLL_FRACN_NUMERATOR", "TX_REFCLK_FREQUENCY"},
         updateTxReferenceClock},
        {"TX_ACTUAL_REFCLK_FREQUENCY",
         {"TX_PLL_TYPE", "TX_LINE_RATE", "TX_REFCLK_FREQUENCY", "TX_ACTUAL_REFCLK_FREQUENCY"},
         updateTxActualReferenceClock},
        {"TX_FRACN_ENABLED",
         {"TX_PLL_TYPE", "TX_LINE_RATE", "TX_REFCLK_FREQUENCY", "TX_FRACN_ENABLED"},
         updateTxFractionEnabled},
        {"TXPROGDIV_FREQ_ENABLE",
         {"TX_OUTCLK_SOURCE", "TXPROGDIV_FREQ_ENABLE"},
         updateTxOutputDividerEnable},
        {"TXPROGDIV_FREQ_SOURCE",
         {"TX_ACTUAL_REFCLK_FREQUENCY", "TX_PLL_TYPE", "RX_PLL_TYPE", "TX_DATA_ENCODING",
          "TX_BUFFER_MODE", "TX_USER_DATA_WIDTH", "TX_OUTCLK_SOURCE", "TXPROGDIV_FREQ_ENABLE",
          "TXPROGDIV_FREQ_SOURCE"},
         updateTxOutputClockSource},
        {"TXPROGDIV_FREQ_VAL",
         {"TX_ACTUAL_REFCLK_FREQUENCY", "TX_PLL_TYPE", "RX_PLL_TYPE", "TX_DATA_ENCODING",
          "TX_BUFFER_MODE", "TX_LINE_RATE", "TX_USER_DATA_WIDTH", "TX_OUTCLK_SOURCE",
          "TXPROGDIV_FREQ_ENABLE", "TXPROGDIV_FREQ_SOURCE", "TXPROGDIV_FREQ_VAL"},
         updateTxOutputClock},
        {"RX_ACTUAL_REFCLK_FREQUENCY",
         {"RX_PLL_TYPE", "RX_LINE_RATE", "RX_REFCLK_FREQUENCY", "RX_ACTUAL_REFCLK_FREQUENCY"},
         updateRxActualReferenceClock},
        {"RX_FRACN_ENABLED",
         {"RX_PLL_TYPE", "RX_LINE_RATE", "RX_REFCLK_FREQUENCY", "RX_FRACN_ENABLED"},
         updateRxFractionEnabled},
        {"RXPROGDIV_FREQ_ENABLE",
         {"RX_OUTCLK_SOURCE", "RXPROGDIV_FREQ_ENABLE"},
         updateRxOutputDividerEnable},
        {"RXPROGDIV_FREQ_SOURCE",
         {"RX_PLL_TYPE", "RX_OUTCLK_SOURCE", "RXPROGDIV_FREQ_ENABLE", "RXPROGDIV_FREQ_SOURCE"},
         updateRxOutputClockSource},
        {"RXPROGDIV_FREQ_VAL",
         {"RX_PLL_TYPE", "RX_LINE_RATE", "RX_BUFFER_MODE", "RX_USER_DATA_WIDTH", "RX_DATA_DECODING",
          "RX_OUTCLK_SOURCE", "RXPROGDIV_FREQ_ENABLE", "RXPROGDIV_FREQ_SOURCE",
          "RXPROGDIV_FREQ_VAL"},
         updateRxOutputClock},
    };
}

}  // namespace

ToolGTDRCModel::ToolGTDRCModel(const std::string& ipName) : ToolDRCModel(ipName) {
    // Qualified, since no virtual call can reach further while the object is made.
    ToolGTDRCModel::init();
}

ToolGTDRCModel::~ToolGTDRCModel() = default;

void ToolGTDRCModel::init() {
    for (const updateProcedure& procedure : updateProcedures()) {
        registerUpdateProc(procedureName(procedure), argumentKeys(procedure), procedure.body);
    }
}
