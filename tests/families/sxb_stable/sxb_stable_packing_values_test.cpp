#include "families/frozen/sxb_stable_packing_values.h"

#include "families/sxb/sxb_instance_engine.h"
#include "support/print_rule_value.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::PackingRequest;
using lanecfg_test::PllRows;
using lanecfg_test::rateOf;
using lanecfg_test::RateSettings;
using lanecfg_test::receive;
using lanecfg_test::rowsOf;
using lanecfg_test::transmit;
using testing::ElementsAre;
using testing::Pair;
using testing::SizeIs;
using namespace std::string_literals;

class SxbStablePackingValues : public lanecfg_test::ServiceEngine {
  protected:
    /// A request of one lane in both directions, without the packing's outcome.
    void makeLane(int lane, const std::vector<RateSettings>& rates) {
        PackingRequest request;
        request.addBoth(lane, rates);
        make(request);
    }

    void expectPll(std::size_t lane, std::size_t slot, double clock, double reference,
                   const std::string& source) const {
        EXPECT_EQ(valueAt<double>(receive, lane, slot, "RX_PLL_VCO"), clock);
        EXPECT_EQ(valueAt<double>(receive, lane, slot, "RX_PLL_REFCLK_FREQUENCY"), reference);
        EXPECT_EQ(valueAt<bool>(receive, lane, slot, "RX_PLL_POWERDOWN"), clock == 0.0);
        EXPECT_EQ(valueAt<std::string>(receive, lane, slot, "RX_PLL_REFCLK_SOURCE"), source);
    }

    void expectIdle(std::size_t lane, std::size_t slot) const {
        expectPll(lane, slot, 0.0, 0.0, "R0");
    }
};

/// One frequency, clock and source.
PllRows oneRow(double frequency, double clock, const std::string& source) {
    return {{{frequency}}, {{0.0}}, {{clock}}, {{3.0}}, {{source}}};
}

TEST_F(SxbStablePackingValues, TellTheFirstFrequencyAndTheReferenceClockOfTheReceiversPll) {
    makeLane(0, {RateSettings()});
    enterRows("DUAL_0", "A", "LCPLL",
              {{{5.15625, 10.3125}},
               {{0.0, 0.0}},
               {{161.1328125, 156.25}},
               {{3.0, 3.0}},
               {{"R4", "R5"}}});
    enterStablePackingValues(*engine);
    expectPll(0, 0, 5.15625, 161.1328125, "R4");
}

TEST_F(SxbStablePackingValues, AskForThePllThatTheReceiverNamesWhateverTheTransmitterDoes) {
    PackingRequest request;
    request.add(transmit, 0, {rateOf(10.3125, "LCPLL")}).add(receive, 0, {rateOf(5.0, "RPLL")});
    make(request);
    enterRows("DUAL_0", "A", "LCPLL", oneRow(10.3125, 156.25, "R1"));
    enterRows("DUAL_0", "A", "RPLL", oneRow(5.0, 125.0, "R2"));
    enterStablePackingValues(*engine);
    expectPll(0, 0, 5.0, 125.0, "R2");
    for (const char* const name : {"RX_PLL_VCO", "TX_PLL_VCO", "TX_LCPLL_POWERDOWN", "TX_IN_USE"}) {
        EXPECT_FALSE(has(transmit, 0, 0, name)) << name;
    }
    EXPECT_FALSE(has(receive, 0, 0, "RX_IN_USE"));
}

TEST_F(SxbStablePackingValues, OfASingleRowServeEverySlot) {
    makeLane(0, {RateSettings(), RateSettings()});
    enterRows("DUAL_0", "A", "LCPLL", oneRow(10.3125, 156.25, "R3"));
    enterStablePackingValues(*engine);
    expectPll(0, 0, 10.3125, 156.25, "R3");
    expectPll(0, 1, 10.3125, 156.25, "R3");
}

TEST_F(SxbStablePackingValues, OfSeveralRowsServeEachTheirOwnSlot) {
    makeLane(0, {RateSettings(), RateSettings(), RateSettings()});
    enterRows("DUAL_0", "A", "LCPLL",
              {{{10.3125}, {14.0625}},
               {{0.0}, {0.0}},
               {{156.25}, {125.0}},
               {{0.0}, {0.0}},
               {{"R1"}, {"R2"}}});
    enterStablePackingValues(*engine);
    expectPll(0, 0, 10.3125, 156.25, "R1");
    expectPll(0, 1, 14.0625, 125.0, "R2");
    // A slot without a row has no frequency.
    expectIdle(0, 2);
}

