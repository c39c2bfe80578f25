#include "model_update.h"
#include "support/global_locale.h"

#include <lanecfg/ToolGTDRCModel.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <locale>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using namespace lanecfg_test;
using testing::ElementsAre;

TEST(ToolGTDRCModel, hasTheIdentifierThatItWasMadeFor) {
    EXPECT_EQ(ToolGTDRCModel("corvane:ip:gt_subcore_ip:1.0").getName(),
              "corvane:ip:gt_subcore_ip:1.0");
}

TEST(ToolGTDRCModel, isAlsoKnownToTheNamespaceOfTheLibrary) {
    EXPECT_TRUE((std::is_same_v<ToolGTDRCModel, sable_lanecfg::ToolGTDRCModel>));
}

class GtUpdate : public testing::TestWithParam<UpdateCase> {
  protected:
    ToolGTDRCModel model_{"model"};
};

TEST_P(GtUpdate, makesOfItsParameter) {
    expectUpdate(model_, GetParam());
}

/// A case of a procedure that is there for both directions, with the names of either.
UpdateCase inDirection(const std::string& direction, const UpdateCase& tested) {
    UpdateCase named{direction + tested.name,
                     direction + tested.parameter,
                     {},
                     tested.value,
                     tested.enabled,
                     tested.range};
    for (const auto& [name, text] : tested.given) {
        named.given[direction + name] = text;
    }
    return named;
}

std::vector<UpdateCase> inBothDirections(const std::vector<UpdateCase>& cases) {
    std::vector<UpdateCase> both;
    for (const UpdateCase& tested : cases) {
        both.push_back(inDirection("TX", tested));
        both.push_back(inDirection("RX", tested));
    }
    return both;
}

// The numerator of the fraction

UpdateCase numerator(const std::string& name, const Parameters& given, bool editable) {
    return {name, "TX_QPLL_FRACN_NUMERATOR", given, editable ? before : "0", editable, {}};
}

INSTANTIATE_TEST_SUITE_P(
    FractionNumerator, GtUpdate,
    testing::Values(
        numerator("EditableOnTheLcpllUpTo16Point375InAnyCaseOfLetters",
                  {{"TX_PLL_TYPE", "lcpll"}, {"TX_LINE_RATE", "16.375"}}, true),
        numerator("ZeroAbove16Point375", {{"TX_PLL_TYPE", "lcpll"}, {"TX_LINE_RATE", "16.376"}},
                  false),
        // The next single above 16.375 is 16.3750019; what is nearer to 16.375 is 16.375.
        numerator("EditableForARateThatIsNotAboveInSinglePrecision",
                  {{"TX_PLL_TYPE", "LCPLL"}, {"TX_LINE_RATE", "16.3750001"}}, true),
        numerator("ZeroForTheNextRateInSinglePrecision",
                  {{"TX_PLL_TYPE", "LCPLL"}, {"TX_LINE_RATE", "16.375002"}}, false),
        numerator("ZeroOnTheRpll", {{"TX_PLL_TYPE", "RPLL"}, {"TX_LINE_RATE", "10.3125"}}, false),
        numerator("ZeroOnAnUnknownPll", {{"TX_PLL_TYPE", "LCPLL0"}, {"TX_LINE_RATE", "1"}}, false),
        numerator("ZeroWithoutPll", {{"TX_LINE_RATE", "10.3125"}}, false),
        numerator("EditableWithoutLineRate", {{"TX_PLL_TYPE", "LCPLL"}}, true),
        numerator("EditableWithAnEmptyLineRate", {{"TX_PLL_TYPE", "LCPLL"}, {"TX_LINE_RATE", ""}},
                  true),
        numerator("EditableForARateThatIsNotANumber",
                  {{"TX_PLL_TYPE", "LCPLL"}, {"TX_LINE_RATE", "nan"}}, true),
        numerator("ZeroForAnInfiniteRate", {{"TX_PLL_TYPE", "LCPLL"}, {"TX_LINE_RATE", "inf"}},
                  false)),
    caseName<UpdateCase>);

// Whether there is a fraction

UpdateCase fraction(const std::string& name, const Parameters& given, const std::string& value) {
    return {name, "_FRACN_ENABLED", given, value, false, {}};
}

