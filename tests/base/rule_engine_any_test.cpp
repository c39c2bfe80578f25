#include "base/dynamic_values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using lanecfg_test::mapOf;
using lanecfg_test::oneOfEachType;
using lanecfg_test::sequenceOf;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int lowestInt = std::numeric_limits<int>::min();
constexpr int highestInt = std::numeric_limits<int>::max();
constexpr unsigned int highestUnsigned = std::numeric_limits<unsigned int>::max();

using RuleEngineAny = lanecfg_test::DynamicValueTest;

// Types

TEST_F(RuleEngineAny, tellsItsTypeByName) {
    std::vector<std::string> names;
    for (const rule_engine_any& value : oneOfEachType()) {
        names.push_back(value.type());
    }
    EXPECT_THAT(names, ElementsAre("nullptr", "uint", "int", "std::string", "bool", "double",
                                   "Sequence", "Map"));
}

TEST_F(RuleEngineAny, holdsTheScalarAsItsOwnType) {
    EXPECT_EQ(boost::any_cast<unsigned int>(rule_engine_any(3U).get_data()), 3U);
    EXPECT_EQ(boost::any_cast<int>(rule_engine_any(-3).get_data()), -3);
    EXPECT_EQ(boost::any_cast<std::string>(rule_engine_any("text").get_data()), "text");
    EXPECT_EQ(boost::any_cast<bool>(rule_engine_any(true).get_data()), true);
    EXPECT_EQ(boost::any_cast<double>(rule_engine_any(1.5).get_data()), 1.5);
}

TEST_F(RuleEngineAny, holdsAnIntOfZeroForNullSequenceAndMap) {
    for (const rule_engine_any& value : {rule_engine_any(), sequenceOf({7}), mapOf("key", 7)}) {
        EXPECT_EQ(boost::any_cast<int>(value.get_data()), 0) << value.type();
    }
}

TEST_F(RuleEngineAny, takesTheTypeOfWhatIsAssigned) {
    rule_engine_any value = mapOf("key", 1);
    value = 3U;
    EXPECT_TRUE(value == 3U);
    value = -3;
    EXPECT_TRUE(value == -3);
    value = 1.5;
    EXPECT_TRUE(value == 1.5);
    value = true;
    EXPECT_TRUE(value == true);
    value = "text";
    EXPECT_TRUE(value == "text");
    value = std::string("other");
    EXPECT_TRUE(value == std::string("other"));
    value = sequenceOf({1});
    EXPECT_EQ(value.type(), "Sequence");
    EXPECT_TRUE(value.map().empty());
}

TEST_F(RuleEngineAny, copiesDeeply) {
    rule_engine_any original;
    original["list"][0U] = 1;
    rule_engine_any copy(original);
    rule_engine_any assigned;
    assigned = original;
    original["list"][0U] = 2;
    EXPECT_EQ(copy.toJson(true), "{list:[1]}");
    EXPECT_EQ(assigned.toJson(true), "{list:[1]}");
}

TEST_F(RuleEngineAny, canBeAssignedAPartOfItself) {
    rule_engine_any value;
    value["x"]["y"] = "deep";
    value = value["x"];
    EXPECT_EQ(value.toJson(true), "{y:\"deep\"}");
    value = boost::any_cast<const std::string&>(value["y"].get_data());
    EXPECT_EQ(value.toStr(), "deep");
    value = boost::any_cast<const std::string&>(value.get_data());
    EXPECT_EQ(value.toStr(), "deep");
    const rule_engine_any& same = value;
    value = same;
    EXPECT_EQ(value.toStr(), "deep");
}

TEST_F(RuleEngineAny, takesANullTextPointerForTheEmptyString) {
    const char* const none = nullptr;
    rule_engine_any value(none);
    EXPECT_EQ(value.type(), "std::string");
    EXPECT_EQ(value.size(), 0U);
    EXPECT_TRUE(value == none);
    EXPECT_EQ((rule_engine_any("a") + none).toStr(), "a");
    value = 1;
    value = none;
    EXPECT_TRUE(value == "");
}

TEST_F(RuleEngineAny, isNullOnlyWithoutAValue) {
    EXPECT_TRUE(rule_engine_any().isNull());
    EXPECT_FALSE(rule_engine_any(0).isNull());
    EXPECT_FALSE(rule_engine_any("").isNull());
}

