#include "block_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using lanecfg_test::BlockEngine;
using lanecfg_test::BlockSetup;
using sable_lanecfg::ruleValue;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

using rate = std::map<std::string, ruleValue>;

rate rateOf(const std::string& direction, const ruleValue& lineRate, const ruleValue& pll) {
    return {{direction + "_LINE_RATE", lineRate}, {direction + "_PLL_TYPE", pll}};
}

const ruleValue lcpll = std::string("LCPLL");
const ruleValue rpll = std::string("RPLL");

TEST(FindPllRates, LcpllHasHalfRateMultipliers2And1) {
    BlockEngine engine(BlockSetup().rates(0, 0, {rateOf("TX", 10.0F, lcpll)}));
    // Times 2: only divider 1 stays in range, 10 / 2; times 1: dividers 2.5 and 2, 12.5 and 10.
    EXPECT_THAT(engine.findPllRates()[0][0], ElementsAre(Pair(0, ElementsAre(5.0, 10.0, 12.5))));
}

TEST(FindPllRates, RpllHasMultiplier1) {
    BlockEngine engine(BlockSetup().rates(0, 0, {rateOf("TX", 5.0F, rpll)}));
    // Dividers 2.5 and 2 of a half rate of 2.5.
    EXPECT_THAT(engine.findPllRates()[1][0], ElementsAre(Pair(0, ElementsAre(5.0, 6.25))));
}

TEST(FindPllRates, AnyOtherPllNameCountsAsRpll) {
    BlockEngine engine(
        BlockSetup().rates(0, 0, {rateOf("TX", 5.0F, ruleValue(std::string("lcpll")))}));
    EXPECT_THAT(engine.findPllRates()[1][0], ElementsAre(Pair(0, ElementsAre(5.0, 6.25))));
}

TEST(FindPllRates, BothEndsOfTheRpllRangeCount) {
    BlockEngine engine(BlockSetup().rates(0, 0, {rateOf("TX", 8.0F, rpll)}));
    EXPECT_THAT(engine.findPllRates()[1][0], ElementsAre(Pair(0, ElementsAre(4.0, 8.0))));
}

TEST(FindPllRates, BothEndsOfTheLcpllRangeCount) {
    BlockEngine engine(
        BlockSetup().rates(0, 0, {rateOf("TX", 16.375F, lcpll), rateOf("TX", 8.0F, lcpll)}));
    // 16.375: half is 8.1875, times 2 and times 1 with divider 2 reach 16.375. 8.0: times 2 with
    // divider 1 is the lower end, with 2 it is 16; times 1 with 2, 2.5, 4 is 8, 10, 16.
    EXPECT_THAT(engine.findPllRates()[0][0],
                ElementsAre(Pair(0, ElementsAre(8.1875, 16.375)),
                            Pair(1, ElementsAre(4.0, 8.0, 10.0, 16.0))));
}

TEST(FindPllRates, ARateThatNoPllServesHasNoEntry) {
    BlockEngine engine(
        BlockSetup().rates(0, 0, {rateOf("TX", 100.0F, lcpll), rateOf("TX", 10.0F, lcpll)}));
    EXPECT_THAT(engine.findPllRates()[0][0], ElementsAre(Pair(1, ElementsAre(5.0, 10.0, 12.5))));
}

TEST(FindPllRates, ReadsTheLineRateAsFloat) {
    BlockEngine engine(BlockSetup().rates(0, 0, {rateOf("TX", 9.95328F, rpll)}));
    // Only divider 1 stays in range; a double 9.95328 would give another number.
    const double half = static_cast<double>(9.95328F) / 2;
    ASSERT_NE(half, 9.95328 / 2);
    EXPECT_THAT(engine.findPllRates()[1][0], ElementsAre(Pair(0, ElementsAre(half))));
}