INSTANTIATE_TEST_SUITE_P(
    FractionEnabled, GtUpdate,
    testing::ValuesIn(inBothDirections({
        // 8000 / 156.25 = 51.2.
        fraction("TrueForABrokenFeedbackDivider",
                 {{"_PLL_TYPE", "LCPLL"}, {"_LINE_RATE", "8.0"}, {"_REFCLK_FREQUENCY", "156.25"}},
                 "true"),
        // 10312.5 / 156.25 = 66.
        fraction(
            "FalseForAWholeFeedbackDivider",
            {{"_PLL_TYPE", "LCPLL"}, {"_LINE_RATE", "10.3125"}, {"_REFCLK_FREQUENCY", "156.25"}},
            "false"),
        fraction("FalseOnTheRpll",
                 {{"_PLL_TYPE", "RPLL"}, {"_LINE_RATE", "8.0"}, {"_REFCLK_FREQUENCY", "156.25"}},
                 "false"),
        // Unlike for the numerator the word counts as it is.
        fraction("FalseOnThePllInSmallLetters",
                 {{"_PLL_TYPE", "lcpll"}, {"_LINE_RATE", "8.0"}, {"_REFCLK_FREQUENCY", "156.25"}},
                 "false"),
        // 12890.625 / 156.25 = 82.5, at the highest rate with a fraction. The next single above is
        // 25.7812519.
        fraction(
            "TrueForARateThatIsNotAboveTheHighestInSinglePrecision",
            {{"_PLL_TYPE", "LCPLL"}, {"_LINE_RATE", "25.7812501"}, {"_REFCLK_FREQUENCY", "156.25"}},
            "true"),
        fraction(
            "FalseForTheNextRateInSinglePrecision",
            {{"_PLL_TYPE", "LCPLL"}, {"_LINE_RATE", "25.781252"}, {"_REFCLK_FREQUENCY", "156.25"}},
            "false"),
        fraction("FalseWithoutLineRate", {{"_PLL_TYPE", "LCPLL"}, {"_REFCLK_FREQUENCY", "156.25"}},
                 "false"),
        fraction("FalseWithoutReferenceClock", {{"_PLL_TYPE", "LCPLL"}, {"_LINE_RATE", "8.0"}},
                 "false"),
        fraction("FalseWithoutAnything", {}, "false"),
    })),
    caseName<UpdateCase>);

// The reference clock that can be had

UpdateCase actual(const std::string& name, const Parameters& given, const std::string& value) {
    return {name, "_ACTUAL_REFCLK_FREQUENCY", given, value, false, {}};
}

INSTANTIATE_TEST_SUITE_P(
    ActualReferenceClock, GtUpdate,
    testing::ValuesIn(inBothDirections({
        actual("IsTheWantedOneWhenItDivides",
               {{"_PLL_TYPE", "LCPLL"}, {"_LINE_RATE", "10.3125"}, {"_REFCLK_FREQUENCY", "156.25"}},
               "156.250000000000"),
        // 8000 / 51.2, whose fraction is cut to 3355443 / 2^24: 156.25 * (1 + 0.2 / 2^24 / 51.2).
        actual("HasTwelveDecimals",
               {{"_PLL_TYPE", "LCPLL"}, {"_LINE_RATE", "8.0"}, {"_REFCLK_FREQUENCY", "156.25"}},
               "156.250000036380"),
        // VCO 5.15625: 5156.25 * 2 / 80.
        actual("IsTheNearestOneOfTheRpll",
               {{"_PLL_TYPE", "RPLL"}, {"_LINE_RATE", "10.3125"}, {"_REFCLK_FREQUENCY", "156.25"}},
               "128.906250000000"),
        // 9.8304 in single precision is 9.8304 + 4.669e-7, of which 12.5 parts in a thousand are
        // the clock.
        actual("ComesFromALineRateInSinglePrecision",
               {{"_PLL_TYPE", "RPLL"}, {"_LINE_RATE", "9.8304"}, {"_REFCLK_FREQUENCY", "122.88"}},
               "122.880005836487"),
        // 122.88 in single precision is 122.8799973: 10000 of it is 81.3802102, which is cut to 81
        // and 6378867 / 2^24.
        actual("IsNearAWantedOneInSinglePrecision",
               {{"_PLL_TYPE", "LCPLL"}, {"_LINE_RATE", "10"}, {"_REFCLK_FREQUENCY", "122.88"}},
               "122.879997330000"),
        actual("IsThatOfTheRpllForEveryOtherWord",
               {{"_PLL_TYPE", "lcpll"}, {"_LINE_RATE", "10.3125"}, {"_REFCLK_FREQUENCY", "156.25"}},
               "128.906250000000"),
        // No VCO goes so high.
        actual("IsZeroWhenThereIsNone",
               {{"_PLL_TYPE", "LCPLL"}, {"_LINE_RATE", "58.0"}, {"_REFCLK_FREQUENCY", "156.25"}},
               "0.000000000000"),
        actual("IsZeroWithoutLineRate", {{"_PLL_TYPE", "LCPLL"}, {"_REFCLK_FREQUENCY", "156.25"}},
               "0.000000000000"),
        // 10312.5 / 160.
        actual("IsTheLowestWithoutAWantedOne", {{"_PLL_TYPE", "LCPLL"}, {"_LINE_RATE", "10.3125"}},
               "64.453125000000"),
        actual("IsZeroForAnInfiniteWantedOne",
               {{"_PLL_TYPE", "LCPLL"}, {"_LINE_RATE", "10.3125"}, {"_REFCLK_FREQUENCY", "inf"}},
               "0.000000000000"),
        actual("IsZeroForAWantedOneThatIsNotANumber",
               {{"_PLL_TYPE", "RPLL"}, {"_LINE_RATE", "10.3125"}, {"_REFCLK_FREQUENCY", "nan"}},
               "0.000000000000"),
    })),
    caseName<UpdateCase>);

