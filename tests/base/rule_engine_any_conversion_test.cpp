#include "base/dynamic_values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace {

using lanecfg_test::emptySequence;
using lanecfg_test::mapOf;
using lanecfg_test::oneOfEachScalar;
using lanecfg_test::oneOfEachType;
using lanecfg_test::sequenceOf;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned int highestUnsigned = std::numeric_limits<unsigned int>::max();

using RuleEngineAnyConversion = lanecfg_test::DynamicValueTest;

TEST_F(RuleEngineAnyConversion, convertsToInt) {
    EXPECT_EQ(rule_engine_any(-5).toInt(), -5);
    EXPECT_EQ(rule_engine_any(5U).toInt(), 5);
    EXPECT_EQ(rule_engine_any(highestUnsigned).toInt(), -1);
    EXPECT_EQ(rule_engine_any("12").toInt(), 12);
    EXPECT_EQ(rule_engine_any("-12").toInt(), -12);
    EXPECT_EQ(rule_engine_any(true).toInt(), 1);
    EXPECT_EQ(rule_engine_any(false).toInt(), 0);
    EXPECT_THAT(messages_.records(), IsEmpty());
}

TEST_F(RuleEngineAnyConversion, convertsToUInt) {
    EXPECT_EQ(rule_engine_any(5U).toUInt(), 5U);
    EXPECT_EQ(rule_engine_any(-1).toUInt(), highestUnsigned);
    EXPECT_EQ(rule_engine_any("12").toUInt(), 12U);
    EXPECT_EQ(rule_engine_any(true).toUInt(), 1U);
    EXPECT_EQ(rule_engine_any(false).toUInt(), 0U);
    EXPECT_THAT(messages_.records(), IsEmpty());
}

TEST_F(RuleEngineAnyConversion, convertsToDouble) {
    EXPECT_EQ(rule_engine_any(5U).toDouble(), 5.0);
    EXPECT_EQ(rule_engine_any(-5).toDouble(), -5.0);
    EXPECT_EQ(rule_engine_any("1.5e3").toDouble(), 1500.0);
    EXPECT_EQ(rule_engine_any(0.25).toDouble(), 0.25);
    EXPECT_THAT(messages_.records(), IsEmpty());
}

TEST_F(RuleEngineAnyConversion, convertsToBool) {
    EXPECT_TRUE(rule_engine_any(7U).toBool());
    EXPECT_FALSE(rule_engine_any(0U).toBool());
    EXPECT_TRUE(rule_engine_any(-7).toBool());
    EXPECT_FALSE(rule_engine_any(0).toBool());
    EXPECT_TRUE(rule_engine_any(true).toBool());
    EXPECT_FALSE(rule_engine_any(false).toBool());
    EXPECT_TRUE(rule_engine_any("TRUE").toBool());
    EXPECT_TRUE(rule_engine_any("1").toBool());
    EXPECT_FALSE(rule_engine_any("False").toBool());
    EXPECT_FALSE(rule_engine_any("0").toBool());
    EXPECT_THAT(messages_.records(), IsEmpty());
}

TEST_F(RuleEngineAnyConversion, sequenceOfOneElementConvertsToBoolByIt) {
    EXPECT_TRUE(sequenceOf({sequenceOf({"true"})}).toBool());
    EXPECT_FALSE(sequenceOf({0}).toBool());
    EXPECT_THAT(messages_.records(), IsEmpty());
    EXPECT_FALSE(sequenceOf({"YES"}).toBool());
    EXPECT_THAT(messages_.texts(), ElementsAre("Bad conversion from std::string to bool"));
}

TEST_F(RuleEngineAnyConversion, badConversionGoesToTheHostAsAnError) {
    EXPECT_EQ(rule_engine_any("twelve").toInt(), 0);
    ASSERT_EQ(messages_.records().size(), 1U);
    const ToolMsgRecord& record = messages_.records().front();
    EXPECT_EQ(record.argumentCount, 2);
    EXPECT_EQ(record.file, "ip/rule_engine/rule_engine_base/rule_engine_any");
    EXPECT_EQ(record.line, 358);
    EXPECT_EQ(record.subsystem, "ip");
    EXPECT_EQ(record.severity, 0x20000000U);
    EXPECT_EQ(record.format, "Bad conversion from %s to %s");
    EXPECT_THAT(record.arguments, ElementsAre("std::string", "int"));
    EXPECT_EQ(record.text(), "Bad conversion from std::string to int");
}

struct BadConversion {
    const char* name;
    rule_engine_any value;
    const char* target;
};

class BadConversions : public testing::TestWithParam<BadConversion> {
  protected:
    /// Converts the value and says whether what came is the default of the target.
    static bool givesDefault() {
        const std::string target = GetParam().target;
        const rule_engine_any& value = GetParam().value;
        if (target == "int") {
            return value.toInt() == 0;
        }
        if (target == "uint") {
            return value.toUInt() == 0;
        }
        if (target == "double") {
            return value.toDouble() == 0.0;
        }
        return !value.toBool();
    }

    lanecfg_test::CapturedMessages messages_;
};

TEST_P(BadConversions, reportBothTypesAndGiveTheDefault) {
    EXPECT_TRUE(givesDefault());
    EXPECT_THAT(
        messages_.texts(0x20000000U),
        ElementsAre("Bad conversion from " + GetParam().value.type() + " to " + GetParam().target));
}

