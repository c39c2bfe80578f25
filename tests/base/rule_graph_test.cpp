#include "base/rule_engine_fixture.h"
#include "support/captured_output.h"
#include "support/undefined_name.h"

#include <lanecfg/rule_engine_base.h>

#include <boost/graph/exception.hpp>
#include <boost/optional/optional_io.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using lanecfg_test::CapturedOutput;
using lanecfg_test::PassEngine;
using lanecfg_test::undefinedName;
using sable_lanecfg::ruleValue;
using sable_lanecfg::ruleVariable;
using sable_lanecfg::varInfo;
using testing::ElementsAre;
using testing::IsEmpty;

using RuleGraph = lanecfg_test::RuleEngineFixture;

// ---- vertices -----------------------------------------------------------------------------

TEST_F(RuleGraph, VerticesAreNumberedInOrderOfEntryAndKnownNamesKeepTheirs) {
    EXPECT_EQ(engine.addVertex("a", varInfo{boost::none, 1U}), 0U);
    EXPECT_EQ(engine.addVertex("b", varInfo()), 1U);
    EXPECT_EQ(engine.addVertex("a", varInfo{3, 2U}), 0U);

    EXPECT_EQ(engine.getVal<unsigned int>("a"), 1U);
    EXPECT_EQ(engine.varMap.at("a").ruleNumber, boost::none);
}

TEST_F(RuleGraph, RuleEntersAnOutputThenItsInputsThenTheNextOutput) {
    engine.rule({"i1", "i2"}, {"o1", "o2"}, noting("rule"));

    EXPECT_EQ(engine.addVertex("o1", varInfo()), 0U);
    EXPECT_EQ(engine.addVertex("i1", varInfo()), 1U);
    EXPECT_EQ(engine.addVertex("i2", varInfo()), 2U);
    EXPECT_EQ(engine.addVertex("o2", varInfo()), 3U);
    EXPECT_EQ(vertexCount(), 4U);
}

TEST_F(RuleGraph, RenderingAMissingNameLeavesABlankEntryWithoutVertex) {
    engine.setVal("known", 1U);

    EXPECT_EQ(engine.getValAsString("new"), "");
    ASSERT_EQ(engine.varMap.count("new"), 1U);
    EXPECT_EQ(valueIndex("new"), 0);
    EXPECT_EQ(engine.varMap.at("new").ruleNumber, boost::none);
    EXPECT_EQ(engine.addVertex("new", varInfo{boost::none, 5U}), 1U);
    EXPECT_EQ(valueIndex("new"), 0);
    EXPECT_EQ(engine.addVertex("next", varInfo()), 1U);
    EXPECT_EQ(engine.addVertex("new", varInfo()), 2U);
}

TEST_F(RuleGraph, SettingANameWithoutVertexGivesItAValueButNoVertex) {
    engine.getValAsString("new");
    engine.setVal("new", 7U);

    EXPECT_EQ(engine.getVal<unsigned int>("new"), 7U);
    EXPECT_EQ(engine.addVertex("new", varInfo()), 0U);
    EXPECT_EQ(engine.addVertex("next", varInfo()), 0U);
}

TEST_F(RuleGraph, EdgeFromANameWithoutVertexGrowsAnUnnamedVertexThatPassesSkip) {
    engine.getValAsString("new");
    engine.rule({"new"}, {"out"}, noting("out"));

    EXPECT_EQ(vertexCount(), 2U);
    EXPECT_EQ(engine.addVertex("next", varInfo()), 2U);
    engine.runRules();
    EXPECT_THAT(ran, ElementsAre("out"));
}

TEST_F(RuleGraph, EachEdgeFromANameWithoutVertexGrowsItsOwnUnnamedVertex) {
    engine.getValAsString("new");
    engine.rule({"new"}, {"first"}, noting("first"));
    engine.rule({"new"}, {"second"}, noting("second"));

    // first, unnamed, second, unnamed
    EXPECT_EQ(vertexCount(), 4U);
    EXPECT_EQ(engine.addVertex("second", varInfo()), 2U);
}

