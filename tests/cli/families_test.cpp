#include "families.h"

#include "cli/command_line.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;

TEST(RuleSets, AreFoundByFamilyAndSelector) {
    ASSERT_NE(findRuleSet("SXB", "live"), nullptr);
    EXPECT_EQ(findRuleSet("SXB", "live")->folder, "SXB");
    EXPECT_EQ(findRuleSet("SXB", "Stable")->folder, "SXB-stable");
    EXPECT_EQ(findRuleSet("SXD4", "stable")->folder, "SXD4");
}

TEST(RuleSets, AreNotFoundWhereThereIsNone) {
    EXPECT_EQ(findRuleSet("SXA", "stable"), nullptr);
    EXPECT_EQ(findRuleSet("SXC", "stable"), nullptr);
    EXPECT_EQ(findRuleSet("sxa", "live"), nullptr);
    EXPECT_EQ(findRuleSet("SXA", "other"), nullptr);
}

TEST(RuleSets, ShareAFolderWhereTheyShareADatabase) {
    EXPECT_EQ(ruleSetsOfFolder("SXD4").size(), 2U);
    EXPECT_EQ(ruleSetsOfFolder("SXA").size(), 1U);
    EXPECT_TRUE(ruleSetsOfFolder("requests").empty());
}

TEST(RuleSets, HaveFourFamilyWords) {
    EXPECT_THAT(familyWords(), testing::ElementsAre("SXA", "SXB", "SXC", "SXD4"));
}

class FamiliesCommand : public CommandLine {
  protected:
    static nlohmann::json rowOf(const nlohmann::json& answer, const std::string& family,
                                const std::string& selector) {
        for (const nlohmann::json& row : answer) {
            if (row.at("family") == family && row.at("selector") == selector) {
                return row;
            }
        }
        ADD_FAILURE() << "no row for " << family << " " << selector;
        return {};
    }
};

TEST_F(FamiliesCommand, TellsChannelsAvailabilityAndDatabase) {
    SxaDatabase().writeTo(directory);
    const nlohmann::json answer = answerOf({"families", "--database", directory.path().string()});
    EXPECT_EQ(answer.size(), 6U);
    const nlohmann::json sxa = rowOf(answer, "SXA", "live");
    EXPECT_EQ(sxa.at("channels"), 4);
    EXPECT_EQ(sxa.at("available"), true);
    EXPECT_EQ(sxa.at("database"), directory.file("SXA"));
    EXPECT_EQ(rowOf(answer, "SXD4", "live").at("channels"), 2);
}

TEST_F(FamiliesCommand, TellsWhereADatabaseIsMissing) {
    SxaDatabase().writeTo(directory);
    const nlohmann::json answer = answerOf({"families", "--database", directory.path().string()});
    EXPECT_EQ(rowOf(answer, "SXB", "stable").at("available"), false);
    EXPECT_EQ(rowOf(answer, "SXB", "stable").at("database"), nullptr);
}

TEST_F(FamiliesCommand, FailsWithoutAFolderToLookIn) {
    const std::string missing = directory.file("missing");
    const std::string file = directory.write("file", "");
    expectFailure(run({"families", "--database", missing}), 1,
                  "ERROR: There is no folder " + missing + " (named on the command line).");
    expectFailure(run({"families", "--database", file}), 1, "ERROR: There is no folder " + file);
    expectFailure(run({"families"}, {{"LANECFG_DATA", missing}}), 1,
                  " (named by the variable LANECFG_DATA).");
}

TEST_F(FamiliesCommand, WritesTextByDefault) {
    const ProgramResult result = run({"families"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, testing::MatchesRegex("FAMILY +SELECTOR +CHANNELS +AVAILABLE "
                                                     "+DATABASE\nSXA +live +4 +yes +/.*/SXA\n"
                                                     "(.|\n)*"));
}

}  // namespace
}  // namespace lanecfg_test
