#include "support/captured_messages.h"
#include "support/packing_request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace lanecfg_test {
namespace {

using sable_lanecfg::gt_quad_packing;
using sable_lanecfg::packingNumbers;
using sable_lanecfg::packingRecords;
using sable_lanecfg::packingTexts;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(MainIntersectionLogic, GivesTheCommonValuesAscendingAndUnique) {
    EXPECT_THAT(gt_quad_packing::mainIntersectionLogic({{10, 5, 5, 8}, {8, 10, 5, 10}}),
                ElementsAre(5, 8, 10));
    EXPECT_THAT(gt_quad_packing::mainIntersectionLogic({{10, 5}, {5, 8}, {8, 5, 10}}),
                ElementsAre(5));
}

TEST(MainIntersectionLogic, IdenticalListsGiveTheListSortedAndUnique) {
    EXPECT_THAT(gt_quad_packing::mainIntersectionLogic({{10, 5, 10}, {10, 5, 10}}),
                ElementsAre(5, 10));
}

TEST(MainIntersectionLogic, OneListStaysAsItStands) {
    EXPECT_THAT(gt_quad_packing::mainIntersectionLogic({{10, 5, 10}}), ElementsAre(10, 5, 10));
}

TEST(MainIntersectionLogic, EmptyListAmongSeveralLeavesNothing) {
    EXPECT_THAT(gt_quad_packing::mainIntersectionLogic({{5, 10}, {}, {5}}), IsEmpty());
    EXPECT_THAT(gt_quad_packing::mainIntersectionLogic({{}, {5, 10}}), IsEmpty());
}

TEST(MainIntersectionLogic, ComparesExactly) {
    const double next = std::nextafter(5.0, 6.0);
    EXPECT_THAT(gt_quad_packing::mainIntersectionLogic({{5.0}, {next}}), IsEmpty());
}

TEST(MainIntersectionLogic, NoNumberEqualsNothing) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THAT(gt_quad_packing::mainIntersectionLogic({{none, 5}, {none, 5}}), ElementsAre(5));
}

TEST(MainIntersectionLogic, NoListIsReportedFromLine107AndGivesNone) {
    const CapturedMessages messages;
    EXPECT_THAT(gt_quad_packing::mainIntersectionLogic({}), IsEmpty());
    EXPECT_THAT(
        messages.texts(ToolMsgSeverity::error),
        ElementsAre(testing::MatchesRegex("Exception caught .+ at 107 of file "
                                          "ip/rule_engine/gt_rule_engine/src/gt_quad_packing.")));
}

TEST(CheckRefclkFreq, AgreesWhenAllEqualTheFirst) {
    const auto check = gt_quad_packing::checkRefclkFreq({{156.25, 156.25}, {}, {156.25}});
    EXPECT_EQ(check.text, "");
    EXPECT_EQ(check.frequency, 156.25);
    EXPECT_TRUE(check.isValid);
}

TEST(CheckRefclkFreq, DisagreesOnAnyOther) {
    EXPECT_FALSE(gt_quad_packing::checkRefclkFreq({{156.25}, {156.25, 100.0}}).isValid);
    EXPECT_EQ(gt_quad_packing::checkRefclkFreq({{156.25}, {100.0}}).frequency, 156.25);
    EXPECT_FALSE(
        gt_quad_packing::checkRefclkFreq({{156.25}, {std::nextafter(156.25, 0.0)}}).isValid);
}

TEST(CheckRefclkFreq, ReferenceIs0WhenTheFirstListIsEmpty) {
    EXPECT_EQ(gt_quad_packing::checkRefclkFreq({{}, {156.25}}).frequency, 0.0);
    EXPECT_FALSE(gt_quad_packing::checkRefclkFreq({{}, {156.25}}).isValid);
    EXPECT_TRUE(gt_quad_packing::checkRefclkFreq({{}, {}}).isValid);
}

TEST(CheckRefclkFreq, NoListsAtAllDisagree) {
    EXPECT_EQ(gt_quad_packing::checkRefclkFreq({}).frequency, 0.0);
    EXPECT_FALSE(gt_quad_packing::checkRefclkFreq({}).isValid);
}

TEST(CheckRefclkSource, AgreesWhenAllEqualTheFirst) {
    const auto check = gt_quad_packing::checkRefclkSource({{"R1", "R1"}, {}, {"R1"}});
    EXPECT_EQ(check.text, "");
    EXPECT_EQ(check.source, "R1");
    EXPECT_TRUE(check.isValid);
    EXPECT_FALSE(gt_quad_packing::checkRefclkSource({{"R1"}, {"R0"}}).isValid);
}

