#include "support/packing_request.h"
#include "support/print_rule_value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using sable_lanecfg::gt_quad_packing;
using sable_lanecfg::packingNumbers;
using sable_lanecfg::packingRecords;
using sable_lanecfg::packingTexts;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Pair;

/// A coding that the flag of the pair does not touch.
RateSettings codedRate(double lineRate) {
    RateSettings settings = rateOf(lineRate);
    settings.coding = "8B10B";
    return settings;
}

RateSettings dividedRate(double lineRate, const std::string& pll, const std::string& dividerPll) {
    RateSettings settings = rateOf(lineRate, pll);
    settings.hasDivider = true;
    settings.dividerPll = dividerPll;
    return settings;
}

/// Candidate records of a request.
class PackingData : public testing::Test {
  protected:
    void make(const PackingRequest& request) {
        packing = request.packing();
        EXPECT_THAT(packing.intermediateDSCreation(false), IsEmpty());
    }

    const packingRecords& records(const std::string& pll = "LCPLL",
                                  const std::string& dual = "DUAL_0") const {
        return packing.intermediateData.at(dual).at("A").at(pll);
    }

    template <class Lists = packingNumbers>
    const Lists& lists(int key, const std::string& field, const std::string& pll = "LCPLL") const {
        return boost::get<Lists>(records(pll).at(key).at(field));
    }

    const std::string& pinOf(int key, const std::string& pll = "LCPLL") const {
        return boost::get<std::string>(records(pll).at(key).at("rate_pin"));
    }

    const packingNumbers& rates(int key, const std::string& pll = "LCPLL") const {
        return lists(key, "rates", pll);
    }

    gt_quad_packing packing = PackingRequest().packing();
};

TEST_F(PackingData, ConstructorCopiesItsArgumentsAndLeavesTheTablesEmpty) {
    PackingRequest request;
    request.addBoth(0, {rateOf(20.0)});
    const gt_quad_packing made(request.channels, {{"TX_LINE_RATE", {"double", "Gb/s", "1"}}},
                               request.userParams, {{"TX_CFG", {"channel", {}, "0x0"}}},
                               request.limits);
    EXPECT_EQ(made.channels.size(), 1U);
    EXPECT_EQ(made.userParams, request.userParams);
    EXPECT_EQ(made.deviceLimits, request.limits);
    EXPECT_THAT(made.paramTypes, ElementsAre(Key("TX_LINE_RATE")));
    EXPECT_THAT(made.attributes, ElementsAre(Key("TX_CFG")));
    EXPECT_THAT(made.intermediateData, IsEmpty());
    EXPECT_THAT(made.intersectedCoordinates, IsEmpty());
    EXPECT_THAT(made.refclkSourceIntersectedCoordinates, IsEmpty());
    EXPECT_THAT(made.refclkResources, IsEmpty());
    EXPECT_THAT(made.refclkFrequencies, IsEmpty());
}

TEST_F(PackingData, RecordHasThePinAndParallelListsForEachSlot) {
    make(PackingRequest().add(
        transmit, 0, {rateOf(20.0, "LCPLL", 100.0), rateOf(25.78125, "LCPLL", 161.1328125, "R3")},
        "SPEED"));
    EXPECT_EQ(pinOf(0), "SPEED");
    EXPECT_THAT(rates(0), ElementsAre(ElementsAre(10.0), ElementsAre(12.890625)));
    EXPECT_THAT(lists(0, "refclks"), ElementsAre(ElementsAre(100.0), ElementsAre(161.1328125)));
    EXPECT_THAT(lists<packingTexts>(0, "refclkSources"),
                ElementsAre(ElementsAre("R0"), ElementsAre("R3")));
}

TEST_F(PackingData, ChannelWithALaneInOnlyOneDirectionCreatesOnlyThatRecord) {
    make(PackingRequest().add(receive, 1, {rateOf(20.0)}));
    EXPECT_THAT(records(), ElementsAre(Key(3)));
}

TEST_F(PackingData, TwoLanesOfADualWithTheSameGroupAndPllAreTwoRecordsOfOneEntry) {
    make(PackingRequest().add(transmit, 0, {rateOf(20.0)}).add(transmit, 1, {rateOf(20.0)}));
    EXPECT_THAT(records(), ElementsAre(Key(0), Key(2)));
    EXPECT_THAT(packing.intermediateData, ElementsAre(Key("DUAL_0")));
}

TEST_F(PackingData, LanesAbove1BelongToTheSecondDual) {
    make(PackingRequest().add(transmit, 1, {rateOf(20.0)}).add(transmit, 2, {rateOf(20.0)}));
    EXPECT_THAT(records(), ElementsAre(Key(2)));
    EXPECT_THAT(records("LCPLL", "DUAL_1"), ElementsAre(Key(4)));
}

