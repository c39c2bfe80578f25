#include "cli/command_line.h"
#include "elf/elf_delivery.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <regex>
#include <set>

namespace lanecfg_test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

std::vector<std::string> allRequests() {
    std::vector<std::string> names = bundledRequests();
    for (const std::string& name : packRequests()) {
        names.push_back(name);
    }
    return names;
}

/// Whether the lanes of a request are told not to fit.
bool isRefused(const std::string& request) {
    const std::set<std::string> refused{"pack/bypass_independent",
                                        "pack/bypass_together",
                                        "pack/clock_mismatch",
                                        "pack/no_vco",
                                        "pack/seven_connections",
                                        "pack/source_mismatch",
                                        "pack/ten_and_twenty_five_coded",
                                        "sxb_does_not_pack"};
    return refused.count(request) != 0;
}

/// Whether `pack` finds that the lanes fit. Families whose parameters have no packing groups can't
/// be judged, which is a failure too.
bool fitsItsQuad(const std::string& request) {
    const auto family = bundledRequest(request).at("family").get<std::string>();
    return !isRefused(request) &&
           referenceFile(family, "parameters.json").contains("TX_RATE_GROUP");
}

class EveryBundledRequest : public CommandLine, public testing::WithParamInterface<std::string> {
  protected:
    /// The request's path behind the subcommand.
    ProgramResult ask(const std::string& subcommand,
                      const std::vector<std::string>& options) const {
        std::vector<std::string> arguments{subcommand, requestPath(GetParam())};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return run(arguments);
    }

    static void expectAnswer(const ProgramResult& result) {
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_NE(result.output, "");
        EXPECT_THAT(result.errors, Not(HasSubstr("ERROR")));
        if (isRefused(GetParam())) {
            EXPECT_THAT(result.errors, HasSubstr("WARNING: Request "));
        } else {
            EXPECT_THAT(result.errors, Not(HasSubstr("WARNING")));
        }
    }

    void expectAnswer(const std::string& subcommand,
                      const std::vector<std::string>& options) const {
        SCOPED_TRACE(subcommand + " " + testing::PrintToString(options));
        expectAnswer(ask(subcommand, options));
    }

    void expectVerdict(const std::vector<std::string>& options) const {
        SCOPED_TRACE("pack " + testing::PrintToString(options));
        const ProgramResult result = ask("pack", options);
        EXPECT_EQ(result.exitCode, fitsItsQuad(GetParam()) ? 0 : 1);
        EXPECT_THAT(result.output, Not(HasSubstr("warning: ")));
    }
};

TEST_P(EveryBundledRequest, IsAnsweredByEverySubcommand) {
    for (const char* const subcommand :
         {"attributes", "outclk", "snapshot", "log", "memory", "rate-table"}) {
        for (const char* const format : {"text", "json", "csv"}) {
            expectAnswer(subcommand, {"--format", format});
        }
    }
    expectAnswer("rate-table", {"--decode", "--verify"});
    expectAnswer(run({"attributes", "--diff", requestPath(GetParam()), requestPath(GetParam())}));
    const Delivery delivery;
    expectAnswer("update-elf", {"--elf", delivery.elfFile, "--work-dir", delivery.work.path()});
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{}, {"--ports"}, {"--why"}}) {
        expectVerdict(options);
    }
}

INSTANTIATE_TEST_SUITE_P(Requests, EveryBundledRequest, testing::ValuesIn(allRequests()),
                         CaseName());

/// Commands that stand in the text of a page and name a request or a rate.
std::vector<std::string> commandsOf(const std::string& page) {
    const std::string text = readFile(page);
    const std::regex command("`(lanecfg [^`]*(data/requests/|--rate )[^`]*)`");
    std::vector<std::string> commands;
    for (std::sregex_iterator found(text.begin(), text.end(), command), end; found != end;
         ++found) {
        commands.push_back(found->str(1));
    }
    return commands;
}

/// The pages of requests, whose commands are to be pasted into a shell in the checkout.
class PagesOfRequests : public CommandLine {
  protected:
    static ProgramResult paste(const std::string& command) {
        ProgramStart start;
        start.arguments = {"-c", command};
        start.environment = {{"LANECFG_DATA", ""},
                             {"PATH", fs::path(LANECFG_PROGRAM).parent_path().string()}};
        start.workingDirectory = dataFolder().parent_path().string();
        return runProgram("/bin/sh", start);
    }
};

TEST_F(PagesOfRequests, HaveCommandsThatRunAsPasted) {
    std::size_t pasted = 0;
    for (const std::string& request : allRequests()) {
        for (const std::string& command : commandsOf(requestPagePath(request))) {
            ++pasted;
            const bool asksForVerdict = command.rfind("lanecfg pack ", 0) == 0;
            const ProgramResult result = paste(command);
            EXPECT_EQ(result.exitCode, asksForVerdict && !fitsItsQuad(request) ? 1 : 0)
                << command << ": " << result.errors;
            EXPECT_NE(result.output, "") << command;
        }
    }
    EXPECT_GE(pasted, allRequests().size());
}

class OtherPages : public PagesOfRequests {
  protected:
    static std::string textOf(const std::string& page) {
        return readFile(dataFolder().parent_path() / "docs" / page);
    }
};

TEST_F(OtherPages, HaveExamplesOfTheCommandLineThatRunAsPasted) {
    // An indented line, and the one behind it where it goes on; what a pipe leads to is left out.
    const std::regex command("\n    (lanecfg [^|\n\\\\]*(\\\\\n[^|\n]*)?)");
    const std::string text = textOf("cli.md");
    std::size_t pasted = 0;
    for (std::sregex_iterator found(text.begin(), text.end(), command), end; found != end;
         ++found) {
        ++pasted;
        const ProgramResult result = paste(found->str(1));
        EXPECT_EQ(result.exitCode, 0) << found->str(1) << ": " << result.errors;
        EXPECT_NE(result.output, "") << found->str(1);
    }
    EXPECT_GT(pasted, 0U);
}

TEST_F(OtherPages, HaveAWholeRequestAsTheExampleOfItsForm) {
    const std::string text = textOf("formats.md");
    std::smatch example;
    ASSERT_TRUE(std::regex_search(text, example, std::regex("```json\n([^`]*)```")));
    const auto request = nlohmann::json::parse(example.str(1));
    for (const char* const subcommand : {"pack", "attributes", "outclk", "rate-table"}) {
        const ProgramResult result = runOn(request, subcommand);
        EXPECT_EQ(result.exitCode, 0) << subcommand;
        EXPECT_EQ(result.errors, "") << subcommand;
    }
}

TEST_F(PagesOfRequests, AreAllInTheIndex) {
    const std::string index = readFile(requestPagePath("README"));
    for (const std::string& request : allRequests()) {
        EXPECT_THAT(index, HasSubstr("(" + request + ".md)"));
    }
}

}  // namespace
}  // namespace lanecfg_test
