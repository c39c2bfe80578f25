#include "block/register_word.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

using sable_lanecfg::placeOfField;
using sable_lanecfg::wordWithField;

struct PlacedField {
    const char* name;
    std::vector<int> offsetAndWidth;
    unsigned int before;
    unsigned int value;
    unsigned int after;
};

class FieldInWord : public ::testing::TestWithParam<PlacedField> {};

TEST_P(FieldInWord, GivesTheWord) {
    const PlacedField& field = GetParam();
    EXPECT_EQ(wordWithField(field.before, placeOfField(field.offsetAndWidth), field.value),
              field.after);
}

constexpr unsigned int allOnes = 0xFFFFFFFFU;

INSTANTIATE_TEST_SUITE_P(
    Rows, FieldInWord,
    ::testing::Values(
        PlacedField{"KeepsTheOtherBits", {8, 4}, 0xFFFFFFFFU, 0x5U, 0xFFFFF5FFU},
        PlacedField{"CutsTheValueToTheWidth", {4, 4}, 0U, 0xABU, 0xB0U},
        PlacedField{"TopBit", {31, 1}, 0U, 1U, 0x80000000U},
        PlacedField{"Width32KeepsAllBits", {0, 32}, 0x12345678U, 0xDEADBEEFU, 0xDEADBEEFU},
        PlacedField{"WidthBeyond32IsTheWholeWord", {0, 40}, 0U, 0xDEADBEEFU, 0xDEADBEEFU},
        PlacedField{"LargestWidthIsTheWholeWord", {0, INT_MAX}, 0U, 0xDEADBEEFU, 0xDEADBEEFU},
        PlacedField{"Width32AtAnOffsetLosesTheTop", {8, 32}, 0x77U, 0xDEADBEEFU, 0xADBEEF77U},
        PlacedField{"FieldAcrossTheTopLosesTheTop", {28, 8}, 0U, 0xABU, 0xB0000000U},
        PlacedField{"Width0ContributesNothing", {4, 0}, 0x12U, allOnes, 0x12U},
        PlacedField{"NegativeWidthContributesNothing", {4, -1}, 0x12U, allOnes, 0x12U},
        PlacedField{"NegativeOffsetContributesNothing", {-1, 4}, 0x12U, allOnes, 0x12U},
        PlacedField{"Offset32ContributesNothing", {32, 4}, 0x12U, allOnes, 0x12U},
        PlacedField{"LargestOffsetContributesNothing", {INT_MAX, 32}, 0x12U, allOnes, 0x12U},
        PlacedField{"NoNumbersAreOffset0Width0", {}, 0x12U, allOnes, 0x12U},
        PlacedField{"OneNumberIsWidth0", {4}, 0x12U, allOnes, 0x12U},
        PlacedField{"AThirdNumberDoesNotCount", {4, 4, 9}, 0U, 0x3U, 0x30U}),
    [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
