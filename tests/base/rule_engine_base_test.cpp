#include "base/rule_engine_fixture.h"
#include "support/captured_output.h"
#include "support/undefined_name.h"

#include <lanecfg/rule_engine_base.h>

#include <boost/optional/optional_io.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using lanecfg_test::CapturedOutput;
using lanecfg_test::PassEngine;
using lanecfg_test::undefinedName;
using sable_lanecfg::rule_engine_base;
using sable_lanecfg::ruleValue;
using sable_lanecfg::variable;
using sable_lanecfg::variableMap;
using sable_lanecfg::varInfo;
using testing::ElementsAre;
using testing::IsEmpty;

using RuleEngineBase = lanecfg_test::RuleEngineFixture;

// ---- values -------------------------------------------------------------------------------

TEST_F(RuleEngineBase, AlternativesOfAValueKeepTheirIndices) {
    EXPECT_EQ(ruleValue().which(), 0);
    EXPECT_EQ(ruleValue(std::string("text")).which(), 1);
    EXPECT_EQ(ruleValue(7U).which(), 2);
    EXPECT_EQ(ruleValue(true).which(), 3);
    EXPECT_EQ(ruleValue(1.5F).which(), 4);
    EXPECT_EQ(ruleValue(1.5).which(), 5);
    EXPECT_EQ(ruleValue(std::vector<double>{1.0}).which(), 6);
}

TEST_F(RuleEngineBase, EveryAlternativeReadsBackAsItWasSet) {
    engine.setVal("text", std::string("QPLL"));
    engine.setVal("number", 4294967295U);
    engine.setVal("flag", true);
    engine.setVal("single", 0.1F);
    engine.setVal("rate", 10.3125);
    engine.setVal("list", std::vector<double>{156.25, 312.5});

    EXPECT_EQ(engine.getVal<std::string>("text"), "QPLL");
    EXPECT_EQ(engine.getVal<unsigned int>("number"), 4294967295U);
    EXPECT_TRUE(engine.getVal<bool>("flag"));
    EXPECT_EQ(engine.getVal<float>("single"), 0.1F);
    EXPECT_EQ(engine.getVal<double>("rate"), 10.3125);
    EXPECT_THAT(engine.getVal<std::vector<double>>("list"), ElementsAre(156.25, 312.5));
}

TEST_F(RuleEngineBase, AnyAlternativeMayReplaceAnyOther) {
    engine.setVal("v", 3U);
    engine.setVal("v", std::string("text"));

    EXPECT_EQ(engine.getVal<std::string>("v"), "text");
    EXPECT_THROW(engine.getVal<unsigned int>("v"), boost::bad_get);
}

TEST_F(RuleEngineBase, ReadingAnotherAlternativeConvertsNothing) {
    engine.setVal("single", 1.0F);
    engine.setVal("number", 1U);
    engine.setVal("flag", true);
    engine.setVal("rate", 1.0);

    EXPECT_THROW(engine.getVal<double>("single"), boost::bad_get);
    EXPECT_THROW(engine.getVal<bool>("number"), boost::bad_get);
    EXPECT_THROW(engine.getVal<unsigned int>("flag"), boost::bad_get);
    EXPECT_THROW(engine.getVal<float>("rate"), boost::bad_get);
    EXPECT_THROW(engine.getVal<std::string>("rate"), boost::bad_get);
    EXPECT_THROW(engine.getVal<std::vector<double>>("rate"), boost::bad_get);
}

TEST_F(RuleEngineBase, UnknownVariableIsReportedOnStandardOutputAndThrownByName) {
    const CapturedOutput output;

    EXPECT_EQ(undefinedName([this] { engine.getVal<double>("TX_LINE_RATE"); }), "TX_LINE_RATE");
    EXPECT_EQ(output.text(), "ERROR: Key Not found - TX_LINE_RATE, or value undefined.\n");
    EXPECT_THAT(engine.varMap, IsEmpty());
}

TEST_F(RuleEngineBase, VariableSetToBlankIsUndefinedAgain) {
    const CapturedOutput output;
    engine.setVal("v", 3U);
    engine.setVal("v", boost::blank());

    EXPECT_EQ(undefinedName([this] { engine.getVal<unsigned int>("v"); }), "v");
    EXPECT_EQ(output.text(), "ERROR: Key Not found - v, or value undefined.\n");
}

