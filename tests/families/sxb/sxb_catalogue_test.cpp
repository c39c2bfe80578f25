#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_tx_catalogue.h"
#include "sxb_expected_catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::expectedSxbRegisters;
using lanecfg_test::registersOf;
using lanecfg_test::registerText;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsSupersetOf;

/// How many rules of each kind a set has. A rule beside the catalogue counts once, however many
/// fields it writes.
struct RuleCounts {
    std::size_t constants;
    std::size_t copies;
    std::size_t logic;
    std::size_t words;

    bool operator==(const RuleCounts& other) const {
        return constants == other.constants && copies == other.copies && logic == other.logic &&
               words == other.words;
    }
};

void PrintTo(const RuleCounts& counts, std::ostream* stream) {
    *stream << counts.constants << " constants, " << counts.copies << " copies, " << counts.logic
            << " logic, " << counts.words << " words";
}

struct SetCase {
    std::string name;
    const register_catalogue& (*catalogue)();
    RuleCounts counts;
    std::size_t total;
};

void countField(const registerField& field, RuleCounts& counts) {
    counts.constants += field.kind == fieldKind::constant ? 1 : 0;
    counts.copies += field.kind == fieldKind::copy ? 1 : 0;
    counts.logic += field.kind == fieldKind::logic ? 1 : 0;
}

RuleCounts countsOf(const register_catalogue& catalogue) {
    RuleCounts counts{0, 0, 0, 0};
    for (const catalogueEntry& entry : catalogue.entries()) {
        for (const registerField& field : entry.fields) {
            countField(field, counts);
        }
        const bool isComposed =
            entry.kind == entryKind::wholeRegister || entry.kind == entryKind::word;
        counts.words += isComposed ? 1 : 0;
        counts.constants += entry.kind == entryKind::constantWord ? 1 : 0;
        counts.logic += entry.kind == entryKind::step ? 1 : 0;
    }
    return counts;
}

std::vector<std::string> namesOf(const std::vector<registerText>& registers) {
    std::vector<std::string> names;
    for (const registerText& row : registers) {
        names.push_back(row.first);
    }
    return names;
}

class SxbCatalogue : public testing::TestWithParam<SetCase> {
  protected:
    const register_catalogue& catalogue = GetParam().catalogue();
    const std::vector<registerText> expected = expectedSxbRegisters(GetParam().name);
    const std::vector<registerText> actual = registersOf(catalogue);
};

TEST_P(SxbCatalogue, RegistersItsNumberOfRules) {
    EXPECT_EQ(catalogue.ruleCount(), GetParam().total);
}

TEST_P(SxbCatalogue, HasItsNumberOfRulesOfEachKind) {
    EXPECT_EQ(countsOf(catalogue), GetParam().counts);
}

TEST_P(SxbCatalogue, ComposesEveryWordInTheOrderOfTheList) {
    EXPECT_THAT(namesOf(actual), ElementsAreArray(namesOf(expected)));
}

TEST_P(SxbCatalogue, EveryFieldIsAsTheListHasIt) {
    const std::map<std::string, std::string> actualByName(actual.begin(), actual.end());
    for (const auto& [name, text] : expected) {
        const auto found = actualByName.find(name);
        ASSERT_NE(found, actualByName.end()) << name;
        EXPECT_EQ(found->second, text) << "the fields of " << name;
    }
}

