#include "families/common/catalogue_differences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

register_catalogue smallCatalogue() {
    return {step("solver"),
            {"CLOCK_CFG", {constant("DIVIDER", 6), logic("SOURCE"), copy("ENABLE", "CLOCK_USED")}},
            {"LINK_CFG", {constant("DELAY", 3)}}};
}

std::vector<std::string> fieldsOf(const register_catalogue& catalogue, const std::string& name) {
    std::vector<std::string> fields;
    for (const registerField& field : catalogue.fieldsOf(name)) {
        fields.emplace_back(field.name);
    }
    return fields;
}

TEST(CatalogueDifferences, AreAppliedRowByRow) {
    constexpr removedRule removed[] = {
        {"CLOCK_CFG", "ENABLE"}, {"LINK_CFG", "DELAY"}, {"LINK_CFG", {}}, {"solver", {}}};
    constexpr changedConstant changed[] = {{"CLOCK_CFG", "DIVIDER", 6, 1}};
    register_catalogue catalogue = smallCatalogue();
    applyDifferences(catalogue, removed);
    applyDifferences(catalogue, changed);
    ASSERT_EQ(catalogue.entries().size(), 1U);
    EXPECT_THAT(fieldsOf(catalogue, "CLOCK_CFG"), ElementsAre("DIVIDER", "SOURCE"));
    EXPECT_EQ(catalogue.entries()[0].fields[0].value, 1U);
}

TEST(CatalogueDifferences, AddFieldsBehindTheOthersInTheOrderOfTheRows) {
    constexpr fieldOfRegister added[] = {{"CLOCK_CFG", constant("LAST", 2)},
                                         {"CLOCK_CFG", logic("VERY_LAST")}};
    register_catalogue catalogue = smallCatalogue();
    addFields(catalogue, added);
    EXPECT_THAT(fieldsOf(catalogue, "CLOCK_CFG"),
                ElementsAre("DIVIDER", "SOURCE", "ENABLE", "LAST", "VERY_LAST"));
}

TEST(CatalogueDifferences, ReplaceFieldsInTheirPlace) {
    constexpr fieldOfRegister replaced[] = {{"CLOCK_CFG", constant("SOURCE", 4)}};
    register_catalogue catalogue = smallCatalogue();
    replaceFields(catalogue, replaced);
    EXPECT_THAT(fieldsOf(catalogue, "CLOCK_CFG"), ElementsAre("DIVIDER", "SOURCE", "ENABLE"));
    EXPECT_EQ(catalogue.fieldsOf("CLOCK_CFG")[1].kind, fieldKind::constant);
}

TEST(CatalogueDifferences, MakeAConstantOfAWordThatNoFieldIsLeftOf) {
    constexpr removedRule removed[] = {{"LINK_CFG", "DELAY"}};
    constexpr emptiedWord emptied[] = {{"LINK_CFG", 9}};
    register_catalogue catalogue = smallCatalogue();
    applyDifferences(catalogue, removed);
    applyDifferences(catalogue, emptied);
    EXPECT_EQ(catalogue.entries()[2].kind, entryKind::constantWord);
    EXPECT_EQ(catalogue.entries()[2].value, 9U);
}

/// A row that does not fit the small catalogue.
struct RefusedRow {
    std::string what;
    std::function<void(register_catalogue&)> apply;
    std::string named;
};

class CatalogueDifferencesRefuse : public testing::TestWithParam<RefusedRow> {};

TEST_P(CatalogueDifferencesRefuse, ARowAndNameIt) {
    register_catalogue catalogue = smallCatalogue();
    try {
        GetParam().apply(catalogue);
        FAIL() << "the row went through";
    } catch (const std::invalid_argument& refusal) {
        EXPECT_THAT(refusal.what(), HasSubstr(GetParam().named));
    }
}

template <class Row>
std::function<void(register_catalogue&)> applying(const Row& row) {
    return [row](register_catalogue& catalogue) { applyDifference(catalogue, row); };
}

INSTANTIATE_TEST_SUITE_P(
    Rows, CatalogueDifferencesRefuse,
    testing::Values(
        RefusedRow{"OfAConstantThatHasAnotherValueByNow",
                   applying(changedConstant{"CLOCK_CFG", "DIVIDER", 5, 1}),
                   "CLOCK_CFG.DIVIDER is 6 and not 5"},
        RefusedRow{"OfAConstantThatIsComputedByNow",
                   applying(changedConstant{"CLOCK_CFG", "SOURCE", 0, 1}), "CLOCK_CFG.SOURCE"},
        RefusedRow{"OfAConstantThatIsNotThere",
                   applying(changedConstant{"CLOCK_CFG", "NONE", 0, 1}), "CLOCK_CFG.NONE"},
        RefusedRow{"OfAFieldThatIsNotThere", applying(removedRule{"CLOCK_CFG", "NONE"}),
                   "CLOCK_CFG.NONE"},
        RefusedRow{"OfAWordThatStillHasAField", applying(removedRule{"LINK_CFG", {}}),
                   "LINK_CFG.DELAY"},
        RefusedRow{"OfAWordThatIsNotThere", applying(removedRule{"NO_CFG", {}}), "NO_CFG"},
        RefusedRow{"OfAnEmptiedWordThatStillHasAField", applying(emptiedWord{"LINK_CFG", 0}),
                   "LINK_CFG.DELAY"},
        RefusedRow{"OfAnEmptiedWordThatIsNotThere", applying(emptiedWord{"NO_CFG", 0}), "NO_CFG"}),
    [](const auto& row) { return row.param.what; });

}  // namespace
}  // namespace sable_lanecfg