TEST_F(RuleEngineBase, SettingAKnownVariableKeepsItsOwnerAndItsVertex) {
    engine.rule({}, {"a"}, noting("a"));
    engine.setVal("a", 5U);

    EXPECT_EQ(engine.varMap.at("a").ruleNumber, 0);
    EXPECT_EQ(engine.addVertex("a", varInfo()), 0U);
    EXPECT_EQ(vertexCount(), 1U);
}

// ---- held variables -----------------------------------------------------------------------

TEST_F(RuleEngineBase, FindsNoVariableOfAnUnknownName) {
    EXPECT_EQ(engine.findVariable("v"), nullptr);
    EXPECT_THAT(engine.varMap, IsEmpty());
}

TEST_F(RuleEngineBase, HeldVariableStaysTheSameWhileOthersAreEntered) {
    engine.setVal("held", 1U);
    variable* const held = engine.findVariable("held");
    for (unsigned int number = 0; number < 1000; ++number) {
        engine.setVal("other " + std::to_string(number), number);
    }
    engine.setVal("held", 2U);

    EXPECT_EQ(engine.findVariable("held"), held);
    EXPECT_EQ(held->first, "held");
    EXPECT_EQ(rule_engine_base::valueOf<unsigned int>(*held), 2U);
}

TEST_F(RuleEngineBase, FindsAVariableThatOnlyTheMapKnows) {
    engine.varMap["direct"].value = ruleValue(1.25);

    ASSERT_NE(engine.findVariable("direct"), nullptr);
    EXPECT_EQ(engine.getVal<double>("direct"), 1.25);
    engine.setVal("direct", 2.5);
    EXPECT_EQ(engine.getVal<double>("direct"), 2.5);
}

TEST_F(RuleEngineBase, HeldVariableFailsAsGetValDoes) {
    const CapturedOutput output;
    const variable blank("INT_RATE", varInfo());
    const variable number("n", varInfo{boost::none, 1U});

    EXPECT_EQ(undefinedName([&blank] { rule_engine_base::valueOf<double>(blank); }), "INT_RATE");
    EXPECT_EQ(output.text(), "ERROR: Key Not found - INT_RATE, or value undefined.\n");
    EXPECT_THROW(rule_engine_base::valueOf<double>(number), boost::bad_get);
}

// ---- texts --------------------------------------------------------------------------------

struct RenderedValue {
    std::string description;
    ruleValue value;
    std::string text;
};

class RenderedValues : public testing::TestWithParam<RenderedValue> {};

TEST_P(RenderedValues, HaveTheirText) {
    rule_engine_base engine;
    engine.setVal("v", GetParam().value);

    EXPECT_EQ(engine.getValAsString("v"), GetParam().text);
}

