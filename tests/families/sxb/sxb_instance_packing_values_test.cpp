#include "families/sxb/sxb_packing_values.h"
#include "sxb_instance_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::PackingRequest;
using lanecfg_test::rateOf;
using lanecfg_test::RateSettings;
using lanecfg_test::receive;
using lanecfg_test::rowsOf;
using testing::ElementsAre;

const std::vector<std::string> endings{"_PLLCLKOUT_FREQ_VECTOR", "_REFCLK_FREQUENCY", "_POWERDOWN",
                                       "_REFCLK_SOURCE", "_REFCLK_ID"};

RateSettings withDivider(const std::string& source) {
    RateSettings settings;
    settings.hasDivider = true;
    settings.dividerPll = source;
    return settings;
}

class SxbPackingValues : public lanecfg_test::ServiceEngine {
  protected:
    /// A request of one lane in both directions, without the packing's outcome.
    void makeLane(int lane, const std::vector<RateSettings>& rates) {
        PackingRequest request;
        request.addBoth(lane, rates);
        make(request);
    }

    std::vector<double> frequenciesOf(std::size_t slot, const std::string& pll = "LCPLL") const {
        return valueAt<std::vector<double>>(0, 0, slot, "TX_" + pll + "_PLLCLKOUT_FREQ_VECTOR");
    }

    void expectNothingOf(std::size_t slot, const std::string& pll) const {
        for (const std::string& ending : endings) {
            EXPECT_FALSE(has(0, 0, slot, "TX_" + pll + ending)) << ending;
        }
    }
};

TEST_F(SxbPackingValues, TellTheFrequenciesAndTheReferenceClockOfTheOwnPll) {
    makeLane(0, {RateSettings()});
    enterRows("DUAL_0", "A", "LCPLL",
              {{{5.15625, 10.3125}},
               {{0.0, 0.0}},
               {{161.1328125, 161.1328125}},
               {{3.0, 3.0}},
               {{"R4", "R4"}}});
    enterPackingValues(*engine);
    for (const std::size_t direction : {0U, 1U}) {
        const std::string word = direction == 0 ? "TX" : "RX";
        const std::string prefix = word + "_LCPLL";
        EXPECT_THAT(
            valueAt<std::vector<double>>(direction, 0, 0, prefix + "_PLLCLKOUT_FREQ_VECTOR"),
            ElementsAre(5.15625, 10.3125));
        EXPECT_EQ(valueAt<double>(direction, 0, 0, prefix + "_REFCLK_FREQUENCY"), 161.1328125);
        EXPECT_FALSE(valueAt<bool>(direction, 0, 0, prefix + "_POWERDOWN"));
        EXPECT_EQ(valueAt<std::string>(direction, 0, 0, prefix + "_REFCLK_SOURCE"), "R4");
        EXPECT_EQ(valueAt<unsigned int>(direction, 0, 0, prefix + "_REFCLK_ID"), 3U);
        EXPECT_TRUE(valueAt<bool>(direction, 0, 0, word + "_IN_USE"));
    }
}

TEST_F(SxbPackingValues, OfADirectionStandInThatDirectionAlone) {
    makeLane(0, {RateSettings()});
    enterRows("DUAL_0", "A", "LCPLL", rowsOf({{10.3125}}));
    enterPackingValues(*engine);
    EXPECT_FALSE(has(0, 0, 0, "RX_IN_USE"));
    EXPECT_FALSE(has(1, 0, 0, "TX_IN_USE"));
}

TEST_F(SxbPackingValues, OfTheSecondDualServeItsLanes) {
    makeLane(2, {RateSettings()});
    enterRows("DUAL_0", "A", "LCPLL", rowsOf({{9.0}}));
    enterRows("DUAL_1", "A", "LCPLL", rowsOf({{10.3125}}));
    enterPackingValues(*engine);
    EXPECT_THAT(valueAt<std::vector<double>>(0, 2, 0, "TX_LCPLL_PLLCLKOUT_FREQ_VECTOR"),
                ElementsAre(10.3125));
}

