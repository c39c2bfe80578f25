#include "support/captured_messages.h"
#include "support/clean_log.h"

#include <lanecfg/rule_engine_utilities.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using sable_lanecfg::rule_engine_utilities;
using sable_lanecfg::variableMap;
using sable_lanecfg::varInfo;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// ---- log ------------------------------------------------------------------------------------

class Log : public testing::Test {
  private:
    const lanecfg_test::CleanLog cleanLog_;
};

TEST_F(Log, KeepsLinesInOrderOfWriting) {
    rule_engine_utilities::write_log("second to none");
    rule_engine_utilities::write_log("");
    rule_engine_utilities::write_log("first");

    EXPECT_THAT(rule_engine_utilities::get_log_content(),
                ElementsAre("second to none", "", "first"));
}

TEST_F(Log, ContentIsACopyThatLaterLinesDoNotChange) {
    rule_engine_utilities::write_log("one");
    const auto content = rule_engine_utilities::get_log_content();
    rule_engine_utilities::write_log("two");

    EXPECT_THAT(content, ElementsAre("one"));
}

TEST_F(Log, IsEmptyAfterCleaning) {
    rule_engine_utilities::write_log("one");
    rule_engine_utilities::clean_log();

    EXPECT_THAT(rule_engine_utilities::get_log_content(), IsEmpty());
}

TEST_F(Log, DoesNotHoldMessages) {
    const lanecfg_test::CapturedMessages messages;
    rule_engine_utilities::addMessage("to the user", "info");

    EXPECT_THAT(rule_engine_utilities::get_log_content(), IsEmpty());
}

TEST_F(Log, LinesAreNoMessages) {
    const lanecfg_test::CapturedMessages messages;
    rule_engine_utilities::write_log("to the log");

    EXPECT_THAT(messages.records(), IsEmpty());
}

// ---- messages -------------------------------------------------------------------------------

struct Severity {
    std::string word;
    unsigned mask;
    int line;
};

class Messages : public testing::TestWithParam<Severity> {
  protected:
    lanecfg_test::CapturedMessages messages;
};

TEST_P(Messages, GoOutWithTheMaskAndLineOfTheirSeverity) {
    rule_engine_utilities::addMessage("Quad 3 does not pack", GetParam().word);

    ASSERT_EQ(messages.records().size(), 1U);
    const ToolMsgRecord& record = messages.records().front();
    EXPECT_EQ(record.severity, GetParam().mask);
    EXPECT_EQ(record.line, GetParam().line);
    EXPECT_EQ(record.file, "ip/rule_engine/rule_engine_base/rule_engine_utilities");
    EXPECT_EQ(record.subsystem, "ip");
    EXPECT_EQ(record.argumentCount, 0);
    EXPECT_THAT(record.arguments, IsEmpty());
    EXPECT_EQ(record.format, "Quad 3 does not pack");
}

TEST_P(Messages, KeepAPercentSignAsItIs) {
    rule_engine_utilities::addMessage("100% of %s", GetParam().word);

    EXPECT_THAT(messages.texts(), ElementsAre("100% of %s"));
}

INSTANTIATE_TEST_SUITE_P(
    RuleEngineUtilities, Messages,
    testing::Values(Severity{"error", 0x20000000, 144}, Severity{"ERROR", 0x20000000, 144},
                    Severity{"info", 0x4000000, 148}, Severity{"Info", 0x4000000, 148},
                    Severity{"warning", 0x8000000, 152}, Severity{"Warning", 0x8000000, 152},
                    Severity{"critical_warning", 0x10000000, 156},
                    Severity{"CRITICAL_WARNING", 0x10000000, 156}),
    [](const auto& tested) { return tested.param.word; });

TEST(RuleEngineUtilities, MessageOfAnUnknownSeverityIsDropped) {
    const lanecfg_test::CapturedMessages messages;
    for (const char* const word : {"fatal", "", "status", "critical warning", "error ", "errors"}) {
        rule_engine_utilities::addMessage("x", word);
    }

    EXPECT_THAT(messages.records(), IsEmpty());
}

// ---- conversions ----------------------------------------------------------------------------

