#pragma once

#include "support/expected_catalogue.h"

#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace lanecfg_test {

/// A register of one of the lists of differences.
struct ChangedRegister {
    std::string set;
    std::string name;
};

inline void PrintTo(const ChangedRegister& row, std::ostream* output) {
    *output << row.name;
}

/// The registers that the lists name, each once.
const std::vector<ChangedRegister>& changedSxbRegisters();

/// The fields, words and steps that the lists name: "REGISTER.FIELD" or one name.
const std::set<std::string>& changedSxbNames();

/// The rows of the current rules with the differences: the rows of a register stand together, the
/// registers in any order. Throws std::logic_error, naming the row, when a difference does not fit.
const std::vector<ExpectedField>& expectedSxbStableFields();

}  // namespace lanecfg_test