TEST_F(SxbPackingValues, OfTheRpllHaveItsNames) {
    makeLane(0, {rateOf(5.0, "RPLL")});
    enterRows("DUAL_0", "A", "RPLL", rowsOf({{5.0}}));
    enterPackingValues(*engine);
    EXPECT_THAT(frequenciesOf(0, "RPLL"), ElementsAre(5.0));
    expectNothingOf(0, "LCPLL");
}

TEST_F(SxbPackingValues, ComeFromTheRowOfTheSlot) {
    makeLane(0, {rateOf(10.3125), rateOf(12.5)});
    enterRows("DUAL_0", "A", "LCPLL", rowsOf({{10.3125}, {12.5}}));
    enterPackingValues(*engine);
    EXPECT_THAT(frequenciesOf(0), ElementsAre(10.3125));
    EXPECT_THAT(frequenciesOf(1), ElementsAre(12.5));
}

TEST_F(SxbPackingValues, ComeFromTheOneRowThatLanesShare) {
    makeLane(0, {rateOf(10.3125), rateOf(5.15625)});
    enterRows("DUAL_0", "A", "LCPLL", rowsOf({{10.3125}}, 1.0));
    enterPackingValues(*engine);
    EXPECT_THAT(frequenciesOf(0), ElementsAre(10.3125));
    EXPECT_THAT(frequenciesOf(1), ElementsAre(10.3125));
}

TEST_F(SxbPackingValues, LeaveASlotWithAnEmptyRowAsItIs) {
    makeLane(0, {rateOf(10.3125), rateOf(12.5)});
    enterRows("DUAL_0", "A", "LCPLL", rowsOf({{}, {12.5}}));
    enterPackingValues(*engine);
    expectNothingOf(0, "LCPLL");
    EXPECT_FALSE(has(0, 0, 0, "TX_IN_USE"));
    EXPECT_EQ(valueAt<unsigned int>(0, 0, 0, "MAX_RATE"), 1U);
    EXPECT_THAT(frequenciesOf(1), ElementsAre(12.5));
}

TEST_F(SxbPackingValues, LeaveASlotBeyondTheRowsAsItIs) {
    makeLane(0, {rateOf(10.3125), rateOf(12.5), rateOf(5.0)});
    enterRows("DUAL_0", "A", "LCPLL", rowsOf({{10.3125}, {12.5}}));
    enterPackingValues(*engine);
    expectNothingOf(2, "LCPLL");
    EXPECT_FALSE(has(0, 0, 2, "TX_IN_USE"));
}

TEST_F(SxbPackingValues, SayNothingOfAPllWithoutAnyFrequency) {
    makeLane(0, {rateOf(10.3125), rateOf(12.5)});
    enterRows("DUAL_0", "A", "LCPLL", rowsOf({{}, {}}));
    enterPackingValues(*engine);
    expectNothingOf(0, "LCPLL");
    expectNothingOf(1, "LCPLL");
}

TEST_F(SxbPackingValues, WithoutTheDualStillTellWhatLanesHaveInCommon) {
    makeLane(0, {RateSettings()});
    enterRows("DUAL_1", "A", "LCPLL", rowsOf({{10.3125}}));
    enterPackingValues(*engine);
    EXPECT_FALSE(has(0, 0, 0, "TX_IN_USE"));
    EXPECT_TRUE(has(0, 0, 0, "MULTI_RATE"));
    EXPECT_TRUE(has(1, 0, 0, "MULTI_RATE"));
}

TEST_F(SxbPackingValues, WithoutTheGroupStillTellWhatLanesHaveInCommon) {
    makeLane(0, {RateSettings()});
    enterRows("DUAL_0", "B", "LCPLL", rowsOf({{10.3125}}));
    enterPackingValues(*engine);
    EXPECT_FALSE(has(0, 0, 0, "TX_IN_USE"));
    EXPECT_TRUE(has(0, 0, 0, "MULTI_RATE"));
}

