#include "model_update.h"

#include <lanecfg/ToolSXD4DRCModel.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace lanecfg_test;

TEST(ToolSXD4DRCModel, hasTheIdentifierThatItWasMadeFor) {
    EXPECT_EQ(ToolSXD4DRCModel("corvane:ip:sxd_lane_cfg_brightspan:1.0").getName(),
              "corvane:ip:sxd_lane_cfg_brightspan:1.0");
}

TEST(ToolSXD4DRCModel, isAlsoKnownToTheNamespaceOfTheLibrary) {
    EXPECT_TRUE((std::is_same_v<ToolSXD4DRCModel, sable_lanecfg::ToolSXD4DRCModel>));
}

class Sxd4Update : public testing::TestWithParam<UpdateCase> {
  protected:
    ToolSXD4DRCModel model_{"model"};
};

TEST_P(Sxd4Update, makesOfItsParameter) {
    expectUpdate(model_, GetParam());
}

/// A transmitter's line, and what else is given.
Parameters line(const std::string& lineRate, const std::string& coding,
                const Parameters& others = {}) {
    Parameters parameters = others;
    parameters.insert({{"TX_LINE_RATE", lineRate}, {"TX_PAM_SEL", coding}});
    return parameters;
}

// The numerator of the fraction

UpdateCase numerator(const std::string& name, const Parameters& given, bool editable) {
    return {name, "FRACN_NUMERATOR", given, editable ? before : "0", editable, {}};
}

INSTANTIATE_TEST_SUITE_P(
    FractionNumerator, Sxd4Update,
    testing::Values(numerator("EditableForPam4WithSymbolsAt28", line("56", "PAM4"), true),
                    numerator("ZeroForNrzAt56", line("56", "NRZ"), false),
                    numerator("EditableWhenTheCodingIsMissing", {{"TX_LINE_RATE", "56"}}, true),
                    numerator("EditableWhenTheCodingIsEmpty", line("56", ""), true),
                    numerator("ZeroForPam4InSmallLetters", line("56", "pam4"), false),
                    // In single precision 28.1 would be above.
                    numerator("EditableAt28Point1Sharp", line("28.1", "NRZ"), true),
                    numerator("EditableForPam4WithSymbolsAt28Point1Sharp", line("56.2", "PAM4"),
                              true),
                    // Nothing is lost of it in double precision.
                    numerator("ZeroAboveInDoublePrecision", line("28.10000001", "NRZ"), false),
                    numerator("EditableWithoutLineRate", {{"TX_PAM_SEL", "NRZ"}}, true),
                    numerator("EditableWithAnEmptyLineRate", line("", "NRZ"), true),
                    numerator("EditableForARateThatIsNotANumber", line("nan", "NRZ"), true),
                    numerator("ZeroForAnInfiniteRate", line("inf", "PAM4"), false)),
    caseName<UpdateCase>);

// Whether there is a fraction

UpdateCase fraction(const std::string& name, const Parameters& given, const std::string& value) {
    return {name, "FRACN_ENABLED", given, value, false, {}};
}

INSTANTIATE_TEST_SUITE_P(
    FractionEnabled, Sxd4Update,
    testing::Values(
        // 14000 / 156.25 = 89.6, from symbols at 28 GHz halved.
        fraction("TrueForABrokenFeedbackDivider",
                 line("56", "PAM4", {{"REQUESTED_REFCLK_FREQ", "156.25"}}), "true"),
        // 14000 / 175 = 80.
        fraction("FalseForAWholeFeedbackDivider",
                 line("56", "PAM4", {{"REQUESTED_REFCLK_FREQ", "175"}}), "false"),
        fraction("TakesPam4ForAMissingCoding",
                 {{"TX_LINE_RATE", "56"}, {"REQUESTED_REFCLK_FREQ", "156.25"}}, "true"),
        // Symbols at 56 GHz are above the highest rate with a fraction.
        fraction("FalseForNrzAt56", line("56", "NRZ", {{"REQUESTED_REFCLK_FREQ", "156.25"}}),
                 "false"),
        // 14050 / 156.25 = 89.92.
        fraction("TrueAt28Point1Sharp", line("28.1", "NRZ", {{"REQUESTED_REFCLK_FREQ", "156.25"}}),
                 "true"),
        fraction("FalseWithoutReferenceClock", line("56", "PAM4"), "false"),
        fraction("FalseWithoutLineRate", {{"REQUESTED_REFCLK_FREQ", "156.25"}}, "false"),
        fraction("FalseForAnInfiniteReferenceClock",
                 line("56", "PAM4", {{"REQUESTED_REFCLK_FREQ", "inf"}}), "false"),
        fraction("FalseWithoutAnything", {}, "false")),
    caseName<UpdateCase>);

// The reference clock that can be had

