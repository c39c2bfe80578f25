#include "rate_table_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using lanecfg_test::critical;
using lanecfg_test::FourChannels;
using lanecfg_test::FreshLog;
using lanecfg_test::namesOf;
using lanecfg_test::RateTableEngine;
using sable_lanecfg::RateTableControl;
using sable_lanecfg::ruleValue;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

using parameterMap = std::map<std::string, ruleValue>;

/// Parameters of a transmit rate that asks for single lane writes.
parameterMap singleLaneTx() {
    return {{"TX_DATA_ENCODING", std::string("64B66B_ASYNC")},
            {"TX_USER_DATA_WIDTH", 64U},
            {"TX_INT_DATA_WIDTH", 32U},
            {"TX_BUFFER_MODE", 1U}};
}

/// The same with the names of the receive side.
parameterMap singleLaneRx() {
    return {{"RX_DATA_DECODING", std::string("64B66B_ASYNC")},
            {"RX_USER_DATA_WIDTH", 64U},
            {"RX_INT_DATA_WIDTH", 32U},
            {"RX_BUFFER_MODE", 1U}};
}

parameterMap with(parameterMap rate, const std::string& name, const ruleValue& value) {
    rate[name] = value;
    return rate;
}

struct RateTableSelection : public ::testing::Test {
    RateTableSelection() {
        engine.reg("LANE", "channel").reg("LANE_B", "channel").reg("LANE_C", "channel");
        engine.reg("CLOCK", "hs_clk_0").reg("SHARED", "ctrl_0").reg("CALIBRATION", "rcalbg_0");
        engine.reg("PIPE_CTRL_CFG9", "channel").reg("LCPLL_REFCLK_IPS", "hs_clk_ips");
    }

    std::vector<std::string> separate() {
        const FreshLog log;
        engine.separateCriticalAttributes_New(channels, control);
        return log.lines();
    }

    std::vector<std::string> sort() {
        const FreshLog log;
        engine.sortRateTable_New(channels, control);
        return log.lines();
    }

    RateTableEngine engine;
    FourChannels channels;
    RateTableControl control;
};

// The PCIe mode

TEST_F(RateTableSelection, ReadsThePcieModeFromTheFirstSnapshot) {
    const char* mode = "PIPE_CTRL_CFG0.PCIE_MODE";
    engine.pass(0, 0, 0, {{mode, 1U}}).pass(0, 1, 1, {{mode, 0U}});
    engine.pass(1, 0, 0, {{mode, 0U}}).pass(1, 1, 1, {{mode, 1U}});
    engine.pass(2, 0, 0, {{mode, std::string("1")}});
    engine.pass(3, 0, 0, {{mode, 2U}});
    separate();
    EXPECT_THAT(control.pcieMode, ElementsAre(1, 0, 1, 0));
}

TEST_F(RateTableSelection, TakesAChannelWithoutPassesOrModeForNoPcie) {
    engine.pass(1, 0, 0, {}).pass(2, 0, 0, {{"PIPE_CTRL_CFG0.PCIE_MODE", ruleValue()}});
    separate();
    EXPECT_THAT(control.pcieMode, ElementsAre(0, 0, 0, 0));
}

// Single lane writes

TEST_F(RateTableSelection, AsksForSingleLanesByDirectionAndChannel) {
    engine.userParams[0][1] = {singleLaneTx()};
    engine.userParams[1][2] = {singleLaneRx()};
    separate();
    EXPECT_THAT(control.txSingleLane, ElementsAre(0, 1, 0, 0));
    EXPECT_THAT(control.rxSingleLane, ElementsAre(0, 0, 1, 0));
}

TEST_F(RateTableSelection, AsksForSingleLanesWhenAnyRateDoes) {
    const parameterMap plain = with(singleLaneTx(), "TX_DATA_ENCODING", std::string("RAW"));
    engine.userParams[0][0] = {plain, singleLaneTx(), plain};
    engine.userParams[0][3] = {plain};
    separate();
    EXPECT_THAT(control.txSingleLane, ElementsAre(1, 0, 0, 0));
}

