#include "database/database_test.h"

#include <lanecfg/gt_db_load.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

using lanecfg_test::unconvertibleParameters;
using lanecfg_test::unknownParameter;
using lanecfg_test::unusableLaneUsage;
using nlohmann::json;
using sable_lanecfg::channelUsageInfo;
using sable_lanecfg::gt_db_load;
using sable_lanecfg::quadsUsageInfo;
using sable_lanecfg::ruleValue;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::SizeIs;

namespace {

class RequestFile : public lanecfg_test::DatabaseTest {
  protected:
    /// Reads the request of `database`.
    bool read() { return readText(database.request.dump()); }

    bool readText(const std::string& text) {
        file_ = directory.write("request_under_test.json", text);
        return readRequest(loader_, file_);
    }

    /// Reads a request with this text under "quadUsage" and none of the rest.
    void readQuadUsage(const std::string& text) {
        EXPECT_TRUE(readText(R"({"laneUsage": [], "userParams": [], "quadUsage": )" + text + "}"));
    }

    const quadsUsageInfo& quad(const std::string& name) { return *loader_.m_quadsUsage.at(name); }

    void addType(const std::string& name, const std::string& type) {
        loader_.m_paramTypes[name].type = type;
    }

    gt_db_load loader_ = load();
    std::string file_;
};

// Quads

TEST_F(RequestFile, ReadsQuadsInAnArray) {
    readQuadUsage(R"({"TX_QUAD_CH": [
        {"TX_Q0": ["CH0", "CH1.x"], "MSTRCLK": ["1", "0"], "IS_CURRENT_QUAD": true},
        {"TX_Q1": ["CH2"], "MSTRCLK": [0], "IS_CURRENT_QUAD": "0"}]})");

    ASSERT_THAT(loader_.m_quadsUsage, ElementsAre(Key("TX_Q0"), Key("TX_Q1")));
    EXPECT_EQ(quad("TX_Q0").quadName, "TX_Q0");
    EXPECT_EQ(quad("TX_Q0").usageKey, "TX_QUAD_CH");
    EXPECT_THAT(quad("TX_Q0").channels, ElementsAre("CH0", "CH1.x"));
    EXPECT_THAT(quad("TX_Q0").MSTRCLK, ElementsAre("1", "0"));
    EXPECT_TRUE(quad("TX_Q0").IS_CURRENT_QUAD);
    EXPECT_THAT(quad("TX_Q1").channels, ElementsAre("CH2"));
    EXPECT_THAT(quad("TX_Q1").MSTRCLK, ElementsAre("0"));
    EXPECT_FALSE(quad("TX_Q1").IS_CURRENT_QUAD);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestFile, ReadsAQuadBelowItsRepeatedKey) {
    readQuadUsage(R"({"RX_QUAD_CH": {"a": {"a": {"RX_Q0": ["CH0"], "IS_CURRENT_QUAD": 1}}}})");

    ASSERT_THAT(loader_.m_quadsUsage, ElementsAre(Key("RX_Q0")));
    EXPECT_EQ(quad("RX_Q0").usageKey, "RX_QUAD_CH");
    EXPECT_TRUE(quad("RX_Q0").IS_CURRENT_QUAD);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestFile, TakesTheRepeatedKeyOfAQuadAsAPath) {
    readQuadUsage(R"({"K": {"a.b": {"a": {"b": {"Q0": ["CH0"]}}}}})");

    EXPECT_THAT(loader_.m_quadsUsage, ElementsAre(Key("Q0")));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestFile, ReportsAQuadInAnyOtherShapeAndKeepsThoseBefore) {
    readQuadUsage(R"({"K": [{"Q0": ["CH0"]}], "L": {"a": {"Q1": ["CH1"]}, "b": {"b": {}}}})");

    EXPECT_THAT(loader_.m_quadsUsage, ElementsAre(Key("Q0")));
    EXPECT_THAT(errors(), ElementsAre("No such node (a)."));
}

TEST_F(RequestFile, ReportsACurrentQuadFlagThatIsNoFlag) {
    readQuadUsage(R"({"K": [{"Q0": ["CH0"]}, {"Q1": ["CH1"], "IS_CURRENT_QUAD": "TRUE"}]})");

    EXPECT_THAT(loader_.m_quadsUsage, ElementsAre(Key("Q0")));
    EXPECT_THAT(errors(), ElementsAre("conversion of data to type \"b\" failed."));
}

