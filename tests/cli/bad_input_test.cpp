#include "cli/command_line.h"
#include "database.h"
#include "support/environment_variable.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <sys/stat.h>

namespace lanecfg_test {
namespace {

using testing::HasSubstr;

/// A request file of any content.
class BadRequest : public CommandLine {
  protected:
    ProgramResult runOnText(const std::string& content) const {
        return run({"attributes", directory.write("request.json", content), "--family", "SXA"});
    }
    std::string parseError() const {
        return "ERROR: Error in parsing the file " + directory.file("request.json") + ".";
    }
};

TEST_F(BadRequest, MissingFile) {
    expectFailure(run({"attributes", directory.file("request.json")}), 1, parseError());
}

TEST_F(BadRequest, MissingFileTellsTheReason) {
    expectFailure(run({"attributes", directory.file("request.json")}), 1,
                  "No such file or directory");
}

TEST_F(BadRequest, Directory) {
    std::filesystem::create_directory(directory.file("request.json"));
    expectFailure(run({"attributes", directory.file("request.json")}), 1, parseError());
}

TEST_F(BadRequest, PipeThatNobodyWritesTo) {
    ASSERT_EQ(mkfifo(directory.file("request.json").c_str(), 0600), 0);
    expectFailure(run({"attributes", directory.file("request.json")}), 1,
                  parseError() + " It is no regular file");
}

TEST_F(BadRequest, EmptyFile) {
    expectFailure(runOnText(""), 1, parseError());
}

TEST_F(BadRequest, TruncatedJson) {
    const std::string whole = bundledRequest("sxa_basic").dump();
    expectFailure(runOnText(whole.substr(0, whole.size() / 2)), 1, parseError());
}

TEST_F(BadRequest, TruncatedJsonTellsTheReason) {
    expectFailure(runOnText(R"({"laneUsage": [)"), 1, "unexpected end of input");
}

TEST_F(BadRequest, DamagedGzip) {
    expectFailure(runOnText("\x1f\x8b\x08 no gzip at all"), 1, parseError());
}

TEST_F(BadRequest, RootThatIsNoObject) {
    expectFailure(runOnText("[]"), 1, parseError() + " A request is a JSON object");
}

TEST_F(BadRequest, BytesThatAreNoText) {
    expectFailure(runOnText("{\"family\": \"\xff\xfe\"}"), 1, parseError());
}

TEST_F(BadRequest, ArrayNestedVeryDeeply) {
    const std::string nested = std::string(100'000, '[') + std::string(100'000, ']');
    expectFailure(runOnText(nested), 1, parseError() + " Reason: it is nested deeper than 256");
}

TEST_F(BadRequest, ArrayNestedVeryDeeplyInsideARequest) {
    const std::string nested = std::string(100'000, '[') + std::string(100'000, ']');
    expectFailure(runOnText(R"({"laneUsage": [], "userParams": )" + nested + "}"), 1,
                  parseError() + " Reason: it is nested deeper than 256");
}

TEST_F(BadRequest, ObjectNestedVeryDeeply) {
    std::string nested;
    for (int level = 0; level < 100'000; ++level) {
        nested += "{\"a\":";
    }
    expectFailure(runOnText(nested), 1, parseError() + " Reason: it is nested deeper than 256");
}

/// 100 MB of one kind, in a request that is otherwise good.
class LargeRequest : public BadRequest {
  protected:
    static constexpr std::size_t size = 100'000'000;

    static std::string requestWith(const std::string& start, const std::string& end) {
        std::string text = bundledRequest("sxa_basic").dump();
        text.pop_back();
        text += "," + start;
        text.reserve(text.size() + size + end.size());
        return text;
    }
};

TEST_F(LargeRequest, OfOneLongTextIsAnswered) {
    std::string text = requestWith("\"note\": \"", "\"}");
    text.append(size, 'x');
    const ProgramResult result = runOnText(text + "\"}");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("CH0_RX_CRC_CFG1"));
}

TEST_F(LargeRequest, OfOneUnfinishedTextGivesAShortMessage) {
    std::string text = requestWith("\"note\": \"", "");
    text.append(size, 'x');
    const ProgramResult result = runOnText(text);
    expectFailure(result, 1, parseError());
    EXPECT_LT(result.errors.size(), 1000U);
}

TEST_F(LargeRequest, OfVeryManyValuesIsRefused) {
    std::string text = requestWith("\"note\": [[", "]]}");
    while (text.size() < size) {
        text += "1,1,1,1,1,1,1,1,";
    }
    expectFailure(runOnText(text + "1]]}"), 1,
                  parseError() + " Reason: it holds more than 1000000 values");
}

/// A key of the request at fault, and what is said about it.
struct BadKey {
    std::string name;
    std::string request;  ///< bundled request that is changed
    std::function<void(nlohmann::json&)> change;
    int exitCode;
    std::string message;
};

class BadRequestKey : public CommandLine, public testing::WithParamInterface<BadKey> {};

TEST_P(BadRequestKey, IsNamed) {
    nlohmann::json request = bundledRequest(GetParam().request);
    GetParam().change(request);
    expectFailure(runOn(request, "attributes"), GetParam().exitCode, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Each, BadRequestKey,
    testing::ValuesIn(std::vector<BadKey>{
        BadKey{"UnknownFamily", "sxa_basic", [](auto& request) { request["family"] = "SXZ"; }, 1,
               "the family \"SXZ\" is unknown. The key \"family\" takes SXA, SXB, SXC, SXD4"},
        BadKey{"FamilyInOtherLetters", "sxa_basic",
               [](auto& request) { request["family"] = "sxa"; }, 1,
               "the family \"sxa\" is unknown"},
        BadKey{"FamilyThatIsNoText", "sxa_basic", [](auto& request) { request["family"] = 7; }, 1,
               "the key \"family\" must be a text"},
        BadKey{"NoFamily", "sxa_basic", [](auto& request) { request.erase("family"); }, 2,
               "names no family. Give --family"},
        BadKey{"UnknownSelector", "sxa_basic",
               [](auto& request) { request["selector"] = "newest"; }, 1,
               "the family SXA has no \"newest\" rules. The key \"selector\" takes live, stable"},
        BadKey{"SelectorWithoutRules", "sxa_basic",
               [](auto& request) { request["selector"] = "stable"; }, 1,
               "the family SXA has no \"stable\" rules"},
        BadKey{"PartOfTheFileForm", "sxa_basic",
               [](auto& request) { request["part"] = "a-b-c-d-e-f-g"; }, 2,
               "has the file form (\"laneUsage\" is no object), which takes no part name"},
        BadKey{"ParameterMissingFromTheTypesFile", "sxa_basic",
               [](auto& request) { request["userParams"][0][0][0]["NO_SUCH"] = 1; }, 1,
               "ERROR: Error in loading the user param NO_SUCH from the userParameterTypes Json "
               "file."},
        BadKey{"ParameterMissingFromTheTypesFileEndsTheLoad", "sxa_basic",
               [](auto& request) { request["userParams"][0][0][0]["NO_SUCH"] = 1; }, 1,
               "ERROR: Error in loading the user parameters. Please check whether all the required "
               "parameters are passed"},
        BadKey{"ValueThatDoesNotConvert", "sxa_basic",
               [](auto& request) { request["userParams"][0][0][0]["TX_LINE_RATE"] = "fast"; }, 1,
               "ERROR: Error in filling the user parameters Map"},
        BadKey{"NoUserParameters", "sxa_basic", [](auto& request) { request.erase("userParams"); },
               1, "the key \"userParams\" must be a list with an element for each direction"},
        BadKey{"EmptyUserParameters", "sxa_basic",
               [](auto& request) { request["userParams"] = nlohmann::json::array(); }, 1,
               "the key \"userParams\" must be a list with an element for each direction"},
        BadKey{"UserParametersOfTheOtherForm", "sxa_basic",
               [](auto& request) { request["userParams"] = {{"a", 1}}; }, 1,
               "the key \"userParams\" must be a list with an element for each direction"},
        BadKey{"LaneUsageAsText", "sxa_basic", [](auto& request) { request["laneUsage"] = "x"; }, 1,
               "the key \"laneUsage\" must be a list in the file form"},
        BadKey{"NoLaneUsage", "sxa_basic", [](auto& request) { request.erase("laneUsage"); }, 1,
               "the key \"laneUsage\" must be a list in the file form"},
        BadKey{"QuadUsageAsList", "sxa_basic",
               [](auto& request) { request["quadUsage"] = nlohmann::json::array({1, 2}); }, 1,
               "the key \"quadUsage\" must be an object"},
        BadKey{"ParameterOfNoValue", "sxa_basic",
               [](auto& request) { request["userParams"][1][2][0]["RX_LINE_RATE"] = nullptr; }, 1,
               "can't be loaded: in direction 1 (receive), lane 2, rate 0 the parameter "
               "\"RX_LINE_RATE\" must be a number, and is null."},
        BadKey{"ListForAText", "sxa_basic",
               [](auto& request) {
                   request["userParams"][0][1][0]["TX_DATA_ENCODING"] = {"RAW"};
               },
               1,
               "request.json: in direction 0 (transmit), lane 1, rate 0 the parameter "
               "\"TX_DATA_ENCODING\" must be a text, and is a list."},
        BadKey{"NegativeWholeNumber", "sxa_basic",
               [](auto& request) { request["userParams"][0][1][0]["TX_USER_DATA_WIDTH"] = -1; }, 1,
               "\"TX_USER_DATA_WIDTH\" must be a whole number from 0 to 4294967295, and is -1."},
        BadKey{"LanesOfOneNumber", "sxa_basic",
               [](auto& request) { request["laneUsage"][0]["tx"] = 0; }, 1,
               "request.json: the key \"laneUsage[0].tx\" must be a list, and is 0."},
        BadKey{"UnknownParameterOfTheDictionaryForm", "sxa_dictionary",
               [](auto& request) {
                   request["userParams"]["RX_SETTINGS"]["CH1"]["LR0_SETTINGS"]["NO_SUCH"] = "1";
               },
               1,
               "can't be loaded: in direction RX_SETTINGS, lane CH1, rate LR0_SETTINGS the "
               "parameter \"NO_SUCH\" is not declared"},
        BadKey{"UnknownSectionOfTheDictionaryForm", "sxa_dictionary",
               [](auto& request) { request["userParams"]["SETTINGS"] = nlohmann::json::object(); },
               1,
               "the key \"userParams.SETTINGS\" is unknown. The sections of the dictionary form "
               "are \"TX_SETTINGS\" and \"RX_SETTINGS\"."},
        BadKey{"LanesOfTheDictionaryFormAsText", "sxa_dictionary",
               [](auto& request) { request["laneUsage"]["lanes"] = "0,1"; }, 1,
               "the key \"laneUsage.lanes\" must be an object in the dictionary form"},
        BadKey{
            "ListInTheDictionaryForm", "sxa_dictionary",
            [](auto&
                   request) { request["laneUsage"]["lanes"]["tx"] = nlohmann::json::array({0, 1}); },
            1, "the key \"laneUsage.lanes.tx\" must be a text, with commas between several values"},
        BadKey{"NothingInTheDictionaryForm", "sxa_dictionary",
               [](auto& request) { request["options"]["x"] = nullptr; }, 1,
               "the key \"options.x\" must be a text"},
        BadKey{"ParametersOfTheDictionaryFormAsList", "sxa_dictionary",
               [](auto& request) { request["userParams"] = nlohmann::json::array(); }, 1,
               "the key \"userParams\" must be an object in the dictionary form"},
        BadKey{"NoParametersInTheDictionaryForm", "sxa_dictionary",
               [](auto& request) { request.erase("userParams"); }, 1,
               "the key \"userParams\" must hold the sections"},
        BadKey{"MalformedPart", "sxa_dictionary",
               [](auto& request) { request["part"] = "sx40-f900"; }, 1, "sx40-f900"}}),
    CaseName());

TEST_F(CommandLine, RefusesKeysOfTheDictionaryFormThatStandTwice) {
    const std::string file = directory.write("request.json", R"({"family": "SXA",
        "laneUsage": {"0": {"tx": "0", "tx": "1"}}, "userParams": {"TX_SETTINGS": {}}})");
    expectFailure(run({"attributes", file}), 1, "the key \"laneUsage.0.tx\" stands more than once");
}

TEST_F(CommandLine, WarnsOfADictionaryFormWithoutPart) {
    nlohmann::json request = bundledRequest("sxa_dictionary");
    request.erase("part");
    const ProgramResult result = runOn(request, "attributes");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors, HasSubstr("WARNING: Request " + directory.file("request.json") +
                                         " has no part name"));
}

TEST_F(CommandLine, WarnsOfLaneKeysThatNameNoLaneAndAnswers) {
    nlohmann::json request = bundledRequest("sxa_dictionary");
    nlohmann::json& lanes = request["userParams"]["TX_SETTINGS"];
    lanes["main"] = lanes["CH0"];
    const ProgramResult result = runOn(request, "attributes");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.errors,
                HasSubstr("WARNING: Request " + directory.file("request.json") +
                          ": The key \"userParams.TX_SETTINGS.main\" names no lane"));
}

TEST_F(CommandLine, WarnsOfLanesOfTheDictionaryFormThatAreNoNumbersAndAnswers) {
    nlohmann::json request = bundledRequest("sxa_dictionary");
    request["laneUsage"]["lanes"]["tx"] = "first,second";
    const ProgramResult result = runOn(request, "attributes");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.errors,
                HasSubstr("WARNING: Request " + directory.file("request.json") +
                          ": The key \"laneUsage.lanes.tx\" must be whole numbers with commas "
                          "between, and is \"first,second\"."));
}