TEST(RuleEngineUtilities, StringOfANumberIsDecimal) {
    EXPECT_EQ(rule_engine_utilities::getString(0), "0");
    EXPECT_EQ(rule_engine_utilities::getString(-12), "-12");
    EXPECT_EQ(rule_engine_utilities::getString(2147483647), "2147483647");
}

TEST(RuleEngineUtilities, UnsignedNumberIsReadFromTheStartOfTheText) {
    EXPECT_EQ(rule_engine_utilities::getInt("12"), 12U);
    EXPECT_EQ(rule_engine_utilities::getInt("  12"), 12U);
    EXPECT_EQ(rule_engine_utilities::getInt("12abc"), 12U);
    EXPECT_EQ(rule_engine_utilities::getInt("12.9"), 12U);
    EXPECT_EQ(rule_engine_utilities::getInt("0x10"), 0U);
    EXPECT_EQ(rule_engine_utilities::getInt("4294967295"), 4294967295U);
}

TEST(RuleEngineUtilities, UnsignedNumberOfTextWithoutOneIsZero) {
    EXPECT_EQ(rule_engine_utilities::getInt(""), 0U);
    EXPECT_EQ(rule_engine_utilities::getInt("abc"), 0U);
    EXPECT_EQ(rule_engine_utilities::getInt("-"), 0U);
}

TEST(RuleEngineUtilities, UnsignedNumberOutOfRangeIsWhatTheStreamMakesOfIt) {
    EXPECT_EQ(rule_engine_utilities::getInt("-1"), 4294967295U);
    EXPECT_EQ(rule_engine_utilities::getInt("4294967296"), 4294967295U);
}

TEST(RuleEngineUtilities, DoubleIsReadFromTheStartOfTheText) {
    EXPECT_EQ(rule_engine_utilities::getDouble("1.5e3"), 1500.0);
    EXPECT_EQ(rule_engine_utilities::getDouble("10.3125 GHz"), 10.3125);
    EXPECT_EQ(rule_engine_utilities::getDouble("-0.5"), -0.5);
    EXPECT_EQ(rule_engine_utilities::getDouble("1e999"), std::numeric_limits<double>::max());
}

TEST(RuleEngineUtilities, DoubleOfTextWithoutOneIsZero) {
    EXPECT_EQ(rule_engine_utilities::getDouble(""), 0.0);
    EXPECT_EQ(rule_engine_utilities::getDouble("abc"), 0.0);
    EXPECT_EQ(rule_engine_utilities::getDouble("12e"), 0.0);
}

TEST(RuleEngineUtilities, FloatIsReadFromTheStartOfTheText) {
    EXPECT_EQ(rule_engine_utilities::getFloat("0.1"), 0.1F);
    EXPECT_EQ(rule_engine_utilities::getFloat("2.5x"), 2.5F);
    EXPECT_EQ(rule_engine_utilities::getFloat("1e39"), std::numeric_limits<float>::max());
}

TEST(RuleEngineUtilities, FloatIsRoundedOnceAndNotThroughDouble) {
    // Just above the middle of 1 and the next float, by less than a double can tell: rounding to
    // double first would land on the middle and then on 1.
    EXPECT_EQ(rule_engine_utilities::getFloat("1.00000005960464477539062500001"),
              1.0F + std::numeric_limits<float>::epsilon());
}

TEST(RuleEngineUtilities, FloatOfTextWithoutOneIsZero) {
    EXPECT_EQ(rule_engine_utilities::getFloat(""), 0.0F);
    EXPECT_EQ(rule_engine_utilities::getFloat("abc"), 0.0F);
}

TEST(RuleEngineUtilities, TextIsTrueExactlyForOneAndTrue) {
    for (const char* const text : {"1", "true", "TRUE", "True"}) {
        EXPECT_TRUE(rule_engine_utilities::stringToBool(text)) << text;
    }
    for (const char* const text : {"", "0", "false", "on", "yes", "01", "1 ", " true", "t"}) {
        EXPECT_FALSE(rule_engine_utilities::stringToBool(text)) << text;
    }
}

TEST(RuleEngineUtilities, FlagAsText) {
    EXPECT_EQ(rule_engine_utilities::boolToString(true), "true");
    EXPECT_EQ(rule_engine_utilities::boolToString(false), "false");
}