TEST_F(RuleGraph, RuleOfAnOutputWithoutVertexOwnsItButIsNeverReached) {
    engine.setVal("in", 1U);
    engine.getValAsString("new");
    engine.rule({"in"}, {"new"}, noting("new"));
    engine.runRules();

    EXPECT_EQ(engine.varMap.at("new").ruleNumber, 0);
    EXPECT_THAT(ran, IsEmpty());
}

TEST_F(RuleGraph, NewInputOfAnOutputWithoutVertexTakesItsPlaceAndClosesACycle) {
    // The output is answered with the number of vertices, which the input then becomes.
    engine.getValAsString("out");
    engine.rule({"in"}, {"out"}, noting("out"));

    EXPECT_EQ(engine.addVertex("in", varInfo()), 0U);
    EXPECT_EQ(vertexCount(), 1U);
    EXPECT_THROW(engine.runRules(), boost::not_a_dag);
}

TEST_F(RuleGraph, EmptyNameIsAnsweredWithTheFirstVertexThatBearsIt) {
    engine.getValAsString("new");
    engine.rule({"new"}, {"out"}, noting("out"));
    EXPECT_EQ(engine.addVertex("", varInfo{boost::none, 3U}), 2U);

    EXPECT_EQ(engine.addVertex("", varInfo()), 1U);
    EXPECT_EQ(engine.getVal<unsigned int>(""), 3U);
}

// ---- mentioned names ----------------------------------------------------------------------

TEST_F(RuleGraph, MentionedNameIsEnteredByTheRuleThatHasIt) {
    ruleVariable& output = engine.mention("out");
    ruleVariable& input = engine.mention("in");
    EXPECT_THAT(engine.varMap, IsEmpty());
    EXPECT_EQ(vertexCount(), 0U);
    EXPECT_EQ(input.held, nullptr);
    EXPECT_EQ(input.variableName(), "in");

    engine.registerRule({&input}, output, noting("rule"));
    EXPECT_EQ(input.held, engine.findVariable("in"));
    EXPECT_EQ(input.variableName(), "in");
    EXPECT_EQ(engine.addVertex("out", varInfo()), 0U);
    EXPECT_EQ(engine.addVertex("in", varInfo()), 1U);
    engine.runRules();
    EXPECT_THAT(ran, ElementsAre("rule"));
}

TEST_F(RuleGraph, MentionedNameHasTheVariableThatIsSet) {
    const ruleVariable& mentioned = engine.mention("value");
    engine.setVal("value", 5U);
    EXPECT_EQ(mentioned.held, engine.findVariable("value"));
    EXPECT_EQ(&engine.mention("value"), &mentioned);
    EXPECT_EQ(vertexCount(), 1U);
}

TEST_F(RuleGraph, MentionedNameThatAMapSubscriptMadeHasNoVertex) {
    ruleVariable& mentioned = engine.mention("new");
    engine.getValAsString("new");
    EXPECT_EQ(engine.addVertex("new", varInfo()), 0U);
    EXPECT_EQ(vertexCount(), 0U);
    EXPECT_EQ(mentioned.held, engine.findVariable("new"));
}

TEST_F(RuleGraph, FieldsEnteredInAnyOrderStandInKeyOrder) {
    // In turns from both ends.
    std::vector<std::string> inKeyOrder{"A_CFG", "B_CFG"};
    for (char field = 'A'; field <= 'Z'; ++field) {
        inKeyOrder.push_back(std::string("B_CFG.") + field + '0');
        inKeyOrder.push_back(std::string("B_CFG.") + field + '1');
    }
    inKeyOrder.push_back("C_CFG");
    for (auto first = inKeyOrder.begin(), last = inKeyOrder.end(); first < last; ++first) {
        engine.enterVariable(*first);
        if (first < --last) {
            engine.enterVariable(*last);
        }
    }
    std::vector<std::string> names;
    for (const auto& held : engine.varMap) {
        names.push_back(held.first);
    }
    EXPECT_EQ(names, inKeyOrder);
}