TEST_F(CommandLine, WarnsOfTextsOfTheDictionaryFormThatDoNotConvertAndAnswers) {
    nlohmann::json request = bundledRequest("sxa_dictionary");
    request["userParams"]["TX_SETTINGS"]["CH0"]["LR0_SETTINGS"]["TX_REFCLK_FREQUENCY"] = "fast";
    const ProgramResult result = runOn(request, "attributes");
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.errors,
                HasSubstr("WARNING: Request " + directory.file("request.json") +
                          ": in direction TX_SETTINGS, lane CH0, rate LR0_SETTINGS the parameter "
                          "\"TX_REFCLK_FREQUENCY\" must be a number, and is \"fast\"."));
}

TEST_F(CommandLine, WarnsOfNegativeWholeNumbersOfTheDictionaryFormThatTheyWrapAround) {
    nlohmann::json request = bundledRequest("sxa_dictionary");
    request["userParams"]["TX_SETTINGS"]["CH0"]["LR0_SETTINGS"]["TX_BUFFER_MODE"] = "-1";
    EXPECT_THAT(
        runOn(request, "attributes").errors,
        HasSubstr("and is \"-1\". What can't be read of a value counts as 0 or false, and a "
                  "whole number below 0 wraps around."));
}

TEST_F(CommandLine, DoesNotWarnOfAGoodDictionaryForm) {
    const ProgramResult result = run({"attributes", requestPath("sxa_dictionary")});
    EXPECT_THAT(result.errors, testing::Not(HasSubstr("WARNING")));
}