TEST_F(RequestFile, GoesOnBehindUnusableQuads) {
    database.request["quadUsage"] = json::parse(R"({"K": {"a": {"Q": ["CH0"]}}})");

    EXPECT_TRUE(read());
    EXPECT_THAT(loader_.m_channelUsage, SizeIs(1));
    EXPECT_THAT(loader_.m_userParams, SizeIs(2));
    EXPECT_THAT(errors(), ElementsAre("No such node (a)."));
}

TEST_F(RequestFile, TakesTheLastOfSeveralChannelEntries) {
    readQuadUsage(R"({"K": [{"Q1": ["CH1", "CH2"], "Q0": ["CH0"]}]})");

    ASSERT_THAT(loader_.m_quadsUsage, ElementsAre(Key("Q0")));
    EXPECT_EQ(quad("Q0").quadName, "Q0");
    EXPECT_THAT(quad("Q0").channels, ElementsAre("CH0"));
}

TEST_F(RequestFile, EntersAQuadWithoutChannelsUnderTheEmptyName) {
    readQuadUsage(R"({"K": [{"MSTRCLK": ["1"]}]})");

    ASSERT_THAT(loader_.m_quadsUsage, ElementsAre(Key("")));
    EXPECT_EQ(quad("").quadName, "");
    EXPECT_EQ(quad("").usageKey, "");
    EXPECT_THAT(quad("").channels, IsEmpty());
    EXPECT_THAT(quad("").MSTRCLK, ElementsAre("1"));
    EXPECT_FALSE(quad("").IS_CURRENT_QUAD);
}

TEST_F(RequestFile, TakesChannelsThatAreNoListAsNone) {
    readQuadUsage(R"({"K": [{"Q0": "CH0", "MSTRCLK": "1"}]})");

    EXPECT_THAT(quad("Q0").channels, IsEmpty());
    EXPECT_THAT(quad("Q0").MSTRCLK, IsEmpty());
}

TEST_F(RequestFile, KeepsTheFirstOfTwoQuadsOfOneName) {
    readQuadUsage(R"({"K": [{"Q0": ["CH0"]}, {"Q0": ["CH1"]}], "J": [{"Q0": ["CH2"]}]})");

    ASSERT_THAT(loader_.m_quadsUsage, ElementsAre(Key("Q0")));
    EXPECT_EQ(quad("Q0").usageKey, "K");
    EXPECT_THAT(quad("Q0").channels, ElementsAre("CH0"));
}

TEST_F(RequestFile, MayHaveNoQuads) {
    for (const char* none : {"{}", "[]", "\"\"", R"({"K": {}})", R"({"K": "text"})"}) {
        readQuadUsage(none);
        EXPECT_THAT(loader_.m_quadsUsage, IsEmpty());
    }
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestFile, ReportsThatQuadUsageIsMissingAndGoesOn) {
    database.request.erase("quadUsage");

    EXPECT_TRUE(read());
    EXPECT_THAT(loader_.m_channelUsage, SizeIs(1));
    EXPECT_THAT(errors(), ElementsAre(lanecfg_test::missingQuadUsage(file_)));
}

// Lanes

TEST_F(RequestFile, ReadsTheUsageOfEachLane) {
    database.request["laneUsage"] = json::parse(R"([
        {"group": "A", "tx": [0, "1"], "rx": [2], "txrate": ["r0", 1], "rxrate": ["r2"],
         "rates": [3, 1]},
        {"group": 7, "tx": [], "rx": [], "txrate": [], "rxrate": [], "rates": []}])");

    EXPECT_TRUE(read());
    ASSERT_THAT(loader_.m_channelUsage, SizeIs(2));
    const channelUsageInfo& first = loader_.m_channelUsage[0];
    EXPECT_EQ(first.group, "A");
    EXPECT_EQ(first.usageMode, "simplex");
    EXPECT_FALSE(first.usageFlag);
    EXPECT_THAT(first.tx, ElementsAre(0, 1));
    EXPECT_THAT(first.rx, ElementsAre(2));
    EXPECT_THAT(first.txrate, ElementsAre("r0", "1"));
    EXPECT_THAT(first.rxrate, ElementsAre("r2"));
    EXPECT_THAT(first.rates, ElementsAre(3, 1));
    EXPECT_EQ(loader_.m_channelUsage[1].group, "7");
    EXPECT_THAT(loader_.m_channelUsage[1].tx, IsEmpty());
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestFile, DoesNotReadUsageModeAndFlag) {
    database.request["laneUsage"][0]["usageMode"] = "duplex";
    database.request["laneUsage"][0]["usageFlag"] = true;

    EXPECT_TRUE(read());
    EXPECT_EQ(loader_.m_channelUsage.at(0).usageMode, "simplex");
    EXPECT_FALSE(loader_.m_channelUsage.at(0).usageFlag);
}