TEST_F(RuleEngineAny, clearMakesEveryTypeNull) {
    for (rule_engine_any value : oneOfEachType()) {
        value.clear();
        EXPECT_TRUE(value.isNull());
        EXPECT_EQ(boost::any_cast<int>(value.get_data()), 0);
        EXPECT_EQ(value.size(), 0U);
    }
    EXPECT_THAT(messages_.records(), IsEmpty());
}

TEST_F(RuleEngineAny, sizeCountsElementsMembersAndCharacters) {
    EXPECT_EQ(rule_engine_any().size(), 0U);
    EXPECT_EQ(rule_engine_any(7).size(), 1U);
    EXPECT_EQ(rule_engine_any(7U).size(), 1U);
    EXPECT_EQ(rule_engine_any(0.0).size(), 1U);
    EXPECT_EQ(rule_engine_any(false).size(), 1U);
    EXPECT_EQ(rule_engine_any("abc").size(), 3U);
    EXPECT_EQ(sequenceOf({1, 2}).size(), 2U);
    EXPECT_EQ(mapOf("key", 1).size(), 1U);
}

// Sequences and Maps

TEST_F(RuleEngineAny, stringSubscriptsMakeAMapInAMap) {
    rule_engine_any value;
    value["x"]["y"] = 1;
    EXPECT_EQ(value.toJson(true), "{x:{y:1}}");
}

TEST_F(RuleEngineAny, stringSubscriptReplacesAnotherType) {
    rule_engine_any value = sequenceOf({1});
    EXPECT_TRUE(value["missing"].isNull());
    EXPECT_EQ(value.toJson(true), "{missing:nullptr}");
    value = "text";
    value["key"] = 1;
    EXPECT_EQ(boost::any_cast<int>(value.get_data()), 0);
}

TEST_F(RuleEngineAny, writingTheThirdElementOfNullGivesTwoNullsBeforeIt) {
    rule_engine_any value;
    value[2] = true;
    EXPECT_EQ(value.toJson(true), "[nullptr,nullptr,true]");
}

TEST_F(RuleEngineAny, numberSubscriptReplacesAnotherType) {
    rule_engine_any value = mapOf("key", 1);
    value[0U] = 5;
    EXPECT_EQ(value.toJson(true), "[5]");
    EXPECT_FALSE(value.exists("key"));
}

TEST_F(RuleEngineAny, numberSubscriptKeepsLaterElements) {
    rule_engine_any value = sequenceOf({1, 2, 3});
    value[0U] = "first";
    EXPECT_EQ(value.toJson(true), "[\"first\",2,3]");
}

TEST_F(RuleEngineAny, constantSubscriptGivesTheElementOrTheValueItself) {
    const rule_engine_any sequence = sequenceOf({4, 5});
    EXPECT_TRUE(sequence[1U] == 5);
    EXPECT_EQ(&sequence[2U], &sequence);
    const rule_engine_any scalar(4);
    EXPECT_EQ(&scalar[0U], &scalar);
}

TEST_F(RuleEngineAny, existsLooksIntoMapsOnly) {
    rule_engine_any value = mapOf("key", rule_engine_any());
    EXPECT_TRUE(value.exists("key"));
    EXPECT_FALSE(value.exists("other"));
    EXPECT_FALSE(rule_engine_any("key").exists("key"));
}

TEST_F(RuleEngineAny, eraseRemovesAKeyOfAMapOnly) {
    rule_engine_any map = mapOf("key", 1);
    map.erase("other");
    EXPECT_EQ(map.size(), 1U);
    map.erase("key");
    EXPECT_EQ(map.size(), 0U);
    EXPECT_EQ(map.type(), "Map");
    rule_engine_any text("key");
    text.erase("key");
    EXPECT_TRUE(text == "key");
}

TEST_F(RuleEngineAny, seqAndMapGiveTheContentToChange) {
    rule_engine_any sequence = sequenceOf({1});
    sequence.seq().emplace_back(2);
    EXPECT_EQ(std::as_const(sequence).get_seq().size(), 2U);
    rule_engine_any map = mapOf("a", 1);
    map.map()["b"] = 2;
    EXPECT_EQ(std::as_const(map).get_map().size(), 2U);
    EXPECT_EQ(map.toJson(true), "{a:1,b:2}");
    EXPECT_THAT(messages_.records(), IsEmpty());
}