TEST_F(PackingData, PllOfAnUnknownNameGetsAnEmptyCandidateList) {
    make(PackingRequest().add(transmit, 0, {rateOf(20.0, "QPLL")}));
    EXPECT_THAT(rates(0, "QPLL"), ElementsAre(IsEmpty()));
    EXPECT_THAT(PackingRequest().add(transmit, 0, {rateOf(20.0, "QPLL")}).reasons(),
                ElementsAre(noVcoText("QPLL", 0, 0)));
}

TEST_F(PackingData, TwoRatesWithTheSameActualClockAreOneEntryOfTheFrequencies) {
    make(PackingRequest().add(transmit, 0,
                              {rateOf(25.78125), rateOf(20.0, "LCPLL", 100.0), rateOf(20.0)}));
    EXPECT_THAT(packing.refclkFrequencies,
                ElementsAre(Pair("DUAL_0LCPLL", ElementsAre(156.25, 100.0))));
}

TEST_F(PackingData, ActualClockIsTheNearestThatThePllCanUse) {
    // At 32 Gb/s the PLL runs at 16 GHz and has no fraction, so it takes 16000 / 160.
    make(PackingRequest().add(transmit, 0, {rateOf(32.0, "LCPLL", 99.9)}));
    EXPECT_THAT(lists(0, "refclks"), ElementsAre(ElementsAre(100.0)));
}

TEST_F(PackingData, ClockThatIsNoNumberHasTheActualClock0) {
    const double none = std::nan("");
    make(PackingRequest().add(
        transmit, 0, {rateOf(20.0, "LCPLL", 100.0), rateOf(20.0, "LCPLL", none), rateOf(20.0)}));
    EXPECT_THAT(lists(0, "refclks"),
                ElementsAre(ElementsAre(100.0), ElementsAre(0.0), ElementsAre(156.25)));
}

TEST_F(PackingData, SlotsAreIndexedByTheirNumber) {
    PackingRequest request;
    request.add(transmit, 0, {rateOf(20.0), rateOf(20.0), rateOf(25.78125)});
    request.channels.back().rates = {2};
    make(request);
    EXPECT_THAT(rates(0), ElementsAre(IsEmpty(), IsEmpty(), ElementsAre(12.890625)));
    EXPECT_THAT(lists(0, "refclks"), ElementsAre(IsEmpty(), IsEmpty(), ElementsAre(156.25)));
    EXPECT_THAT(lists<packingTexts>(0, "refclkSources"),
                ElementsAre(IsEmpty(), IsEmpty(), ElementsAre("R0")));
}

TEST_F(PackingData, DividerOnTheOtherPllHasARecordOfItsOwn) {
    make(PackingRequest().add(transmit, 0, {dividedRate(20.0, "LCPLL", "RPLL")}, "SPEED"));
    EXPECT_THAT(rates(0), ElementsAre(ElementsAre(10.0)));
    EXPECT_EQ(pinOf(0, "RPLL"), "SPEED");
    EXPECT_THAT(rates(0, "RPLL"), ElementsAre(ElementsAre(4.0, 8.0, 5.0, 5.5, 8.0)));
}

TEST_F(PackingData, DividersClockIsThatOfTheDataPath) {
    make(PackingRequest().add(transmit, 0, {dividedRate(20.0, "LCPLL", "RPLL")}));
    EXPECT_THAT(lists(0, "refclks", "RPLL"), ElementsAre(ElementsAre(156.25)));
    EXPECT_THAT(packing.refclkFrequencies, ElementsAre(Key("DUAL_0LCPLL")));
}

TEST_F(PackingData, DataPathAndDividerOnOnePllAreIntersectedAndBothLeaveTheirClock) {
    // The data path leaves 5 and 10, both of which the divider can use.
    make(PackingRequest().add(transmit, 0, {dividedRate(10.0, "LCPLL", "LCPLL")}));
    EXPECT_THAT(rates(0), ElementsAre(ElementsAre(5.0, 10.0)));
    EXPECT_THAT(lists(0, "refclks"), ElementsAre(ElementsAre(156.25, 156.25)));
    EXPECT_THAT(lists<packingTexts>(0, "refclkSources"), ElementsAre(ElementsAre("R0", "R0")));
}

TEST_F(PackingData, ReceiveTakesOverTheRowsOfTransmitOnTheSamePll) {
    make(PackingRequest().add(transmit, 0, {rateOf(10.0)}).add(receive, 0, {rateOf(20.0)}));
    EXPECT_THAT(rates(0), ElementsAre(ElementsAre(5.0, 10.0)));
    EXPECT_THAT(rates(1), ElementsAre(ElementsAre(10.0)));
    EXPECT_THAT(lists(1, "refclks"), ElementsAre(ElementsAre(156.25, 156.25)));
    EXPECT_THAT(lists<packingTexts>(1, "refclkSources"), ElementsAre(ElementsAre("R0", "R0")));
}

