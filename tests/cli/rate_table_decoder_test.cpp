#include "rate_table_decoder.h"

#include "../block/rate_table_engine.h"
#include "cli/rate_table_words.h"
#include "errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Words = std::vector<std::uint32_t>;

constexpr auto transmit = TableDirection::transmit;
constexpr auto receive = TableDirection::receive;

/// The only group of the only rate of a table.
WriteGroup groupOf(const Words& body) {
    const DecodedRateTable table = decodeRateTable(tableOfOneChannel(1, body));
    return table.bodies.at(0).rates.at(0).at(0);
}

std::vector<unsigned> addressesOf(const WriteGroup& group) {
    std::vector<unsigned> addresses;
    for (const RegisterWrite& write : group.writes) {
        addresses.push_back(write.address);
    }
    return addresses;
}

Words valuesOf(const WriteGroup& group) {
    Words values;
    for (const RegisterWrite& write : group.writes) {
        values.push_back(write.value);
    }
    return values;
}

std::vector<std::optional<std::uint32_t>> masksOf(const WriteGroup& group) {
    std::vector<std::optional<std::uint32_t>> masks;
    for (const RegisterWrite& write : group.writes) {
        masks.push_back(write.mask);
    }
    return masks;
}

// Structure words

TEST(DecodedHeader, HasMastersGroupsAndDuplexFlagsOfEachDirection) {
    // Transmit: channels 0 and 2 together, 1 and 3 together. Receive: 0 alone, 1 with 2 and 3.
    // Masters of channels 3 and 1 are 1; groups 1010 of channel 1 and 0101 of channel 0.
    const std::uint32_t tx = (1U << 23) | (1U << 19) | (10U << 5) | (5U << 1) | 1U;
    // Masters of channels 3, 2 and 1 are 1; groups 1110 of channel 1 and 0001 of channel 0.
    const std::uint32_t rx = (1U << 23) | (1U << 21) | (1U << 19) | (14U << 5) | (1U << 1) | 1U;
    const DecodedRateTable table = decodeRateTable({tx, rx, 10, 10, 10, 10, 10, 10, 10, 10});
    const std::vector<unsigned> txMasters = {0, 1, 0, 1};
    const std::vector<unsigned> rxMasters = {0, 1, 1, 1};
    const std::vector<unsigned long> txGroups = {5, 10, 0, 0};
    const std::vector<unsigned long> rxGroups = {1, 14, 0, 0};
    for (std::size_t channel = 0; channel < 4; ++channel) {
        const ChannelHeader& header = table.channels[channel];
        EXPECT_TRUE(header.isPresent);
        EXPECT_FALSE(header.isDuplex);
        EXPECT_EQ(header.of(transmit).master, txMasters[channel]);
        EXPECT_EQ(header.of(receive).master, rxMasters[channel]);
        EXPECT_EQ(header.of(transmit).group.to_ulong(), txGroups[channel]);
        EXPECT_EQ(header.of(receive).group.to_ulong(), rxGroups[channel]);
    }
    EXPECT_THAT(table.bodies, IsEmpty());
    EXPECT_EQ(table.wordCount, 10U);
}

TEST(DecodedHeader, HasADuplexFlagForEachChannel) {
    // Each channel its own master (3, 2, 1, 0) and alone; channels 0 and 2 are duplex.
    const std::uint32_t word = (5U << 25) | (3U << 23) | (2U << 21) | (1U << 19) | (8U << 13) |
                               (4U << 9) | (2U << 5) | (1U << 1) | 1U;
    const DecodedRateTable table = decodeRateTable({word, word, 10, 10, 10, 10, 10, 10, 10, 10});
    EXPECT_TRUE(table.channels[0].isDuplex);
    EXPECT_FALSE(table.channels[1].isDuplex);
    EXPECT_TRUE(table.channels[2].isDuplex);
    EXPECT_FALSE(table.channels[3].isDuplex);
}

TEST(DecodedHeader, TellsChannelsThatTheQuadDoesNotHave) {
    // Channels 0 and 1 are duplex, each alone; nothing of the other two.
    const std::uint32_t word = (3U << 25) | (1U << 19) | (2U << 5) | (1U << 1) | 1U;
    const DecodedRateTable table = decodeRateTable({word, word, 10, 10, 10, 10, 0, 0, 0, 0});
    EXPECT_TRUE(table.channels[1].isPresent);
    EXPECT_FALSE(table.channels[2].isPresent);
    EXPECT_FALSE(table.channels[3].isPresent);
}

