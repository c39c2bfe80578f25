#include "rate_table_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <stdexcept>

namespace {

using lanecfg_test::BlockSetup;
using lanecfg_test::FourChannels;
using lanecfg_test::FreshLog;
using lanecfg_test::masksOf;
using lanecfg_test::namesOf;
using lanecfg_test::RateTableEngine;
using lanecfg_test::textOfFault;
using sable_lanecfg::RateTableAttribute;
using sable_lanecfg::RateTableChannel;
using sable_lanecfg::ruleValue;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

std::vector<RateTableAttribute> criticalOf(RateTableEngine& engine, int channel = 0) {
    return engine.findCriticalAttributes_New(
        engine.blockVarMap.at(static_cast<std::size_t>(channel)), channel);
}

std::vector<long> staticOf(RateTableEngine& engine, int channel = 0) {
    return engine.findStaticAttributes(engine.blockVarMap.at(static_cast<std::size_t>(channel)),
                                       channel);
}

std::string staticList(RateTableEngine& engine) {
    FourChannels channels;
    engine.parseHeaderInfo_New(channels);
    return engine.parseRateTableDataForStaticAttributes(channels);
}

// Rate groups, masters and numbers of rates

TEST(RateTableHeader, TakesTheGroupOfEachLaneFromItsPositionInTheRecord) {
    RateTableEngine engine;
    engine.channelUsage.resize(1);
    engine.channelUsage[0].tx = {2, 0};
    engine.channelUsage[0].txrate = {"two", "zero"};
    engine.channelUsage[0].rx = {3};
    engine.channelUsage[0].rxrate = {"three"};
    FourChannels channels;
    engine.parseHeaderInfo_New(channels);
    EXPECT_EQ(channels[0].txNet, "zero");
    EXPECT_EQ(channels[1].txNet, "");
    EXPECT_EQ(channels[2].txNet, "two");
    EXPECT_EQ(channels[3].txNet, "");
    EXPECT_EQ(channels[2].rxNet, "");
    EXPECT_EQ(channels[3].rxNet, "three");
}

TEST(RateTableHeader, TakesTheGroupOfTheLastRecordThatNamesALane) {
    RateTableEngine engine;
    engine.lane(1, "a", "b").lane(1, "c", "d");
    FourChannels channels;
    engine.parseHeaderInfo_New(channels);
    EXPECT_EQ(channels[1].txNet, "c");
    EXPECT_EQ(channels[1].rxNet, "d");
}

TEST(RateTableHeader, PassesOverLanesOutsideTheBlockAndMissingNames) {
    RateTableEngine engine;
    engine.channelUsage.resize(1);
    engine.channelUsage[0].tx = {-1, 4, 0, 1};
    engine.channelUsage[0].txrate = {"below", "above", "zero"};
    FourChannels channels;
    engine.parseHeaderInfo_New(channels);
    EXPECT_EQ(channels[0].txNet, "zero");
    EXPECT_EQ(channels[1].txNet, "");
    EXPECT_EQ(channels[2].txNet, "");
    EXPECT_EQ(channels[3].txNet, "");
}

TEST(RateTableHeader, MakesTheLowestChannelOfAGroupItsMasterInEachDirection) {
    RateTableEngine engine;
    engine.lane(0, "a", "x").lane(1, "b", "y").lane(2, "a", "y").lane(3, "b", "y");
    FourChannels channels;
    engine.parseHeaderInfo_New(channels);
    EXPECT_EQ(channels[0].txMaster, 0);
    EXPECT_EQ(channels[1].txMaster, 1);
    EXPECT_EQ(channels[2].txMaster, 0);
    EXPECT_EQ(channels[3].txMaster, 1);
    EXPECT_EQ(channels[0].rxMaster, 0);
    EXPECT_EQ(channels[1].rxMaster, 1);
    EXPECT_EQ(channels[2].rxMaster, 1);
    EXPECT_EQ(channels[3].rxMaster, 1);
}

TEST(RateTableHeader, MakesTheLowestUnusedChannelTheMasterOfTheOthers) {
    RateTableEngine engine;
    engine.lane(0, "a", "a").lane(2, "b", "b");
    FourChannels channels;
    engine.parseHeaderInfo_New(channels);
    EXPECT_EQ(channels[1].txMaster, 1);
    EXPECT_EQ(channels[3].txMaster, 1);
    EXPECT_EQ(channels[3].rxMaster, 1);
    EXPECT_TRUE(channels[3].duplex);
}

TEST(RateTableHeader, CountsTheDifferentRatesOfEachDirection) {
    RateTableEngine engine;
    engine.lane(0, "a", "b");
    for (unsigned int tx = 0; tx < 2; ++tx) {
        for (unsigned int rx = 0; rx < 3; ++rx) {
            engine.pass(0, tx, rx, {});
        }
    }
    FourChannels channels;
    engine.parseHeaderInfo_New(channels);
    EXPECT_FALSE(channels[0].duplex);
    EXPECT_EQ(channels[0].numTxRates, 2);
    EXPECT_EQ(channels[0].numRxRates, 3);
}

TEST(RateTableHeader, GivesADuplexChannelNoReceiveRates) {
    RateTableEngine engine;
    engine.lane(0, "a", "a").pass(0, 0, 0, {}).pass(0, 1, 1, {});
    FourChannels channels;
    engine.parseHeaderInfo_New(channels);
    EXPECT_TRUE(channels[0].duplex);
    EXPECT_EQ(channels[0].numTxRates, 2);
    EXPECT_EQ(channels[0].numRxRates, 0);
}

TEST(RateTableHeader, CountsNoRatesWithoutPasses) {
    RateTableEngine engine;
    engine.lane(0, "a", "b");
    FourChannels channels;
    engine.parseHeaderInfo_New(channels);
    EXPECT_EQ(channels[0].numTxRates, 0);
    EXPECT_EQ(channels[0].numRxRates, 0);
}

TEST(RateTableHeader, FindsNoRatesInChannelsThatATwoChannelBlockLacks) {
    RateTableEngine engine("SXD4");
    engine.lane(2, "a", "b").pass(0, 0, 0, {}).pass(1, 0, 0, {});
    FourChannels channels;
    engine.parseHeaderInfo_New(channels);
    EXPECT_EQ(channels[1].numTxRates, 1);
    for (const int absent : {2, 3}) {
        EXPECT_EQ(channels[absent].txNet, "");
        EXPECT_EQ(channels[absent].numTxRates, 0);
        EXPECT_EQ(channels[absent].numRxRates, 0);
    }
}

TEST(RateTableHeader, LogsEveryChannel) {
    RateTableEngine engine;
    engine.lane(0, "a", "a").lane(1, "b", "a").pass(0, 0, 0, {}).pass(1, 0, 0, {});
    FourChannels channels;
    const FreshLog log;
    engine.parseHeaderInfo_New(channels);
    EXPECT_THAT(log.lines(), ElementsAre("Channel 0:", "Duplex", "TX Master: Channel 0",
                                         "RX Master: Channel 0", "Tx Net: a", "Rx Net: a",
                                         "Number of Tx Rates: 1", "Number of Rx Rates: 0", "",  //
                                         "Channel 1:", "Simplex", "TX Master: Channel 1",
                                         "RX Master: Channel 0", "Tx Net: b", "Rx Net: a",
                                         "Number of Tx Rates: 1", "Number of Rx Rates: 1", "",  //
                                         "Channel 2:", "Unused", "Channel 3:", "Unused"));
}

// Critical registers

TEST(CriticalAttributes, AreThoseThatDifferInNameOrder) {
    RateTableEngine engine;
    engine.reg("B", "channel").reg("A", "channel").reg("SAME", "channel");
    engine.pass(0, 0, 0, {{"A", 1U}, {"B", 1U}, {"SAME", 7U}});
    engine.pass(0, 1, 1, {{"A", 1U}, {"B", 2U}, {"SAME", 7U}});
    engine.pass(0, 2, 2, {{"A", 3U}, {"B", 1U}, {"SAME", 7U}});
    const auto found = criticalOf(engine);
    EXPECT_THAT(namesOf(found), ElementsAre("A", "B"));
    EXPECT_EQ(found[0].type, "channel");
    EXPECT_EQ(found[0].channel, 0);
}

TEST(CriticalAttributes, WithOneRateAreOnlyTheForcedOneWithAnEmptyMask) {
    RateTableEngine engine;
    engine.reg("A", "channel").reg("PIPE_CTRL_CFG7", "channel");
    engine.pass(0, 0, 0, {{"A", 1U}, {"PIPE_CTRL_CFG7", 0xffffU}});
    const auto found = criticalOf(engine);
    EXPECT_THAT(namesOf(found), ElementsAre("PIPE_CTRL_CFG7"));
    EXPECT_THAT(masksOf(found), ElementsAre(0U));
}

TEST(CriticalAttributes, AreNoneWithoutSnapshots) {
    RateTableEngine engine;
    engine.reg("PIPE_CTRL_CFG7", "channel");
    EXPECT_THAT(criticalOf(engine), IsEmpty());
}

struct MaskExample {
    const char* name;
    std::vector<ruleValue> values;
    unsigned long mask;
};

class CriticalMask : public ::testing::TestWithParam<MaskExample> {};

TEST_P(CriticalMask, HoldsTheBitsThatDiffer) {
    RateTableEngine engine;
    engine.reg("A", "channel").duplexPasses(0, "A", GetParam().values);
    EXPECT_THAT(masksOf(criticalOf(engine)), ElementsAre(GetParam().mask));
}

INSTANTIATE_TEST_SUITE_P(
    Examples, CriticalMask,
    ::testing::Values(
        // 1 and 4 differ in 5, 2 and 1 in 3, 4 and 2 in 6.
        MaskExample{"ThreeRates", {1U, 2U, 4U}, 7},
        MaskExample{"BitsSharedByAllRatesStayOut", {0xf0U, 0xf1U}, 1},
        MaskExample{"HighestBit", {0U, 0x80000000U}, 0x80000000},
        MaskExample{"NegativeNumber", {std::string("-1"), std::string("0")}, 0xffffffff},
        // 2^32 + 3 is cut to 3.
        MaskExample{"MoreThanAWord", {std::string("4294967299"), 0U}, 3},
        MaskExample{"OtherTextOfTheSameNumber", {std::string("07"), 7U}, 0},
        MaskExample{"Flag", {true, false}, 1}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(CriticalAttributes, MaskExactlyTheBitsThatAreNotTheSameInAllRates) {
    std::mt19937 random(20);
    for (int round = 0; round < 200; ++round) {
        const std::size_t rates = 2 + random() % 6;
        std::vector<ruleValue> values;
        std::uint32_t all = 0xffffffff;
        std::uint32_t any = 0;
        for (std::size_t rate = 0; rate < rates; ++rate) {
            // Few changing bits, so that some stay the same.
            const std::uint32_t word = 0x5a5a5a5aU ^ (1U << (random() % 32));
            all &= word;
            any |= word;
            values.emplace_back(word);
        }
        RateTableEngine engine;
        engine.reg("PIPE_CTRL_CFG7", "channel").duplexPasses(0, "PIPE_CTRL_CFG7", values);
        EXPECT_THAT(masksOf(criticalOf(engine)), ElementsAre(any & ~all));
    }
}

TEST(CriticalAttributes, CompareTextsAndNotAlternatives) {
    RateTableEngine engine;
    engine.reg("A", "channel").duplexPasses(0, "A", {1U, std::string("1"), true});
    EXPECT_THAT(criticalOf(engine), IsEmpty());
}

TEST(CriticalAttributes, TakeTheTextNullForNoTextYet) {
    RateTableEngine engine;
    engine.reg("A", "channel").duplexPasses(0, "A", {std::string("NULL"), 1U});
    EXPECT_THAT(criticalOf(engine), IsEmpty());
}

TEST(CriticalAttributes, TakeAMissingRegisterForABlankOne) {
    RateTableEngine engine;
    engine.reg("A", "channel").pass(0, 0, 0, {}).pass(0, 1, 1, {{"A", ruleValue()}});
    EXPECT_THAT(criticalOf(engine), IsEmpty());
}

TEST(CriticalAttributes, RefuseAValueThatIsNoNumber) {
    RateTableEngine engine;
    engine.reg("A", "channel").duplexPasses(0, "A", {1U, std::string("one")});
    EXPECT_EQ(textOfFault<std::invalid_argument>([&] { criticalOf(engine); }), "stoll");
}

TEST(CriticalAttributes, RefuseARegisterThatOneRateLeavesBlank) {
    RateTableEngine engine;
    engine.reg("A", "channel").duplexPasses(0, "A", {1U, ruleValue()});
    EXPECT_EQ(textOfFault<std::invalid_argument>([&] { criticalOf(engine); }), "stoll");
}

TEST(CriticalAttributes, RefuseAForcedOneThatIsNoNumberAlsoWithOneRate) {
    RateTableEngine engine;
    engine.reg("PIPE_CTRL_CFG7", "channel").pass(0, 0, 0, {{"PIPE_CTRL_CFG7", std::string("x")}});
    EXPECT_EQ(textOfFault<std::invalid_argument>([&] { criticalOf(engine); }), "stoll");
}

TEST(CriticalAttributes, RefuseAnOffsetThatIsNotHexadecimal) {
    RateTableEngine engine;
    engine.reg("A", "channel", "zero").duplexPasses(0, "A", {1U, 2U});
    EXPECT_EQ(textOfFault<std::invalid_argument>([&] { criticalOf(engine); }), "stoul");
}

TEST(CriticalAttributes, NameTheRegisterWhoseOffsetIsTooLarge) {
    RateTableEngine engine;
    engine.reg("A", "channel", "10000000000000000").duplexPasses(0, "A", {1U, 2U});
    EXPECT_EQ(textOfFault<std::out_of_range>([&] { criticalOf(engine); }),
              "register A has the offset 10000000000000000, which is too large");
}

TEST(CriticalAttributes, DoNotReadTheOffsetOfARegisterThatNeverDiffers) {
    RateTableEngine engine;
    engine.reg("A", "channel", "zero").duplexPasses(0, "A", {1U, 1U});
    EXPECT_THAT(criticalOf(engine), IsEmpty());
}

TEST(CriticalAttributes, DropAPortBeforeItsValueAndOffsetAreRead) {
    RateTableEngine engine;
    engine.reg("A", "CH_PORT", "zero").duplexPasses(0, "A", {std::string("x"), std::string("y")});
    EXPECT_THAT(criticalOf(engine), IsEmpty());
}

struct BlockAddress {
    const char* type;
    int channel;
    long address;
};

void PrintTo(const BlockAddress& example, std::ostream* out) {
    *out << example.type << " of channel " << example.channel;
}

class CriticalAddress : public ::testing::TestWithParam<BlockAddress> {};

TEST_P(CriticalAddress, IsTheOffsetPlusThatOfTheBlock) {
    const auto [type, channel, address] = GetParam();
    RateTableEngine engine;
    engine.reg("A", type, "0x1B").duplexPasses(static_cast<std::size_t>(channel), "A", {1U, 2U});
    const auto found = criticalOf(engine, channel);
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].address, address);
    EXPECT_EQ(found[0].channel, channel);
}

// 0x1B is 27.
INSTANTIATE_TEST_SUITE_P(
    Blocks, CriticalAddress,
    ::testing::Values(BlockAddress{"channel", 0, 27}, BlockAddress{"channel", 3, 27},
                      BlockAddress{"ch_other", 2, 27}, BlockAddress{"hs_clk_0", 1, 27},
                      BlockAddress{"hs_clk_0", 2, 512 + 27}, BlockAddress{"hs_clk_1", 0, 256 + 27},
                      BlockAddress{"hs_clk_1", 3, 768 + 27},
                      BlockAddress{"hs_clk_ips", 2, 768 + 27}, BlockAddress{"ctrl_0", 3, 27},
                      BlockAddress{"ctrl_1", 3, 256 + 27}, BlockAddress{"ctrl_2", 0, 512 + 27},
                      BlockAddress{"ctrl_3", 1, 768 + 27}, BlockAddress{"ctrl_4", 2, 27},
                      BlockAddress{"ctrl_5", 2, 768 + 27}, BlockAddress{"rcalbg", 0, 27},
                      BlockAddress{"rcalbg", 1, 768 + 27}, BlockAddress{"rcalbg_1", 0, 768 + 27},
                      BlockAddress{"rcalbg_4", 0, 27}));

class MissingBlock : public ::testing::TestWithParam<BlockAddress> {};

TEST_P(MissingBlock, IsReportedWithRegisterTypeAndChannel) {
    const auto [type, channel, address] = GetParam();
    RateTableEngine engine;
    engine.reg("LONELY", type).duplexPasses(static_cast<std::size_t>(channel), "LONELY", {1U, 2U});
    EXPECT_THAT(textOfFault<std::out_of_range>([&, lane = channel] { criticalOf(engine, lane); }),
                AllOf(HasSubstr("LONELY"), HasSubstr(type),
                      HasSubstr("channel " + std::to_string(channel))));
}

INSTANTIATE_TEST_SUITE_P(Blocks, MissingBlock,
                         ::testing::Values(BlockAddress{"rcalbg_0", 1, 0},
                                           BlockAddress{"rcalbg_5", 3, 0},
                                           BlockAddress{"rcalbg", 2, 0},
                                           BlockAddress{"hs_clk_9", 0, 0},
                                           BlockAddress{"ctrl_6", 1, 0}));

TEST(CriticalAttributes, KeepTheBareOffsetInABlockOfUnknownTypeAndSaySo) {
    RateTableEngine engine;
    engine.reg("A", "strange", "0x10").duplexPasses(0, "A", {1U, 2U});
    testing::internal::CaptureStdout();
    const auto found = criticalOf(engine);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Unexpected Attribute Type: A\n");
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_EQ(found[0].address, 16);
}

/// Channel 0 as simplex with two rates each way: TX_REG follows the transmit rate, RX_REG the
/// receive rate.
struct SimplexLane : public ::testing::Test {
    SimplexLane() {
        engine.reg("TX_REG", "channel", "0x1").reg("RX_REG", "channel", "0x2").lane(0, "a", "b");
        for (unsigned int tx = 0; tx < 2; ++tx) {
            for (unsigned int rx = 0; rx < 2; ++rx) {
                engine.pass(0, tx, rx, {{"TX_REG", tx}, {"RX_REG", rx}});
            }
        }
    }

