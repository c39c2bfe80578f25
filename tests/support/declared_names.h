#pragma once

#include "families/common/catalogue_rules.h"

#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace lanecfg_test {

/// What a rule declares, in order.
struct DeclaredNames {
    std::string rule;
    std::vector<std::string> inputs;
    /// Empty for a rule that writes its own field only.
    std::vector<std::string> outputs = {};
};

inline void PrintTo(const DeclaredNames& row, std::ostream* output) {
    *output << row.rule;
}

/// The rule as the name of a test.
inline std::string nameOf(const testing::TestParamInfo<DeclaredNames>& info) {
    std::string name = info.param.rule;
    for (char& letter : name) {
        letter = letter == '.' || letter == ' ' ? '_' : letter;
    }
    return name;
}

/// How often each rule has a row.
inline std::map<std::string, int> ruleNames(const std::vector<DeclaredNames>& rows) {
    std::map<std::string, int> names;
    for (const DeclaredNames& row : rows) {
        ++names[row.rule];
    }
    return names;
}

inline std::map<std::string, int> ruleNames(const sable_lanecfg::logicRules& rules) {
    std::map<std::string, int> names;
    for (const auto& rule : rules) {
        ++names[rule.first];
    }
    return names;
}

}  // namespace lanecfg_test
