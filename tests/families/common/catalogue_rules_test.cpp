#include "families/common/catalogue_rules.h"

#include <boost/variant/get.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using testing::HasSubstr;

/// An engine whose database knows one register of three fields and one of two.
class small_engine : public gt_rule_engine {
  public:
    small_engine()
        : gt_rule_engine(
              "SXA", {}, {}, {},
              {{"CLOCK_CFG",
                {"channel",
                 {{"CLOCK_CFG.DIVIDER", {0, 4}},
                  {"CLOCK_CFG.SOURCE", {4, 2}},
                  {"CLOCK_CFG.ENABLE", {8, 1}}},
                 "0x00"}},
               {"LINK_CFG",
                {"channel", {{"LINK_CFG.DELAY", {0, 8}}, {"LINK_CFG.WIDTH", {8, 4}}}, "0x01"}}},
              {}) {}

    void runPass() {
        runRules();
        passFlag = !passFlag;
    }
};

/// A rule that its output tells apart.
ruleDeclarer declaringOutput(const std::string& output) {
    return [output](rule_declaration& rule) { rule.writes(output); };
}

std::vector<std::string> outputsOf(const logicRules& rules, const std::string& name) {
    rule_declaration declaration;
    ruleBeside(rules, name)(declaration);
    return declaration.signature().outputs;
}

class CatalogueRules : public testing::Test {
  protected:
    unsigned int value(const std::string& name) { return engine.getVal<unsigned int>(name); }
    int ruleNumber(const std::string& name) { return engine.varMap.at(name).ruleNumber.value(); }

    void registerAll(const register_catalogue& catalogue, const logicRules& rules,
                     const logicRules& rulesOfEngine = {}) {
        registerCatalogue(engine, catalogue_plan(catalogue), rules, rulesOfEngine);
    }

    /// The text of the refusal, empty when the catalogue is taken.
    std::string refusalOf(const register_catalogue& catalogue, const logicRules& rules,
                          const logicRules& rulesOfEngine = {}) {
        try {
            registerAll(catalogue, rules, rulesOfEngine);
        } catch (const std::logic_error& refusal) {
            return refusal.what();
        }
        return {};
    }

    static ruleDeclarer givesNumber(unsigned int number) {
        return [number](rule_declaration& rule) { rule.gives([number] { return number; }); };
    }

    small_engine engine;
};

TEST_F(CatalogueRules, ConstantFieldsMakeTheWord) {
    registerAll(
        {{"CLOCK_CFG", {constant("DIVIDER", 9), constant("SOURCE", 2), constant("ENABLE", 1)}}},
        {});
    engine.runPass();
    EXPECT_EQ(value("CLOCK_CFG.DIVIDER"), 9U);
    EXPECT_EQ(value("CLOCK_CFG.SOURCE"), 2U);
    EXPECT_EQ(value("CLOCK_CFG"), 0x129U);
}

TEST_F(CatalogueRules, AConstantComesBackAfterItWasOverwritten) {
    registerAll({constantWord("SPARE_CFG", 7)}, {});
    engine.setVal("SPARE_CFG", std::string("overwritten"));
    engine.runPass();
    EXPECT_EQ(value("SPARE_CFG"), 7U);
}

TEST_F(CatalogueRules, ACopyIsOneOrZeroAsItsFlagIs) {
    registerAll({fieldsOnly("CLOCK_CFG", {copy("ENABLE", "PCIE_ENABLE")})}, {});
    engine.setVal("PCIE_ENABLE", true);
    engine.runPass();
    EXPECT_EQ(value("CLOCK_CFG.ENABLE"), 1U);
    engine.setVal("PCIE_ENABLE", false);
    engine.runPass();
    EXPECT_EQ(value("CLOCK_CFG.ENABLE"), 0U);
}

TEST_F(CatalogueRules, ACopyOfSomethingElseThanAFlagIsBadGet) {
    registerAll({fieldsOnly("CLOCK_CFG", {copy("ENABLE", "PCIE_ENABLE")})}, {});
    engine.setVal("PCIE_ENABLE", 1U);
    EXPECT_THROW(engine.runPass(), boost::bad_get);
}

TEST_F(CatalogueRules, ALogicFieldTakesTheRuleBesideTheCatalogue) {
    registerAll({fieldsOnly("CLOCK_CFG", {logic("SOURCE")})},
                {{"CLOCK_CFG.SOURCE", givesNumber(3)}});
    engine.runPass();
    EXPECT_EQ(value("CLOCK_CFG.SOURCE"), 3U);
}

