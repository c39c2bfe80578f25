#include "cli/command_line.h"
#include "families.h"

#include <lanecfg/family_rules.h>

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

class RulesCommand : public CommandLine {
  protected:
    nlohmann::json rulesOf(const std::string& family,
                           const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments = {"rules", "--family", family};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return answerOf(arguments);
    }

    static nlohmann::json ruleWriting(const nlohmann::json& rules, const std::string& output) {
        for (const nlohmann::json& rule : rules) {
            for (const nlohmann::json& name : rule.at("outputs")) {
                if (name == output) {
                    return rule;
                }
            }
        }
        ADD_FAILURE() << "no rule writes " << output;
        return {};
    }
};

TEST_F(RulesCommand, NumbersAllRulesOfAFamilyInTheirOrder) {
    const nlohmann::json rules = rulesOf("SXA");
    ASSERT_THAT(rules, SizeIs(1165 + 163));
    for (std::size_t number = 0; number < rules.size(); ++number) {
        EXPECT_EQ(rules[number].at("number"), number);
    }
    EXPECT_EQ(rules[0].at("outputs"), nlohmann::json({"RCALBG_CFG0.RCALSAP_TESTEN"}));
    EXPECT_EQ(rules[2].at("outputs"), nlohmann::json({"RCALBG_CFG0"}));
}

TEST_F(RulesCommand, TellsTheValueOfAConstantAndNoneOfAnotherRule) {
    const nlohmann::json rules = rulesOf("SXA");
    const nlohmann::json field = ruleWriting(rules, "LCPLL_CFG1.LCPLL_CP");
    EXPECT_EQ(field.at("kind"), "constant");
    EXPECT_EQ(field.at("value"), 31);
    EXPECT_EQ(field.at("inputs"), nlohmann::json::array());
    const nlohmann::json word = ruleWriting(rules, "RCALBG_CFG0");
    EXPECT_EQ(word.at("kind"), "compose");
    EXPECT_EQ(word.at("value"), nullptr);
    EXPECT_EQ(word.at("inputs"),
              nlohmann::json({"RCALBG_CFG0.RCALSAP_TESTEN", "RCALBG_CFG0.RCAL_APROBE"}));
}

TEST_F(RulesCommand, HelpListsTheFamilies) {
    const std::string names = "{SXA,SXB,SXB:stable,SXC,SXD4,SXD4:stable}";
    EXPECT_THAT(run({"rules", "--help"}).output, HasSubstr("--family RULES:" + names));
    EXPECT_THAT(run({"rules", "--help"}).output, HasSubstr("--diff RULES:" + names));
    EXPECT_THAT(run({"attributes", "--help"}).output, HasSubstr("--rules RULES:" + names));
}

TEST_F(RulesCommand, ChoosesByKind) {
    EXPECT_THAT(rulesOf("SXA", {"--kind", "compose"}), SizeIs(163));
    EXPECT_THAT(rulesOf("SXA", {"--kind", "compose", "--kind", "constant"}), SizeIs(1165 + 163));
    EXPECT_THAT(rulesOf("SXA", {"--kind", "logic"}), SizeIs(0));
}

TEST_F(RulesCommand, ChosenRulesKeepTheirNumbers) {
    EXPECT_EQ(rulesOf("SXA", {"--kind", "compose"})[0].at("number"), 2);
}

TEST_F(RulesCommand, HasASetForEachPartOfSxb) {
    EXPECT_THAT(rulesOf("SXB"), SizeIs(813 + 198 + 898));
    EXPECT_THAT(rulesOf("SXB", {"--set", "RX"}), SizeIs(813));
    EXPECT_THAT(rulesOf("SXB", {"--set", "TX", "--set", "PLL"}), SizeIs(198 + 898));
    EXPECT_THAT(rulesOf("SXB", {"--set", "PLL", "--kind", "logic"}), SizeIs(149));
    EXPECT_THAT(rulesOf("SXC", {"--set", "RX"}), SizeIs(814));
    EXPECT_THAT(rulesOf("SXC", {"--set", "TX", "--set", "PLL"}), SizeIs(198 + 936));
}