UpdateCase actual(const std::string& name, const Parameters& given, const std::string& value) {
    return {name, "ACTUAL_REFCLK_FREQ", given, value, false, {}};
}

INSTANTIATE_TEST_SUITE_P(
    ActualReferenceClock, Sxd4Update,
    testing::Values(
        actual("IsTheWantedOneWhenItDivides",
               line("56", "PAM4", {{"REQUESTED_REFCLK_FREQ", "175"}}), "175.000000000000"),
        // 14000 / 89.6, whose fraction is cut to 10066329 / 2^24: 156.25 * (1 + 0.6 / 2^24 / 89.6).
        actual("HasTwelveDecimals", line("56", "PAM4", {{"REQUESTED_REFCLK_FREQ", "156.25"}}),
               "156.250000062365"),
        actual("TakesPam4ForAMissingCoding",
               {{"TX_LINE_RATE", "56"}, {"REQUESTED_REFCLK_FREQ", "156.25"}}, "156.250000062365"),
        // 28000 / 160 = 175 is the nearest without a fraction.
        actual("IsTheNearestForNrz", line("56", "NRZ", {{"REQUESTED_REFCLK_FREQ", "156.25"}}),
               "175.000000000000"),
        // 14000 / 160.
        actual("IsTheLowestWithoutAWantedOne", line("56", "PAM4"), "87.500000000000"),
        actual("IsZeroWithoutLineRate", {{"REQUESTED_REFCLK_FREQ", "156.25"}}, "0.000000000000"),
        actual("IsZeroForAWantedOneThatIsNotANumber",
               line("56", "PAM4", {{"REQUESTED_REFCLK_FREQ", "nan"}}), "0.000000000000")),
    caseName<UpdateCase>);

// The reference clocks on offer: P * symbol rate * D * 1000 / (2 * K), with D = 2 up to 14.5 GHz.

/// A range has hundreds of clocks, so a case names its value and its ends.
struct RequestedCase {
    std::string name;
    std::string lineRate;
    std::string coding;
    std::string numerator;
    std::string value;
};

std::ostream& operator<<(std::ostream& stream, const RequestedCase& tested) {
    return stream << tested.coding << " at " << tested.lineRate << ", numerator "
                  << tested.numerator;
}

ModelUpdate requestedClocks(const RequestedCase& tested) {
    ToolSXD4DRCModel model("model");
    return evaluate(model, "REQUESTED_REFCLK_FREQ",
                    {{"TX_LINE_RATE", tested.lineRate},
                     {"TX_PAM_SEL", tested.coding},
                     {"FRACN_NUMERATOR", tested.numerator},
                     {"REQUESTED_REFCLK_FREQ", before}});
}

class RequestedReferenceDefault : public testing::TestWithParam<RequestedCase> {};

TEST_P(RequestedReferenceDefault, becomesTheValueOutOfTheRange) {
    const ModelUpdate update = requestedClocks(GetParam());
    EXPECT_EQ(update.values.at("REQUESTED_REFCLK_FREQ"), GetParam().value);
    EXPECT_THAT(update.range, testing::Contains(GetParam().value));
    EXPECT_FALSE(update.enabled);
}

INSTANTIATE_TEST_SUITE_P(
    , RequestedReferenceDefault,
    testing::Values(
        // 28000 / 80, not 28000 / 32 with which the walk begins.
        RequestedCase{"IsThatOfFeedbackDivider40", "56", "PAM4", "0", "350.0000000"},
        RequestedCase{"TakesPam4ForAnEmptyCoding", "56", "", "0", "350.0000000"},
        RequestedCase{"TakesAnEmptyNumeratorForZero", "56", "PAM4", "", "350.0000000"},
        // 56000 / 80.
        RequestedCase{"IsNotHalvedForNrz", "56", "NRZ", "0", "700.0000000"},
        // 29000 / 80.
        RequestedCase{"IsDoubledAt14Point5Sharp", "14.5", "NRZ", "0", "362.5000000"},
        RequestedCase{"IsDoubledForPam4WithSymbolsAt14Point5", "29", "PAM4", "0", "362.5000000"},
        // 14500.001 / 80.
        RequestedCase{"IsNotDoubledAbove14Point5", "14.500001", "NRZ", "0", "181.2500125"},
        // 66000 / 80 = 825 is too high, 66000 / 82 is not.
        RequestedCase{"TakesALaterFeedbackDivider", "66", "NRZ", "0", "804.8780488"},
        // 4000 / 80 = 50 is too low, and so is all after it. With P = 2 the walk begins with
        // K = 16 again: 8000 / 32.
        RequestedCase{"TakesTheLowestFeedbackDividerOfALaterPreDivider", "2", "NRZ", "0",
                      "250.0000000"},
        // 28000 / (2 * 40.5).
        RequestedCase{"CountsTheNumeratorInTwentySixths", "14", "NRZ", "13", "345.6790123"},
        // 28000 / (2 * 525 / 13); in single precision it would be 346.6666565.
        RequestedCase{"IsMadeInDoublePrecision", "14", "NRZ", "10", "346.6666667"},
        // The fraction takes away 40: K = 40 divides by zero, and 58 is the first to give less than
        // 820: 28000 / 36.
        RequestedCase{"PassesOverADivisionByZero", "14", "NRZ", "-1040", "777.7777778"}),
    caseName<RequestedCase>);