TEST(FindPllRates, RowIsThePllOfTheDualAndColumnTheChannelAndDirection) {
    const std::string directions[] = {"TX", "RX"};
    for (std::size_t channel = 0; channel < 4; ++channel) {
        for (std::size_t direction = 0; direction < 2; ++direction) {
            for (const ruleValue& pll : {lcpll, rpll}) {
                BlockEngine engine(BlockSetup().rates(direction, channel,
                                                      {rateOf(directions[direction], 10.0F, pll)}));
                const auto found = engine.findPllRates();
                const std::size_t row = channel / 2 * 2 + (pll == rpll ? 1 : 0);
                const std::size_t column = channel % 2 * 2 + direction;
                for (std::size_t cell = 0; cell < 16; ++cell) {
                    EXPECT_EQ(found[cell / 4][cell % 4].empty(), cell != row * 4 + column)
                        << "channel " << channel << " direction " << direction << " cell " << cell;
                }
            }
        }
    }
}

TEST(FindPllRates, TwoChannelFamilyHasNoThirdChannel) {
    BlockSetup setup;
    setup.family = "SXD4";
    setup.rates(0, 2, {rateOf("TX", 10.0F, lcpll)});
    BlockEngine engine(setup);
    EXPECT_THAT(engine.findPllRates()[2][0], IsEmpty());
}

TEST(FindPllRates, MissingDirectionsAndChannelsHaveNoRates) {
    BlockSetup setup;
    setup.params = {{{rateOf("TX", 10.0F, lcpll)}}};
    BlockEngine engine(setup);
    const auto found = engine.findPllRates();
    EXPECT_EQ(found[0][0].size(), 1U);
    EXPECT_THAT(found[0][1], IsEmpty());
    EXPECT_THAT(found[2][0], IsEmpty());
}

TEST(FindPllRates, RefusesAValueOfAnotherAlternativeOrMissing) {
    for (const rate& unusable :
         {rateOf("TX", 10.0, lcpll), rateOf("TX", 10.0F, ruleValue(1U)), rateOf("TX", 10.0F, {}),
          rate{{"TX_LINE_RATE", 10.0F}}, rate{{"TX_PLL_TYPE", lcpll}}}) {
        BlockEngine engine(BlockSetup().rates(0, 0, {unusable}));
        EXPECT_THROW(engine.findPllRates(), boost::bad_get);
    }
}

class IntersectNSets : public ::testing::Test {
  protected:
    BlockEngine engine{BlockSetup()};
};

TEST_F(IntersectNSets, IsNoneForNoSets) {
    EXPECT_FALSE(engine.intersectNSets({}));
}

TEST_F(IntersectNSets, OfOneSetIsThatSet) {
    EXPECT_THAT(engine.intersectNSets({{3, {2.0, 1.0}}}).value(), ElementsAre(1.0, 2.0));
}

TEST_F(IntersectNSets, OfDisjointSetsIsEmptyButThere) {
    const auto common = engine.intersectNSets({{0, {1.0}}, {1, {2.0}}});
    ASSERT_TRUE(common);
    EXPECT_THAT(*common, IsEmpty());
}

TEST_F(IntersectNSets, HoldsExactlyWhatAllSetsHold) {
    std::mt19937 random(99);
    for (int round = 0; round < 200; ++round) {
        std::map<int, std::set<double>> sets;
        const int count = std::uniform_int_distribution<int>(1, 5)(random);
        for (int number = 0; number < count; ++number) {
            for (int value = 0; value < 12; ++value) {
                if (random() % 4 != 0) {
                    sets[number].insert(value);
                }
            }
        }
        const auto common = engine.intersectNSets(sets);
        ASSERT_TRUE(common);
        for (int value = 0; value < 12; ++value) {
            const bool everywhere = std::all_of(sets.begin(), sets.end(), [value](const auto& set) {
                return set.second.count(value) == 1;
            });
            ASSERT_EQ(common->count(value) == 1, everywhere);
        }
    }
}

}  // namespace
