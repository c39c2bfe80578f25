#include "rate_table_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <stdexcept>

namespace {

using lanecfg_test::critical;
using lanecfg_test::FreshLog;
using lanecfg_test::numbers;
using lanecfg_test::RateTableEngine;
using lanecfg_test::textOfFault;
using sable_lanecfg::RateTableAttribute;
using sable_lanecfg::ruleValue;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

/// Two channels with two snapshots each: FIRST is 10, 11 in channel 0 and 20, 21 in channel 1,
/// SECOND is a hundred times that.
struct WriteGroup : public ::testing::Test {
    WriteGroup() {
        engine.reg("FIRST", "channel").reg("SECOND", "channel").reg("THIRD", "channel");
        for (const unsigned int channel : {0U, 1U}) {
            for (const unsigned int rate : {0U, 1U}) {
                const unsigned int value = 10 * (channel + 1) + rate;
                engine.pass(channel, rate, rate,
                            {{"FIRST", value}, {"SECOND", 100 * value}, {"THIRD", 5U}});
            }
        }
    }

    std::vector<std::uint32_t> pair(const RateTableAttribute& one, const RateTableAttribute& two,
                                    const std::set<std::string>& masked = {},
                                    bool singleLane = false) {
        return numbers(engine.rateTableBodyCase1_new(one, two, 1, masked, {0, 1}, singleLane));
    }

    std::vector<std::uint32_t> lone(const RateTableAttribute& one,
                                    const std::set<std::string>& masked = {},
                                    bool singleLane = false) {
        return numbers(engine.rateTableBodyCase1_new(one, one, 0, masked, {1, 1}, singleLane));
    }

