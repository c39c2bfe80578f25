#include "families/frozen/sxb_stable_catalogue.h"

#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_tx_catalogue.h"
#include "sxb_stable_expected_catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::ChangedRegister;
using lanecfg_test::changedSxbNames;
using lanecfg_test::changedSxbRegisters;
using lanecfg_test::expectedSxbStableFields;
using lanecfg_test::registersOf;
using lanecfg_test::registersOfSet;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

/// A frozen set beside the current one that it is made of.
struct SetPair {
    std::string name;
    const register_catalogue& (*frozen)();
    const register_catalogue& (*current)();
    std::size_t rules;
};

void PrintTo(const SetPair& pair, std::ostream* output) {
    *output << pair.name;
}

const std::vector<SetPair>& setPairs() {
    static const std::vector<SetPair> pairs{{"RX", sxbStableRxCatalogue, sxbRxCatalogue, 827},
                                            {"TX", sxbStableTxCatalogue, sxbTxCatalogue, 198},
                                            {"PLL", sxbStablePllCatalogue, sxbPllCatalogue, 804}};
    return pairs;
}

const SetPair& pairOf(const std::string& set) {
    return *std::find_if(setPairs().begin(), setPairs().end(),
                         [&set](const SetPair& pair) { return pair.name == set; });
}

using registerTexts = std::map<std::string, std::string>;

registerTexts textsOf(const register_catalogue& catalogue) {
    const auto registers = registersOf(catalogue);
    return {registers.begin(), registers.end()};
}

registerTexts expectedTexts(const std::string& set) {
    const auto registers = registersOfSet(expectedSxbStableFields(), set);
    return {registers.begin(), registers.end()};
}

std::string textIn(const registerTexts& texts, const std::string& name) {
    const auto found = texts.find(name);
    return found == texts.end() ? "there is no such register" : found->second;
}

/// One case for each register that the lists of differences name: all of its rows together.
class SxbStableRegister : public testing::TestWithParam<ChangedRegister> {};

TEST_P(SxbStableRegister, HasItsCurrentFieldsWithTheDifferences) {
    const auto& [set, name] = GetParam();
    EXPECT_EQ(textIn(textsOf(pairOf(set).frozen()), name), textIn(expectedTexts(set), name));
}

INSTANTIATE_TEST_SUITE_P(Lists, SxbStableRegister, testing::ValuesIn(changedSxbRegisters()),
                         [](const auto& row) { return row.param.set + "_" + row.param.name; });

class SxbStableSet : public testing::TestWithParam<SetPair> {
  protected:
    const register_catalogue& frozen = GetParam().frozen();
    const register_catalogue& current = GetParam().current();
};

TEST_P(SxbStableSet, RegistersItsNumberOfRules) {
    EXPECT_EQ(frozen.ruleCount(), GetParam().rules);
}

TEST_P(SxbStableSet, HasTheRegistersThatTheListsLeave) {
    EXPECT_EQ(textsOf(frozen), expectedTexts(GetParam().name));
}

/// Rules of a catalogue that the lists do not name, in order, each with what it stores.
std::vector<std::string> unnamedRules(const register_catalogue& catalogue) {
    std::vector<std::string> rules;
    const auto add = [&rules](const std::string& name, const std::string& content) {
        if (changedSxbNames().count(name) == 0 && name != "RX_CDR_CFG0.LOWLATENCY_OVR") {
            rules.push_back(name + content);
        }
    };
    for (const catalogueEntry& entry : catalogue.entries()) {
        for (const registerField& field : entry.fields) {
            add(fieldName(entry.name, field.name),
                " " + std::to_string(static_cast<int>(field.kind)) + " " +
                    std::to_string(field.value) + " " + std::string(field.source));
        }
        // The frozen set divides a register, whose word is the same.
        const entryKind kind =
            entry.kind == entryKind::word ? entryKind::wholeRegister : entry.kind;
        if (kind != entryKind::fields) {
            add(std::string(entry.name),
                " " + std::to_string(static_cast<int>(kind)) + " " + std::to_string(entry.value));
        }
    }
    return rules;
}

/// The rules with the frozen step of each direction in the place of its outclock report.
std::vector<std::string> withClocksPerWord(std::vector<std::string> rules) {
    for (const std::string side : {"RX", "TX"}) {
        std::replace(rules.begin(), rules.end(), side + " outclock report 4 0",
                     side + " clocks per word 4 0");
    }
    return rules;
}

TEST_P(SxbStableSet, HasEverythingElseAsTheCurrentRulesInTheirOrder) {
    std::vector<std::string> rules = unnamedRules(frozen);
    // It stands for a rule that the current set has at a field; its place has a test of its own.
    const auto step = std::find(rules.begin(), rules.end(), "pipe clock divider 4 0");
    if (step != rules.end()) {
        EXPECT_EQ(GetParam().name, "PLL");
        rules.erase(step);
    }
    EXPECT_THAT(rules, ElementsAreArray(withClocksPerWord(unnamedRules(current))));
}

INSTANTIATE_TEST_SUITE_P(Sets, SxbStableSet, testing::ValuesIn(setPairs()),
                         [](const auto& pair) { return pair.param.name; });

