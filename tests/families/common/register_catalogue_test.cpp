#include "families/common/register_catalogue.h"

#include "families/common/family_catalogues.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Two whole registers, a constant word and a register whose word follows its fields later.
register_catalogue smallCatalogue() {
    return {{"CLOCK_CFG", {constant("DIVIDER", 6), logic("SOURCE"), copy("ENABLE", "CLOCK_USED")}},
            step("solver"),
            fieldsOnly("LINK_CFG", {shared("WIDTH", "solver")}),
            constantWord("SPARE_CFG", 7),
            fieldsOnly("LINK_CFG", {constant("DELAY", 3)}),
            word("LINK_CFG"),
            {"RESET_CFG", {constant("TIME", 1)}}};
}

std::vector<std::string> entryNames(const register_catalogue& catalogue) {
    std::vector<std::string> names;
    for (const catalogueEntry& entry : catalogue.entries()) {
        names.emplace_back(entry.name);
    }
    return names;
}

std::vector<std::string> fieldNames(const register_catalogue& catalogue,
                                    const std::string& registerName) {
    std::vector<std::string> names;
    for (const registerField& field : catalogue.fieldsOf(registerName)) {
        names.emplace_back(field.name);
    }
    return names;
}

TEST(RegisterCatalogue, FieldNameIsRegisterPointField) {
    EXPECT_EQ(fieldName("LCPLL_CFG0", "LCPLL_CP"), "LCPLL_CFG0.LCPLL_CP");
}

TEST(RegisterCatalogue, KeepsEntriesInTheOrderGiven) {
    EXPECT_THAT(entryNames(smallCatalogue()),
                ElementsAre("CLOCK_CFG", "solver", "LINK_CFG", "SPARE_CFG", "LINK_CFG", "LINK_CFG",
                            "RESET_CFG"));
}

TEST(RegisterCatalogue, FieldsOfARegisterComeFromAllOfItsEntries) {
    EXPECT_THAT(fieldNames(smallCatalogue(), "LINK_CFG"), ElementsAre("WIDTH", "DELAY"));
    EXPECT_THAT(fieldNames(smallCatalogue(), "SPARE_CFG"), IsEmpty());
    EXPECT_THAT(fieldNames(smallCatalogue(), "UNKNOWN"), IsEmpty());
}

TEST(RegisterCatalogue, CountsARuleForEachFieldWordAndStepButNoneForASharedField) {
    // Three fields and a word, a step, nothing, a word, a field, a word, a field and a word.
    EXPECT_EQ(smallCatalogue().ruleCount(), 10U);
    EXPECT_EQ(register_catalogue().ruleCount(), 0U);
}

TEST(RegisterCatalogue, FieldsTellWhereTheirValueComesFrom) {
    const auto fields = smallCatalogue().fieldsOf("CLOCK_CFG");
    ASSERT_EQ(fields.size(), 3U);
    EXPECT_EQ(fields[0].kind, fieldKind::constant);
    EXPECT_EQ(fields[0].value, 6U);
    EXPECT_EQ(fields[1].kind, fieldKind::logic);
    EXPECT_EQ(fields[2].kind, fieldKind::copy);
    EXPECT_EQ(fields[2].source, "CLOCK_USED");
    const auto linkFields = smallCatalogue().fieldsOf("LINK_CFG");
    ASSERT_EQ(linkFields.size(), 2U);
    EXPECT_EQ(linkFields[0].kind, fieldKind::shared);
    EXPECT_EQ(linkFields[0].source, "solver");
}

TEST(RegisterCatalogue, EditingACopyLeavesTheOriginalAlone) {
    const register_catalogue original = smallCatalogue();
    register_catalogue changed = original;
    changed.setConstant("CLOCK_CFG", "DIVIDER", 0);
    EXPECT_EQ(original.fieldsOf("CLOCK_CFG")[0].value, 6U);
    EXPECT_EQ(changed.fieldsOf("CLOCK_CFG")[0].value, 0U);
}

