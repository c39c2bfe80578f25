#include "database/database_test.h"

#include <lanecfg/gt_db_load.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

using sable_lanecfg::gt_db_load;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

class DeviceData : public lanecfg_test::DatabaseTest {
  protected:
    /// The device data of a file with this text, for an empty part name.
    std::map<std::string, std::vector<std::string>> deviceDataOf(const std::string& text) {
        lanecfg_test::DatabaseFiles files = database.writeTo(directory);
        files.deviceData = directory.write("device_under_test.json", text);
        return loadFiles(files).m_deviceData;
    }
};

TEST_F(DeviceData, WithoutTheGradeHoldsOnlyTheSiliconRevision) {
    EXPECT_THAT(deviceDataOf(R"({"-2": {"A": "x"}})"),
                ElementsAre(Pair("siliconRev", ElementsAre(""))));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(DeviceData, KeepsTheBlanksOfATextAndTrimsTheElementsOfAList) {
    EXPECT_THAT(deviceDataOf(R"({"-3": {"A": " x ", "B": [" x "]}})"),
                ElementsAre(Pair("A", ElementsAre(" x ")), Pair("B", ElementsAre("x")),
                            Pair("siliconRev", ElementsAre(""))));
}

TEST_F(DeviceData, TrimsWhatIsWhiteSpaceAndOnlyAtTheEnds) {
    EXPECT_THAT(deviceDataOf(R"({"-3": {"A": ["\t a\n b \r\n\u000b\f", "  ", ""]}})")["A"],
                ElementsAre("a\n b", "", ""));
}

TEST_F(DeviceData, KeepsTheOrderOfAListAndTheTextOfNumbers) {
    EXPECT_THAT(deviceDataOf(R"({"-3": {"RANGE": [8.0, "16.375", 1e3, true, null]}})")["RANGE"],
                ElementsAre("8.0", "16.375", "1e3", "true", "null"));
}

TEST_F(DeviceData, TakesANumberAsOneText) {
    EXPECT_THAT(deviceDataOf(R"({"-3": {"A": 9.80}})")["A"], ElementsAre("9.80"));
}

TEST_F(DeviceData, TakesAnEmptyTextOrListAsNoValues) {
    EXPECT_THAT(deviceDataOf(R"({"-3": {"A": "", "B": []}})"),
                ElementsAre(Pair("A", IsEmpty()), Pair("B", IsEmpty()),
                            Pair("siliconRev", ElementsAre(""))));
}

TEST_F(DeviceData, KeepsTheFirstValueOfARepeatedItem) {
    EXPECT_THAT(deviceDataOf(R"({"-3": {"A": "first", "A": "second"}})")["A"],
                ElementsAre("first"));
}

TEST_F(DeviceData, ReadsEveryEntryOfTheGrade) {
    EXPECT_THAT(deviceDataOf(R"({"-3": {"A": "1", "B": "2"}, "-1": {"C": "3"},
                                 "-3": {"A": "4", "D": "5"}})"),
                ElementsAre(Pair("A", ElementsAre("1")), Pair("B", ElementsAre("2")),
                            Pair("D", ElementsAre("5")), Pair("siliconRev", ElementsAre(""))));
}

TEST_F(DeviceData, TakesTheGradeOnlyByItsExactKey) {
    EXPECT_THAT(deviceDataOf(R"({"-3 ": {"A": "1"}, "-3E": {"B": "2"}, "3": {"C": "3"}})"),
                ElementsAre(Pair("siliconRev", ElementsAre(""))));
}

TEST_F(DeviceData, KeepsASiliconRevisionOfTheFile) {
    EXPECT_THAT(deviceDataOf(R"({"-3": {"siliconRev": ["es2", "prod"]}})"),
                ElementsAre(Pair("siliconRev", ElementsAre("es2", "prod"))));
}

TEST_F(DeviceData, OfAnotherGradeGoesBesideWhatIsThere) {
    gt_db_load loader = load();
    loader.fillDeviceData(directory.write("other.json", R"({"-1": {"A": "1"}})"), "-1", "es9");

    EXPECT_THAT(loader.m_deviceData, ElementsAre(Pair("A", ElementsAre("1")),
                                                 Pair("FLCPLLRANGE", ElementsAre("8.0", "16.375")),
                                                 Pair("siliconRev", ElementsAre(""))));
}

}  // namespace
