#include "rate_snapshots.h"

#include "../block/rate_table_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using sable_lanecfg::ruleValue;
using sable_lanecfg::tool::RateSnapshots;
using sable_lanecfg::tool::takeSnapshots;
using testing::ElementsAre;
using testing::SizeIs;

TEST(RateSnapshots, AreTheRegistersOfTheDatabaseInEachPass) {
    RateTableEngine engine;
    engine.reg("B", "channel").reg("A", "channel");
    engine.pass(1, 0, 2, {{"A", 5U}, {"B", 6U}, {"OTHER", 7U}});
    const RateSnapshots snapshots = takeSnapshots(engine);
    EXPECT_THAT(snapshots.names, ElementsAre("A", "B"));
    EXPECT_THAT(snapshots.channels[0], SizeIs(0));
    ASSERT_THAT(snapshots.channels[1], SizeIs(1));
    EXPECT_EQ(snapshots.channels[1][0].txRate, 0U);
    EXPECT_EQ(snapshots.channels[1][0].rxRate, 2U);
    EXPECT_THAT(snapshots.channels[1][0].words, ElementsAre(5U, 6U));
}

struct WordExample {
    const char* name;
    ruleValue value;
    std::optional<std::uint32_t> word;
};

class SnapshotWord : public testing::TestWithParam<WordExample> {};

TEST_P(SnapshotWord, IsTheNumberCutToThirtyTwoBits) {
    RateTableEngine engine;
    engine.reg("A", "channel").duplexPasses(0, "A", {GetParam().value});
    EXPECT_THAT(takeSnapshots(engine).channels[0].at(0).words, ElementsAre(GetParam().word));
}

INSTANTIATE_TEST_SUITE_P(
    Values, SnapshotWord,
    testing::Values(WordExample{"Unsigned", 0xffffffffU, 0xffffffffU},
                    WordExample{"Text", std::string("65537"), 0x10001U},
                    WordExample{"Negative", std::string("-2"), 0xfffffffeU},
                    WordExample{"NoNumber", std::string("ten"), std::nullopt},
                    WordExample{"TooLarge", std::string("99999999999999999999"), std::nullopt},
                    WordExample{"Blank", ruleValue(), std::nullopt}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(RateSnapshots, HaveNoWordForARegisterThatAPassLacks) {
    RateTableEngine engine;
    engine.reg("A", "channel").pass(0, 0, 0, {});
    EXPECT_THAT(takeSnapshots(engine).channels[0].at(0).words, ElementsAre(std::nullopt));
}

TEST(RateSnapshots, AreFoundByTheRatesOfTheirPass) {
    RateTableEngine engine;
    engine.reg("A", "channel").pass(0, 0, 1, {{"A", 1U}}).pass(0, 1, 0, {{"A", 2U}});
    const RateSnapshots snapshots = takeSnapshots(engine);
    ASSERT_NE(snapshots.find(0, 1, 0), nullptr);
    EXPECT_THAT(snapshots.find(0, 1, 0)->words, ElementsAre(2U));
    EXPECT_EQ(snapshots.find(0, 1, 1), nullptr);
    EXPECT_EQ(snapshots.find(1, 0, 0), nullptr);
}

TEST(RateSnapshots, AreFoundAsTheFirstOfEqualRates) {
    RateTableEngine engine;
    engine.reg("A", "channel").pass(0, 0, 0, {{"A", 1U}}).pass(0, 0, 0, {{"A", 2U}});
    EXPECT_THAT(takeSnapshots(engine).find(0, 0, 0)->words, ElementsAre(1U));
}

}  // namespace
}  // namespace lanecfg_test