struct WidthExample {
    const char* name;
    unsigned int userWidth;
    unsigned int internalWidth;
    int singleLane;
};

class SingleLaneWidths : public RateTableSelection,
                         public ::testing::WithParamInterface<WidthExample> {};

TEST_P(SingleLaneWidths, AreTwoToOneInWholeNumbers) {
    const WidthExample& example = GetParam();
    engine.userParams[0][0] = {with(with(singleLaneTx(), "TX_USER_DATA_WIDTH", example.userWidth),
                                    "TX_INT_DATA_WIDTH", example.internalWidth)};
    engine.userParams[1][0] = {with(with(singleLaneRx(), "RX_USER_DATA_WIDTH", example.userWidth),
                                    "RX_INT_DATA_WIDTH", example.internalWidth)};
    separate();
    EXPECT_EQ(control.txSingleLane[0], example.singleLane);
    EXPECT_EQ(control.rxSingleLane[0], example.singleLane);
}

INSTANTIATE_TEST_SUITE_P(Widths, SingleLaneWidths,
                         ::testing::Values(WidthExample{"Same", 64, 64, 0},
                                           WidthExample{"Double", 128, 64, 1},
                                           WidthExample{"AlmostThree", 191, 64, 1},
                                           WidthExample{"Three", 192, 64, 0},
                                           WidthExample{"AlmostDouble", 127, 64, 0},
                                           WidthExample{"NoInternalWidth", 64, 0, 0}),
                         [](const auto& tested) { return std::string(tested.param.name); });

struct BadParameter {
    const char* test;
    std::size_t direction;
    const char* name;
    ruleValue value;
};

class BadRateParameter : public RateTableSelection,
                         public ::testing::WithParamInterface<BadParameter> {
  protected:
    parameterMap rate() const {
        return GetParam().direction == 0 ? singleLaneTx() : singleLaneRx();
    }

    static std::string place() {
        return std::string(GetParam().direction == 0 ? " in TX" : " in RX") +
               " of lane 2 at rate 1";
    }
};

TEST_P(BadRateParameter, OfAnotherAlternativeIsRefused) {
    engine.userParams[GetParam().direction][2] = {rate(),
                                                  with(rate(), GetParam().name, GetParam().value)};
    EXPECT_EQ(lanecfg_test::textOfFault<boost::bad_get>([this] { separate(); }),
              GetParam().name + std::string(" has another type") + place());
}

TEST_P(BadRateParameter, ThatIsMissingIsRefused) {
    parameterMap incomplete = rate();
    ASSERT_EQ(incomplete.erase(GetParam().name), 1U);
    engine.userParams[GetParam().direction][2] = {rate(), incomplete};
    EXPECT_EQ(lanecfg_test::textOfFault<boost::bad_get>([this] { separate(); }),
              GetParam().name + std::string(" is missing") + place());
}

INSTANTIATE_TEST_SUITE_P(
    Parameters, BadRateParameter,
    ::testing::Values(BadParameter{"TxCoding", 0, "TX_DATA_ENCODING", 1U},
                      BadParameter{"TxUserWidth", 0, "TX_USER_DATA_WIDTH", std::string("64")},
                      BadParameter{"TxInternalWidth", 0, "TX_INT_DATA_WIDTH", 32.0},
                      BadParameter{"TxBufferMode", 0, "TX_BUFFER_MODE", std::string("1")},
                      BadParameter{"RxCoding", 1, "RX_DATA_DECODING", true},
                      BadParameter{"RxUserWidth", 1, "RX_USER_DATA_WIDTH", 64.0F},
                      BadParameter{"RxInternalWidth", 1, "RX_INT_DATA_WIDTH", ruleValue()},
                      BadParameter{"RxBufferMode", 1, "RX_BUFFER_MODE", true}),
    [](const auto& tested) { return std::string(tested.param.test); });

