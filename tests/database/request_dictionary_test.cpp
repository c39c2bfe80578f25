#include "database/database_test.h"

#include <lanecfg/gt_db_load.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using lanecfg_test::unknownParameter;
using sable_lanecfg::channelUsageInfo;
using sable_lanecfg::gt_db_load;
using sable_lanecfg::laneUsageMap;
using sable_lanecfg::quadsUsageInfo;
using sable_lanecfg::quadUsageMap;
using sable_lanecfg::ruleValue;
using sable_lanecfg::settingsMap;
using sable_lanecfg::userParamMap;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::SizeIs;

namespace {

const std::string tessera = "tessera";

/// Lanes whose only rate sets parameter "N" to a number; 0 leaves the lane without a rate.
settingsMap lanesWith(const std::map<std::string, unsigned>& numbers) {
    settingsMap settings;
    for (const auto& [lane, number] : numbers) {
        settings[lane];
        if (number != 0) {
            settings[lane]["LR0_SETTINGS"]["N"] = std::to_string(number);
        }
    }
    return settings;
}

const settingsMap faulty = {{"0", {{"LR0_SETTINGS", {{"UNKNOWN", "1"}}}}}};

class RequestDictionary : public lanecfg_test::DatabaseTest {
  protected:
    RequestDictionary() { loader_.m_paramTypes["N"].type = "int"; }

    bool readSettings(const userParamMap& userParams, const std::string& family = "") {
        return readRequest(loader_, userParams, {}, {}, family);
    }

    void readLanes(const laneUsageMap& laneUsage) {
        EXPECT_TRUE(readRequest(loader_, {}, laneUsage, {}));
    }

    void readQuads(const quadUsageMap& quadUsage) {
        EXPECT_TRUE(readRequest(loader_, {}, {}, quadUsage));
    }

    /// The number of parameter "N" in the given place.
    unsigned number(std::size_t direction, std::size_t lane, std::size_t rate) {
        return boost::get<unsigned>(loader_.m_userParams.at(direction).at(lane).at(rate).at("N"));
    }

