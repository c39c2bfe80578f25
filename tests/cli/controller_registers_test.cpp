#include "controller_registers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;
using sable_lanecfg::attributeInfo;
using testing::ElementsAre;
using testing::IsEmpty;

attributeInfo registerAt(const std::string& type, const std::string& offset) {
    return {type, {}, offset};
}

struct PlaceExample {
    const char* name;
    const char* type;
    unsigned channel;
    unsigned address;
    bool isOfLane;
};

class PlaceOfRegister : public testing::TestWithParam<PlaceExample> {};

TEST_P(PlaceOfRegister, IsTheOffsetInItsBlock) {
    const ControllerRegisters registers({{"R", registerAt(GetParam().type, "0x21")}});
    const std::optional<RegisterPlace> place = registers.placeOf("R", GetParam().channel);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->address, GetParam().address);
    EXPECT_EQ(place->isOfLane, GetParam().isOfLane);
}

// Blocks of the second dual stand 512 or 768 words behind the first.
INSTANTIATE_TEST_SUITE_P(Blocks, PlaceOfRegister,
                         testing::Values(PlaceExample{"Lane", "channel", 3, 0x21, true},
                                         PlaceExample{"FirstDual", "hs_clk_0", 1, 0x21, false},
                                         PlaceExample{"SecondDual", "hs_clk_0", 2, 0x221, false},
                                         PlaceExample{"OtherClocks", "hs_clk_1", 3, 0x321, false},
                                         PlaceExample{"Quad", "ctrl_0", 3, 0x21, false},
                                         PlaceExample{"SecondControl", "ctrl_1", 3, 0x121, false},
                                         PlaceExample{"Calibration", "rcalbg_1", 0, 0x321, false},
                                         PlaceExample{"UnknownBlock", "other", 3, 0x21, false}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(ControllerRegisters, CutAddressesToTenBits) {
    const ControllerRegisters registers({{"R", registerAt("ctrl_3", "0x121")}});
    // 768 + 0x121 is 0x421.
    EXPECT_EQ(registers.placeOf("R", 0)->address, 0x21U);
}

struct PlacelessRegister {
    const char* name;
    const char* type;
    const char* offset;
};

class RegisterWithoutPlace : public testing::TestWithParam<PlacelessRegister> {};

TEST_P(RegisterWithoutPlace, HasNoneInChannelTwo) {
    const ControllerRegisters registers({{"R", registerAt(GetParam().type, GetParam().offset)}});
    EXPECT_EQ(registers.placeOf("R", 2), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Each, RegisterWithoutPlace,
    testing::Values(PlacelessRegister{"PortOfAChannel", "CH_PORT", "0x1"},
                    PlacelessRegister{"CalibrationOfOtherChannels", "rcalbg", "0x1"},
                    PlacelessRegister{"ClockBlockThatIsNotKnown", "hs_other", "0x1"},
                    PlacelessRegister{"OffsetThatIsNoNumber", "channel", "none"},
                    PlacelessRegister{"OffsetTooLarge", "channel", "fffffffffffffffff"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(RegisterOffset, IsTheHexadecimalNumberWithWhichTheTextBegins) {
    EXPECT_EQ(offsetOf(registerAt("channel", "0x1A")), 26U);
    EXPECT_EQ(offsetOf(registerAt("channel", "1a words")), 26U);
}

TEST(RegisterOffset, IsNoneWhereTheTextBeginsWithNone) {
    EXPECT_EQ(offsetOf(registerAt("channel", "")), std::nullopt);
    EXPECT_EQ(offsetOf(registerAt("channel", "zz")), std::nullopt);
}

TEST(PortType, IsOneThatNamesPortsAndNoBlock) {
    EXPECT_TRUE(isPortType("CH_PORT"));
    EXPECT_FALSE(isPortType("ch_PORT"));
    EXPECT_FALSE(isPortType("channel"));
}

TEST(ControllerRegisters, HaveNoPlaceForARegisterThatTheDatabaseLacks) {
    const ControllerRegisters registers({{"R", registerAt("channel", "0x1")}});
    EXPECT_EQ(registers.placeOf("S", 0), std::nullopt);
    EXPECT_THAT(registers.fieldsOf("S"), IsEmpty());
}

TEST(ControllerRegisters, AreFoundByTheAddressesOfAllTheirBlocks) {
    const ControllerRegisters registers({{"CLOCK", registerAt("hs_clk_0", "0x10")},
                                         {"LANE", registerAt("channel", "0x20")},
                                         {"QUAD", registerAt("ctrl_0", "0x20")}});
    EXPECT_THAT(registers.namesAt(0x10), ElementsAre("CLOCK"));
    EXPECT_THAT(registers.namesAt(0x210), ElementsAre("CLOCK"));
    EXPECT_THAT(registers.namesAt(0x20), ElementsAre("LANE", "QUAD"));
    EXPECT_THAT(registers.namesAt(0x30), IsEmpty());
}

}  // namespace
}  // namespace lanecfg_test
