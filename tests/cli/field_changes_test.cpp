#include "field_changes.h"

#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;

const std::map<std::string, std::vector<int>> fields = {{"R.LOW", {0, 4}}, {"R.MIDDLE", {4, 8}}};

std::string changesAt(std::size_t rate, const std::vector<RegisterWrite>& writes) {
    WriteOverRates pointers;
    for (const RegisterWrite& write : writes) {
        pointers.push_back(&write);
    }
    return fieldChanges(pointers, rate, fields);
}

RegisterWrite whole(std::uint32_t value) {
    return {0x10, std::nullopt, value};
}

RegisterWrite masked(std::uint32_t mask, std::uint32_t value) {
    return {0x10, mask, value};
}

TEST(FieldChanges, AreTheOldAndTheNewValueOfEachField) {
    EXPECT_EQ(changesAt(1, {whole(0x0125), whole(0x0347)}), "LOW 5 -> 7, MIDDLE 18 -> 52");
}

TEST(FieldChanges, LeaveOutFieldsThatStay) {
    EXPECT_EQ(changesAt(1, {whole(0x0125), whole(0x0127)}), "LOW 5 -> 7");
}

TEST(FieldChanges, AreNoneWhenNothingChanges) {
    EXPECT_EQ(changesAt(1, {whole(5), whole(5)}), "");
}

TEST(FieldChanges, OfTheFirstRateAreTheFieldsThatAnyRateChanges) {
    EXPECT_EQ(changesAt(0, {whole(0x0125), whole(0x0125), whole(0x0127)}), "LOW 5");
}

TEST(FieldChanges, OfTheOnlyRateAreNone) {
    EXPECT_EQ(changesAt(0, {whole(0x0125)}), "");
}

TEST(FieldChanges, CountOnlyBitsThatAreWritten) {
    EXPECT_EQ(changesAt(1, {masked(0x3, 0x0125), masked(0x3, 0x0346)}), "LOW 1 -> 2");
}

TEST(FieldChanges, ShowBitsOutsideOfAllFields) {
    EXPECT_EQ(changesAt(1, {whole(0x00001005), whole(0x00006006)}),
              "LOW 5 -> 6, bits 0x00007000 0x00001000 -> 0x00006000");
}

TEST(FieldDifferences, AreFoundByNameWhereverTheFieldIs) {
    const FieldPlaces elsewhere = {{"R.LOW", {8, 4}}, {"R.MIDDLE", {0, 8}}};
    EXPECT_EQ(textOf(fieldDifferences({0x0125, fields}, {0x0612, elsewhere})), "LOW 5 -> 6");
}

TEST(FieldDifferences, ShowAFieldThatOnlyOneSideHas) {
    const FieldPlaces more = {{"R.LOW", {0, 4}}, {"R.MIDDLE", {4, 8}}, {"R.NEW", {12, 1}}};
    EXPECT_EQ(textOf(fieldDifferences({0x0125, fields}, {0x1125, more})), "NEW none -> 1");
    EXPECT_EQ(textOf(fieldDifferences({0x1125, more}, {0x0125, fields})), "NEW 1 -> none");
}

TEST(FieldDifferences, ShowBitsThatAreInNoFieldOfTheirSide) {
    const FieldPlaces none;
    EXPECT_EQ(textOf(fieldDifferences({0x1, none}, {0x3, none})),
              "bits 0x00000002 0x00000000 -> 0x00000002");
}

}  // namespace
}  // namespace lanecfg_test
