#include "block_engine.h"
#include "support/captured_output.h"
#include "support/undefined_name.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

using lanecfg_test::BlockEngine;
using lanecfg_test::BlockSetup;
using lanecfg_test::countedRates;
using lanecfg_test::rateList;
using sable_lanecfg::userParamStore;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

using numbers = std::vector<unsigned int>;
using texts = std::vector<std::string>;

/// A setup with one parameter of each direction, defaults 100 and 200.
BlockSetup twoParameters() {
    BlockSetup setup;
    setup.parameter("TX_A", "int", "100").parameter("RX_A", "int", "200");
    return setup;
}

/// Adds a rule that counts its own runs in a variable.
void countRuns(BlockEngine& engine, const std::string& counter) {
    engine.setVal(counter, 0U);
    engine.rule({}, {counter}, [&engine, counter] {
        engine.setVal(counter, engine.getVal<unsigned int>(counter) + 1);
    });
}

// Which passes run, in which order

TEST(BlockRun, ChannelWithoutRatesRunsOnePassOfDefaults) {
    BlockEngine engine(twoParameters());
    engine.runBlockRules();
    ASSERT_EQ(engine.passCounts(), (std::vector<std::size_t>{1, 1, 1, 1}));
    for (std::size_t channel = 0; channel < 4; ++channel) {
        EXPECT_EQ(engine.inPass<unsigned int>(channel, 0, "TX_A"), 100U);
        EXPECT_EQ(engine.inPass<unsigned int>(channel, 0, "RX_A"), 200U);
        EXPECT_THAT(engine.labels(channel), ElementsAre(Pair(0U, 0U)));
    }
}

TEST(BlockRun, SeparateRatesRunTransmitOuterReceiveInner) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 2, countedRates("TX_A", 2)).rates(1, 2, countedRates("RX_A", 3));
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_THAT(engine.labels(2), ElementsAre(Pair(0U, 0U), Pair(0U, 1U), Pair(0U, 2U),
                                              Pair(1U, 0U), Pair(1U, 1U), Pair(1U, 2U)));
    EXPECT_EQ(engine.inPasses<unsigned int>(2, "TX_A"), (numbers{0, 0, 0, 1, 1, 1}));
    EXPECT_EQ(engine.inPasses<unsigned int>(2, "RX_A"), (numbers{0, 1, 2, 0, 1, 2}));
}

TEST(BlockRun, RatesThatMoveTogetherOnlyRunTheCommonDiagonal) {
    BlockSetup setup = twoParameters();
    setup.lane(1, "g", "g");
    setup.rates(0, 1, countedRates("TX_A", 2)).rates(1, 1, countedRates("RX_A", 4));
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_THAT(engine.labels(1), ElementsAre(Pair(0U, 0U), Pair(1U, 1U)));
    EXPECT_EQ(engine.inPasses<unsigned int>(1, "RX_A"), (numbers{0, 1}));
}

TEST(BlockRun, DirectionWithoutRatesIsOneRateOfDefaults) {
    BlockSetup setup = twoParameters();
    setup.rates(1, 0, countedRates("RX_A", 3));
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_EQ(engine.inPasses<unsigned int>(0, "TX_A"), (numbers{100, 100, 100}));
    EXPECT_EQ(engine.inPasses<unsigned int>(0, "RX_A"), (numbers{0, 1, 2}));
}

TEST(BlockRun, CombinationOfTwoEmptyRatesIsSkipped) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 0, {{}, {{"TX_A", 1U}}}).rates(1, 0, {{{"RX_A", 1U}}, {}});
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_THAT(engine.labels(0), ElementsAre(Pair(0U, 0U), Pair(1U, 0U), Pair(1U, 1U)));
}

TEST(BlockRun, WithoutAnyParameterHasNoPassButAListForEachChannel) {
    BlockEngine engine{BlockSetup()};
    engine.runBlockRules();
    EXPECT_THAT(engine.blockVarMap, ElementsAre(IsEmpty(), IsEmpty(), IsEmpty(), IsEmpty()));
}

