#pragma once

#include <map>
#include <string>
#include <vector>

namespace lanecfg_test {

/// A field of the SXA family with its constant.
struct ExpectedField {
    std::string registerName;
    std::string field;  ///< without the register's name
    unsigned int value;
};

/// All fields in the order of registration.
const std::vector<ExpectedField>& expectedSxaFields();

/// Variables of fields and words that every pass of an SXA quad leaves: the constants of the list
/// above and the words that they make with the bit positions of the reference database.
std::map<std::string, unsigned int> expectedSxaVariables();

/// What `getAttributes` answers for any SXA quad.
std::map<std::string, std::string> expectedSxaAttributes();

}  // namespace lanecfg_test