TEST_P(RenderedValues, HaveTheSameTextInASnapshot) {
    rule_engine_base engine;
    variableMap snapshot;
    snapshot["v"].value = GetParam().value;

    EXPECT_EQ(engine.getValAsString(snapshot, "v"), GetParam().text);
    EXPECT_THAT(engine.varMap, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    RuleEngineBase, RenderedValues,
    testing::Values(RenderedValue{"Blank", boost::blank(), ""},
                    RenderedValue{"Text", std::string("LCPLL 1"), "LCPLL 1"},
                    RenderedValue{"EmptyText", std::string(), ""}, RenderedValue{"Zero", 0U, "0"},
                    RenderedValue{"LargestNumber", 4294967295U, "4294967295"},
                    RenderedValue{"True", true, "1"}, RenderedValue{"False", false, "0"},
                    RenderedValue{"FloatTenth", 0.1F, "0.1"},
                    RenderedValue{"FloatExact", 156.25F, "156.25"},
                    RenderedValue{"FloatSevenDigits", 1234567.0F, "1.23457e+06"},
                    RenderedValue{"DoubleExact", 156.25, "156.25"},
                    RenderedValue{"DoubleWhole", 25.0, "25"},
                    RenderedValue{"DoubleSixDigits", 10.3125001, "10.3125"},
                    RenderedValue{"DoubleSevenDigits", 1234567.0, "1.23457e+06"},
                    RenderedValue{"DoubleLarge", 10312500000.0, "1.03125e+10"},
                    RenderedValue{"DoubleSmall", 0.00001, "1e-05"}),
    [](const auto& tested) { return tested.param.description; });

TEST_F(RuleEngineBase, RenderingAMissingNameOfASnapshotInsertsItThere) {
    variableMap snapshot;

    EXPECT_EQ(engine.getValAsString(snapshot, "new"), "");
    ASSERT_EQ(snapshot.count("new"), 1U);
    EXPECT_EQ(snapshot.at("new").value.which(), 0);
    EXPECT_THAT(engine.varMap, IsEmpty());
}

using RuleEngineBaseDeathTest = RuleEngineBase;

TEST_F(RuleEngineBaseDeathTest, RenderingAListEndsTheProcess) {
    engine.setVal("list", std::vector<double>{1.0});

    EXPECT_DEATH(engine.getValAsString("list"), "terminate");
}

// ---- moving -------------------------------------------------------------------------------

static_assert(!std::is_copy_constructible_v<rule_engine_base>);
static_assert(!std::is_copy_assignable_v<rule_engine_base>);
static_assert(std::is_nothrow_move_constructible_v<rule_engine_base>);
static_assert(std::is_nothrow_move_assignable_v<rule_engine_base>);
static_assert(!std::is_polymorphic_v<rule_engine_base>);

TEST_F(RuleEngineBase, MovedEngineTakesVariablesAndGraphAlong) {
    engine.setVal("a", 1U);
    engine.setVal("b", 2U);
    variable* const held = engine.findVariable("a");
    PassEngine target(std::move(engine));

    EXPECT_EQ(target.getVal<unsigned int>("b"), 2U);
    EXPECT_EQ(target.findVariable("a"), held);
    EXPECT_EQ(target.addVertex("b", varInfo()), 1U);
    EXPECT_THAT(engine.varMap, IsEmpty());  // NOLINT(bugprone-use-after-move): what a move leaves
}

TEST_F(RuleEngineBase, MovedEngineGoesOnWithItsOrderAndParity) {
    // The bodies do not know the engine, so it may be moved with them.
    engine.rule({}, {"a"}, noting("a"));
    engine.rule({"a"}, {"b"}, noting("b"));
    engine.runRules();
    engine.flip();
    ran.clear();
    PassEngine target;
    target.rule({}, {"released"}, noting("released"));
    target = std::move(engine);
    target.runRules();
    target.runRules();

    EXPECT_THAT(ran, ElementsAre("a", "b"));
    EXPECT_EQ(target.findVariable("released"), nullptr);
}

TEST_F(RuleEngineBase, MoveConstructedEngineGoesOnWithTheParity) {
    engine.rule({}, {"a"}, noting("a"));
    engine.runRules();
    PassEngine samePass(std::move(engine));
    samePass.runRules();
    EXPECT_THAT(ran, ElementsAre("a"));

    samePass.flip();
    PassEngine nextPass(std::move(samePass));
    nextPass.runRules();
    EXPECT_THAT(ran, ElementsAre("a", "a"));
}

TEST_F(RuleEngineBase, SourceOfAMoveAssignmentIsLeftWithoutVariables) {
    engine.setVal("a", 1U);
    PassEngine target;
    target.setVal("b", 2U);
    target = std::move(engine);

    EXPECT_EQ(target.getVal<unsigned int>("a"), 1U);
    EXPECT_EQ(target.findVariable("b"), nullptr);
    EXPECT_THAT(engine.varMap, IsEmpty());  // NOLINT(bugprone-use-after-move): what a move leaves
}

TEST_F(RuleEngineBase, EngineThatWasMovedFromMayBeAssignedTo) {
    engine.setVal("a", 1U);
    const PassEngine taken(std::move(engine));
    engine = PassEngine();
    engine.setVal("b", 2U);

    EXPECT_EQ(engine.getVal<unsigned int>("b"), 2U);
    EXPECT_EQ(engine.addVertex("b", varInfo()), 0U);
    EXPECT_EQ(taken.varMap.count("a"), 1U);
}

TEST_F(RuleEngineBase, MoveToItselfChangesNothing) {
    engine.setVal("a", 1U);
    PassEngine& same = engine;
    engine = std::move(same);

    EXPECT_EQ(engine.getVal<unsigned int>("a"), 1U);
}

}  // namespace