TEST_F(RateTableSelection, PassesOverAbsentDirectionsAndLanes) {
    engine.userParams = {{{singleLaneTx()}}};
    separate();
    EXPECT_THAT(control.txSingleLane, ElementsAre(1, 0, 0, 0));
    EXPECT_THAT(control.rxSingleLane, ElementsAre(0, 0, 0, 0));
    engine.userParams.clear();
    control = RateTableControl();
    separate();
    EXPECT_THAT(control.txSingleLane, ElementsAre(0, 0, 0, 0));
}

// Masked and other registers

TEST_F(RateTableSelection, MasksWhatBothDirectionsOfAChannelChange) {
    channels[1].txAttributes = {critical("LANE", "channel", 1, 1),
                                critical("LANE_B", "channel", 2, 1)};
    channels[1].rxAttributes = {critical("LANE", "channel", 1, 1),
                                critical("LANE_C", "channel", 3, 1)};
    EXPECT_THAT(separate(), ElementsAre("Masked Attribute List", "CH_1_LANE",
                                        "Non-Masked Attribute List", "CH_1_LANE_B", "CH_1_LANE_C"));
    EXPECT_THAT(control.maskedAttributes, ElementsAre("CH_1_LANE"));
    EXPECT_THAT(control.nonMaskedAttributes, ElementsAre("CH_1_LANE_B", "CH_1_LANE_C"));
}

TEST_F(RateTableSelection, TellsTheSameRegisterOfTwoChannelsApart) {
    channels[0].txAttributes = {critical("LANE", "channel", 1, 0)};
    channels[1].txAttributes = {critical("LANE", "channel", 1, 1)};
    separate();
    EXPECT_THAT(control.maskedAttributes, IsEmpty());
    EXPECT_THAT(control.nonMaskedAttributes, ElementsAre("CH_0_LANE", "CH_1_LANE"));
}

TEST_F(RateTableSelection, MasksRegistersThatTwoChannelsShare) {
    channels[0].txAttributes = {critical("SHARED", "ctrl_0", 1, 0),
                                critical("CLOCK", "hs_clk_0", 2, 0),
                                critical("CALIBRATION", "rcalbg_0", 3, 0)};
    channels[1].txAttributes = {critical("CLOCK", "hs_clk_0", 2, 1)};
    channels[2].txAttributes = {critical("CLOCK", "hs_clk_0", 514, 2)};
    channels[3].rxAttributes = {critical("SHARED", "ctrl_0", 1, 3),
                                critical("CALIBRATION", "rcalbg_0", 3, 3)};
    separate();
    EXPECT_THAT(control.maskedAttributes,
                ElementsAre("CTRL_SHARED", "HS_0_CLOCK", "RCAL_CALIBRATION"));
    EXPECT_THAT(control.nonMaskedAttributes, ElementsAre("HS_1_CLOCK"));
}

TEST_F(RateTableSelection, KeepsARegisterMaskedAtItsThirdWriter) {
    for (int channel = 0; channel < 3; ++channel) {
        channels[channel].txAttributes = {critical("SHARED", "ctrl_0", 1, channel)};
    }
    separate();
    EXPECT_THAT(control.maskedAttributes, ElementsAre("CTRL_SHARED"));
    EXPECT_THAT(control.nonMaskedAttributes, IsEmpty());
}

TEST_F(RateTableSelection, AlwaysMasksTheRegistersThatHardwareShares) {
    channels[0].txAttributes = {critical("PIPE_CTRL_CFG9", "channel", 1, 0)};
    channels[0].rxAttributes = {critical("LCPLL_REFCLK_IPS", "hs_clk_ips", 1, 0)};
    separate();
    EXPECT_THAT(control.maskedAttributes,
                ElementsAre("CH_0_PIPE_CTRL_CFG9", "HS_0_LCPLL_REFCLK_IPS"));
    EXPECT_THAT(control.nonMaskedAttributes, IsEmpty());
}

