#include "families/common/rule_declaration.h"

#include "support/captured_output.h"
#include "support/undefined_name.h"

#include <boost/optional/optional_io.hpp>
#include <boost/variant/get.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using names = std::vector<std::string>;

class passing_engine : public rule_engine_base {
  public:
    void runPass() {
        runRules();
        passFlag = !passFlag;
    }
};

class RuleDeclaration : public testing::Test {
  protected:
    bool isKnown(const std::string& name) { return engine.findVariable(name) != nullptr; }

    /// What a pass throws for a variable without a value, which it has to.
    std::string undefinedNameOfPass() {
        const lanecfg_test::CapturedOutput captured;
        const std::string thrown = lanecfg_test::undefinedName([this] { engine.runPass(); });
        output = captured.text();
        return thrown;
    }

    passing_engine engine;
    std::string output;
};

TEST_F(RuleDeclaration, BodyReadsAndWritesTheVariablesDeclared) {
    engine.setVal("TX_LINE_RATE", 10.3125);
    declareRule(engine, [](rule_declaration& rule) {
        const auto rate = rule.reads<double>("TX_LINE_RATE");
        const auto divider = rule.writes("INT_TX_OUTDIV");
        rule.body([=] { divider.set(rate() > 8.0 ? 1U : 2U); });
    });
    engine.runPass();
    EXPECT_EQ(engine.getVal<unsigned int>("INT_TX_OUTDIV"), 1U);
    engine.setVal("TX_LINE_RATE", 5.0);
    engine.runPass();
    EXPECT_EQ(engine.getVal<unsigned int>("INT_TX_OUTDIV"), 2U);
}

TEST_F(RuleDeclaration, TellsTheNamesInTheOrderDeclared) {
    const ruleSignature declared = declareRule(engine, [](rule_declaration& rule) {
        rule.writes<std::string>("first result");
        rule.reads<bool>("flag");
        rule.alsoDeclares("never read");
        rule.peeks<double>("undeclared");
        rule.writes<double>("second result");
        rule.reads<float>("loss");
        rule.body([] {});
    });
    EXPECT_THAT(declared.inputs, ElementsAre("flag", "never read", "loss"));
    EXPECT_THAT(declared.outputs, ElementsAre("first result", "second result"));
}

TEST_F(RuleDeclaration, DeclaresWithoutAnEngine) {
    rule_declaration rule;
    rule.reads<double>("rate");
    rule.writes("divider");
    EXPECT_THAT(rule.signature().inputs, ElementsAre("rate"));
    EXPECT_THAT(rule.signature().outputs, ElementsAre("divider"));
    EXPECT_FALSE(rule.body());
}

TEST_F(RuleDeclaration, OutputTakesTheTypeDeclaredWhateverStoodThere) {
    engine.setVal("rate word", 3U);
    declareRule(engine, [](rule_declaration& rule) {
        const auto word = rule.writes<std::string>("rate word");
        rule.body([=] { word.set("FULL"); });
    });
    engine.runPass();
    EXPECT_EQ(engine.getVal<std::string>("rate word"), "FULL");
}

TEST_F(RuleDeclaration, EveryAlternativeCanBeReadAndWritten) {
    const std::vector<double> list{1.5, 2.5};
    declareRule(engine, [&list](rule_declaration& rule) {
        const auto text = rule.writes<std::string>("text");
        const auto number = rule.writes<unsigned int>("number");
        const auto flag = rule.writes<bool>("flag");
        const auto single = rule.writes<float>("single");
        const auto real = rule.writes<double>("real");
        const auto reals = rule.writes<std::vector<double>>("list");
        rule.body([=, &list] {
            text.set("R0");
            number.set(4294967295U);
            flag.set(true);
            single.set(0.5F);
            real.set(0.1);
            reals.set(list);
        });
    });
    std::string copied;
    declareRule(engine, [&copied, &list](rule_declaration& rule) {
        const auto text = rule.reads<std::string>("text");
        const auto number = rule.reads<unsigned int>("number");
        const auto flag = rule.reads<bool>("flag");
        const auto single = rule.reads<float>("single");
        const auto real = rule.reads<double>("real");
        const auto reals = rule.reads<std::vector<double>>("list");
        const auto read = rule.writes<bool>("read");
        rule.body([=, &copied, &list] {
            copied = text();
            read.set(number() == 4294967295U && flag() && single() == 0.5F && real() == 0.1 &&
                     reals() == list);
        });
    });
    engine.runPass();
    EXPECT_EQ(copied, "R0");
    EXPECT_TRUE(engine.getVal<bool>("read"));
}

