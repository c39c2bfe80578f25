#include "cli/command_line.h"

namespace lanecfg_test {
namespace {

class LogCommand : public CommandLine {};

TEST_F(LogCommand, GivesAListInJson) {
    EXPECT_TRUE(answerOf({"log", requestPath("sxa_basic")}).is_array());
}

TEST_F(LogCommand, GivesTheSameLinesInText) {
    std::string lines;
    for (const nlohmann::json& line : answerOf({"log", requestPath("sxa_basic")})) {
        lines += line.get<std::string>() + "\n";
    }
    const ProgramResult result = run({"log", requestPath("sxa_basic")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, lines);
}

TEST_F(LogCommand, FailsLikeEveryRequestThatCannotBeLoaded) {
    expectFailure(run({"log", "/nonexistent.json"}), 1,
                  "Error in parsing the file /nonexistent.json.");
}

}  // namespace
}  // namespace lanecfg_test
