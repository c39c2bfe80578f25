#include "database/database_test.h"
#include "support/compressed_content.h"

#include <lanecfg/gt_db_load.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <vector>

using lanecfg_test::DatabaseFiles;
using lanecfg_test::gzipped;
using lanecfg_test::parseError;
using lanecfg_test::TemporaryDirectory;
using sable_lanecfg::gt_db_load;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::SizeIs;

namespace {

std::string repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

std::string nestedArrays(int depth) {
    return repeated("[", depth) + repeated("]", depth);
}

std::string nestedObjects(int depth) {
    return repeated("{\"A\":", depth) + "1" + repeated("}", depth);
}

/// A file that no reader can use: gives its path.
struct BadFile {
    std::string name;
    std::function<std::string(const TemporaryDirectory&)> make;
};

BadFile withContent(const std::string& name, const std::string& content) {
    return {name, [content](const TemporaryDirectory& directory) {
                return directory.write("bad.json", content);
            }};
}

std::vector<BadFile> badFiles() {
    const std::string good = R"({"-3": {"A": "1"}})";
    const std::string packed = gzipped(good + repeated(" ", 1000));
    return {
        withContent("EmptyFile", ""),
        withContent("BlankFile", " \n\t "),
        withContent("TruncatedJson", R"({"-3": {"A": ["1", )"),
        withContent("TruncatedText", R"({"-3": {"A": "1)"),
        withContent("TextBehindTheEnd", good + "x"),
        withContent("SecondRoot", good + good),
        withContent("NoJson", "siliconRev = es1"),
        withContent("RandomBytes", lanecfg_test::incompressible(5000, 1)),
        withContent("BadCharacterInText", "{\"-3\": {\"A\": \"\xff\"}}"),
        withContent("ArraysNested100000Deep", nestedArrays(100000)),
        withContent("ObjectsNested100000Deep", nestedObjects(100000)),
        withContent("OpenArrays100000Deep", repeated("[", 100000)),
        withContent("DeepBehindAClosedText", R"({"\\": "[\"", "B": )" + nestedArrays(100000) + "}"),
        withContent("PackedArraysNested100000Deep", gzipped(nestedArrays(100000))),
        withContent("OneLevelTooDeep", nestedArrays(257)),
        withContent("ClosingBrackets", repeated("]", 100000)),
        withContent("TruncatedGzip", packed.substr(0, packed.size() - 12)),
        withContent("DamagedGzip", packed.substr(0, 10) + std::string(20, '\xff')),
        {"MissingFile",
         [](const TemporaryDirectory& directory) { return directory.file("missing.json"); }},
        {"Directory",
         [](const TemporaryDirectory& directory) { return directory.path().string(); }},
        {"NoName", [](const TemporaryDirectory&) { return std::string(); }},
    };
}

/// One of the three files of the database by its place among the paths.
struct DatabaseFile {
    std::string name;
    std::string DatabaseFiles::*path;
};

std::vector<DatabaseFile> databaseFiles() {
    return {{"ParameterTypes", &DatabaseFiles::userParameterTypes},
            {"Fields", &DatabaseFiles::fields},
            {"DeviceData", &DatabaseFiles::deviceData}};
}

class BadDatabaseFile : public lanecfg_test::DatabaseTest,
                        public testing::WithParamInterface<std::tuple<DatabaseFile, BadFile>> {};

TEST_P(BadDatabaseFile, IsReportedAndTheLoadGoesOnWithoutIt) {
    const auto& [file, bad] = GetParam();
    // Without parameters the request is usable whatever becomes of the types.
    database.request["userParams"] = nlohmann::json::array();
    DatabaseFiles files = database.writeTo(directory);
    files.*file.path = bad.make(directory);

    const gt_db_load loader = loadFiles(files);

    EXPECT_TRUE(loader.m_loaded);
    EXPECT_THAT(errors(), ElementsAre(parseError(files.*file.path)));
    EXPECT_THAT(loader.m_paramTypes, SizeIs(file.name == "ParameterTypes" ? 0 : 2));
    EXPECT_THAT(loader.m_fields, SizeIs(file.name == "Fields" ? 0 : 2));
    EXPECT_THAT(loader.m_deviceData, SizeIs(file.name == "DeviceData" ? 1 : 2));
    EXPECT_THAT(loader.m_deviceData, Contains(Key("siliconRev")));
    EXPECT_THAT(loader.m_channelUsage, SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(EachFile, BadDatabaseFile,
                         testing::Combine(testing::ValuesIn(databaseFiles()),
                                          testing::ValuesIn(badFiles())),
                         [](const auto& test) {
                             return std::get<0>(test.param).name + std::get<1>(test.param).name;
                         });

class BadRequestFile : public lanecfg_test::DatabaseTest,
                       public testing::WithParamInterface<BadFile> {};

TEST_P(BadRequestFile, IsReportedAndFailsTheLoad) {
    DatabaseFiles files = database.writeTo(directory);
    files.userParameters = GetParam().make(directory);

    const gt_db_load loader = loadFiles(files);

    EXPECT_FALSE(loader.m_loaded);
    EXPECT_THAT(errors(), ElementsAre(parseError(files.userParameters),
                                      lanecfg_test::missingQuadUsage(files.userParameters),
                                      lanecfg_test::unusableLaneUsage(files.userParameters),
                                      lanecfg_test::unconvertibleParameters(),
                                      lanecfg_test::unusableParameters()));
    EXPECT_THAT(loader.m_quadsUsage, IsEmpty());
    EXPECT_THAT(loader.m_channelUsage, IsEmpty());
    EXPECT_THAT(loader.m_userParams, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Contents, BadRequestFile, testing::ValuesIn(badFiles()),
                         [](const auto& test) { return test.param.name; });

class JsonFile : public lanecfg_test::DatabaseTest {
  protected:
    /// The item "A" of device data whose file holds `text`.
    std::vector<std::string> itemOf(const std::string& text) {
        DatabaseFiles files = database.writeTo(directory);
        files.deviceData = directory.write("device_under_test.json", text);
        return loadFiles(files).m_deviceData["A"];
    }
};

TEST_F(JsonFile, MayNest256Levels) {
    EXPECT_THAT(itemOf(R"({"other": )" + nestedArrays(255) + R"(, "-3": {"A": "1"}})"),
                ElementsAre("1"));
    EXPECT_THAT(itemOf(R"({"other": )" + nestedObjects(255) + R"(, "-3": {"A": "1"}})"),
                ElementsAre("1"));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(JsonFile, CountsOnlyLevelsThatAreOpen) {
    EXPECT_THAT(itemOf(R"({"other": [)" + repeated("[{}],", 1000) + R"([]], "-3": {"A": "1"}})"),
                ElementsAre("1"));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(JsonFile, MayHoldAnyBracketsInTexts) {
    const std::string brackets = repeated("[{", 1000);
    EXPECT_THAT(itemOf(R"({"-3": {"A": ["\"\\)" + brackets + R"(\"", ")" + brackets + R"("]}})"),
                ElementsAre("\"\\" + brackets + "\"", brackets));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(JsonFile, MayBeginWithAByteOrderMark) {
    EXPECT_THAT(itemOf("\xef\xbb\xbf{\"-3\": {\"A\": \"1\"}}"), ElementsAre("1"));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(JsonFile, MayHoldTextBeyondAscii) {
    EXPECT_THAT(itemOf("{\"-3\": {\"A\": \"\xc3\xa4 \\u00e4\"}}"),
                ElementsAre("\xc3\xa4 \xc3\xa4"));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(JsonFile, OfOneValueHasNoEntries) {
    DatabaseFiles files = database.writeTo(directory);
    files.fields = directory.write("fields_under_test.json", "5");

    const gt_db_load loader = loadFiles(files);

    EXPECT_THAT(loader.m_fields, IsEmpty());
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(JsonFile, NameWithPercentSignIsReportedAsItIs) {
    DatabaseFiles files = database.writeTo(directory);
    files.fields = directory.file("100%s %1% %n.json");

    static_cast<void>(loadFiles(files));

    EXPECT_THAT(errors(), ElementsAre(parseError(files.fields)));
}

TEST_F(JsonFile, Of100MegabytesIsRead) {
    constexpr std::size_t textSize = 4'000'000;
    constexpr int texts = 25;
    database.parameters["TEXT"] = {{"type", "string"}, {"description", ""}, {"default_value", ""}};
    DatabaseFiles files = database.writeTo(directory);
    const std::string rate = R"({"TEXT": ")" + std::string(textSize, '[') + R"("})";
    files.userParameters =
        directory.write("large.json", R"({"quadUsage": {}, "laneUsage": [], "userParams": [[[)" +
                                          rate + repeated("," + rate, texts - 1) + "]]]}");

    const gt_db_load loader = loadFiles(files);

    ASSERT_TRUE(loader.m_loaded);
    ASSERT_THAT(loader.m_userParams, ElementsAre(ElementsAre(SizeIs(texts))));
    for (const auto& parameters : loader.m_userParams[0][0]) {
        EXPECT_THAT(boost::get<std::string>(parameters.at("TEXT")), SizeIs(textSize));
    }
    EXPECT_THAT(errors(), IsEmpty());
}

}  // namespace