TEST_F(RequestFile, ReportsThatLaneUsageIsMissingAndGoesOn) {
    database.request.erase("laneUsage");

    EXPECT_TRUE(read());
    EXPECT_THAT(loader_.m_channelUsage, IsEmpty());
    EXPECT_THAT(loader_.m_userParams, SizeIs(2));
    EXPECT_THAT(errors(), ElementsAre(unusableLaneUsage(file_)));
}

/// How many elements a lane has got once the reading of a key failed.
struct LaneFault {
    std::string key;
    std::vector<std::size_t> sizes;  ///< of group, tx, rx, txrate, rxrate, rates
};

class LaneWithout : public RequestFile, public testing::WithParamInterface<LaneFault> {
  protected:
    void expectStoppedAtTheSecondLane() {
        ASSERT_THAT(loader_.m_channelUsage, SizeIs(2));
        EXPECT_THAT(loader_.m_channelUsage[0].rates, SizeIs(1));
        const channelUsageInfo& lane = loader_.m_channelUsage[1];
        EXPECT_THAT(
            (std::vector<std::size_t>{lane.group.size(), lane.tx.size(), lane.rx.size(),
                                      lane.txrate.size(), lane.rxrate.size(), lane.rates.size()}),
            testing::ElementsAreArray(GetParam().sizes));
        EXPECT_THAT(errors(), ElementsAre(unusableLaneUsage(file_)));
    }
};

TEST_P(LaneWithout, AKeyEndsTheListWithWhatWasRead) {
    const json lane = database.request["laneUsage"][0];
    json faulty = lane;
    faulty.erase(GetParam().key);
    database.request["laneUsage"] = json::array({lane, faulty, lane});

    EXPECT_TRUE(read());
    expectStoppedAtTheSecondLane();
}

INSTANTIATE_TEST_SUITE_P(EachKey, LaneWithout,
                         testing::Values(LaneFault{"group", {0, 0, 0, 0, 0, 0}},
                                         LaneFault{"tx", {1, 0, 0, 0, 0, 0}},
                                         LaneFault{"rx", {1, 1, 0, 0, 0, 0}},
                                         LaneFault{"txrate", {1, 1, 1, 0, 0, 0}},
                                         LaneFault{"rxrate", {1, 1, 1, 1, 0, 0}},
                                         LaneFault{"rates", {1, 1, 1, 1, 1, 0}}),
                         [](const auto& test) { return test.param.key; });

class LaneNumbers : public LaneWithout {};

TEST_P(LaneNumbers, ThatDoNotConvertEndTheListBehindThoseThatDo) {
    const json lane = database.request["laneUsage"][0];
    json faulty = lane;
    faulty[GetParam().key] = json::array({5, "x", 6});
    database.request["laneUsage"] = json::array({lane, faulty, lane});

    EXPECT_TRUE(read());
    expectStoppedAtTheSecondLane();
}

INSTANTIATE_TEST_SUITE_P(EachKey, LaneNumbers,
                         testing::Values(LaneFault{"tx", {1, 1, 0, 0, 0, 0}},
                                         LaneFault{"rx", {1, 1, 1, 0, 0, 0}},
                                         LaneFault{"rates", {1, 1, 1, 1, 1, 1}}),
                         [](const auto& test) { return test.param.key; });

// User parameters

TEST_F(RequestFile, ReadsParametersByDirectionLaneAndRate) {
    addType("A", "int");
    database.request["userParams"] = json::parse(R"([
        [[{"A": 0}, {"A": 1}], []],
        [[{"A": 2}], [{}, {"A": 3}], [{"A": 4}]],
        []])");

    EXPECT_TRUE(read());
    const auto& store = loader_.m_userParams;
    ASSERT_THAT(store, ElementsAre(ElementsAre(SizeIs(2), SizeIs(0)),
                                   ElementsAre(SizeIs(1), SizeIs(2), SizeIs(1)), IsEmpty()));
    EXPECT_EQ(store[0][0][0].at("A"), ruleValue(0U));
    EXPECT_EQ(store[0][0][1].at("A"), ruleValue(1U));
    EXPECT_EQ(store[1][0][0].at("A"), ruleValue(2U));
    EXPECT_THAT(store[1][1][0], IsEmpty());
    EXPECT_EQ(store[1][1][1].at("A"), ruleValue(3U));
    EXPECT_EQ(store[1][2][0].at("A"), ruleValue(4U));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestFile, TakesTheLastOfARepeatedParameter) {
    addType("A", "int");

    EXPECT_TRUE(readText(R"({"quadUsage": {}, "laneUsage": [],
                             "userParams": [[[{"A": 1, "A": 2}]]]})"));
    EXPECT_EQ(loader_.m_userParams.at(0).at(0).at(0).at("A"), ruleValue(2U));
}