// ---- texts ----------------------------------------------------------------------------------

TEST(RuleEngineUtilities, DepthCountsClosingBracesAtTheEnd) {
    EXPECT_EQ(rule_engine_utilities::calculateDeep({"a", "}", "}"}), 2);
    EXPECT_EQ(rule_engine_utilities::calculateDeep({"}", "a"}), 0);
    EXPECT_EQ(rule_engine_utilities::calculateDeep({"}", "a", "}"}), 1);
    EXPECT_EQ(rule_engine_utilities::calculateDeep({"}", "}"}), 2);
    EXPECT_EQ(rule_engine_utilities::calculateDeep({"a", "}}"}), 0);
    EXPECT_EQ(rule_engine_utilities::calculateDeep({}), 0);
}

struct Replacement {
    std::string description;
    std::string text;
    std::string from;
    std::string to;
    std::string result;
};

class Replacements : public testing::TestWithParam<Replacement> {};

TEST_P(Replacements, GoFromLeftToRight) {
    std::string text = GetParam().text;
    rule_engine_utilities::find_and_replace(text, GetParam().from, GetParam().to);

    EXPECT_EQ(text, GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(
    RuleEngineUtilities, Replacements,
    testing::Values(Replacement{"InsertedTextIsNotSearched", "banana", "a", "aa", "baanaanaa"},
                    Replacement{"OverlapsBelongToTheLeft", "aaaaa", "aa", "b", "bba"},
                    Replacement{"Shorter", "HSCLK0_HSCLK1", "HSCLK", "C", "C0_C1"},
                    Replacement{"Removed", "a,b,c", ",", "", "abc"},
                    Replacement{"WholeText", "abc", "abc", "x", "x"},
                    Replacement{"NotThere", "abc", "d", "x", "abc"},
                    Replacement{"EmptyFromChangesNothing", "abc", "", "x", "abc"},
                    Replacement{"EmptyText", "", "a", "x", ""}),
    [](const auto& tested) { return tested.param.description; });

// ---- counts ---------------------------------------------------------------------------------

struct QuadCounts {
    std::string family;
    int channels;
    int clockUnits;
    int controlUnits;
    int calibrationUnits;
    int channelsOfAClockUnit;
};

class FamilyCounts : public testing::TestWithParam<QuadCounts> {};

TEST_P(FamilyCounts, AreThoseOfItsQuad) {
    const QuadCounts& counts = GetParam();

    EXPECT_EQ(rule_engine_utilities::ChPerBlock(counts.family), counts.channels);
    EXPECT_EQ(rule_engine_utilities::HsClkPerBlock(counts.family), counts.clockUnits);
    EXPECT_EQ(rule_engine_utilities::CtrlPerBlock(counts.family), counts.controlUnits);
    EXPECT_EQ(rule_engine_utilities::RcalPerBlock(counts.family), counts.calibrationUnits);
    EXPECT_EQ(rule_engine_utilities::ChPerHsClk(counts.family), counts.channelsOfAClockUnit);
}

INSTANTIATE_TEST_SUITE_P(
    RuleEngineUtilities, FamilyCounts,
    testing::Values(QuadCounts{"SXA", 4, 2, 1, 2, 2}, QuadCounts{"SXB", 4, 2, 1, 2, 2},
                    QuadCounts{"SXC", 4, 2, 1, 2, 2}, QuadCounts{"SXD4", 2, 1, 1, 1, 2},
                    QuadCounts{"sxd4", 4, 2, 1, 2, 2}, QuadCounts{"", 4, 2, 1, 2, 2}),
    [](const auto& tested) {
        return tested.param.family.empty() ? "NoWord" : tested.param.family;
    });

// ---- address order --------------------------------------------------------------------------

using record = std::map<std::string, std::string>;

TEST(RuleEngineUtilities, AddressesAreOrderedAsNumbers) {
    EXPECT_TRUE(rule_engine_utilities::addressCompare({{"Address", "9"}}, {{"Address", "10"}}));
    EXPECT_FALSE(rule_engine_utilities::addressCompare({{"Address", "10"}}, {{"Address", "9"}}));
    EXPECT_TRUE(rule_engine_utilities::addressCompare({{"Address", "-1"}}, {{"Address", "0"}}));
}

TEST(RuleEngineUtilities, EqualAddressesAreInNoOrder) {
    EXPECT_FALSE(rule_engine_utilities::addressCompare({{"Address", "7"}}, {{"Address", "07"}}));
    EXPECT_FALSE(rule_engine_utilities::addressCompare({{"Address", "07"}}, {{"Address", "7"}}));
}

TEST(RuleEngineUtilities, AddressIsReadInBaseTenUpToWhatIsNoDigit) {
    EXPECT_FALSE(rule_engine_utilities::addressCompare({{"Address", "0x10"}}, {{"Address", "0"}}));
    EXPECT_TRUE(rule_engine_utilities::addressCompare({{"Address", "8 a"}}, {{"Address", "9"}}));
}

TEST(RuleEngineUtilities, AddressThatIsMissingOrNoNumberIsAnInvalidArgument) {
    const record good{{"Address", "1"}};
    const record missing{{"Name", "1"}};
    const record word{{"Address", "none"}};

    EXPECT_THROW(rule_engine_utilities::addressCompare(missing, good), std::invalid_argument);
    EXPECT_THROW(rule_engine_utilities::addressCompare(good, missing), std::invalid_argument);
    EXPECT_THROW(rule_engine_utilities::addressCompare(word, good), std::invalid_argument);
    EXPECT_EQ(missing.count("Address"), 0U);
}

TEST(RuleEngineUtilities, AddressBeyondAnIntIsOutOfRange) {
    EXPECT_THROW(
        rule_engine_utilities::addressCompare({{"Address", "2147483648"}}, {{"Address", "0"}}),
        std::out_of_range);
    EXPECT_TRUE(
        rule_engine_utilities::addressCompare({{"Address", "0"}}, {{"Address", "2147483647"}}));
}

// ---- snapshots as text ----------------------------------------------------------------------

TEST(RuleEngineUtilities, SerializedVariableIsItsRuleNumberAndItsValue) {
    EXPECT_THAT(rule_engine_utilities::serializeMap({{"v", varInfo{7, 2.5}}}),
                ElementsAre(Pair("v", ElementsAre("7", "2.500000"))));
}

TEST(RuleEngineUtilities, EveryAlternativeIsSerializedInKeyOrder) {
    const variableMap vars{
        {"g_list", {boost::none, std::vector<double>{1.0}}},
        {"f_double", {12, 10312500000.0}},
        {"e_float", {boost::none, 0.1F}},
        {"d_false", {boost::none, false}},
        {"c_true", {boost::none, true}},
        {"b_number", {0, 4294967295U}},
        {"a_text", {boost::none, std::string("LCPLL")}},
        {"B_blank", {3, boost::blank()}},
    };

    EXPECT_THAT(
        rule_engine_utilities::serializeMap(vars),
        ElementsAre(
            Pair("B_blank", ElementsAre("3", "None")), Pair("a_text", ElementsAre("None", "LCPLL")),
            Pair("b_number", ElementsAre("0", "4294967295")),
            Pair("c_true", ElementsAre("None", "1")), Pair("d_false", ElementsAre("None", "0")),
            Pair("e_float", ElementsAre("None", "0.100000")),
            Pair("f_double", ElementsAre("12", "10312500000.000000")),
            Pair("g_list",
                 ElementsAre("None", "Vector of Doubls (Unimplemented in the dumping function)"))));
}

TEST(RuleEngineUtilities, NoVariablesSerializeToNothing) {
    EXPECT_THAT(rule_engine_utilities::serializeMap({}), IsEmpty());
}

TEST(RuleEngineUtilities, RepackagedSnapshotsKeepTheirChannelsAndPasses) {
    const variableMap first{{"a", {1, 1U}}};
    const variableMap second{{"a", {1, 2U}}, {"b", {boost::none, true}}};

    EXPECT_THAT(rule_engine_utilities::repkgVarMap({{first, second}, {}, {second, {}}}),
                ElementsAre(ElementsAre(rule_engine_utilities::serializeMap(first),
                                        rule_engine_utilities::serializeMap(second)),
                            IsEmpty(),
                            ElementsAre(rule_engine_utilities::serializeMap(second), IsEmpty())));
}

}  // namespace