TEST_F(CatalogueRules, RulesAreNumberedInTheOrderOfTheCatalogue) {
    const logicRules rules{{"CLOCK_CFG.SOURCE", givesNumber(3)},
                           {"width search", [](rule_declaration& rule) {
                                const auto width = rule.writes("LINK_CFG.WIDTH");
                                const auto found = rule.writes<bool>("INT_WIDTH_FOUND");
                                rule.body([=] {
                                    width.set(5);
                                    found.set(true);
                                });
                            }}};
    registerAll(
        {{"CLOCK_CFG", {constant("DIVIDER", 9), logic("SOURCE"), copy("ENABLE", "PCIE_ENABLE")}},
         fieldsOnly("LINK_CFG", {constant("DELAY", 17), shared("WIDTH", "width search")}),
         constantWord("SPARE_CFG", 7),
         step("width search"),
         word("LINK_CFG")},
        rules);
    EXPECT_EQ(ruleNumber("CLOCK_CFG.DIVIDER"), 0);
    EXPECT_EQ(ruleNumber("CLOCK_CFG.SOURCE"), 1);
    EXPECT_EQ(ruleNumber("CLOCK_CFG.ENABLE"), 2);
    EXPECT_EQ(ruleNumber("CLOCK_CFG"), 3);
    EXPECT_EQ(ruleNumber("LINK_CFG.DELAY"), 4);
    EXPECT_EQ(ruleNumber("SPARE_CFG"), 5);
    EXPECT_EQ(ruleNumber("LINK_CFG.WIDTH"), 6);
    EXPECT_EQ(ruleNumber("INT_WIDTH_FOUND"), 6);
    EXPECT_EQ(ruleNumber("LINK_CFG"), 7);

    engine.setVal("PCIE_ENABLE", true);
    engine.runPass();
    EXPECT_EQ(value("CLOCK_CFG"), 0x139U);
    EXPECT_EQ(value("LINK_CFG"), 0x511U);
}

TEST_F(CatalogueRules, AWordDeclaresAllItsFieldsSoItWaitsForThem) {
    // The word stands first, and the rule that writes the shared field comes last.
    registerAll({fieldsOnly("LINK_CFG", {constant("DELAY", 1), shared("WIDTH", "late")}),
                 word("LINK_CFG"), step("late")},
                {{"late", [](rule_declaration& rule) {
                      const auto width = rule.writes("LINK_CFG.WIDTH");
                      rule.body([=] { width.set(2); });
                  }}});
    engine.runPass();
    EXPECT_EQ(value("LINK_CFG"), 0x201U);
}

TEST_F(CatalogueRules, AFieldsRuleMayWriteOtherFieldsToo) {
    registerAll({{"LINK_CFG", {logic("DELAY"), shared("WIDTH", "LINK_CFG.DELAY")}}},
                {{"LINK_CFG.DELAY", [](rule_declaration& rule) {
                      const auto delay = rule.writes("LINK_CFG.DELAY");
                      const auto width = rule.writes("LINK_CFG.WIDTH");
                      rule.body([=] {
                          delay.set(3);
                          width.set(4);
                      });
                  }}});
    engine.runPass();
    EXPECT_EQ(value("LINK_CFG"), 0x403U);
    EXPECT_EQ(ruleNumber("LINK_CFG.WIDTH"), ruleNumber("LINK_CFG.DELAY"));
}

TEST_F(CatalogueRules, RulesOfTheEngineStandBesideTheCatalogueToo) {
    registerAll({{"LINK_CFG", {logic("DELAY"), logic("WIDTH")}}},
                {{"LINK_CFG.WIDTH", givesNumber(4)}}, {{"LINK_CFG.DELAY", givesNumber(3)}});
    engine.runPass();
    EXPECT_EQ(value("LINK_CFG"), 0x403U);
    EXPECT_EQ(ruleNumber("LINK_CFG.DELAY"), 0);
    EXPECT_EQ(ruleNumber("LINK_CFG.WIDTH"), 1);
}

TEST_F(CatalogueRules, ARuleOfTheEngineNeedsItsPlaceInTheCatalogue) {
    EXPECT_EQ(refusalOf({fieldsOnly("LINK_CFG", {constant("DELAY", 1)})}, {},
                        {{"LINK_CFG.WIDTH", givesNumber(3)}}),
              "register catalogue: LINK_CFG.WIDTH has a rule, but is no logic field and no step");
}

TEST_F(CatalogueRules, ARuleOfTheEngineDoesNotReplaceTheOneOfAllEngines) {
    EXPECT_EQ(refusalOf({fieldsOnly("LINK_CFG", {logic("DELAY")})},
                        {{"LINK_CFG.DELAY", givesNumber(3)}}, {{"LINK_CFG.DELAY", givesNumber(4)}}),
              "register catalogue: LINK_CFG.DELAY has a rule, but is no logic field and no step");
}