/// Names of entries from one to another, both included.
std::vector<std::string> entriesBetween(const register_catalogue& catalogue,
                                        const std::string& first, const std::string& last) {
    std::vector<std::string> names;
    bool isInside = false;
    for (const catalogueEntry& entry : catalogue.entries()) {
        isInside = isInside || entry.name == first;
        if (isInside) {
            names.emplace_back(entry.name);
        }
        if (entry.name == last) {
            return names;
        }
    }
    return {};
}

TEST(SxbStableOrder, CalibrationStandsBehindTheLogicOfThePlls) {
    EXPECT_THAT(
        entriesBetween(sxbStablePllCatalogue(), "RPLL_LGC_CFG2", "TX programmable divider search"),
        ElementsAre("RPLL_LGC_CFG2", "RCALBG_BOT_CFG0", "RCALBG_BOT_CFG1", "RCALBG_BOT_CFG2",
                    "RCALBG_BOT_CFG3", "RCALBG_BOT_CFG4", "RCALBG_BOT_CFG5", "RCALBG_TOP_CFG0",
                    "RCALBG_TOP_CFG1", "RCALBG_TOP_CFG2", "RCALBG_TOP_CFG3", "RCALBG_TOP_CFG4",
                    "RCALBG_TOP_CFG5", "TX programmable divider search"));
}

TEST(SxbStableOrder, TheMemoryCellsComeLast) {
    EXPECT_THAT(
        entriesBetween(sxbStablePllCatalogue(), "UB_CFG0", "MEMCELLX0F13"),
        ElementsAre("UB_CFG0", "MEMCELLX0C12", "MEMCELLX0F12", "MEMCELLX0C13", "MEMCELLX0F13"));
    EXPECT_EQ(sxbStablePllCatalogue().entries().back().name, "MEMCELLX0F13");
}

TEST(SxbStableOrder, BothRulesOfThePipeClockStandAtTheFieldsPlace) {
    EXPECT_THAT(entriesBetween(sxbStablePllCatalogue(), "PIPE_CTRL_CFG4", "PIPE_CTRL_CFG6"),
                ElementsAre("PIPE_CTRL_CFG4", "PIPE_CTRL_CFG5", "pipe clock divider",
                            "PIPE_CTRL_CFG5", "PIPE_CTRL_CFG5", "PIPE_CTRL_CFG6"));
    const auto& entries = sxbStablePllCatalogue().entries();
    const auto step = std::find_if(entries.begin(), entries.end(), [](const catalogueEntry& entry) {
        return entry.name == "pipe clock divider";
    });
    EXPECT_EQ(std::prev(step)->fields.back().name, "RX128B130B_RESET_ON_SYNC_ERR_EN");
    EXPECT_EQ(std::next(step)->fields.front().name, "BUFGTDIV_G1_PIPECLK");
}

TEST(SxbStableOrder, TheGearboxWordsStandBehindTheDriver) {
    EXPECT_THAT(entriesBetween(sxbStableTxCatalogue(), "TX_DRV_CFG1", "TX_GB_ENC_CFG3"),
                ElementsAre("TX_DRV_CFG1", "TX_GB_ENC_CFG1", "TX_GB_ENC_CFG2", "TX_GB_ENC_CFG3"));
}

TEST(SxbStableOrder, TheClocksInAWordStandWhereTheOutclockReportsDo) {
    EXPECT_THAT(entriesBetween(sxbStableRxCatalogue(), "RX_PCS_CFG2", "ADAPT_APT_CFG"),
                ElementsAre("RX_PCS_CFG2", "RX clocks per word", "ADAPT_APT_CFG"));
    EXPECT_THAT(entriesBetween(sxbStableTxCatalogue(), "TX_PCS_CFG0", "TX clocks per word"),
                ElementsAre("TX_PCS_CFG0", "PIPE_TX_EQ_CFG0", "TX clocks per word"));
}

TEST(SxbStableCatalogue, IsTheThreeSetsInTheOrderOfRegistration) {
    EXPECT_EQ(sxbStableCatalogue().ruleCount(), 827U + 198U + 804U);
    EXPECT_EQ(sxbStableCatalogue().entries().front().name, "RX_PCS_CFG0");
    EXPECT_EQ(sxbStableCatalogue().entries().back().name, "MEMCELLX0F13");
}

TEST(SxbStableCatalogue, LeavesTheCurrentOneAsItWas) {
    sxbStableCatalogue();
    EXPECT_EQ(sxbRxCatalogue().ruleCount(), 813U);
    EXPECT_EQ(sxbTxCatalogue().ruleCount(), 198U);
    EXPECT_EQ(sxbPllCatalogue().ruleCount(), 898U);
    EXPECT_THAT(sxbPllCatalogue().fieldsOf("MEMCELLX0C12"), IsEmpty());
}

TEST(SxbStableCatalogue, HasNoRegisterOfReferenceClocksOrBiasOfTheCurrentRules) {
    const registerTexts texts = textsOf(sxbStablePllCatalogue());
    for (const char* const name :
         {"CFG0", "CFG1", "CFG2", "CFG3", "CFG4", "CFG5", "LCPLL_REFCLK_IPS", "RPLL_REFCLK_IPS"}) {
        EXPECT_EQ(texts.count(name), 0U) << name;
    }
}

}  // namespace
}  // namespace sable_lanecfg