TEST_F(RulesCommand, TellsTheFlagOfACopyAndTheNamesThatLogicDeclares) {
    const nlohmann::json rules = rulesOf("SXB");
    const nlohmann::json copied = ruleWriting(rules, "PIPE_CTRL_CFG4.PIPE_RATE_EN");
    EXPECT_EQ(copied.at("kind"), "copy");
    EXPECT_EQ(copied.at("inputs"), nlohmann::json({"PCIE_ENABLE"}));
    const nlohmann::json dividers = ruleWriting(rules, "INT_RX_OUTDIV");
    EXPECT_EQ(dividers.at("set"), "PLL");
    EXPECT_EQ(dividers.at("kind"), "logic");
    EXPECT_EQ(dividers.at("outputs"), nlohmann::json({"INT_TX_OUTDIV", "INT_RX_OUTDIV"}));
    EXPECT_EQ(dividers.at("inputs"),
              nlohmann::json({"INT_LCPLL_PLLCLKOUT", "INT_RPLL_PLLCLKOUT", "INT_LCPLLCLKOUTRATE"}));
}

TEST_F(RulesCommand, WritesALineForEachRuleAndTheirCount) {
    const ProgramResult result = run({"rules", "--family", "SXA"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, StartsWith("NUMBER  SET  KIND      RULE\n"));
    EXPECT_THAT(result.output,
                ContainsRegex("\n +2  all  compose   RCALBG_CFG0 <- RCALBG_CFG0.RCALSAP_TESTEN "
                              "RCALBG_CFG0.RCAL_APROBE\n"));
    EXPECT_THAT(result.output, HasSubstr("constant  LCPLL_CFG1.LCPLL_CP = 31\n"));
    EXPECT_THAT(result.output,
                EndsWith("1328 rules: 1165 constant, 0 copy, 0 logic, 163 compose\n"));
}

TEST_F(RulesCommand, WritesCsv) {
    const ProgramResult result = run({"rules", "--family", "SXA", "--format", "csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, StartsWith("number,set,kind,outputs,inputs,value\n"
                                          "0,all,constant,RCALBG_CFG0.RCALSAP_TESTEN,,0\n"
                                          "1,all,constant,RCALBG_CFG0.RCAL_APROBE,,0\n"
                                          "2,all,compose,RCALBG_CFG0,"
                                          "RCALBG_CFG0.RCALSAP_TESTEN RCALBG_CFG0.RCAL_APROBE,\n"));
}

TEST_F(RulesCommand, AnswersForEveryRuleSetThatARequestCanAskFor) {
    for (const RuleSet& ruleSet : ruleSets()) {
        EXPECT_THAT(rulesOf(nameOf(ruleSet)),
                    SizeIs(sable_lanecfg::rulesOfFamily(ruleSet.family, ruleSet.selector).size()))
            << nameOf(ruleSet);
    }
}

TEST_F(RulesCommand, TellsOfAFamilyThatItHasNoRules) {
    const ProgramResult result = run({"rules", "--family", "SXD4:stable"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, EndsWith("SXD4:stable has no rules\n"));
    EXPECT_EQ(rulesOf("SXD4:stable"), nlohmann::json::array());
    EXPECT_EQ(rulesOf("SXD4:stable", {"--kind", "logic"}), nlohmann::json::array());
}

TEST_F(RulesCommand, HasNoSetOfAFamilyWithoutRules) {
    expectFailure(run({"rules", "--family", "SXD4:stable", "--set", "RX"}), 2,
                  "--set: SXD4:stable has no rules, so none in a set \"RX\".");
}

TEST_F(RulesCommand, RemovesEveryRuleOnTheWayToAFamilyWithoutRules) {
    const ProgramResult result = run({"rules", "--diff", "SXD4", "SXD4:stable"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output,
                EndsWith("\nFrom SXD4 to SXD4:stable: " + std::to_string(568 + 108 + 371) +
                         " removed, 0 added, 0 changed\n"));
}

TEST_F(RulesCommand, NeedsAFamily) {
    expectFailure(run({"rules"}), 2, "--family is required, or --diff with two of them");
}

TEST_F(RulesCommand, TakesNoFamilyOrSelectorThatIsNotThere) {
    for (const std::string family : {"SXZ", "SXA:stable", "SXB:newest", "SXB:", ""}) {
        expectFailure(run({"rules", "--family", family}), 2, "SXB:stable");
    }
}

TEST_F(RulesCommand, TakesNoUnknownKind) {
    expectFailure(run({"rules", "--family", "SXA", "--kind", "magic"}), 2, "magic");
}

TEST_F(RulesCommand, NamesTheSetsForAnUnknownOne) {
    expectFailure(run({"rules", "--family", "SXA", "--set", "PLL"}), 2,
                  "--set: the rules of SXA have no set \"PLL\"; they have all.");
}

TEST_F(RulesCommand, ComparesTwoFamilies) {
    const ProgramResult result = run({"rules", "--diff", "SXA", "SXB"});
    EXPECT_EQ(result.exitCode, 0);
    // A flag is copied there where the other family has a constant.
    EXPECT_THAT(result.output,
                ContainsRegex("\nchanged  all  PIPE_CTRL_CFG8.CDR_CTRL_GEN34_ON_EIDLE: kind "
                              "constant -> copy; value [0-9]+ -> none; inputs \\+PCIE_ENABLE\n"));
    EXPECT_THAT(result.output, ContainsRegex("\nFrom SXA to SXB: [0-9]+ removed, [0-9]+ added, "
                                             "[0-9]+ changed\n$"));
}

TEST_F(RulesCommand, CountsAllRulesOfBothFamiliesInTheirDifference) {
    for (const std::string second : {"SXA", "SXC", "SXB:stable"}) {
        std::size_t removed = 0;
        std::size_t added = 0;
        for (const nlohmann::json& row : answerOf({"rules", "--diff", "SXB:live", second})) {
            removed += row.at("second").is_null() ? 1 : 0;
            added += row.at("first").is_null() ? 1 : 0;
        }
        // What is not removed has its like in the other family.
        EXPECT_EQ(rulesOf("SXB").size() - removed, rulesOf(second).size() - added) << second;
        EXPECT_LT(removed, rulesOf("SXB").size()) << second;
    }
}

TEST_F(RulesCommand, ComparesSxbWithSxc) {
    const ProgramResult result = run({"rules", "--diff", "SXB", "SXC"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("CHCLK_ILO_CFG.RESERVED_BIT17"));
    // 41 fields are new and 2 gone. 3 constants have another value, 10 rules became constants, 14
    // read or write something else; 5 words have other fields and 3 have fields at last.
    EXPECT_THAT(result.output, EndsWith("\nFrom SXB to SXC: 2 removed, 41 added, 35 changed\n"));
}

TEST_F(RulesCommand, CountsWhatTheFrozenRulesChangeInEachSet) {
    std::map<std::pair<std::string, std::string>, int> counts;
    for (const nlohmann::json& row : answerOf({"rules", "--diff", "SXB:live", "SXB:stable"})) {
        const nlohmann::json& rule = row.at(row.at("first").is_null() ? "second" : "first");
        ++counts[{rule.at("set"), row.at("change")}];
    }
    const std::map<std::pair<std::string, std::string>, int> expected{
        // 813 current rules and 827 frozen ones.
        {{"RX", "removed"}, 151},
        {{"RX", "added"}, 165},
        // 107 constants, the recovery, the output clock, eight of the equaliser's mode, 43 words.
        {{"RX", "changed"}, 107 + 1 + 1 + 8 + 43},
        // Three mappings and a status select, for three gearbox words and a period.
        {{"TX", "removed"}, 3 + 1},
        {{"TX", "added"}, 3 + 1},
        // Eleven constants, the output clock, the gearbox and three words.
        {{"TX", "changed"}, 11 + 1 + 1 + 3},
        // 898 current rules and 804 frozen ones.
        {{"PLL", "removed"}, 179},
        {{"PLL", "added"}, 85},
        // 72 constants, the inputs, two solvers, the low power equaliser, 28 words.
        {{"PLL", "changed"}, 72 + 1 + 2 + 1 + 28}};
    EXPECT_EQ(counts, expected);
}

TEST_F(RulesCommand, ComparesAFamilyUnderBothOfItsNames) {
    const ProgramResult result = run({"rules", "--diff", "SXB:live", "SXB"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "From SXB:live to SXB: 0 removed, 0 added, 0 changed\n");
}

TEST_F(RulesCommand, ComparesTwoFamiliesThatAreThere) {
    expectFailure(run({"rules", "--diff", "SXB"}), 2, "--diff");
    expectFailure(run({"rules", "--diff", "SXB", "SXZ"}), 2,
                  "\"SXZ\" names no rules; there are SXA, SXB, SXB:stable");
    expectFailure(run({"rules", "--diff", "SXA", "SXB", "--family", "SXA"}), 2, "excludes");
}

TEST(RuleSetNames, MayTellTheLiveSelector) {
    EXPECT_EQ(findRuleSetNamed("SXB:live"), findRuleSet("SXB", "live"));
    EXPECT_EQ(findRuleSetNamed("SXB:stable"), findRuleSet("SXB", "stable"));
    EXPECT_EQ(findRuleSetNamed("SXA:stable"), nullptr);
}

TEST(RuleSetNames, HaveTheSelectorWhereItIsNotTheLiveOne) {
    EXPECT_EQ(nameOf(*findRuleSet("SXB", "live")), "SXB");
    EXPECT_EQ(nameOf(*findRuleSet("SXB", "stable")), "SXB:stable");
}

}  // namespace
}  // namespace lanecfg_test
