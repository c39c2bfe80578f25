#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_rules.h"
#include "sxb_expected_catalogue.h"

#include <lanecfg/family_rules.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::ExpectedField;
using lanecfg_test::expectedSxbFields;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testing::UnorderedElementsAre;

class SxbRuleListing : public testing::Test {
  protected:
    const ruleDescription& ruleWriting(const std::string& output) const {
        return rules.at(static_cast<std::size_t>(numberOf.at(output)));
    }

    const std::vector<ruleDescription> rules = rulesOfFamily("SXB", "live");
    const std::map<std::string, int> numberOf = [this] {
        std::map<std::string, int> numbers;
        for (std::size_t number = 0; number < rules.size(); ++number) {
            for (const std::string& output : rules[number].outputs) {
                const bool isFirst = numbers.emplace(output, static_cast<int>(number)).second;
                EXPECT_TRUE(isFirst) << "two rules write " << output;
            }
        }
        return numbers;
    }();
};

TEST_F(SxbRuleListing, HasTheRulesOfTheThreeSetsInTheirOrder) {
    std::vector<std::pair<std::string, int>> sets;
    for (const ruleDescription& rule : rules) {
        if (sets.empty() || sets.back().first != rule.set) {
            sets.emplace_back(rule.set, 0);
        }
        ++sets.back().second;
    }
    EXPECT_THAT(sets, ElementsAre(Pair("RX", 813), Pair("TX", 198), Pair("PLL", 898)));
}

TEST_F(SxbRuleListing, HasAllRulesOfEachKind) {
    std::map<ruleKind, int> counts;
    for (const ruleDescription& rule : rules) {
        ++counts[rule.kind];
    }
    EXPECT_THAT(counts, UnorderedElementsAre(Pair(ruleKind::constant, 674 + 631 + 132),
                                             Pair(ruleKind::copy, 5 + 1 + 2),
                                             Pair(ruleKind::logic, 149 + 94 + 35),
                                             Pair(ruleKind::compose, 70 + 87 + 29)));
}

TEST_F(SxbRuleListing, NumbersAreThoseOfTheRegisteredRules) {
    gt_rule_engine engine("SXB", {}, {}, {}, {}, {});
    registerSxbRxRules(engine);
    registerSxbTxRules(engine);
    registerSxbPllRules(engine);
    std::map<std::string, int> registered;
    for (const auto& [name, info] : engine.varMap) {
        if (info.ruleNumber) {
            registered[name] = *info.ruleNumber;
        }
    }
    EXPECT_EQ(numberOf, registered);
}

TEST_F(SxbRuleListing, EveryDeclaredInputIsAVariableOfTheEngine) {
    gt_rule_engine engine("SXB", {}, {}, {}, {}, {});
    registerSxbRxRules(engine);
    registerSxbTxRules(engine);
    registerSxbPllRules(engine);
    for (const ruleDescription& rule : rules) {
        for (const std::string& input : rule.inputs) {
            EXPECT_NE(engine.findVariable(input), nullptr) << input;
        }
    }
}

TEST_F(SxbRuleListing, EveryFieldHasTheRuleOfTheSecondList) {
    for (const ExpectedField& row : expectedSxbFields()) {
        const std::string name =
            row.field.empty() ? row.registerName : row.registerName + "." + row.field;
        ASSERT_EQ(numberOf.count(name), 1U) << name;
        const ruleDescription& rule = ruleWriting(name);
        EXPECT_EQ(rule.set, row.set) << name;
        if (row.kind == fieldKind::constant) {
            EXPECT_EQ(rule.kind, ruleKind::constant) << name;
            EXPECT_EQ(rule.value, row.value) << name;
            EXPECT_THAT(rule.inputs, IsEmpty()) << name;
        } else if (row.kind == fieldKind::copy) {
            EXPECT_EQ(rule.kind, ruleKind::copy) << name;
            EXPECT_THAT(rule.inputs, ElementsAre(row.source)) << name;
        } else {
            EXPECT_EQ(rule.kind, ruleKind::logic) << name;
        }
    }
}

TEST_F(SxbRuleListing, EveryWordDeclaresItsFieldsInTheOrderOfTheSecondList) {
    std::map<std::string, std::vector<std::string>> fields;
    for (const ExpectedField& row : expectedSxbFields()) {
        if (!row.field.empty()) {
            fields[row.registerName].push_back(row.registerName + "." + row.field);
        }
    }
    EXPECT_THAT(fields, SizeIs(70 + 87 + 29));
    for (const auto& [registerName, names] : fields) {
        const ruleDescription& rule = ruleWriting(registerName);
        EXPECT_EQ(rule.kind, ruleKind::compose) << registerName;
        EXPECT_EQ(rule.inputs, names) << registerName;
    }
}

TEST_F(SxbRuleListing, KeepsNamesThatNoRuleWrites) {
    EXPECT_THAT(ruleWriting("RX_ELASTIC_BUF_CFG0.ELASTICBUF_8B10B_EN").inputs,
                Contains("RX_BUFFER_MODERX_DATA_DECODING"));
    EXPECT_THAT(ruleWriting("INT_RPLL_FBDIV").inputs, Contains("INT_RPLLCLKOUTRATE"));
}

TEST(FamilyRules, AreNoneWhereTheLibraryHasNone) {
    EXPECT_THAT(rulesOfFamily("SXZ", "live"), IsEmpty());
    EXPECT_THAT(rulesOfFamily("SXB", "newest"), IsEmpty());
    EXPECT_THAT(rulesOfFamily("SXA", "stable"), IsEmpty());
}

}  // namespace
}  // namespace sable_lanecfg
