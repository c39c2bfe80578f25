#include "block_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using lanecfg_test::BlockEngine;
using lanecfg_test::BlockSetup;
using sable_lanecfg::ruleValue;
using sable_lanecfg::variableMap;
using sable_lanecfg::varInfo;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;

using attributeMap = std::map<std::string, std::string>;

/// An engine whose snapshots a test writes itself.
class AttributeMap : public ::testing::Test {
  protected:
    /// Gives a channel a snapshot with the labels and the variables.
    void snapshot(std::size_t channel, unsigned int tx, unsigned int rx,
                  const std::map<std::string, ruleValue>& values) {
        if (engine.blockVarMap.size() <= channel) {
            engine.blockVarMap.resize(channel + 1);
        }
        variableMap variables;
        variables["TX"].value = tx;
        variables["RX"].value = rx;
        for (const auto& [name, value] : values) {
            variables[name].value = value;
        }
        engine.blockVarMap[channel].push_back(variables);
    }

    void reg(const std::string& name, const std::string& type) {
        engine.attributes[name] = {type, {}, "0x0"};
    }

    BlockEngine engine{BlockSetup()};
};

struct KeyOfType {
    const char* name;
    const char* type;
    std::size_t channel;
    const char* key;
};

class AttributeKey : public AttributeMap, public ::testing::WithParamInterface<KeyOfType> {};

TEST_P(AttributeKey, FollowsTheBlockType) {
    engine.attributePrefix = "a/";
    engine.portPrefix = "p/";
    reg("REG", GetParam().type);
    snapshot(GetParam().channel, 0, 0, {{"REG", 5U}});
    EXPECT_THAT(engine.getAttribMap(), ElementsAre(Pair(GetParam().key, "5")));
}