/// Runs the good request on a database that has been changed.
class BadDatabase : public CommandLine {
  protected:
    ProgramResult runOnDatabase(const SxaDatabase& database) const {
        return run(
            {"attributes", requestPath("sxa_basic"), "--database", database.writeTo(directory)});
    }
};

TEST_F(BadDatabase, WithoutFolderForTheFamilyNamesWhatItExpected) {
    SxaDatabase().writeTo(directory);
    const ProgramResult result = run({"attributes", requestPath("sxa_basic"), "--family", "SXB",
                                      "--database", directory.path().string()});
    expectFailure(result, 1,
                  "There is no database for the live rules of SXB: expected device.json, "
                  "parameters.json and registers.json in " +
                      directory.file("SXB") +
                      " (in the database folder named on the command line).");
}

TEST_F(BadDatabase, ThatDoesNotExistNamesTheVariable) {
    expectFailure(run({"attributes", requestPath("sxa_basic")}, {{"LANECFG_DATA", "/nonexistent"}}),
                  1, "named by the variable LANECFG_DATA");
}

TEST_F(BadDatabase, FrozenRulesOfSxbHaveAFolderOfTheirOwn) {
    const ProgramResult result =
        run({"attributes", requestPath("sxa_basic"), "--family", "SXB", "--selector", "stable",
             "--database", directory.path().string()});
    expectFailure(result, 1, directory.file("SXB-stable"));
}

