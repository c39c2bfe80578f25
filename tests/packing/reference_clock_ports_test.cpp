#include "support/packing_request.h"
#include "support/print_rule_value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using sable_lanecfg::gt_quad_packing;
using sable_lanecfg::ruleValue;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Connections of a request.
class ReferenceClockPorts : public testing::Test {
  protected:
    std::map<int, std::string> check(const PackingRequest& request) {
        packing = request.packing();
        return packing.checkRefclkSourceResource(false);
    }

    std::map<std::string, std::string> portsOf(const PackingRequest& request) {
        EXPECT_THAT(check(request), IsEmpty());
        return packing.returnRefclkPorts();
    }

    const std::vector<ruleValue>& entry(const std::string& pin, const std::string& pll,
                                        const std::string& source, const std::string& name) const {
        return packing.refclkResources.at(pin).at(pll).at(source).at(name);
    }

    std::vector<std::string> names(const std::string& pin, const std::string& pll,
                                   const std::string& source = "R0") const {
        std::vector<std::string> texts;
        for (const ruleValue& name : entry(pin, pll, source, "refClkName")) {
            texts.push_back(boost::get<std::string>(name));
        }
        return texts;
    }

    gt_quad_packing packing = PackingRequest().packing();
};

TEST_F(ReferenceClockPorts, OneLaneHasOnePort) {
    EXPECT_THAT(portsOf(PackingRequest().add(transmit, 0, {rateOf(20.0)})),
                ElementsAre(Pair("HSCLK0_LCPLLGTREFCLK0", "refclk_PIN_R0_156.25_MHz_unique1")));
    EXPECT_THAT(entry("PIN", "LCPLL0", "R0", "Frequency"), ElementsAre(ruleValue(156.25)));
}

TEST_F(ReferenceClockPorts, FourLanesOnOnePinHaveTheSameName) {
    PackingRequest request;
    for (int lane = 0; lane < 4; ++lane) {
        request.addBoth(lane, {rateOf(20.0)});
    }
    EXPECT_THAT(portsOf(request),
                ElementsAre(Pair("HSCLK0_LCPLLGTREFCLK0", "refclk_PIN_R0_156.25_MHz_unique1"),
                            Pair("HSCLK1_LCPLLGTREFCLK0", "refclk_PIN_R0_156.25_MHz_unique1")));
    EXPECT_THAT(names("PIN", "LCPLL0"), ElementsAre("refclk_PIN_R0_156.25_MHz_unique1"));
}

TEST_F(ReferenceClockPorts, EachSourceHasItsPort) {
    const std::vector<std::pair<std::string, std::string>> ports{
        {"R0", "GTREFCLK0"},    {"R1", "GTREFCLK1"},    {"R2", "NORTHREFCLK0"},
        {"R3", "NORTHREFCLK1"}, {"R4", "SOUTHREFCLK0"}, {"R5", "SOUTHREFCLK1"}};
    for (const auto& [source, port] : ports) {
        EXPECT_THAT(
            portsOf(PackingRequest().add(receive, 3, {rateOf(5.0, "RPLL", 125.0, source)})),
            ElementsAre(Pair("HSCLK1_RPLL" + port, "refclk_PIN_" + source + "_125_MHz_unique1")));
    }
}

TEST_F(ReferenceClockPorts, UnknownSourceHasAnEmptyPortWord) {
    EXPECT_THAT(portsOf(PackingRequest().add(transmit, 0, {rateOf(20.0, "LCPLL", 156.25, "R6")})),
                ElementsAre(Pair("HSCLK0_LCPLL", "refclk_PIN_R6_156.25_MHz_unique1")));
}

TEST_F(ReferenceClockPorts, PinsAreCutAtTheFirstDot) {
    EXPECT_THAT(portsOf(PackingRequest().add(transmit, 0, {rateOf(20.0)}, "link.0.rate")),
                ElementsAre(Pair("HSCLK0_LCPLLGTREFCLK0", "refclk_link_R0_156.25_MHz_unique1")));
    EXPECT_THAT(portsOf(PackingRequest().add(
                    transmit, 0, {rateOf(20.0), rateOf(20.0, "LCPLL", 100.0)}, "link.0.rate")),
                ElementsAre(Pair("HSCLK0_LCPLLGTREFCLK0", "refclk_link_R0_multiple_ext_freq")));
}