TEST_F(RuleEngineAny, seqAndMapOnAnotherTypeReportAndGiveAnEmptyOne) {
    rule_engine_any map = mapOf("key", 1);
    rule_engine_any number(1);
    EXPECT_TRUE(map.seq().empty());
    EXPECT_TRUE(map.get_seq().empty());
    EXPECT_TRUE(number.map().empty());
    EXPECT_TRUE(number.get_map().empty());
    EXPECT_THAT(
        messages_.texts(),
        ElementsAre("Bad conversion from Map to Sequence", "Bad conversion from Map to Sequence",
                    "Bad conversion from int to Map", "Bad conversion from int to Map"));
}

TEST_F(RuleEngineAny, appendingChainsAndReplacesAnotherType) {
    rule_engine_any value("gone");
    value << 1 << "two" << true;
    EXPECT_EQ(value.toJson(true), "[1,\"two\",true]");
}

TEST_F(RuleEngineAny, appendsAPartOfItself) {
    rule_engine_any map = mapOf("key", "kept");
    map << map["key"];
    EXPECT_EQ(map.toJson(true), "[\"kept\"]");
    map << map;
    EXPECT_EQ(map.toJson(true), "[\"kept\",[\"kept\"]]");
    rule_engine_any number(3);
    EXPECT_TRUE(number.push_unique(number));
    EXPECT_EQ(number.toJson(true), "[3]");
}

TEST_F(RuleEngineAny, pushUniqueRefusesAnEqualElement) {
    rule_engine_any value;
    EXPECT_TRUE(value.push_unique("a"));
    EXPECT_TRUE(value.push_unique("b"));
    EXPECT_FALSE(value.push_unique("a"));
    EXPECT_EQ(value.size(), 2U);
}

TEST_F(RuleEngineAny, pushUniqueTellsTypesApart) {
    rule_engine_any value = sequenceOf({1});
    EXPECT_TRUE(value.push_unique(1.0));
    EXPECT_TRUE(value.push_unique(true));
    EXPECT_TRUE(value.push_unique("1"));
    EXPECT_EQ(value.size(), 4U);
}

TEST_F(RuleEngineAny, pushUniqueAlwaysTakesNullAndUnsigned) {
    rule_engine_any value;
    EXPECT_TRUE(value.push_unique(rule_engine_any()));
    EXPECT_TRUE(value.push_unique(rule_engine_any()));
    EXPECT_TRUE(value.push_unique(1U));
    EXPECT_TRUE(value.push_unique(1U));
    EXPECT_EQ(value.size(), 4U);
}

TEST_F(RuleEngineAny, pushUniqueOperatorGivesTheValue) {
    rule_engine_any value;
    ((value <<= 1) <<= 1) <<= 2;
    EXPECT_EQ(value.toJson(true), "[1,2]");
}

// Operators

TEST_F(RuleEngineAny, incrementAndDecrementChangeNumbers) {
    rule_engine_any integer(5);
    rule_engine_any natural(5U);
    rule_engine_any fraction(5.5);
    EXPECT_TRUE(++integer == 6);
    EXPECT_TRUE(++natural == 6U);
    EXPECT_TRUE(++fraction == 6.5);
    EXPECT_TRUE(--integer == 5);
    EXPECT_TRUE(--natural == 5U);
    EXPECT_TRUE(--fraction == 5.5);
    EXPECT_EQ(&++integer, &integer);
    EXPECT_EQ(&--integer, &integer);
}

TEST_F(RuleEngineAny, postfixFormsGiveTheValueAfterTheChange) {
    rule_engine_any value(5);
    EXPECT_TRUE(value++ == 6);
    EXPECT_TRUE(value == 6);
    EXPECT_TRUE(value-- == 5);
    EXPECT_TRUE(value == 5);
}

TEST_F(RuleEngineAny, incrementAndDecrementWrapAround) {
    rule_engine_any highest(highestInt);
    EXPECT_TRUE(++highest == lowestInt);
    EXPECT_TRUE(--highest == highestInt);
    rule_engine_any natural(highestUnsigned);
    EXPECT_TRUE(++natural == 0U);
    EXPECT_TRUE(--natural == highestUnsigned);
}

TEST_F(RuleEngineAny, incrementAndDecrementLeaveOtherTypesAlone) {
    for (const rule_engine_any& original :
         {rule_engine_any(), rule_engine_any("1"), rule_engine_any(true), sequenceOf({1}),
          mapOf("key", 1)}) {
        rule_engine_any value(original);
        ++value;
        EXPECT_EQ(value.toJson(true), original.toJson(true));
        value--;
        EXPECT_EQ(value.toJson(true), original.toJson(true));
    }
    EXPECT_THAT(messages_.records(), IsEmpty());
}