TEST(RequestedReferenceRange, holdsBothLimits) {
    // 2 * 1500 / 50, and 41000 / 50.
    EXPECT_EQ(requestedClocks({"", "0.75", "NRZ", "0", ""}).range.front(), "60.0000000");
    EXPECT_EQ(requestedClocks({"", "41", "NRZ", "0", ""}).range.back(), "820.0000000");
}

TEST(RequestedReferenceRange, endsSharplyAtBothLimits) {
    // The same dividers as above. What the clocking math would still take is not offered.
    EXPECT_THAT(requestedClocks({"", "0.74999999", "NRZ", "0", ""}).range,
                testing::Not(testing::Contains("59.9999992")));
    EXPECT_THAT(requestedClocks({"", "41.00000002", "NRZ", "0", ""}).range,
                testing::Not(testing::Contains("820.0000004")));
}

UpdateCase requested(const std::string& name, const Parameters& given, const std::string& value,
                     const std::vector<std::string>& range) {
    return {name, "REQUESTED_REFCLK_FREQ", given, value, false, range};
}

INSTANTIATE_TEST_SUITE_P(
    RequestedReferenceClock, Sxd4Update,
    testing::Values(
        // 4 * 500 / 32; 4 * 500 / 34 is below 60.
        requested("MayBeTheOnlyOne", line("0.25", "NRZ"), "62.5000000", {"62.5000000"}),
        requested("TakesPam4ForAMissingCoding", {{"TX_LINE_RATE", "0.5"}}, "62.5000000",
                  {"62.5000000"}),
        requested("StaysAtALineRateOfZero", line("0", "PAM4"), before, {}),
        requested("StaysWithoutLineRate", {}, before, {}),
        requested("StaysAtANegativeLineRate", line("-56", "PAM4"), before, {}),
        requested("StaysAtAnInfiniteLineRate", line("inf", "PAM4"), before, {}),
        requested("StaysAtALineRateThatIsNotANumber", line("nan", "PAM4"), before, {}),
        requested("StaysWithAFractionThatIsNotANumber",
                  line("56", "PAM4", {{"FRACN_NUMERATOR", "nan"}}), before, {})),
    caseName<UpdateCase>);

// The switch of the output divider

UpdateCase outputDivider(const std::string& direction, const std::string& name,
                         const std::string& source, bool enabled) {
    return {direction + name,
            direction + "PROGDIV_FREQ_ENABLE",
            {{direction + "_OUTCLK_SOURCE", source}},
            enabled ? "true" : "false",
            enabled,
            {}};
}

INSTANTIATE_TEST_SUITE_P(
    OutputDivider, Sxd4Update,
    testing::Values(outputDivider("TX", "OnAsSource", "TXPROGDIVCLK", true),
                    outputDivider("RX", "OnAsSource", "RXPROGDIVCLK", true),
                    outputDivider("TX", "OffForAnotherSource", "TXOUTCLKPMA", false),
                    outputDivider("RX", "OffForTheWordOfTheOtherDirection", "TXPROGDIVCLK", false)),
    caseName<UpdateCase>);

// The output clock: half the symbol rate in symbols up to 14.5 GHz or in halves of them above, over
// P, goes with the user clock, line rate * 1000 over the width, or a multiple by 2, 4 or 8.

UpdateCase outputClock(const std::string& direction, const std::string& name,
                       const Parameters& parameters, const std::string& value,
                       const std::vector<std::string>& range) {
    UpdateCase tested{direction + name, direction + "PROGDIV_FREQ_VAL", {}, value, false, range};
    for (const auto& [parameter, text] : parameters) {
        tested.given[direction + parameter] = text;
    }
    const auto enable = parameters.find("PROGDIV_FREQ_ENABLE");
    tested.enabled = enable != parameters.end() && enable->second == "true";
    return tested;
}

/// Parameters of a direction whose output divider is on.
Parameters outputClockOf(const std::string& lineRate, const std::string& coding,
                         const std::string& width) {
    return {{"_LINE_RATE", lineRate},
            {"_PAM_SEL", coding},
            {"_INT_DATA_WIDTH", width},
            {"PROGDIV_FREQ_ENABLE", "true"}};
}

