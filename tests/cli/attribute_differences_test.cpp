#include "attribute_differences.h"

#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;
using sable_lanecfg::attributeInfo;
using sable_lanecfg::textMap;
using Registers = std::map<std::string, attributeInfo>;

attributeInfo registerWith(const FieldPlaces& fields) {
    attributeInfo info;
    info.fields = fields;
    return info;
}

Registers oneRegister(const std::vector<int>& place) {
    return {{"A_CFG", registerWith({{"A_CFG.FIELD", place}})}};
}

/// The differences of two answers from one database, as CSV.
std::string differencesOf(const textMap& first, const textMap& second) {
    const Registers registers = oneRegister({4, 8});
    return csvText(
        answerOf(valueDifferences({first, registers}, {second, registers}), false, "one", "other")
            .table);
}

TEST(AttributeDifferences, OfEqualAnswersAreNone) {
    EXPECT_EQ(differencesOf({{"A_CFG", "18"}, {"LIST", "1,2"}}, {{"A_CFG", "18"}, {"LIST", "1,2"}}),
              "name,first,second,changes\n");
}

TEST(AttributeDifferences, OfARegisterAreItsWordsAndFields) {
    // 0x120 holds 18 in bits 4 to 11, 0x340 holds 52.
    EXPECT_EQ(differencesOf({{"A_CFG", "288"}}, {{"A_CFG", "832"}}),
              "name,first,second,changes\n"
              "A_CFG,0x00000120,0x00000340,FIELD 18 -> 52\n");
}

TEST(AttributeDifferences, FindTheRegisterBehindItsUnit) {
    EXPECT_EQ(differencesOf({{"CH3_A_CFG", "0"}, {"HSCLK1_A_CFG", "16"}},
                            {{"CH3_A_CFG", "16"}, {"HSCLK1_A_CFG", "0"}}),
              "name,first,second,changes\n"
              "CH3_A_CFG,0x00000000,0x00000010,FIELD 0 -> 1\n"
              "HSCLK1_A_CFG,0x00000010,0x00000000,FIELD 1 -> 0\n");
}

TEST(AttributeDifferences, OfWhatIsNoRegisterAreItsValues) {
    EXPECT_EQ(differencesOf({{"HS0_PIN_EN", "1"}, {"LIST", "1,2"}},
                            {{"HS0_PIN_EN", "0"}, {"LIST", "1,3"}}),
              "name,first,second,changes\n"
              "HS0_PIN_EN,0x00000001,0x00000000,\n"
              "LIST,\"1,2\",\"1,3\",\n");
}

TEST(AttributeDifferences, TellOfNamesThatOnlyOneSideHas) {
    EXPECT_EQ(differencesOf({{"A_CFG", "1"}, {"BOTH", "1"}}, {{"BOTH", "1"}, {"C_CFG", "2"}}),
              "name,first,second,changes\n"
              "A_CFG,0x00000001,,only in the first\n"
              "C_CFG,,0x00000002,only in the second\n");
}

TEST(AttributeDifferences, TakeEachSideByItsOwnDatabase) {
    const Registers low = oneRegister({0, 4});
    const Registers high = oneRegister({4, 4});
    const textMap first = {{"A_CFG", "5"}};
    const textMap second = {{"A_CFG", "96"}};
    const auto differences = valueDifferences({first, low}, {second, high});
    ASSERT_EQ(differences.size(), 1U);
    EXPECT_EQ(textOf(differences[0].fields), "FIELD 5 -> 6");
}

TEST(AttributeDifferences, AreObjectsWithTheirFieldsInJson) {
    const Registers registers = oneRegister({4, 8});
    const textMap first = {{"A_CFG", "289"}};
    const textMap second = {{"A_CFG", "832"}, {"B_CFG", "7"}};
    const Answer answer =
        answerOf(valueDifferences({first, registers}, {second, registers}), false, "one", "other");
    const Json expected = {
        {{"name", "A_CFG"},
         {"first", "289"},
         {"second", "832"},
         {"changes",
          {{{"field", "FIELD"}, {"first", 18}, {"second", 52}},
           {{"field", "bits 0x00000001"}, {"first", 1}, {"second", 0}}}}},
        {{"name", "B_CFG"}, {"first", nullptr}, {"second", "7"}, {"changes", Json::array()}}};
    EXPECT_EQ(rowObjects(answer.table), expected);
}

TEST(AttributeDifferences, OfChannelsHaveTheirNumber) {
    const Answer answer =
        answerOf({{2, "A_CFG", std::nullopt, "1", {}}}, true, "rates 0_0", "rates 1_1");
    EXPECT_EQ(csvText(answer.table),
              "channel,name,first,second,changes\n"
              "2,A_CFG,,0x00000001,only in the second\n");
}

TEST(AttributeDifferences, AreCountedUnderTheNamesOfBothSides) {
    const Answer answer = answerOf({{std::nullopt, "A", "1", "2", {}},
                                    {std::nullopt, "B", "1", std::nullopt, {}},
                                    {std::nullopt, "C", "1", std::nullopt, {}},
                                    {std::nullopt, "D", std::nullopt, "2", {}}},
                                   false, "one", "other");
    EXPECT_EQ(answer.remarks, std::vector<std::string>{"From one to other: 1 changed, 2 only in "
                                                       "the first, 1 only in the second."});
}

TEST(AttributeDifferences, AreForPeopleTheCountAloneWhenThereAreNone) {
    EXPECT_EQ(answerOf({}, false, "one", "other").text, "");
}

struct WordText {
    std::string name;
    std::string text;
    std::optional<std::uint32_t> word;
};

class RegisterWordText : public testing::TestWithParam<WordText> {};

TEST_P(RegisterWordText, IsAWordOrNone) {
    EXPECT_EQ(registerWord(GetParam().text), GetParam().word);
}

INSTANTIATE_TEST_SUITE_P(Each, RegisterWordText,
                         testing::Values(WordText{"Zero", "0", 0U},
                                         WordText{"Greatest", "4294967295", 4294967295U},
                                         WordText{"TooGreat", "4294967296", std::nullopt},
                                         WordText{"Negative", "-1", std::nullopt},
                                         WordText{"Signed", "+1", std::nullopt},
                                         WordText{"List", "1,2", std::nullopt},
                                         WordText{"Empty", "", std::nullopt}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace lanecfg_test