TEST_F(RuleGraph, VariablesMadeAheadGetTheirVerticesWhenRulesEnterThem) {
    ruleVariable& first = engine.mention("a");
    ruleVariable& second = engine.mention("b");
    engine.makeVariables({&first, &second});
    EXPECT_EQ(engine.varMap.size(), 2U);
    EXPECT_EQ(engine.varMap.at("a").value.which(), 0);
    EXPECT_EQ(first.held, engine.findVariable("a"));
    EXPECT_EQ(vertexCount(), 0U);

    engine.registerRule({&first}, second, noting("rule"));
    EXPECT_EQ(engine.addVertex("b", varInfo()), 0U);
    EXPECT_EQ(engine.addVertex("a", varInfo()), 1U);
    EXPECT_EQ(vertexCount(), 2U);
    engine.runRules();
    EXPECT_THAT(ran, ElementsAre("rule"));
}

TEST_F(RuleGraph, AVariableMadeAheadGetsItsVertexWhenItIsSet) {
    engine.makeVariables({&engine.mention("a")});
    engine.setVal("a", 5U);
    EXPECT_EQ(vertexCount(), 1U);
    EXPECT_EQ(engine.getVal<unsigned int>("a"), 5U);
}

TEST_F(RuleGraph, VariablesMadeAheadStandInKeyOrderAmongTheOthers) {
    for (const char* const present : {"d", "a", "f"}) {
        engine.setVal(present, 1U);
    }
    std::vector<ruleVariable*> ascending;
    for (const char* const name : {"b", "c", "d", "e", "g"}) {
        ascending.push_back(&engine.mention(name));
    }
    engine.makeVariables(ascending);
    std::vector<std::string> names;
    for (const auto& held : engine.varMap) {
        names.push_back(held.first);
    }
    EXPECT_THAT(names, ElementsAre("a", "b", "c", "d", "e", "f", "g"));
    EXPECT_EQ(engine.getVal<unsigned int>("d"), 1U);
    EXPECT_EQ(vertexCount(), 3U);
}

TEST_F(RuleGraph, VariablesMadeAheadMayComeInAnyOrder) {
    std::vector<ruleVariable*> all;
    for (const char* const name : {"c", "a", "b", "a"}) {
        all.push_back(&engine.mention(name));
    }
    engine.makeVariables(all);
    EXPECT_EQ(engine.varMap.size(), 3U);
    for (const ruleVariable* const made : all) {
        EXPECT_EQ(made->held, engine.findVariable(made->variableName()));
    }
}

TEST_F(RuleGraph, NothingIsMadeAheadOfANameThatAMapSubscriptMade) {
    engine.getValAsString("new");
    ruleVariable& mentioned = engine.mention("new");
    engine.makeVariables({&mentioned});
    EXPECT_EQ(mentioned.held, nullptr);
    EXPECT_EQ(engine.addVertex("new", varInfo()), 0U);
    EXPECT_EQ(vertexCount(), 0U);
    EXPECT_EQ(mentioned.held, engine.findVariable("new"));
}

// ---- rules and their order ----------------------------------------------------------------

TEST_F(RuleGraph, RuleOfTwoOutputsRunsOnceBeforeThoseThatReadThem) {
    engine.rule({"b"}, {"d"}, noting("reads b"));
    engine.rule({"a"}, {"b", "c"}, noting("f"));
    engine.rule({"c"}, {"e"}, noting("reads c"));
    engine.runRules();

    ASSERT_EQ(ran.size(), 3U);
    EXPECT_EQ(ran.front(), "f");
}

TEST_F(RuleGraph, SecondRunWithoutAFlipRunsNothing) {
    engine.rule({}, {"a"}, noting("a"));
    engine.runRules();
    ran.clear();
    engine.runRules();

    EXPECT_THAT(ran, IsEmpty());
}

TEST_F(RuleGraph, EveryFlipLetsAllRulesRunAgain) {
    engine.rule({}, {"a"}, noting("a"));
    engine.rule({"a"}, {"b"}, noting("b"));
    engine.runRules();
    engine.runNextPass();
    engine.runNextPass();

    EXPECT_THAT(ran, ElementsAre("a", "b", "a", "b", "a", "b"));
}

