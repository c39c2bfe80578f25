#include "run_warnings.h"

#include "cli/command_line.h"
#include "elf/elf_delivery.h"
#include "packing_reasons.h"
#include "support/packing_request.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

using nlohmann::json;
using sable_lanecfg::tool::firstReasonText;
using testing::HasSubstr;
using testing::Not;

TEST(FirstReason, IsEmptyWithoutAny) {
    EXPECT_EQ(firstReasonText({}), "");
}

TEST(FirstReason, IsThatOfTheLowestLevel) {
    EXPECT_EQ(
        firstReasonText(
            {{1, connectionsText()}, {2, noVcoText("RPLL", 1, 0)}, {3, noVcoText("LCPLL", 0, 0)}}),
        sentenceOf(noVcoText("RPLL", 1, 0)));
    EXPECT_EQ(firstReasonText({{1, noVcoText("RPLL", 1, 0)}, {2, commonBypassText(0, 1)}}),
              sentenceOf(commonBypassText(0, 1)));
}

/// A subcommand that runs a request.
class RunWarning : public CommandLine, public testing::WithParamInterface<std::string> {
  protected:
    std::vector<std::string> argumentsFor(const std::string& request) const {
        std::vector<std::string> arguments{GetParam(), request};
        if (GetParam() == "update-elf") {
            arguments.insert(arguments.end(),
                             {"--elf", delivery.elfFile, "--work-dir", delivery.work.path()});
        }
        return arguments;
    }

    /// Runs the subcommand, which has to answer.
    ProgramResult answer(const std::string& request) const {
        ProgramResult result = run(argumentsFor(request));
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_NE(result.output, "");
        return result;
    }

    const Delivery delivery;
};

TEST_P(RunWarning, NamesTheReasonWhyARequestDoesNotPack) {
    const std::string file = requestPath("sxb_does_not_pack");
    const ProgramResult result = answer(file);
    EXPECT_THAT(result.errors,
                HasSubstr("WARNING: Request " + file + ": the channels don't fit into a quad: " +
                          sentenceOf(noVcoText("LCPLL", 0, 0)) +
                          ". The registers can't serve all of them; lanecfg pack " + file +
                          " --why tells what stands in the way.\n"));
}

TEST_P(RunWarning, NamesTheFirstOfSeveralReasons) {
    const ProgramResult result = answer(requestPath("pack/bypass_independent"));
    EXPECT_THAT(result.errors,
                HasSubstr("don't fit into a quad for 2 reasons, the first: Invalid ILO "
                          "configuration at TX rate 0 "));
}

TEST_P(RunWarning, TellsOfAnotherReferenceClockThanTheRequested) {
    json request = bundledRequest("sxb_25g_and_10g");
    for (json& lanes : request["userParams"]) {
        json& rate = lanes[1][0];
        rate[rate.contains("TX_LINE_RATE") ? "TX_REFCLK_FREQUENCY" : "RX_REFCLK_FREQUENCY"] =
            156.25;
    }
    const ProgramResult result = answer(directory.write("request.json", request.dump()));
    EXPECT_THAT(
        result.errors,
        HasSubstr("request.json: lane 1 RX in packing group \"A\": the registers are made for "
                  "a reference clock of 128.90625 MHz where the request gives 156.25 MHz"));
}

TEST_P(RunWarning, TellsOfWordsThatAnIdleLaneAnswers) {
    json request = bundledRequest("sxb_pcie_gen4_x1");
    for (json& lanes : request["userParams"]) {
        lanes[1] = json::array();
    }
    const ProgramResult result = answer(directory.write("request.json", request.dump()));
    EXPECT_THAT(result.errors, HasSubstr("WARNING: Request " + directory.file("request.json") +
                                         ": the clock words of lanes 0 and 1 are those of lane 1"));
}

TEST_P(RunWarning, IsFollowedByTheErrorsOfTheRun) {
    json request = bundledRequest("sxb_25g_and_10g");
    request.erase("quadUsage");
    const std::string file = directory.write("request.json", request.dump());
    const ProgramResult result = run(argumentsFor(file));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.output, "");
    EXPECT_THAT(result.errors, testing::ContainsRegex("ERROR: Request " + file +
                                                      " on the database .*/SXB: don't rely on the "
                                                      "answer [^\n]*\n$"));
}

TEST_P(RunWarning, IsNotGivenToARequestThatIsWell) {
    EXPECT_THAT(answer(requestPath("sxb_25g_and_10g")).errors, Not(HasSubstr("WARNING")));
}

INSTANTIATE_TEST_SUITE_P(Each, RunWarning,
                         testing::Values("attributes", "outclk", "snapshot", "log", "memory",
                                         "rate-table", "update-elf"),
                         CaseName());

/// What is not one subcommand with one request.
class RunWarnings : public CommandLine {};

TEST_F(RunWarnings, AreFollowedByTheErrorsOfEachRunOfAComparison) {
    json request = bundledRequest("sxa_basic");
    request.erase("quadUsage");
    const std::string file = directory.write("request.json", request.dump());
    const std::string last = "ERROR: Request " + file + " on the database ";
    const ProgramResult result = run({"attributes", "--diff", file, requestPath("sxa_basic")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr(last));
    EXPECT_THAT(run({"attributes", file, "--rates", "0_0", "0_0"}).errors, HasSubstr(last));
}

TEST_F(RunWarnings, AreGivenToBothRequestsOfAComparison) {
    const std::string first = requestPath("sxb_does_not_pack");
    const std::string second = requestPath("pack/no_vco");
    const ProgramResult result = run({"attributes", "--diff", first, second});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors, HasSubstr("WARNING: Request " + first + ": the channels don't fit"));
    EXPECT_THAT(result.errors,
                HasSubstr("WARNING: Request " + second + ": the channels don't fit"));
}

}  // namespace
}  // namespace lanecfg_test
