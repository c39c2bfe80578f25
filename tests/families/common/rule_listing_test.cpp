#include "families/common/rule_listing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

/// One rule of every kind; the solver writes a field of the register that follows it.
register_catalogue smallCatalogue() {
    return {step("solver"),
            {"CLOCK_CFG",
             {constant("DELAY", 9), logic("DIVIDER"), shared("LOCKED", "solver"),
              copy("ENABLE", "PCIE_ENABLE")}},
            fieldsOnly("LINK_CFG", {constant("WIDTH", 3)}),
            constantWord("SPARE_CFG", 7),
            word("LINK_CFG")};
}

logicRules smallRules() {
    logicRules rules;
    rules["solver"] = [](rule_declaration& rule) {
        const auto rate = rule.reads<double>("TX_LINE_RATE");
        rule.alsoDeclares("RX_LINE_RATE");
        const auto hidden = rule.peeks<bool>("TX_IN_USE");
        const auto frequency = rule.writes<double>("INT_CLOCK");
        const auto locked = rule.writes("CLOCK_CFG.LOCKED");
        rule.body([=] {
            frequency.set(rate());
            locked.set(hidden() ? 1U : 0U);
        });
    };
    rules["CLOCK_CFG.DIVIDER"] = [](rule_declaration& rule) {
        const auto frequency = rule.reads<double>("INT_CLOCK");
        rule.gives([=] { return frequency() > 8.0 ? 1U : 2U; });
    };
    return rules;
}

class RuleListing : public testing::Test {
  protected:
    const std::vector<ruleDescription> rules =
        describeCatalogue("CLOCKS", smallCatalogue(), smallRules());
};

TEST_F(RuleListing, HasARowForEveryRuleAndNoneForASharedField) {
    ASSERT_THAT(rules, SizeIs(8));
    EXPECT_EQ(rules.size(), smallCatalogue().ruleCount());
    for (const ruleDescription& rule : rules) {
        EXPECT_EQ(rule.set, "CLOCKS");
    }
}

TEST_F(RuleListing, AStepHasItsDeclaredNamesInOrderAndNoOthers) {
    EXPECT_EQ(rules[0].kind, ruleKind::logic);
    EXPECT_THAT(rules[0].inputs, ElementsAre("TX_LINE_RATE", "RX_LINE_RATE"));
    EXPECT_THAT(rules[0].outputs, ElementsAre("INT_CLOCK", "CLOCK_CFG.LOCKED"));
}

TEST_F(RuleListing, AConstantHasNoInputsAndItsValue) {
    EXPECT_EQ(rules[1].kind, ruleKind::constant);
    EXPECT_THAT(rules[1].inputs, IsEmpty());
    EXPECT_THAT(rules[1].outputs, ElementsAre("CLOCK_CFG.DELAY"));
    EXPECT_EQ(rules[1].value, 9U);
}

TEST_F(RuleListing, ALogicFieldIsTheOutputOfItsOwnRule) {
    EXPECT_EQ(rules[2].kind, ruleKind::logic);
    EXPECT_THAT(rules[2].inputs, ElementsAre("INT_CLOCK"));
    EXPECT_THAT(rules[2].outputs, ElementsAre("CLOCK_CFG.DIVIDER"));
}

TEST_F(RuleListing, ACopyHasItsFlagAsInput) {
    EXPECT_EQ(rules[3].kind, ruleKind::copy);
    EXPECT_THAT(rules[3].inputs, ElementsAre("PCIE_ENABLE"));
    EXPECT_THAT(rules[3].outputs, ElementsAre("CLOCK_CFG.ENABLE"));
}

TEST_F(RuleListing, AWordHasAllItsFieldsAsInputs) {
    EXPECT_EQ(rules[4].kind, ruleKind::compose);
    EXPECT_THAT(rules[4].inputs, ElementsAre("CLOCK_CFG.DELAY", "CLOCK_CFG.DIVIDER",
                                             "CLOCK_CFG.LOCKED", "CLOCK_CFG.ENABLE"));
    EXPECT_THAT(rules[4].outputs, ElementsAre("CLOCK_CFG"));
}

TEST_F(RuleListing, AWordAwayFromItsFieldsStandsWhereItIsComposed) {
    EXPECT_EQ(rules[5].outputs.front(), "LINK_CFG.WIDTH");
    EXPECT_EQ(rules[7].kind, ruleKind::compose);
    EXPECT_THAT(rules[7].inputs, ElementsAre("LINK_CFG.WIDTH"));
    EXPECT_THAT(rules[7].outputs, ElementsAre("LINK_CFG"));
}

TEST_F(RuleListing, AConstantWordIsAConstant) {
    EXPECT_EQ(rules[6].kind, ruleKind::constant);
    EXPECT_THAT(rules[6].outputs, ElementsAre("SPARE_CFG"));
    EXPECT_EQ(rules[6].value, 7U);
}

TEST_F(RuleListing, NumbersAreThoseOfTheRegisteredRules) {
    gt_rule_engine engine("SXA", {}, {}, {}, {}, {});
    registerCatalogue(engine, catalogue_plan(smallCatalogue()), smallRules());
    for (std::size_t number = 0; number < rules.size(); ++number) {
        for (const std::string& output : rules[number].outputs) {
            EXPECT_EQ(engine.varMap.at(output).ruleNumber.value_or(-1), static_cast<int>(number))
                << output;
        }
    }
}

TEST(RuleListingFailure, NamesTheRuleThatIsMissing) {
    try {
        describeCatalogue("CLOCKS", smallCatalogue(), {});
        FAIL() << "a missing rule went unnoticed";
    } catch (const std::logic_error& refusal) {
        EXPECT_THAT(refusal.what(), HasSubstr("solver has no rule beside it"));
    }
}

}  // namespace
}  // namespace sable_lanecfg