TEST_F(SxbPackingValues, PowerThePllDownForALaneThatNoRecordHas) {
    makeLane(0, {RateSettings()});
    engine->channelUsage.front().rx.clear();
    enterRows("DUAL_0", "A", "LCPLL", rowsOf({{10.3125}}));
    enterPackingValues(*engine);
    EXPECT_TRUE(valueAt<bool>(0, 0, 0, "TX_IN_USE"));
    EXPECT_FALSE(valueAt<bool>(0, 0, 0, "TX_LCPLL_POWERDOWN"));
    EXPECT_FALSE(valueAt<bool>(1, 0, 0, "RX_IN_USE"));
    EXPECT_TRUE(valueAt<bool>(1, 0, 0, "RX_LCPLL_POWERDOWN"));
}

TEST_F(SxbPackingValues, OfTheOtherPllComeFromTheFirstRowWithoutADivider) {
    makeLane(0, {rateOf(10.3125), rateOf(12.5)});
    enterRows("DUAL_0", "A", "RPLL", rowsOf({{5.0}, {6.0}}));
    enterPackingValues(*engine);
    EXPECT_THAT(frequenciesOf(0, "RPLL"), ElementsAre(5.0));
    EXPECT_THAT(frequenciesOf(1, "RPLL"), ElementsAre(5.0));
    EXPECT_FALSE(has(0, 0, 0, "TX_IN_USE"));
}

TEST_F(SxbPackingValues, OfTheOtherPllComeFromTheFirstRowWhenTheDividerIsBehindTheOwnOne) {
    makeLane(0, {withDivider("LCPLL"), withDivider("LCPLL")});
    enterRows("DUAL_0", "A", "RPLL", rowsOf({{5.0}, {6.0}}));
    enterPackingValues(*engine);
    EXPECT_THAT(frequenciesOf(1, "RPLL"), ElementsAre(5.0));
    EXPECT_TRUE(valueAt<bool>(0, 0, 1, "TX_RPLL_POWERDOWN"));
}

TEST_F(SxbPackingValues, LetTheOtherPllRestUnlessLanesShareIt) {
    for (const double shared : {0.0, 1.0}) {
        makeLane(0, {RateSettings()});
        enterRows("DUAL_0", "A", "RPLL", rowsOf({{5.0}}, shared));
        enterPackingValues(*engine);
        EXPECT_EQ(valueAt<bool>(0, 0, 0, "TX_RPLL_POWERDOWN"), shared == 0.0);
    }
}

TEST_F(SxbPackingValues, LeaveTheOtherPllAsItIsWhenItsFirstRowIsEmpty) {
    makeLane(0, {rateOf(10.3125), rateOf(12.5)});
    enterRows("DUAL_0", "A", "RPLL", rowsOf({{}, {6.0}}));
    enterPackingValues(*engine);
    expectNothingOf(0, "RPLL");
    expectNothingOf(1, "RPLL");
}

TEST_F(SxbPackingValues, OfADividersPllComeFromTheRowOfTheSlot) {
    makeLane(0, {withDivider("RPLL"), withDivider("RPLL")});
    enterRows("DUAL_0", "A", "RPLL", rowsOf({{5.0}, {6.0}}));
    enterPackingValues(*engine);
    EXPECT_THAT(frequenciesOf(0, "RPLL"), ElementsAre(5.0));
    EXPECT_THAT(frequenciesOf(1, "RPLL"), ElementsAre(6.0));
    EXPECT_FALSE(valueAt<bool>(0, 0, 1, "TX_RPLL_POWERDOWN"));
    EXPECT_FALSE(has(0, 0, 1, "TX_IN_USE"));
}

