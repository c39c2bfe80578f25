#include "families/sxb/sxb_rate_groups.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

constexpr int transmitSide = 0;
constexpr int receiveSide = 1;

channelUsageInfo record(const std::string& group, const std::vector<int>& tx,
                        const std::vector<int>& rx, const std::vector<int>& rates) {
    channelUsageInfo usage;
    usage.group = group;
    usage.tx = tx;
    usage.rx = rx;
    usage.rates = rates;
    return usage;
}

TEST(SxbNumberOfRates, OfALaneInNoRecordIsOne) {
    EXPECT_EQ(numberOfRates({record("A", {0}, {0}, {0, 1, 2})}, transmitSide, 1), 1);
}

TEST(SxbNumberOfRates, WithoutRecordsIsOne) {
    EXPECT_EQ(numberOfRates({}, transmitSide, 0), 1);
    EXPECT_EQ(numberOfRates({}, receiveSide, 3), 1);
}

TEST(SxbNumberOfRates, CountsTheRatesOfTheRecord) {
    EXPECT_EQ(numberOfRates({record("A", {0, 2}, {}, {0, 1, 2})}, transmitSide, 2), 3);
}

TEST(SxbNumberOfRates, LooksAtTheListOfTheDirection) {
    const std::vector<channelUsageInfo> usage{record("A", {0}, {1}, {0, 1})};
    EXPECT_EQ(numberOfRates(usage, transmitSide, 0), 2);
    EXPECT_EQ(numberOfRates(usage, receiveSide, 0), 1);
    EXPECT_EQ(numberOfRates(usage, transmitSide, 1), 1);
    EXPECT_EQ(numberOfRates(usage, receiveSide, 1), 2);
}

TEST(SxbNumberOfRates, TakesEveryDirectionButZeroForReceive) {
    EXPECT_EQ(numberOfRates({record("A", {}, {1}, {0, 1})}, 7, 1), 2);
}

TEST(SxbNumberOfRates, IsThatOfTheLastRecordWithTheLane) {
    const std::vector<channelUsageInfo> usage{record("A", {0}, {}, {0, 1, 2}),
                                              record("B", {0}, {}, {0, 1}),
                                              record("C", {1}, {}, {0, 1, 2, 3})};
    EXPECT_EQ(numberOfRates(usage, transmitSide, 0), 2);
}

TEST(SxbNumberOfRates, MayBeZero) {
    EXPECT_EQ(numberOfRates({record("A", {0}, {}, {})}, transmitSide, 0), 0);
}

TEST(SxbRateGroups, AreEmptyWithoutRecords) {
    EXPECT_THAT(rateGroupsOf({}, "SXB"), IsEmpty());
}

TEST(SxbRateGroups, OfLanesInNoRecordAreThatOfTheFirstRecord) {
    const rateGroupTable groups =
        rateGroupsOf({record("A", {0}, {}, {0}), record("B", {1}, {}, {0})}, "SXB");
    EXPECT_THAT(groups, SizeIs(2));
    EXPECT_THAT(groups.at(transmitSide), SizeIs(4));
    EXPECT_THAT(groups.at(transmitSide).at(3), ElementsAre(Pair(0, "A")));
    EXPECT_THAT(groups.at(receiveSide).at(1), ElementsAre(Pair(0, "A")));
}

TEST(SxbRateGroups, HaveASlotForEachRateOfTheLanesRecord) {
    const rateGroupTable groups =
        rateGroupsOf({record("A", {}, {}, {0}), record("B", {2}, {2}, {0, 1, 2})}, "SXB");
    EXPECT_THAT(groups.at(transmitSide).at(2),
                ElementsAre(Pair(0, "B"), Pair(1, "B"), Pair(2, "B")));
    EXPECT_THAT(groups.at(receiveSide).at(2),
                ElementsAre(Pair(0, "B"), Pair(1, "B"), Pair(2, "B")));
}

TEST(SxbRateGroups, StandAtTheSlotsThatTheRecordNames) {
    const rateGroupTable groups =
        rateGroupsOf({record("A", {}, {}, {0}), record("B", {2}, {}, {2})}, "SXB");
    EXPECT_THAT(groups.at(transmitSide).at(2), ElementsAre(Pair(0, "A"), Pair(2, "B")));
}

TEST(SxbRateGroups, OfALaneInSeveralRecordsAreThatOfTheLastWithTheSlot) {
    const rateGroupTable groups =
        rateGroupsOf({record("A", {0}, {}, {0, 1}), record("B", {0}, {}, {0})}, "SXB");
    EXPECT_THAT(groups.at(transmitSide).at(0), ElementsAre(Pair(0, "B"), Pair(1, "A")));
}

}  // namespace
}  // namespace sable_lanecfg