TEST_F(PackingData, TransmitTakesOverTheRowsOfAnEarlierReceive) {
    make(PackingRequest().add(receive, 0, {rateOf(10.0)}).add(transmit, 0, {rateOf(20.0)}));
    EXPECT_THAT(rates(1), ElementsAre(ElementsAre(5.0, 10.0)));
    EXPECT_THAT(rates(0), ElementsAre(ElementsAre(10.0)));
}

TEST_F(PackingData, TransmitPositionsOfAUsageRecordComeBeforeItsReceivePositions) {
    PackingRequest request;
    request.addBoth(0, {rateOf(20.0)});
    request.parametersAt(receive, 0) = parametersOf(receive, rateOf(10.0));
    make(request);
    EXPECT_THAT(lists(0, "refclks"), ElementsAre(ElementsAre(156.25)));
    EXPECT_THAT(lists(1, "refclks"), ElementsAre(ElementsAre(156.25, 156.25)));
}

TEST_F(PackingData, EachPositionOfAUsageRecordHasItsOwnPin) {
    make(PackingRequest()
             .add(transmit, 1, {rateOf(20.0)}, "A")
             .add(transmit, 0, {rateOf(20.0)}, "B")
             .add(receive, 0, {rateOf(20.0)}, "C")
             .add(receive, 1, {rateOf(20.0)}, "D")
             .joinRecords());
    EXPECT_THAT(records(), ElementsAre(Key(0), Key(1), Key(2), Key(3)));
    EXPECT_EQ(pinOf(0), "B");
    EXPECT_EQ(pinOf(1), "C");
    EXPECT_EQ(pinOf(2), "A");
    EXPECT_EQ(pinOf(3), "D");
}

TEST_F(PackingData, NothingIsTakenOverFromAnotherPllGroupOrSlot) {
    RateSettings other = rateOf(10.0);
    other.group = "B";
    PackingRequest request;
    request.add(transmit, 0, {rateOf(20.0, "RPLL"), other, rateOf(20.0), rateOf(20.0)});
    request.channels.back().rates = {0, 1, 3};
    request.add(receive, 0, {rateOf(10.0), rateOf(10.0), rateOf(10.0)});
    make(request);
    EXPECT_THAT(rates(1), ElementsAre(ElementsAre(5.0, 10.0), ElementsAre(5.0, 10.0),
                                      ElementsAre(5.0, 10.0)));
    EXPECT_THAT(lists(1, "refclks"),
                ElementsAre(ElementsAre(156.25), ElementsAre(156.25), ElementsAre(156.25)));
}

TEST_F(PackingData, LaneThatComesTwiceIsIntersectedAndKeepsItsFirstPin) {
    PackingRequest request;
    request.add(transmit, 0, {rateOf(10.0), rateOf(20.0)}, "FIRST");
    request.channels.back().rates = {0};
    request.channels.push_back(request.channels.back());
    request.channels.back().txrate = {"SECOND"};
    request.channels.back().rates = {0, 1};
    make(request);
    EXPECT_EQ(pinOf(0), "FIRST");
    EXPECT_THAT(rates(0), ElementsAre(ElementsAre(5.0, 10.0), ElementsAre(10.0)));
    EXPECT_THAT(lists(0, "refclks"), ElementsAre(ElementsAre(156.25, 156.25), ElementsAre(156.25)));
}

/// What 10.3125 Gb/s, uncoded on the LCPLL, leaves beside other rates of its lane.
class PairOfRates : public PackingData {
  protected:
    static constexpr double pairClock = 161.1328125;

    void expectPair(int key, std::size_t slot) {
        EXPECT_THAT(rates(key).at(slot), ElementsAre(12.890625, 12.890625));
    }
    void expectNoPair(int key, std::size_t slot) {
        EXPECT_THAT(rates(key).at(slot), ElementsAre(5.15625, 10.3125));
    }
};

TEST_F(PairOfRates, IsMadeOfTheSlotsOfOneDirection) {
    make(PackingRequest().add(transmit, 0, {rateOf(10.3125), rateOf(25.78125)}));
    expectPair(0, 0);
}

TEST_F(PairOfRates, IsMadeOfBothDirectionsOfTheUsageRecord) {
    PackingRequest request;
    request.addBoth(0, {rateOf(10.3125)});
    request.parametersAt(receive, 0) = parametersOf(receive, rateOf(25.78125));
    make(request);
    expectPair(0, 0);
    EXPECT_THAT(rates(1), ElementsAre(ElementsAre(12.890625)));
}

