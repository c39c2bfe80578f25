#pragma once

#include "families/common/register_catalogue.h"

#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {

/// One row of the list of expected fields: a field, or the constant word of a register without
/// fields, whose field name is empty.
struct ExpectedField {
    std::string set;  ///< "PLL", "RX" or "TX"
    std::string registerName;
    std::string field;
    sable_lanecfg::fieldKind kind;
    unsigned int value;  ///< of a constant
    std::string source;  ///< of a copy
};

/// All rows, in the order of the list.
const std::vector<ExpectedField>& expectedSxbFields();

/// A register and what its rules write, a text line for each: "FIELD = 6", "FIELD copies
/// PCIE_ENABLE", "FIELD is computed", "the word is 0".
using registerText = std::pair<std::string, std::string>;

/// The registers of a set in the order in which their words are composed, as the list has them.
std::vector<registerText> expectedSxbRegisters(const std::string& set);

/// The same of a catalogue.
std::vector<registerText> registersOf(const sable_lanecfg::register_catalogue& catalogue);

}  // namespace lanecfg_test