TEST(CheckRefclkSource, ReferenceIsEmptyWhenTheFirstListIs) {
    EXPECT_EQ(gt_quad_packing::checkRefclkSource({{}, {"R1"}}).source, "");
    EXPECT_FALSE(gt_quad_packing::checkRefclkSource({{}, {"R1"}}).isValid);
    EXPECT_TRUE(gt_quad_packing::checkRefclkSource({{}}).isValid);
}

TEST(CheckRefclkSource, NoListsAtAllDisagree) {
    EXPECT_EQ(gt_quad_packing::checkRefclkSource({}).source, "");
    EXPECT_FALSE(gt_quad_packing::checkRefclkSource({}).isValid);
}

/// Intersections of a request, looked at in the LCPLL of the first dual in group "A".
class RateIntersection : public testing::Test {
  protected:
    void run(const PackingRequest& request) {
        packing = request.packing();
        EXPECT_THAT(packing.runIntersection(false), IsEmpty());
    }

    const packingNumbers& row(const std::string& name, const std::string& pll = "LCPLL",
                              const std::string& dual = "DUAL_0") const {
        return packing.intersectedCoordinates.at(dual).at("A").at(pll).at(name);
    }

    const packingTexts& sources() const {
        return packing.refclkSourceIntersectedCoordinates.at("DUAL_0").at("A").at("LCPLL").at(
            "refclkSources");
    }

    gt_quad_packing packing = PackingRequest().packing();
};

TEST_F(RateIntersection, OneRecordKeepsItsListUnsorted) {
    RateSettings divided = rateOf(10.0, "RPLL");
    divided.hasDivider = true;
    run(PackingRequest().add(transmit, 0, {divided}));
    EXPECT_THAT(row("pllClkFreqs"), ElementsAre(ElementsAre(4.0, 8.0, 8.0, 5.0, 10.0, 5.5, 11.0,
                                                            8.0, 8.0, 16.0, 10.0, 16.0)));
}

TEST_F(RateIntersection, TwoRecordsWithIdenticalListsHaveThemSortedAndUnique) {
    RateSettings divided = rateOf(10.0, "RPLL");
    divided.hasDivider = true;
    run(PackingRequest().add(transmit, 0, {divided}).add(transmit, 1, {divided}));
    EXPECT_THAT(row("pllClkFreqs"), ElementsAre(ElementsAre(4.0, 5.0, 5.5, 8.0, 10.0, 11.0, 16.0)));
}

TEST_F(RateIntersection, EqualPinsIntersectSlotBySlot) {
    run(PackingRequest()
            .add(transmit, 0, {rateOf(5.0, "LCPLL", 100.0), rateOf(10.3125)})
            .add(transmit, 1, {rateOf(2.5, "LCPLL", 100.0, "R1"), rateOf(25.78125)}));
    EXPECT_THAT(row("pllClkFreqs"), ElementsAre(ElementsAre(5.0, 10.0), IsEmpty()));
    EXPECT_THAT(row("pllShared"), ElementsAre(ElementsAre(0.0, 0.0), IsEmpty()));
    EXPECT_THAT(row("refclks"), ElementsAre(ElementsAre(100.0, 100.0), IsEmpty()));
    EXPECT_THAT(row("refclkIDs"), ElementsAre(ElementsAre(0.0, 0.0), IsEmpty()));
    EXPECT_THAT(row("refclk_valid"), ElementsAre(ElementsAre(1.0, 1.0), IsEmpty()));
    EXPECT_THAT(row("refclkSourcesValid"), ElementsAre(ElementsAre(0.0, 0.0), IsEmpty()));
    EXPECT_THAT(sources(), ElementsAre(ElementsAre("R0", "R0"), IsEmpty()));
}

TEST_F(RateIntersection, DifferentPinsNeedOneFrequencyForAllSlots) {
    run(PackingRequest()
            .add(transmit, 0, {rateOf(5.0, "LCPLL", 100.0), rateOf(10.0, "LCPLL", 100.0)}, "A")
            .add(transmit, 1, {rateOf(20.0, "LCPLL", 100.0)}, "B"));
    // 5.0 and 10.0 leave 5.0 and 10.0, and 20.0 has 10.0 alone.
    EXPECT_THAT(row("pllClkFreqs"), ElementsAre(ElementsAre(10.0)));
    EXPECT_THAT(row("pllShared"), ElementsAre(ElementsAre(1.0)));
    EXPECT_THAT(row("refclks"), ElementsAre(ElementsAre(100.0)));
    EXPECT_THAT(row("refclkIDs"), ElementsAre(ElementsAre(0.0)));
    EXPECT_THAT(row("refclk_valid"), ElementsAre(ElementsAre(1.0)));
    EXPECT_THAT(row("refclkSourcesValid"), ElementsAre(ElementsAre(1.0)));
    EXPECT_THAT(sources(), ElementsAre(ElementsAre("R0")));
}