INSTANTIATE_TEST_SUITE_P(
    EveryRow, AttributeKey,
    ::testing::Values(KeyOfType{"CalibrationUnit", "rcalbg", 1, "a/RCALBG0_REG"},
                      KeyOfType{"NumberedCalibrationUnit", "rcalbg_5", 3, "a/RCALBG1_REG"},
                      KeyOfType{"ClockGroupOfChannel1", "hs_clk_0", 1, "a/HSCLK0_REG"},
                      KeyOfType{"ClockGroupOfChannel2", "hs_clk_4", 2, "a/HSCLK1_REG"},
                      KeyOfType{"ClockGroupInputs", "hs_clk_ips", 3, "a/HSCLK1_REG"},
                      KeyOfType{"ControlUnit", "ctrl_3", 2, "a/REG"},
                      KeyOfType{"ChannelPort", "CH_PORT", 2, "p/CH2_REG"},
                      KeyOfType{"Channel", "CH", 3, "a/CH3_REG"},
                      KeyOfType{"LowerCaseChannel", "channel", 3, "a/CH3_REG"},
                      KeyOfType{"Dual", "dual", 3, "a/REG"},
                      KeyOfType{"ClockGroupInCapitalsIsAPort", "HSCLK", 3, "p/HSCLK1_REG"},
                      KeyOfType{"ClockGroupPort", "HSCLK_PORT", 1, "p/HSCLK0_REG"},
                      KeyOfType{"QuadPort", "QUAD_PORT", 3, "p/REG"},
                      KeyOfType{"DualPort", "DUAL_PORT", 3, "p/REG"},
                      KeyOfType{"ControlUnitInCapitalsHasNoKey", "CTRL", 0, ""},
                      KeyOfType{"BlankTypeHasNoKey", " ", 2, ""}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_F(AttributeMap, OfTwoChannelFamilyCountsItsOwnUnits) {
    BlockSetup setup;
    setup.family = "SXD4";
    setup.reg("CAL", "rcalbg_0").reg("CLK", "hs_clk_0").parameter("TX_ANY", "int", "0");
    BlockEngine pair(setup);
    pair.setVal("CAL", 1U);
    pair.setVal("CLK", 2U);
    pair.runBlockRules();
    EXPECT_THAT(pair.getAttribMap(),
                ElementsAre(Pair("HSCLK0_CLK", "2"), Pair("RCALBG0_CAL", "1")));
}

TEST_F(AttributeMap, IsEmptyWithoutSnapshots) {
    EXPECT_THAT(engine.getAttribMap(), IsEmpty());
}

TEST_F(AttributeMap, HoldsOnlyTheFirstRateOfBothDirections) {
    reg("REG", "CH");
    snapshot(0, 0, 0, {{"REG", 1U}});
    snapshot(0, 0, 1, {{"REG", 2U}});
    snapshot(0, 1, 0, {{"REG", 3U}});
    snapshot(1, 1, 1, {{"REG", 4U}});
    EXPECT_EQ(engine.getAttribMap(), (attributeMap{{"CH0_REG", "1"}}));
}

TEST_F(AttributeMap, LeavesOutASnapshotWithoutLabels) {
    reg("REG", "CH");
    engine.blockVarMap = {{variableMap{{"REG", varInfo{boost::none, 1U}}}}};
    EXPECT_THAT(engine.getAttribMap(), IsEmpty());
}

TEST_F(AttributeMap, LeavesOutBlankRegistersAndVariablesThatAreNoRegister) {
    reg("BLANK", "CH");
    reg("ABSENT", "CH");
    reg("REG", "CH");
    snapshot(0, 0, 0, {{"BLANK", {}}, {"REG", 1U}, {"REG.FIELD", 1U}});
    EXPECT_EQ(engine.getAttribMap(), (attributeMap{{"CH0_REG", "1"}}));
}

TEST_F(AttributeMap, TakesASharedKeyFromTheLastChannel) {
    reg("CLK", "hs_clk_0");
    reg("CTL", "ctrl_0");
    for (unsigned int channel = 0; channel < 4; ++channel) {
        snapshot(channel, 0, 0, {{"CLK", channel}, {"CTL", 10 + channel}});
    }
    EXPECT_EQ(engine.getAttribMap(),
              (attributeMap{{"HSCLK0_CLK", "1"}, {"HSCLK1_CLK", "3"}, {"CTL", "13"}}));
}

TEST_F(AttributeMap, TakesTheEmptyKeyFromTheLastName) {
    reg("A", " ");
    reg("B", "CTRL");
    snapshot(0, 0, 0, {{"A", 1U}, {"B", 2U}});
    EXPECT_EQ(engine.getAttribMap(), (attributeMap{{"", "2"}}));
}

TEST_F(AttributeMap, RendersEachValueAsText) {
    reg("D", "dual");
    reg("F", "dual");
    reg("S", "dual");
    snapshot(0, 0, 0, {{"D", 1234567.0}, {"F", true}, {"S", std::string("text")}});
    EXPECT_EQ(engine.getAttribMap(),
              (attributeMap{{"D", "1.23457e+06"}, {"F", "1"}, {"S", "text"}}));
}

TEST_F(AttributeMap, RefusesAnUnknownBlockTypeByRegisterAndType) {
    reg("ODD_REG", "CH_odd");
    snapshot(0, 0, 0, {{"ODD_REG", 1U}});
    try {
        engine.getAttribMap();
        FAIL() << "no exception";
    } catch (const std::invalid_argument& error) {
        EXPECT_THAT(error.what(), AllOf(HasSubstr("ODD_REG"), HasSubstr("\"CH_odd\"")));
    }
}

TEST_F(AttributeMap, DoesNotMindAnUnknownBlockTypeOfARegisterWithoutValue) {
    reg("ABSENT", "odd");
    reg("BLANK", "odd");
    reg("LATER", "odd");
    snapshot(0, 0, 0, {{"BLANK", {}}});
    snapshot(0, 1, 0, {{"LATER", 1U}});
    EXPECT_THAT(engine.getAttribMap(), IsEmpty());
}

TEST_F(AttributeMap, RefusesAComposedRegisterThatTheDatabaseLacks) {
    BlockEngine composing(BlockSetup().parameter("TX_ANY", "int", "0"));
    composing.rule({}, {"LOST_REG"}, [&composing] {
        composing.setVal("LOST_REG", composing.generateRegister("LOST_REG"));
    });
    composing.runBlockRules();
    try {
        composing.getAttribMap();
        FAIL() << "no exception";
    } catch (const std::invalid_argument& error) {
        EXPECT_THAT(error.what(), HasSubstr("LOST_REG"));
    }
}

}  // namespace