TEST(BlockRun, TwoChannelFamilyHasTwoChannelsInOneDual) {
    BlockSetup setup = twoParameters();
    setup.family = "SXD4";
    BlockEngine engine(setup);
    engine.runBlockRules();
    ASSERT_EQ(engine.passCounts(), (std::vector<std::size_t>{1, 1}));
    for (unsigned int channel = 0; channel < 2; ++channel) {
        EXPECT_EQ(engine.inPass<unsigned int>(channel, 0, "DUAL"), 0U);
        EXPECT_EQ(engine.inPass<unsigned int>(channel, 0, "LaneNum"), channel);
    }
}

TEST(BlockRun, MissingDirectionsAndChannelsRunOnDefaultsAndStayMissing) {
    BlockSetup setup = twoParameters();
    setup.params = {{{{{"TX_A", 5U}}}}};
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_EQ(engine.passCounts(), (std::vector<std::size_t>{1, 1, 1, 1}));
    EXPECT_EQ(engine.inPass<unsigned int>(0, 0, "TX_A"), 5U);
    EXPECT_EQ(engine.inPass<unsigned int>(0, 0, "RX_A"), 200U);
    EXPECT_EQ(engine.inPass<unsigned int>(3, 0, "TX_A"), 100U);
    EXPECT_EQ(engine.userParams, setup.params);
}

TEST(BlockRun, NoUserParametersAtAllRunOnDefaults) {
    BlockSetup setup = twoParameters();
    setup.params.clear();
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_EQ(engine.passCounts(), (std::vector<std::size_t>{1, 1, 1, 1}));
}

TEST(BlockRun, ChannelsBeyondTheQuadDoNotRun) {
    BlockSetup setup = twoParameters();
    setup.params = userParamStore(2, std::vector<rateList>(6, countedRates("TX_A", 2)));
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_EQ(engine.passCounts(), (std::vector<std::size_t>{4, 4, 4, 4}));
}

/// The { transmit, receive } labels of the passes of each channel.
using labelLists = std::vector<std::vector<std::pair<unsigned int, unsigned int>>>;

/// A block of random rates, and the passes that it has to run.
struct RandomBlock {
    BlockSetup setup = twoParameters();
    labelLists labels = labelLists(4);
};

RandomBlock randomBlock(std::mt19937& random) {
    std::uniform_int_distribution<unsigned int> rateCount(0, 5);
    RandomBlock block;
    for (unsigned int channel = 0; channel < 4; ++channel) {
        const unsigned int txCount = rateCount(random);
        const unsigned int rxCount = rateCount(random);
        const bool together = random() % 2 == 0;
        block.setup.rates(0, channel, countedRates("TX_A", txCount));
        block.setup.rates(1, channel, countedRates("RX_A", rxCount));
        block.setup.lane(static_cast<int>(channel), "a", together ? "a" : "b");
        for (unsigned int tx = 0; tx < std::max(txCount, 1U); ++tx) {
            for (unsigned int rx = 0; rx < std::max(rxCount, 1U); ++rx) {
                if (!together || tx == rx) {
                    block.labels[channel].emplace_back(tx, rx);
                }
            }
        }
    }
    return block;
}

TEST(BlockRunProperty, PassesAreTheRatesOfBothDirectionsOrTheirDiagonal) {
    std::mt19937 random(20240);
    for (int round = 0; round < 100; ++round) {
        const auto [setup, expected] = randomBlock(random);
        BlockEngine engine(setup);
        countRuns(engine, "RUNS");
        engine.runBlockRules();
        unsigned int passes = 0;
        for (unsigned int channel = 0; channel < 4; ++channel) {
            ASSERT_EQ(engine.labels(channel), expected[channel]) << "channel " << channel;
            for (std::size_t pass = 0; pass < expected[channel].size(); ++pass) {
                const auto [tx, rx] = expected[channel][pass];
                const unsigned int txValue = setup.params[0][channel].empty() ? 100U : tx;
                const unsigned int rxValue = setup.params[1][channel].empty() ? 200U : rx;
                ASSERT_EQ(engine.inPass<unsigned int>(channel, pass, "TX_A"), txValue);
                ASSERT_EQ(engine.inPass<unsigned int>(channel, pass, "RX_A"), rxValue);
                ASSERT_EQ(engine.inPass<unsigned int>(channel, pass, "RUNS"), ++passes);
            }
        }
    }
}

// What a pass sets, in which order