TEST_F(SxbPackingValues, PowerADividersPllDownForALaneThatNoRecordHas) {
    makeLane(0, {withDivider("RPLL")});
    engine->channelUsage.clear();
    enterRows("DUAL_0", "A", "RPLL", rowsOf({{5.0}}, 1.0));
    enterPackingValues(*engine);
    EXPECT_TRUE(valueAt<bool>(0, 0, 0, "TX_RPLL_POWERDOWN"));
}

TEST_F(SxbPackingValues, AreTheRealPackingsOnes) {
    // 10.3125 and 5.0 Gb/s need 5.15625 or 10.3125 GHz, and 5.0 GHz in the RPLL's range of 4 to 8:
    // half the line rate times 2.
    PackingRequest request;
    request.addBoth(0, {rateOf(10.3125)}).add(receive, 1, {rateOf(5.0, "RPLL", 125.0, "R1")});
    make(request);
    takePacking(*engine);
    enterPackingValues(*engine);
    EXPECT_THAT(engine->packedChannels, testing::IsEmpty());
    EXPECT_THAT(frequenciesOf(0), ElementsAre(5.15625, 10.3125));
    EXPECT_THAT(valueAt<std::vector<double>>(1, 1, 0, "RX_RPLL_PLLCLKOUT_FREQ_VECTOR"),
                ElementsAre(5.0));
    EXPECT_EQ(valueAt<std::string>(1, 1, 0, "RX_RPLL_REFCLK_SOURCE"), "R1");
    // Nobody but lane 1 holds the RPLL, so it rests as far as lane 0 is concerned.
    EXPECT_TRUE(valueAt<bool>(0, 0, 0, "TX_RPLL_POWERDOWN"));
}

TEST_F(SxbPackingValues, SayThatSomeLaneHasSeveralRates) {
    PackingRequest request;
    request.addBoth(0, {RateSettings()}).add(receive, 3, {RateSettings(), RateSettings()});
    make(request);
    enterPackingValues(*engine);
    EXPECT_TRUE(valueAt<bool>(0, 0, 0, "MULTI_RATE"));
    EXPECT_TRUE(valueAt<bool>(1, 3, 1, "MULTI_RATE"));
}

TEST_F(SxbPackingValues, SayThatNoLaneHasSeveralRates) {
    makeLane(0, {RateSettings()});
    enterPackingValues(*engine);
    EXPECT_FALSE(valueAt<bool>(0, 0, 0, "MULTI_RATE"));
}

TEST_F(SxbPackingValues, GiveTheLastRateOfTheLaneWithTheLongerDirection) {
    PackingRequest request;
    request.addBoth(1, {RateSettings()}).add(receive, 0, {RateSettings(), RateSettings()});
    request.add(lanecfg_test::transmit, 0, {RateSettings()});
    make(request);
    enterPackingValues(*engine);
    EXPECT_EQ(valueAt<unsigned int>(0, 0, 0, "MAX_RATE"), 1U);
    EXPECT_EQ(valueAt<unsigned int>(1, 0, 1, "MAX_RATE"), 1U);
    EXPECT_EQ(valueAt<unsigned int>(1, 1, 0, "MAX_RATE"), 0U);
}

TEST_F(SxbPackingValues, TakeTheGen3WidthFromTheThirdTransmitRate) {
    RateSettings gen3;
    gen3.intDataWidth = 64;
    makeLane(0, {RateSettings(), RateSettings(), gen3});
    enterPackingValues(*engine);
    EXPECT_EQ(valueAt<unsigned int>(0, 0, 0, "GEN3_INT_DATA_WIDTH"), 64U);
    EXPECT_EQ(valueAt<unsigned int>(1, 0, 2, "GEN3_INT_DATA_WIDTH"), 64U);
}

TEST_F(SxbPackingValues, HaveAGen3WidthOf16WithoutThirdTransmitRate) {
    RateSettings wide;
    wide.intDataWidth = 64;
    PackingRequest request;
    request.add(lanecfg_test::transmit, 0, {wide, wide}).add(receive, 0, {wide, wide, wide});
    make(request);
    enterPackingValues(*engine);
    EXPECT_EQ(valueAt<unsigned int>(0, 0, 0, "GEN3_INT_DATA_WIDTH"), 16U);
}

