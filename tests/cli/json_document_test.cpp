#include "json_document.h"

#include "errors.h"
#include "support/temporary_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;

class JsonDocumentReader : public testing::Test {
  protected:
    JsonDocument read(const std::string& content, Lists lists = Lists::whole) const {
        return readJsonDocument(directory_.write("file.json", content), lists);
    }

    TemporaryDirectory directory_;
};

std::string nestedLists(std::size_t levels) {
    return std::string(levels, '[') + std::string(levels, ']');
}

TEST_F(JsonDocumentReader, GivesTheSameDocumentAsThePlainParser) {
    const std::string text =
        R"({"a": [1, -2, 3.5, "x", true, null, {"b": [[]]}], "c": {}, "d": [{"e": 1}, 2]})";
    EXPECT_EQ(read(text).root, nlohmann::json::parse(text));
}

TEST_F(JsonDocumentReader, TakesAScalarRoot) {
    EXPECT_EQ(read("17").root, 17);
}

TEST_F(JsonDocumentReader, KeepsOfAbridgedListsOnlyWhetherTheyHaveElements) {
    const std::string text =
        R"({"a": [1, [2], {"b": 3}], "c": {"d": [[4], 5]}, "e": 5, "f": [], "g": [{"h": []}]})";
    EXPECT_EQ(read(text, Lists::abridged).root,
              nlohmann::json::parse(
                  R"({"a": [null], "c": {"d": [null]}, "e": 5, "f": [], "g": [null]})"));
}

TEST_F(JsonDocumentReader, TakesTheLastOfRepeatedKeysAndTellsTheirPaths) {
    const JsonDocument document =
        read(R"({"a": {"b": 1, "b": 2}, "l": [{"c": 0, "c": 0}], "a": 3, "d": {"b": 1}})");
    EXPECT_EQ(document.root.at("a"), 3);
    EXPECT_THAT(document.repeatedKeys, testing::ElementsAre("a.b", "l..c", "a"));
}

TEST_F(JsonDocumentReader, TakesTheDeepestNestingAllowed) {
    EXPECT_NO_THROW(read(nestedLists(256)));
    EXPECT_NO_THROW(read(nestedLists(256), Lists::abridged));
}

TEST_F(JsonDocumentReader, RefusesOneLevelMore) {
    EXPECT_THROW(read(nestedLists(257)), RequestError);
    EXPECT_THROW(read(nestedLists(257), Lists::abridged), RequestError);
}

TEST_F(JsonDocumentReader, NamesTheFileAndThePlaceOfAFault) {
    try {
        read("{\"a\":\n ]");
        FAIL() << "taken";
    } catch (const RequestError& error) {
        EXPECT_THAT(error.what(), testing::StartsWith("Error in parsing the file " +
                                                      directory_.file("file.json") + "."));
        EXPECT_THAT(error.what(), testing::HasSubstr("line 2, column 2"));
    }
}

TEST_F(JsonDocumentReader, AsksToCheckThePathOfAFileThatIsNotThere) {
    try {
        readJsonDocument(directory_.file("missing.json"), Lists::whole);
        FAIL() << "taken";
    } catch (const RequestError& error) {
        EXPECT_THAT(error.what(), testing::EndsWith(" Check the path."));
    }
}

TEST_F(JsonDocumentReader, TellsOfAFileThatCannotBeOpenedNoMoreThanTheReason) {
    try {
        readJsonDocument(directory_.file("missing.json"), Lists::whole);
        FAIL() << "taken";
    } catch (const RequestError& error) {
        EXPECT_EQ(std::string(error.what()),
                  "Error in parsing the file " + directory_.file("missing.json") +
                      ". Reason: failed opening file: No such file or directory. Check the path.");
    }
}

TEST_F(JsonDocumentReader, DoesNotDoubtThePathOfAFileThatIsThere) {
    try {
        read("{");
        FAIL() << "taken";
    } catch (const RequestError& error) {
        EXPECT_THAT(error.what(), testing::Not(testing::HasSubstr("Check the path")));
    }
}

TEST_F(JsonDocumentReader, RefusesTextAfterTheDocument) {
    EXPECT_THROW(read("{} {}"), RequestError);
}

}  // namespace
}  // namespace lanecfg_test
