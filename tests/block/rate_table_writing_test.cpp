#include "rate_table_engine.h"
#include "support/rate_table_headers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using lanecfg_test::bothMasked;
using lanecfg_test::burstHeader;
using lanecfg_test::critical;
using lanecfg_test::digits;
using lanecfg_test::FourChannels;
using lanecfg_test::FreshLog;
using lanecfg_test::loneHeader;
using lanecfg_test::numbers;
using lanecfg_test::pairHeader;
using lanecfg_test::RateTableEngine;
using sable_lanecfg::RateTableAttribute;
using sable_lanecfg::RateTableControl;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr std::size_t headerWords = 10;

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

TEST_F(RateTableWriting, TellsWhichChannelLacksARateOfItsNet) {
    duplexLane(0, 2);
    duplexLane(2, 1);
    channels[2].txMaster = 0;
    control.txNormal[0] = {entry(1), entry(900, 2, "OTHER")};
    EXPECT_EQ(
        lanecfg_test::textOfFault<std::out_of_range>([this] { write(); }),
        "The TX rate table needs OTHER of channel 2 at rate 1, for which channel 2 has no "
        "pass; it ran 1. Give all lanes on one rate net the same rates, or put channel 2 on a "
        "net of its own (txrate, rxrate).");
}

TEST_F(RateTableWriting, TellsWhichChannelLacksTheSnapshotOfABurst) {
    duplexLane(0, 2);
    duplexLane(2, 1);
    channels[2].txMaster = 0;
    control.txNormal[0] = {entry(1), entry(2), entry(3, 2, "OTHER")};
    EXPECT_THAT(lanecfg_test::textOfFault<std::out_of_range>([this] { write(); }),
                ::testing::StartsWith("The TX rate table needs OTHER of channel 2 at rate 1"));
}

TEST_F(RateTableWriting, NamesTheTransmitRateAndNotTheSnapshotOfASimplexChannel) {
    simplexLane(0, 2, 2);
    simplexLane(2, 1, 2);
    channels[2].txMaster = 0;
    control.txNormal[0] = {entry(1), entry(900, 2, "OTHER")};
    EXPECT_THAT(lanecfg_test::textOfFault<std::out_of_range>([this] { write(); }),
                ::testing::StartsWith("The TX rate table needs OTHER of channel 2 at rate 1, for "
                                      "which channel 2 has no pass; it ran 2."));
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

}  // namespace