TEST_F(RequestFile, StopsAMapAtAnUnknownParameterAndGoesOnWithTheNext) {
    addType("A", "int");
    addType("C", "int");
    EXPECT_FALSE(readText(R"({"quadUsage": {}, "laneUsage": [], "userParams":
        [[[{"A": 1, "B": 2, "C": 3}, {"C": 4}], [{"B": 5}]], [[{"A": 6}]]]})"));

    const auto& store = loader_.m_userParams;
    ASSERT_THAT(store, ElementsAre(ElementsAre(SizeIs(2), SizeIs(1)), ElementsAre(SizeIs(1))));
    EXPECT_THAT(store[0][0][0], ElementsAre(Key("A")));
    EXPECT_EQ(store[0][0][1].at("C"), ruleValue(4U));
    EXPECT_THAT(store[0][1][0], IsEmpty());
    EXPECT_EQ(store[1][0][0].at("A"), ruleValue(6U));
    EXPECT_THAT(errors(), ElementsAre(unknownParameter("B"), unknownParameter("B")));
}

TEST_F(RequestFile, EntersAnUnknownParameterIntoTheTypesWithoutAType) {
    database.request["userParams"] = json::parse(R"([[[{"NEW": 1}]]])");

    EXPECT_FALSE(read());
    ASSERT_THAT(loader_.m_paramTypes, testing::Contains(Key("NEW")));
    EXPECT_EQ(loader_.m_paramTypes.at("NEW").type, "");
}

TEST_F(RequestFile, FailsWithoutUserParameters) {
    database.request.erase("userParams");

    EXPECT_FALSE(read());
    EXPECT_THAT(loader_.m_userParams, IsEmpty());
    EXPECT_THAT(loader_.m_channelUsage, SizeIs(1));
    EXPECT_THAT(errors(), ElementsAre(unconvertibleParameters()));
}

TEST_F(RequestFile, MayHaveNoParameters) {
    database.request["userParams"] = json::array();

    EXPECT_TRUE(read());
    EXPECT_THAT(loader_.m_userParams, IsEmpty());
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestFile, ReadASecondTimeLeavesOnlyItsOwnData) {
    database.request["quadUsage"] = json::parse(R"({"K": [{"Q0": ["CH0"]}]})");
    EXPECT_TRUE(read());
    database.request = json::parse(R"({"quadUsage": {"K": [{"Q1": []}]}, "laneUsage": [],
                                       "userParams": [[]]})");
    EXPECT_TRUE(read());

    EXPECT_THAT(loader_.m_quadsUsage, ElementsAre(Key("Q1")));
    EXPECT_THAT(loader_.m_channelUsage, IsEmpty());
    EXPECT_THAT(loader_.m_userParams, ElementsAre(IsEmpty()));
}

/// A JSON value and what it becomes for a parameter of a type.
struct Conversion {
    std::string name;
    std::string type;
    std::string text;
    ruleValue value;
};

class RequestFileValue : public RequestFile, public testing::WithParamInterface<Conversion> {
  protected:
    bool readValue() {
        addType("A", "int");
        addType("V", GetParam().type);
        addType("Z", "int");
        return readText(R"({"quadUsage": {}, "laneUsage": [], "userParams": [[[{"A": 1, "V": )" +
                        GetParam().text + R"(, "Z": 2}, {"A": 3}]]]})");
    }
};