// The reference clocks on offer: on the RPLL (R * M) * rate * 1000 / (2 * N * D) with 2 * N * D of
// 8, 16, 24, 32, 40, 10, 20, 30, 40 and 50 and R * M of 1, 2, 4, 8 and 16.

UpdateCase reference(const std::string& name, const Parameters& given, const std::string& value,
                     const std::vector<std::string>& range) {
    return {name, "TX_REFCLK_FREQUENCY", given, value, false, range};
}

INSTANTIATE_TEST_SUITE_P(
    ReferenceClock, GtUpdate,
    testing::Values(
        // By 8: 1250. By 16: 625, 1250. By 24: 416.7, 833.3. By 32: 312.5, 625, 1250. By 40: 250,
        // 500, 1000. By 10: 1000. By 20: 500, 1000. By 30: 333.3, 666.7, 1333.3. By 50: 200, 400,
        // 800. Thirds are those of single precision: 416.67 is 13653333 / 2^15.
        reference("OfTheRpllIsTheFirstOfItsLargestLineDivider",
                  {{"TX_PLL_TYPE", "RPLL"}, {"TX_LINE_RATE", "10"}}, "250.0000000",
                  {"200.0000000", "250.0000000", "312.5000000", "333.3333435", "400.0000000",
                   "416.6666565", "500.0000000", "625.0000000", "666.6666870", "800.0000000",
                   "833.3333130", "1000.0000000", "1250.0000000", "1333.3333740"}),
        // By 40: 1400. By 50: 1120. The others are higher.
        reference("OfTheRpllInAnyCaseOfLettersReachesUpTo1400",
                  {{"TX_PLL_TYPE", "rPll"}, {"TX_LINE_RATE", "56"}}, "1400.0000000",
                  {"1120.0000000", "1400.0000000"}),
        // By 40: 1500, too high. By 50: 1200.
        reference("OfTheRpllIsThatOfTheSecondFeedbackDividerWhenTheFirstHasNone",
                  {{"TX_PLL_TYPE", "RPLL"}, {"TX_LINE_RATE", "60"}}, "1200.0000000",
                  {"1200.0000000"}),
        // The largest line divider gives 50 by 40 and 40 by 50 at most with M = 1, and 100 and 80
        // only with M = 2.
        reference("OfTheRpllStaysWhenTheUndividedClockHasNone",
                  {{"TX_PLL_TYPE", "RPLL"}, {"TX_LINE_RATE", "0.25"}}, before,
                  {"80.0000000", "83.3333359", "100.0000000", "125.0000000", "133.3333282",
                   "166.6666718", "200.0000000", "250.0000000", "400.0000000", "500.0000000"}),
        // Even by 50 it is 1420.
        reference("OfTheRpllStaysWithoutRangeWhenTheLineIsTooFast",
                  {{"TX_PLL_TYPE", "RPLL"}, {"TX_LINE_RATE", "71"}}, before, {}),
        // 64 * 35.15625 / 26 and / 28; 48 * 35.15625 / 26 is below 80. The pre-divider of 4 comes
        // after the mark, so that its first clock stands.
        reference("OfTheLcpllIsTheFirstOfALaterPreDivider",
                  {{"TX_PLL_TYPE", "LCPLL"}, {"TX_LINE_RATE", "0.03515625"}}, "86.5384598",
                  {"80.3571396", "86.5384598"}),
        // 64 * 43.5 by 26 to 34, and 48 * 43.5 by 26. The dividers come before the unit: 48 *
        // 0.0435 is 2.0879998 in single precision, and a thousand of it is less than 48 * 43.5.
        reference("OfTheLcpllMultipliesDividersAndRateBeforeTheUnit",
                  {{"TX_PLL_TYPE", "LCPLL"}, {"TX_LINE_RATE", "0.0435"}}, "80.3076859",
                  {"80.3076859", "81.8823547", "87.0000000", "92.8000031", "99.4285736",
                   "107.0769196"}),
        reference("StaysAtALineRateOfZero", {{"TX_PLL_TYPE", "LCPLL"}, {"TX_LINE_RATE", "0"}},
                  before, {}),
        reference("OfTheRpllStaysAtALineRateOfZero",
                  {{"TX_PLL_TYPE", "RPLL"}, {"TX_LINE_RATE", "0"}}, before, {}),
        reference("StaysWithoutLineRate", {{"TX_PLL_TYPE", "LCPLL"}}, before, {}),
        reference("StaysAtANegativeLineRate", {{"TX_PLL_TYPE", "RPLL"}, {"TX_LINE_RATE", "-10"}},
                  before, {}),
        reference("StaysAtAnInfiniteLineRate", {{"TX_PLL_TYPE", "LCPLL"}, {"TX_LINE_RATE", "inf"}},
                  before, {}),
        reference("StaysAtALineRateThatIsNotANumber",
                  {{"TX_PLL_TYPE", "RPLL"}, {"TX_LINE_RATE", "nan"}}, before, {}),
        reference("StaysWithAFractionThatIsNotANumber",
                  {{"TX_PLL_TYPE", "LCPLL"},
                   {"TX_LINE_RATE", "10.3125"},
                   {"TX_QPLL_FRACN_NUMERATOR", "nan"}},
                  before, {})),
    caseName<UpdateCase>);

