#include "cli/command_line.h"

#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

namespace lanecfg_test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class RateTableCommand : public CommandLine {
  protected:
    std::vector<std::string> on(const std::string& request,
                                const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments = {"rate-table", requestPath(request)};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return arguments;
    }

    /// A database in which another register of the lanes stands at the address of PIPE_CTRL_CFG7,
    /// so that both have one word between them. It begins as that of RX_CRC_CFG1, 0x1e1e1e1e; a
    /// table that writes 0 under the mask 0x7007 makes it 0x1e1e0e18, which is right for neither.
    std::string databaseWithTwoRegistersAtOneAddress() const {
        SxaDatabase database;
        database.registers["RX_CRC_CFG1"]["Offset"] =
            database.registers["PIPE_CTRL_CFG7"]["Offset"];
        return database.writeTo(directory);
    }
};

constexpr const char* writeHeading =
    "channel,direction,rate,word,group,lane,address,register,mask,value,changes\n";
constexpr const char* verifyHeading =
    "class,register,channel,direction,table,rate,from_tx,from_rx,to_tx,to_rx,wanted,reached\n";

TEST_F(RateTableCommand, PrintsTheWordsWithoutOptions) {
    const ProgramResult result = run(on("sxa_basic", {"--format", "csv"}));
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, StartsWith("word,hex,digits\n"
                                          "0,0x1e00001f,00011110000000000000000000011111\n"));
    EXPECT_THAT(result.output, EndsWith("12,0x00000000,00000000000000000000000000000000\n"));
}

TEST_F(RateTableCommand, DecodesTheWrites) {
    const ProgramResult result = run(on("sxa_multi_rate", {"--decode", "--format", "csv"}));
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    // Two rates of channel 0, two and three of channel 2, three words each from word 10.
    const std::string lane = ",PIPE_CTRL_CFG7,";
    EXPECT_EQ(result.output,
              std::string(writeHeading) +  //
                  "0,TX,0,10,one,,0x080" + lane + "0x00007007,0x00000000,\n" +
                  "0,TX,1,13,one,,0x080" + lane + "0x00007007,0x00000000,\n" +
                  "2,TX,0,16,one,,0x080" + lane + "0x00007007,0x00000000,\n" +
                  "2,TX,1,19,one,,0x080" + lane + "0x00007007,0x00000000,\n" +
                  "2,RX,0,22,one,,0x080" + lane + "0x00007000,0x00000000,\n" +
                  "2,RX,1,25,one,,0x080" + lane + "0x00007000,0x00000000,\n" +
                  "2,RX,2,28,one,,0x080" + lane + "0x00007000,0x00000000,\n");
}

TEST_F(RateTableCommand, TellsOfTheHeaderBehindTheWrites) {
    const ProgramResult result = run(on("sxa_receive_only", {"--decode"}));
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output,
                HasSubstr("\nChannel 0: simplex, TX 1 rates of 3 words from word 10 for channels "
                          "0 1 2 3, RX 1 rates of 3 words from word 13 for channels 0 1\n"));
}

TEST_F(RateTableCommand, VerifiesInOneLineThatAllRatesReplay) {
    const ProgramResult result = run(on("sxa_multi_rate", {"--verify"}));
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output,
              "3 tables, 7 rates; registers by class: 7 replays, 0 overwritten by the adjustment, "
              "0 not in a table of this channel, 0 differs\n"
              "All rates of all channels replay.\n");
}

TEST_F(RateTableCommand, VerifiesRegisterByRegisterInCsv) {
    const ProgramResult result = run(on("sxa_basic", {"--verify", "--format", "csv"}));
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, std::string(verifyHeading) +
                                 "replays,PIPE_CTRL_CFG7,0,TX,0,0,0,0,0,0,0x00000000,0x00000000\n");
}

TEST_F(RateTableCommand, GivesBothAsOneDocument) {
    const nlohmann::json answer = answerOf(on("sxa_basic", {"--decode", "--verify"}));
    EXPECT_EQ(answer.at("words"), 13);
    EXPECT_EQ(answer.at("channels").at(0).at("tx").at("group"),
              nlohmann::json::parse("[0, 1, 2, 3]"));
    EXPECT_EQ(answer.at("writes").at(0).at("register"), "PIPE_CTRL_CFG7");
    EXPECT_EQ(answer.at("writes").at(0).at("lane"), nullptr);
    EXPECT_EQ(answer.at("verify").at("verdict"), "All rates of all channels replay.");
}

TEST_F(RateTableCommand, GivesTheReplayAloneAsADocument) {
    const nlohmann::json answer = answerOf(on("sxa_basic", {"--verify"}));
    EXPECT_EQ(answer.size(), 1U);
    EXPECT_EQ(answer.at("verify").at("classes").at("replays"), 1);
}

TEST_F(RateTableCommand, ShowsWritesHeaderAndVerdictTogether) {
    const ProgramResult result = run(on("sxa_basic", {"--decode", "--verify"}));
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, StartsWith("CHANNEL  DIRECTION  RATE  WORD  GROUP"));
    EXPECT_THAT(result.output, HasSubstr("\nChannel 3: duplex, TX and RX follows channel 0\n"));
    EXPECT_THAT(result.output, EndsWith("\nAll rates of all channels replay.\n"));
}

TEST_F(RateTableCommand, FailsWhenAnOwnRegisterDoesNotReplay) {
    const std::string database = databaseWithTwoRegistersAtOneAddress();
    const ProgramResult result =
        run(on("sxa_basic", {"--database", database, "--decode", "--verify"}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("PIPE_CTRL_CFG7 or RX_CRC_CFG1"));
    EXPECT_THAT(result.output, HasSubstr("\ndiffers  PIPE_CTRL_CFG7        0  TX "));
    EXPECT_THAT(result.output, HasSubstr("\ndiffers  RX_CRC_CFG1           0  TX "));
    EXPECT_THAT(result.output,
                EndsWith("The table is at fault: the first register that does not replay is "
                         "PIPE_CTRL_CFG7 of channel 0 at rate 0 of the TX table of channel 0, "
                         "which leaves 0x1e1e0e18 in place of 0x00000000 (differs).\n"));
}

TEST_F(RateTableCommand, DecodesWithoutJudgingThoughARegisterDoesNotReplay) {
    const std::string database = databaseWithTwoRegistersAtOneAddress();
    EXPECT_EQ(run(on("sxa_basic", {"--database", database, "--decode"})).exitCode, 0);
}

TEST_F(RateTableCommand, WritesToAFile) {
    const std::string file = directory.file("table.csv");
    const ProgramResult result = run(on("sxa_basic", {"--decode", "--format", "csv", "-o", file}));
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "");
    std::ifstream stream(file);
    EXPECT_THAT(std::string(std::istreambuf_iterator<char>(stream), {}), StartsWith(writeHeading));
}

TEST_F(RateTableCommand, TakesOneAnswerAtATimeInCsv) {
    expectFailure(run(on("sxa_basic", {"--decode", "--verify", "--format", "csv"})), 2,
                  "--format csv holds one table: choose --decode or --verify");
}

TEST_F(RateTableCommand, ReportsARequestThatIsMissing) {
    expectFailure(run({"rate-table", directory.file("none.json")}), 1, "none.json");
}

TEST_F(RateTableCommand, ReportsATableThatCannotBeMade) {
    SxaDatabase database;
    database.registers["PIPE_CTRL_CFG7"]["Offset"] = "none";
    expectFailure(run(on("sxa_basic", {"--database", database.writeTo(directory)})), 1,
                  "no rate table: ");
}

}  // namespace
}  // namespace lanecfg_test