TEST_F(RateTableSelection, PassesOverTheClockRegistersOfFollowers) {
    channels[1].txMaster = 0;
    channels[3].rxMaster = 2;
    channels[1].txAttributes = {critical("CLOCK", "hs_clk_0", 1, 1),
                                critical("LANE", "channel", 2, 1)};
    channels[1].rxAttributes = {critical("LCPLL_REFCLK_IPS", "hs_clk_ips", 1, 1)};
    channels[3].txAttributes = {critical("CLOCK", "hs_clk_0", 513, 3)};
    channels[3].rxAttributes = {critical("CLOCK", "hs_clk_0", 513, 3)};
    separate();
    EXPECT_THAT(control.nonMaskedAttributes, ElementsAre("CH_1_LANE", "HS_1_CLOCK"));
    EXPECT_THAT(control.maskedAttributes, ElementsAre("HS_0_LCPLL_REFCLK_IPS"));
}

TEST_F(RateTableSelection, NamesARegisterTakenOverByItsOwnDual) {
    channels[2].txMaster = 0;
    channels[0].txAttributes = {critical("CLOCK", "hs_clk_0", 1, 0),
                                critical("CLOCK", "hs_clk_0", 513, 2)};
    separate();
    EXPECT_THAT(control.nonMaskedAttributes, ElementsAre("HS_0_CLOCK", "HS_1_CLOCK"));
}

// The order of writing

TEST_F(RateTableSelection, SortsTheListsOfAnOwnerByAddress) {
    channels[0].txAttributes = {critical("LANE", "channel", 30, 0),
                                critical("LANE_B", "channel", 10, 0),
                                critical("PIPE_CTRL_CFG9", "channel", 20, 0),
                                critical("LCPLL_REFCLK_IPS", "hs_clk_ips", 5, 0)};
    channels[0].rxAttributes = {critical("LANE_C", "channel", 9, 0),
                                critical("SHARED", "ctrl_0", 8, 0)};
    separate();
    sort();
    EXPECT_THAT(namesOf(control.txMasked[0]), ElementsAre("LCPLL_REFCLK_IPS", "PIPE_CTRL_CFG9"));
    EXPECT_THAT(namesOf(control.txNormal[0]), ElementsAre("LANE_B", "LANE"));
    EXPECT_THAT(control.rxMasked[0], IsEmpty());
    EXPECT_THAT(namesOf(control.rxNormal[0]), ElementsAre("SHARED", "LANE_C"));
}

TEST_F(RateTableSelection, KeepsTheOrderOfEqualAddressesWithTheOwnRegisterFirst) {
    // The same address in both duals: the channel's own register, then the one taken over.
    channels[0].txAttributes = {
        critical("LANE", "channel", 7, 0), critical("CLOCK", "hs_clk_0", 7, 0),
        critical("CLOCK", "hs_clk_0", 7, 2), critical("LANE_B", "channel", 7, 0)};
    separate();
    sort();
    ASSERT_THAT(namesOf(control.txNormal[0]), ElementsAre("LANE", "CLOCK", "CLOCK", "LANE_B"));
    EXPECT_EQ(control.txNormal[0][1].channel, 0);
    EXPECT_EQ(control.txNormal[0][2].channel, 2);
}

TEST_F(RateTableSelection, SkipsFollowersInBothDirections) {
    channels[1].txMaster = channels[1].rxMaster = 0;
    channels[1].txAttributes = {critical("LANE", "channel", 1, 1)};
    channels[1].rxAttributes = {critical("LANE_B", "channel", 1, 1)};
    control.rxSingleLane[1] = 1;
    separate();
    const auto lines = sort();
    EXPECT_THAT(lines, Contains("TX Channel 1 Skipped"));
    EXPECT_THAT(lines, Contains("RX Channel 1 Skipped"));
    EXPECT_THAT(control.txNormal[1], IsEmpty());
    EXPECT_THAT(control.rxNormal[1], IsEmpty());
}

