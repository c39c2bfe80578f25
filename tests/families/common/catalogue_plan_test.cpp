#include "families/common/catalogue_plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using testing::ElementsAre;

/// A register in the order of its fields, one in two parts, a word, a step.
register_catalogue smallCatalogue() {
    return {{"LINK_CFG", {constant("WIDTH", 9), logic("DELAY"), copy("ENABLE", "PCIE_ENABLE")}},
            fieldsOnly("CLOCK_CFG", {shared("SOURCE", "solver"), copy("BYPASS", "PCIE_ENABLE")}),
            constantWord("SPARE_CFG", 7),
            step("solver"),
            word("CLOCK_CFG")};
}

class CataloguePlan : public testing::Test {
  protected:
    std::vector<std::string> namesAt(const std::vector<catalogue_plan::number>& places) const {
        std::vector<std::string> names;
        for (const catalogue_plan::number place : places) {
            names.push_back(plan.names().at(place));
        }
        return names;
    }

    std::string outputOf(std::size_t rule) const {
        return plan.names().at(plan.rules().at(rule).output);
    }

    std::vector<ruleKind> kinds() const {
        std::vector<ruleKind> all;
        for (const auto& rule : plan.rules()) {
            all.push_back(rule.kind);
        }
        return all;
    }

    const catalogue_plan plan{smallCatalogue()};
};

TEST_F(CataloguePlan, HasEachNameOnceAndTheirKeyOrder) {
    EXPECT_THAT(namesAt(plan.inKeyOrder()),
                ElementsAre("CLOCK_CFG", "CLOCK_CFG.BYPASS", "CLOCK_CFG.SOURCE", "LINK_CFG",
                            "LINK_CFG.DELAY", "LINK_CFG.ENABLE", "LINK_CFG.WIDTH", "PCIE_ENABLE",
                            "SPARE_CFG"));
    EXPECT_EQ(plan.names().size(), 9U);
}

TEST_F(CataloguePlan, HasTheRulesInTheOrderOfTheCatalogue) {
    EXPECT_THAT(kinds(), ElementsAre(ruleKind::constant, ruleKind::logic, ruleKind::copy,
                                     ruleKind::compose, ruleKind::copy, ruleKind::constant,
                                     ruleKind::logic, ruleKind::compose));
    EXPECT_EQ(plan.rules().size(), smallCatalogue().ruleCount());
}

TEST_F(CataloguePlan, AConstantHasItsValue) {
    EXPECT_EQ(outputOf(0), "LINK_CFG.WIDTH");
    EXPECT_EQ(plan.rules()[0].value, 9U);
    EXPECT_EQ(outputOf(5), "SPARE_CFG");
    EXPECT_EQ(plan.rules()[5].value, 7U);
}

TEST_F(CataloguePlan, ACopyHasItsFlag) {
    EXPECT_EQ(outputOf(2), "LINK_CFG.ENABLE");
    EXPECT_EQ(plan.names()[plan.rules()[2].source], "PCIE_ENABLE");
    EXPECT_EQ(plan.rules()[4].source, plan.rules()[2].source);
}

TEST_F(CataloguePlan, ALogicFieldHasItselfAsOutputAndAStepHasNone) {
    EXPECT_EQ(outputOf(1), "LINK_CFG.DELAY");
    EXPECT_EQ(plan.logicRuleNames()[plan.rules()[1].source], "LINK_CFG.DELAY");
    EXPECT_EQ(plan.rules()[6].output, catalogue_plan::none);
    EXPECT_EQ(plan.logicRuleNames()[plan.rules()[6].source], "solver");
    EXPECT_THAT(plan.logicRulesInKeyOrder(), ElementsAre(0, 1));
}

TEST_F(CataloguePlan, AWordDeclaresItsFieldsAsTheyStandAndKnowsTheirKeyOrder) {
    EXPECT_EQ(outputOf(3), "LINK_CFG");
    const auto& link = plan.words()[plan.rules()[3].source];
    EXPECT_THAT(namesAt(link.declared),
                ElementsAre("LINK_CFG.WIDTH", "LINK_CFG.DELAY", "LINK_CFG.ENABLE"));
    EXPECT_THAT(namesAt(link.inKeyOrder),
                ElementsAre("LINK_CFG.DELAY", "LINK_CFG.ENABLE", "LINK_CFG.WIDTH"));
}

TEST_F(CataloguePlan, AWordOfPartsHasTheFieldsOfAllItsEntries) {
    EXPECT_EQ(outputOf(7), "CLOCK_CFG");
    EXPECT_THAT(namesAt(plan.words()[plan.rules()[7].source].declared),
                ElementsAre("CLOCK_CFG.SOURCE", "CLOCK_CFG.BYPASS"));
}

TEST_F(CataloguePlan, KnowsTheFieldsThatAnotherRuleWrites) {
    EXPECT_THAT(namesAt(plan.sharedFields()), ElementsAre("CLOCK_CFG.SOURCE"));
}

/// The text of the refusal, empty when the catalogue is taken.
std::string refusalOf(const register_catalogue& catalogue) {
    try {
        const catalogue_plan plan(catalogue);
    } catch (const std::logic_error& refusal) {
        return refusal.what();
    }
    return {};
}

struct TwiceListed {
    std::string name;
    registerField field;
};

class FieldOfItsOwnRule : public testing::TestWithParam<TwiceListed> {};

TEST_P(FieldOfItsOwnRule, IsRefusedAsSharedToo) {
    EXPECT_EQ(refusalOf({fieldsOnly("LINK_CFG", {GetParam().field, shared("WIDTH", "search")})}),
              "register catalogue: LINK_CFG.WIDTH is shared, so another rule writes it, but is "
              "listed with a rule of its own too");
}

TEST_P(FieldOfItsOwnRule, IsRefusedAsSharedInAnotherPartOfTheRegisterToo) {
    EXPECT_THAT(refusalOf({fieldsOnly("LINK_CFG", {shared("WIDTH", "search")}), step("search"),
                           fieldsOnly("LINK_CFG", {GetParam().field})}),
                testing::HasSubstr("LINK_CFG.WIDTH"));
}

TEST_P(FieldOfItsOwnRule, IsTakenBesideAnotherSharedOne) {
    EXPECT_EQ(refusalOf({fieldsOnly("LINK_CFG", {GetParam().field, shared("DELAY", "search")})}),
              "");
}

INSTANTIATE_TEST_SUITE_P(Kinds, FieldOfItsOwnRule,
                         testing::Values(TwiceListed{"Constant", constant("WIDTH", 1)},
                                         TwiceListed{"Copy", copy("WIDTH", "PCIE_ENABLE")},
                                         TwiceListed{"Logic", logic("WIDTH")}),
                         [](const auto& row) { return row.param.name; });

TEST(EmptyCataloguePlan, HasNothing) {
    const catalogue_plan plan{register_catalogue()};
    EXPECT_TRUE(plan.names().empty());
    EXPECT_TRUE(plan.rules().empty());
}

}  // namespace
}  // namespace sable_lanecfg
