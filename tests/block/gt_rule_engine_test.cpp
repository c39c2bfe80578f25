#include "block_engine.h"
#include "support/captured_output.h"
#include "support/clean_log.h"

#include <lanecfg/rule_engine_utilities.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using lanecfg_test::BlockEngine;
using lanecfg_test::BlockSetup;
using lanecfg_test::CapturedOutput;
using lanecfg_test::CleanLog;
using lanecfg_test::rateList;
using sable_lanecfg::channelUsageInfo;
using sable_lanecfg::rule_engine_utilities;
using sable_lanecfg::ruleValue;
using sable_lanecfg::userParamStore;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

TEST(GtRuleEngine, TakesOverWhatItIsMadeOf) {
    BlockSetup setup;
    setup.parameter("TX_A", "int", "1").reg("REG", "CH", {{"REG.F", {0, 1}}}).lane(2, "g", "g");
    setup.rates(1, 3, {{{"RX_B", 1U}}});
    const BlockEngine engine(setup);
    EXPECT_EQ(engine.family, "SXB");
    EXPECT_THAT(engine.paramTypes, SizeIs(1));
    EXPECT_EQ(engine.attributes.at("REG").fields.count("REG.F"), 1U);
    EXPECT_EQ(engine.channelUsage.at(0).tx, (std::vector<int>{2}));
    EXPECT_EQ(engine.userParams, setup.params);
    EXPECT_EQ(engine.settings, setup.settings);
}

TEST(GtRuleEngine, StartsWithoutPrefixesModesSnapshotsAndPassValues) {
    const BlockEngine engine(BlockSetup().lane(0, "g", "g"));
    EXPECT_EQ(engine.attributePrefix, "");
    EXPECT_EQ(engine.portPrefix, "");
    EXPECT_EQ(engine.statNpiRegList, "");
    EXPECT_THAT(engine.laneMode, IsEmpty());
    EXPECT_THAT(engine.blockVarMap, IsEmpty());
    EXPECT_THAT(engine.passStartValues, IsEmpty());
    EXPECT_TRUE(engine.passFlag);
}

TEST(GtRuleEngine, EntersEveryParameterAsABlankVariable) {
    BlockEngine engine(
        BlockSetup().parameter("TX_A", "int", "1").parameter("ODD", "no such type", "1"));
    ASSERT_THAT(engine.varMap, SizeIs(2));
    for (const char* name : {"TX_A", "ODD"}) {
        EXPECT_EQ(engine.varMap.at(name).value.which(), 0);
        EXPECT_FALSE(engine.varMap.at(name).ruleNumber);
    }
}

TEST(GtRuleEngine, NumbersParametersAsVerticesInKeyOrder) {
    BlockEngine engine(BlockSetup().parameter("TX_B", "int", "1").parameter("TX_A", "int", "1"));
    EXPECT_EQ(engine.addVertex("TX_A", {}), 0U);
    EXPECT_EQ(engine.addVertex("TX_B", {}), 1U);
}

TEST(AddVertices, LeavesKnownVariablesAsTheyAre) {
    BlockEngine engine{BlockSetup()};
    engine.setVal("TX_A", 5U);
    engine.addVertices({{"TX_A", {"int", "", "1"}}, {"TX_B", {"int", "", "1"}}});
    EXPECT_EQ(engine.getVal<unsigned int>("TX_A"), 5U);
    EXPECT_EQ(engine.varMap.at("TX_B").value.which(), 0);
}

/// A usage record of several lanes.
channelUsageInfo record(std::vector<int> tx, std::vector<std::string> txRates, std::vector<int> rx,
                        std::vector<std::string> rxRates) {
    channelUsageInfo usage;
    usage.tx = std::move(tx);
    usage.txrate = std::move(txRates);
    usage.rx = std::move(rx);
    usage.rxrate = std::move(rxRates);
    return usage;
}

struct UsageAndModes {
    const char* name;
    std::vector<channelUsageInfo> usage;
    std::vector<int> togetherChannels;
};

class FindMode : public ::testing::TestWithParam<UsageAndModes> {};