TEST_F(RuleEngineAny, addsANumberOfItsOwnType) {
    EXPECT_TRUE(rule_engine_any(2) + 3 == 5);
    EXPECT_TRUE(rule_engine_any(2U) + 3U == 5U);
    EXPECT_TRUE(rule_engine_any(2.5) + 3.0 == 5.5);
    EXPECT_TRUE(rule_engine_any("2") + "3" == "23");
    EXPECT_TRUE(rule_engine_any("2") + std::string("3") == "23");
    EXPECT_TRUE(rule_engine_any(highestInt) + 1 == lowestInt);
    EXPECT_THAT(messages_.records(), IsEmpty());
}

TEST_F(RuleEngineAny, doesNotAddANativeValueOfAnotherType) {
    EXPECT_TRUE((rule_engine_any(2U) + 3).isNull());
    EXPECT_TRUE((rule_engine_any(2) + 3U).isNull());
    EXPECT_TRUE((rule_engine_any(2) + 3.0).isNull());
    EXPECT_TRUE((rule_engine_any(2.0) + "3").isNull());
    EXPECT_TRUE((rule_engine_any() + std::string("3")).isNull());
    EXPECT_THAT(messages_.texts(),
                ElementsAre("Bad operator operator+ from rule_engine_any(uint) to int",
                            "Bad operator operator+ from rule_engine_any(int) to uint",
                            "Bad operator operator+ from rule_engine_any(int) to double",
                            "Bad operator operator+ from rule_engine_any(double) to std::string",
                            "Bad operator operator+ from rule_engine_any(nullptr) to std::string"));
}

TEST_F(RuleEngineAny, badOperatorGoesToTheHostAsAnError) {
    EXPECT_TRUE((rule_engine_any(true) + rule_engine_any(1)).isNull());
    ASSERT_EQ(messages_.records().size(), 1U);
    const ToolMsgRecord& record = messages_.records().front();
    EXPECT_EQ(record.argumentCount, 3);
    EXPECT_EQ(record.file, "ip/rule_engine/rule_engine_base/rule_engine_any");
    EXPECT_EQ(record.line, 367);
    EXPECT_EQ(record.subsystem, "ip");
    EXPECT_EQ(record.severity, 0x20000000U);
    EXPECT_EQ(record.format, "Bad operator %s from %s to %s");
    EXPECT_THAT(record.arguments,
                ElementsAre("operator+", "rule_engine_any(bool)", "rule_engine_any(int)"));
}

TEST_F(RuleEngineAny, stringTakesTheTextOfTheOtherValue) {
    EXPECT_TRUE(rule_engine_any("n=") + rule_engine_any(3) == "n=3");
    EXPECT_TRUE(rule_engine_any("n=") + rule_engine_any(true) == "n=1");
    EXPECT_TRUE(rule_engine_any("n=") + rule_engine_any() == "n=");
    EXPECT_TRUE(rule_engine_any("n=") + sequenceOf({1, 2}) == "n=[1,2]");
}

TEST_F(RuleEngineAny, doubleTakesTheDoubleOfTheOtherValue) {
    EXPECT_TRUE(rule_engine_any(0.5) + rule_engine_any(3) == 3.5);
    EXPECT_TRUE(rule_engine_any(0.5) + rule_engine_any("1.5") == 2.0);
    EXPECT_THAT(messages_.records(), IsEmpty());
    EXPECT_TRUE(rule_engine_any(0.5) + rule_engine_any(true) == 0.5);
    EXPECT_THAT(messages_.texts(), ElementsAre("Bad conversion from bool to double"));
}

TEST_F(RuleEngineAny, integersBecomeDoubleBesideADouble) {
    EXPECT_TRUE(rule_engine_any(-3) + rule_engine_any(0.5) == -2.5);
    EXPECT_TRUE(rule_engine_any(3U) + rule_engine_any(0.5) == 3.5);
}

