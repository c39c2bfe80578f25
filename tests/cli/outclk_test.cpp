#include "cli/command_line.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

using testing::HasSubstr;

class OutclkCommand : public CommandLine {};

TEST_F(OutclkCommand, GivesBothClocksOfEveryLane) {
    // 10312.5 Mb/s in words of 80 bits, which the library rounds to six digits.
    nlohmann::json expected;
    for (const std::string lane : {"CH0", "CH1", "CH2", "CH3"}) {
        expected[lane + "_TXOUTCLK"] = 128.90625;
        expected[lane + "_RXOUTCLK"] = 128.90625;
    }
    EXPECT_EQ(answerOf({"outclk", requestPath("sxb_10gbase_r")}), expected);
}

TEST_F(OutclkCommand, GivesTheFastestOfTheRates) {
    nlohmann::json request = bundledRequest("sxb_10gbase_r");
    nlohmann::json& rates = request["userParams"][0][0];
    rates.push_back(rates[0]);
    rates[0]["TX_LINE_RATE"] = 5.15625;
    request["userParams"][1][0].push_back(request["userParams"][1][0][0]);
    for (nlohmann::json& record : request["laneUsage"]) {
        record["tx"] = {0};
        record["rx"] = {0};
        record["rates"] = {0, 1};
    }
    const ProgramResult result = runOn(request, "outclk", {"--format", "json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(nlohmann::json::parse(result.output).at("CH0_TXOUTCLK"), 128.90625);
}

TEST_F(OutclkCommand, WritesAlignedTextByDefault) {
    const ProgramResult result = run({"outclk", requestPath("sxb_10gbase_r")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, testing::ContainsRegex("^NAME +OUTPUT_CLOCK_MHZ\n"));
    EXPECT_THAT(result.output, testing::ContainsRegex("\nCH3_TXOUTCLK +128.906\n"));
}

TEST_F(OutclkCommand, WritesCsvOnRequest) {
    const ProgramResult result = run({"outclk", requestPath("sxb_10gbase_r"), "--format", "csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, testing::StartsWith("name,output_clock\n"));
    EXPECT_THAT(result.output, HasSubstr("\nCH0_TXOUTCLK,128.90625\n"));
}

TEST_F(OutclkCommand, TellsOfAnInfiniteClock) {
    // A width that no word of the fabric has: its clock has no divider.
    nlohmann::json request = bundledRequest("sxb_10gbase_r");
    request["userParams"][0][0][0]["TX_USER_DATA_WIDTH"] = 48;
    EXPECT_EQ(nlohmann::json::parse(runOn(request, "outclk", {"--format", "json"}).output)
                  .at("CH0_TXOUTCLK"),
              "inf");
    EXPECT_THAT(runOn(request, "outclk", {"--format", "csv"}).output,
                HasSubstr("\nCH0_TXOUTCLK,inf\n"));
}

TEST_F(OutclkCommand, SaysThatAFamilyReportsNone) {
    EXPECT_EQ(answerOf({"outclk", requestPath("sxa_basic")}), nlohmann::json::object());
    const ProgramResult result = run({"outclk", requestPath("sxa_basic")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("No output clock is reported."));
}

TEST_F(OutclkCommand, FailsLikeEveryRequestThatCannotBeLoaded) {
    expectFailure(run({"outclk", "/nonexistent.json"}), 1,
                  "Error in parsing the file /nonexistent.json.");
}

}  // namespace
}  // namespace lanecfg_test