/// On the LCPLL a range has thousands of clocks, so the cases name its value and its ends.
struct LcpllReferenceCase {
    std::string name;
    std::string pllType;
    std::string lineRate;
    std::string numerator;
    std::string value;
};

std::ostream& operator<<(std::ostream& stream, const LcpllReferenceCase& tested) {
    return stream << tested.pllType << " at " << tested.lineRate << ", numerator "
                  << tested.numerator;
}

ModelUpdate referenceClocks(const LcpllReferenceCase& tested) {
    ToolGTDRCModel model("model");
    return evaluate(model, "TX_REFCLK_FREQUENCY",
                    {{"TX_PLL_TYPE", tested.pllType},
                     {"TX_LINE_RATE", tested.lineRate},
                     {"TX_QPLL_FRACN_NUMERATOR", tested.numerator},
                     {"TX_REFCLK_FREQUENCY", before}});
}

class LcpllReferenceDefault : public testing::TestWithParam<LcpllReferenceCase> {};

TEST_P(LcpllReferenceDefault, becomesTheValueOutOfTheRange) {
    const ModelUpdate update = referenceClocks(GetParam());
    EXPECT_EQ(update.values.at("TX_REFCLK_FREQUENCY"), GetParam().value);
    EXPECT_THAT(update.range, testing::Contains(GetParam().value));
    EXPECT_FALSE(update.enabled);
}

INSTANTIATE_TEST_SUITE_P(
    , LcpllReferenceDefault,
    testing::Values(
        // 10312.5 / 80, not 10312.5 / 26 with which the walk begins.
        LcpllReferenceCase{"IsThatOfFeedbackDivider40", "LCPLL", "10.3125", "0", "128.9062500"},
        LcpllReferenceCase{"TakesAnEmptyNumeratorForZero", "LCPLL", "10.3125", "", "128.9062500"},
        LcpllReferenceCase{"IsThatOfEveryUnknownPll", "QPLL", "10", "0", "125.0000000"},
        LcpllReferenceCase{"IsThatOfAMissingPll", "", "10", "0", "125.0000000"},
        // 12.5 * R: 100 is the first of at least 80.
        LcpllReferenceCase{"TakesTheFirstLineDividerWithinTheLimits", "LCPLL", "1", "0",
                           "100.0000000"},
        // 114000 / 80 = 1425 is too high, 114000 / 82 = 1390.2439 as 11388878 / 2^13.
        LcpllReferenceCase{"TakesALaterFeedbackDivider", "LCPLL", "114", "0", "1390.2438965"},
        // 16 * 250 / 80 = 50 is too low, and so is all after it. With P = 2 the walk begins with
        // K = 13 again: R = 8 gives 4000 / 26 as 10082462 / 2^16.
        LcpllReferenceCase{"TakesTheLowestFeedbackDividerOfALaterPreDivider", "LCPLL", "0.25", "0",
                           "153.8461609"},
        // 10312.5 / (2 * 40.5).
        LcpllReferenceCase{"CountsTheNumeratorInTwentySixths", "LCPLL", "10.3125", "13",
                           "127.3148117"},
        // 10 / 26 in single precision makes 40.384617 of 40.384615; in double precision the clock
        // would be 127.6785714.
        LcpllReferenceCase{"IsMadeInSinglePrecision", "LCPLL", "10.3125", "10", "127.6785660"},
        // The fraction takes away 40: K = 40 divides by zero, and 44 is the first to give less than
        // 1400: 10312.5 / 8.
        LcpllReferenceCase{"PassesOverADivisionByZero", "LCPLL", "10.3125", "-1040",
                           "1289.0625000"}),
    caseName<LcpllReferenceCase>);