TEST_F(RuleEngineAny, integersTakeTheIntegerOfTheOtherValue) {
    EXPECT_TRUE(rule_engine_any(-3) + rule_engine_any(1U) == -2);
    EXPECT_TRUE(rule_engine_any(-3) + rule_engine_any("5") == 2);
    EXPECT_TRUE(rule_engine_any(-3) + rule_engine_any(true) == -2);
    EXPECT_TRUE(rule_engine_any(3U) + rule_engine_any(-1) == 2U);
    EXPECT_TRUE(rule_engine_any(3U) + rule_engine_any("5") == 8U);
    EXPECT_THAT(messages_.records(), IsEmpty());
    EXPECT_TRUE(rule_engine_any(-3) + rule_engine_any() == -3);
    EXPECT_TRUE(rule_engine_any(3U) + sequenceOf({1}) == 3U);
    EXPECT_THAT(messages_.texts(), ElementsAre("Bad conversion from nullptr to int",
                                               "Bad conversion from Sequence to uint"));
}

TEST_F(RuleEngineAny, nullBoolSequenceAndMapAddNothing) {
    for (const rule_engine_any& left :
         {rule_engine_any(), rule_engine_any(true), sequenceOf({1}), mapOf("key", 1)}) {
        EXPECT_TRUE((left + rule_engine_any("x")).isNull()) << left.type();
    }
    EXPECT_EQ(messages_.records().size(), 4U);
}

TEST_F(RuleEngineAny, equalsANativeValueOfItsOwnTypeOnly) {
    EXPECT_TRUE(rule_engine_any(1) == 1);
    EXPECT_FALSE(rule_engine_any(1) == 2);
    EXPECT_FALSE(rule_engine_any(1) == 1U);
    EXPECT_FALSE(rule_engine_any(1) == 1.0);
    EXPECT_FALSE(rule_engine_any(1) == true);
    EXPECT_FALSE(rule_engine_any(1) == "1");
    EXPECT_TRUE(rule_engine_any(1U) == 1U);
    EXPECT_FALSE(rule_engine_any(1U) == 1);
    EXPECT_FALSE(rule_engine_any() == 0);
    EXPECT_FALSE(rule_engine_any() == "");
    EXPECT_FALSE(rule_engine_any("b") == "a");
    EXPECT_THAT(messages_.records(), IsEmpty());
}

TEST_F(RuleEngineAny, equalsAValueOfTheSameTypeAndContent) {
    EXPECT_TRUE(rule_engine_any(1) == rule_engine_any(1));
    EXPECT_FALSE(rule_engine_any(1) == rule_engine_any(2));
    EXPECT_TRUE(rule_engine_any("a") == rule_engine_any("a"));
    EXPECT_FALSE(rule_engine_any("a") == rule_engine_any("b"));
    EXPECT_TRUE(rule_engine_any(true) == rule_engine_any(true));
    EXPECT_FALSE(rule_engine_any(true) == rule_engine_any(false));
    EXPECT_TRUE(rule_engine_any(1.5) == rule_engine_any(1.5));
    EXPECT_FALSE(rule_engine_any(1.5) == rule_engine_any(2.5));
    EXPECT_FALSE(rule_engine_any(1) == rule_engine_any(1.0));
    EXPECT_FALSE(rule_engine_any(1) == rule_engine_any("1"));
}

TEST_F(RuleEngineAny, nullAndUnsignedValuesEqualNoValue) {
    EXPECT_FALSE(rule_engine_any() == rule_engine_any());
    EXPECT_FALSE(rule_engine_any(1U) == rule_engine_any(1U));
}

TEST_F(RuleEngineAny, sequencesEqualElementByElement) {
    EXPECT_TRUE(sequenceOf({1, "a"}) == sequenceOf({1, "a"}));
    EXPECT_FALSE(sequenceOf({1, "a"}) == sequenceOf({"a", 1}));
    EXPECT_FALSE(sequenceOf({1, "a"}) == sequenceOf({1}));
    EXPECT_FALSE(sequenceOf({1U}) == sequenceOf({1U}));
}

TEST_F(RuleEngineAny, mapsEqualByKeysAndValues) {
    EXPECT_TRUE(mapOf("a", 1) == mapOf("a", 1));
    EXPECT_FALSE(mapOf("a", 1) == mapOf("b", 1));
    EXPECT_FALSE(mapOf("a", 1) == mapOf("a", 2));
    rule_engine_any larger = mapOf("a", 1);
    larger["b"] = 2;
    EXPECT_FALSE(mapOf("a", 1) == larger);
    EXPECT_FALSE(mapOf("a", rule_engine_any()) == mapOf("a", rule_engine_any()));
}

}  // namespace