TEST_F(SxbPackingValues, HaveAGen3WidthOf16WhenTheThirdTransmitRateNamesNone) {
    PackingRequest request;
    request.addBoth(0, {RateSettings(), RateSettings(), RateSettings()});
    request.parametersAt(0, 0, 2).erase("TX_INT_DATA_WIDTH");
    make(request);
    enterPackingValues(*engine);
    EXPECT_EQ(valueAt<unsigned int>(0, 0, 0, "GEN3_INT_DATA_WIDTH"), 16U);
}

TEST_F(SxbPackingValues, NameThePllsThatCarryDataInADualAtRateZero) {
    PackingRequest request;
    request.addBoth(0, {rateOf(10.3125), rateOf(5.0, "RPLL")})
        .add(receive, 1, {rateOf(5.0, "RPLL")})
        .addBoth(2, {rateOf(10.3125), rateOf(5.0, "RPLL")});
    make(request);
    enterPackingValues(*engine);
    for (const char* const pll : {"LCPLL", "RPLL"}) {
        const std::string name = std::string(pll) + "_USED_FOR_SERIAL_DATA_RATE0";
        EXPECT_TRUE(valueAt<bool>(0, 0, 0, name)) << name;
        EXPECT_TRUE(valueAt<bool>(1, 0, 1, name)) << name;
        EXPECT_TRUE(valueAt<bool>(1, 1, 0, name)) << name;
    }
    EXPECT_TRUE(valueAt<bool>(0, 2, 0, "LCPLL_USED_FOR_SERIAL_DATA_RATE0"));
    EXPECT_FALSE(valueAt<bool>(0, 2, 0, "RPLL_USED_FOR_SERIAL_DATA_RATE0"));
}

/// Parameters without which a rate can't be placed.
class SxbPackingValuesWithout : public SxbPackingValues,
                                public testing::WithParamInterface<std::string> {};

TEST_P(SxbPackingValuesWithout, AreRefusedAndThoseBeforeStay) {
    PackingRequest request;
    request.addBoth(0, {RateSettings()}).addBoth(1, {RateSettings()});
    request.parametersAt(receive, 0).erase(GetParam());
    make(request);
    // Without a divider source the other PLL is what asks for it.
    enterRows("DUAL_0", "A", "RPLL", rowsOf({{5.0}}));
    EXPECT_THROW(enterPackingValues(*engine), std::out_of_range);
    EXPECT_TRUE(has(0, 0, 0, "MULTI_RATE"));
    EXPECT_FALSE(has(1, 0, 0, "MULTI_RATE"));
    EXPECT_FALSE(has(0, 1, 0, "MULTI_RATE"));
}

INSTANTIATE_TEST_SUITE_P(Parameters, SxbPackingValuesWithout,
                         testing::Values("RX_PLL_TYPE", "RX_RATE_GROUP", "RXPROGDIV_FREQ_ENABLE"),
                         [](const auto& row) { return row.param; });

TEST_F(SxbPackingValues, AreRefusedForAParameterOfAnotherType) {
    PackingRequest request;
    request.addBoth(0, {RateSettings()});
    request.parametersAt(0, 0)["TX_PLL_TYPE"] = 7U;
    make(request);
    EXPECT_THROW(enterPackingValues(*engine), std::invalid_argument);
}

TEST_F(SxbPackingValues, NeedNoLanesAtAll) {
    for (const userParamStore& store :
         {userParamStore(), userParamStore(1), userParamStore(2, {{}, {}})}) {
        PackingRequest request;
        request.userParams = store;
        make(request);
        enterPackingValues(*engine);
        EXPECT_EQ(engine->userParams.size(), store.size());
    }
}

}  // namespace
}  // namespace sable_lanecfg
