#include "database/database_test.h"

#include <lanecfg/gt_db_load.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using lanecfg_test::parseError;
using sable_lanecfg::gt_db_load;
using sable_lanecfg::paramTypeInfo;
using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Pair;

namespace {

auto record(const std::string& type, const std::string& description,
            const std::string& defaultValue) {
    return AllOf(Field(&paramTypeInfo::type, type), Field(&paramTypeInfo::description, description),
                 Field(&paramTypeInfo::default_value, defaultValue));
}

class ParameterTypes : public lanecfg_test::DatabaseTest {
  protected:
    /// Reads a types file with this text into a loader that knows no type yet.
    void read(const std::string& text) {
        loader_.m_paramTypes.clear();
        file_ = directory.write("types_under_test.json", text);
        loader_.getUserParameterTypes(file_);
    }

    gt_db_load loader_ = load();
    std::string file_;
};

TEST_F(ParameterTypes, HoldTheThreeTextsOfEachParameter) {
    read(R"({"B": {"default_value": "R0", "description": "", "type": "string"},
             "A": {"type": "int", "description": "bits", "default_value": 32, "more": "ignored"}})");

    EXPECT_THAT(loader_.m_paramTypes, ElementsAre(Pair("A", record("int", "bits", "32")),
                                                  Pair("B", record("string", "", "R0"))));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(ParameterTypes, TakeAnyTypeWord) {
    read(R"({"A": {"type": "complex", "description": "", "default_value": ""}})");

    EXPECT_THAT(loader_.m_paramTypes, ElementsAre(Pair("A", record("complex", "", ""))));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(ParameterTypes, StopAtARecordWithoutDefaultAndKeepWhatWasRead) {
    read(R"({"A": {"type": "int", "description": "first", "default_value": "1"},
             "B": {"type": "bool", "description": "second"},
             "C": {"type": "int", "description": "third", "default_value": "3"}})");

    EXPECT_THAT(loader_.m_paramTypes, ElementsAre(Pair("A", record("int", "first", "1")),
                                                  Pair("B", record("bool", "second", ""))));
    EXPECT_THAT(errors(), ElementsAre(parseError(file_)));
    EXPECT_TRUE(loader_.m_loaded);
}

TEST_F(ParameterTypes, StopAtARecordWithoutTypeBeforeItsOtherTexts) {
    read(R"({"A": {"description": "first", "default_value": "1"}})");

    EXPECT_THAT(loader_.m_paramTypes, ElementsAre(Pair("A", record("", "", ""))));
    EXPECT_THAT(errors(), ElementsAre(parseError(file_)));
}

TEST_F(ParameterTypes, StopAtARecordWithoutDescriptionBeforeItsDefault) {
    read(R"({"A": {"type": "int", "default_value": "1"}})");

    EXPECT_THAT(loader_.m_paramTypes, ElementsAre(Pair("A", record("int", "", ""))));
    EXPECT_THAT(errors(), ElementsAre(parseError(file_)));
}

TEST_F(ParameterTypes, ResetARepeatedRecord) {
    read(R"({"A": {"type": "int", "description": "first", "default_value": "1"},
             "A": {"type": "bool"}})");

    EXPECT_THAT(loader_.m_paramTypes, ElementsAre(Pair("A", record("bool", "", ""))));
    EXPECT_THAT(errors(), ElementsAre(parseError(file_)));
}

TEST_F(ParameterTypes, OfASecondFileGoBesideTheFirst) {
    read(R"({"A": {"type": "int", "description": "", "default_value": "1"}})");
    loader_.getUserParameterTypes(directory.write(
        "second.json", R"({"B": {"type": "bool", "description": "", "default_value": "0"}})"));

    EXPECT_THAT(loader_.m_paramTypes,
                ElementsAre(Pair("A", record("int", "", "1")), Pair("B", record("bool", "", "0"))));
}

}  // namespace