TEST_F(RuleGraph, IndependentRulesRunLatestVertexFirst) {
    // Each finished vertex goes to the front, and roots are visited in order of entry.
    engine.rule({}, {"first"}, noting("first"));
    engine.rule({}, {"second"}, noting("second"));
    engine.rule({}, {"third"}, noting("third"));
    engine.runRules();

    EXPECT_THAT(ran, ElementsAre("third", "second", "first"));
}

TEST_F(RuleGraph, EdgesAreFollowedInOrderOfRegistration) {
    // From "in" the walk finishes x, then y, so y stands in front of x.
    engine.setVal("in", 1U);
    engine.rule({"in"}, {"x"}, noting("x"));
    engine.rule({"in"}, {"y"}, noting("y"));
    engine.rule({"y", "x"}, {"z"}, noting("z"));
    engine.runRules();

    EXPECT_THAT(ran, ElementsAre("y", "x", "z"));
}

TEST_F(RuleGraph, LastRegistrationOfAnOutputWins) {
    engine.rule({}, {"x"}, noting("f"));
    engine.rule({}, {"x"}, noting("g"));
    engine.runRules();

    EXPECT_THAT(ran, ElementsAre("g"));
    EXPECT_EQ(engine.varMap.at("x").ruleNumber, 1);
}

TEST_F(RuleGraph, RuleThatLostItsOnlyOutputStaysStoredUntilTheEngineEnds) {
    auto token = std::make_shared<std::string>("lost");
    const std::weak_ptr<std::string> stored = token;
    {
        PassEngine own;
        own.rule({}, {"a"}, [this, kept = std::move(token)] { ran.push_back(*kept); });
        own.rule({}, {"a"}, noting("owner"));
        own.runRules();

        EXPECT_THAT(ran, ElementsAre("owner"));
        EXPECT_FALSE(stored.expired());
    }
    EXPECT_TRUE(stored.expired());
}

TEST_F(RuleGraph, RuleThatLostAnOutputStillRunsThroughAnother) {
    engine.rule({}, {"x", "y"}, noting("f"));
    engine.rule({"y"}, {"x"}, noting("g"));
    engine.runRules();

    EXPECT_THAT(ran, ElementsAre("f", "g"));
}

TEST_F(RuleGraph, EdgesOfARuleThatLostItsOutputStillOrder) {
    engine.rule({"late"}, {"x"}, noting("displaced"));
    engine.rule({}, {"x"}, noting("x"));
    engine.rule({}, {"late"}, noting("late"));
    engine.runRules();

    EXPECT_THAT(ran, ElementsAre("late", "x"));
}

TEST_F(RuleGraph, RuleWithoutInputsRuns) {
    engine.rule({}, {"x"}, [this] { engine.setVal("x", 4U); });
    engine.runRules();

    EXPECT_EQ(engine.getVal<unsigned int>("x"), 4U);
}

TEST_F(RuleGraph, RuleWithoutOutputsNeverRunsButEntersItsInputs) {
    engine.rule({"p", "q"}, {}, noting("f"));
    engine.runRules();

    EXPECT_THAT(ran, IsEmpty());
    EXPECT_EQ(valueIndex("p"), 0);
    EXPECT_EQ(engine.addVertex("p", varInfo()), 0U);
    EXPECT_EQ(engine.addVertex("q", varInfo()), 1U);
    EXPECT_EQ(vertexCount(), 2U);
}

TEST_F(RuleGraph, RuleWithoutOutputsTakesANumber) {
    engine.rule({"p"}, {}, noting("f"));
    engine.rule({}, {"x"}, noting("x"));

    EXPECT_EQ(engine.varMap.at("x").ruleNumber, 1);
}

TEST_F(RuleGraph, RuleWithoutOutputsDrawsNoEdges) {
    engine.rule({}, {"a"}, noting("a"));
    engine.rule({"a", "b"}, {}, noting("f"));
    engine.rule({}, {"b"}, noting("b"));
    engine.runRules();

    EXPECT_THAT(ran, ElementsAre("b", "a"));
}