TEST_F(CatalogueRules, ACatalogueThatLacksARuleRegistersNothing) {
    refusalOf({{"CLOCK_CFG", {constant("DIVIDER", 9), logic("SOURCE")}}}, {});
    EXPECT_TRUE(engine.varMap.empty());
}

TEST_F(CatalogueRules, AStepMayStandAtSeveralPlaces) {
    registerAll({step("count"), constantWord("SPARE_CFG", 7), step("count")},
                {{"count", [](rule_declaration& rule) {
                      const auto counted = rule.writes("INT_COUNT");
                      rule.body([=] { counted.set(1); });
                  }}});
    // The last one registered owns what they write.
    EXPECT_EQ(ruleNumber("INT_COUNT"), 2);
}

TEST_F(CatalogueRules, WhatIsSetBeforeKeepsItsValueAndItsPlace) {
    engine.setVal("CLOCK_CFG.SOURCE", 2U);
    engine.setVal("PCIE_ENABLE", true);
    registerAll({fieldsOnly("CLOCK_CFG", {constant("DIVIDER", 9), copy("ENABLE", "PCIE_ENABLE")}),
                 fieldsOnly("CLOCK_CFG", {constant("SOURCE", 1)})},
                {});
    EXPECT_EQ(value("CLOCK_CFG.SOURCE"), 2U);
    EXPECT_EQ(engine.addVertex("CLOCK_CFG.SOURCE", varInfo()), 0U);
    EXPECT_EQ(engine.addVertex("PCIE_ENABLE", varInfo()), 1U);
    EXPECT_EQ(engine.addVertex("CLOCK_CFG.DIVIDER", varInfo()), 2U);
    engine.runPass();
    EXPECT_EQ(value("CLOCK_CFG.SOURCE"), 1U);
    EXPECT_EQ(value("CLOCK_CFG.ENABLE"), 1U);
}

TEST_F(CatalogueRules, VerticesAreThoseOfPlainRuleCalls) {
    registerAll(
        {{"CLOCK_CFG", {constant("DIVIDER", 9), logic("SOURCE"), copy("ENABLE", "PCIE_ENABLE")}}},
        {{"CLOCK_CFG.SOURCE", [](rule_declaration& rule) {
              const auto rate = rule.reads<double>("RATE");
              rule.gives([=] { return rate() > 8.0 ? 1U : 0U; });
          }}});
    const std::vector<std::string> inOrder{"CLOCK_CFG.DIVIDER", "CLOCK_CFG.SOURCE", "RATE",
                                           "CLOCK_CFG.ENABLE",  "PCIE_ENABLE",      "CLOCK_CFG"};
    for (std::size_t index = 0; index < inOrder.size(); ++index) {
        EXPECT_EQ(engine.addVertex(inOrder[index], varInfo()), index) << inOrder[index];
    }
}

TEST_F(CatalogueRules, AWordThatTheDatabaseLacksIsZeroAndEntersTheDatabase) {
    registerAll({{"NEW_CFG", {constant("X", 5)}}}, {});
    engine.runPass();
    EXPECT_EQ(value("NEW_CFG"), 0U);
    EXPECT_EQ(engine.attributes.count("NEW_CFG"), 1U);
}

TEST_F(CatalogueRules, AFieldOfTheDatabaseThatNoRuleWritesIsBadGet) {
    registerAll({{"LINK_CFG", {constant("DELAY", 1)}}}, {});
    EXPECT_THROW(engine.runPass(), boost::bad_get);
}

TEST_F(CatalogueRules, ALogicFieldWithoutARuleIsRefused) {
    EXPECT_THAT(refusalOf({fieldsOnly("CLOCK_CFG", {logic("SOURCE")})}, {}),
                HasSubstr("CLOCK_CFG.SOURCE"));
}

TEST_F(CatalogueRules, AStepWithoutARuleIsRefused) {
    EXPECT_THAT(refusalOf({step("width search")}, {}), HasSubstr("width search"));
}

TEST_F(CatalogueRules, ARuleThatStandsBesideNothingIsRefused) {
    EXPECT_THAT(refusalOf({constantWord("SPARE_CFG", 7)}, {{"SPARE_CFG", givesNumber(1)}}),
                HasSubstr("SPARE_CFG"));
}