/// The same with the switch at another word.
Parameters switched(Parameters parameters, const std::string& word) {
    parameters["PROGDIV_FREQ_ENABLE"] = word;
    return parameters;
}

class OutputClockOfEitherDirection : public testing::TestWithParam<std::string> {
  protected:
    void expectClock(const Parameters& parameters, const std::string& value,
                     const std::vector<std::string>& range) {
        expectUpdate(model_, outputClock(GetParam(), "", parameters, value, range));
    }

    ToolSXD4DRCModel model_{"model"};
};

TEST_P(OutputClockOfEitherDirection, isTheUserClockOutOfItsMultiples) {
    // 14 over 32 is 28000 / 64, 14 over 16 twice that.
    expectClock(outputClockOf("28", "NRZ", "64"), "437.5000000000",
                {"437.5000000000", "875.0000000000"});
}

TEST_P(OutputClockOfEitherDirection, hasTenDecimals) {
    // 11.1234567891 / 2 over 16 is 347.608024659375.
    expectClock(outputClockOf("11.1234567891", "NRZ", "32"), "347.6080246594", {"347.6080246594"});
}

TEST_P(OutputClockOfEitherDirection, isOfferedWhenTheDividerIsOff) {
    for (const char* word : {"false", "TRUE", ""}) {
        expectClock(switched(outputClockOf("28", "NRZ", "64"), word), "437.5000000000",
                    {"437.5000000000", "875.0000000000"});
    }
}

TEST_P(OutputClockOfEitherDirection, staysWhenOnlyMultiplesAreOffered) {
    // 12.890625 over 20 is twice 25781.25 / 80.
    expectClock(outputClockOf("25.78125", "NRZ", "80"), before, {"644.5312500000"});
}

TEST_P(OutputClockOfEitherDirection, countsAMissingWidthAs128) {
    // 218.75, of which 437.5 and 875 are multiples.
    expectClock(outputClockOf("28", "NRZ", ""), before, {"437.5000000000", "875.0000000000"});
}

TEST_P(OutputClockOfEitherDirection, staysWithoutRangeWhenNoneIsOffered) {
    // Half of 28 over a P goes with no 28000 / 101, and no VCO runs at 5, or at half of 56.
    expectClock(outputClockOf("28", "NRZ", "101"), before, {});
    expectClock(outputClockOf("5", "NRZ", "64"), before, {});
    expectClock(outputClockOf("56", "NRZ", "64"), before, {});
}

TEST_P(OutputClockOfEitherDirection, staysWithoutRangeForNumbersOutOfAnyRange) {
    for (const char* number : {"inf", "-inf", "nan", "-28", "0"}) {
        expectClock(outputClockOf(number, "NRZ", "64"), before, {});
    }
    for (const char* number : {"inf", "nan", "0", "1e300", "1e-300"}) {
        expectClock(outputClockOf("28", "NRZ", number), before, {});
    }
}

TEST_P(OutputClockOfEitherDirection, isTheHighestOfAllForANegativeWidth) {
    // A negative user clock is the smaller one of any two, so the difference over it is negative.
    for (const char* width : {"-64", "-inf"}) {
        expectClock(outputClockOf("28", "NRZ", width), "875.0000000000",
                    {"437.5000000000", "700.0000000000", "875.0000000000"});
    }
}

std::string direction(const testing::TestParamInfo<std::string>& info) {
    return info.param;
}

INSTANTIATE_TEST_SUITE_P(, OutputClockOfEitherDirection, testing::Values("TX", "RX"), direction);

INSTANTIATE_TEST_SUITE_P(
    OutputClock, Sxd4Update,
    testing::Values(
        // 14 over 32 is 56000 / 128.
        outputClock("TX", "CountsAMissingRateAs56AndAMissingWidthAs128AndTakesPam4", {},
                    "437.5000000000", {"437.5000000000"}),
        outputClock("TX", "TakesAnEmptyCodingForPam4", outputClockOf("56", "", "128"),
                    "437.5000000000", {"437.5000000000"}),
        // The receiver has a VCO of 28 GHz for it.
        outputClock("RX", "StaysForPam4At56", outputClockOf("56", "PAM4", "128"), before, {}),
        outputClock("RX", "CountsAMissingRateAs56", {}, before, {}),
        // A VCO at the line rate, 14 GHz, gives 7 over 32, 14000 / 64.
        outputClock("RX", "TakesPam4ForAMissingCoding",
                    {{"_LINE_RATE", "14"}, {"_INT_DATA_WIDTH", "64"}}, "218.7500000000",
                    {"218.7500000000"}),
        // The transmitter's VCO would be at half of it.
        outputClock("TX", "StaysForPam4At14", outputClockOf("14", "PAM4", "64"), before, {})),
    caseName<UpdateCase>);

}  // namespace
