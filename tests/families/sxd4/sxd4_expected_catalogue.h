#pragma once

#include "support/expected_catalogue.h"

#include <string>
#include <vector>

namespace lanecfg_test {

/// All rows, in the order of the list.
const std::vector<ExpectedField>& expectedSxd4Fields();

/// The registers of a set in the order in which their words are composed, as the list has them.
std::vector<registerText> expectedSxd4Registers(const std::string& set);

}  // namespace lanecfg_test