TEST(BlockRun, TellsDualChannelModeAndRevision) {
    BlockSetup setup = twoParameters();
    setup.lane(2, "g", "g");
    BlockEngine engine(setup);
    engine.runBlockRules();
    for (unsigned int channel = 0; channel < 4; ++channel) {
        EXPECT_EQ(engine.inPass<unsigned int>(channel, 0, "DUAL"), channel / 2);
        EXPECT_EQ(engine.inPass<unsigned int>(channel, 0, "LaneNum"), channel);
        EXPECT_EQ(engine.inPass<std::string>(channel, 0, "siliconRev"), "ES2");
        EXPECT_EQ(engine.inPass<std::string>(channel, 0, "LaneTxRxMode"),
                  channel == 2 ? "txrx_rate_together" : "txrx_rate_seperate");
    }
}

TEST(BlockRun, RulesSeeWhatThePassSets) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 3, countedRates("TX_A", 2));
    BlockEngine engine(setup);
    engine.rule({"TX_A", "DUAL", "LaneNum", "siliconRev"}, {"SEEN"}, [&engine] {
        engine.setVal("SEEN", engine.getValAsString("siliconRev") + ":" +
                                  engine.getValAsString("DUAL") + ":" +
                                  engine.getValAsString("LaneNum") + ":" +
                                  engine.getValAsString("TX_A"));
    });
    engine.runBlockRules();
    EXPECT_EQ(engine.inPasses<std::string>(1, "SEEN"), texts{"ES2:0:1:100"});
    EXPECT_EQ(engine.inPasses<std::string>(3, "SEEN"), (texts{"ES2:1:3:0", "ES2:1:3:1"}));
}

struct SettingsWithoutRevision {
    const char* name;
    std::map<std::string, std::vector<std::string>> settings;
};

class BlockRunRevision : public ::testing::TestWithParam<SettingsWithoutRevision> {};

TEST_P(BlockRunRevision, WithoutARevisionIsTheEmptyText) {
    BlockSetup setup = twoParameters();
    setup.settings = GetParam().settings;
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_EQ(engine.inPass<std::string>(0, 0, "siliconRev"), "");
    EXPECT_THAT(engine.settings.at("siliconRev"), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(MissingOrEmpty, BlockRunRevision,
                         ::testing::Values(SettingsWithoutRevision{"NoSettings", {}},
                                           SettingsWithoutRevision{"EmptyList",
                                                                   {{"siliconRev", {}}}}),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(BlockRun, OnlyTheFirstRevisionCounts) {
    BlockSetup setup = twoParameters();
    setup.settings = {{"siliconRev", {"A", "B"}}};
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_EQ(engine.inPass<std::string>(0, 0, "siliconRev"), "A");
}

TEST(BlockRun, ParameterGivenInBothDirectionsTakesTheReceiveValue) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 0, {{{"TX_A", 1U}, {"RX_A", 2U}}}).rates(1, 0, {{{"TX_A", 3U}}});
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_EQ(engine.inPass<unsigned int>(0, 0, "TX_A"), 3U);
    EXPECT_EQ(engine.inPass<unsigned int>(0, 0, "RX_A"), 2U);
}

TEST(BlockRun, ParameterThatARateLeavesOutIsAtItsDefaultAgain) {
    BlockSetup setup = twoParameters();
    setup.parameter("TX_B", "string", "none");
    setup.rates(0, 0, {{{"TX_A", 1U}, {"TX_B", std::string("x")}}, {{"TX_A", 2U}}});
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_EQ(engine.inPasses<std::string>(0, "TX_B"), (texts{"x", "none"}));
    EXPECT_EQ(engine.inPasses<std::string>(1, "TX_B"), texts{"none"});
}

TEST(BlockRun, ParameterThatARuleWritesStartsEachPassAtItsInput) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 0, {{{"RX_A", 1U}}, {{"RX_A", 2U}}});
    BlockEngine engine(setup);
    engine.rule({}, {"TX_A"},
                [&engine] { engine.setVal("TX_A", engine.getVal<unsigned int>("TX_A") + 1); });
    engine.runBlockRules();
    EXPECT_EQ(engine.inPasses<unsigned int>(0, "TX_A"), (numbers{101, 101}));
}