TEST_F(BadDatabase, WithABlockTypeThatTheBlockModelDoesNotKnow) {
    SxaDatabase database;
    database.registers["A_CFG0"]["dstSubBlock"] = "attic";
    const ProgramResult result = runOnDatabase(database);
    expectFailure(result, 1, "A_CFG0");
    EXPECT_THAT(result.errors, HasSubstr("\"attic\""));
    EXPECT_THAT(result.errors, HasSubstr(" on the database " + directory.file("SXA") + ": "));
}

TEST_F(BadDatabase, WithAnOffsetThatIsNoNumberNamesTheRegister) {
    SxaDatabase database;
    database.registers["PIPE_CTRL_CFG7"]["Offset"] = "zz";
    const std::string folder = database.writeTo(directory);
    const std::string reason = ": The register PIPE_CTRL_CFG7 of the file " + folder +
                               "/registers.json has the \"Offset\" \"zz\", which is no hexadecimal "
                               "number. Give its offset in words, such as \"0x1a\"; lanecfg "
                               "check-database tells of all that are none.";
    for (const std::string word : {"memory", "rate-table"}) {
        const ProgramResult result = run({word, requestPath("sxa_basic"), "--database", folder});
        expectFailure(result, 1, " on the database " + folder + ": no ");
        EXPECT_THAT(result.errors, HasSubstr(reason));
    }
}