TEST_F(CatalogueRules, ARuleThatDoesNotWriteItsOwnFieldIsRefused) {
    EXPECT_THAT(refusalOf({fieldsOnly("CLOCK_CFG", {logic("SOURCE")})},
                          {{"CLOCK_CFG.SOURCE",
                            [](rule_declaration& rule) {
                                rule.writes("CLOCK_CFG.SORCE");
                                rule.body([] {});
                            }}}),
                HasSubstr("CLOCK_CFG.SOURCE"));
}

TEST_F(CatalogueRules, ASharedFieldThatNoRuleWritesIsRefused) {
    EXPECT_THAT(refusalOf({fieldsOnly("LINK_CFG", {shared("WIDTH", "width search")})}, {}),
                HasSubstr("LINK_CFG.WIDTH"));
}

TEST(LogicRuleEdits, AnAddedRuleStandsBesideTheOthers) {
    logicRules rules{{"CLOCK_CFG.SOURCE", declaringOutput("present")}};
    addRule(rules, "CLOCK_CFG.ENABLE", declaringOutput("added"));
    EXPECT_EQ(outputsOf(rules, "CLOCK_CFG.SOURCE"), std::vector<std::string>{"present"});
    EXPECT_EQ(outputsOf(rules, "CLOCK_CFG.ENABLE"), std::vector<std::string>{"added"});
}

TEST(LogicRuleEdits, AReplacedRuleTakesThePlaceOfTheOther) {
    logicRules rules{{"CLOCK_CFG.SOURCE", declaringOutput("present")}};
    replaceRule(rules, "CLOCK_CFG.SOURCE", declaringOutput("replaced"));
    EXPECT_EQ(outputsOf(rules, "CLOCK_CFG.SOURCE"), std::vector<std::string>{"replaced"});
    EXPECT_EQ(rules.size(), 1U);
}

TEST(LogicRuleEdits, ARemovedRuleIsGone) {
    logicRules rules{{"CLOCK_CFG.SOURCE", declaringOutput("present")},
                     {"CLOCK_CFG.ENABLE", declaringOutput("other")}};
    removeRule(rules, "CLOCK_CFG.SOURCE");
    EXPECT_EQ(rules.count("CLOCK_CFG.SOURCE"), 0U);
    EXPECT_EQ(rules.count("CLOCK_CFG.ENABLE"), 1U);
}

TEST(LogicRuleEdits, RulesOfWhatACatalogueHasNoLongerAreRemoved) {
    const register_catalogue before{step("solver"),
                                    step("search"),
                                    {"CLOCK_CFG", {logic("SOURCE"), logic("ENABLE")}},
                                    {"LINK_CFG", {constant("DELAY", 1)}}};
    const register_catalogue after{
        step("search"), {"CLOCK_CFG", {constant("SOURCE", 1), logic("ENABLE"), logic("SPEED")}}};
    logicRules rules;
    for (const char* const name : {"solver", "search", "CLOCK_CFG.SOURCE", "CLOCK_CFG.ENABLE"}) {
        rules[name] = declaringOutput(name);
    }
    removeRulesWithoutPlace(rules, before, after);
    EXPECT_EQ(rules.size(), 2U);
    EXPECT_EQ(rules.count("search"), 1U);
    EXPECT_EQ(rules.count("CLOCK_CFG.ENABLE"), 1U);
    // The rule of a field that is gone has to have been there.
    EXPECT_THROW(removeRulesWithoutPlace(rules, before, after), std::invalid_argument);
}

TEST(LogicRuleEdits, ASlipInADifferenceIsRefusedByName) {
    logicRules rules{{"CLOCK_CFG.SOURCE", declaringOutput("present")}};
    const auto refusalOf = [&rules](const auto& edit) -> std::string {
        try {
            edit();
        } catch (const std::invalid_argument& refusal) {
            return refusal.what();
        }
        return {};
    };
    EXPECT_THAT(refusalOf([&] { addRule(rules, "CLOCK_CFG.SOURCE", declaringOutput("again")); }),
                HasSubstr("there is already a rule CLOCK_CFG.SOURCE"));
    EXPECT_THAT(refusalOf([&] { replaceRule(rules, "CLOCK_CFG.SPEED", declaringOutput("new")); }),
                HasSubstr("no rule CLOCK_CFG.SPEED"));
    EXPECT_THAT(refusalOf([&] { removeRule(rules, "CLOCK_CFG.SPEED"); }),
                HasSubstr("no rule CLOCK_CFG.SPEED"));
    EXPECT_EQ(outputsOf(rules, "CLOCK_CFG.SOURCE"), std::vector<std::string>{"present"});
}

}  // namespace
}  // namespace sable_lanecfg
