#include "cli/command_line.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

using testing::HasSubstr;

TEST_F(CommandLine, WithoutSubcommandIsWrongUsage) {
    expectFailure(run({}), 2, "A subcommand is required");
}

TEST_F(CommandLine, WithAnUnknownSubcommandIsWrongUsage) {
    EXPECT_EQ(run({"atributes", "x.json"}).exitCode, 2);
}

TEST_F(CommandLine, TellsItsVersion) {
    const ProgramResult result = run({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST_F(CommandLine, HelpListsEverySubcommandAndTheExitCodes) {
    const ProgramResult result = run({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    for (const char* const word : {"attributes", "snapshot", "log", "families", "check-database",
                                   "models", "model-update", "Exit codes: 0 done"}) {
        EXPECT_THAT(result.output, HasSubstr(word));
    }
}

/// What a subcommand needs on its command line.
std::vector<std::string> neededArguments(const std::string& subcommand) {
    if (subcommand == "families" || subcommand == "check-database" || subcommand == "models") {
        return {};
    }
    if (subcommand == "model-update") {
        return {"corvane:ip:gt_subcore_ip:1.0", "TXPROGDIV_FREQ_ENABLE"};
    }
    return {requestPath("sxa_basic")};
}

class Subcommand : public CommandLine, public testing::WithParamInterface<std::string> {
  protected:
    /// Runs the subcommand with all that it needs and one thing more.
    ProgramResult runWith(const std::vector<std::string>& more) const {
        std::vector<std::string> arguments = {GetParam()};
        const std::vector<std::string> needed = neededArguments(GetParam());
        arguments.insert(arguments.end(), needed.begin(), needed.end());
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }
};

TEST_P(Subcommand, HelpShowsAnExample) {
    const ProgramResult result = run({GetParam(), "--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, HasSubstr("Example:\n  lanecfg " + GetParam()));
}

TEST_P(Subcommand, TakesNoUnknownOption) {
    expectFailure(runWith({"--no-such-option"}), 2, "--no-such-option");
}

TEST_P(Subcommand, TakesNoUnknownFormat) {
    expectFailure(runWith({"--format", "xml"}), 2, "xml");
}

TEST_P(Subcommand, TakesNoEmptyNameOfTheAnswer) {
    expectFailure(runWith({"-o", ""}), 2, "--output: the value is empty");
}

INSTANTIATE_TEST_SUITE_P(Each, Subcommand,
                         testing::Values("attributes", "snapshot", "log", "families",
                                         "check-database", "models", "model-update"),
                         CaseName());

class DatabaseSubcommand : public Subcommand {};

TEST_P(DatabaseSubcommand, TakesNoEmptyNameOfTheDatabase) {
    expectFailure(runWith({"--database", ""}), 2, "--database: the value is empty");
}

INSTANTIATE_TEST_SUITE_P(Each, DatabaseSubcommand,
                         testing::Values("attributes", "snapshot", "log", "families",
                                         "check-database"),
                         CaseName());

class RequestSubcommand : public CommandLine, public testing::WithParamInterface<std::string> {};

TEST_P(RequestSubcommand, NeedsARequest) {
    expectFailure(run({GetParam()}), 2, "request is required");
}

TEST_P(RequestSubcommand, TakesOneRequest) {
    const std::string file = requestPath("sxa_basic");
    expectFailure(run({GetParam(), file, file}), 2, file);
}

TEST_P(RequestSubcommand, TakesNoUnknownFamily) {
    expectFailure(run({GetParam(), requestPath("sxa_basic"), "--family", "SXZ"}), 2, "SXZ");
}

TEST_P(RequestSubcommand, TakesNoUnknownSelector) {
    expectFailure(run({GetParam(), requestPath("sxa_basic"), "--selector", "newest"}), 2, "newest");
}

TEST_P(RequestSubcommand, TakesNoPartWithTheFileForm) {
    expectFailure(run({GetParam(), requestPath("sxa_basic"), "--part", "a-b-c-d-e-f-g"}), 2,
                  "has the file form (\"laneUsage\" is no object), which takes no part name");
}

INSTANTIATE_TEST_SUITE_P(Each, RequestSubcommand, testing::Values("attributes", "snapshot", "log"),
                         CaseName());

}  // namespace
}  // namespace lanecfg_test
