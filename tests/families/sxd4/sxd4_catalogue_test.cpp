#include "families/sxd4/sxd4_pll_catalogue.h"
#include "families/sxd4/sxd4_rx_catalogue.h"
#include "families/sxd4/sxd4_tx_catalogue.h"
#include "families/sxd4/sxd4_undelivered_fields.h"
#include "sxd4_expected_catalogue.h"

#include <lanecfg/family_rules.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::expectedSxd4Fields;
using lanecfg_test::expectedSxd4Registers;
using lanecfg_test::registersOf;
using lanecfg_test::registerText;
using testing::ElementsAreArray;

struct SetCase {
    std::string name;
    const register_catalogue& (*catalogue)();
    std::map<ruleKind, std::size_t> counts;
    std::size_t total;
};

// Kinds: fields with a constant, copies of a flag, computed fields and steps, and words. In the PLL
// set one rule writes three fields of the feedback divider, and one a direction four of the error
// correction, so that 9 of its 58 computed fields have no rule of their own; 8 steps come beside.
const std::vector<SetCase>& setCases() {
    static const std::vector<SetCase> cases{
        {"RX",
         sxd4RxCatalogue,
         {{ruleKind::constant, 419},
          {ruleKind::copy, 3},
          {ruleKind::logic, 53},
          {ruleKind::compose, 93}},
         568},
        {"TX",
         sxd4TxCatalogue,
         {{ruleKind::constant, 80}, {ruleKind::logic, 12}, {ruleKind::compose, 16}},
         108},
        {"PLL",
         sxd4PllCatalogue,
         {{ruleKind::constant, 236}, {ruleKind::logic, 58 - 9 + 8}, {ruleKind::compose, 78}},
         371}};
    return cases;
}

std::vector<std::string> namesOf(const std::vector<registerText>& registers) {
    std::vector<std::string> names;
    for (const registerText& row : registers) {
        names.push_back(row.first);
    }
    return names;
}

class Sxd4RuleSet : public testing::TestWithParam<SetCase> {};

TEST_P(Sxd4RuleSet, RegistersItsNumberOfRules) {
    EXPECT_EQ(GetParam().catalogue().ruleCount(), GetParam().total);
}

TEST_P(Sxd4RuleSet, HasItsNumberOfRulesOfEachKind) {
    std::map<ruleKind, std::size_t> counts;
    for (const ruleDescription& rule : rulesOfFamily("SXD4", "live")) {
        counts[rule.kind] += rule.set == GetParam().name ? 1 : 0;
    }
    std::map<ruleKind, std::size_t> expected = GetParam().counts;
    expected.emplace(ruleKind::copy, 0);
    EXPECT_EQ(counts, expected);
}

TEST_P(Sxd4RuleSet, ComposesEveryWordInTheOrderOfTheList) {
    EXPECT_THAT(namesOf(registersOf(GetParam().catalogue())),
                ElementsAreArray(namesOf(expectedSxd4Registers(GetParam().name))));
}

INSTANTIATE_TEST_SUITE_P(Sets, Sxd4RuleSet, testing::ValuesIn(setCases()),
                         [](const auto& row) { return row.param.name; });

/// A register as the list has it, and the catalogue that has to agree.
struct RegisterCase {
    registerText expected;
    const register_catalogue& (*catalogue)();
};

void PrintTo(const RegisterCase& row, std::ostream* output) {
    *output << row.expected.first;
}

std::vector<RegisterCase> registerCases() {
    std::vector<RegisterCase> cases;
    for (const SetCase& set : setCases()) {
        for (const registerText& expected : expectedSxd4Registers(set.name)) {
            cases.push_back({expected, set.catalogue});
        }
    }
    return cases;
}

class Sxd4Register : public testing::TestWithParam<RegisterCase> {};

TEST_P(Sxd4Register, HasTheFieldsOfTheList) {
    const std::vector<registerText> actual = registersOf(GetParam().catalogue());
    const auto found = std::find_if(actual.begin(), actual.end(), [](const registerText& row) {
        return row.first == GetParam().expected.first;
    });
    ASSERT_NE(found, actual.end());
    EXPECT_EQ(found->second, GetParam().expected.second);
}

INSTANTIATE_TEST_SUITE_P(Registers, Sxd4Register, testing::ValuesIn(registerCases()),
                         [](const auto& row) { return row.param.expected.first; });

TEST(Sxd4Catalogue, NoFieldStandsTwice) {
    std::set<std::string> names;
    for (const auto& field : expectedSxd4Fields()) {
        EXPECT_TRUE(names.insert(field.registerName + "." + field.field).second)
            << field.registerName << "." << field.field;
    }
    EXPECT_EQ(names.size(), 475U + 92U + 294U);
}

TEST(Sxd4Catalogue, UndeliveredFieldsAreTheRulesWithoutInputs) {
    std::multiset<std::string> withoutInputs;
    for (const ruleDescription& rule : rulesOfFamily("SXD4", "live")) {
        if (rule.kind == ruleKind::logic && rule.inputs.empty()) {
            withoutInputs.insert(rule.outputs.begin(), rule.outputs.end());
        }
    }
    std::multiset<std::string> undelivered;
    for (const undeliveredField& row : undeliveredFields()) {
        undelivered.insert(fieldName(row.registerName, row.field));
        EXPECT_EQ(row.value, 0U) << row.field;
    }
    EXPECT_EQ(undelivered, withoutInputs);
    EXPECT_EQ(undelivered.size(), 80U);
}

}  // namespace
}  // namespace sable_lanecfg
