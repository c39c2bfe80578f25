#include "database/database_test.h"

#include <lanecfg/gt_db_load.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using lanecfg_test::parseError;
using sable_lanecfg::attributeInfo;
using sable_lanecfg::gt_db_load;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Pair;

namespace {

class RegisterFields : public lanecfg_test::DatabaseTest {
  protected:
    /// Reads a fields file with this text into a loader that knows no register yet.
    void read(const std::string& text) {
        loader_.m_fields.clear();
        file_ = directory.write("fields_under_test.json", text);
        loader_.getFields(file_);
    }

    gt_db_load loader_ = load();
    std::string file_;
};

TEST_F(RegisterFields, HoldBlockOffsetAndTheNumbersOfEachField) {
    read(R"({"R": {"dstSubBlock": "channel", "Offset": "0x1c",
                   "fields": {"R.B": [4, 2], "R.A": ["0", -1, "007"]}}})");

    ASSERT_THAT(loader_.m_fields, ElementsAre(Key("R")));
    const attributeInfo& info = loader_.m_fields.at("R");
    EXPECT_EQ(info.dstSubBlock, "channel");
    EXPECT_EQ(info.Offset, "0x1c");
    EXPECT_THAT(info.fields,
                ElementsAre(Pair("R.A", ElementsAre(0, -1, 7)), Pair("R.B", ElementsAre(4, 2))));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RegisterFields, TakeAnOffsetGivenAsNumberByItsText) {
    read(R"({"R": {"dstSubBlock": "channel", "Offset": 28, "fields": {}}})");

    EXPECT_EQ(loader_.m_fields.at("R").Offset, "28");
}

TEST_F(RegisterFields, MayBeNone) {
    read(R"({"R": {"dstSubBlock": "channel", "Offset": "0x0", "fields": {}}})");

    EXPECT_THAT(loader_.m_fields.at("R").fields, IsEmpty());
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RegisterFields, TakeAFieldOfOneNumberAsItStands) {
    read(R"({"R": {"dstSubBlock": "channel", "Offset": "0x0",
                   "fields": {"R.A": [5], "R.B": [], "R.C": [1, 2, 3]}}})");

    EXPECT_THAT(loader_.m_fields.at("R").fields,
                ElementsAre(Pair("R.A", ElementsAre(5)), Pair("R.B", IsEmpty()),
                            Pair("R.C", ElementsAre(1, 2, 3))));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RegisterFields, KeepTheLastListOfARepeatedField) {
    read(R"({"R": {"dstSubBlock": "channel", "Offset": "0x0",
                   "fields": {"R.A": [1, 2], "R.A": [3]}}})");

    EXPECT_THAT(loader_.m_fields.at("R").fields, ElementsAre(Pair("R.A", ElementsAre(3))));
}

TEST_F(RegisterFields, TakeTheFirstOfRepeatedKeysOfARegister) {
    read(R"({"R": {"dstSubBlock": "channel", "Offset": "0x1c", "fields": {"R.A": [1, 2]},
                   "dstSubBlock": "hs_clk", "Offset": "0x20", "fields": {"R.B": [3, 4]}}})");

    const attributeInfo& info = loader_.m_fields.at("R");
    EXPECT_EQ(info.dstSubBlock, "channel");
    EXPECT_EQ(info.Offset, "0x1c");
    EXPECT_THAT(info.fields, ElementsAre(Pair("R.A", ElementsAre(1, 2))));
}

TEST_F(RegisterFields, ResetARepeatedRegister) {
    read(R"({"R": {"dstSubBlock": "channel", "Offset": "0x0", "fields": {"R.A": [1, 2]}},
             "R": {"dstSubBlock": "control", "Offset": "0x4", "fields": {"R.B": [3, 4]}}})");

    EXPECT_EQ(loader_.m_fields.at("R").dstSubBlock, "control");
    EXPECT_THAT(loader_.m_fields.at("R").fields, ElementsAre(Pair("R.B", ElementsAre(3, 4))));
}

struct MissingKey {
    std::string name;
    std::string record;
    std::string dstSubBlock;
    std::string Offset;
};

class RegisterWithout : public RegisterFields, public testing::WithParamInterface<MissingKey> {};

TEST_P(RegisterWithout, StopsTheReadingAndKeepsWhatWasRead) {
    read(R"({"A": {"dstSubBlock": "first", "Offset": "1", "fields": {"A.F": [0, 1]}}, "B": )" +
         GetParam().record +
         R"(, "C": {"dstSubBlock": "third", "Offset": "3", "fields": {"C.F": [0, 1]}}})");

    ASSERT_THAT(loader_.m_fields, ElementsAre(Key("A"), Key("B")));
    EXPECT_EQ(loader_.m_fields.at("A").dstSubBlock, "first");
    EXPECT_THAT(loader_.m_fields.at("A").fields, ElementsAre(Pair("A.F", ElementsAre(0, 1))));
    EXPECT_EQ(loader_.m_fields.at("B").dstSubBlock, GetParam().dstSubBlock);
    EXPECT_EQ(loader_.m_fields.at("B").Offset, GetParam().Offset);
    EXPECT_THAT(loader_.m_fields.at("B").fields, IsEmpty());
    EXPECT_THAT(errors(), ElementsAre(parseError(file_)));
    EXPECT_TRUE(loader_.m_loaded);
}

INSTANTIATE_TEST_SUITE_P(
    EachKey, RegisterWithout,
    testing::Values(
        MissingKey{"DstSubBlock", R"({"Offset": "2", "fields": {"B.F": [0, 1]}})", "", ""},
        MissingKey{"Offset", R"({"dstSubBlock": "second", "fields": {"B.F": [0, 1]}})", "second",
                   ""},
        MissingKey{"Fields", R"({"dstSubBlock": "second", "Offset": "2"})", "second", "2"},
        MissingKey{"AnyKey", R"("text")", "", ""}),
    [](const auto& test) { return test.param.name; });

/// A JSON value that is no integer of a field.
struct NoInteger {
    std::string name;
    std::string text;
};

class RegisterNumber : public RegisterFields, public testing::WithParamInterface<NoInteger> {};

TEST_P(RegisterNumber, ThatIsNoIntegerStopsTheReading) {
    read(R"({"R": {"dstSubBlock": "channel", "Offset": "0x0",
                   "fields": {"R.A": [1, 2], "R.B": [3, )" +
         GetParam().text + R"(, 4], "R.C": [5, 6]}}})");

    EXPECT_THAT(loader_.m_fields.at("R").fields,
                ElementsAre(Pair("R.A", ElementsAre(1, 2)), Pair("R.B", ElementsAre(3))));
    EXPECT_THAT(errors(), ElementsAre(parseError(file_)));
}

INSTANTIATE_TEST_SUITE_P(Texts, RegisterNumber,
                         testing::Values(NoInteger{"Letters", "\"x\""},
                                         NoInteger{"Fraction", "1.5"},
                                         NoInteger{"EmptyText", "\"\""},
                                         NoInteger{"TwoNumbers", "\"1 2\""},
                                         NoInteger{"Flag", "true"}, NoInteger{"Null", "null"},
                                         NoInteger{"AboveTheRange", "2147483648"},
                                         NoInteger{"BelowTheRange", "-2147483649"},
                                         NoInteger{"List", "[1]"}, NoInteger{"Object", "{}"}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