TEST_F(RuleDeclaration, ReadingABlankInputFailsAsGetValDoes) {
    declareRule(engine, [](rule_declaration& rule) {
        const auto rate = rule.reads<double>("TX_LINE_RATE");
        rule.writes("divider");
        rule.body([=] { rate(); });
    });
    EXPECT_EQ(undefinedNameOfPass(), "TX_LINE_RATE");
    EXPECT_EQ(output, "ERROR: Key Not found - TX_LINE_RATE, or value undefined.\n");
}

TEST_F(RuleDeclaration, ReadingAnotherAlternativeIsBadGet) {
    engine.setVal("loss", 20.0);
    declareRule(engine, [](rule_declaration& rule) {
        const auto loss = rule.reads<float>("loss");
        rule.writes("mode");
        rule.body([=] { loss(); });
    });
    EXPECT_THROW(engine.runPass(), boost::bad_get);
}

TEST_F(RuleDeclaration, DeclaredButUnreadInputOrdersTheRules) {
    engine.setVal("source", 0U);
    std::vector<std::string> fired;
    const auto firing = [&fired](const std::string& input, const std::string& written) {
        return [&fired, input, written](rule_declaration& rule) {
            rule.alsoDeclares(input);
            rule.writes(written);
            rule.body([&fired, written] { fired.push_back(written); });
        };
    };
    declareRule(engine, firing("second", "third"));
    declareRule(engine, firing("first", "second"));
    declareRule(engine, firing("source", "first"));
    engine.runPass();
    EXPECT_THAT(fired, ElementsAre("first", "second", "third"));
}

class RulePeek : public RuleDeclaration {
  protected:
    RulePeek() {
        declareRule(engine, [](rule_declaration& rule) {
            const auto type = rule.peeks<std::string>("TX_PLL_TYPE");
            const auto select = rule.writes("select");
            rule.body([=] { select.set(type() == "LCPLL" ? 1U : 0U); });
        });
    }
};

TEST_F(RulePeek, MakesNoVariableAndNoVertex) {
    EXPECT_FALSE(isKnown("TX_PLL_TYPE"));
    // The next vertex is the one behind "select".
    EXPECT_EQ(engine.addVertex("next", varInfo()), 1U);
}

TEST_F(RulePeek, FindsAVariableThatIsEnteredLater) {
    engine.setVal("TX_PLL_TYPE", std::string("LCPLL"));
    engine.runPass();
    EXPECT_EQ(engine.getVal<unsigned int>("select"), 1U);
    engine.setVal("TX_PLL_TYPE", std::string("RPLL"));
    engine.runPass();
    EXPECT_EQ(engine.getVal<unsigned int>("select"), 0U);
}

TEST_F(RulePeek, OfAnUnknownNameFailsAsGetValDoesUntilTheNameIsKnown) {
    EXPECT_EQ(undefinedNameOfPass(), "TX_PLL_TYPE");
    EXPECT_EQ(output, "ERROR: Key Not found - TX_PLL_TYPE, or value undefined.\n");
    EXPECT_FALSE(isKnown("TX_PLL_TYPE"));
    engine.setVal("TX_PLL_TYPE", boost::blank());
    EXPECT_EQ(undefinedNameOfPass(), "TX_PLL_TYPE");
    engine.setVal("TX_PLL_TYPE", std::string("LCPLL"));
    EXPECT_NO_THROW(engine.runPass());
}

TEST_F(RulePeek, OfAnotherAlternativeIsBadGet) {
    engine.setVal("TX_PLL_TYPE", 1U);
    EXPECT_THROW(engine.runPass(), boost::bad_get);
}

TEST_F(RuleDeclaration, GivesWritesTheFieldThatTheRuleStandsBeside) {
    engine.setVal("rate", std::string("HALF"));
    const ruleSignature declared = declareRule(
        engine,
        [](rule_declaration& rule) {
            const auto rate = rule.reads<std::string>("rate");
            rule.gives([=] { return rate() == "FULL" ? 0U : 1U; });
        },
        "HSDIST_CFG.HSDIST_DIV2SEL");
    engine.runPass();
    EXPECT_THAT(declared.outputs, ElementsAre("HSDIST_CFG.HSDIST_DIV2SEL"));
    EXPECT_EQ(engine.getVal<unsigned int>("HSDIST_CFG.HSDIST_DIV2SEL"), 1U);
}