    RateTableEngine engine;
    const RateTableAttribute first = critical("FIRST", "channel", 0x123, 0, 0x0f0f0f0f);
    const RateTableAttribute second = critical("SECOND", "channel", 0x2ac, 1, 0xf0000001);
};

// Groups of one or two registers

TEST_F(WriteGroup, OfOneRegisterRepeatsItsAddress) {
    // 0x123 at bit 13 and at bit 3.
    EXPECT_THAT(lone(first), ElementsAre(0x246000U | 0x918U, 11U));
    EXPECT_EQ(engine.rateTableBodyCase1_new(first, first, 0, {}, {1, 1}, false).front(),
              "00000000001001000110100100011000");
}

TEST_F(WriteGroup, OfOneMaskedRegisterSetsBothMaskFlagsAndHasItsMaskBeforeItsValue) {
    EXPECT_THAT(lone(first, {"CH_0_FIRST"}),
                ElementsAre(0x01800000U | 0x246000U | 0x918U, 0x0f0f0f0fU, 11U));
}

TEST_F(WriteGroup, OfOneRegisterTakesNothingFromTheSecondButReadsIt) {
    const auto words =
        numbers(engine.rateTableBodyCase1_new(first, second, 0, {"CH_1_SECOND"}, {0, 1}, false));
    EXPECT_THAT(words, ElementsAre(0x246000U | 0x918U, 10U));
    EXPECT_THROW(engine.rateTableBodyCase1_new(first, second, 0, {}, {0, 2}, false),
                 std::out_of_range);
}

TEST_F(WriteGroup, OfTwoRegistersTakesEachValueFromItsOwnChannelAndSnapshot) {
    // 0x2ac at bit 13, 0x123 at bit 3, bit 2 for the second.
    EXPECT_THAT(pair(first, second), ElementsAre(0x558000U | 0x918U | 4U, 10U, 2100U));
}

TEST_F(WriteGroup, OfTwoRegistersWithTheFirstMasked) {
    EXPECT_THAT(pair(first, second, {"CH_0_FIRST"}),
                ElementsAre(0x00800000U | 0x558000U | 0x918U | 4U, 0x0f0f0f0fU, 10U, 2100U));
}

TEST_F(WriteGroup, OfTwoRegistersWithTheSecondMasked) {
    EXPECT_THAT(pair(first, second, {"CH_1_SECOND"}),
                ElementsAre(0x01000000U | 0x558000U | 0x918U | 4U, 10U, 0xf0000001U, 2100U));
}

TEST_F(WriteGroup, OfTwoMaskedRegisters) {
    EXPECT_THAT(
        pair(first, second, {"CH_0_FIRST", "CH_1_SECOND"}),
        ElementsAre(0x01800000U | 0x558000U | 0x918U | 4U, 0x0f0f0f0fU, 10U, 0xf0000001U, 2100U));
}

TEST_F(WriteGroup, IsNotMaskedByTheNameOfAnotherChannel) {
    EXPECT_THAT(pair(first, second, {"CH_1_FIRST", "CH_0_SECOND", "FIRST", "SECOND"}),
                ElementsAre(0x558000U | 0x918U | 4U, 10U, 2100U));
}

TEST_F(WriteGroup, ForASingleLaneSelectsTheChannelOfTheFirstRegister) {
    // Bit 25 enables, bits 27 and 26 hold the channel.
    EXPECT_THAT(pair(first, second, {}, true),
                ElementsAre(0x02000000U | 0x558000U | 0x918U | 4U, 10U, 2100U));
    EXPECT_THAT(lone(second, {}, true),
                ElementsAre(0x04000000U | 0x02000000U | 0x558000U | 0x1560U, 2100U));
}

TEST_F(WriteGroup, ForTheSingleLaneOfTheLastChannelSetsBothSelectBits) {
    engine.pass(3, 0, 0, {{"FIRST", 1U}}).pass(3, 1, 1, {{"FIRST", 2U}});
    EXPECT_THAT(lone(critical("FIRST", "channel", 0, 3), {}, true), ElementsAre(0x0e000000U, 2U));
}

TEST_F(WriteGroup, CutsAddressesToTenBits) {
    EXPECT_THAT(
        pair(critical("FIRST", "channel", 0x401, 0), critical("SECOND", "channel", 0xfff, 1)),
        ElementsAre((0x3ffU << 13) | (1U << 3) | 4U, 10U, 2100U));
}

TEST_F(WriteGroup, LogsItsRegistersWithTheirMasks) {
    const FreshLog log;
    pair(first, second, {"CH_1_SECOND"});
    EXPECT_THAT(log.lines(), ElementsAre("\nNo Burst No Rom", "Name: FIRST", "Address: 291",
                                         "Value: 10", "Name: SECOND", "Address: 684", "Value: 2100",
                                         "Mask: 11110000000000000000000000000001"));
}

TEST_F(WriteGroup, LogsTheSingleLane) {
    const FreshLog log;
    lone(second, {}, true);
    EXPECT_THAT(log.lines(),
                ElementsAre("\nNo Burst No Rom", "Single Lane Enable: 1", "Single Lane Select: 1",
                            "Name: SECOND", "Address: 684", "Value: 2100"));
}

TEST_F(WriteGroup, DemandsTwoSnapshotNumbers) {
    EXPECT_THAT(textOfFault<std::out_of_range>(
                    [&] { engine.rateTableBodyCase1_new(first, first, 0, {}, {}, false); }),
                HasSubstr("vector::_M_range_check: __n (which is 0) >= this->size() (which is 0)"));
    EXPECT_THAT(textOfFault<std::out_of_range>(
                    [&] { engine.rateTableBodyCase1_new(first, first, 0, {}, {0}, false); }),
                HasSubstr("vector::_M_range_check: __n (which is 1) >= this->size() (which is 1)"));
}

TEST_F(WriteGroup, DemandsASnapshotThatTheChannelHas) {
    EXPECT_THROW(engine.rateTableBodyCase1_new(first, second, 1, {}, {2, 0}, false),
                 std::out_of_range);
    EXPECT_THROW(engine.rateTableBodyCase1_new(first, second, 1, {}, {0, -1}, false),
                 std::out_of_range);
    EXPECT_THROW(engine.rateTableBodyCase2_new({first, first, second}, 2), std::out_of_range);
}

struct ValueExample {
    const char* name;
    ruleValue value;
    std::uint32_t word;
};

class ValueWord : public ::testing::TestWithParam<ValueExample> {};

TEST_P(ValueWord, IsTheSignedDecimalNumberCutToThirtyTwoBits) {
    RateTableEngine engine;
    engine.reg("A", "channel").duplexPasses(0, "A", {GetParam().value});
    const RateTableAttribute attribute = critical("A", "channel", 0, 0);
    EXPECT_THAT(numbers(engine.rateTableBodyCase1_new(attribute, attribute, 0, {}, {0, 0}, false)),
                ElementsAre(0U, GetParam().word));
    EXPECT_EQ(numbers(engine.rateTableBodyCase2_new({attribute}, 0)).at(1), GetParam().word);
}

INSTANTIATE_TEST_SUITE_P(
    Values, ValueWord,
    ::testing::Values(ValueExample{"Largest", 0xffffffffU, 0xffffffff},
                      ValueExample{"Text", std::string("65537"), 0x10001},
                      ValueExample{"Negative", std::string("-2"), 0xfffffffe},
                      ValueExample{"MoreThanAWord", std::string("4294967297"), 1},
                      ValueExample{"Flag", true, 1},
                      // Six significant digits, of which the whole part counts.
                      ValueExample{"Fraction", 12.75, 12}),
    [](const auto& tested) { return std::string(tested.param.name); });

class ValueThatIsNoNumber : public ::testing::TestWithParam<ruleValue> {};

TEST_P(ValueThatIsNoNumber, IsRefusedInBothKindsOfGroup) {
    RateTableEngine engine;
    engine.reg("A", "channel").duplexPasses(0, "A", {GetParam()});
    const RateTableAttribute attribute = critical("A", "channel", 0, 0);
    EXPECT_EQ(textOfFault<std::invalid_argument>([&] {
                  engine.rateTableBodyCase1_new(attribute, attribute, 0, {}, {0, 0}, false);
              }),
              "stoll");
    EXPECT_EQ(
        textOfFault<std::invalid_argument>([&] { engine.rateTableBodyCase2_new({attribute}, 0); }),
        "stoll");
}

INSTANTIATE_TEST_SUITE_P(Values, ValueThatIsNoNumber,
                         ::testing::Values(ruleValue(), ruleValue(std::string("ten"))));

TEST_F(WriteGroup, RefusesARegisterThatTheSnapshotLacksAndAddsNone) {
    const RateTableAttribute unknown = critical("FOURTH", "channel", 0, 0);
    EXPECT_THROW(lone(unknown), std::invalid_argument);
    EXPECT_THAT(engine.blockVarMap.at(0).at(1), SizeIs(5));
}

// Bursts

TEST_F(WriteGroup, AsBurstHasItsStartWriteMaskAndSpan) {
    const auto words = numbers(engine.rateTableBodyCase2_new(
        {critical("FIRST", "channel", 0x203, 0), critical("SECOND", "channel", 0x204, 0),
         critical("THIRD", "channel", 0x208, 0)},
        1));
    // Start at bit 22; bits 6, 7 and 11 for the distances 0, 1 and 5; span 5 at bit 2; burst.
    EXPECT_THAT(words, ElementsAre((0x203U << 22) | 0x40U | 0x80U | 0x800U | (5U << 2) | 2U, 11U,
                                   1100U, 5U));
}

TEST_F(WriteGroup, AsBurstReachesFifteenAddressesFar) {
    const auto words = numbers(engine.rateTableBodyCase2_new(
        {critical("FIRST", "channel", 1, 0), critical("SECOND", "channel", 2, 0),
         critical("THIRD", "channel", 16, 0)},
        0));
    EXPECT_EQ(words.front(), (1U << 22) | 0x40U | 0x80U | (1U << 21) | (15U << 2) | 2U);
}

TEST_F(WriteGroup, AsBurstCutsItsStartToTenBits) {
    const auto words =
        numbers(engine.rateTableBodyCase2_new({critical("FIRST", "channel", 0x7ff, 0)}, 0));
    EXPECT_EQ(words.front(), (0x3ffU << 22) | 0x40U | 2U);
}

TEST_F(WriteGroup, AsBurstTakesEachValueFromItsOwnChannel) {
    const auto words = numbers(engine.rateTableBodyCase2_new(
        {critical("FIRST", "channel", 1, 0), critical("FIRST", "channel", 1, 1),
         critical("SECOND", "channel", 2, 1)},
        1));
    // Two registers at the same address share a bit of the write mask.
    EXPECT_THAT(words, ElementsAre((1U << 22) | 0x40U | 0x80U | (1U << 2) | 2U, 11U, 21U, 2100U));
}

TEST_F(WriteGroup, AsBurstIsLogged) {
    const FreshLog log;
    engine.rateTableBodyCase2_new(
        {critical("FIRST", "channel", 1, 0), critical("SECOND", "channel", 2, 0)}, 0);
    EXPECT_THAT(log.lines(), ElementsAre("\nBurst No Rom", "Name: FIRST", "Addr: 1", "Value: 10",
                                         "Name: SECOND", "Addr: 2", "Value: 1000"));
}

TEST_F(WriteGroup, AsBurstWithoutRegistersIsRefused) {
    EXPECT_THROW(engine.rateTableBodyCase2_new({}, 0), std::out_of_range);
}

}  // namespace