TEST_F(RateIntersection, DifferentPinsLeaveGapsOut) {
    PackingRequest request;
    request.add(transmit, 0, {rateOf(20.0), rateOf(20.0), rateOf(5.0, "LCPLL", 100.0)}, "A");
    request.channels.back().rates = {2};
    request.add(transmit, 1, {rateOf(10.0, "LCPLL", 100.0)}, "B");
    run(request);
    EXPECT_THAT(row("pllClkFreqs"), ElementsAre(ElementsAre(5.0, 10.0)));
    EXPECT_THAT(row("refclk_valid"), ElementsAre(ElementsAre(1.0, 1.0)));
}

TEST_F(RateIntersection, SlotsBeyondTheShorterRecordMeetOnlyTheRecordsThatHaveThem) {
    run(PackingRequest()
            .add(transmit, 0, {rateOf(10.0, "LCPLL", 100.0)})
            .add(transmit, 1, {rateOf(20.0, "LCPLL", 100.0), rateOf(25.78125)}));
    EXPECT_THAT(row("pllClkFreqs"), ElementsAre(ElementsAre(10.0), ElementsAre(12.890625)));
}

TEST_F(RateIntersection, SlotThatNoRecordUsesIsTheNearestLowerOneInUse) {
    PackingRequest request;
    request.add(transmit, 0, std::vector<RateSettings>(4, rateOf(20.0, "LCPLL", 100.0)));
    request.parametersAt(transmit, 0, 3) = parametersOf(transmit, rateOf(25.78125));
    request.channels.back().rates = {1, 3};
    run(request);
    EXPECT_THAT(row("pllClkFreqs"), ElementsAre(ElementsAre(10.0), ElementsAre(10.0),
                                                ElementsAre(10.0), ElementsAre(12.890625)));
    EXPECT_THAT(row("refclks"), ElementsAre(ElementsAre(100.0), ElementsAre(100.0),
                                            ElementsAre(100.0), ElementsAre(156.25)));
    EXPECT_THAT(row("refclkIDs"), ElementsAre(ElementsAre(0.0), ElementsAre(0.0), ElementsAre(0.0),
                                              ElementsAre(1.0)));
    EXPECT_THAT(sources(), ElementsAre(ElementsAre("R0"), ElementsAre("R0"), ElementsAre("R0"),
                                       ElementsAre("R0")));
}

TEST_F(RateIntersection, TwoRatesWithTheSameActualClockGetTheSameId) {
    run(PackingRequest().add(transmit, 0,
                             {rateOf(20.0, "LCPLL", 100.0), rateOf(25.78125), rateOf(25.78125)}));
    EXPECT_THAT(packing.refclkFrequencies.at("DUAL_0LCPLL"), ElementsAre(100.0, 156.25));
    EXPECT_THAT(row("refclkIDs"),
                ElementsAre(ElementsAre(0.0), ElementsAre(1.0), ElementsAre(1.0)));
}

TEST_F(RateIntersection, IdIsTheIndexAmongTheClocksOfItsOwnDualAndPll) {
    run(PackingRequest()
            .add(transmit, 0, {rateOf(20.0, "LCPLL", 125.0), rateOf(20.0, "LCPLL", 100.0)})
            .add(transmit, 2, {rateOf(5.0, "RPLL", 200.0), rateOf(5.0, "RPLL", 125.0)})
            .add(transmit, 3, {rateOf(20.0, "LCPLL", 100.0), rateOf(20.0, "LCPLL", 125.0)}));
    EXPECT_THAT(row("refclkIDs"), ElementsAre(ElementsAre(0.0), ElementsAre(1.0)));
    EXPECT_THAT(row("refclkIDs", "LCPLL", "DUAL_1"),
                ElementsAre(ElementsAre(0.0), ElementsAre(1.0)));
    EXPECT_THAT(row("refclks", "LCPLL", "DUAL_1"),
                ElementsAre(ElementsAre(100.0), ElementsAre(125.0)));
    EXPECT_THAT(row("refclkIDs", "RPLL", "DUAL_1"),
                ElementsAre(ElementsAre(0.0), ElementsAre(1.0)));
}