TEST(BlockRun, ParameterOfUnknownTypeStaysBlankUntilARateGivesIt) {
    BlockSetup setup = twoParameters();
    setup.parameter("TX_ODD", "vector", "1");
    setup.rates(0, 1, {{{"TX_ODD", 3U}}, {{"TX_A", 1U}}});
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_EQ(engine.blockVarMap[0][0].at("TX_ODD").value.which(), 0);
    // Nothing resets it, so the value of one rate stays for all later passes.
    EXPECT_EQ(engine.inPasses<unsigned int>(1, "TX_ODD"), (numbers{3, 3}));
    EXPECT_EQ(engine.inPasses<unsigned int>(3, "TX_ODD"), numbers{3});
}

TEST(BlockRun, RateMayReplaceTheAlternativeOfAParameter) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 0, {{{"TX_A", std::string("text")}}, {{"TX_A", 2.5}}});
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_EQ(engine.inPass<std::string>(0, 0, "TX_A"), "text");
    EXPECT_EQ(engine.inPass<double>(0, 1, "TX_A"), 2.5);
    EXPECT_EQ(engine.inPass<unsigned int>(1, 0, "TX_A"), 100U);
}

TEST(BlockRun, NameThatNobodyKnowsBecomesAVariableFromItsRateOn) {
    BlockSetup setup = twoParameters();
    setup.rates(1, 0, {{{"RX_A", 1U}}, {{"NEW", 7U}}});
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_EQ(engine.blockVarMap[0][0].count("NEW"), 0U);
    EXPECT_EQ(engine.inPass<unsigned int>(0, 1, "NEW"), 7U);
    EXPECT_EQ(engine.inPass<unsigned int>(3, 0, "NEW"), 7U);
}

TEST(BlockRun, NewVariablesAreEnteredInTheOrderInWhichThePassSetsThem) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 0, {{{"NEW_TX", 1U}}}).rates(1, 0, {{{"NEW_RX", 1U}}});
    BlockEngine engine(setup);
    engine.passStartValues = {{"NEW_START", 1U}};
    engine.runBlockRules();
    // The parameters are vertices 0 and 1. The evaluation order of rules depends on the numbers.
    unsigned long vertex = 2;
    for (const char* name : {"NEW_START", "NEW_TX", "NEW_RX", "DUAL", "LaneTxRxMode", "LaneNum",
                             "siliconRev", "RX", "TX"}) {
        EXPECT_EQ(engine.addVertex(name, {}), vertex++) << name;
    }
}

TEST(BlockRun, ParameterAddedAfterConstructionIsSetToo) {
    BlockEngine engine(twoParameters());
    engine.paramTypes["TX_LATE"] = {"int", "", "9"};
    engine.runBlockRules();
    EXPECT_EQ(engine.inPass<unsigned int>(0, 0, "TX_LATE"), 9U);
}

TEST(BlockRun, RunVariablesOverruleARateThatNamesThem) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 2, {{{"LaneNum", 77U}, {"DUAL", 77U}, {"TX", 77U}, {"RX", 77U}}});
    BlockEngine engine(setup);
    engine.rule({"LaneNum", "DUAL", "TX"}, {"SEEN"}, [&engine] {
        const bool known = engine.findVariable("TX")->second.value.which() != 0;
        engine.setVal("SEEN", engine.getVal<unsigned int>("LaneNum") +
                                  engine.getVal<unsigned int>("DUAL") +
                                  (known ? engine.getVal<unsigned int>("TX") : 0U));
    });
    engine.runBlockRules();
    // Rules see the rate's own TX, since the label is only set behind them.
    EXPECT_EQ(engine.inPass<unsigned int>(2, 0, "SEEN"), 2U + 1U + 77U);
    EXPECT_THAT(engine.labels(2), ElementsAre(Pair(0U, 0U)));
}

TEST(BlockRunPassStartValues, ComeAfterDefaultsAndBeforeTheRate) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 1, {{{"TX_A", 1U}}, {{"RX_A", 2U}}});
    BlockEngine engine(setup);
    engine.passStartValues = {{"TX_A", 50U}, {"RX_A", 60U}};
    engine.runBlockRules();
    EXPECT_EQ(engine.inPasses<unsigned int>(1, "TX_A"), (numbers{1, 50}));
    // The receive direction of channel 1 has no rates, so it gives its default in each pass.
    EXPECT_EQ(engine.inPasses<unsigned int>(1, "RX_A"), (numbers{200, 200}));
}