TEST_F(ReferenceClockPorts, PinsThatAreOneTextWhenCutAreNamedOnce) {
    check(PackingRequest()
              .add(transmit, 0, {rateOf(20.0)}, "link.0")
              .add(transmit, 1, {rateOf(20.0)}, "link.1"));
    EXPECT_THAT(names("link.0", "LCPLL0"), ElementsAre("refclk_link_R0_156.25_MHz_unique1"));
    EXPECT_THAT(names("link.1", "LCPLL0"), ElementsAre("refclk_link_R0_156.25_MHz_unique1"));
}

TEST_F(ReferenceClockPorts, PinsOfOnePllOfADualShareAName) {
    check(PackingRequest()
              .add(transmit, 0, {rateOf(20.0)}, "B")
              .add(transmit, 1, {rateOf(20.0)}, "A"));
    EXPECT_THAT(names("A", "LCPLL0"), ElementsAre("refclk_A_R0_B_R0_156.25_MHz_unique1"));
    EXPECT_THAT(names("B", "LCPLL0"), ElementsAre("refclk_A_R0_B_R0_156.25_MHz_unique1"));
}

TEST_F(ReferenceClockPorts, PinsOfDifferentDualsShareNoName) {
    check(PackingRequest()
              .add(transmit, 0, {rateOf(20.0)}, "A")
              .add(transmit, 2, {rateOf(20.0)}, "B"));
    EXPECT_THAT(names("A", "LCPLL0"), ElementsAre("refclk_A_R0_156.25_MHz_unique1"));
    EXPECT_THAT(names("B", "LCPLL1"), ElementsAre("refclk_B_R0_156.25_MHz_unique1"));
}

TEST_F(ReferenceClockPorts, PinOfBothDualsSharesItsNameWithThePinsOfEither) {
    check(PackingRequest()
              .add(transmit, 0, {rateOf(20.0)}, "A")
              .add(transmit, 1, {rateOf(20.0)}, "B")
              .add(transmit, 2, {rateOf(20.0)}, "B")
              .add(transmit, 3, {rateOf(20.0)}, "C"));
    const std::string all = "refclk_A_R0_B_R0_C_R0_156.25_MHz_unique1";
    const std::string first = "refclk_A_R0_B_R0_156.25_MHz_unique1";
    const std::string second = "refclk_B_R0_C_R0_156.25_MHz_unique1";
    // A name is entered with every connection that it is about, in the order of the connections.
    EXPECT_THAT(names("A", "LCPLL0"), ElementsAre(first, all));
    EXPECT_THAT(names("B", "LCPLL0"), ElementsAre(first, all));
    EXPECT_THAT(names("B", "LCPLL1"), ElementsAre(all, second));
    EXPECT_THAT(names("C", "LCPLL1"), ElementsAre(all, second));
    EXPECT_THAT(packing.returnRefclkPorts(), ElementsAre(Pair("HSCLK0_LCPLLGTREFCLK0", all),
                                                         Pair("HSCLK1_LCPLLGTREFCLK0", second)));
}

TEST_F(ReferenceClockPorts, EachPositionOfAUsageRecordConnectsItsOwnPin) {
    check(PackingRequest()
              .add(transmit, 2, {rateOf(20.0)}, "A")
              .add(transmit, 0, {rateOf(20.0)}, "B")
              .add(receive, 0, {rateOf(5.0, "RPLL", 125.0)}, "C")
              .joinRecords());
    EXPECT_THAT(names("A", "LCPLL1"), ElementsAre("refclk_A_R0_156.25_MHz_unique1"));
    EXPECT_THAT(names("B", "LCPLL0"), ElementsAre("refclk_B_R0_156.25_MHz_unique1"));
    EXPECT_THAT(names("C", "RPLL0"), ElementsAre("refclk_C_R0_125_MHz_unique1"));
    EXPECT_EQ(packing.refclkResources.size(), 3U);
}