// Channel words

TEST(DecodedChannelWord, OfADuplexChannelHasPcieRatesSizeAndOffset) {
    // One register at address 0x10: 0x10 at bits 13 and 3.
    Words words = tableOfOneChannel(2, {0x20080, 5, 0x20080, 9});
    // PCIe at bit 31, 2 rates at bit 20, 2 words at bit 10, offset 10: 80 20 08 0a.
    words[2] = words[3] = 0x8020080a;
    const DecodedRateTable table = decodeRateTable(words);
    const DirectionHeader& side = table.channels[0].of(transmit);
    EXPECT_TRUE(side.isPcie);
    EXPECT_EQ(side.rates, 2U);
    EXPECT_EQ(side.blockSize, 2U);
    EXPECT_EQ(side.offset, 10U);
    ASSERT_THAT(table.bodies, SizeIs(1));
    EXPECT_EQ(table.bodies[0].channel, 0U);
    EXPECT_EQ(table.bodies[0].direction, transmit);
    ASSERT_THAT(table.bodies[0].rates, SizeIs(2));
    EXPECT_THAT(valuesOf(table.bodies[0].rates[0].at(0)), ElementsAre(5U));
    EXPECT_THAT(valuesOf(table.bodies[0].rates[1].at(0)), ElementsAre(9U));
    EXPECT_EQ(table.bodies[0].rates[1].at(0).position, 12U);
}

TEST(DecodedChannelWord, OfASimplexChannelLeadsToATableForEachDirection) {
    // One register at address 1: 1 at bit 13 and at bit 3.
    const std::uint32_t one = 0x2008;
    const DecodedRateTable table =
        decodeRateTable(tableOfOneSimplexChannel(2, {one, 5, one, 6}, 3, {one, 7, one, 8, one, 9}));
    ASSERT_THAT(table.bodies, SizeIs(2));
    EXPECT_EQ(table.bodies[0].direction, transmit);
    EXPECT_THAT(table.bodies[0].rates, SizeIs(2));
    EXPECT_EQ(table.bodies[1].direction, receive);
    ASSERT_THAT(table.bodies[1].rates, SizeIs(3));
    EXPECT_EQ(table.channels[0].of(receive).offset, 14U);
    EXPECT_THAT(valuesOf(table.bodies[1].rates[2].at(0)), ElementsAre(9U));
}

TEST(DecodedChannelWord, MayHaveAnOffsetThatHasWrapped) {
    // 255 rates of 5 words end at word 1285, which is 261 above 1024.
    Words body;
    for (unsigned rate = 0; rate < 255; ++rate) {
        // A pair at addresses 0 and 1 and a single one at address 2.
        body.insert(body.end(), {0x2004, rate, 0, 0x4010, 0});
    }
    Words words = tableOfOneChannel(255, body);
    for (std::size_t word = 4; word < 10; ++word) {
        words[word] = 261;
    }
    const DecodedRateTable table = decodeRateTable(words);
    EXPECT_EQ(table.channels[1].of(transmit).offset, 261U);
    EXPECT_EQ(table.bodies.at(0).rates.at(254).at(0).position, 10U + 254 * 5);
}

// Groups

TEST(DecodedGroup, OfOneRegisterHasItsAddressAndValue) {
    // Address 0x123 at bits 13 and 3.
    const WriteGroup group = groupOf({0x00246918, 0xabcdef01});
    EXPECT_FALSE(group.isBurst);
    EXPECT_EQ(group.lane, std::nullopt);
    EXPECT_EQ(group.position, 10U);
    EXPECT_THAT(addressesOf(group), ElementsAre(0x123U));
    EXPECT_THAT(valuesOf(group), ElementsAre(0xabcdef01U));
    EXPECT_THAT(masksOf(group), ElementsAre(std::nullopt));
}

TEST(DecodedGroup, OfOneMaskedRegisterHasTheMaskBeforeTheValue) {
    // Both mask flags, bits 24 and 23.
    const WriteGroup group = groupOf({0x01800000 | 0x00246918, 0x7007, 0x1001});
    EXPECT_THAT(masksOf(group), ElementsAre(0x7007U));
    EXPECT_THAT(valuesOf(group), ElementsAre(0x1001U));
}