TEST(BlockRunPassStartValues, ResetAVariableThatRulesChange) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 0, countedRates("TX_A", 2));
    BlockEngine engine(setup);
    countRuns(engine, "COUNT");
    engine.passStartValues = {{"COUNT", 10U}, {"LIST", std::vector<double>()}};
    engine.runBlockRules();
    EXPECT_EQ(engine.inPasses<unsigned int>(0, "COUNT"), (numbers{11, 11}));
    EXPECT_EQ(engine.inPasses<unsigned int>(3, "COUNT"), numbers{11});
    EXPECT_THAT(engine.inPass<std::vector<double>>(0, 0, "LIST"), IsEmpty());
}

// What stays from pass to pass

TEST(BlockRun, VariableThatIsNoParameterKeepsItsValueAcrossPassesAndChannels) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 0, countedRates("TX_A", 3)).rates(0, 2, countedRates("TX_A", 2));
    BlockEngine engine(setup);
    countRuns(engine, "COUNT");
    engine.runBlockRules();
    EXPECT_EQ(engine.inPasses<unsigned int>(0, "COUNT"), (numbers{1, 2, 3}));
    EXPECT_EQ(engine.inPasses<unsigned int>(1, "COUNT"), numbers{4});
    EXPECT_EQ(engine.inPasses<unsigned int>(2, "COUNT"), (numbers{5, 6}));
    EXPECT_EQ(engine.inPasses<unsigned int>(3, "COUNT"), numbers{7});
    EXPECT_EQ(engine.getVal<unsigned int>("COUNT"), 7U);
}

TEST(BlockRunProperty, OutputThatARuleLeavesAloneKeepsTheValueOfTheLastPassThatWroteIt) {
    std::mt19937 random(77);
    for (int round = 0; round < 50; ++round) {
        BlockSetup setup = twoParameters();
        numbers written;
        for (std::size_t channel = 0; channel < 4; ++channel) {
            rateList rates;
            for (unsigned int count = 1 + static_cast<unsigned int>(random() % 5); count > 0;
                 --count) {
                written.push_back(static_cast<unsigned int>(random() % 4));
                rates.push_back({{"TX_A", written.back()}});
            }
            setup.rates(0, channel, rates);
        }
        BlockEngine engine(setup);
        engine.setVal("KEPT", 99U);
        engine.rule({"TX_A"}, {"KEPT"}, [&engine] {
            if (engine.getVal<unsigned int>("TX_A") != 0) {
                engine.setVal("KEPT", engine.getVal<unsigned int>("TX_A"));
            }
        });
        engine.runBlockRules();
        unsigned int kept = 99;
        std::size_t next = 0;
        for (std::size_t channel = 0; channel < 4; ++channel) {
            for (const unsigned int found : engine.inPasses<unsigned int>(channel, "KEPT")) {
                kept = written.at(next) != 0 ? written.at(next) : kept;
                ++next;
                ASSERT_EQ(found, kept);
            }
        }
    }
}

/// Adds a rule that notes in SEEN the labels that it finds, both digits in one text.
void noteLabels(BlockEngine& engine) {
    engine.rule({}, {"SEEN"}, [&engine] {
        const bool labelled = engine.findVariable("TX") != nullptr;
        engine.setVal("SEEN", labelled ? engine.getValAsString("TX") + engine.getValAsString("RX")
                                       : std::string("none"));
    });
}

TEST(BlockRun, LabelsAreVisibleToRulesFromTheSecondPassOn) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 0, countedRates("TX_A", 2)).rates(1, 0, countedRates("RX_A", 2));
    BlockEngine engine(setup);
    noteLabels(engine);
    engine.runBlockRules();
    // Each pass sees the labels of the pass before it.
    EXPECT_EQ(engine.inPasses<std::string>(0, "SEEN"), (texts{"none", "00", "01", "10"}));
    EXPECT_EQ(engine.inPasses<std::string>(1, "SEEN"), texts{"11"});
    EXPECT_EQ(engine.inPasses<std::string>(2, "SEEN"), texts{"00"});
}

