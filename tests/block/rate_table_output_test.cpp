#include "rate_table_engine.h"

#include <lanecfg/rule_engine_utilities.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <stdexcept>

namespace {

using lanecfg_test::digits;
using lanecfg_test::FourChannels;
using lanecfg_test::FreshLog;
using lanecfg_test::numbersOfBinary;
using lanecfg_test::RateTableEngine;
using lanecfg_test::registerValues;
using sable_lanecfg::rule_engine_utilities;
using ::testing::Contains;
using ::testing::Each;
using ::testing::SizeIs;

constexpr std::size_t headerWords = 10;

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

/// Registers of all kinds, random rate pins, and as many rates in each channel and direction.
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
