#include "cli/command_line.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

using testing::HasSubstr;

class AttributesCommand : public CommandLine {};

// The EOP_CONTROL_WORD of the SXA catalogue is 505290270, which is 0x1e1e1e1e, and the only field
// of its register.
constexpr const char* endOfPacketWord = "505290270";

TEST_F(AttributesCommand, GivesRegisterWordsOfEveryChannel) {
    const nlohmann::json answer = answerOf({"attributes", requestPath("sxa_basic")});
    for (const char* const channel : {"CH0", "CH1", "CH2", "CH3"}) {
        EXPECT_EQ(answer.at(std::string(channel) + "_RX_CRC_CFG1"), endOfPacketWord);
    }
}

TEST_F(AttributesCommand, GivesEachRegisterOnceForEachUnitThatHoldsIt) {
    std::size_t expected = 0;
    for (const nlohmann::json& record : SxaDatabase().registers) {
        // Four channels, two clock groups; channels 0 and 1 ask calibration unit 0, the others 1.
        const std::string type = record.at("dstSubBlock");
        expected += type == "channel" ? 4 : type == "ctrl_0" ? 1 : 2;
    }
    EXPECT_EQ(answerOf({"attributes", requestPath("sxa_basic")}).size(), expected);
}

TEST_F(AttributesCommand, WritesAlignedTextByDefault) {
    const ProgramResult result = run({"attributes", requestPath("sxa_basic")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, testing::StartsWith("NAME "));
    EXPECT_THAT(result.output,
                testing::ContainsRegex("\nCH0_RX_CRC_CFG1 +505290270 +0x1e1e1e1e\n"));
}

TEST_F(AttributesCommand, ShortensLongValuesForPeopleOnly) {
    const std::string request = requestPath("sxb_10gbase_r");
    const std::string list = answerOf({"attributes", request}).at("STAT_NPI_REG_LIST");
    ASSERT_GT(list.size(), 100U);
    EXPECT_THAT(
        run({"attributes", request}).output,
        HasSubstr(list.substr(0, 24) + "... (" + std::to_string(list.size()) + " characters)\n"));
    EXPECT_THAT(run({"attributes", request, "--format", "csv"}).output, HasSubstr(list));
}

TEST_F(AttributesCommand, WritesCsvOnRequest) {
    const ProgramResult result = run({"attributes", requestPath("sxa_basic"), "--format", "csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, testing::StartsWith("name,value,hex\n"));
    EXPECT_THAT(result.output, HasSubstr("\nCH3_RX_CRC_CFG1,505290270,0x1e1e1e1e\n"));
}

TEST_F(AttributesCommand, TakesEveryBundledRequest) {
    ASSERT_FALSE(bundledRequests().empty());
    for (const std::string& name : bundledRequests()) {
        const ProgramResult result = run({"attributes", requestPath(name)});
        EXPECT_EQ(result.exitCode, 0) << name << result.errors;
        EXPECT_NE(result.output, "") << name;
    }
}

TEST_F(AttributesCommand, AnswersAlikeInBothFormsOfARequest) {
    // The SXA rules read no parameter, so every request has the same words.
    EXPECT_EQ(answerOf({"attributes", requestPath("sxa_dictionary")}),
              answerOf({"attributes", requestPath("sxa_basic")}));
}

TEST_F(AttributesCommand, SendsMessagesOfTheHostToStandardError) {
    const ProgramResult result =
        run({"attributes", requestPath("sxa_dictionary"), "--format", "json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors, testing::StartsWith("STATUS: Device data: speedGrade: -2 - "));
    EXPECT_TRUE(nlohmann::json::accept(result.output));
}

TEST_F(AttributesCommand, AnswersAndFailsWhenTheLibraryReportsAnErrorButGoesOn) {
    nlohmann::json request = bundledRequest("sxa_basic");
    request.erase("quadUsage");
    const ProgramResult result = runOn(request, "attributes", {"--format", "json"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("ERROR: quadUsage node not found."));
    EXPECT_EQ(nlohmann::json::parse(result.output).at("CH0_RX_CRC_CFG1"), endOfPacketWord);
}

/// Ways to name a database, with the folder of the temporary directory to name.
class OwnDatabase : public CommandLine {
  protected:
    OwnDatabase() {
        SxaDatabase database;
        // One register in another block, so that its answers can be told from the bundled one's.
        database.registers["RX_CRC_CFG1"] = {
            {"dstSubBlock", "ctrl_0"},
            {"Offset", "0xfe"},
            {"fields", {{"RX_CRC_CFG1.EOP_CONTROL_WORD", {0, 32}}}}};
        folder_ = database.writeTo(directory);
    }

    /// The changed register has no channel in its name.
    static void expectOwnDatabase(const ProgramResult& result) {
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        EXPECT_THAT(result.output, HasSubstr("\nRX_CRC_CFG1,505290270,"));
    }

    std::vector<std::string> arguments(const std::vector<std::string>& more) const {
        std::vector<std::string> all = {"attributes", requestPath("sxa_basic"), "--format", "csv"};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    std::string folder_;
};

TEST_F(OwnDatabase, IsTakenFromTheFolderThatHoldsTheFiles) {
    expectOwnDatabase(run(arguments({"--database", folder_})));
}

TEST_F(OwnDatabase, IsTakenFromTheFolderThatHoldsTheFamilies) {
    expectOwnDatabase(run(arguments({"--database", directory.path().string()})));
}

TEST_F(OwnDatabase, IsTakenFromTheVariable) {
    expectOwnDatabase(run(arguments({}), {{"LANECFG_DATA", directory.path().string()}}));
}

TEST_F(OwnDatabase, IsTakenFromTheOptionBeforeTheVariable) {
    expectOwnDatabase(run(arguments({"--database", folder_}), {{"LANECFG_DATA", "/nonexistent"}}));
}

TEST_F(OwnDatabase, IsTheBundledOneWhenTheVariableIsEmpty) {
    const ProgramResult result = run(arguments({}), {{"LANECFG_DATA", ""}});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, HasSubstr("\nCH0_RX_CRC_CFG1,505290270,"));
}

TEST_F(OwnDatabase, IsReadWhenItsFilesAreWhollyWithoutSiliconRevision) {
    // The normal case, as in the bundled database: the revision is then empty.
    ASSERT_FALSE(SxaDatabase().device.at("-3").contains("siliconRev"));
    const ProgramResult result =
        run({"snapshot", requestPath("sxa_basic"), "--database", folder_, "--name", "siliconRev",
             "--channel", "0", "--format", "json"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(nlohmann::json::parse(result.output).at(0).at("value"), "");
}

TEST_F(OwnDatabase, MayHoldTheSiliconRevisionItself) {
    SxaDatabase database;
    database.device["-3"]["siliconRev"] = "r7";
    const ProgramResult result =
        run({"snapshot", requestPath("sxa_basic"), "--database", database.writeTo(directory),
             "--name", "siliconRev", "--channel", "0", "--format", "json"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(nlohmann::json::parse(result.output).at(0).at("value"), "r7");
}

class AttributesFile : public CommandLine {
  protected:
    ProgramResult writeTo(const std::string& file) const {
        return run({"attributes", requestPath("sxa_basic"), "-o", file, "--format", "csv"});
    }
};

TEST_F(AttributesFile, HoldsTheAnswerInPlaceOfStandardOutput) {
    const ProgramResult result = writeTo(directory.file("answer.csv"));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(readFile(directory.file("answer.csv")), testing::StartsWith("name,value,hex\n"));
}

TEST_F(AttributesFile, IsNotTouchedByARequestThatFails) {
    const std::string file = directory.write("answer.csv", "before");
    const ProgramResult result = run({"attributes", "/nonexistent.json", "-o", file});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(readFile(file), "before");
}

TEST_F(AttributesFile, FailsInADirectoryWhereItCannotBe) {
    const std::string file = directory.file("missing/answer.csv");
    expectFailure(writeTo(file), 1, "Cannot write the file " + file + ": No such file");
}

TEST_F(AttributesFile, FailsInADirectoryThatTakesNoFiles) {
    // Not even the superuser can create files there.
    expectFailure(writeTo("/proc/answer.csv"), 1, "Cannot write the file /proc/answer.csv: ");
}

TEST_F(AttributesFile, FailsOnAFullDevice) {
    expectFailure(writeTo("/dev/full"), 1, "Cannot write the file /dev/full: No space left");
}

}  // namespace
}  // namespace lanecfg_test