TEST_F(BadDatabase, WithoutARegisterThatTheRulesCompose) {
    SxaDatabase database;
    database.registers.erase("A_CFG0");
    expectFailure(runOnDatabase(database), 1, "A_CFG0");
}

TEST_F(BadDatabase, WithAFieldThatNoRuleWrites) {
    SxaDatabase database;
    database.registers["A_CFG0"]["fields"]["A_CFG0.NO_SUCH"] = {31, 1};
    expectFailure(runOnDatabase(database), 1, "lanecfg check-database tells");
}

TEST_F(BadDatabase, WithAFieldOfOneNumberLeavesTheFieldOutOfItsRegister) {
    // A_CFG0 is A_BGRCALOVRD = 31 in bits 2 to 6 and A_RCALEN = 1 in bit 8, so 0x17c = 380; without
    // a width the first contributes nothing.
    SxaDatabase database;
    ASSERT_EQ(database.registers["A_CFG0"]["fields"]["A_CFG0.A_BGRCALOVRD"],
              nlohmann::json({2, 5}));
    database.registers["A_CFG0"]["fields"]["A_CFG0.A_BGRCALOVRD"] = nlohmann::json::array({2});
    const ProgramResult result = run({"attributes", requestPath("sxa_basic"), "--database",
                                      database.writeTo(directory), "--format", "csv"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("\nA_CFG0,256,0x00000100\n"));
}

/// A request of SXB that can't be answered.
class BadSxbRequest : public CommandLine {
  protected:
    nlohmann::json request_ = bundledRequest("sxb_10gbase_r");
};

TEST_F(BadSxbRequest, WithoutAParameterOfARateNamesIt) {
    request_.at("userParams").at(1).at(2).at(0).erase("RX_BUFFER_MODE");
    expectFailure(runOn(request_, "attributes"), 1,
                  "no attributes: RX_BUFFER_MODE is missing in RX of lane 2 at rate 0");
}

TEST_F(BadSxbRequest, ThatTheLibraryAnswersWithErrorsIsNamedBehindThem) {
    request_.at("userParams").at(0).at(1).at(0).erase("TX_RATE_GROUP");
    const ProgramResult result = runOn(request_, "attributes");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_NE(result.output, "");
    EXPECT_THAT(result.errors, HasSubstr("TX_RATE_GROUP is missing in TX of lane 1 at rate 0"));
    EXPECT_THAT(result.errors, testing::ContainsRegex(
                                   "ERROR: Request " + directory.file("request.json") +
                                   " on the database .*/SXB: don't rely on the answer [^\n]*\n$"));
}

TEST_F(BadSxbRequest, ThatIsPackedWithErrorsOfTheLoaderIsNamedBehindThem) {
    request_.erase("quadUsage");
    const ProgramResult result = runOn(request_, "pack");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output, "fits\n");
    EXPECT_THAT(result.errors, HasSubstr("ERROR: Request " + directory.file("request.json") +
                                         " on the database "));
}

