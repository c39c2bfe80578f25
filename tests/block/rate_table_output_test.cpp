#include "rate_table_engine.h"

#include <lanecfg/rule_engine_utilities.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <stdexcept>

namespace {

using lanecfg_test::critical;
using lanecfg_test::digits;
using lanecfg_test::FourChannels;
using lanecfg_test::FreshLog;
using lanecfg_test::numbers;
using lanecfg_test::numbersOfBinary;
using lanecfg_test::RateTableEngine;
using lanecfg_test::registerValues;
using sable_lanecfg::RateTableAttribute;
using sable_lanecfg::RateTableControl;
using sable_lanecfg::rule_engine_utilities;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::size_t headerWords = 10;

/// Header word of an unmasked group of one register.
constexpr std::uint32_t loneHeader(std::uint32_t address) {
    return (address << 13) | (address << 3);
}

/// Header word of an unmasked group of two registers.
constexpr std::uint32_t pairHeader(std::uint32_t first, std::uint32_t second) {
    return (second << 13) | (first << 3) | 4U;
}

/// Header word of a burst, with the distances of its registers.
std::uint32_t burstHeader(std::uint32_t start, const std::vector<std::uint32_t>& distances) {
    std::uint32_t word = (start << 22) | (distances.back() << 2) | 2U;
    for (const std::uint32_t distance : distances) {
        word |= 1U << (6 + distance);
    }
    return word;
}

constexpr std::uint32_t bothMasked = 0x01800000;
constexpr std::uint32_t laneEnable = 0x02000000;
constexpr std::uint32_t laneOne = 0x04000000;

/// Writes tables from lists that a test fills itself.
struct RateTableWriting : public ::testing::Test {
    /// A register of a channel with the value 1000 + address at rate 0, and 1000 more each rate.
    RateTableAttribute entry(std::int64_t address, int channel = 0, const std::string& name = {}) {
        RateTableAttribute attribute = critical(name.empty() ? "R" + std::to_string(address) : name,
                                                "channel", address, channel, 0xabc);
        engine.reg(attribute.name, "channel");
        unsigned int value = static_cast<unsigned int>(address);
        for (auto& snapshot : engine.blockVarMap.at(static_cast<std::size_t>(channel))) {
            value += 1000;
            snapshot[attribute.name].value = value;
        }
        return attribute;
    }

    /// A register that is written under a mask.
    RateTableAttribute maskedEntry(std::int64_t address, int channel = 0,
                                   const std::string& name = {}) {
        const RateTableAttribute attribute = entry(address, channel, name);
        control.maskedAttributes.insert("CH_" + std::to_string(channel) + "_" + attribute.name);
        return attribute;
    }

    /// Makes a channel duplex with the given number of rates.
    void duplexLane(int channel, int rates) {
        channels[channel].duplex = true;
        channels[channel].numTxRates = rates;
        for (int rate = 0; rate < rates; ++rate) {
            const auto label = static_cast<unsigned int>(rate);
            engine.pass(static_cast<std::size_t>(channel), label, label, {});
        }
    }

    /// Makes a channel simplex with snapshots for each pair of rates.
    void simplexLane(int channel, unsigned int txRates, unsigned int rxRates) {
        channels[channel].numTxRates = static_cast<int>(txRates);
        channels[channel].numRxRates = static_cast<int>(rxRates);
        for (unsigned int rate = 0; rate < txRates * rxRates; ++rate) {
            engine.pass(static_cast<std::size_t>(channel), rate / rxRates, rate % rxRates, {});
        }
    }

    std::vector<std::uint32_t> write() {
        engine.writeRateTable_New(channels, control);
        return numbers(control.rateTable);
    }

    std::vector<std::uint32_t> writeBodies() {
        const auto words = write();
        return {words.begin() + headerWords, words.end()};
    }

