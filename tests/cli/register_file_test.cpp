#include "register_file.h"

#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;

constexpr RegisterPlace ofLane{0x10, true};
constexpr RegisterPlace shared{0x10, false};

/// A group of one register at 0x10.
WriteGroup write(std::uint32_t value, std::optional<std::uint32_t> mask = std::nullopt,
                 std::optional<unsigned> lane = std::nullopt) {
    return {10, false, lane, {{0x10, mask, value}}};
}

TEST(RegisterFile, TakesAPlainWriteAsAWhole) {
    RegisterFile file;
    file.set(ofLane, 1, 0xffff0000);
    file.apply({write(0x1234)}, 1);
    EXPECT_EQ(file.read(ofLane, 1), 0x1234U);
}

TEST(RegisterFile, KeepsTheBitsThatAMaskLeavesOut) {
    RegisterFile file;
    file.set(ofLane, 1, 0xabcdef01);
    file.apply({write(0x12345678, 0x00ff00ff)}, 1);
    EXPECT_EQ(file.read(ofLane, 1), 0xab34ef78U);
}

TEST(RegisterFile, TakesAWriteInTheLaneOfTheTableOnly) {
    RegisterFile file;
    file.apply({write(5)}, 2);
    EXPECT_EQ(file.read(ofLane, 2), 5U);
    EXPECT_EQ(file.read(ofLane, 0), 0U);
    EXPECT_EQ(file.read(ofLane, 3), 0U);
}

TEST(RegisterFile, TakesAWriteForASingleLaneThere) {
    RegisterFile file;
    file.apply({write(5, std::nullopt, 3)}, 2);
    EXPECT_EQ(file.read(ofLane, 3), 5U);
    EXPECT_EQ(file.read(ofLane, 2), 0U);
}

TEST(RegisterFile, TakesAWriteToASharedRegisterWhateverTheLane) {
    RegisterFile file;
    file.apply({write(5, std::nullopt, 3)}, 2);
    EXPECT_EQ(file.read(shared, 0), 5U);
}

TEST(RegisterFile, TakesWritesInTheirOrder) {
    RegisterFile file;
    file.apply({write(0xff), write(0x12, 0x0f)}, 0);
    EXPECT_EQ(file.read(ofLane, 0), 0xf2U);
}

TEST(WritesTo, TellsWhetherARateReachesTheRegisterOfAChannel) {
    const RateWrites own = {write(5)};
    const RateWrites single = {write(5, std::nullopt, 3)};
    EXPECT_TRUE(writesTo(own, 2, ofLane, 2));
    EXPECT_FALSE(writesTo(own, 2, ofLane, 3));
    EXPECT_TRUE(writesTo(own, 2, shared, 3));
    EXPECT_TRUE(writesTo(single, 2, ofLane, 3));
    EXPECT_FALSE(writesTo(single, 2, ofLane, 2));
    EXPECT_FALSE(writesTo(own, 2, RegisterPlace{0x11, true}, 2));
}

}  // namespace
}  // namespace lanecfg_test
