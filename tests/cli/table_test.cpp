#include "table.h"

#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;

Table lanes() {
    Table table;
    table.columns = {"lane", "count"};
    table.rows = {{Cell("link.0"), Cell(7)}, {Cell("l"), Cell(1234567)}};
    return table;
}

Table oneCell(const std::string& text) {
    Table table;
    table.columns = {"text"};
    table.rows = {{Cell(text)}};
    return table;
}

TEST(AlignedText, PutsTextsToTheLeftAndNumbersToTheRight) {
    EXPECT_EQ(alignedText(lanes()),
              "LANE      COUNT\n"
              "link.0        7\n"
              "l       1234567\n");
}

TEST(AlignedText, MayHaveNoHeading) {
    Table table = lanes();
    table.hasHeading = false;
    EXPECT_EQ(alignedText(table),
              "link.0        7\n"
              "l       1234567\n");
}

TEST(AlignedText, IsTheHeadingWithoutRows) {
    Table table = lanes();
    table.rows.clear();
    EXPECT_EQ(alignedText(table), "LANE  COUNT\n");
}

TEST(AlignedText, EndsLinesWithoutBlanks) {
    Table table = lanes();
    table.rows = {{Cell("link.0"), Cell("")}};
    EXPECT_EQ(alignedText(table),
              "LANE    COUNT\n"
              "link.0\n");
}

TEST(AlignedText, KeepsACellWithLineFeedsOnOneLine) {
    EXPECT_EQ(alignedText(oneCell("a\nb\"\x1b")),
              "TEXT\n"
              "a\\nb\\\"\\u001b\n");
}

Table withTexts(const std::string& first, const std::string& last) {
    Table table;
    table.columns = {"first", "last"};
    table.rows = {{Cell(first), Cell(last)}};
    return table;
}

TEST(ShortTexts, EndWithTheLengthOfTheWhole) {
    const Table table = withShortTexts(withTexts(std::string(49, 'x'), ""));
    EXPECT_EQ(table.rows[0][0].text, std::string(24, 'x') + "... (49 characters)");
}

TEST(ShortTexts, AreNotCutFromWhatIsNotLong) {
    const Table table = withShortTexts(withTexts(std::string(48, 'x'), ""));
    EXPECT_EQ(table.rows[0][0].text, std::string(48, 'x'));
}

TEST(ShortTexts, LeaveTheLastColumnAndTheValues) {
    const std::string text(1000, 'x');
    const Table table = withShortTexts(withTexts(text, text));
    EXPECT_EQ(table.rows[0][1].text, text);
    EXPECT_EQ(table.rows[0][0].value, text);
}

TEST(ShortTexts, DoNotCutInsideACharacter) {
    // The character of two bytes stands at the cut.
    const std::string text = std::string(23, 'x') + "\xc3\xa4" + std::string(40, 'x');
    const Table table = withShortTexts(withTexts(text, ""));
    EXPECT_EQ(table.rows[0][0].text, std::string(23, 'x') + "... (65 characters)");
}

TEST(CsvText, HasAHeadingAndALineForEachRow) {
    EXPECT_EQ(csvText(lanes()), "lane,count\nlink.0,7\nl,1234567\n");
}

TEST(CsvText, KeepsTheHeadingThatTheAlignedFormLeavesOut) {
    Table table = lanes();
    table.hasHeading = false;
    EXPECT_EQ(csvText(table), "lane,count\nlink.0,7\nl,1234567\n");
}

TEST(CsvText, QuotesCommasQuotesAndLineEnds) {
    EXPECT_EQ(csvText(oneCell("a,b")), "text\n\"a,b\"\n");
    EXPECT_EQ(csvText(oneCell("say \"x\"")), "text\n\"say \"\"x\"\"\"\n");
    EXPECT_EQ(csvText(oneCell("a\nb")), "text\n\"a\nb\"\n");
    EXPECT_EQ(csvText(oneCell("a\rb")), "text\n\"a\rb\"\n");
}

TEST(CsvText, LeavesBlanksAndSemicolonsUnquoted) {
    EXPECT_EQ(csvText(oneCell(" a;b ")), "text\n a;b \n");
}

TEST(CsvText, KeepsAnEmptyFirstField) {
    Table table = lanes();
    table.rows = {{Cell(""), Cell("x")}};
    EXPECT_EQ(csvText(table), "lane,count\n,x\n");
}

TEST(CsvText, QuotesTheOnlyFieldOfALineWhenItIsEmpty) {
    EXPECT_EQ(csvText(oneCell("")), "text\n\"\"\n");
}

TEST(JsonRows, NameEachValueByItsColumn) {
    EXPECT_EQ(jsonText(lanes()), R"([
  {"lane":"link.0","count":7},
  {"lane":"l","count":1234567}
]
)");
}

TEST(JsonText, GivenAnIndentHasALineForEachMember) {
    EXPECT_EQ(jsonText(Json({{"a", 1}}), 3), "{\n   \"a\": 1\n}");
    EXPECT_EQ(jsonText(Json({{"a", 1}})), "{\"a\":1}");
}

TEST(JsonText, GivenAnIndentReplacesBytesThatAreNoText) {
    EXPECT_EQ(jsonText(Json("a\xff"), 2), "\"a\xef\xbf\xbd\"");
}

TEST(JsonRows, AreAnEmptyListWithoutRows) {
    Table table = lanes();
    table.rows.clear();
    EXPECT_EQ(jsonText(table), "[]\n");
}

TEST(JsonRows, HaveTheValueAndNotTheTextOfACell) {
    Table table;
    table.columns = {"available"};
    table.rows = {{Cell("yes", true)}};
    EXPECT_EQ(jsonText(table), "[\n  {\"available\":true}\n]\n");
    EXPECT_EQ(csvText(table), "available\nyes\n");
}

TEST(JsonText, ReplacesBytesThatAreNoUtf8) {
    EXPECT_EQ(jsonText(Json("a\xff")), "\"a\xef\xbf\xbd\"");
}

TEST(CellText, OfOtherValuesIsTheirJson) {
    EXPECT_EQ(Cell(Json({1, 2})).text, "[1,2]");
    EXPECT_EQ(Cell(Json(false)).text, "false");
    EXPECT_EQ(Cell(Json()).text, "");
}

}  // namespace
}  // namespace lanecfg_test
