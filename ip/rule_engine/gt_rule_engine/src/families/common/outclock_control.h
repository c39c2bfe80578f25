#pragma once

#include "families/common/rule_arithmetic.h"

#include <string_view>

namespace sable_lanecfg {

/// Where the output clock comes from, as the control field of each direction holds it.
enum outclockControl : unsigned int {
    outclockOfCodingLayer = 1,
    outclockOfAnalogueLayer = 2,
    outclockOfReference = 3,
    outclockOfHalfReference = 4,
    outclockOfProgrammableDivider = 5,
    outclockOfTestSignal = 6
};

/// Control codes by the words of TX_OUTCLK_SOURCE and RX_OUTCLK_SOURCE.
inline constexpr code_table<std::string_view, 5> transmitClockControlCodes{
    {{"TXOUTCLKPCS", outclockOfCodingLayer},
     {"TXOUTCLKPMA", outclockOfAnalogueLayer},
     {"TXPLLREFCLK", outclockOfReference},
     {"TXPROGDIVCLK", outclockOfProgrammableDivider},
     {"CLKTESTSIG", outclockOfTestSignal}}};
inline constexpr code_table<std::string_view, 5> receiveClockControlCodes{
    {{"RXOUTCLKPCS", outclockOfCodingLayer},
     {"RXOUTCLKPMA", outclockOfAnalogueLayer},
     {"RXPLLREFCLK", outclockOfReference},
     {"RXPROGDIVCLK", outclockOfProgrammableDivider},
     {"CLKTESTSIG", outclockOfTestSignal}}};

}  // namespace sable_lanecfg