TEST_F(SxbStablePackingValues, OfAnEmptyRowPowerThePllDown) {
    makeLane(0, {RateSettings(), RateSettings()});
    enterRows("DUAL_0", "A", "LCPLL", rowsOf({{}, {10.3125}}));
    enterStablePackingValues(*engine);
    expectIdle(0, 0);
    expectPll(0, 1, 10.3125, 156.25, "R0");
}

TEST_F(SxbStablePackingValues, KeepAReferenceClockWithoutAFrequency) {
    makeLane(0, {RateSettings()});
    enterRows("DUAL_0", "A", "LCPLL", {{{}}, {{}}, {{125.0}}, {{0.0}}, {{"R6"}}});
    enterStablePackingValues(*engine);
    expectPll(0, 0, 0.0, 125.0, "R6");
}

TEST_F(SxbStablePackingValues, WithoutTheReceiversPllPowerItDown) {
    makeLane(0, {RateSettings()});
    enterRows("DUAL_0", "A", "RPLL", oneRow(5.0, 125.0, "R2"));
    enterRows("DUAL_1", "A", "LCPLL", oneRow(10.3125, 156.25, "R1"));
    enterStablePackingValues(*engine);
    expectIdle(0, 0);
}

TEST_F(SxbStablePackingValues, OfAPackingWithoutOutcomePowerThePllDown) {
    makeLane(0, {RateSettings()});
    enterStablePackingValues(*engine);
    expectIdle(0, 0);
}

TEST_F(SxbStablePackingValues, TakeTheFirstRateGroupThatHasThePll) {
    RateSettings settings;
    settings.group = "Z";
    makeLane(0, {settings});
    enterRows("DUAL_0", "A", "RPLL", oneRow(5.0, 125.0, "R1"));
    enterRows("DUAL_0", "B", "LCPLL", oneRow(14.0625, 156.25, "R2"));
    enterRows("DUAL_0", "Z", "LCPLL", oneRow(10.3125, 156.25, "R3"));
    enterStablePackingValues(*engine);
    expectPll(0, 0, 14.0625, 156.25, "R2");
}

TEST_F(SxbStablePackingValues, LookIntoNoOtherGroupWhenThatOneHasNoFrequency) {
    makeLane(0, {RateSettings()});
    enterRows("DUAL_0", "A", "LCPLL", rowsOf({{}}));
    enterRows("DUAL_0", "B", "LCPLL", oneRow(10.3125, 156.25, "R3"));
    enterStablePackingValues(*engine);
    expectIdle(0, 0);
}

TEST_F(SxbStablePackingValues, TakeTheUpperLanesFromTheSecondDual) {
    for (const int lane : {1, 2}) {
        makeLane(lane, {RateSettings()});
        enterRows("DUAL_0", "A", "LCPLL", oneRow(10.3125, 156.25, "R1"));
        enterRows("DUAL_1", "A", "LCPLL", oneRow(14.0625, 125.0, "R2"));
        enterStablePackingValues(*engine);
        if (lane == 1) {
            expectPll(1, 0, 10.3125, 156.25, "R1");
        } else {
            expectPll(2, 0, 14.0625, 125.0, "R2");
        }
    }
}