TEST_F(ReferenceClockPorts, OnlyTheRatesOfTheUsageRecordConnect) {
    PackingRequest request;
    request.add(transmit, 0, {rateOf(20.0, "LCPLL", 100.0), rateOf(20.0, "LCPLL", 125.0)});
    request.channels.back().rates = {1};
    check(request);
    EXPECT_THAT(entry("PIN", "LCPLL0", "R0", "Frequency"), ElementsAre(ruleValue(125.0)));
}

TEST_F(ReferenceClockPorts, TwoSourcesAtTheSameFrequencyOnOnePllAreTwoEntriesWithOneName) {
    check(PackingRequest().add(
        transmit, 0, {rateOf(20.0, "LCPLL", 156.25, "R1"), rateOf(20.0, "LCPLL", 156.25, "R0")}));
    const std::string name = "refclk_PIN_R0_PIN_R1_156.25_MHz_unique1";
    EXPECT_THAT(names("PIN", "LCPLL0", "R0"), ElementsAre(name));
    EXPECT_THAT(names("PIN", "LCPLL0", "R1"), ElementsAre(name));
    EXPECT_THAT(packing.returnRefclkPorts(), ElementsAre(Pair("HSCLK0_LCPLLGTREFCLK0", name),
                                                         Pair("HSCLK0_LCPLLGTREFCLK1", name)));
}

TEST_F(ReferenceClockPorts, OtherPllsAndFrequenciesShareNoName) {
    check(PackingRequest()
              .add(transmit, 0, {rateOf(20.0, "LCPLL", 125.0)}, "A")
              .add(receive, 0, {rateOf(5.0, "RPLL", 125.0)}, "C")
              .add(transmit, 1, {rateOf(20.0, "LCPLL", 100.0)}, "B"));
    EXPECT_THAT(names("A", "LCPLL0"), ElementsAre("refclk_A_R0_125_MHz_unique1"));
    EXPECT_THAT(names("C", "RPLL0"), ElementsAre("refclk_C_R0_125_MHz_unique1"));
    EXPECT_THAT(names("B", "LCPLL0"), ElementsAre("refclk_B_R0_100_MHz_unique1"));
}

TEST_F(ReferenceClockPorts, ConnectionOfSeveralFrequenciesHasNoPartners) {
    check(PackingRequest()
              .add(transmit, 0, {rateOf(20.0, "LCPLL", 100.0), rateOf(20.0, "LCPLL", 125.0)}, "A")
              .add(transmit, 1, {rateOf(20.0, "LCPLL", 100.0)}, "B"));
    EXPECT_THAT(entry("A", "LCPLL0", "R0", "Frequency"),
                ElementsAre(ruleValue(100.0), ruleValue(125.0)));
    EXPECT_THAT(names("A", "LCPLL0"), ElementsAre("refclk_A_R0_multiple_ext_freq"));
    EXPECT_THAT(names("B", "LCPLL0"), ElementsAre("refclk_B_R0_100_MHz_unique1"));
}

TEST_F(ReferenceClockPorts, DividerConnectsItsPllAtTheClockOfTheDataPath) {
    RateSettings divided = rateOf(20.0, "LCPLL", 156.25, "R2");
    divided.hasDivider = true;
    divided.dividerPll = "RPLL";
    EXPECT_THAT(portsOf(PackingRequest().add(transmit, 2, {divided})),
                ElementsAre(Pair("HSCLK1_LCPLLNORTHREFCLK0", "refclk_PIN_R2_156.25_MHz_unique1"),
                            Pair("HSCLK1_RPLLNORTHREFCLK0", "refclk_PIN_R2_156.25_MHz_unique1")));
    EXPECT_THAT(entry("PIN", "RPLL1", "R2", "Frequency"), ElementsAre(ruleValue(156.25)));
}

