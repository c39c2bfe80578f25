#include "cli/command_line.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

namespace lanecfg_test {
namespace {

using testing::HasSubstr;

TEST_F(CommandLine, WithoutSubcommandIsWrongUsage) {
    expectFailure(run({}), 2, "A subcommand is required");
}

TEST_F(CommandLine, WithAnUnknownSubcommandIsWrongUsage) {
    for (const char* const behind : {"x.json", "--help", "--format"}) {
        const ProgramResult result = run({"atributes", behind});
        expectFailure(result, 2,
                      "ERROR: There is no subcommand \"atributes\"; there are attributes, ");
        EXPECT_THAT(result.errors, testing::EndsWith(". lanecfg --help tells more.\n"));
    }
}

TEST_F(CommandLine, HasOneFormOfUsageFaults) {
    // Found by the parser, by a check of a value, and by the subcommand.
    EXPECT_EQ(run({}).errors, "ERROR: A subcommand is required. lanecfg --help tells more.\n");
    EXPECT_EQ(run({"outclk"}).errors,
              "ERROR: request is required. lanecfg outclk --help tells more.\n");
    EXPECT_EQ(run({"families", "--database", ""}).errors,
              "ERROR: --database: the value is empty; give one, or leave the option out. lanecfg "
              "families --help tells more.\n");
    EXPECT_EQ(run({"attributes"}).errors,
              "ERROR: request is required, or --diff with two of them. lanecfg attributes --help "
              "tells more.\n");
    EXPECT_EQ(run({"rules", "--family", "SXA", "--set", "TX"}).errors.rfind("ERROR: --set: ", 0),
              0U);
}

TEST_F(CommandLine, ShowsNoControlCharactersOfTheUsage) {
    EXPECT_THAT(run({"\x1b[2J"}).errors, HasSubstr("no subcommand \"<U+001B>[2J\""));
}

TEST_F(CommandLine, TellsItsVersion) {
    const ProgramResult result = run({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

/// Runs the program as "$0" "$@" of a script.
ProgramResult runInShell(const std::string& script, const std::vector<std::string>& arguments,
                         const std::string& directory) {
    ProgramStart start;
    start.arguments = {"-c", script, LANECFG_PROGRAM};
    start.arguments.insert(start.arguments.end(), arguments.begin(), arguments.end());
    start.workingDirectory = directory;
    return runProgram("/bin/sh", start);
}

TEST_F(CommandLine, IsDoneWhenTheReaderOfItsAnswerEndsEarly) {
    // Far more than a pipe holds, so it writes on after the end of its reader.
    runInShell(R"({ "$0" "$@" 2> errors; echo $? > code; } | true)",
               {"snapshot", requestPath("sxa_basic")}, directory.path().string());
    EXPECT_EQ(readFile(directory.file("code")), "0\n");
    EXPECT_EQ(readFile(directory.file("errors")), "");
}

TEST_F(CommandLine, TellsOfAnAnswerThatCannotBeWritten) {
    for (const char* const word : {"families", "--help", "--version"}) {
        expectFailure(runInShell(R"(exec "$0" "$@" > /dev/full)", {word}, "/"), 1,
                      "ERROR: Cannot write to standard output: No space left on device.");
        expectFailure(runInShell(R"(exec "$0" "$@" >&-)", {word}, "/"), 1,
                      "ERROR: Cannot write to standard output: Bad file descriptor.");
    }
}

TEST_F(CommandLine, LeavesNothingOfAnAnswerThatGetsTooLarge) {
    const std::string answer = directory.file("answer");
    expectFailure(runInShell(R"(ulimit -f 8; exec "$0" "$@")",
                             {"snapshot", requestPath("sxa_basic"), "-o", answer}, "/"),
                  1, "Cannot write the file " + answer + ": File too large.");
    EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

std::vector<std::string> requestSubcommands() {
    return {"attributes", "outclk",     "snapshot",   "log",
            "memory",     "rate-table", "update-elf", "pack"};
}

std::vector<std::string> databaseSubcommands() {
    std::vector<std::string> words = requestSubcommands();
    words.insert(words.end(), {"families", "check-database"});
    return words;
}

std::vector<std::string> allSubcommands() {
    std::vector<std::string> words = databaseSubcommands();
    words.insert(words.end(), {"models", "model-update", "rules", "refclk", "outclk-list"});
    return words;
}

TEST_F(CommandLine, HelpListsEverySubcommandAndTheExitCodes) {
    const ProgramResult result = run({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    for (const std::string& word : allSubcommands()) {
        EXPECT_THAT(result.output, HasSubstr("\n  " + word + " "));
    }
    EXPECT_THAT(result.output, HasSubstr("Exit codes: 0 done"));
}

/// What a subcommand needs on its command line besides a request.
std::vector<std::string> neededArguments(const std::string& subcommand) {
    if (subcommand == "update-elf") {
        return {"--elf", "firmware.elf", "--work-dir", "quad"};
    }
    if (subcommand == "rules") {
        return {"--family", "SXA"};
    }
    if (subcommand == "model-update") {
        return {"corvane:ip:gt_subcore_ip:1.0", "TXPROGDIV_FREQ_ENABLE"};
    }
    if (subcommand == "refclk") {
        return {"--rate", "10", "--refclk", "100", "--pll", "LCPLL"};
    }
    if (subcommand == "outclk-list") {
        return {"--direction", "RX", "--rate", "10", "--pll", "LCPLL", "--width", "40"};
    }
    return {};
}

class Subcommand : public CommandLine, public testing::WithParamInterface<std::string> {
  protected:
    /// Runs the subcommand with what it needs besides a request, and more.
    ProgramResult runWithoutRequest(const std::vector<std::string>& more) const {
        std::vector<std::string> arguments = {GetParam()};
        const std::vector<std::string> needed = neededArguments(GetParam());
        arguments.insert(arguments.end(), needed.begin(), needed.end());
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(arguments);
    }

    /// Runs the subcommand with all that it needs, and more.
    ProgramResult runWith(const std::vector<std::string>& more) const {
        const std::vector<std::string> subcommands = requestSubcommands();
        std::vector<std::string> arguments;
        if (std::find(subcommands.begin(), subcommands.end(), GetParam()) != subcommands.end()) {
            arguments.push_back(requestPath("sxa_basic"));
        }
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runWithoutRequest(arguments);
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

INSTANTIATE_TEST_SUITE_P(Each, Subcommand, testing::ValuesIn(allSubcommands()), CaseName());

class DatabaseSubcommand : public Subcommand {};

TEST_P(DatabaseSubcommand, TakesNoEmptyNameOfTheDatabase) {
    expectFailure(runWith({"--database", ""}), 2, "--database: the value is empty");
}

TEST_P(DatabaseSubcommand, DoesNotOverwriteItsDatabase) {
    const std::string folder = SxaDatabase().writeTo(directory);
    for (const char* const name : {"device.json", "parameters.json", "registers.json"}) {
        const std::string file = folder + "/" + name;
        const std::string before = readFile(file);
        expectFailure(runWith({"--database", folder, "-o", file}), 2,
                      "-o names the file " + file + ", which this command uses.");
        EXPECT_EQ(readFile(file), before);
    }
}

INSTANTIATE_TEST_SUITE_P(Each, DatabaseSubcommand, testing::ValuesIn(databaseSubcommands()),
                         CaseName());

TEST_F(CommandLine, OverwritesNoRequestThatItCompares) {
    const std::string before = bundledRequest("sxa_basic").dump();
    const std::string file = directory.write("request.json", before);
    expectFailure(run({"attributes", "--diff", requestPath("sxa_basic"), file, "-o", file}), 2,
                  "-o names the file " + file + ", which this command uses.");
    EXPECT_EQ(readFile(file), before);
}

class RequestSubcommand : public Subcommand {};

TEST_P(RequestSubcommand, NeedsARequest) {
    expectFailure(runWithoutRequest({}), 2, "request is required");
}

TEST_P(RequestSubcommand, TakesNoEmptyNameOfTheRequest) {
    expectFailure(runWithoutRequest({""}), 2, "request: the value is empty");
}

TEST_P(RequestSubcommand, DoesNotOverwriteItsRequest) {
    const std::string before = bundledRequest("sxa_basic").dump();
    const std::string file = directory.write("request.json", before);
    expectFailure(runWithoutRequest({file, "-o", file}), 2,
                  "-o names the file " + file + ", which this command uses.");
    EXPECT_EQ(readFile(file), before);
}

TEST_P(RequestSubcommand, TakesOneRequest) {
    const std::string file = requestPath("sxa_basic");
    expectFailure(runWith({file}), 2, file);
}

TEST_P(RequestSubcommand, TakesNoUnknownFamily) {
    expectFailure(runWith({"--family", "SXZ"}), 2, "SXZ");
}

TEST_P(RequestSubcommand, TakesNoUnknownSelector) {
    expectFailure(runWith({"--selector", "newest"}), 2, "newest");
}

TEST_P(RequestSubcommand, TakesNoPartWithTheFileForm) {
    expectFailure(runWith({"--part", "a-b-c-d-e-f-g"}), 2,
                  "has the file form (\"laneUsage\" is no object), which takes no part name");
}

INSTANTIATE_TEST_SUITE_P(Each, RequestSubcommand, testing::ValuesIn(requestSubcommands()),
                         CaseName());

}  // namespace
}  // namespace lanecfg_test