TEST_F(BadSxbRequest, WithALineRateOfZeroTellsWhatToLookFor) {
    request_.at("userParams").at(1).at(0).at(0)["RX_LINE_RATE"] = 0;
    expectFailure(runOn(request_, "attributes"), 1,
                  "division by zero: INT_RX_OUTDIV is 0. Look for a line rate");
}

TEST_F(BadSxbRequest, WithLanesOfDifferentRatesOnOneNetNamesChannelAndRate) {
    nlohmann::json oneRate = request_.at("laneUsage").at(0);
    nlohmann::json twoRates = oneRate;
    twoRates["rates"] = {0, 1};
    for (const char* const direction : {"tx", "rx"}) {
        twoRates[direction] = {0, 1, 2};
        oneRate[direction] = {3};
    }
    request_["laneUsage"] = {twoRates, oneRate};
    for (nlohmann::json& lanes : request_.at("userParams")) {
        for (const std::size_t lane : {0U, 1U, 2U}) {
            lanes.at(lane).push_back(lanes.at(lane).at(0));
        }
    }
    const ProgramResult result = runOn(request_, "attributes");
    expectFailure(result, 1, "of channel 3 at rate 1, for which channel 3 has no pass; it ran 1.");
    EXPECT_THAT(result.errors, HasSubstr("Give all lanes on one rate net the same rates"));
}

/// A file of the database at fault; the library reports it and goes on.
class BadDatabaseFile : public CommandLine, public testing::WithParamInterface<std::string> {};

TEST_P(BadDatabaseFile, ThatIsMissingIsNamed) {
    const std::string folder = SxaDatabase().writeTo(directory);
    const std::string file = folder + "/" + GetParam();
    std::filesystem::remove(file);
    const ProgramResult result =
        run({"attributes", requestPath("sxa_basic"), "--database", folder});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("ERROR: Error in parsing the file " + file + "."));
}

TEST_P(BadDatabaseFile, ThatIsTruncatedIsNamed) {
    const std::string folder = SxaDatabase().writeTo(directory);
    const std::string file = directory.write("SXA/" + GetParam(), "{\"a\": {");
    const ProgramResult result =
        run({"attributes", requestPath("sxa_basic"), "--database", folder});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("ERROR: Error in parsing the file " + file + "."));
}

TEST_P(BadDatabaseFile, ThatIsTruncatedTellsThePlace) {
    const std::string folder = SxaDatabase().writeTo(directory);
    const std::string file = directory.write("SXA/" + GetParam(), "{\"a\":\n {");
    expectFailure(run({"attributes", requestPath("sxa_basic"), "--database", folder}), 1,
                  "Error in parsing the file " + file + ". Reason: parse error at line 2");
}

TEST_P(BadDatabaseFile, ThatIsNoObjectIsRefused) {
    const std::string folder = SxaDatabase().writeTo(directory);
    const std::string file = directory.write("SXA/" + GetParam(), "[]");
    expectFailure(run({"pack", requestPath("sxa_basic"), "--database", folder}), 1,
                  "Error in parsing the file " + file + ". A file of a database is a JSON object");
}

TEST_P(BadDatabaseFile, ThatIsNestedVeryDeeplyIsNamed) {
    const std::string folder = SxaDatabase().writeTo(directory);
    const std::string file =
        directory.write("SXA/" + GetParam(), std::string(100'000, '[') + std::string(100'000, ']'));
    const ProgramResult result =
        run({"attributes", requestPath("sxa_basic"), "--database", folder});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.errors, HasSubstr("ERROR: Error in parsing the file " + file + "."));
}

TEST_P(BadDatabaseFile, ThatIsAPipeIsRefused) {
    const std::string folder = SxaDatabase().writeTo(directory);
    const std::string file = folder + "/" + GetParam();
    std::filesystem::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    expectFailure(run({"attributes", requestPath("sxa_basic"), "--database", folder}), 1,
                  "Error in parsing the file " + file + ". It is no regular file");
}

INSTANTIATE_TEST_SUITE_P(Each, BadDatabaseFile,
                         testing::Values("device.json", "parameters.json", "registers.json"),
                         CaseName());

}  // namespace
}  // namespace lanecfg_test
