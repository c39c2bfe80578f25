#include "support/captured_messages.h"
#include "support/packing_request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

namespace lanecfg_test {
namespace {

using sable_lanecfg::gt_quad_packing;
using sable_lanecfg::packingNumbers;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Pair;

constexpr const char* exceptionForm =
    "Exception caught .+ at [0-9]+ of file ip/rule_engine/gt_rule_engine/src/gt_quad_packing.";

/// Bad input, what the message about it has to name, and which checks it hits, by what without
/// messages they answer.
struct PackingFault {
    std::string name;
    std::function<void(PackingRequest&)> spoil;
    std::string named;
    std::vector<std::pair<int, std::string>> silentAnswer;
};

const std::pair<int, std::string> first{1, "ERROR caught"};
const std::pair<int, std::string> second{2, "ERROR caught"};
const std::pair<int, std::string> third{3, "ERROR caught"};

std::vector<PackingFault> packingFaults() {
    return {
        {"MissingParameter",
         [](auto& request) { request.parametersAt(0, 0).erase("TX_LINE_RATE"); },
         "TX_LINE_RATE is missing in TX of lane 0 at rate 0",
         {first, second}},
        {"MissingParameterOfTheCandidatesAlone",
         [](auto& request) { request.parametersAt(1, 0).erase("RX_DATA_DECODING"); },
         "RX_DATA_DECODING is missing in RX of lane 0 at rate 0",
         {first}},
        {"MissingParameterOfTheBypassCheckAlone",
         [](auto& request) { request.parametersAt(0, 0).erase("TX_PIPM_ENABLE"); },
         "TX_PIPM_ENABLE is missing in TX of lane 0 at rate 0",
         {first}},
        {"ParameterOfAnotherType",
         [](auto& request) { request.parametersAt(0, 0)["TX_LINE_RATE"] = 10U; },
         "TX_LINE_RATE has another type in TX of lane 0 at rate 0",
         {first, second}},
        {"LaneBeyondTheParameters",
         [](auto& request) { request.channels.front().tx = {4}; },
         "no user parameters for TX of lane 4 at rate 0",
         {first, second}},
        {"NegativeLane",
         [](auto& request) { request.channels.front().rx = {-1}; },
         "no user parameters for RX of lane -1 at rate 0",
         {first, second}},
        {"RateBeyondTheParameters",
         [](auto& request) { request.channels.front().rates = {1}; },
         "no user parameters for TX of lane 0 at rate 1",
         {first, second, third}},
        {"NegativeRate",
         [](auto& request) { request.channels.front().rates = {-1}; },
         "no user parameters for TX of lane 0 at rate -1",
         {first, second, third}},
        {"MissingDirection",
         [](auto& request) { request.userParams.pop_back(); },
         "no user parameters for RX of lane 0 at rate 0",
         {first, second, third}},
        {"LaneWithoutRatePin",
         [](auto& request) { request.channels.front().txrate.clear(); },
         "no rate pin for TX of lane 0",
         {first, second, third}},
        {"MissingLimit",
         [](auto& request) { request.limits.erase("FLCPLLRANGE_MAX"); },
         "device limit FLCPLLRANGE_MAX is missing",
         {first}},
        {"LimitWithoutValue",
         [](auto& request) { request.limits["FLCPLLRANGE_MIN"].clear(); },
         "device limit FLCPLLRANGE_MIN is missing",
         {first}},
        {"LimitThatIsNoNumber",
         [](auto& request) { request.limits["FLCPLLRANGE_MIN"] = {"low"}; },
         "device limit FLCPLLRANGE_MIN is no number: \"low\"",
         {first}},
        {"LimitBeyondAllNumbers",
         [](auto& request) { request.limits["FLCPLLRANGE_MIN"] = {"1e999"}; },
         "device limit FLCPLLRANGE_MIN is out of range: 1e999",
         {first}},
        {"InternalWidthOf0",
         [](auto& request) { request.parametersAt(0, 0)["TX_INT_DATA_WIDTH"] = 0U; },
         "the internal data width of an LCPLL rate is 0",
         {first}},
    };
}

class PackingWithFault : public testing::TestWithParam<PackingFault> {
  protected:
    PackingWithFault() {
        request.addBoth(0, {rateOf(20.0)});
        GetParam().spoil(request);
    }

    PackingRequest request;
};

TEST_P(PackingWithFault, IsAMessageWithLoggingOn) {
    const CapturedMessages messages;
    EXPECT_THAT(request.packing().canBePacked(true), IsEmpty());
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error),
                testing::SizeIs(GetParam().silentAnswer.size()));
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error), Each(MatchesRegex(exceptionForm)));
    EXPECT_THAT(messages.texts(), Contains(HasSubstr(GetParam().named + " at ")));
}