    RateTableEngine engine;
    FourChannels channels;
};

TEST_F(SimplexLane, LooksAtEachDirectionWithTheOtherAtItsFirstRate) {
    const FreshLog log;
    engine.populateSimplexLane_New(channels, 0);
    EXPECT_THAT(namesOf(channels[0].txAttributes), ElementsAre("TX_REG"));
    EXPECT_THAT(namesOf(channels[0].rxAttributes), ElementsAre("RX_REG"));
    EXPECT_THAT(log.lines(), ElementsAre("Parsing Channel 0 TX", "Parsing Channel 0 RX"));
}

TEST_F(SimplexLane, TakesARegisterOfOneDirectionForStaticInTheOther) {
    // First the numbers of the transmit list, then those of the receive list.
    EXPECT_THAT(engine.SimplexStaticAttributes(channels, 0), ElementsAre(0xC02, 0xC01));
}

TEST_F(SimplexLane, AsDuplexHasOneListFromAllSnapshots) {
    channels[0].rxAttributes = {lanecfg_test::critical("OLD", "channel", 0, 0)};
    const FreshLog log;
    engine.populateDuplexLane_New(channels, 0);
    EXPECT_THAT(namesOf(channels[0].txAttributes), ElementsAre("RX_REG", "TX_REG"));
    EXPECT_THAT(channels[0].rxAttributes, IsEmpty());
    EXPECT_THAT(log.lines(), ElementsAre("Parsing Channel 0 Duplex"));
    EXPECT_THAT(engine.DuplexStaticAttributes(channels, 0), IsEmpty());
}

TEST_F(SimplexLane, IsParsedByTheFormOfEachChannel) {
    engine.parseHeaderInfo_New(channels);
    const FreshLog log;
    engine.parseRateTableData_New(channels);
    EXPECT_THAT(log.lines(), ElementsAre("Parsing Channel 0 TX", "Parsing Channel 0 RX",
                                         "Parsing Channel 1 Duplex", "Parsing Channel 2 Duplex",
                                         "Parsing Channel 3 Duplex"));
    EXPECT_THAT(namesOf(channels[0].txAttributes), ElementsAre("TX_REG"));
}

// Static registers

TEST(StaticAttributes, LeaveOutWhatDiffersPortsForcedAndExcludedRegisters) {
    RateTableEngine engine;
    for (const char* name : {"A", "B", "PIPE_CTRL_CFG7", "A_CFG0", "LCPLL_LGC_CFG0"}) {
        engine.reg(name, "channel", "0x5");
    }
    engine.reg("P", "QUAD_PORT", "no number");
    engine.pass(0, 0, 0, {{"B", 1U}}).pass(0, 1, 1, {{"B", 2U}});
    EXPECT_THAT(staticOf(engine), ElementsAre(0xC05));
}

class StaticNumber : public ::testing::TestWithParam<BlockAddress> {};

TEST_P(StaticNumber, IsTheOffsetPlusTheBaseOfTheBlock) {
    const auto [type, channel, number] = GetParam();
    RateTableEngine engine;
    engine.reg("A", type, "1b").pass(static_cast<std::size_t>(channel), 0, 0, {{"A", 1U}});
    EXPECT_THAT(staticOf(engine, channel), ElementsAre(number));
}

INSTANTIATE_TEST_SUITE_P(
    Blocks, StaticNumber,
    ::testing::Values(BlockAddress{"channel", 0, 0xC1B}, BlockAddress{"channel", 3, 0xF1B},
                      BlockAddress{"hs_clk_0", 1, 0xC1B}, BlockAddress{"hs_clk_2", 2, 0xE1B},
                      BlockAddress{"hs_clk_3", 3, 0xF1B}, BlockAddress{"hs_clk_ips", 2, 0xF1B},
                      BlockAddress{"ctrl_0", 3, 0xC1B}, BlockAddress{"ctrl_5", 0, 0xF1B},
                      // The first calibration unit, whatever the channel.
                      BlockAddress{"rcalbg", 3, 0xC1B}, BlockAddress{"rcalbg_1", 3, 0xF1B},
                      BlockAddress{"rcalbg_3", 0, 0xC1B}, BlockAddress{"rcalbg_4", 0, 0xF1B},
                      BlockAddress{"rcalbg_5", 1, 0xC1B}));

TEST(StaticAttributes, AreFoundWhereEachSnapshotHoldsThem) {
    RateTableEngine engine;
    engine.reg("B", "channel", "1").reg("D", "channel", "2").reg("F", "channel", "3");
    // B stands at another place in each snapshot, D has another value in one, and none has F.
    engine.pass(0, 0, 0, {{"B", 1U}, {"D", 1U}, {"E", 1U}});
    engine.pass(0, 1, 1, {{"A", 1U}, {"B", 1U}, {"D", 1U}});
    engine.pass(0, 2, 2, {{"A", 1U}, {"AA", 1U}, {"B", 1U}, {"C", 1U}, {"D", 2U}, {"E", 1U}});
    EXPECT_THAT(staticOf(engine), ElementsAre(0xC01, 0xC03));
}

/// A snapshot of variables A to P, each there or not, some of them with the value 1 and few with 2.
lanecfg_test::registerValues fewOfSixteen(std::mt19937& random) {
    lanecfg_test::registerValues values;
    for (char letter = 'A'; letter <= 'P'; ++letter) {
        if (random() % 8 != 0) {
            values[std::string(1, letter)] = random() % 8 == 0 ? 2U : 1U;
        }
    }
    return values;
}

bool areAllTheSame(const std::vector<lanecfg_test::registerValues>& passes,
                   const std::string& name) {
    const auto valueIn = [&name](const lanecfg_test::registerValues& values) {
        const auto found = values.find(name);
        return found == values.end() ? ruleValue() : found->second;
    };
    return std::all_of(passes.begin(), passes.end(), [&](const auto& values) {
        return valueIn(values) == valueIn(passes.front());
    });
}

TEST(StaticAttributes, AreThoseOfTheSameValueWhicheverVariablesASnapshotHolds) {
    std::mt19937 random(74);
    for (int round = 0; round < 300; ++round) {
        const unsigned int rates = 1 + static_cast<unsigned int>(random() % 4);
        RateTableEngine engine;
        std::vector<lanecfg_test::registerValues> passes;
        for (unsigned int rate = 0; rate < rates; ++rate) {
            passes.push_back(fewOfSixteen(random));
            engine.pass(0, rate, rate, passes.back());
        }
        // Every other variable is a register; so is one that no snapshot has.
        std::vector<long> expected;
        long offset = 0;
        for (const char* const name : {"B", "D", "F", "H", "J", "L", "N", "P", "Z"}) {
            engine.reg(name, "channel", std::to_string(offset));
            if (areAllTheSame(passes, name)) {
                expected.push_back(0xC00 + offset);
            }
            ++offset;
        }
        EXPECT_EQ(staticOf(engine), expected) << "round " << round;
    }
}

TEST(StaticAttributes, GiveNoNumberForAnUnknownTypeAndDoNotReadItsOffset) {
    RateTableEngine engine;
    engine.reg("A", "CH", "no number").pass(0, 0, 0, {{"A", 1U}});
    EXPECT_THAT(staticOf(engine), IsEmpty());
}

TEST(StaticAttributes, RefuseAnOffsetThatIsNotHexadecimal) {
    RateTableEngine engine;
    engine.reg("A", "channel", "zero").pass(0, 0, 0, {{"A", 1U}});
    EXPECT_EQ(textOfFault<std::invalid_argument>([&] { staticOf(engine); }), "stoul");
}

TEST(StaticAttributes, NameTheRegisterWhoseOffsetIsTooLarge) {
    RateTableEngine engine;
    engine.reg("A", "channel", "10000000000000000").pass(0, 0, 0, {{"A", 1U}});
    EXPECT_EQ(textOfFault<std::out_of_range>([&] { staticOf(engine); }),
              "register A has the offset 10000000000000000, which is too large");
}

TEST(StaticAttributes, ReportABlockThatTheBasesLack) {
    RateTableEngine engine;
    engine.reg("LONELY", "hs_clk_9").pass(2, 0, 0, {{"LONELY", 1U}});
    EXPECT_THAT(textOfFault<std::out_of_range>([&] { staticOf(engine, 2); }),
                AllOf(HasSubstr("LONELY"), HasSubstr("hs_clk_9"), HasSubstr("channel 2")));
}

TEST(StaticList, RendersRunsOfByteAddressesAndLoneOnes) {
    RateTableEngine engine;
    // Words 0x300, 0x301, 0x302 and 0x310: offsets that wrap around the base of 0xC00.
    engine.reg("A", "ctrl_0", "fffffffffffff700").reg("B", "ctrl_0", "fffffffffffff702");
    engine.reg("C", "ctrl_0", "fffffffffffff701").reg("D", "ctrl_0", "fffffffffffff710");
    engine.pass(0, 0, 0, {});
    EXPECT_EQ(staticList(engine), "0C00:0C08,0C40");
}

TEST(StaticList, IsInUpperCaseAndGrowsPastFourDigits) {
    RateTableEngine engine;
    // 0xC00 + 0x2AB is 0xEAB, times 4 is 0x3AAC; 0xC00 + 0x4000 is 0x4C00, times 4 is 0x13000.
    engine.reg("A", "ctrl_0", "0x2AB").reg("B", "ctrl_0", "0x4000").pass(0, 0, 0, {});
    EXPECT_EQ(staticList(engine), "3AAC,13000");
}

TEST(StaticList, NamesARegisterOfSeveralChannelsOnce) {
    RateTableEngine engine;
    engine.reg("SHARED", "ctrl_0", "0x0").reg("OWN", "channel", "0x1");
    engine.pass(0, 0, 0, {}).pass(1, 0, 0, {});
    // 0xC00 and 0xC01 are a run, channel 1 has 0xD01.
    EXPECT_EQ(staticList(engine), "3000:3004,3404");
}

TEST(StaticList, RunsAcrossChannels) {
    RateTableEngine engine;
    engine.reg("LAST", "channel", "0xFF").reg("FIRST", "channel", "0x0");
    engine.pass(0, 0, 0, {}).pass(1, 0, 0, {});
    // 0xC00, 0xCFF to 0xD00, 0xDFF.
    EXPECT_EQ(staticList(engine), "3000,33FC:3400,37FC");
}

TEST(StaticList, IsEmptyWithoutStaticRegisters) {
    RateTableEngine engine;
    engine.reg("A", "channel").duplexPasses(0, "A", {1U, 2U});
    EXPECT_EQ(staticList(engine), "");
}

TEST(StaticList, GetsNothingFromAChannelWithoutPasses) {
    RateTableEngine engine;
    engine.reg("A", "channel").lane(0, "a", "b").lane(1, "c", "c");
    EXPECT_EQ(staticList(engine), "");
}

}  // namespace
