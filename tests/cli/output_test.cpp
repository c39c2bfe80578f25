#include "output.h"

#include "errors.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;

class AnswerForm : public testing::Test {
  protected:
    AnswerForm() {
        answer_.table.columns = {"name"};
        answer_.table.rows = {{Cell("a")}};
    }

    std::string written(const std::string& format) const {
        OutputOptions options;
        options.format = format;
        options.file = directory_.file("answer");
        writeAnswer(answer_, options);
        return readFile(options.file);
    }

    Answer answer_;
    TemporaryDirectory directory_;
};

TEST_F(AnswerForm, InJsonIsTheRowsOfTheTable) {
    EXPECT_EQ(written("json"), "[\n  {\"name\":\"a\"}\n]\n");
}

TEST_F(AnswerForm, InJsonIsTheDocumentWhenThereIsOne) {
    answer_.document = Json({{"a", 1}});
    EXPECT_EQ(written("json"), "{\n  \"a\": 1\n}\n");
}

TEST_F(AnswerForm, InTextEndsWithTheRemarks) {
    answer_.remarks = {"one", "two"};
    EXPECT_EQ(written("text"), "NAME\na\none\ntwo\n");
}

TEST_F(AnswerForm, InTextIsTheRemarksAloneWithoutRows) {
    answer_.table.rows.clear();
    answer_.remarks = {"nothing found"};
    EXPECT_EQ(written("text"), "nothing found\n");
}

TEST_F(AnswerForm, TakesTheNameOfAnInputForWrongUsage) {
    OutputOptions options;
    options.file = directory_.write("input", "content");
    const std::string link = directory_.file("link");
    std::filesystem::create_symlink(options.file, link);
    EXPECT_THROW(refuseToOverwrite({"other", options.file}, options), UsageError);
    EXPECT_THROW(refuseToOverwrite({link}, options), UsageError);
}

TEST_F(AnswerForm, TakesTheNameOfAFileThatIsYetToBeMadeForWrongUsage) {
    OutputOptions options;
    options.file = directory_.file("made/../table");
    EXPECT_THROW(refuseToOverwrite({directory_.file("table")}, options), UsageError);
}

TEST_F(AnswerForm, TakesAnyOtherName) {
    OutputOptions options;
    const std::string input = directory_.write("input", "content");
    EXPECT_NO_THROW(refuseToOverwrite({input}, options));
    options.file = directory_.file("new");
    EXPECT_NO_THROW(refuseToOverwrite({input, "", directory_.file("missing")}, options));
}

TEST_F(AnswerForm, InCsvHasNoRemarks) {
    answer_.remarks = {"one"};
    EXPECT_EQ(written("csv"), "name\na\n");
}

}  // namespace
}  // namespace lanecfg_test