TEST_P(RequestFileValue, TakesTheTypeOfTheParameter) {
    ASSERT_TRUE(readValue());
    EXPECT_EQ(loader_.m_userParams.at(0).at(0).at(0).at("V"), GetParam().value);
    EXPECT_THAT(errors(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    EachType, RequestFileValue,
    testing::Values(
        Conversion{"EmptyText", "string", "\"\"", std::string()},
        Conversion{"TextWithBlanks", "string", "\" R0 \"", std::string(" R0 ")},
        Conversion{"TextOfANumber", "string", "8.0", std::string("8.0")},
        Conversion{"TextOfAFlag", "string", "true", std::string("true")},
        Conversion{"TextOfNull", "string", "null", std::string("null")},
        Conversion{"TextOfAListIsEmpty", "string", "[1]", std::string()},
        Conversion{"Int", "int", "12", 12U}, Conversion{"IntBetweenBlanks", "int", "\" 12 \"", 12U},
        Conversion{"IntWithLeadingZeros", "int", "\"007\"", 7U},
        Conversion{"LargestInt", "int", "4294967295", 4294967295U},
        Conversion{"NegativeIntWraps", "int", "-1", 4294967295U},
        Conversion{"True", "bool", "true", true}, Conversion{"False", "bool", "false", false},
        Conversion{"BoolByWord", "bool", "\"true\"", true},
        Conversion{"BoolByOne", "bool", "1", true},
        Conversion{"BoolByZero", "bool", "\"0\"", false}, Conversion{"Float", "float", "0.1", 0.1F},
        Conversion{"FloatIsRounded", "float", "\"16777217\"", 16777216.0F},
        Conversion{"Double", "double", "10.3125", 10.3125},
        Conversion{"DoubleWithExponent", "double", "\"1.5e3\"", 1500.0},
        Conversion{"DoubleBelowOne", "double", "0.1", 0.1},
        Conversion{"NegativeDouble", "double", "-2", -2.0}),
    [](const auto& test) { return test.param.name; });

class RequestFileFault : public RequestFileValue {};

TEST_P(RequestFileFault, EndsTheParametersWhenAValueDoesNotConvert) {
    EXPECT_FALSE(readValue());
    ASSERT_THAT(loader_.m_userParams, ElementsAre(ElementsAre(SizeIs(1))));
    EXPECT_THAT(loader_.m_userParams[0][0][0], ElementsAre(Key("A")));
    EXPECT_THAT(errors(), ElementsAre(unconvertibleParameters()));
}

INSTANTIATE_TEST_SUITE_P(EachType, RequestFileFault,
                         testing::Values(Conversion{"IntOfEmptyText", "int", "\"\"", {}},
                                         Conversion{"IntBeforeLetters", "int", "\"12abc\"", {}},
                                         Conversion{"IntOfAFraction", "int", "1.5", {}},
                                         Conversion{"IntBeyondTheRange", "int", "4294967296", {}},
                                         Conversion{"IntOfAFlag", "int", "true", {}},
                                         Conversion{"IntOfAList", "int", "[1]", {}},
                                         Conversion{"BoolInCapitals", "bool", "\"TRUE\"", {}},
                                         Conversion{"BoolOfAnotherWord", "bool", "\"yes\"", {}},
                                         Conversion{"BoolByTwo", "bool", "2", {}},
                                         Conversion{"BoolOfEmptyText", "bool", "\"\"", {}},
                                         Conversion{"FloatBeyondTheRange", "float", "1e50", {}},
                                         Conversion{"FloatOfLetters", "float", "\"abc\"", {}},
                                         Conversion{
                                             "DoubleWithOpenExponent", "double", "\"12e\"", {}},
                                         Conversion{"DoubleBeyondTheRange", "double", "1e999", {}},
                                         Conversion{"DoubleOfTwoNumbers", "double", "\"1 2\"", {}},
                                         Conversion{"DoubleOfNull", "double", "null", {}},
                                         Conversion{"DoubleOfAnObject", "double", "{}", {}}),
                         [](const auto& test) { return test.param.name; });

TEST_F(RequestFile, ReadsAFlagByDigitAlsoBehindOneByWord) {
    addType("A", "bool");
    addType("B", "bool");
    addType("C", "bool");

    EXPECT_TRUE(readText(R"({"quadUsage": {}, "laneUsage": [], "userParams":
        [[[{"A": true, "B": 1, "C": "false"}]]]})"));
    const auto& values = loader_.m_userParams.at(0).at(0).at(0);
    EXPECT_EQ(values.at("A"), ruleValue(true));
    EXPECT_EQ(values.at("B"), ruleValue(true));
    EXPECT_EQ(values.at("C"), ruleValue(false));
}

/// A word that names no type.
struct UnknownType {
    std::string name;
    std::string word;
};

class ParameterType : public RequestFile, public testing::WithParamInterface<UnknownType> {};

TEST_P(ParameterType, ThatIsNoKnownWordCountsAsUnknownParameter) {
    addType("A", GetParam().word);
    database.request["userParams"] = json::parse(R"([[[{"A": "1"}]]])");

    EXPECT_FALSE(read());
    EXPECT_THAT(errors(), ElementsAre(unknownParameter("A")));
}

INSTANTIATE_TEST_SUITE_P(Words, ParameterType,
                         testing::Values(UnknownType{"Empty", ""}, UnknownType{"Capital", "Int"},
                                         UnknownType{"Longer", "integer"},
                                         UnknownType{"BehindABlank", " int"},
                                         UnknownType{"Unsigned", "unsigned"}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