TEST_P(SxbCatalogue, NoFieldStandsTwice) {
    for (const auto& [name, text] : actual) {
        std::set<std::string> names;
        for (const registerField& field : catalogue.fieldsOf(name)) {
            EXPECT_TRUE(names.insert(std::string(field.name)).second) << name << "." << field.name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Sets, SxbCatalogue,
                         testing::Values(SetCase{"PLL", sxbPllCatalogue, {674, 5, 149, 70}, 898},
                                         SetCase{"RX", sxbRxCatalogue, {631, 1, 94, 87}, 813},
                                         SetCase{"TX", sxbTxCatalogue, {132, 2, 35, 29}, 198}),
                         [](const auto& test) { return test.param.name; });

/// Names of entries in order, each once.
std::vector<std::string> entryNames(const register_catalogue& catalogue) {
    std::vector<std::string> names;
    for (const catalogueEntry& entry : catalogue.entries()) {
        if (std::find(names.begin(), names.end(), entry.name) == names.end()) {
            names.emplace_back(entry.name);
        }
    }
    return names;
}

std::vector<std::string> firstEntries(const register_catalogue& catalogue, std::size_t count) {
    std::vector<std::string> names = entryNames(catalogue);
    names.resize(count);
    return names;
}

/// The name of the entry in front of the first one of this name.
std::string predecessorOf(const register_catalogue& catalogue, const std::string& name) {
    const std::vector<std::string> names = entryNames(catalogue);
    const auto place = std::find(names.begin(), names.end(), name);
    return place == names.begin() || place == names.end() ? "" : *std::prev(place);
}

TEST(SxbPllOrder, TheSolversComeFirst) {
    EXPECT_THAT(firstEntries(sxbPllCatalogue(), 5),
                ElementsAre(sxb_pll_step::inputSelection, sxb_pll_step::outputDividers,
                            sxb_pll_step::lcpllSolver, sxb_pll_step::rpllSolver, "A_CFG1"));
}

TEST(SxbPllOrder, TheDividersAreSearchedBeforeTheirSelects) {
    const register_catalogue& catalogue = sxbPllCatalogue();
    EXPECT_EQ(predecessorOf(catalogue, "PIPE_CTRL_CFG7"), sxb_pll_step::receiveDividerSearch);
    EXPECT_EQ(predecessorOf(catalogue, std::string(sxb_pll_step::receiveDividerSearch)),
              sxb_pll_step::transmitDividerSearch);
    EXPECT_EQ(predecessorOf(catalogue, std::string(sxb_pll_step::transmitDividerSearch)), "CFG5");
}

TEST(SxbRxOrder, WidthsCommaAndCodingComeBeforeTheReportAndTheEqualiser) {
    const std::vector<std::string> names = entryNames(sxbRxCatalogue());
    const auto indexOf = [&names](std::string_view name) {
        return std::find(names.begin(), names.end(), name) - names.begin();
    };
    EXPECT_THAT(firstEntries(sxbRxCatalogue(), 3),
                ElementsAre("RX_PCS_CFG0", "RX_PCS_CFG1", "RX_PCS_CFG2"));
    EXPECT_LT(indexOf("RX_PCS_CFG2"), indexOf(sxb_rx_step::outclockReport));
    EXPECT_LT(indexOf(sxb_rx_step::outclockReport), indexOf(sxb_rx_step::equaliserMode));
    EXPECT_LT(indexOf(sxb_rx_step::equaliserMode), indexOf("ADAPT_APT_CFG"));
}

TEST(SxbTxOrder, WidthsCodingAndDriveModeComeBeforeTheReport) {
    EXPECT_THAT(firstEntries(sxbTxCatalogue(), 3),
                ElementsAre("TX_PCS_CFG0", "PIPE_TX_EQ_CFG0", sxb_tx_step::outclockReport));
}

/// Fields of the entries in front of the first one of this name.
std::vector<std::string> fieldsBefore(const register_catalogue& catalogue, std::string_view name) {
    std::vector<std::string> fields;
    for (const catalogueEntry& entry : catalogue.entries()) {
        if (entry.name == name) {
            break;
        }
        for (const registerField& field : entry.fields) {
            fields.push_back(fieldName(entry.name, field.name));
        }
    }
    return fields;
}

TEST(SxbTxOrder, TheDriveModeIsTheOneFieldOfItsRegisterBeforeTheReport) {
    const std::vector<std::string> before =
        fieldsBefore(sxbTxCatalogue(), sxb_tx_step::outclockReport);
    EXPECT_THAT(before, IsSupersetOf({"TX_PCS_CFG0.TX_DATA_WIDTH", "TX_PCS_CFG0.TX_INT_DATA_WIDTH",
                                      "TX_PCS_CFG0.TX_8B10B_EN", "TX_PCS_CFG0.TX_PMA_DATA_SEL"}));
    EXPECT_EQ(std::count_if(before.begin(), before.end(),
                            [](const auto& name) { return name.find("PIPE_TX_EQ") == 0; }),
              1);
    EXPECT_EQ(before.back(), "PIPE_TX_EQ_CFG0.TX_DRIVE_MODE");
}

}  // namespace
}  // namespace sable_lanecfg