TEST(RegisterCatalogue, AppendsAnEntryAndAWholeCatalogueAtTheEnd) {
    register_catalogue catalogue{{"A_CFG", {constant("X", 1)}}};
    catalogue.append({"B_CFG", {constant("Y", 2)}});
    catalogue.append(catalogue);
    EXPECT_THAT(entryNames(catalogue), ElementsAre("A_CFG", "B_CFG", "A_CFG", "B_CFG"));
}

TEST(RegisterCatalogue, InsertsInFrontOfTheFirstEntryOfAName) {
    register_catalogue catalogue = smallCatalogue();
    catalogue.insertBefore("LINK_CFG", step("second solver"));
    EXPECT_THAT(entryNames(catalogue),
                ElementsAre("CLOCK_CFG", "solver", "second solver", "LINK_CFG", "SPARE_CFG",
                            "LINK_CFG", "LINK_CFG", "RESET_CFG"));
}

TEST(RegisterCatalogue, InsertsBehindTheLastEntryOfAName) {
    register_catalogue catalogue = smallCatalogue();
    catalogue.insertAfter("LINK_CFG", step("second solver"));
    catalogue.insertAfter("RESET_CFG", step("last solver"));
    EXPECT_THAT(entryNames(catalogue),
                ElementsAre("CLOCK_CFG", "solver", "LINK_CFG", "SPARE_CFG", "LINK_CFG", "LINK_CFG",
                            "second solver", "RESET_CFG", "last solver"));
}

TEST(RegisterCatalogue, ReplacesAnEntryInItsPlace) {
    register_catalogue catalogue = smallCatalogue();
    catalogue.replace({"SPARE_CFG", {constant("USED_NOW", 1)}});
    EXPECT_EQ(catalogue.entries()[3].kind, entryKind::wholeRegister);
    EXPECT_THAT(fieldNames(catalogue, "SPARE_CFG"), ElementsAre("USED_NOW"));
}

TEST(RegisterCatalogue, RemovesEveryEntryOfAName) {
    register_catalogue catalogue = smallCatalogue();
    catalogue.remove("LINK_CFG");
    EXPECT_THAT(entryNames(catalogue),
                ElementsAre("CLOCK_CFG", "solver", "SPARE_CFG", "RESET_CFG"));
}

TEST(RegisterCatalogue, AddsAFieldBehindTheLastOfItsRegister) {
    register_catalogue catalogue = smallCatalogue();
    catalogue.addField("LINK_CFG", constant("NEW", 1));
    EXPECT_THAT(fieldNames(catalogue, "LINK_CFG"), ElementsAre("WIDTH", "DELAY", "NEW"));
    EXPECT_EQ(catalogue.entries()[5].kind, entryKind::word);
    EXPECT_THAT(catalogue.entries()[5].fields, IsEmpty());
}

TEST(RegisterCatalogue, ReplacesAFieldInItsPlaceWhateverItsKind) {
    register_catalogue catalogue = smallCatalogue();
    catalogue.replaceField("CLOCK_CFG", constant("SOURCE", 2));
    catalogue.replaceField("LINK_CFG", logic("DELAY"));
    EXPECT_THAT(fieldNames(catalogue, "CLOCK_CFG"), ElementsAre("DIVIDER", "SOURCE", "ENABLE"));
    EXPECT_EQ(catalogue.fieldsOf("CLOCK_CFG")[1].value, 2U);
    EXPECT_EQ(catalogue.fieldsOf("LINK_CFG")[1].kind, fieldKind::logic);
}

TEST(RegisterCatalogue, RemovesAFieldFromWhicheverEntryHoldsIt) {
    register_catalogue catalogue = smallCatalogue();
    catalogue.removeField("LINK_CFG", "DELAY");
    catalogue.removeField("CLOCK_CFG", "DIVIDER");
    EXPECT_THAT(fieldNames(catalogue, "LINK_CFG"), ElementsAre("WIDTH"));
    EXPECT_THAT(fieldNames(catalogue, "CLOCK_CFG"), ElementsAre("SOURCE", "ENABLE"));
}

struct RefusedEdit {
    std::string what;
    std::function<void(register_catalogue&)> edit;
    std::string named;
};

class RegisterCatalogueRefuses : public testing::TestWithParam<RefusedEdit> {};