TEST_F(RuleGraph, UndeclaredInputSpringsIntoBeingBlankAndFailsWhenRead) {
    const CapturedOutput output;
    engine.rule({"in"}, {"out"}, [this] { engine.setVal("out", engine.getVal<double>("in")); });

    EXPECT_EQ(valueIndex("in"), 0);
    EXPECT_EQ(undefinedName([this] { engine.runRules(); }), "in");
    EXPECT_EQ(valueIndex("out"), 0);
}

TEST_F(RuleGraph, RepeatedInputsDoNoHarm) {
    engine.rule({"a", "a"}, {"b"}, noting("b"));
    engine.rule({"a"}, {"b"}, noting("b again"));
    engine.rule({}, {"a"}, noting("a"));
    engine.runRules();

    EXPECT_THAT(ran, ElementsAre("a", "b again"));
}

TEST_F(RuleGraph, RuleOverwritesAValueSetFromOutside) {
    engine.rule({}, {"x"}, [this] { engine.setVal("x", 1U); });
    engine.setVal("x", 9U);
    engine.runRules();

    EXPECT_EQ(engine.getVal<unsigned int>("x"), 1U);
}

TEST_F(RuleGraph, OutputThatItsRuleLeavesAloneKeepsTheValueOfThePassBefore) {
    engine.rule({"set"}, {"x"}, [this] {
        if (engine.getVal<bool>("set")) {
            engine.setVal("x", 5U);
        }
    });
    engine.setVal("set", true);
    engine.runRules();
    engine.setVal("set", false);
    engine.runNextPass();

    EXPECT_EQ(engine.getVal<unsigned int>("x"), 5U);
}

TEST_F(RuleGraph, RunWithoutAnyVertexReturnsAtOnce) {
    engine.runRules();
    EXPECT_THAT(engine.varMap, IsEmpty());

    // Nothing was sorted, so what is registered now is still part of the first pass.
    engine.rule({}, {"a"}, noting("a"));
    engine.runRules();
    EXPECT_THAT(ran, ElementsAre("a"));
}

TEST_F(RuleGraph, ChainOfManyRulesIsSortedWithoutDeepRecursion) {
    constexpr int length = 100000;
    engine.setVal("v0", 0U);
    for (int number = length; number > 0; --number) {
        const std::string before = "v" + std::to_string(number - 1);
        const std::string name = "v" + std::to_string(number);
        engine.rule({before}, {name}, [this, before, name] {
            engine.setVal(name, engine.getVal<unsigned int>(before) + 1);
        });
    }
    engine.runRules();

    EXPECT_EQ(engine.getVal<unsigned int>("v" + std::to_string(length)), 100000U);
}

// ---- rules that come after the first pass -------------------------------------------------

TEST_F(RuleGraph, RuleOnNewVariablesAfterTheFirstPassNeverRuns) {
    engine.rule({}, {"x"}, noting("x"));
    engine.runRules();
    engine.rule({"a"}, {"b"}, noting("f"));
    engine.runNextPass();
    engine.runNextPass();

    EXPECT_THAT(ran, ElementsAre("x", "x", "x"));
}

TEST_F(RuleGraph, RuleOnAKnownVariableAfterTwoPassesRunsInTheThird) {
    engine.rule({}, {"x"}, noting("x"));
    engine.runRules();
    engine.runNextPass();
    engine.rule({}, {"x"}, noting("late"));
    engine.runNextPass();
    engine.runNextPass();

    EXPECT_THAT(ran, ElementsAre("x", "x", "late", "late"));
}

TEST_F(RuleGraph, RuleOnAKnownVariableAfterAnOddNumberOfPassesIsSkippedOnce) {
    engine.rule({}, {"x"}, noting("x"));
    engine.runRules();
    engine.flip();
    engine.rule({}, {"x"}, noting("late"));
    engine.runRules();
    EXPECT_THAT(ran, ElementsAre("x"));

    engine.runNextPass();
    EXPECT_THAT(ran, ElementsAre("x", "late"));
}

TEST_F(RuleGraph, KnownVariableThatNoRuleOwnedMayGetOneAfterTheFirstPass) {
    engine.setVal("x", 1U);
    engine.runRules();
    engine.rule({}, {"x"}, noting("late"));
    engine.runRules();

    EXPECT_THAT(ran, ElementsAre("late"));
}