TEST(DecodedGroup, OfTwoRegistersHasTheSecondAddressAboveTheFirst) {
    // 0x2ac at bit 13, 0x123 at bit 3, bit 2 for the second.
    const WriteGroup group = groupOf({(0x2acU << 13) | (0x123U << 3) | 4U, 10, 20});
    EXPECT_THAT(addressesOf(group), ElementsAre(0x123U, 0x2acU));
    EXPECT_THAT(valuesOf(group), ElementsAre(10U, 20U));
}

TEST(DecodedGroup, OfTwoRegistersWithTheFirstMasked) {
    const WriteGroup group = groupOf({(1U << 23) | (2U << 13) | (1U << 3) | 4U, 0xff, 10, 20});
    EXPECT_THAT(masksOf(group), ElementsAre(0xffU, std::nullopt));
    EXPECT_THAT(valuesOf(group), ElementsAre(10U, 20U));
}

TEST(DecodedGroup, OfTwoRegistersWithTheSecondMasked) {
    const WriteGroup group = groupOf({(1U << 24) | (2U << 13) | (1U << 3) | 4U, 10, 0xff, 20});
    EXPECT_THAT(masksOf(group), ElementsAre(std::nullopt, 0xffU));
    EXPECT_THAT(valuesOf(group), ElementsAre(10U, 20U));
}

TEST(DecodedGroup, OfTwoMaskedRegisters) {
    const WriteGroup group = groupOf({(3U << 23) | (2U << 13) | (1U << 3) | 4U, 0xf, 10, 0xff, 20});
    EXPECT_THAT(masksOf(group), ElementsAre(0xfU, 0xffU));
    EXPECT_THAT(valuesOf(group), ElementsAre(10U, 20U));
}

TEST(DecodedGroup, ForASingleLaneHasTheLane) {
    // Lane 3 at bit 26, enabled by bit 25.
    EXPECT_EQ(groupOf({(3U << 26) | (1U << 25), 10}).lane, 3U);
    EXPECT_EQ(groupOf({1U << 25, 10}).lane, 0U);
}

TEST(DecodedGroup, OfABurstHasARegisterForEachBitOfTheWriteMask) {
    // Start 0x203 at bit 22; bits 6, 7 and 11 for the distances 0, 1 and 5; span 5 at bit 2.
    const WriteGroup group =
        groupOf({(0x203U << 22) | 0x40U | 0x80U | 0x800U | (5U << 2) | 2U, 11, 12, 13});
    EXPECT_TRUE(group.isBurst);
    EXPECT_THAT(addressesOf(group), ElementsAre(0x203U, 0x204U, 0x208U));
    EXPECT_THAT(valuesOf(group), ElementsAre(11U, 12U, 13U));
    EXPECT_THAT(masksOf(group), ElementsAre(std::nullopt, std::nullopt, std::nullopt));
}

TEST(DecodedGroup, OfABurstReachesFifteenAddressesFar) {
    const WriteGroup group =
        groupOf({(1U << 22) | 0x40U | 0x80U | (1U << 21) | (15U << 2) | 2U, 11, 12, 13});
    EXPECT_THAT(addressesOf(group), ElementsAre(1U, 2U, 16U));
}

TEST(DecodedGroup, OfABurstAtTheEndOfTheAddressesGoesOnAtZero) {
    const WriteGroup group =
        groupOf({(0x3feU << 22) | 0x40U | 0x80U | 0x100U | (2U << 2) | 2U, 11, 12, 13});
    EXPECT_THAT(addressesOf(group), ElementsAre(0x3feU, 0x3ffU, 0U));
}

TEST(DecodedRate, HasItsGroupsInOrder) {
    const DecodedRateTable table = decodeRateTable(tableOfOneChannel(
        1, {0x01800000, 0xf, 1, (5U << 22) | (7U << 6) | (2U << 2) | 2U, 2, 3, 4, 0x4010, 5}));
    const RateWrites& rate = table.bodies.at(0).rates.at(0);
    ASSERT_THAT(rate, SizeIs(3));
    EXPECT_THAT(addressesOf(rate[0]), ElementsAre(0U));
    EXPECT_THAT(addressesOf(rate[1]), ElementsAre(5U, 6U, 7U));
    EXPECT_THAT(addressesOf(rate[2]), ElementsAre(2U));
    EXPECT_EQ(rate[2].position, 17U);
}