    RateTableEngine engine;
    FourChannels channels;
    RateTableControl control;
};

// Structure words

struct Nets {
    const char* name;
    std::vector<std::string> tx;
    std::vector<std::string> rx;
    std::uint32_t txWord;
    std::uint32_t rxWord;
};

class StructureWords : public ::testing::TestWithParam<Nets> {};

TEST_P(StructureWords, HoldDuplexFlagsMastersAndGroups) {
    RateTableEngine engine;
    for (std::size_t channel = 0; channel < 4; ++channel) {
        engine.lane(static_cast<int>(channel), GetParam().tx[channel], GetParam().rx[channel]);
    }
    const auto words = numbersOfBinary(engine.generateRateTableInBinary());
    ASSERT_THAT(words, SizeIs(headerWords));
    EXPECT_EQ(words[0], GetParam().txWord);
    EXPECT_EQ(words[1], GetParam().rxWord);
}

// Masters at bits 17, 19, 21 and 23, groups at bits 1, 5, 9 and 13, duplex flags from bit 25.
INSTANTIATE_TEST_SUITE_P(
    Groups, StructureWords,
    ::testing::Values(
        // Groups 0101 and 1010 for transmit; 0001 and 1110 for receive.
        Nets{"TwoPairsAndThreeTogether",
             {"a", "b", "a", "b"},
             {"x", "y", "y", "y"},
             (1U << 23) | (1U << 19) | (10U << 5) | (5U << 1) | 1U,
             (1U << 23) | (1U << 21) | (1U << 19) | (14U << 5) | (1U << 1) | 1U},
        Nets{"EachAlone",
             {"a", "b", "c", "d"},
             {"w", "x", "y", "z"},
             (3U << 23) | (2U << 21) | (1U << 19) | (8U << 13) | (4U << 9) | (2U << 5) | 3U,
             (3U << 23) | (2U << 21) | (1U << 19) | (8U << 13) | (4U << 9) | (2U << 5) | 3U},
        Nets{"AllTogetherAndDuplex",
             {"a", "a", "a", "a"},
             {"a", "a", "a", "a"},
             (15U << 25) | (15U << 1) | 1U,
             (15U << 25) | (15U << 1) | 1U},
        // Channels 0 and 2 are duplex; channel 3 receives with channel 0.
        Nets{"SomeDuplex",
             {"a", "b", "c", "b"},
             {"a", "x", "c", "a"},
             (5U << 25) | (1U << 23) | (2U << 21) | (1U << 19) | (4U << 9) | (10U << 5) | 3U,
             (5U << 25) | (2U << 21) | (1U << 19) | (4U << 9) | (2U << 5) | (9U << 1) | 1U},
        // Unused channels are one group with the empty name.
        Nets{"Unused", {"a", "", "", ""}, {"a", "", "", ""}, 0x1EA801C3, 0x1EA801C3}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(StructureWordsOfATwoChannelBlock, HaveNothingOfTheChannelsThatItLacks) {
    RateTableEngine engine("SXD4");
    engine.reg("PIPE_CTRL_CFG7", "channel").lane(0, "a", "a").lane(3, "a", "b");
    engine.pass(0, 0, 0, {{"PIPE_CTRL_CFG7", 3U}}).pass(1, 0, 0, {{"PIPE_CTRL_CFG7", 4U}});
    const auto words = numbersOfBinary(engine.generateRateTableInBinary());
    // Each of the two channels has a header, a mask and a value.
    ASSERT_THAT(words, SizeIs(headerWords + 6));
    // Both duplex, channel 1 its own master; its group is bit 1 alone.
    EXPECT_EQ(words[0], (3U << 25) | (1U << 19) | (2U << 5) | (1U << 1) | 1U);
    EXPECT_EQ(words[1], words[0]);
    EXPECT_EQ(words[2], (1U << 20) | (3U << 10) | 10U);
    EXPECT_EQ(words[4], (1U << 20) | (3U << 10) | 13U);
    EXPECT_THAT(std::vector<std::uint32_t>(words.begin() + 6, words.begin() + 10), Each(0U));
}

// Channel words

TEST_F(RateTableWriting, OfADuplexChannelHasTheSameWordForBothDirections) {
    duplexLane(0, 2);
    control.pcieMode[0] = 1;
    control.txNormal[0] = {entry(5)};
    const auto words = write();
    const std::uint32_t channelWord = 0x80000000U | (2U << 20) | (2U << 10) | 10U;
    EXPECT_EQ(words[2], channelWord);
    EXPECT_EQ(words[3], channelWord);
}

TEST_F(RateTableWriting, OfASimplexChannelHasAReceiveWordWithoutPcie) {
    simplexLane(0, 2, 3);
    control.pcieMode[0] = 1;
    control.txNormal[0] = {entry(5)};
    control.rxNormal[0] = {entry(6), entry(7)};
    const auto words = write();
    EXPECT_EQ(words[2], 0x80000000U | (2U << 20) | (2U << 10) | 10U);
    // The receive body starts behind the four transmit words.
    EXPECT_EQ(words[3], (3U << 20) | (3U << 10) | 14U);
    EXPECT_THAT(words, SizeIs(headerWords + 2 * 2 + 3 * 3));
}

TEST_F(RateTableWriting, PutsAllTransmitBodiesBeforeTheReceiveBodies) {
    simplexLane(0, 1, 1);
    simplexLane(1, 1, 1);
    duplexLane(2, 1);
    control.txNormal[0] = {entry(1)};
    control.rxNormal[0] = {entry(2)};
    control.txNormal[1] = {entry(3, 1), entry(4, 1)};
    control.rxNormal[1] = {entry(5, 1)};
    control.txNormal[2] = {entry(6, 2)};
    const auto words = write();
    const auto offset = [&](std::size_t word) { return words.at(word) & 0x3ffU; };
    EXPECT_EQ(offset(2), 10U);
    EXPECT_EQ(offset(4), 12U);
    EXPECT_EQ(offset(6), 15U);
    EXPECT_EQ(offset(8), 17U);
    EXPECT_EQ(offset(3), 17U);
    EXPECT_EQ(offset(5), 19U);
    EXPECT_EQ(offset(7), 15U);
    // A channel without rates and passes is simplex here and stands behind all others.
    EXPECT_EQ(offset(9), 21U);
    EXPECT_THAT(std::vector<std::uint32_t>(words.begin() + headerWords, words.end()),
                ElementsAre(loneHeader(1), 1001, pairHeader(3, 4), 1003, 1004, loneHeader(6), 1006,
                            loneHeader(2), 1002, loneHeader(5), 1005));
}

TEST_F(RateTableWriting, CutsRatesToEightAndSizesAndOffsetsToTenBits) {
    channels[1].txMaster = 0;
    channels[1].numTxRates = 300;
    control.txWordCount[1] = 300 * 1500;
    const auto words = write();
    // 300 is 44 above 256, 1500 is 476 above 1024.
    EXPECT_EQ(words[4], (44U << 20) | (476U << 10) | 10U);
    // 10 + 450000 is 474 above 439 times 1024.
    EXPECT_EQ(words[6], 474U);
}

TEST(ChannelWords, OfAPresentChannelWithoutPassesHoldTheOffsetOnly) {
    RateTableEngine engine;
    engine.reg("PIPE_CTRL_CFG7", "channel").lane(0, "a", "b").lane(1, "a", "c");
    engine.pass(3, 0, 0, {{"PIPE_CTRL_CFG7", 3U}});
    const auto words = numbersOfBinary(engine.generateRateTableInBinary());
    // The last channel is unused, so that channel 2 is its master and owns the table.
    ASSERT_THAT(words, SizeIs(headerWords));
    EXPECT_EQ(words[0], (12U << 25) | (2U << 23) | (2U << 21) | (12U << 9) | (3U << 1) | 1U);
    EXPECT_EQ(words[2], 10U);
    EXPECT_EQ(words[3], 10U);
    EXPECT_EQ(words[8], (1U << 20) | 10U);
}

// Groups of a body

TEST_F(RateTableWriting, TakesTwoCloseRegistersAsAPair) {
    duplexLane(0, 1);
    control.txNormal[0] = {entry(100), entry(101)};
    EXPECT_THAT(writeBodies(), ElementsAre(pairHeader(100, 101), 1100, 1101));
}

TEST_F(RateTableWriting, TakesThreeCloseRegistersAsABurst) {
    duplexLane(0, 1);
    control.txNormal[0] = {entry(100), entry(101), entry(105)};
    EXPECT_THAT(writeBodies(), ElementsAre(burstHeader(100, {0, 1, 5}), 1100, 1101, 1105));
}

TEST_F(RateTableWriting, TakesRegistersAtFifteenButNotAtSixteenIntoAGroup) {
    duplexLane(0, 1);
    control.txNormal[0] = {entry(100), entry(115), entry(116)};
    EXPECT_THAT(writeBodies(),
                ElementsAre(pairHeader(100, 115), 1100, 1115, loneHeader(116), 1116));
}

TEST_F(RateTableWriting, EndsABurstAtSixteen) {
    duplexLane(0, 1);
    control.txNormal[0] = {entry(100), entry(107), entry(115), entry(116)};
    EXPECT_THAT(writeBodies(),
                ElementsAre(burstHeader(100, {0, 7, 15}), 1100, 1107, 1115, loneHeader(116), 1116));
}

TEST_F(RateTableWriting, PairsALoneRegisterWithTheNextHoweverFar) {
    duplexLane(0, 1);
    control.txNormal[0] = {entry(1), entry(900)};
    EXPECT_THAT(writeBodies(), ElementsAre(pairHeader(1, 900), 1001, 1900));
}

TEST_F(RateTableWriting, PairsALoneRegisterWithTheFirstOfWhatCouldBeABurst) {
    duplexLane(0, 1);
    control.txNormal[0] = {entry(1), entry(100), entry(101), entry(102)};
    EXPECT_THAT(writeBodies(),
                ElementsAre(pairHeader(1, 100), 1001, 1100, pairHeader(101, 102), 1101, 1102));
}

TEST_F(RateTableWriting, EndsAnOddNumberOfMaskedRegistersWithALoneOne) {
    duplexLane(0, 1);
    control.txMasked[0] = {maskedEntry(1), maskedEntry(2), maskedEntry(3)};
    EXPECT_THAT(writeBodies(), ElementsAre(bothMasked | pairHeader(1, 2), 0xabc, 1001, 0xabc, 1002,
                                           bothMasked | loneHeader(3), 0xabc, 1003));
}

TEST_F(RateTableWriting, WritesMaskedBeforeOtherRegistersInEachRate) {
    duplexLane(0, 2);
    control.txMasked[0] = {maskedEntry(9)};
    control.txNormal[0] = {entry(1)};
    EXPECT_THAT(writeBodies(),
                ElementsAre(bothMasked | loneHeader(9), 0xabc, 1009, loneHeader(1), 1001,
                            bothMasked | loneHeader(9), 0xabc, 2009, loneHeader(1), 2001));
    EXPECT_THAT(control.txWordCount, ElementsAre(10, 0, 0, 0));
}

TEST_F(RateTableWriting, TakesATransmitRateOfASimplexChannelWithTheFirstReceiveRate) {
    simplexLane(0, 3, 2);
    control.txNormal[0] = {entry(1)};
    // Snapshots 0, 2 and 4.
    EXPECT_THAT(writeBodies(),
                ElementsAre(loneHeader(1), 1001, loneHeader(1), 3001, loneHeader(1), 5001));
}

TEST_F(RateTableWriting, TakesAReceiveRateOfASimplexChannelFromTheSnapshotOfItsNumber) {
    simplexLane(0, 2, 3);
    control.rxNormal[0] = {entry(1)};
    EXPECT_THAT(writeBodies(),
                ElementsAre(loneHeader(1), 1001, loneHeader(1), 2001, loneHeader(1), 3001));
    EXPECT_THAT(control.rxWordCount, ElementsAre(6, 0, 0, 0));
}

TEST_F(RateTableWriting, TakesTheSnapshotOfEachRegisterOfAPairByItsOwnChannel) {
    duplexLane(0, 2);
    simplexLane(2, 2, 2);
    channels[2].txMaster = 0;
    control.txNormal[0] = {entry(1), entry(900, 2)};
    // Rate 1 is snapshot 1 of the duplex channel and snapshot 2 of the simplex one.
    EXPECT_THAT(writeBodies(),
                ElementsAre(pairHeader(1, 900), 1001, 1900, pairHeader(1, 900), 2001, 3900));
}

TEST_F(RateTableWriting, TakesABurstsValuesFromTheirChannelsAtTheSnapshotOfTheFirst) {
    duplexLane(0, 2);
    simplexLane(2, 2, 2);
    channels[2].txMaster = 0;
    control.txNormal[0] = {entry(1), entry(2), entry(3, 2)};
    EXPECT_THAT(writeBodies(), ElementsAre(burstHeader(1, {0, 1, 2}), 1001, 1002, 1003,
                                           burstHeader(1, {0, 1, 2}), 2001, 2002, 2003));
}

TEST_F(RateTableWriting, WritesNothingForAFollowerWithoutSingleLanes) {
    duplexLane(0, 1);
    duplexLane(1, 1);
    channels[1].txMaster = 0;
    control.txMasked[1] = {maskedEntry(2, 1)};
    control.txNormal[1] = {entry(3, 1)};
    control.txSingleLane[1] = 1;
    EXPECT_THAT(writeBodies(), IsEmpty());
}

TEST_F(RateTableWriting, WritesTheMaskedRegistersOfFollowersThroughASingleLaneMaster) {
    duplexLane(0, 1);
    duplexLane(1, 1);
    channels[1].txMaster = 0;
    control.txSingleLane[0] = 1;
    control.txMasked[0] = {maskedEntry(1)};
    control.txMasked[1] = {maskedEntry(2, 1)};
    control.txNormal[0] = {entry(7)};
    control.txNormal[1] = {entry(8, 1)};
    EXPECT_THAT(writeBodies(), ElementsAre(laneEnable | bothMasked | loneHeader(1), 0xabc, 1001,
                                           laneEnable | laneOne | bothMasked | loneHeader(2), 0xabc,
                                           1002, loneHeader(7), 1007));
    EXPECT_THAT(control.txWordCount, ElementsAre(8, 0, 0, 0));
}

TEST_F(RateTableWriting, AddressesReceiveLanesOnlyForRegistersThatAreAlwaysMasked) {
    simplexLane(1, 1, 1);
    simplexLane(2, 1, 1);
    channels[2].rxMaster = 1;
    control.rxSingleLane[1] = 1;
    control.rxMasked[1] = {maskedEntry(1, 1), maskedEntry(2, 1),
                           maskedEntry(3, 1, "PIPE_CTRL_CFG9"), maskedEntry(4, 1)};
    control.rxMasked[2] = {maskedEntry(5, 2, "PIPE_CTRL_CFG5")};
    EXPECT_THAT(
        writeBodies(),
        ElementsAre(bothMasked | pairHeader(1, 2), 0xabc, 1001, 0xabc, 1002,
                    laneEnable | laneOne | bothMasked | pairHeader(3, 4), 0xabc, 1003, 0xabc, 1004,
                    laneEnable | (2U << 26) | bothMasked | loneHeader(5), 0xabc, 1005));
}

TEST_F(RateTableWriting, AddressesNoReceiveLaneWithoutSingleLanes) {
    simplexLane(0, 1, 1);
    control.rxMasked[0] = {maskedEntry(3, 0, "PIPE_CTRL_CFG9")};
    EXPECT_THAT(writeBodies(), ElementsAre(bothMasked | loneHeader(3), 0xabc, 1003));
}

TEST_F(RateTableWriting, IsLoggedFromTheBodiesToTheStructure) {
    simplexLane(0, 1, 2);
    duplexLane(1, 1);
    channels[2].txMaster = channels[2].rxMaster = 0;
    channels[3].duplex = true;
    control.txMasked[0] = {maskedEntry(1)};
    control.rxNormal[0] = {entry(2)};
    const FreshLog log;
    write();
    EXPECT_THAT(log.lines(),
                ElementsAreArray(std::vector<std::string>{"***Writing TX Rate Table***",
                                                          "\nTX Channel 0",
                                                          "\nRate: 0",
                                                          "TX Masked",
                                                          "\nNo Burst No Rom",
                                                          "Name: R1",
                                                          "Address: 1",
                                                          "Value: 1001",
                                                          "Mask: " + digits(0xabc),
                                                          "TX Normal",
                                                          "\nTX Channel 1",
                                                          "\nRate: 0",
                                                          "TX Masked",
                                                          "TX Normal",
                                                          "\nTX Channel 2",
                                                          "\nTX Channel 3",  //
                                                          "***Writing RX Rate Table***",
                                                          "\nRX Channel 0",
                                                          "\nRate: 0",
                                                          "RX Masked",
                                                          "RX Normal",
                                                          "\nNo Burst No Rom",
                                                          "Name: R2",
                                                          "Address: 2",
                                                          "Value: 1002",
                                                          "\nRate: 1",
                                                          "RX Masked",
                                                          "RX Normal",
                                                          "\nNo Burst No Rom",
                                                          "Name: R2",
                                                          "Address: 2",
                                                          "Value: 2002",
                                                          "\nRX Channel 1",
                                                          "\nRX Channel 2",
                                                          "\nRX Channel 3",  //
                                                          "***Rate Table Structure***",
                                                          "\nChannel 0",
                                                          "Rate Block Size TX: 3",
                                                          "Number of Rates TX: 1",
                                                          "\nChannel 1",
                                                          "Rate Block Size: 0",
                                                          "Number of Rates: 1",
                                                          "\nChannel 2",
                                                          "Rate Block Size TX: 0",
                                                          "Number of Rates TX: 0",
                                                          "\nChannel 3",
                                                          "Rate Block Size: 0",
                                                          "Number of Rates: 0",  //
                                                          "\nChannel 0",
                                                          "Rate Block Size RX: 2",
                                                          "Number of Rates RX: 2",
                                                          "\nChannel 1",
                                                          "\nChannel 2",
                                                          "Rate Block Size RX: 0",
                                                          "Number of Rates RX: 0",
                                                          "\nChannel 3"}));
}

// Whole generations

/// One duplex channel whose register A has two values.
struct WholeTable : public ::testing::Test {
    WholeTable() {
        engine.reg("A", "channel", "0x10").reg("B", "channel", "0x11").lane(0, "a", "a");
        engine.pass(0, 0, 0, {{"A", 5U}, {"B", 1U}}).pass(0, 1, 1, {{"A", 9U}, {"B", 1U}});
    }

    RateTableEngine engine;
};

/// The words of that table: the channels after the first have no passes.
const std::vector<std::uint32_t> wholeTableWords = {0x1ea801c3, 0x1ea801c3,  //
                                                    0x0020080a, 0x0020080a, 0x0e, 0x0e,       0x0e,
                                                    0x0e,       0x0e,       0x0e, 0x00020080, 5,  //
                                                    0x00020080, 9};

TEST_F(WholeTable, HasEveryWordInItsPlace) {
    EXPECT_EQ(numbersOfBinary(engine.generateRateTableInBinary()), wholeTableWords);
}

TEST_F(WholeTable, InBinaryIsAllWordsWithoutSeparators) {
    std::string joined;
    for (const std::string& word : digits(wholeTableWords)) {
        joined += word;
    }
    EXPECT_EQ(engine.generateRateTableInBinary(), joined);
}

TEST_F(WholeTable, AsTextHasEightWordsALine) {
    EXPECT_EQ(engine.generateRateTable(true),
              "//Version 2.0 32-bit\n"
              "  1ea801c3 1ea801c3 0020080a 0020080a 0000000e 0000000e 0000000e 0000000e \n"
              "  0000000e 0000000e 00020080 00000005 00020080 00000009 ");
}

TEST_F(WholeTable, IsTheSameForBothArguments) {
    EXPECT_EQ(engine.generateRateTable(true), engine.generateRateTable(false));
}

TEST_F(WholeTable, HasFourBytesAWord) {
    EXPECT_EQ(engine.getRateTableSize(), 4 * 14);
}

TEST_F(WholeTable, AsTextFillsTheStaticList) {
    engine.generateRateTable(true);
    // B of channel 0: word 0xC11, byte 0x3044.
    EXPECT_EQ(engine.statNpiRegList, "3044");
}

TEST_F(WholeTable, InBinaryAndItsSizeLeaveTheStaticListAlone) {
    engine.statNpiRegList = "as it was";
    engine.generateRateTableInBinary();
    engine.getRateTableSize();
    EXPECT_EQ(engine.statNpiRegList, "as it was");
}

TEST_F(WholeTable, IsReturnedByTheLastStep) {
    FourChannels channels;
    engine.parseHeaderInfo_New(channels);
    engine.parseRateTableData_New(channels);
    engine.adjustRateTable_New(channels);
    EXPECT_EQ(engine.getRateTable_New(channels), digits(wholeTableWords));
}

/// The lines that begin the steps of a generation, in the order in which they were logged.
std::vector<std::string> stepsOf(const std::vector<std::string>& lines) {
    const std::vector<std::string> steps = {"*****New Version*****",
                                            "Channel 0:",
                                            "Parsing Channel 0 Duplex",
                                            "Channel 1 MST_RESET_CFG adjusted",
                                            "Masked Attribute List",
                                            "\nChannel 0 Writable Lists\n",
                                            "***Writing TX Rate Table***",
                                            "***Rate Table Structure***",
                                            "old line"};
    std::vector<std::string> found;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(found),
                 [&](const std::string& line) {
                     return std::find(steps.begin(), steps.end(), line) != steps.end();
                 });
    return found;
}

TEST_F(WholeTable, LogsItsStepsInOrderAndOnlyOfTheLastGeneration) {
    const FreshLog log;
    // Channels 2 and 3 are unused like channel 1 and follow it.
    const std::vector<std::string> steps = {"Channel 0:",
                                            "Parsing Channel 0 Duplex",
                                            "Channel 1 MST_RESET_CFG adjusted",
                                            "Channel 1 MST_RESET_CFG adjusted",
                                            "Masked Attribute List",
                                            "\nChannel 0 Writable Lists\n",
                                            "***Writing TX Rate Table***",
                                            "***Rate Table Structure***"};
    std::vector<std::string> withVersion = steps;
    withVersion.insert(withVersion.begin(), "*****New Version*****");

    rule_engine_utilities::write_log("old line");
    engine.generateRateTable(true);
    EXPECT_EQ(stepsOf(log.lines()), withVersion);
    rule_engine_utilities::write_log("old line");
    engine.generateRateTableInBinary();
    EXPECT_EQ(stepsOf(log.lines()), withVersion);
    rule_engine_utilities::write_log("old line");
    engine.getRateTableSize();
    EXPECT_EQ(stepsOf(log.lines()), steps);
}

TEST(RateTableText, OfTwelveWordsHasNoLineFeedAfterTheSecondLine) {
    RateTableEngine engine;
    engine.reg("A", "channel", "0x10").lane(0, "a", "a");
    // Two snapshots of the same rate: a critical register, written once.
    engine.pass(0, 0, 0, {{"A", 5U}}).pass(0, 0, 0, {{"A", 9U}});
    EXPECT_EQ(engine.generateRateTable(false),
              "//Version 2.0 32-bit\n"
              "  1ea801c3 1ea801c3 0010080a 0010080a 0000000c 0000000c 0000000c 0000000c \n"
              "  0000000c 0000000c 00020080 00000005 ");
}

TEST_F(WholeTable, OfSixteenWordsEndsWithALineFeed) {
    // B differs too, so that each rate is a header and two values.
    engine.blockVarMap[0][1]["B"].value = 0xffffffffU;
    EXPECT_EQ(engine.generateRateTable(false),
              "//Version 2.0 32-bit\n"
              "  1ea801c3 1ea801c3 00200c0a 00200c0a 00000010 00000010 00000010 00000010 \n"
              "  00000010 00000010 00022084 00000005 00000001 00022084 00000009 ffffffff \n");
}

TEST(RateTable, OfAnEngineWithoutAnythingHasTheHeaderOnly) {
    RateTableEngine engine;
    engine.blockVarMap.clear();
    engine.userParams.clear();
    EXPECT_EQ(engine.getRateTableSize(), 40);
}

TEST(RateTable, OfAFollowerWithFewerRatesThanItsMasterIsRefused) {
    RateTableEngine engine;
    engine.reg("CLOCK", "hs_clk_0").lane(0, "a", "a").lane(2, "a", "a");
    engine.duplexPasses(0, "CLOCK", {1U, 2U, 3U}).duplexPasses(2, "CLOCK", {1U, 2U});
    EXPECT_THROW(engine.generateRateTableInBinary(), std::out_of_range);
}

TEST(RateTable, RefusesACriticalValueThatIsNoNumber) {
    RateTableEngine engine;
    engine.reg("A", "channel").duplexPasses(0, "A", {1U, std::string("x")});
    EXPECT_THROW(engine.generateRateTable(true), std::invalid_argument);
    EXPECT_THROW(engine.getRateTableSize(), std::invalid_argument);
}

TEST(RateTable, OffsetsBeyondTenBitsWrap) {
    RateTableEngine engine;
    engine.reg("A", "channel").lane(0, "a", "a").lane(1, "b", "b");
    for (unsigned int rate = 0; rate < 600; ++rate) {
        engine.pass(0, rate, rate, {{"A", rate}});
    }
    const auto words = numbersOfBinary(engine.generateRateTableInBinary());
    ASSERT_THAT(words, SizeIs(headerWords + 1200));
    // 600 rates are 88 above 512; 10 + 1200 is 186 above 1024.
    EXPECT_EQ(words[2], (88U << 20) | (2U << 10) | 10U);
    EXPECT_EQ(words[4], 186U);
}

// Repeated generation

/// Two channels of one group in different duals, with the given values of A_CFG1.
struct Repeated : public ::testing::Test {
    void build(const std::vector<sable_lanecfg::ruleValue>& values) {
        engine.reg("A_CFG1", "ctrl_0", "0x10").lane(0, "a", "a").lane(2, "a", "a");
        engine.duplexPasses(0, "A_CFG1", values).duplexPasses(2, "A_CFG1", values);
    }

    RateTableEngine engine;
};

TEST_F(Repeated, GenerationGivesTheSameWords) {
    build({1U, 2U});
    const std::string once = engine.generateRateTableInBinary();
    EXPECT_THAT(numbersOfBinary(once), Contains(0x00020002U));
    EXPECT_EQ(engine.generateRateTableInBinary(), once);
}

TEST_F(Repeated, GenerationDropsARegisterWhoseRatesTheAdjustmentMadeEqual) {
    // The rates differ only in the half that is overwritten.
    build({0x00010007U, 0x00020007U});
    engine.generateRateTable(true);
    EXPECT_EQ(engine.statNpiRegList, "");
    EXPECT_EQ(engine.getRateTableSize(), 40);
    const std::string second = engine.generateRateTable(true);
    EXPECT_EQ(engine.statNpiRegList, "3040");
    EXPECT_EQ(engine.generateRateTable(true), second);
}

TEST_F(Repeated, GenerationWidensAMaskThatWasDoubledInOneDirectionOnly) {
    // Channel 2 follows only in the receive direction; A_CFG1 changes with both rates.
    engine.reg("A_CFG1", "ctrl_0", "0x10").lane(0, "a", "b").lane(2, "c", "b");
    for (const unsigned int tx : {0U, 1U}) {
        for (const unsigned int rx : {0U, 1U}) {
            engine.pass(0, tx, rx, {{"A_CFG1", 4 * tx + rx}});
        }
    }
    const auto first = numbersOfBinary(engine.generateRateTableInBinary());
    // The transmit body begins with the header and the mask.
    EXPECT_EQ(first.at(headerWords + 1), 4U);
    const auto second = numbersOfBinary(engine.generateRateTableInBinary());
    EXPECT_EQ(second.at(headerWords + 1), 0x00040004U);
    EXPECT_EQ(numbersOfBinary(engine.generateRateTableInBinary()), second);
}

// Properties of random engines

/// Registers of all kinds, random rate groups, and as many rates in each channel and direction.
void fillRandomly(RateTableEngine& engine, std::mt19937& random) {
    const std::pair<const char*, const char*> registers[] = {
        {"LANE_A", "channel"},         {"LANE_B", "channel"},       {"PIPE_CTRL_CFG7", "channel"},
        {"PIPE_CTRL_CFG9", "channel"}, {"CLOCK", "hs_clk_0"},       {"A_CFG1", "hs_clk_0"},
        {"A_CFG4", "ctrl_1"},          {"MST_RESET_CFG", "ctrl_0"}, {"CTRL_RSV_CFG0", "ctrl_0"}};
    for (const auto& [name, type] : registers) {
        engine.reg(name, type, std::to_string(random() % 64));
    }
    const char* const nets[] = {"a", "b", "c", ""};
    const unsigned int rates = 1 + static_cast<unsigned int>(random() % 4);
    for (int channel = 0; channel < 4; ++channel) {
        const std::string tx = nets[random() % 4];
        const std::string rx = nets[random() % 4];
        engine.lane(channel, tx, rx);
        for (unsigned int pass = 0; pass < (tx == rx ? rates : rates * rates); ++pass) {
            registerValues values;
            for (const auto& [name, type] : registers) {
                values[name] = static_cast<unsigned int>(random());
            }
            const unsigned int txRate = tx == rx ? pass : pass / rates;
            engine.pass(static_cast<std::size_t>(channel), txRate, tx == rx ? pass : pass % rates,
                        values);
        }
    }
}

constexpr int rounds = 100;

TEST(RandomRateTables, AddUp) {
    std::mt19937 random(43);
    for (int round = 0; round < rounds; ++round) {
        RateTableEngine engine;
        fillRandomly(engine, random);
        const auto words = numbersOfBinary(engine.generateRateTableInBinary());
        const auto wordsOfBody = [&](std::size_t word) {
            return ((words.at(word) >> 20) & 0xffU) * ((words.at(word) >> 10) & 0x3ffU);
        };
        std::uint32_t offset = headerWords;
        for (std::size_t channel = 0; channel < 4; ++channel) {
            EXPECT_EQ(words.at(2 + 2 * channel) & 0x3ffU, offset & 0x3ffU) << "round " << round;
            offset += wordsOfBody(2 + 2 * channel);
        }
        for (std::size_t channel = 0; channel < 4; ++channel) {
            const bool duplex = ((words.at(0) >> (25 + channel)) & 1U) != 0;
            if (!duplex) {
                EXPECT_EQ(words.at(3 + 2 * channel) & 0x3ffU, offset & 0x3ffU) << "round " << round;
                offset += wordsOfBody(3 + 2 * channel);
            }
        }
        EXPECT_EQ(words.size(), offset) << "round " << round;
    }
}

TEST(RandomRateTables, SettleWithTheSecondGeneration) {
    std::mt19937 random(44);
    for (int round = 0; round < rounds; ++round) {
        RateTableEngine engine;
        fillRandomly(engine, random);
        engine.generateRateTable(true);
        const std::string second = engine.generateRateTable(true);
        EXPECT_EQ(engine.generateRateTable(true), second) << "round " << round;
    }
}

TEST(RandomRateTables, AreTheSameInAllForms) {
    std::mt19937 random(45);
    for (int round = 0; round < rounds; ++round) {
        RateTableEngine engine;
        fillRandomly(engine, random);
        // From the second generation on nothing changes any more.
        engine.generateRateTable(true);
        const std::string binary = engine.generateRateTableInBinary();
        EXPECT_EQ(binary.size() % 32, 0U);
        EXPECT_EQ(static_cast<std::size_t>(engine.getRateTableSize()), binary.size() / 8);
        // Nine characters a word, two blanks and a line feed for eight words.
        const std::size_t count = binary.size() / 32;
        EXPECT_EQ(engine.generateRateTable(true).size(),
                  std::string("//Version 2.0 32-bit\n").size() + 9 * count + 2 * ((count + 7) / 8) +
                      count / 8);
    }
}

}  // namespace