INSTANTIATE_TEST_SUITE_P(
    , BadConversions,
    testing::Values(
        BadConversion{"doubleToInt", 1.5, "int"}, BadConversion{"nullToInt", {}, "int"},
        BadConversion{"sequenceToInt", sequenceOf({1}), "int"},
        BadConversion{"mapToInt", mapOf("key", 1), "int"},
        BadConversion{"numberWithTextToInt", "12abc", "int"},
        BadConversion{"emptyTextToInt", "", "int"},
        BadConversion{"numberBeyondIntToInt", "2147483648", "int"},
        BadConversion{"fractionToInt", "1.5", "int"}, BadConversion{"doubleToUInt", 1.5, "uint"},
        BadConversion{"nullToUInt", {}, "uint"},
        BadConversion{"sequenceToUInt", sequenceOf({1}), "uint"},
        BadConversion{"mapToUInt", mapOf("key", 1), "uint"},
        BadConversion{"textToUInt", "twelve", "uint"},
        BadConversion{"boolToDouble", true, "double"}, BadConversion{"nullToDouble", {}, "double"},
        BadConversion{"sequenceToDouble", sequenceOf({1}), "double"},
        BadConversion{"mapToDouble", mapOf("key", 1), "double"},
        BadConversion{"textToDouble", "1.5 GHz", "double"},
        BadConversion{"doubleToBool", 1.0, "bool"}, BadConversion{"nullToBool", {}, "bool"},
        BadConversion{"emptySequenceToBool", emptySequence(), "bool"},
        BadConversion{"longerSequenceToBool", sequenceOf({1, 1}), "bool"},
        BadConversion{"mapToBool", mapOf("key", 1), "bool"},
        BadConversion{"yesToBool", "YES", "bool"}, BadConversion{"emptyTextToBool", "", "bool"}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(RuleEngineAnyConversion, convertsToText) {
    EXPECT_EQ(rule_engine_any(5U).toStr(), "5");
    EXPECT_EQ(rule_engine_any(-5).toStr(), "-5");
    EXPECT_EQ(rule_engine_any("as it is").toStr(), "as it is");
    EXPECT_EQ(rule_engine_any(true).toStr(), "1");
    EXPECT_EQ(rule_engine_any(false).toStr(), "0");
    EXPECT_EQ(rule_engine_any().toStr(), "");
    EXPECT_EQ(sequenceOf({1, "a"}).toStr(), "[1,\"a\"]");
    EXPECT_EQ(mapOf("key", 1).toStr(), "{key:1}");
    EXPECT_THAT(messages_.records(), IsEmpty());
}

TEST_F(RuleEngineAnyConversion, textOfADoubleHasSeventeenSignificantDigits) {
    EXPECT_EQ(rule_engine_any(1.5).toStr(), "1.5");
    // The double next to 0.1 is 0.1000000000000000055511151231257827...
    EXPECT_EQ(rule_engine_any(0.1).toStr(), "0.10000000000000001");
    EXPECT_EQ(rule_engine_any(1e300).toStr(), "1.0000000000000001e+300");
}

TEST_F(RuleEngineAnyConversion, fullTextIsTheText) {
    for (const rule_engine_any& value : oneOfEachType()) {
        EXPECT_EQ(value.toFullStr(), value.toStr());
    }
}

// Rendering

TEST_F(RuleEngineAnyConversion, rendersEveryScalarTheSameInBothForms) {
    for (const bool compact : {false, true}) {
        std::vector<std::string> texts;
        for (const rule_engine_any& value : oneOfEachScalar()) {
            texts.push_back(value.toJson(compact));
        }
        EXPECT_THAT(texts, ElementsAre("nullptr", "3", "-3", "\"text\"", "true", "1.5"));
    }
}

TEST_F(RuleEngineAnyConversion, rendersTextWithoutEscaping) {
    EXPECT_EQ(rule_engine_any("a\"b\\c\n").toJson(true), "\"a\"b\\c\n\"");
}

TEST_F(RuleEngineAnyConversion, rendersEmptySequencesAndMaps) {
    rule_engine_any map = mapOf("key", 1);
    map.erase("key");
    EXPECT_EQ(emptySequence().toJson(true), "[]");
    EXPECT_EQ(emptySequence().toJson(false), "[]");
    EXPECT_EQ(map.toJson(true), "{}");
    EXPECT_EQ(map.toJson(false), "{\n}");
}

TEST_F(RuleEngineAnyConversion, rendersMembersInKeyOrderThreeBlanksDeeper) {
    rule_engine_any value;
    value["b"] = false;
    value["a"]["inner"] = 1;
    value["c"] = "text";
    EXPECT_EQ(value.toJson(true), "{a:{inner:1},b:false,c:\"text\"}");
    EXPECT_EQ(value.toJson(false),
              "{\n"
              "   a: {\n"
              "      inner: 1\n"
              "   },\n"
              "   b: false,\n"
              "   c: \"text\"\n"
              "}");
}

TEST_F(RuleEngineAnyConversion, rendersElementsInOneLineAtTheLevelOfTheirSequence) {
    rule_engine_any value;
    value["list"] = sequenceOf({1, mapOf("key", 2), sequenceOf({3, 4})});
    EXPECT_EQ(value.toJson(true), "{list:[1,{key:2},[3,4]]}");
    EXPECT_EQ(value.toJson(false),
              "{\n"
              "   list: [1, {\n"
              "      key: 2\n"
              "   }, [3, 4]]\n"
              "}");
}

TEST_F(RuleEngineAnyConversion, blanksAreAtMost128) {
    EXPECT_EQ(rule_engine_any::ws(0), "");
    EXPECT_EQ(rule_engine_any::ws(3), "   ");
    EXPECT_EQ(rule_engine_any::ws(128), std::string(128, ' '));
    EXPECT_EQ(rule_engine_any::ws(200), std::string(128, ' '));
}

}  // namespace