TEST_F(RuleGraph, RuleBodyMayRegisterRules) {
    engine.rule({}, {"a"}, [this] {
        ran.emplace_back("a");
        for (int number = 0; number < 1000; ++number) {
            engine.rule({"a"}, {"new " + std::to_string(number)}, noting("new"));
        }
    });
    engine.rule({"a"}, {"b"}, noting("b"));
    engine.runRules();

    EXPECT_THAT(ran, ElementsAre("a", "b"));
}

// ---- failures -----------------------------------------------------------------------------

TEST_F(RuleGraph, CycleOfTwoRulesIsNoDag) {
    engine.rule({"a"}, {"b"}, noting("f"));
    engine.rule({"b"}, {"a"}, noting("g"));

    EXPECT_THROW(engine.runRules(), boost::not_a_dag);
    EXPECT_THAT(ran, IsEmpty());
}

TEST_F(RuleGraph, CycleIsReportedInTheGraphLibrarysOwnWords) {
    engine.rule({"a"}, {"a"}, noting("f"));
    try {
        engine.runRules();
        FAIL() << "the sort succeeded";
    } catch (const boost::not_a_dag& fault) {
        EXPECT_STREQ(fault.what(), boost::not_a_dag().what());
    }
}

TEST_F(RuleGraph, CycleThatLeavesNothingSortedThrowsInEveryRun) {
    engine.rule({"a"}, {"b"}, noting("f"));
    engine.rule({"b"}, {"a"}, noting("g"));

    EXPECT_THROW(engine.runRules(), boost::not_a_dag);
    EXPECT_THROW(engine.runRules(), boost::not_a_dag);
}

TEST_F(RuleGraph, RunAfterACycleWalksWhatWasSortedBeforeIt) {
    engine.rule({}, {"early"}, noting("early"));
    engine.rule({"a"}, {"b"}, noting("f"));
    engine.rule({"b"}, {"a"}, noting("g"));
    engine.rule({}, {"never reached"}, noting("never reached"));

    EXPECT_THROW(engine.runRules(), boost::not_a_dag);
    EXPECT_THAT(ran, IsEmpty());
    engine.runRules();
    EXPECT_THAT(ran, ElementsAre("early"));
    engine.runNextPass();
    EXPECT_THAT(ran, ElementsAre("early", "early"));
}

TEST_F(RuleGraph, ExceptionOfARuleLeavesAsItWasThrownAndTheRestOfThePassUndone) {
    bool fails = true;
    engine.rule({}, {"a"}, [this] {
        ran.emplace_back("a");
        engine.setVal("a", 1U);
    });
    engine.rule({"a"}, {"b"}, [this, &fails] {
        ran.emplace_back("b");
        engine.setVal("b", 2U);
        if (fails) {
            throw std::domain_error("no such rate");
        }
    });
    engine.rule({"b"}, {"c"}, noting("c"));

    EXPECT_THROW(engine.runRules(), std::domain_error);
    EXPECT_THAT(ran, ElementsAre("a", "b"));
    EXPECT_EQ(engine.getVal<unsigned int>("a"), 1U);
    EXPECT_EQ(engine.getVal<unsigned int>("b"), 2U);

    // In the same pass the rule that failed and those behind it are still to run.
    fails = false;
    ran.clear();
    engine.runRules();
    EXPECT_THAT(ran, ElementsAre("b", "c"));
}

TEST_F(RuleGraph, EmptyRuleBodyIsABadFunctionCall) {
    engine.rule({}, {"a"}, {});

    EXPECT_THROW(engine.runRules(), std::bad_function_call);
}

TEST_F(RuleGraph, VariableEnteredWithANumberThatNoRuleHasIsABadFunctionCall) {
    for (const int number : {1, -1}) {
        PassEngine other;
        other.rule({}, {"a"}, noting("a"));
        other.addVertex("b", varInfo{number, ruleValue()});
        EXPECT_THROW(other.runRules(), std::bad_function_call) << number;
    }
}

}  // namespace