TEST(LcpllReferenceRange, holdsBothLimits) {
    // 16 * 125 / 25, and 16 * 11375 / 130.
    EXPECT_EQ(referenceClocks({"", "LCPLL", "0.25", "0", ""}).range.front(), "80.0000000");
    EXPECT_EQ(referenceClocks({"", "LCPLL", "22.75", "0", ""}).range.back(), "1400.0000000");
}

/// Parts thousands, as many a locale does.
class GroupedThousands : public std::numpunct<char> {
  protected:
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(ReferenceClockOfTheSubcore, isWrittenAlikeInEveryLocale) {
    ToolGTDRCModel model("model");
    const GlobalLocale grouping(std::locale(std::locale::classic(), new GroupedThousands));
    expectUpdate(model, reference("", {{"TX_PLL_TYPE", "RPLL"}, {"TX_LINE_RATE", "60"}},
                                  "1200.0000000", {"1200.0000000"}));
}

// The switch of the output divider

UpdateCase outputDivider(const std::string& name, const Parameters& given, bool enabled) {
    return {name, "PROGDIV_FREQ_ENABLE", given, enabled ? "true" : "false", enabled, {}};
}

INSTANTIATE_TEST_SUITE_P(
    OutputDivider, GtUpdate,
    testing::Values(
        inDirection("TX", outputDivider("OnAsSource", {{"_OUTCLK_SOURCE", "TXPROGDIVCLK"}}, true)),
        inDirection("RX", outputDivider("OnAsSource", {{"_OUTCLK_SOURCE", "RXPROGDIVCLK"}}, true)),
        inDirection("TX", outputDivider("OffForAnotherSource", {{"_OUTCLK_SOURCE", "TXOUTCLKPMA"}},
                                        false)),
        inDirection("TX", outputDivider("OffForTheWordOfTheOtherDirection",
                                        {{"_OUTCLK_SOURCE", "RXPROGDIVCLK"}}, false)),
        inDirection("RX", outputDivider("OffForTheWordOfTheOtherDirection",
                                        {{"_OUTCLK_SOURCE", "TXPROGDIVCLK"}}, false)),
        inDirection("RX", outputDivider("OffForTheWordInSmallLetters",
                                        {{"_OUTCLK_SOURCE", "rxprogdivclk"}}, false)),
        inDirection("TX", outputDivider("OffWithoutSource", {}, false))),
    caseName<UpdateCase>);

TEST(OutputDividerOfTheSubcore, showsItsUnusedClockAsLongAsAnotherSourceIsChosen) {
    ToolGTDRCModel model("model");
    const Parameters given{{"TX_OUTCLK_SOURCE", "TXOUTCLKPMA"},
                           {"TXPROGDIV_FREQ_ENABLE", "true"},
                           {"TXPROGDIV_FREQ_VAL", "156.250"}};
    const ModelUpdate enable = evaluate(model, "TXPROGDIV_FREQ_ENABLE", given);
    EXPECT_EQ(enable.values.at("TXPROGDIV_FREQ_ENABLE"), "false");
    const ModelUpdate clock = evaluate(model, "TXPROGDIV_FREQ_VAL", enable.values);
    EXPECT_EQ(clock.values.at("TXPROGDIV_FREQ_VAL"), "322.265625");
}

// The PLL behind the output divider

UpdateCase rxSource(const std::string& name, const Parameters& given, const std::string& value) {
    return {name, "RXPROGDIV_FREQ_SOURCE", given, value, false, {value}};
}

INSTANTIATE_TEST_SUITE_P(
    RxOutputClockSource, GtUpdate,
    testing::Values(rxSource("IsThePllOfTheLine", {{"RX_PLL_TYPE", "RPLL"}}, "RPLL"),
                    rxSource("CanNeverBeEdited",
                             {{"RX_PLL_TYPE", "LCPLL"}, {"RXPROGDIV_FREQ_ENABLE", "true"}},
                             "LCPLL"),
                    rxSource("IsEmptyWithoutPll", {}, "")),
    caseName<UpdateCase>);

/// A free RPLL from 100 MHz: VCO 4 over 80 is 50 MHz, as 1000 over 20 bits is.
Parameters freeRpll(const Parameters& changes = {}) {
    Parameters parameters = changes;
    parameters.insert({{"TX_ACTUAL_REFCLK_FREQUENCY", "100"},
                       {"TX_PLL_TYPE", "LCPLL"},
                       {"RX_PLL_TYPE", "LCPLL"},
                       {"TX_DATA_ENCODING", "RAW"},
                       {"TX_BUFFER_MODE", "1"},
                       {"TX_USER_DATA_WIDTH", "20"},
                       {"TXPROGDIV_FREQ_ENABLE", "true"}});
    return parameters;
}

UpdateCase txSource(const std::string& name, const Parameters& given,
                    const std::vector<std::string>& range, bool enabled = true) {
    return {name, "TXPROGDIV_FREQ_SOURCE", given, range.front(), enabled, range};
}

INSTANTIATE_TEST_SUITE_P(
    TxOutputClockSource, GtUpdate,
    testing::Values(
        txSource("MayBeTheFreeRpll", freeRpll(), {"LCPLL", "RPLL"}),
        txSource("IsThePllOfTheLineWhenDisabled", freeRpll({{"TXPROGDIV_FREQ_ENABLE", "false"}}),
                 {"LCPLL"}, false),
        txSource("IsDisabledByEveryOtherWord", freeRpll({{"TXPROGDIV_FREQ_ENABLE", "TRUE"}}),
                 {"LCPLL"}, false),
        txSource("IsEmptyWithoutPll", {}, {""}, false),
        txSource("IsNotTheRpllOfTheReceiver", freeRpll({{"RX_PLL_TYPE", "RPLL"}}), {"LCPLL"}),
        txSource("IsTheRpllOfTheLineAlone", freeRpll({{"TX_PLL_TYPE", "RPLL"}}), {"RPLL"}),
        txSource("IsNoFreeRpllForThePllInSmallLetters", freeRpll({{"TX_PLL_TYPE", "lcpll"}}),
                 {"lcpll"}),
        txSource("IsNoFreeRpllWithoutReferenceClock",
                 freeRpll({{"TX_ACTUAL_REFCLK_FREQUENCY", ""}}), {"LCPLL"}),
        // A width of 0 has no user clock; of 16 it would be 62.5 MHz, VCO 4 over 64.
        txSource("TakesAMissingWidthForZero", freeRpll({{"TX_USER_DATA_WIDTH", ""}}), {"LCPLL"}),
        txSource("WouldOfferTheRpllForAWidthOf16", freeRpll({{"TX_USER_DATA_WIDTH", "16"}}),
                 {"LCPLL", "RPLL"}),
        // 515.625 MHz, from 10.3125 GHz, would take VCO 4.125 over 8, 5.15625 over 10, 5.671875
        // over 11, 6.1875 over 12 or 7.734375 over 15, and none is a multiple of 100 MHz over M.
        txSource("IsAskedForAtALineRateOf1", freeRpll({{"TX_LINE_RATE", "10.3125"}}),
                 {"LCPLL", "RPLL"}),
        // 125 * 32 MHz is the one VCO, and 4 over 33 * 4 is 1 GHz over 33 bits. With 1.2 GHz, which
        // a missing rate counts as elsewhere, it would have to be 4 over 110.
        txSource("IsNotAskedForAtTheRateThatAMissingOneCountsAs",
                 freeRpll({{"TX_ACTUAL_REFCLK_FREQUENCY", "32"}, {"TX_USER_DATA_WIDTH", "33"}}),
                 {"LCPLL", "RPLL"}),
        // Without buffer the slowest clock is 0.5 GHz over 2 * 128, an eighth of which is 1 GHz
        // over 4096.
        txSource("ReachesTheSlowestClockWithoutBuffer",
                 freeRpll({{"TX_USER_DATA_WIDTH", "4096"}, {"TX_BUFFER_MODE", "0"}}),
                 {"LCPLL", "RPLL"}),
        txSource("CountsTheWidthEncodedWith8B10B",
                 freeRpll({{"TX_USER_DATA_WIDTH", "4096"},
                           {"TX_BUFFER_MODE", "0"},
                           {"TX_DATA_ENCODING", "8B10B"}}),
                 {"LCPLL"}),
        txSource("CountsTheWidthEncodedWith64B66B",
                 freeRpll({{"TX_USER_DATA_WIDTH", "4096"},
                           {"TX_BUFFER_MODE", "0"},
                           {"TX_DATA_ENCODING", "64B66B_ASYNC"}}),
                 {"LCPLL"}),
        // VCO 4 over 40 * 64, an eighth of which is 1 GHz over 5120.
        txSource("ReachesSlowerClocksWithBuffer",
                 freeRpll({{"TX_USER_DATA_WIDTH", "4096"}, {"TX_DATA_ENCODING", "8B10B"}}),
                 {"LCPLL", "RPLL"}),
        txSource("IsThePllOfTheLineForNumbersOutOfAnyRange",
                 freeRpll({{"TX_ACTUAL_REFCLK_FREQUENCY", "inf"}, {"TX_USER_DATA_WIDTH", "nan"}}),
                 {"LCPLL"})),
    caseName<UpdateCase>);

// The output clock. The dividers get D * rate / 2, of which the clock is a P * Q-th, and it goes
// with the user clock, rate * 1000 over the encoded width, or a multiple by 2, 4 or 8.

/// Parameters of a direction that is divided from the PLL of its line.
Parameters lineDivider(const std::string& pllType, const std::string& lineRate,
                       const std::string& width, const std::string& buffer = "1") {
    return {{"_PLL_TYPE", pllType},   {"PROGDIV_FREQ_SOURCE", pllType},
            {"_LINE_RATE", lineRate}, {"_USER_DATA_WIDTH", width},
            {"_BUFFER_MODE", buffer}, {"PROGDIV_FREQ_ENABLE", "true"}};
}

UpdateCase outputClock(const std::string& name, const Parameters& given, const std::string& value,
                       const std::vector<std::string>& range, bool enabled = true) {
    return {name, "PROGDIV_FREQ_VAL", given, value, enabled, range};
}

UpdateCase unusedOutputClock(const std::string& name, const Parameters& given) {
    return outputClock(name, given, "322.265625", {"322.265625"}, false);
}

INSTANTIATE_TEST_SUITE_P(
    OutputClock, GtUpdate,
    testing::ValuesIn(inBothDirections({
        unusedOutputClock("IsFixedWithoutSwitch", {}),
        unusedOutputClock("IsFixedWhenDisabled", {{"PROGDIV_FREQ_ENABLE", "false"}}),
        unusedOutputClock("IsFixedForEveryOtherWord", {{"PROGDIV_FREQ_ENABLE", "True"}}),
        // D = 2, and 156.25 MHz: 5 over 32, 16 and 8.
        outputClock("IsTheUserClockOutOfItsMultiples", lineDivider("LCPLL", "5", "32"), "156.250",
                    {"156.250", "312.500", "625.000"}),
        // 322.265625 MHz without buffer: 5.15625 over 2 * 8 and 2 * 4.
        outputClock("HasThreeDecimals", lineDivider("RPLL", "10.3125", "32", "0"), "322.266",
                    {"322.266", "644.531"}),
        // D = 8 and 1.2 GHz: 4.8 over 64, 32, 16 and 8.
        outputClock("CountsAMissingRateAs1Point2AndAMissingWidthAs16", lineDivider("LCPLL", "", ""),
                    "75.000", {"75.000", "150.000", "300.000", "600.000"}),
        // 6250 / 66 MHz is 6.25 GHz over 66, 33 and 16.5, and each comes from two pairs of
        // dividers that differ in the last place: 16.5 * 4 and 5.5 * 12, and so on.
        outputClock("IsOfferedOnceForEachOfEqualTexts", lineDivider("LCPLL", "6.25", "66"),
                    "94.697", {"94.697", "94.697", "189.394", "189.394", "378.788", "378.788"}),
        // No divider makes 6.25 GHz over 101 or over a half, quarter or eighth of it.
        outputClock("StaysWithoutRangeWhenNoneGoesWithTheUserClock",
                    lineDivider("LCPLL", "6.25", "101"), before, {}),
        outputClock("StaysWithoutRangeForAnUnknownRate", lineDivider("LCPLL", "nan", "32"), before,
                    {}),
        outputClock("StaysWithoutRangeForAWidthOfZero", lineDivider("LCPLL", "5", "0"), before, {}),
        outputClock("StaysWithoutRangeForAnInfiniteWidth", lineDivider("LCPLL", "5", "inf"), before,
                    {}),
    })),
    caseName<UpdateCase>);

/// A receiver whose source is told to be another PLL than that of its line.
Parameters otherSource(Parameters parameters) {
    parameters["PROGDIV_FREQ_SOURCE"] = "RPLL";
    return parameters;
}

// VCO 16.375, too high for the RPLL: 8.1875 over 32 and 16 is 16375 / 64 and twice that.
INSTANTIATE_TEST_SUITE_P(
    RxOutputClock, GtUpdate,
    testing::Values(inDirection("RX", outputClock("ComesFromThePllOfTheLineWhateverTheSource",
                                                  otherSource(lineDivider("LCPLL", "16.375", "64")),
                                                  "255.859", {"255.859", "511.719"}))),
    caseName<UpdateCase>);

/// The same with an encoding, whose parameter is named otherwise in each direction.
UpdateCase encodedOutputClock(const std::string& direction, const std::string& encoding,
                              const UpdateCase& tested) {
    UpdateCase encoded = inDirection(direction, tested);
    encoded.given[direction == "TX" ? "TX_DATA_ENCODING" : "RX_DATA_DECODING"] = encoding;
    return encoded;
}

// 3.125 GHz over 20 bits is 156.25 MHz: 6.25 (D = 4) over 40, 20 and 10.
const UpdateCase encoded8B10B =
    outputClock("CountsTheWidthEncodedWith8B10B", lineDivider("LCPLL", "3.125", "16"), "156.250",
                {"156.250", "312.500", "625.000"});
// 25.78125 GHz over 66 bits is 390.625 MHz: 12.890625 over 33 and 16.5.
const UpdateCase encoded64B66B =
    outputClock("CountsTheWidthEncodedWith64B66B", lineDivider("LCPLL", "25.78125", "64"),
                "390.625", {"390.625", "781.250"});

INSTANTIATE_TEST_SUITE_P(EncodedOutputClock, GtUpdate,
                         testing::Values(encodedOutputClock("TX", "8B10B", encoded8B10B),
                                         encodedOutputClock("RX", "8B10B", encoded8B10B),
                                         encodedOutputClock("TX", "64B66B_ASYNC", encoded64B66B),
                                         encodedOutputClock("RX", "64B66B_ASYNC", encoded64B66B)),
                         caseName<UpdateCase>);

/// A transmitter whose output clock is made by a free RPLL.
Parameters freeRpllClock(const std::string& refclk, const std::string& lineRate,
                         const std::string& width, const std::string& rxPllType = "LCPLL") {
    return freeRpll({{"TX_ACTUAL_REFCLK_FREQUENCY", refclk},
                     {"RX_PLL_TYPE", rxPllType},
                     {"TX_LINE_RATE", lineRate},
                     {"TX_USER_DATA_WIDTH", width},
                     {"TXPROGDIV_FREQ_SOURCE", "RPLL"}});
}

UpdateCase txOutputClock(const std::string& name, const Parameters& given, const std::string& value,
                         const std::vector<std::string>& range) {
    return {name, "TXPROGDIV_FREQ_VAL", given, value, true, range};
}

INSTANTIATE_TEST_SUITE_P(
    FreeRpllOutputClock, GtUpdate,
    testing::Values(
        // 252.51 MHz lies between 100 * 101 / 2 over 20 and 100 * 125 / 3 over 16.5, and agrees
        // with both.
        txOutputClock("IsTheHighestThatAgrees", freeRpllClock("100", "2.5251", "10"), "252.525",
                      {"252.500", "252.525", "505.000"}),
        // 9.9 GHz in single precision is a little less, but a thousand of it is 9900 again, over 24
        // bits 412.5 MHz. 95.920639 * 43 over 10 is 412.458748: a ten-thousandth and a little away
        // from it. From 412.499984, without that rounding, it would be a little less.
        txOutputClock("IsComparedWithAUserClockInSinglePrecision",
                      freeRpllClock("95.920639", "9.9", "24"), before, {"412.459", "824.917"}),
        // 125 * 32 MHz is the one VCO, and 4 over 16, 8 and 4 goes with 8 GHz over 32 bits.
        txOutputClock("ComesFromTheRpllThatTheReceiverLeavesFree", freeRpllClock("32", "8", "32"),
                      "250.000", {"250.000", "500.000", "1000.000"}),
        txOutputClock("StaysWhenTheReceiverRunsOnTheRpll", freeRpllClock("32", "8", "32", "RPLL"),
                      before, {}),
        txOutputClock("StaysForASourceThatDoesNotGoWithThePlls",
                      freeRpll({{"TX_PLL_TYPE", "RPLL"},
                                {"TX_LINE_RATE", "5"},
                                {"TXPROGDIV_FREQ_SOURCE", "LCPLL"}}),
                      before, {}),
        txOutputClock("StaysForAnUnknownSource",
                      freeRpll({{"TX_LINE_RATE", "5"}, {"TXPROGDIV_FREQ_SOURCE", "OTHER"}}), before,
                      {})),
    caseName<UpdateCase>);

}  // namespace