TEST_F(RateIntersection, PllThatOnlyServesDividersHasTheId0) {
    RateSettings divided = rateOf(20.0, "LCPLL", 100.0);
    divided.hasDivider = true;
    divided.dividerPll = "RPLL";
    run(PackingRequest().add(transmit, 0, {divided}));
    EXPECT_THAT(row("refclks", "RPLL").front(), testing::Each(100.0));
    EXPECT_THAT(row("refclkIDs", "RPLL"), ElementsAre(ElementsAre(0.0, 0.0, 0.0, 0.0, 0.0)));
    EXPECT_EQ(packing.refclkFrequencies.count("DUAL_0RPLL"), 0U);
}

TEST_F(RateIntersection, SlotWhoseClocksDifferHasAValidNumberOf0) {
    run(PackingRequest()
            .add(transmit, 0, {rateOf(20.0, "LCPLL", 100.0)})
            .add(transmit, 1, {rateOf(20.0, "LCPLL", 125.0)}));
    EXPECT_THAT(row("refclks"), ElementsAre(ElementsAre(100.0)));
    EXPECT_THAT(row("refclk_valid"), ElementsAre(ElementsAre(0.0)));
    EXPECT_THAT(row("refclkSourcesValid"), ElementsAre(ElementsAre(1.0)));
}

TEST_F(RateIntersection, DualsGroupsAndPllsStandByThemselves) {
    RateSettings other = rateOf(25.78125);
    other.group = "B";
    run(PackingRequest()
            .add(transmit, 0, {rateOf(20.0)})
            .add(transmit, 1, {other})
            .add(transmit, 2, {rateOf(10.3125)})
            .add(transmit, 3, {rateOf(10.3125, "RPLL")}));
    EXPECT_THAT(row("pllClkFreqs"), ElementsAre(ElementsAre(10.0)));
    EXPECT_THAT(packing.intersectedCoordinates.at("DUAL_0").at("B").at("LCPLL").at("pllClkFreqs"),
                ElementsAre(ElementsAre(12.890625)));
    EXPECT_THAT(row("pllClkFreqs", "LCPLL", "DUAL_1"), ElementsAre(ElementsAre(5.15625, 10.3125)));
    EXPECT_THAT(row("pllClkFreqs", "RPLL", "DUAL_1"), ElementsAre(ElementsAre(5.15625)));
}

TEST_F(RateIntersection, GettersGiveCopiesOfTheTables) {
    run(PackingRequest().add(transmit, 0, {rateOf(20.0)}));
    EXPECT_EQ(packing.getIntersectedCoordinates(), packing.intersectedCoordinates);
    EXPECT_EQ(packing.getRefclkSourceIntersectedCoordinates(),
              packing.refclkSourceIntersectedCoordinates);
}

TEST_F(RateIntersection, WorksOnRecordsThatWereEnteredByHand) {
    packingRecords& records = packing.intermediateData["DUAL_1"]["A"]["RPLL"];
    records[4]["rates"] = packingNumbers{{4, 8}, {5}};
    records[6]["rates"] = packingNumbers{{8, 8}};
    EXPECT_THAT(packing.runIntersection(true), IsEmpty());
    EXPECT_THAT(row("pllClkFreqs", "RPLL", "DUAL_1"), ElementsAre(ElementsAre(8), ElementsAre(5)));
}

TEST_F(RateIntersection, DifferentPinsWithoutAnyListAreReportedAndHaveNoFrequency) {
    packingRecords& records = packing.intermediateData["DUAL_0"]["A"]["LCPLL"];
    records[0]["rate_pin"] = std::string("A");
    records[2]["rate_pin"] = std::string("B");
    const CapturedMessages messages;
    EXPECT_THAT(packing.runIntersection(false), IsEmpty());
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error),
                ElementsAre(testing::ContainsRegex(" at 107 of file ")));
    EXPECT_THAT(row("pllClkFreqs"), ElementsAre(IsEmpty()));
    EXPECT_THAT(row("pllShared"), ElementsAre(IsEmpty()));
}

TEST_F(RateIntersection, PllWithoutRecordsOrWithGapsOnlyHasNoFrequency) {
    packing.intermediateData["DUAL_0"]["A"]["RPLL"];
    packing.intermediateData["DUAL_0"]["A"]["LCPLL"][0]["rates"] = packingNumbers{{}};
    EXPECT_THAT(packing.runIntersection(true), IsEmpty());
    EXPECT_THAT(packing.intersectedCoordinates.at("DUAL_0").at("A").at("RPLL"), IsEmpty());
    EXPECT_THAT(row("pllClkFreqs"), ElementsAre(IsEmpty()));
}

}  // namespace
}  // namespace lanecfg_test