// Words that can't be a table

struct BadTable {
    std::string name;
    std::function<void(Words&)> spoil;
    std::string message;
};

class BadWords : public testing::TestWithParam<BadTable> {
  protected:
    /// Two rates of a pair at addresses 1 and 2, a burst at 5, 6 and 7, and one register at 9.
    Words words() const {
        const std::uint32_t pair = (2U << 13) | (1U << 3) | 4U;
        const std::uint32_t burst = (5U << 22) | (7U << 6) | (2U << 2) | 2U;
        const std::uint32_t one = (9U << 13) | (9U << 3);
        return tableOfOneChannel(2, {pair, 1, 2, burst, 3, 4, 5, one, 6,  //
                                     pair, 0, 0, burst, 0, 0, 0, one, 0});
    }
};

TEST_P(BadWords, AreRefused) {
    Words spoiled = words();
    ASSERT_NO_THROW(decodeRateTable(spoiled));
    GetParam().spoil(spoiled);
    try {
        decodeRateTable(spoiled);
        FAIL() << "decoded";
    } catch (const RequestError& error) {
        EXPECT_THAT(error.what(), HasSubstr(GetParam().message));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Header, BadWords,
    testing::Values(
        BadTable{"Empty", [](Words& w) { w.clear(); },
                 "has 0 words, but its header alone takes 10"},
        BadTable{"TruncatedInTheHeader", [](Words& w) { w.resize(9); }, "has 9 words"},
        BadTable{"TruncatedInTheBody", [](Words& w) { w.pop_back(); },
                 "has 27 words, but the sizes in its header add up to 28"},
        BadTable{"WithAWordTooMany", [](Words& w) { w.push_back(0); },
                 "has 29 words, but the sizes in its header add up to 28"},
        BadTable{"WithAbsurdCounts", [](Words& w) { w[8] = w[9] = 0x0ffffc1c; },
                 "Word 8 of the rate table: a body without an owner"},
        BadTable{"WithMoreRatesThanWords",
                 [](Words& w) { w[2] = w[3] = (255U << 20) | (1023U << 10) | 10U; },
                 "Word 4 of the rate table: the offset is 28, but the words before this body end "
                 "at 260875; a table with more than 255 rates or 1023 words for a rate does not "
                 "fit its header."},
        BadTable{"ThatAreNotValid", [](Words& w) { w[1] &= ~1U; },
                 "Word 1 of the rate table: the structure is not valid"},
        BadTable{"WithReservedStructureBits", [](Words& w) { w[0] |= 1U << 30; },
                 "Word 0 of the rate table: reserved bits"},
        BadTable{"WithAMasterAboveItsChannel", [](Words& w) { w[0] |= 3U << 17; },
                 "Word 0 of the rate table: channel 0 has a master above itself"},
        // Channels 2 and 3 follow channel 1, which follows channel 0.
        BadTable{"WithAMasterThatFollowsAnother",
                 [](Words& w) { w[0] ^= (1U << 19) | (1U << 6) | (1U << 2); },
                 "Word 0 of the rate table: channel 2 has a master that follows another channel"},
        // To receive, channel 3 is alone: its master is 3 and its group 1000.
        BadTable{"WithDuplexChannelsThatPart",
                 [](Words& w) { w[1] ^= (1U << 24) | (1U << 16) | (1U << 8); },
                 "Word 1 of the rate table: the duplex flags of channels 1 and 3 contradict"},
        BadTable{"WithASimplexChannelInBothGroupsOfADuplexOne",
                 [](Words& w) {
                     w[0] ^= 1U << 27;
                     w[1] ^= 1U << 27;
                 },
                 "Word 1 of the rate table: the duplex flags of channels 1 and 2 contradict"},
        BadTable{"WithPcieButNoRate", [](Words& w) { w[4] = w[5] = (1U << 31) | 28U; },
                 "Word 4 of the rate table: a channel without rates tells of PCIe"},
        BadTable{"WithAChannelInTwoGroups", [](Words& w) { w[0] |= 1U << 2; },
                 "Word 0 of the rate table: channel 1 is in the group of a channel that is not"},
        BadTable{"WithAChannelInAGroupOfOneDirection", [](Words& w) { w[1] &= ~(1U << 8); },
                 "Word 1 of the rate table: channel 3 is in a group of one direction only"},
        BadTable{"WithAnAbsentChannelThatHasWords",
                 [](Words& w) {
                     w[0] &= ~(1U << 8);
                     w[1] &= ~(1U << 8);
                 },
                 "Word 8 of the rate table: channel 3 is in no group"},
        BadTable{"WithOtherDuplexFlagsInTheSecondWord", [](Words& w) { w[1] &= ~(1U << 28); },
                 "Word 1 of the rate table: the duplex flags"},
        BadTable{"WithReservedChannelBits", [](Words& w) { w[2] |= 1U << 28; },
                 "Word 2 of the rate table: reserved bits"},
        BadTable{"WithTwoWordsOfADuplexChannel", [](Words& w) { w[3] |= 1U << 31; },
                 "Word 3 of the rate table: the two words of a duplex channel"},
        BadTable{"WithAnotherOffset", [](Words& w) { w[6] = w[7] = 27; },
                 "Word 6 of the rate table: the offset is 27, but the words before this body end "
                 "at 28"},
        BadTable{"WithASizeButNoRate", [](Words& w) { w[2] = w[3] = (9U << 10) | 10U; },
                 "Word 2 of the rate table: a body without an owner or without a rate"}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Body, BadWords,
    testing::Values(
        BadTable{"WithAGroupInRom", [](Words& w) { w[10] |= 1U; },
                 "Word 10 of the rate table: this group is said to be in ROM"},
        BadTable{"WithReservedGroupBits", [](Words& w) { w[10] |= 1U << 28; },
                 "Word 10 of the rate table: reserved bits of this group"},
        BadTable{"WithALaneButNoSingleLane", [](Words& w) { w[10] |= 1U << 26; },
                 "Word 10 of the rate table: this group selects a lane"},
        BadTable{"WithASecondAddressButNoSecondRegister", [](Words& w) { w[17] ^= 1U << 13; },
                 "Word 17 of the rate table: this group has one register"},
        BadTable{"WithASecondMaskButNoSecondRegister", [](Words& w) { w[17] |= 1U << 24; },
                 "Word 17 of the rate table: this group has one register"},
        BadTable{"WithAGroupThatRunsOverItsRate", [](Words& w) { w[17] |= 4U; },
                 "Word 17 of the rate table: this group runs over the end of its rate, which is "
                 "before word 19"},
        BadTable{"WithABurstThatRunsOverItsRate",
                 [](Words& w) { w[13] = (5U << 22) | (0x3fU << 6) | (5U << 2) | 2U; },
                 "Word 13 of the rate table: this group runs over the end of its rate"},
        BadTable{"WithABurstThatSkipsItsStart", [](Words& w) { w[13] &= ~(1U << 6); },
                 "Word 13 of the rate table: the write mask of this burst"},
        BadTable{"WithABurstOfAnotherSpan", [](Words& w) { w[13] += 1U << 2; },
                 "Word 13 of the rate table: the write mask of this burst"},
        BadTable{"WithABurstOfTwo", [](Words& w) { w[13] &= ~(1U << 7); },
                 "Word 13 of the rate table: this burst has fewer than three registers"},
        BadTable{"WithOtherRegistersAtTheSecondRate",
                 [](Words& w) { w[19] = (3U << 13) | (1U << 3) | 4U; },
                 "Word 19 of the rate table: rate 1 does not write the registers of the first"}),
    [](const auto& test) { return test.param.name; });

TEST(BadWordsOfASimplexChannel, WithPcieInTheReceiveWordAreRefused) {
    Words words = tableOfOneSimplexChannel(1, {0, 1}, 1, {0, 1});
    ASSERT_NO_THROW(decodeRateTable(words));
    words[3] |= 1U << 31;
    EXPECT_THROW(decodeRateTable(words), RequestError);
}

TEST(BadWordsOfASimplexChannel, WithRatesInOneDirectionOnlyAreRefused) {
    ASSERT_NO_THROW(decodeRateTable(tableOfOneSimplexChannel(1, {0, 1}, 1, {})));
    EXPECT_THROW(decodeRateTable(tableOfOneSimplexChannel(1, {0, 1}, 0, {})), RequestError);
    EXPECT_THROW(decodeRateTable(tableOfOneSimplexChannel(0, {}, 1, {0, 1})), RequestError);
}

TEST(BadWordsOfADuplexChannel, WithOtherMasksAtTheSecondRateAreRefused) {
    Words words = tableOfOneChannel(2, {0x01800000, 0xf, 1, 0x01800000, 0xf, 2});
    ASSERT_NO_THROW(decodeRateTable(words));
    words[14] = 0xff;
    EXPECT_THROW(decodeRateTable(words), RequestError);
}

// Tables that their own header can't tell of

std::string faultOfTable(RateTableEngine& engine) {
    try {
        decodeRateTable(rateTableWords(engine.generateRateTableInBinary()));
    } catch (const RequestError& error) {
        return error.what();
    }
    return {};
}

class ManyRates : public testing::TestWithParam<unsigned> {};

TEST_P(ManyRates, AreRefusedFrom256On) {
    RateTableEngine engine;
    engine.reg("A", "channel").lane(0, "a", "a");
    for (unsigned rate = 0; rate < GetParam(); ++rate) {
        engine.pass(0, rate, rate, {{"A", rate}});
    }
    EXPECT_EQ(faultOfTable(engine).find("more than 255 rates") != std::string::npos,
              GetParam() > 255)
        << faultOfTable(engine);
}

// Two words for a rate. The header tells 0 of 256 rates, and 2 of 514 rates, whose words end at
// 1038, with the offset 14 just where 2 rates of 2 words would end.
INSTANTIATE_TEST_SUITE_P(Numbers, ManyRates, testing::Values(255U, 256U, 257U, 514U),
                         testing::PrintToStringParamName());

class ManyRegisters : public testing::TestWithParam<unsigned> {};

TEST_P(ManyRegisters, AreRefusedFrom1024WordsARateOn) {
    RateTableEngine engine;
    engine.lane(0, "a", "a");
    registerValues values;
    for (unsigned number = 0; number < GetParam(); ++number) {
        const std::string name = "R" + std::to_string(number);
        // Too far from each other for a burst; as hexadecimal numbers still further.
        engine.reg(name, "channel", std::to_string(16 * number));
        values[name] = 1U;
    }
    engine.pass(0, 0, 0, values);
    for (auto& [name, value] : values) {
        value = 2U;
    }
    engine.pass(0, 1, 1, values);
    EXPECT_EQ(faultOfTable(engine).find("1023 words for a rate") != std::string::npos,
              GetParam() > 682)
        << faultOfTable(engine);
}

// A pair takes three words, a last lone register two: 682 registers take 1023 words.
INSTANTIATE_TEST_SUITE_P(Numbers, ManyRegisters, testing::Values(682U, 683U, 700U),
                         testing::PrintToStringParamName());

// Binary digits

TEST(RateTableDigits, AreThirtyTwoAWordFromTheHighestBit) {
    EXPECT_THAT(rateTableWords("10000000000000000000000000000001"
                               "00000000000000000111000000000111"),
                ElementsAre(0x80000001U, 0x7007U));
    EXPECT_THAT(rateTableWords(""), IsEmpty());
}

std::string faultOfDigits(const std::string& digits) {
    try {
        rateTableWords(digits);
    } catch (const RequestError& error) {
        return error.what();
    }
    return {};
}

TEST(RateTableDigits, ThatAreNotBinaryAreRefusedWithTheirPlace) {
    EXPECT_EQ(faultOfDigits(std::string(32, '0') + "012" + std::string(29, '0')),
              "Word 1 of the rate table: place 2 is no binary digit.");
    EXPECT_EQ(faultOfDigits("\n"), "Word 0 of the rate table: place 0 is no binary digit.");
}

TEST(RateTableDigits, OfAPartOfAWordAreRefused) {
    EXPECT_EQ(faultOfDigits(std::string(63, '1')),
              "Word 1 of the rate table: it has 31 binary digits, not 32.");
}

}  // namespace
}  // namespace lanecfg_test