TEST_P(RegisterCatalogueRefuses, AndNamesTheCulprit) {
    register_catalogue catalogue = smallCatalogue();
    try {
        GetParam().edit(catalogue);
        FAIL() << "the edit went through";
    } catch (const std::invalid_argument& refusal) {
        EXPECT_THAT(refusal.what(), HasSubstr(GetParam().named));
    }
    EXPECT_EQ(catalogue.ruleCount(), smallCatalogue().ruleCount());
}

INSTANTIATE_TEST_SUITE_P(
    Edits, RegisterCatalogueRefuses,
    testing::Values(
        RefusedEdit{"InsertingBeforeAnUnknownEntry",
                    [](auto& it) { it.insertBefore("NO_CFG", step("solver")); }, "NO_CFG"},
        RefusedEdit{"InsertingAfterAnUnknownEntry",
                    [](auto& it) { it.insertAfter("NO_CFG", step("solver")); }, "NO_CFG"},
        RefusedEdit{"ReplacingAnUnknownEntry",
                    [](auto& it) {
                        it.replace({"NO_CFG", {}});
                    },
                    "NO_CFG"},
        RefusedEdit{"ReplacingOneOfSeveralEntries", [](auto& it) { it.replace(word("LINK_CFG")); },
                    "LINK_CFG"},
        RefusedEdit{"RemovingAnUnknownEntry", [](auto& it) { it.remove("NO_CFG"); }, "NO_CFG"},
        RefusedEdit{"AddingAFieldThatIsThere",
                    [](auto& it) { it.addField("CLOCK_CFG", logic("DIVIDER")); },
                    "CLOCK_CFG.DIVIDER"},
        RefusedEdit{"AddingAFieldToAnUnknownRegister",
                    [](auto& it) { it.addField("NO_CFG", logic("X")); }, "NO_CFG"},
        RefusedEdit{"AddingAFieldToAConstantWord",
                    [](auto& it) { it.addField("SPARE_CFG", logic("X")); }, "SPARE_CFG"},
        RefusedEdit{"ReplacingAnUnknownField",
                    [](auto& it) { it.replaceField("CLOCK_CFG", constant("NONE", 1)); },
                    "CLOCK_CFG.NONE"},
        RefusedEdit{"RemovingAnUnknownField", [](auto& it) { it.removeField("CLOCK_CFG", "NONE"); },
                    "CLOCK_CFG.NONE"},
        RefusedEdit{"SettingAFieldThatIsNoConstant",
                    [](auto& it) { it.setConstant("CLOCK_CFG", "SOURCE", 1); }, "CLOCK_CFG.SOURCE"},
        RefusedEdit{"SettingAnUnknownField",
                    [](auto& it) { it.setConstant("CLOCK_CFG", "NONE", 1); }, "CLOCK_CFG.NONE"}),
    [](const auto& row) { return row.param.what; });

class EveryCatalogue : public testing::TestWithParam<familyCatalogue> {};

TEST_P(EveryCatalogue, HoldsEachFieldOnceAndComposesEachRegisterOnce) {
    std::set<std::string> fields;
    std::set<std::string_view> words;
    for (const catalogueEntry& entry : GetParam().catalogue().entries()) {
        for (const registerField& field : entry.fields) {
            EXPECT_TRUE(fields.insert(fieldName(entry.name, field.name)).second)
                << entry.name << "." << field.name;
        }
        if (entry.kind != entryKind::fields) {
            EXPECT_TRUE(words.insert(entry.name).second) << entry.name;
        }
        if (entry.kind == entryKind::wholeRegister) {
            EXPECT_EQ(GetParam().catalogue().fieldsOf(entry.name).size(), entry.fields.size())
                << "fields of " << entry.name << " stand outside of its entry";
        }
    }
    for (const catalogueEntry& entry : GetParam().catalogue().entries()) {
        EXPECT_EQ(words.count(entry.name), 1U) << entry.name << " has fields but no word";
    }
}

INSTANTIATE_TEST_SUITE_P(Families, EveryCatalogue, testing::ValuesIn(familyCatalogues()),
                         [](const auto& row) {
                             std::string name(row.param.family);
                             name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
                             return name;
                         });

}  // namespace
}  // namespace sable_lanecfg