TEST_F(RateTableSelection, KeepsOfASingleLaneFollowerOnlyTheAlwaysMaskedRegisters) {
    channels[1].txMaster = 0;
    channels[0].txAttributes = {critical("SHARED", "ctrl_0", 4, 0)};
    channels[1].txAttributes = {critical("SHARED", "ctrl_0", 4, 1),
                                critical("PIPE_CTRL_CFG9", "channel", 5, 1),
                                critical("LANE", "channel", 6, 1)};
    control.txSingleLane[1] = 1;
    separate();
    EXPECT_THAT(sort(), Not(Contains("TX Channel 1 Skipped")));
    EXPECT_THAT(namesOf(control.txMasked[0]), ElementsAre("SHARED"));
    EXPECT_THAT(namesOf(control.txMasked[1]), ElementsAre("PIPE_CTRL_CFG9"));
    EXPECT_THAT(namesOf(control.txNormal[1]), ElementsAre("LANE"));
}

TEST_F(RateTableSelection, KeepsEveryMaskedRegisterOfASingleLaneMaster) {
    channels[0].txAttributes = {critical("SHARED", "ctrl_0", 4, 0)};
    channels[1].txAttributes = {critical("SHARED", "ctrl_0", 4, 1)};
    control.txSingleLane[0] = 1;
    separate();
    sort();
    EXPECT_THAT(namesOf(control.txMasked[0]), ElementsAre("SHARED"));
}

TEST_F(RateTableSelection, DropsARegisterThatNeitherListHolds) {
    channels[3].rxAttributes = {critical("LANE", "channel", 1, 3)};
    EXPECT_THAT(sort(), Contains("Attribute not found: LANE\nThis should not ever happen"));
    EXPECT_THAT(control.rxMasked[3], IsEmpty());
    EXPECT_THAT(control.rxNormal[3], IsEmpty());
}

TEST_F(RateTableSelection, LogsTheWritableListsOfEveryOwner) {
    channels[1].txMaster = channels[1].rxMaster = 0;
    channels[2].txMaster = channels[3].txMaster = 0;
    channels[3].rxMaster = 0;
    channels[0].txAttributes = {critical("LANE", "channel", 17, 0),
                                critical("PIPE_CTRL_CFG9", "channel", 20, 0)};
    channels[2].rxAttributes = {critical("SHARED", "ctrl_0", 8, 2)};
    separate();
    EXPECT_THAT(sort(), ElementsAre("\nChannel 0 Writable Lists\n",
                                    "***TX Masked Writable Lists***", "Name: PIPE_CTRL_CFG9",
                                    "Address: 20", "***TX Writable Lists***", "Name: LANE",
                                    "Address: 17", "TX Channel 1 Skipped", "TX Channel 2 Skipped",
                                    "TX Channel 3 Skipped", "***RX Masked Writable Lists***",
                                    "***RX Writable Lists***", "RX Channel 1 Skipped",
                                    "***RX Masked Writable Lists***", "***RX Writable Lists***",
                                    "Name: SHARED", "Address: 8", "RX Channel 3 Skipped"));
}

TEST_F(RateTableSelection, LogsARegisterOfUnknownTypeAndWritesIt) {
    engine.reg("ODD", "strange");
    channels[0].txAttributes = {critical("ODD", "strange", 1, 0)};
    EXPECT_THAT(separate(),
                ElementsAre("Unexpected attribute type strange for attribute ODD",
                            "Masked Attribute List", "Non-Masked Attribute List", "?????ODD"));
    sort();
    EXPECT_THAT(namesOf(control.txNormal[0]), ElementsAre("ODD"));
}

}  // namespace
