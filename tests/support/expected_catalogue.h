#pragma once

#include "families/common/register_catalogue.h"

#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {

/// One row of a family's list of expected fields: a field, or the constant word of a register
/// without fields, whose field name is empty.
struct ExpectedField {
    std::string set;  ///< "PLL", "RX" or "TX"
    std::string registerName;
    std::string field;
    sable_lanecfg::fieldKind kind;
    unsigned int value;  ///< of a constant
    std::string source;  ///< of a copy
};

/// A register and what its rules write, a text line for each: "FIELD = 6", "FIELD copies
/// PCIE_ENABLE", "FIELD is computed", "the word is 0".
using registerText = std::pair<std::string, std::string>;

/// The registers of a set in the order in which the rows have them.
std::vector<registerText> registersOfSet(const std::vector<ExpectedField>& rows,
                                         const std::string& set);

/// The registers of a catalogue in the order in which their words are composed. A test that calls
/// this links the library of the catalogues.
std::vector<registerText> registersOf(const sable_lanecfg::register_catalogue& catalogue);

}  // namespace lanecfg_test