TEST_P(FindMode, GivesTheModeOfEveryChannel) {
    BlockSetup setup;
    setup.usage = GetParam().usage;
    BlockEngine engine(setup);
    engine.findMode();
    std::map<int, std::string> expected;
    for (int channel = 0; channel < 4; ++channel) {
        expected[channel] = "txrx_rate_seperate";
    }
    for (const int channel : GetParam().togetherChannels) {
        expected[channel] = "txrx_rate_together";
    }
    EXPECT_EQ(engine.laneMode, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Usages, FindMode,
    ::testing::Values(
        UsageAndModes{"NoUsageIsSeparate", {}, {}},
        UsageAndModes{
            "SameNameInOneRecordIsTogether", {record({0, 1}, {"a", "b"}, {0, 1}, {"a", "c"})}, {0}},
        UsageAndModes{"PositionsInTheListsMayDiffer",
                      {record({2, 3}, {"a", "b"}, {3, 2}, {"b", "a"})},
                      {2, 3}},
        UsageAndModes{"EmptyNamesAreSeparate", {record({0}, {""}, {0}, {""})}, {}},
        UsageAndModes{"OneDirectionOnlyIsSeparate", {record({0}, {"a"}, {}, {})}, {}},
        UsageAndModes{"MatchInDifferentRecordsStaysSeparate",
                      {record({0}, {"a"}, {}, {}), record({}, {}, {0}, {"a"})},
                      {}},
        UsageAndModes{"NameOfTheRecordBeforeDoesNotCount",
                      {record({0}, {"a"}, {0}, {"b"}), record({}, {}, {0}, {"a"})},
                      {}},
        UsageAndModes{"AnyRecordThatMatchesIsEnough",
                      {record({0}, {"a"}, {0}, {"b"}), record({0}, {"c"}, {0}, {"c"}),
                       record({0}, {"d"}, {0}, {"e"})},
                      {0}},
        UsageAndModes{
            "TheFirstPositionOfAChannelCounts",
            {record({0, 0}, {"a", "b"}, {0}, {"b"}), record({1, 1}, {"a", "b"}, {1}, {"a"})},
            {1}},
        UsageAndModes{
            "NamesMissingAtTheEndOfBothListsAreEmpty", {record({0, 1}, {"a"}, {0, 1}, {"a"})}, {0}},
        UsageAndModes{
            "NameMissingInOneListIsSeparate", {record({0, 1}, {"a", "b"}, {0, 1}, {"a"})}, {0}},
        UsageAndModes{"ChannelsBeyondTheQuadDoNotCount", {record({4}, {"a"}, {4}, {"a"})}, {}}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(FindModeAgain, FollowsChangedUsage) {
    BlockEngine engine(BlockSetup().lane(1, "a", "a"));
    engine.findMode();
    ASSERT_EQ(engine.laneMode.at(1), "txrx_rate_together");
    engine.channelUsage.at(0).txrate = {"b"};
    engine.findMode();
    EXPECT_EQ(engine.laneMode.at(1), "txrx_rate_seperate");
}

TEST(FindModeOfTwoChannelFamily, HasTwoChannels) {
    BlockSetup setup;
    setup.family = "SXD4";
    BlockEngine engine(setup.lane(1, "a", "a"));
    engine.findMode();
    EXPECT_THAT(engine.laneMode,
                ElementsAre(Pair(0, "txrx_rate_seperate"), Pair(1, "txrx_rate_together")));
}

struct TypedDefault {
    std::string name;
    const char* type;
    const char* text;
    ruleValue value;
};

class DefaultOfType : public ::testing::TestWithParam<TypedDefault> {};

TEST_P(DefaultOfType, IsConverted) {
    BlockEngine engine(BlockSetup().parameter("TX_A", GetParam().type, GetParam().text));
    userParamStore params;
    engine.populateUserParamDefaults(params);
    EXPECT_THAT(params.at(0).at(0), ElementsAre(ElementsAre(Pair("TX_A", GetParam().value))));
}

INSTANTIATE_TEST_SUITE_P(
    Types, DefaultOfType,
    ::testing::Values(TypedDefault{"IntBeforeLetters", "int", "12abc", 12U},
                      TypedDefault{"NegativeIntWraps", "int", "-1", 4294967295U},
                      TypedDefault{"IntOfEmptyText", "int", "", 0U},
                      TypedDefault{"Float", "float", "0.1", 0.1F},
                      TypedDefault{"DoubleWithExponent", "double", "1.5e3", 1500.0},
                      TypedDefault{"DoubleOfLetters", "double", "none", 0.0},
                      TypedDefault{"EmptyText", "string", "", std::string()},
                      TypedDefault{"TextWithBlank", "string", "R0 ", std::string("R0 ")},
                      TypedDefault{"BoolInCapitals", "bool", "TRUE", true},
                      TypedDefault{"BoolByOne", "bool", "1", true},
                      TypedDefault{"BoolOfAnotherWord", "bool", "on", false}),
    [](const auto& test) { return test.param.name; });

class PopulateUserParamDefaults : public ::testing::Test {
  protected:
    BlockEngine engine{BlockSetup()
                           .parameter("RX_A", "int", "1")
                           .parameter("TX_A", "int", "2")
                           .parameter("RXPLAIN", "int", "3")
                           .parameter("rx_lower", "int", "4")
                           .parameter("PLAIN", "int", "5")
                           .parameter("TX_RX_A", "int", "6")
                           .parameter("TX_ODD", "vector", "7")
                           .parameter("RX_INT", "Int", "8")};

    const std::map<std::string, ruleValue> txDefaults{
        {"TX_A", 2U}, {"rx_lower", 4U}, {"PLAIN", 5U}, {"TX_RX_A", 6U}};
    const std::map<std::string, ruleValue> rxDefaults{{"RX_A", 1U}, {"RXPLAIN", 3U}};
};

TEST_F(PopulateUserParamDefaults, SharesParametersByTheStartOfTheirNameAndLeavesOutUnknownTypes) {
    userParamStore params(2, std::vector<rateList>(4));
    engine.populateUserParamDefaults(params);
    EXPECT_EQ(params, (userParamStore{std::vector<rateList>(4, {txDefaults}),
                                      std::vector<rateList>(4, {rxDefaults})}));
}

TEST_F(PopulateUserParamDefaults, LeavesRatesThatAreThereAlone) {
    userParamStore params(2, std::vector<rateList>(4));
    params[0][1] = {{}, {{"TX_A", 9U}}};
    engine.populateUserParamDefaults(params);
    EXPECT_EQ(params[0][1], (rateList{{}, {{"TX_A", 9U}}}));
    EXPECT_EQ(params[0][0], rateList{txDefaults});
    EXPECT_EQ(params[1][1], rateList{rxDefaults});
}

TEST_F(PopulateUserParamDefaults, AddsMissingDirectionsAndChannels) {
    userParamStore params{{{{{"TX_A", 9U}}}}};
    engine.populateUserParamDefaults(params);
    ASSERT_THAT(params, ElementsAre(SizeIs(4), SizeIs(4)));
    EXPECT_EQ(params[0][0], (rateList{{{"TX_A", 9U}}}));
    EXPECT_EQ(params[0][3], rateList{txDefaults});
    EXPECT_THAT(params[1], Each(rateList{rxDefaults}));
}

TEST_F(PopulateUserParamDefaults, LeavesWhatIsBeyondTheQuadAlone) {
    userParamStore params(3, std::vector<rateList>(5));
    engine.populateUserParamDefaults(params);
    EXPECT_THAT(params, Each(SizeIs(5)));
    EXPECT_THAT(params[0][4], IsEmpty());
    EXPECT_THAT(params[2], Each(IsEmpty()));
}

TEST_F(PopulateUserParamDefaults, FillsTheTwoChannelsOfTheTwoChannelFamily) {
    engine.family = "SXD4";
    userParamStore params;
    engine.populateUserParamDefaults(params);
    EXPECT_THAT(params, ElementsAre(SizeIs(2), SizeIs(2)));
}

TEST(PopulateUserParamDefaultsWithoutParameters, GivesEmptyRates) {
    BlockEngine engine{BlockSetup()};
    userParamStore params;
    engine.populateUserParamDefaults(params);
    EXPECT_EQ(params, userParamStore(2, std::vector<rateList>(4, rateList(1))));
}

struct TypeAndPrefix {
    const char* name;
    const char* type;
    int channel;
    const char* prefix;
};

class GetPrefix : public ::testing::TestWithParam<TypeAndPrefix> {
  private:
    const CleanLog cleanLog_;
};

class GetPrefixOfKnownType : public GetPrefix {};

TEST_P(GetPrefixOfKnownType, TellsTheUnit) {
    BlockEngine engine(BlockSetup().reg("REG", GetParam().type));
    EXPECT_EQ(engine.getPrefix("REG", GetParam().channel), GetParam().prefix);
    EXPECT_THAT(rule_engine_utilities::get_log_content(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    EveryRow, GetPrefixOfKnownType,
    ::testing::Values(TypeAndPrefix{"Channel", "channel", 3, "CH_3_"},
                      TypeAndPrefix{"AnythingThatBeginsWithCh", "ch", 0, "CH_0_"},
                      TypeAndPrefix{"FirstClockGroup", "hs_clk_0", 1, "HS_0_"},
                      TypeAndPrefix{"SecondClockGroup", "hs_clk_ips", 2, "HS_1_"},
                      TypeAndPrefix{"ControlUnit", "ctrl_5", 2, "CTRL_"},
                      TypeAndPrefix{"CalibrationUnit", "rcalbg_1", 2, "RCAL_"}),
    [](const auto& tested) { return std::string(tested.param.name); });

class GetPrefixOfUnknownType : public GetPrefix {};

TEST_P(GetPrefixOfUnknownType, IsQuestionMarksAndALogLine) {
    BlockEngine engine(BlockSetup().reg("REG", GetParam().type));
    EXPECT_EQ(engine.getPrefix("REG", 1), "?????");
    EXPECT_THAT(rule_engine_utilities::get_log_content(),
                ElementsAre(std::string("Unexpected attribute type ") + GetParam().type +
                            " for attribute REG"));
}

INSTANTIATE_TEST_SUITE_P(OtherTypes, GetPrefixOfUnknownType,
                         ::testing::Values(TypeAndPrefix{"ChPortInCapitals", "CH_PORT", 1, ""},
                                           TypeAndPrefix{"HsclkInCapitals", "HSCLK", 1, ""},
                                           TypeAndPrefix{"CtrlInCapitals", "CTRL", 1, ""},
                                           TypeAndPrefix{"RcalWithoutBg", "rcal", 1, ""},
                                           TypeAndPrefix{"Dual", "dual", 1, ""},
                                           TypeAndPrefix{"Blank", " ", 1, ""},
                                           TypeAndPrefix{"Empty", "", 1, ""}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(GetPrefix, OfAnUnknownRegisterIsThatOfTheEmptyTypeAndEntersTheRegister) {
    BlockEngine engine{BlockSetup()};
    EXPECT_EQ(engine.getPrefix("NEW", 0), "?????");
    EXPECT_THAT(rule_engine_utilities::get_log_content(),
                ElementsAre("Unexpected attribute type  for attribute NEW"));
    EXPECT_EQ(engine.attributes.count("NEW"), 1U);
}

class Snapshots : public ::testing::Test {
  protected:
    Snapshots() { engine.runBlockRules(); }

    BlockEngine engine{BlockSetup().parameter("TX_A", "int", "7")};
};

TEST_F(Snapshots, AreGivenOutAsACopy) {
    auto copy = engine.getBlockVarMap();
    ASSERT_THAT(copy, SizeIs(4));
    ASSERT_EQ(boost::get<unsigned int>(copy[3].at(0).at("TX_A").value), 7U);
    copy[3][0].at("TX_A").value = ruleValue(8U);
    EXPECT_EQ(engine.inPass<unsigned int>(3, 0, "TX_A"), 7U);
}

TEST_F(Snapshots, AreWalkedByDumpVarsWithoutATrace) {
    const CleanLog cleanLog;
    const CapturedOutput output;
    engine.dumpVars();
    EXPECT_EQ(output.text(), "");
    EXPECT_THAT(rule_engine_utilities::get_log_content(), IsEmpty());
    EXPECT_EQ(engine.passCounts(), (std::vector<std::size_t>{1, 1, 1, 1}));
}

/// An engine of either root of the rule sets.
template <class Engine>
Engine engineOf(const BlockSetup& setup) {
    return Engine(setup.family, setup.usage, setup.types, setup.params, setup.attributes,
                  setup.settings);
}

/// A rule set with its own run and its own answer, which tells how often it ran.
template <class Root>
class OverridingRuleSet : public Root {
  public:
    using Root::Root;

    void runBlockRules() override { ++runs_; }
    std::map<std::string, std::string> getAttribMap() override {
        return {{"own runs", std::to_string(runs_)}};
    }

  private:
    int runs_ = 0;
};

template <class Root>
class RuleSetRoot : public ::testing::Test {
  protected:
    const BlockSetup setup = BlockSetup().parameter("TX_A", "int", "7").reg("TX_A", "CH");
};

struct RootNames {
    template <class Root>
    static std::string GetName(int /*index*/) {
        return std::is_same_v<Root, sable_lanecfg::gt_rule_engine_live> ? "live" : "stable";
    }
};

using Roots =
    ::testing::Types<sable_lanecfg::gt_rule_engine_live, sable_lanecfg::gt_rule_engine_iter_stable>;
TYPED_TEST_SUITE(RuleSetRoot, Roots, RootNames);

TYPED_TEST(RuleSetRoot, RunsTheBlockAndAnswersFromItsSnapshots) {
    auto engine = engineOf<TypeParam>(this->setup);
    sable_lanecfg::gt_rule_engine& base = engine;
    base.runBlockRules();
    EXPECT_THAT(base.blockVarMap, SizeIs(4));
    EXPECT_THAT(base.getAttribMap(), ElementsAre(Pair("CH0_TX_A", "7"), Pair("CH1_TX_A", "7"),
                                                 Pair("CH2_TX_A", "7"), Pair("CH3_TX_A", "7")));
}

TYPED_TEST(RuleSetRoot, LetsARuleSetReplaceTheRunAndTheAnswer) {
    auto engine = engineOf<OverridingRuleSet<TypeParam>>(this->setup);
    sable_lanecfg::gt_rule_engine& base = engine;
    base.runBlockRules();
    EXPECT_THAT(base.blockVarMap, IsEmpty());
    EXPECT_THAT(base.getAttribMap(), ElementsAre(Pair("own runs", "1")));
}

}  // namespace
