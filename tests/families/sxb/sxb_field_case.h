#pragma once

#include "sxb_rule_alone.h"

#include <string>
#include <vector>

namespace lanecfg_test {

/// A case of a rule that writes its own field only, for tables of many.
struct FieldCase {
    std::string field;
    VariableValues inputs;
    unsigned int expected;
};

inline std::vector<RuleCase> ruleCases(const std::vector<FieldCase>& rows) {
    std::vector<RuleCase> cases;
    cases.reserve(rows.size());
    for (const FieldCase& row : rows) {
        cases.push_back(fieldCase(row.field, row.inputs, row.expected));
    }
    return cases;
}

/// Adds cases to those at hand.
inline void append(std::vector<FieldCase>& cases, const std::vector<FieldCase>& others) {
    cases.insert(cases.end(), others.begin(), others.end());
}

}  // namespace lanecfg_test