TEST_P(PackingWithFault, IsErrorCaughtUnderTheNextNumberWithLoggingOff) {
    const CapturedMessages messages;
    EXPECT_THAT(request.packing().canBePacked(false),
                testing::ElementsAreArray(GetParam().silentAnswer));
    EXPECT_THAT(messages.texts(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Each, PackingWithFault, testing::ValuesIn(packingFaults()),
                         [](const auto& test) { return test.param.name; });

TEST(PackingFaults, MessageHasTheWholeText) {
    const CapturedMessages messages;
    PackingRequest request;
    request.addBoth(0, {rateOf(20.0)});
    request.limits.erase("FLCPLLRANGE_MIN");
    EXPECT_THAT(request.packing().intermediateDSCreation(true), IsEmpty());
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error),
                ElementsAre(MatchesRegex(
                    "Exception caught device limit FLCPLLRANGE_MIN is missing at [0-9]+ of file "
                    "ip/rule_engine/gt_rule_engine/src/gt_quad_packing.")));
}

TEST(PackingFaults, WhatWasDoneBeforeStays) {
    PackingRequest request;
    request.add(transmit, 0, {rateOf(20.0)}).add(transmit, 1, {rateOf(20.0)});
    request.parametersAt(transmit, 1).erase("TX_RATE_GROUP");
    gt_quad_packing packing = request.packing();
    EXPECT_THAT(packing.runIntersection(false), ElementsAre(first));
    EXPECT_EQ(packing.intersectedCoordinates.at("DUAL_0").at("A").at("LCPLL").at("pllClkFreqs"),
              packingNumbers{{10.0}});
}

TEST(PackingFaults, DividerWithoutALimitLeavesItsDataPathOutToo) {
    PackingRequest request;
    RateSettings divided = rateOf(20.0, "LCPLL");
    divided.hasDivider = true;
    divided.dividerPll = "RPLL";
    request.add(transmit, 0, {rateOf(20.0), divided});
    request.limits.erase("FRPLLRANGE_MIN");
    gt_quad_packing packing = request.packing();
    EXPECT_THAT(packing.intermediateDSCreation(false), ElementsAre(first));
    const auto& plls = packing.intermediateData.at("DUAL_0").at("A");
    EXPECT_EQ(plls.count("RPLL"), 0U);
    EXPECT_EQ(boost::get<packingNumbers>(plls.at("LCPLL").at(0).at("rates")),
              packingNumbers{{10.0}});
}

TEST(PackingFaults, LaterChecksGoOnWithWhatThereIs) {
    PackingRequest request;
    request.add(transmit, 0, {rateOf(10.3125)})
        .add(transmit, 1, {rateOf(25.78125)})
        .add(transmit, 2, {rateOf(20.0)});
    request.parametersAt(transmit, 2).erase("TX_RATE_GROUP");
    EXPECT_THAT(request.packing().canBePacked(false),
                ElementsAre(first, Pair(2, noVcoText("LCPLL", 0, 0))));
    const CapturedMessages messages;
    EXPECT_THAT(request.packing().canBePacked(true),
                ElementsAre(Pair(1, noVcoText("LCPLL", 0, 0))));
}

TEST(PackingFaults, BypassCheckKeepsItsMessagesBeforeTheFault) {
    PackingRequest request;
    RateSettings unbuffered = rateOf(20.0);
    unbuffered.bufferMode = 0;
    request.addBoth(0, {unbuffered, unbuffered});
    request.parametersAt(receive, 0, 0)["RX_PLL_TYPE"] = std::string("RPLL");
    request.parametersAt(receive, 0, 1).erase("RX_PLL_TYPE");
    EXPECT_THAT(request.packing().checkILOconfig(false),
                ElementsAre(Pair(1, commonBypassText(0, 0)), second));
}

TEST(PackingFaults, ResourceCheckWithAFaultNamesNoPorts) {
    PackingRequest request;
    request.add(transmit, 0, {rateOf(20.0), rateOf(20.0)});
    request.parametersAt(transmit, 0, 1).erase("TX_REFCLK_SOURCE");
    gt_quad_packing packing = request.packing();
    EXPECT_THAT(packing.checkRefclkSourceResource(false), ElementsAre(first));
    EXPECT_THAT(packing.returnRefclkPorts(), IsEmpty());
}

TEST(PackingFaults, RecordThatCantTakeACandidateLosesThatOneAlone) {
    PackingRequest request;
    request.add(transmit, 0, {rateOf(20.0)}).add(transmit, 1, {rateOf(20.0)});
    gt_quad_packing packing = request.packing();
    packing.intermediateData["DUAL_0"]["A"]["LCPLL"][0]["rates"] = std::string("no list");
    const CapturedMessages messages;
    EXPECT_THAT(packing.intermediateDSCreation(true), IsEmpty());
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error),
                ElementsAre(MatchesRegex("debug8 caught .+ at [0-9]+ of file "
                                         "ip/rule_engine/gt_rule_engine/src/gt_quad_packing.")));
    EXPECT_EQ(boost::get<packingNumbers>(
                  packing.intermediateData.at("DUAL_0").at("A").at("LCPLL").at(2).at("rates")),
              packingNumbers{{10.0}});
}

TEST(PackingFaults, RecordOfTheWrongFormEndsTheIntersection) {
    gt_quad_packing packing = PackingRequest().packing();
    packing.intermediateData["DUAL_0"]["A"]["LCPLL"][0]["rate_pin"] = packingNumbers{};
    EXPECT_THAT(packing.runIntersection(false), ElementsAre(first));
    EXPECT_THAT(packing.intersectedCoordinates, IsEmpty());
}

}  // namespace
}  // namespace lanecfg_test