TEST_F(SxbStablePackingValues, FillWhatARateLacksByTheTypeOfEachParameter) {
    makeLane(0, {RateSettings()});
    engine->paramTypes = {
        {"RX_SSC_PPM", {"int", "", "300"}},       {"RX_ENABLE", {"bool", "", "true"}},
        {"RX_LINE_RATE", {"double", "", "1.25"}}, {"INS_LOSS_NYQ", {"float", "", "20"}},
        {"TX_EXTRA", {"double", "", "2.5"}},      {"TXTRA", {"string", "", "word"}},
        {"RX_STRANGE", {"list", "", "1 2"}}};
    enterStablePackingValues(*engine);
    EXPECT_EQ(valueAt<unsigned int>(receive, 0, 0, "RX_SSC_PPM"), 300U);
    EXPECT_TRUE(valueAt<bool>(receive, 0, 0, "RX_ENABLE"));
    // What the request gives stays.
    EXPECT_EQ(valueAt<double>(receive, 0, 0, "RX_LINE_RATE"), 10.3125);
    EXPECT_EQ(valueAt<float>(transmit, 0, 0, "INS_LOSS_NYQ"), 20.0F);
    EXPECT_EQ(valueAt<double>(transmit, 0, 0, "TX_EXTRA"), 2.5);
    EXPECT_EQ(valueAt<std::string>(transmit, 0, 0, "TXTRA"), "word");
    // Each has its direction, and a type that nobody knows has no value.
    EXPECT_FALSE(has(transmit, 0, 0, "RX_SSC_PPM"));
    EXPECT_FALSE(has(receive, 0, 0, "INS_LOSS_NYQ"));
    EXPECT_FALSE(has(receive, 0, 0, "TX_EXTRA"));
    EXPECT_FALSE(has(receive, 0, 0, "RX_STRANGE"));
}

TEST_F(SxbStablePackingValues, MakeNoRateThatTheRequestLacks) {
    makeLane(1, {RateSettings(), RateSettings()});
    engine->paramTypes = {{"RX_SSC_PPM", {"int", "", "0"}}};
    const auto ratesBefore = engine->userParams.at(receive).at(0).size();
    enterStablePackingValues(*engine);
    EXPECT_THAT(engine->userParams.at(receive).at(0), SizeIs(ratesBefore));
    EXPECT_THAT(engine->userParams.at(receive).at(1), SizeIs(2));
}

TEST_F(SxbStablePackingValues, FillTheReceiversPllThatARateLacks) {
    makeLane(0, {RateSettings()});
    engine->userParams[receive][0][0].erase("RX_PLL_TYPE");
    engine->paramTypes = {{"RX_PLL_TYPE", {"string", "", "RPLL"}}};
    enterRows("DUAL_0", "A", "RPLL", oneRow(5.0, 125.0, "R2"));
    enterStablePackingValues(*engine);
    expectPll(0, 0, 5.0, 125.0, "R2");
}

TEST_F(SxbStablePackingValues, FindTheLaneModes) {
    makeLane(0, {RateSettings()});
    engine->laneMode.clear();
    enterStablePackingValues(*engine);
    EXPECT_THAT(engine->laneMode, testing::Contains(Pair(0, "txrx_rate_together")));
    EXPECT_THAT(engine->laneMode, testing::Contains(Pair(1, "txrx_rate_seperate")));
}

TEST_F(SxbStablePackingValues, OfARateWithoutPllAreRefused) {
    makeLane(0, {RateSettings()});
    engine->userParams[receive][0][0].erase("RX_PLL_TYPE");
    EXPECT_THROW(enterStablePackingValues(*engine), std::out_of_range);
}

TEST_F(SxbStablePackingValues, OfAPllThatIsNoWordAreRefused) {
    makeLane(0, {RateSettings()});
    engine->userParams[receive][0][0]["RX_PLL_TYPE"] = 1U;
    EXPECT_THROW(enterStablePackingValues(*engine), std::invalid_argument);
}

TEST_F(SxbStablePackingValues, OfALaneThatTheQuadDoesNotHaveAreNone) {
    makeLane(0, {RateSettings()});
    engine->paramTypes = {{"RX_SSC_PPM", {"int", "", "0"}}};
    engine->userParams[receive].resize(5);
    engine->userParams[receive][4].resize(1);
    EXPECT_NO_THROW(enterStablePackingValues(*engine));
    EXPECT_THAT(engine->userParams[receive][4][0], SizeIs(0));
}

TEST_F(SxbStablePackingValues, OfARequestWithoutDirectionsAreNone) {
    makeLane(0, {RateSettings()});
    engine->userParams.clear();
    enterStablePackingValues(*engine);
    EXPECT_THAT(engine->userParams, SizeIs(0));
    engine->userParams.resize(1);
    enterStablePackingValues(*engine);
    EXPECT_THAT(engine->userParams, SizeIs(1));
}

}  // namespace
}  // namespace sable_lanecfg