TEST_F(RuleDeclaration, WithoutABodyIsRefusedByItsFirstOutput) {
    try {
        declareRule(engine, [](rule_declaration& rule) { rule.writes("forgotten"); });
        FAIL() << "a rule without a body was registered";
    } catch (const std::logic_error& refusal) {
        EXPECT_THAT(refusal.what(), HasSubstr("forgotten"));
    }
    EXPECT_THAT(engine.varMap, IsEmpty());
}

TEST_F(RuleDeclaration, WithoutAnOutputIsRefusedSinceItWouldNeverRun) {
    EXPECT_THROW(declareRule(engine,
                             [](rule_declaration& rule) {
                                 rule.reads<double>("rate");
                                 rule.body([] {});
                             }),
                 std::logic_error);
    EXPECT_THAT(engine.varMap, IsEmpty());
}

TEST_F(RuleDeclaration, IsMadeOnceByItsFunction) {
    int runs = 0;
    declareRule(engine, [&runs](rule_declaration& rule) {
        ++runs;
        rule.writes("output");
        rule.body([] {});
    });
    EXPECT_EQ(runs, 1);
}

TEST_F(RuleDeclaration, EntersNothingBeforeItIsRegistered) {
    rule_declaration rule(&engine);
    rule.reads<double>("rate");
    rule.writes("divider");
    rule.body([] {});
    EXPECT_THAT(engine.varMap, IsEmpty());
    EXPECT_EQ(engine.addVertex("first", varInfo()), 0U);
    rule.enter();
    EXPECT_EQ(engine.addVertex("divider", varInfo()), 1U);
    EXPECT_EQ(engine.addVertex("rate", varInfo()), 2U);
}

/// A random rule as names. Inputs come from earlier numbers than outputs, so that no cycle arises.
struct RandomRule {
    names inputs;
    names outputs;
};

class SameGraph : public testing::TestWithParam<unsigned int> {
  protected:
    SameGraph() : random(GetParam()) {
        for (int count = 0; count < 60; ++count) {
            rules.push_back(randomRule());
        }
    }

    std::size_t below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random);
    }

    RandomRule randomRule() {
        const std::size_t middle = 1 + below(variableCount - 1);
        RandomRule made;
        for (std::size_t count = below(5); count > 0; --count) {
            made.inputs.push_back(nameOf(below(middle)));
        }
        for (std::size_t count = 1 + below(3); count > 0; --count) {
            made.outputs.push_back(nameOf(middle + below(variableCount - middle)));
        }
        return made;
    }

    static std::string nameOf(std::size_t number) { return "v" + std::to_string(number); }

    static constexpr std::size_t variableCount = 50;
    std::mt19937 random;
    std::vector<RandomRule> rules;
};

TEST_P(SameGraph, AsPlainRuleCallsWithTheSameLists) {
    passing_engine plain;
    passing_engine declared;
    std::vector<std::size_t> plainOrder;
    std::vector<std::size_t> declaredOrder;
    for (std::size_t number = 0; number < rules.size(); ++number) {
        const RandomRule& made = rules[number];
        plain.rule(made.inputs, made.outputs, [&, number] { plainOrder.push_back(number); });
        declareRule(declared, [&, number](rule_declaration& rule) {
            // All inputs first: the order between inputs and outputs is not to matter.
            for (const std::string& input : made.inputs) {
                rule.reads<unsigned int>(input);
            }
            for (const std::string& output : made.outputs) {
                rule.writes(output);
            }
            rule.body([&declaredOrder, number] { declaredOrder.push_back(number); });
        });
    }
    ASSERT_EQ(plain.varMap.size(), declared.varMap.size());
    for (const auto& [name, info] : plain.varMap) {
        ASSERT_EQ(declared.varMap.count(name), 1U) << name;
        EXPECT_EQ(declared.varMap[name].ruleNumber, info.ruleNumber) << name;
        EXPECT_EQ(declared.addVertex(name, varInfo()), plain.addVertex(name, varInfo())) << name;
    }
    plain.runPass();
    declared.runPass();
    EXPECT_FALSE(plainOrder.empty());
    EXPECT_EQ(declaredOrder, plainOrder);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SameGraph, testing::Range(1U, 21U));

}  // namespace
}  // namespace sable_lanecfg