TEST_F(PairOfRates, IsNotMadeOfSeveralUsageRecordsOrLanes) {
    make(PackingRequest()
             .add(transmit, 0, {rateOf(10.3125)})
             .add(receive, 0, {rateOf(25.78125)})
             .add(transmit, 1, {rateOf(10.3125)}));
    expectNoPair(0, 0);
    expectNoPair(2, 0);
}

TEST_F(PairOfRates, NeedsBothRatesOnTheLcpll) {
    make(PackingRequest().add(transmit, 0, {rateOf(10.3125), rateOf(25.78125, "RPLL")}));
    expectNoPair(0, 0);
}

TEST_F(PairOfRates, NeedsTheExactRates) {
    make(PackingRequest().add(transmit, 0,
                              {rateOf(10.3125), rateOf(std::nextafter(25.78125, 26.0))}));
    expectNoPair(0, 0);
}

TEST_F(PairOfRates, LeavesACodedRateAlone) {
    make(PackingRequest().add(transmit, 0, {codedRate(10.3125), codedRate(25.78125)}));
    expectNoPair(0, 0);
}

TEST_F(PairOfRates, NeedsItsClockOnBothRatesBesideOthersOfTheGroup) {
    const RateSettings lower = rateOf(10.3125, "LCPLL", pairClock);
    const RateSettings upper = rateOf(25.78125, "LCPLL", pairClock);
    make(PackingRequest()
             .add(transmit, 1, {rateOf(20.0), rateOf(20.0)})
             .add(transmit, 0, {lower, upper}));
    expectPair(0, 0);
    make(PackingRequest()
             .add(transmit, 1, {rateOf(20.0), rateOf(20.0)})
             .add(transmit, 0, {lower, rateOf(25.78125)}));
    expectNoPair(0, 0);
    make(PackingRequest()
             .add(transmit, 1, {rateOf(20.0), rateOf(20.0)})
             .add(transmit, 0, {rateOf(10.3125), upper}));
    expectNoPair(0, 0);
}

TEST_F(PairOfRates, NeedsNoClockBesideAnotherDualOrGroup) {
    RateSettings otherGroup = rateOf(20.0);
    otherGroup.group = "B";
    make(PackingRequest()
             .add(transmit, 1, {otherGroup})
             .add(transmit, 2, {rateOf(20.0)})
             .add(transmit, 0, {rateOf(10.3125), rateOf(25.78125)}));
    expectPair(0, 0);
}

TEST_F(PairOfRates, OfTheSecondDualNeedsItsClockOnlyBesideOthersOfThatDual) {
    PackingRequest request;
    request.add(transmit, 0, {rateOf(20.0), rateOf(20.0)})
        .add(transmit, 2, {rateOf(10.3125), rateOf(25.78125)})
        .add(transmit, 3, {rateOf(10.3125), rateOf(25.78125)});
    make(request);
    const packingRecords& second = records("LCPLL", "DUAL_1");
    EXPECT_THAT(boost::get<packingNumbers>(second.at(4).at("rates")).front(),
                ElementsAre(12.890625, 12.890625));
    EXPECT_THAT(boost::get<packingNumbers>(second.at(6).at("rates")).front(),
                ElementsAre(5.15625, 10.3125));
}

TEST_F(PairOfRates, TakesTheRequestedClockNotTheActualOne) {
    // The PLL can't use the clock just beside and runs on the pair's own one.
    const double beside = std::nextafter(pairClock, 0.0);
    PackingRequest request;
    request.add(transmit, 1, {rateOf(20.0)});
    request.add(transmit, 0,
                {rateOf(10.3125, "LCPLL", beside), rateOf(25.78125, "LCPLL", pairClock)});
    make(request);
    expectNoPair(0, 0);
}

TEST_F(PairOfRates, IsFoundAtTheLanesFirstVisitOfEachUsageRecord) {
    // The second record of the lane finds the group taken, by the first.
    PackingRequest request;
    request.add(transmit, 0, {rateOf(10.3125), rateOf(25.78125), rateOf(10.3125)});
    request.channels.back().rates = {0, 1};
    request.channels.push_back(request.channels.back());
    request.channels.back().rates = {1, 2};
    make(request);
    expectPair(0, 0);
    expectNoPair(0, 2);
}

TEST_F(PairOfRates, IsNotForgottenAtTheSecondVisitOfTheUsageRecord) {
    // When the receive side comes, the group is taken, by the transmit side.
    PackingRequest request;
    request.addBoth(0, {rateOf(25.78125)});
    request.parametersAt(receive, 0) = parametersOf(receive, rateOf(10.3125));
    make(request);
    EXPECT_THAT(rates(1), ElementsAre(ElementsAre(12.890625)));
}

}  // namespace
}  // namespace lanecfg_test