TEST(BlockRunProperty, RulesSeeTheLabelsOfThePassBeforeAlsoAcrossChannels) {
    std::mt19937 random(4711);
    for (int round = 0; round < 100; ++round) {
        const auto [setup, labels] = randomBlock(random);
        BlockEngine engine(setup);
        noteLabels(engine);
        engine.runBlockRules();
        std::string before = "none";
        for (std::size_t channel = 0; channel < 4; ++channel) {
            texts expected;
            for (const auto& [tx, rx] : labels[channel]) {
                expected.push_back(before);
                before = std::to_string(tx) + std::to_string(rx);
            }
            ASSERT_EQ(engine.inPasses<std::string>(channel, "SEEN"), expected)
                << "round " << round << ", channel " << channel;
        }
    }
}

// Snapshots

TEST(BlockRun, SnapshotsHoldEveryVariableAndItsRuleNumber) {
    BlockEngine engine(twoParameters());
    countRuns(engine, "COUNT");
    engine.runBlockRules();
    const auto& snapshot = engine.blockVarMap[3][0];
    EXPECT_THAT(snapshot, SizeIs(9));
    EXPECT_EQ(snapshot.at("COUNT").ruleNumber, 0);
    EXPECT_FALSE(snapshot.at("TX_A").ruleNumber);
    EXPECT_EQ(snapshot.size(), engine.varMap.size());
}

TEST(BlockRun, ClearsTheSnapshotsOfTheRunBefore) {
    BlockEngine engine(twoParameters());
    countRuns(engine, "COUNT");
    engine.runBlockRules();
    engine.runBlockRules();
    EXPECT_EQ(engine.passCounts(), (std::vector<std::size_t>{1, 1, 1, 1}));
    EXPECT_EQ(engine.inPass<unsigned int>(0, 0, "COUNT"), 5U);
}

TEST(BlockRun, FollowsChangedParametersInTheNextRun) {
    BlockEngine engine(twoParameters());
    engine.runBlockRules();
    engine.userParams[0][0] = countedRates("TX_A", 2);
    engine.channelUsage = BlockSetup().lane(0, "g", "g").usage;
    engine.runBlockRules();
    EXPECT_EQ(engine.passCounts(), (std::vector<std::size_t>{1, 1, 1, 1}));
    EXPECT_EQ(engine.inPass<unsigned int>(0, 0, "TX_A"), 0U);
    EXPECT_EQ(engine.inPass<std::string>(0, 0, "LaneTxRxMode"), "txrx_rate_together");
}

TEST(BlockRun, InvertsTheParityAfterEveryPass) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 0, countedRates("TX_A", 2));
    BlockEngine engine(setup);
    engine.runBlockRules();
    EXPECT_FALSE(engine.passFlag);
    engine.runBlockRules();
    EXPECT_TRUE(engine.passFlag);
}

TEST(BlockRun, ExceptionOfARuleLeavesThePassesBeforeIt) {
    BlockSetup setup = twoParameters();
    setup.rates(0, 1, countedRates("TX_A", 4));
    BlockEngine engine(setup);
    engine.rule({"TX_A"}, {"CHECKED"}, [&engine] {
        if (engine.getVal<unsigned int>("TX_A") == 2) {
            throw std::runtime_error("rate 2");
        }
    });
    EXPECT_THROW(engine.runBlockRules(), std::runtime_error);
    EXPECT_EQ(engine.passCounts(), (std::vector<std::size_t>{1, 2}));
    EXPECT_FALSE(engine.passFlag);
}

TEST(BlockRun, UndefinedInputOfARuleIsThrownByName) {
    BlockEngine engine(twoParameters());
    engine.rule({"NEVER_SET"}, {"OUT"},
                [&engine] { engine.setVal("OUT", engine.getVal<unsigned int>("NEVER_SET")); });
    const lanecfg_test::CapturedOutput output;
    EXPECT_EQ(lanecfg_test::undefinedName([&engine] { engine.runBlockRules(); }), "NEVER_SET");
    EXPECT_EQ(output.text(), "ERROR: Key Not found - NEVER_SET, or value undefined.\n");
}

}  // namespace