TEST_F(ReferenceClockPorts, FrequencyHasUpTo12DecimalsWithoutNeedlessZeros) {
    check(PackingRequest().add(transmit, 0, {rateOf(10.3125, "LCPLL", 161.1328125)}));
    EXPECT_THAT(names("PIN", "LCPLL0"), ElementsAre("refclk_PIN_R0_161.1328125_MHz_unique1"));
    check(PackingRequest().add(transmit, 0, {rateOf(10.0, "LCPLL", 100.0)}));
    EXPECT_THAT(names("PIN", "LCPLL0"), ElementsAre("refclk_PIN_R0_100_MHz_unique1"));
    // Nothing reaches this line rate.
    check(PackingRequest().add(transmit, 0, {rateOf(100.0, "LCPLL", 100.0)}));
    EXPECT_THAT(names("PIN", "LCPLL0"), ElementsAre("refclk_PIN_R0_0_MHz_unique1"));
    // 16000 MHz over 150.
    check(PackingRequest().add(transmit, 0, {rateOf(32.0, "LCPLL", 106.6666)}));
    EXPECT_THAT(names("PIN", "LCPLL0"), ElementsAre("refclk_PIN_R0_106.666666666667_MHz_unique1"));
}

TEST_F(ReferenceClockPorts, NothingBeforeTheCheck) {
    packing = PackingRequest().add(transmit, 0, {rateOf(20.0)}).packing();
    EXPECT_THAT(packing.returnRefclkPorts(), IsEmpty());
}

TEST_F(ReferenceClockPorts, AskingForThemChangesNothing) {
    check(PackingRequest().add(transmit, 0, {rateOf(20.0)}));
    const auto before = packing.refclkResources;
    packing.returnRefclkPorts();
    EXPECT_EQ(packing.refclkResources, before);
}

/// A lane whose rates use the six sources at six clocks.
PackingRequest requestOfSixConnections() {
    return PackingRequest().add(
        transmit, 0,
        {rateOf(20.0, "LCPLL", 100.0, "R0"), rateOf(20.0, "LCPLL", 125.0, "R1"),
         rateOf(20.0, "LCPLL", 156.25, "R2"), rateOf(20.0, "LCPLL", 200.0, "R3"),
         rateOf(20.0, "LCPLL", 250.0, "R4"), rateOf(20.0, "LCPLL", 312.5, "R5")});
}

TEST_F(ReferenceClockPorts, SixDistinctNamesPass) {
    EXPECT_THAT(check(requestOfSixConnections()), IsEmpty());
    EXPECT_THAT(requestOfSixConnections().reasons(), IsEmpty());
}

TEST_F(ReferenceClockPorts, SevenDistinctNamesFail) {
    const PackingRequest request =
        requestOfSixConnections().add(transmit, 2, {rateOf(5.0, "RPLL", 125.0)});
    EXPECT_THAT(check(request),
                ElementsAre(Pair(0,
                                 "QuadLevelCheck: Cannot be packed because the requested "
                                 "reference clock sources and frequencies exceed 6 connections "
                                 "into the Quad!!!!\n")));
    EXPECT_THAT(request.packing().canBePacked(false), ElementsAre(Pair(1, connectionsText())));
}

TEST_F(ReferenceClockPorts, ExcessIsToldAfterTheChannelsAndBeforeTheDuals) {
    PackingRequest request = requestOfSixConnections().addBoth(2, {rateOf(20.0)});
    request.parametersAt(transmit, 2)["TX_BUFFER_MODE"] = 0U;
    // Nothing reaches this line rate, so its clock is 0 and the seventh.
    request.parametersAt(receive, 2) = parametersOf(receive, rateOf(100.0, "RPLL"));
    EXPECT_THAT(request.reasons(),
                ElementsAre(commonBypassText(0, 2), connectionsText(), noVcoText("RPLL", 1, 0)));
}

TEST_F(ReferenceClockPorts, OneMoreUseOfAnEarlierConnectionIsNoSeventh) {
    EXPECT_THAT(
        check(requestOfSixConnections().add(transmit, 1, {rateOf(20.0, "LCPLL", 100.0, "R0")})),
        IsEmpty());
}

}  // namespace
}  // namespace lanecfg_test
