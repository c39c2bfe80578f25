#include "rule_differences.h"

#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;
using sable_lanecfg::ruleDescription;
using sable_lanecfg::ruleKind;
using Names = std::vector<std::string>;

ruleDescription constant(const std::string& output, unsigned value) {
    return {"PLL", ruleKind::constant, {}, {output}, value};
}

ruleDescription logic(const Names& outputs, const Names& inputs) {
    return {"PLL", ruleKind::logic, inputs, outputs, 0};
}

std::vector<NumberedRule> numbered(const std::vector<ruleDescription>& rules) {
    std::vector<NumberedRule> all;
    for (const ruleDescription& rule : rules) {
        all.push_back({all.size(), rule});
    }
    return all;
}

Answer answerAbout(const std::vector<ruleDescription>& first,
                   const std::vector<ruleDescription>& second) {
    return answerOf(ruleDifferences(numbered(first), numbered(second)), "SXB", "SXC");
}

/// The differences as CSV, without the heading.
std::string differencesOf(const std::vector<ruleDescription>& first,
                          const std::vector<ruleDescription>& second) {
    const std::string text = csvText(answerAbout(first, second).table);
    const std::string heading = "change,set,outputs,difference\n";
    EXPECT_EQ(text.substr(0, heading.size()), heading);
    return text.substr(heading.size());
}

TEST(RuleDifferences, OfEqualRulesAreNoneWhateverTheirOrder) {
    const ruleDescription one = constant("A.X", 1);
    const ruleDescription other = logic({"A.Y"}, {"IN"});
    EXPECT_EQ(differencesOf({one, other}, {other, one}), "");
}

TEST(RuleDifferences, ShowBothValuesOfAConstant) {
    EXPECT_EQ(differencesOf({constant("A.X", 1)}, {constant("A.X", 7)}),
              "changed,PLL,A.X,value 1 -> 7\n");
}

TEST(RuleDifferences, ShowAConstantThatIsComputed) {
    EXPECT_EQ(differencesOf({constant("A.X", 1)}, {logic({"A.X"}, {"IN"})}),
              "changed,PLL,A.X,kind constant -> logic; value 1 -> none; inputs +IN\n");
}

TEST(RuleDifferences, ShowInputsThatGoAndCome) {
    EXPECT_EQ(differencesOf({logic({"A.X"}, {"IN", "OLD", "TWICE"})},
                            {logic({"A.X"}, {"NEW", "TWICE", "TWICE", "IN"})}),
              "changed,PLL,A.X,inputs -OLD +NEW +TWICE\n");
}

TEST(RuleDifferences, ShowInputsInAnotherOrder) {
    EXPECT_EQ(differencesOf({logic({"A.X"}, {"B", "C"})}, {logic({"A.X"}, {"C", "B"})}),
              "changed,PLL,A.X,inputs in another order\n");
}

TEST(RuleDifferences, PairRulesThatShareAnOutput) {
    EXPECT_EQ(differencesOf({logic({"A.X", "A.Y"}, {"IN"})}, {logic({"A.Y", "A.Z"}, {"IN"})}),
              "changed,PLL,A.X A.Y,outputs -A.X +A.Z\n");
}

TEST(RuleDifferences, PairRulesWithEqualOutputsBeforeThoseThatShareOne) {
    EXPECT_EQ(differencesOf({logic({"A.X", "A.Y"}, {"IN"}), logic({"A.X"}, {"IN"})},
                            {logic({"A.X"}, {"IN"})}),
              "removed,PLL,A.X A.Y,logic A.X A.Y <- IN\n");
}

TEST(RuleDifferences, PairRulesWithTheSameOutputsOneByOne) {
    EXPECT_EQ(differencesOf({constant("A.X", 1), constant("A.X", 2)}, {constant("A.X", 1)}),
              "removed,PLL,A.X,constant A.X = 2\n");
}

TEST(RuleDifferences, ShowRemovedAndAddedRulesWhole) {
    EXPECT_EQ(
        differencesOf({constant("A.X", 1), logic({"A.Y"}, {"IN", "OTHER"})}, {constant("B.X", 3)}),
        "removed,PLL,A.X,constant A.X = 1\n"
        "removed,PLL,A.Y,logic A.Y <- IN OTHER\n"
        "added,PLL,B.X,constant B.X = 3\n");
}

TEST(RuleDifferences, DoNotCountTheSet) {
    ruleDescription moved = constant("A.X", 1);
    moved.set = "RX";
    EXPECT_EQ(differencesOf({constant("A.X", 1)}, {moved}), "");
}

TEST(RuleDifferences, AreLinesAndTheirCountForPeople) {
    const Answer answer =
        answerAbout({constant("A.X", 1), constant("A.Y", 1)}, {constant("A.X", 2)});
    EXPECT_EQ(answer.text,
              "CHANGE   SET  DIFFERENCE\n"
              "changed  PLL  A.X: value 1 -> 2\n"
              "removed  PLL  constant A.Y = 1\n");
    EXPECT_EQ(answer.remarks, Names{"From SXB to SXC: 1 removed, 0 added, 1 changed"});
}

TEST(RuleDifferences, AreForPeopleTheCountAloneWhenThereAreNone) {
    EXPECT_EQ(answerAbout({}, {}).text, "");
}

TEST(RuleDifferences, HoldBothRulesInJson) {
    const auto ruleOf = [](unsigned number, const Json& value) {
        return Json{{"number", number},        {"set", "PLL"},
                    {"kind", "constant"},      {"outputs", {"A.X"}},
                    {"inputs", Json::array()}, {"value", value}};
    };
    const Json expected = {{{"change", "changed"},
                            {"differs", {"value"}},
                            {"first", ruleOf(0, 1)},
                            {"second", ruleOf(0, 2)}}};
    EXPECT_EQ(answerAbout({constant("A.X", 1)}, {constant("A.X", 2)}).document, expected);
}

TEST(RuleDifferences, HaveNullInJsonForTheSideThatLacksTheRule) {
    const auto document = answerAbout({}, {constant("A.X", 2)}).document;
    ASSERT_TRUE(document && document->size() == 1);
    EXPECT_EQ(document->at(0).at("change"), "added");
    EXPECT_EQ(document->at(0).at("differs"), Json::array());
    EXPECT_EQ(document->at(0).at("first"), nullptr);
    EXPECT_EQ(document->at(0).at("second").at("value"), 2);
}

}  // namespace
}  // namespace lanecfg_test
