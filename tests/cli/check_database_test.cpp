#include "cli/command_line.h"
#include "support/reference_data.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

namespace lanecfg_test {
namespace {

using testing::HasSubstr;

class CheckDatabaseCommand : public CommandLine {};

TEST_F(CheckDatabaseCommand, FindsNoErrorInTheBundledDatabases) {
    const nlohmann::json answer = answerOf({"check-database"});
    EXPECT_GE(answer.size(), 1U);
    for (const nlohmann::json& report : answer) {
        EXPECT_EQ(report.at("errors"), 0) << report;
    }
}

TEST_F(CheckDatabaseCommand, CountsWholeWordsAndPortsAsWritten) {
    // Both databases have registers without fields, which rules give their value as a whole.
    for (const std::string family : {"SXB", "SXD4"}) {
        const nlohmann::json answer = answerOf({"check-database", "--family", family});
        ASSERT_EQ(answer.size(), 1U);
        EXPECT_EQ(answer[0].at("notes"), 0) << answer[0];
    }
}

TEST_F(CheckDatabaseCommand, ReportsEveryFamilyOfAFolder) {
    SxaDatabase database;
    database.writeTo(directory);
    std::filesystem::create_directory(directory.file("OTHER"));
    directory.write("OTHER/device.json", "{}");
    const ProgramResult result =
        run({"check-database", directory.path().string(), "--format", "json"});
    EXPECT_EQ(result.exitCode, 1);
    const nlohmann::json answer = nlohmann::json::parse(result.output);
    ASSERT_EQ(answer.size(), 2U);
    EXPECT_EQ(answer[0].at("family"), nullptr);
    EXPECT_EQ(answer[1].at("family"), "SXA");
    EXPECT_EQ(answer[1].at("registers"), 163);
}

TEST_F(CheckDatabaseCommand, FailsOnAnErrorAndNamesIt) {
    SxaDatabase database;
    database.registers["A_CFG0"]["dstSubBlock"] = "attic";
    const ProgramResult result = run({"check-database", database.writeTo(directory)});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, HasSubstr("The block type \"attic\" is unknown"));
    EXPECT_THAT(result.output, HasSubstr("1 errors, "));
}

TEST_F(CheckDatabaseCommand, DoesNotFailOnNotes) {
    SxaDatabase database;
    database.registers["NEW_CFG"] = {
        {"dstSubBlock", "ctrl_0"}, {"Offset", "0xFFF"}, {"fields", nlohmann::json::object()}};
    const ProgramResult result =
        run({"check-database", database.writeTo(directory), "--format", "csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr(",note,registers.json,NEW_CFG,No rule of SXA writes"));
}

/// The frozen rules of SXD4 are none, so each of the 193 registers of its database is noted.
class CheckDatabaseWithoutRules : public CommandLine {
  protected:
    const std::vector<std::string> arguments{"check-database", "--family", "SXD4", "--selector",
                                             "stable"};
};

TEST_F(CheckDatabaseWithoutRules, TellsPeopleOfAllRegistersInOneNote) {
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("A_CFG, A_CH_CFG0, A_CH_CFG1 and 190 more"));
    EXPECT_THAT(result.output,
                HasSubstr("No rule of SXD4:stable writes this register. (193 in all)"));
    EXPECT_THAT(result.output, HasSubstr("0 errors, 0 warnings, 193 notes\n"));
    // Heading, note and summary.
    EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 3);
}

TEST_F(CheckDatabaseWithoutRules, TellsProgramsOfEachRegister) {
    const nlohmann::json report = answerOf(arguments).at(0);
    EXPECT_EQ(report.at("notes"), 193);
    const nlohmann::json registers = referenceFile("SXD4", "registers.json");
    ASSERT_EQ(registers.size(), 193U);
    std::set<std::string> keys;
    for (const nlohmann::json& finding : report.at("findings")) {
        EXPECT_EQ(finding.at("text"), "No rule of SXD4:stable writes this register.");
        EXPECT_TRUE(registers.contains(finding.at("key"))) << finding;
        keys.insert(finding.at("key"));
    }
    EXPECT_EQ(keys.size(), 193U);
    std::vector<std::string> forCsv = arguments;
    forCsv.insert(forCsv.end(), {"--format", "csv"});
    const std::string rows = run(forCsv).output;
    EXPECT_EQ(std::count(rows.begin(), rows.end(), '\n'), 1 + 193);
}

TEST_F(CheckDatabaseCommand, TakesTheFamilyWhereTheFolderDoesNotTell) {
    SxaDatabase().writeTo(directory);
    std::filesystem::rename(directory.file("SXA"), directory.file("mine"));
    const nlohmann::json answer =
        answerOf({"check-database", directory.file("mine"), "--family", "SXA"});
    EXPECT_EQ(answer.at(0).at("family"), "SXA");
    EXPECT_EQ(answer.at(0).at("rule_outputs"), 163 + 1165);
}

TEST_F(CheckDatabaseCommand, TakesTheFolderFromOptionAndVariableToo) {
    const std::string folder = SxaDatabase().writeTo(directory);
    EXPECT_EQ(answerOf({"check-database", "--database", folder}).at(0).at("folder"), folder);
    const ProgramResult result =
        run({"check-database", "--format", "json"}, {{"LANECFG_DATA", folder}});
    EXPECT_EQ(nlohmann::json::parse(result.output).at(0).at("folder"), folder);
}

TEST_F(CheckDatabaseCommand, FailsWithoutDatabase) {
    expectFailure(run({"check-database", directory.path().string()}), 1,
                  "There is no database in " + directory.path().string());
    expectFailure(run({"check-database", "/nonexistent"}), 1,
                  "There is no database in /nonexistent");
}

TEST_F(CheckDatabaseCommand, FailsForRulesThatDoNotExist) {
    expectFailure(run({"check-database", "--family", "SXA", "--selector", "stable"}), 1,
                  "The family SXA has no \"stable\" rules");
}

TEST_F(CheckDatabaseCommand, TakesASelectorWithAFamilyOnly) {
    expectFailure(run({"check-database", "--selector", "live"}), 2, "--family");
}

}  // namespace
}  // namespace lanecfg_test