    gt_db_load loader_ = load();
};

// Quads

TEST_F(RequestDictionary, ReadsTheUsageOfEachQuad) {
    readQuads({{"TX_QUAD_CH",
                {{"TX_Q0", {{"CH", "CH0,CH1.x"}, {"MSTRCLK", "1,0"}, {"IS_CURRENT_QUAD", "1"}}},
                 {"TX_Q1", {{"CH", "CH2"}}}}},
               {"RX_QUAD_CH", {{"RX_Q0", {}}}}});

    ASSERT_THAT(loader_.m_quadsUsage, ElementsAre(Key("RX_Q0"), Key("TX_Q0"), Key("TX_Q1")));
    const quadsUsageInfo& first = *loader_.m_quadsUsage.at("TX_Q0");
    EXPECT_EQ(first.quadName, "TX_Q0");
    EXPECT_EQ(first.usageKey, "TX_QUAD_CH");
    EXPECT_THAT(first.channels, ElementsAre("CH0", "CH1.x"));
    EXPECT_THAT(first.MSTRCLK, ElementsAre("1", "0"));
    EXPECT_TRUE(first.IS_CURRENT_QUAD);
    const quadsUsageInfo& bare = *loader_.m_quadsUsage.at("RX_Q0");
    EXPECT_EQ(bare.quadName, "RX_Q0");
    EXPECT_EQ(bare.usageKey, "RX_QUAD_CH");
    EXPECT_THAT(bare.channels, IsEmpty());
    EXPECT_THAT(bare.MSTRCLK, IsEmpty());
    EXPECT_FALSE(bare.IS_CURRENT_QUAD);
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestDictionary, TakesTheCurrentQuadFlagInCapitals) {
    readQuads({{"K", {{"Q0", {{"IS_CURRENT_QUAD", "TRUE"}}}}}});

    EXPECT_TRUE(loader_.m_quadsUsage.at("Q0")->IS_CURRENT_QUAD);
}

TEST_F(RequestDictionary, TakesAnyOtherWordAsNotTheCurrentQuad) {
    for (const char* word : {"", "0", "yes", "false", "2", " 1"}) {
        readQuads({{"K", {{"Q0", {{"IS_CURRENT_QUAD", word}}}}}});
        EXPECT_FALSE(loader_.m_quadsUsage.at("Q0")->IS_CURRENT_QUAD) << word;
    }
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestDictionary, TakesTheChannelsOfTheLastKey) {
    readQuads({{"K", {{"Q0", {{"B", "CH1"}, {"A", "CH0,CH2"}}}}}});

    EXPECT_THAT(loader_.m_quadsUsage.at("Q0")->channels, ElementsAre("CH1"));
}

TEST_F(RequestDictionary, KeepsEmptyTokensOfLists) {
    readQuads({{"K", {{"Q0", {{"CH", ",CH0,,"}, {"MSTRCLK", ""}}}}}});

    EXPECT_THAT(loader_.m_quadsUsage.at("Q0")->channels, ElementsAre("", "CH0", "", ""));
    EXPECT_THAT(loader_.m_quadsUsage.at("Q0")->MSTRCLK, ElementsAre(""));
}

TEST_F(RequestDictionary, KeepsTheFirstOfTwoQuadsOfOneName) {
    readQuads({{"B", {{"Q0", {{"CH", "CH1"}}}}}, {"A", {{"Q0", {{"CH", "CH0"}}}}}});

    ASSERT_THAT(loader_.m_quadsUsage, ElementsAre(Key("Q0")));
    EXPECT_EQ(loader_.m_quadsUsage.at("Q0")->usageKey, "A");
    EXPECT_THAT(loader_.m_quadsUsage.at("Q0")->channels, ElementsAre("CH0"));
}

// Lanes

TEST_F(RequestDictionary, ReadsWhatALaneGivesAndDefaultsTheRest) {
    readLanes({{"0", {{"tx", "0,1"}, {"rates", "2"}}}});

    ASSERT_THAT(loader_.m_channelUsage, SizeIs(1));
    const channelUsageInfo& lane = loader_.m_channelUsage.front();
    EXPECT_EQ(lane.group, "");
    EXPECT_EQ(lane.usageMode, "simplex");
    EXPECT_FALSE(lane.usageFlag);
    EXPECT_THAT(lane.tx, ElementsAre(0, 1));
    EXPECT_THAT(lane.rx, IsEmpty());
    EXPECT_THAT(lane.txrate, IsEmpty());
    EXPECT_THAT(lane.rxrate, IsEmpty());
    EXPECT_THAT(lane.rates, ElementsAre(2));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestDictionary, ReadsEveryKeyOfALane) {
    readLanes({{"0",
                {{"group", "A,B"},
                 {"tx", "3"},
                 {"rx", "2,1"},
                 {"txrate", "r0,r1"},
                 {"rxrate", ",r2"},
                 {"rates", "1,2,3"}}}});

    const channelUsageInfo& lane = loader_.m_channelUsage.at(0);
    EXPECT_EQ(lane.group, "A,B");
    EXPECT_THAT(lane.tx, ElementsAre(3));
    EXPECT_THAT(lane.rx, ElementsAre(2, 1));
    EXPECT_THAT(lane.txrate, ElementsAre("r0", "r1"));
    EXPECT_THAT(lane.rxrate, ElementsAre("", "r2"));
    EXPECT_THAT(lane.rates, ElementsAre(1, 2, 3));
}

TEST_F(RequestDictionary, TakesAnEmptyNumberListAsZero) {
    readLanes({{"0", {{"tx", ""}, {"rx", ""}, {"rates", ""}, {"txrate", ""}}}});

    EXPECT_THAT(loader_.m_channelUsage.at(0).tx, ElementsAre(0));
    EXPECT_THAT(loader_.m_channelUsage.at(0).rx, ElementsAre(0));
    EXPECT_THAT(loader_.m_channelUsage.at(0).rates, ElementsAre(0));
    EXPECT_THAT(loader_.m_channelUsage.at(0).txrate, ElementsAre(""));
}

TEST_F(RequestDictionary, TakesTheNumberAtTheBeginningOfAToken) {
    readLanes({{"0", {{"tx", " 1,2x,x,-1"}}}});

    EXPECT_THAT(loader_.m_channelUsage.at(0).tx, ElementsAre(1, 2, 0, -1));
}

TEST_F(RequestDictionary, IgnoresOtherKeysOfALane) {
    readLanes({{"0", {{"usageMode", "duplex"}, {"usageFlag", "1"}, {"TX", "1"}}}});

    EXPECT_EQ(loader_.m_channelUsage.at(0).usageMode, "simplex");
    EXPECT_FALSE(loader_.m_channelUsage.at(0).usageFlag);
    EXPECT_THAT(loader_.m_channelUsage.at(0).tx, IsEmpty());
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestDictionary, TakesLanesInTheOrderOfTheirKeys) {
    readLanes(
        {{"2", {{"group", "third"}}}, {"10", {{"group", "second"}}}, {"1", {{"group", "first"}}}});

    ASSERT_THAT(loader_.m_channelUsage, SizeIs(3));
    EXPECT_EQ(loader_.m_channelUsage[0].group, "first");
    EXPECT_EQ(loader_.m_channelUsage[1].group, "second");
    EXPECT_EQ(loader_.m_channelUsage[2].group, "third");
}

// Sections

TEST_F(RequestDictionary, PutsTransmitBeforeReceive) {
    EXPECT_TRUE(readSettings(
        {{"RX_SETTINGS", lanesWith({{"0", 2}})}, {"TX_SETTINGS", lanesWith({{"0", 1}})}}));

    ASSERT_THAT(loader_.m_userParams, SizeIs(2));
    EXPECT_EQ(number(0, 0, 0), 1U);
    EXPECT_EQ(number(1, 0, 0), 2U);
}

TEST_F(RequestDictionary, PushesNothingForAMissingSection) {
    EXPECT_TRUE(readSettings({{"RX_SETTINGS", lanesWith({{"0", 2}})}}, "other"));

    ASSERT_THAT(loader_.m_userParams, SizeIs(1));
    EXPECT_EQ(number(0, 0, 0), 2U);
}

TEST_F(RequestDictionary, PushesFourEmptyLanesForAMissingReceiveSectionOfTessera) {
    EXPECT_TRUE(readSettings({{"TX_SETTINGS", lanesWith({{"0", 1}})}}, tessera));

    ASSERT_THAT(loader_.m_userParams, SizeIs(2));
    EXPECT_EQ(number(0, 0, 0), 1U);
    EXPECT_THAT(loader_.m_userParams[1], ElementsAre(IsEmpty(), IsEmpty(), IsEmpty(), IsEmpty()));
}

TEST_F(RequestDictionary, PushesFourEmptyLanesForAMissingTransmitSectionOfTessera) {
    EXPECT_TRUE(readSettings({{"RX_SETTINGS", lanesWith({{"3", 1}})}}, tessera));

    ASSERT_THAT(loader_.m_userParams, SizeIs(2));
    EXPECT_THAT(loader_.m_userParams[0], ElementsAre(IsEmpty(), IsEmpty(), IsEmpty(), IsEmpty()));
    EXPECT_EQ(number(1, 3, 0), 1U);
}

TEST_F(RequestDictionary, IgnoresOtherSections) {
    EXPECT_TRUE(readSettings({{"OTHER_SETTINGS", faulty}}));
    EXPECT_THAT(loader_.m_userParams, IsEmpty());

    EXPECT_TRUE(readSettings({{"OTHER_SETTINGS", faulty}}, tessera));
    EXPECT_THAT(loader_.m_userParams, ElementsAre(SizeIs(4), SizeIs(4)));
    EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(RequestDictionary, FailsWithAFaultyReceiveSection) {
    EXPECT_FALSE(readSettings({{"RX_SETTINGS", faulty}, {"TX_SETTINGS", lanesWith({{"0", 1}})}}));
    EXPECT_THAT(errors(), ElementsAre(unknownParameter("UNKNOWN")));
}

TEST_F(RequestDictionary, ReportsAFaultyTransmitSectionButPassesWithAGoodReceiveSection) {
    EXPECT_TRUE(readSettings({{"RX_SETTINGS", lanesWith({{"0", 1}})}, {"TX_SETTINGS", faulty}}));
    EXPECT_THAT(errors(), ElementsAre(unknownParameter("UNKNOWN")));
}

TEST_F(RequestDictionary, FailsWithAFaultyTransmitSectionAlone) {
    EXPECT_FALSE(readSettings({{"TX_SETTINGS", faulty}}));
    EXPECT_FALSE(readSettings({{"TX_SETTINGS", faulty}}, tessera));
    EXPECT_THAT(errors(), ElementsAre(unknownParameter("UNKNOWN"), unknownParameter("UNKNOWN")));
}

TEST_F(RequestDictionary, ReadASecondTimeLeavesOnlyItsOwnData) {
    EXPECT_TRUE(readRequest(loader_, {{"TX_SETTINGS", lanesWith({{"0", 1}})}}, {{"0", {}}},
                            {{"K", {{"Q0", {}}}}}));
    EXPECT_TRUE(readRequest(loader_, {}, {}, {}));

    EXPECT_THAT(loader_.m_quadsUsage, IsEmpty());
    EXPECT_THAT(loader_.m_channelUsage, IsEmpty());
    EXPECT_THAT(loader_.m_userParams, IsEmpty());
}

// Lanes of a section

TEST_F(RequestDictionary, TakesAsManyLanesAsThereAreKeysInTheirOrder) {
    EXPECT_TRUE(readSettings({{"TX_SETTINGS", lanesWith({{"2", 3}, {"10", 2}, {"1", 1}})}}));

    ASSERT_THAT(loader_.m_userParams, ElementsAre(SizeIs(3)));
    EXPECT_EQ(number(0, 0, 0), 1U);
    EXPECT_EQ(number(0, 1, 0), 2U);
    EXPECT_EQ(number(0, 2, 0), 3U);
}

TEST_F(RequestDictionary, GivesTesseraFourLanesOfWhichUnnamedOnesAreEmpty) {
    EXPECT_TRUE(readSettings({{"TX_SETTINGS", lanesWith({{"CH1", 11}, {"CH3", 33}})}}, tessera));

    ASSERT_THAT(loader_.m_userParams.at(0),
                ElementsAre(IsEmpty(), SizeIs(1), IsEmpty(), SizeIs(1)));
    EXPECT_EQ(number(0, 1, 0), 11U);
    EXPECT_EQ(number(0, 3, 0), 33U);
}

TEST_F(RequestDictionary, FeedsTwoLanesOfTesseraFromAKeyWithTwoDigits) {
    EXPECT_TRUE(readSettings({{"TX_SETTINGS", lanesWith({{"CH02", 7}})}}, tessera));

    EXPECT_THAT(loader_.m_userParams.at(0),
                ElementsAre(SizeIs(1), IsEmpty(), SizeIs(1), IsEmpty()));
    EXPECT_EQ(number(0, 0, 0), 7U);
    EXPECT_EQ(number(0, 2, 0), 7U);
}

TEST_F(RequestDictionary, AppendsTheRatesOfEveryKeyThatNamesALaneOfTessera) {
    EXPECT_TRUE(readSettings({{"TX_SETTINGS", lanesWith({{"B1", 2}, {"A1", 1}})}}, tessera));

    EXPECT_THAT(loader_.m_userParams.at(0).at(1), SizeIs(2));
    EXPECT_EQ(number(0, 1, 0), 1U);
    EXPECT_EQ(number(0, 1, 1), 2U);
}

TEST_F(RequestDictionary, PassesOverKeysThatNameNoLaneOfTessera) {
    EXPECT_TRUE(readSettings({{"TX_SETTINGS", lanesWith({{"CH4", 1}, {"", 2}})}}, tessera));

    EXPECT_THAT(loader_.m_userParams.at(0),
                ElementsAre(IsEmpty(), IsEmpty(), IsEmpty(), IsEmpty()));
}

TEST_F(RequestDictionary, MayHaveALaneWithoutRates) {
    EXPECT_TRUE(readSettings({{"TX_SETTINGS", lanesWith({{"0", 0}})}}));

    EXPECT_THAT(loader_.m_userParams, ElementsAre(ElementsAre(IsEmpty())));
}

TEST_F(RequestDictionary, AppendsLanesToThoseThatStandInTheDirection) {
    std::vector<std::vector<std::map<std::string, ruleValue>>> direction(1);

    EXPECT_TRUE(loader_.loadSettings(lanesWith({{"0", 5}}), direction, ""));
    ASSERT_THAT(direction, ElementsAre(IsEmpty(), SizeIs(1)));
    EXPECT_EQ(direction[1][0].at("N"), ruleValue(5U));
}

// Rates of a lane

TEST_F(RequestDictionary, TakesTwelveRatesByNumber) {
    settingsMap settings;
    for (unsigned rate = 0; rate < 12; ++rate) {
        settings["0"]["LR" + std::to_string(rate) + "_SETTINGS"]["N"] = std::to_string(100 + rate);
    }

    EXPECT_TRUE(readSettings({{"TX_SETTINGS", settings}}));
    ASSERT_THAT(loader_.m_userParams, ElementsAre(ElementsAre(SizeIs(12))));
    for (unsigned rate = 0; rate < 12; ++rate) {
        EXPECT_EQ(number(0, 0, rate), 100 + rate);
    }
}

TEST_F(RequestDictionary, ReadsNoRateBeyondTheNumberOfKeys) {
    EXPECT_TRUE(readSettings(
        {{"TX_SETTINGS",
          {{"0", {{"LR0_SETTINGS", {{"N", "10"}}}, {"LR2_SETTINGS", {{"N", "12"}}}}}}}}));

    ASSERT_THAT(loader_.m_userParams, ElementsAre(ElementsAre(SizeIs(2))));
    EXPECT_EQ(number(0, 0, 0), 10U);
    EXPECT_THAT(loader_.m_userParams[0][0][1], IsEmpty());
}

TEST_F(RequestDictionary, CountsRateKeysOfAnyOtherForm) {
    EXPECT_TRUE(readSettings(
        {{"TX_SETTINGS", {{"0", {{"LR1_SETTINGS", {{"N", "11"}}}, {"lr0", {{"N", "10"}}}}}}}}));

    ASSERT_THAT(loader_.m_userParams, ElementsAre(ElementsAre(SizeIs(2))));
    EXPECT_THAT(loader_.m_userParams[0][0][0], IsEmpty());
    EXPECT_EQ(number(0, 0, 1), 11U);
}

TEST_F(RequestDictionary, StopsAMapAtAnUnknownParameterAndGoesOnWithTheNext) {
    const settingsMap settings = {
        {"0",
         {{"LR0_SETTINGS", {{"M", "1"}, {"N", "2"}, {"O", "3"}}}, {"LR1_SETTINGS", {{"O", "4"}}}}},
        {"1", {{"LR0_SETTINGS", {{"N", "5"}}}}}};
    loader_.m_paramTypes["M"].type = "int";
    loader_.m_paramTypes["O"].type = "int";
    loader_.m_paramTypes.erase("N");

    EXPECT_FALSE(readSettings({{"TX_SETTINGS", settings}}));
    const auto& lanes = loader_.m_userParams.at(0);
    ASSERT_THAT(lanes, ElementsAre(SizeIs(2), SizeIs(1)));
    EXPECT_THAT(lanes[0][0], ElementsAre(Key("M")));
    EXPECT_THAT(lanes[0][1], ElementsAre(Key("O")));
    EXPECT_THAT(lanes[1][0], IsEmpty());
    EXPECT_THAT(errors(), ElementsAre(unknownParameter("N"), unknownParameter("N")));
}

TEST_F(RequestDictionary, EntersAnUnknownParameterIntoTheTypesWithoutAType) {
    EXPECT_FALSE(readSettings({{"TX_SETTINGS", faulty}}));

    ASSERT_THAT(loader_.m_paramTypes, Contains(Key("UNKNOWN")));
    EXPECT_EQ(loader_.m_paramTypes.at("UNKNOWN").type, "");
}

/// A text and what it becomes for a parameter of a type.
struct Conversion {
    std::string name;
    std::string type;
    std::string text;
    ruleValue value;
};

class DictionaryValue : public RequestDictionary, public testing::WithParamInterface<Conversion> {};

TEST_P(DictionaryValue, TakesTheTypeOfTheParameter) {
    loader_.m_paramTypes["V"].type = GetParam().type;

    EXPECT_TRUE(
        readSettings({{"RX_SETTINGS", {{"0", {{"LR0_SETTINGS", {{"V", GetParam().text}}}}}}}}));
    EXPECT_EQ(loader_.m_userParams.at(0).at(0).at(0).at("V"), GetParam().value);
    EXPECT_THAT(errors(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    EachType, DictionaryValue,
    testing::Values(
        Conversion{"EmptyText", "string", "", std::string()},
        Conversion{"TextWithBlanksAndComma", "string", " R0,R1 ", std::string(" R0,R1 ")},
        Conversion{"Int", "int", "12", 12U}, Conversion{"IntBeforeLetters", "int", "12abc", 12U},
        Conversion{"IntOfEmptyText", "int", "", 0U}, Conversion{"IntOfLetters", "int", "abc", 0U},
        Conversion{"NegativeIntWraps", "int", "-1", 4294967295U},
        Conversion{"IntBeyondTheRangeIsTheLargest", "int", "4294967296", 4294967295U},
        Conversion{"IntOfAFraction", "int", "1.9", 1U},
        Conversion{"BoolInCapitals", "bool", "TRUE", true},
        Conversion{"BoolByOne", "bool", "1", true}, Conversion{"BoolByWord", "bool", "true", true},
        Conversion{"BoolByZero", "bool", "0", false},
        Conversion{"BoolOfEmptyText", "bool", "", false},
        Conversion{"BoolOfAnotherWord", "bool", "yes", false},
        Conversion{"Float", "float", "0.1", 0.1F},
        Conversion{"FloatOfLetters", "float", "abc", 0.0F},
        Conversion{"Double", "double", "10.3125", 10.3125},
        Conversion{"DoubleWithExponent", "double", "1.5e3", 1500.0},
        Conversion{"DoubleWithOpenExponent", "double", "12e", 0.0},
        Conversion{"DoubleOfEmptyText", "double", "", 0.0}),
    [](const auto& test) { return test.param.name; });

}  // namespace
