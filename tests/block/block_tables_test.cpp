#include "block/block_tables.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bitset>
#include <sstream>

namespace {

namespace block_tables = sable_lanecfg::block_tables;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

std::vector<std::string> numberedTypes(const std::string& stem, int last) {
    std::vector<std::string> types;
    for (int number = 0; number <= last; ++number) {
        types.push_back(stem + std::to_string(number));
    }
    return types;
}

/// Expected span of every block type of a family.
std::map<std::string, int> spans(int perControlUnit, int perClockGroup, int perCalibrationUnit) {
    std::map<std::string, int> expected{
        {"CH", 1},
        {"CH_PORT", 1},
        {"dual", 2},
        {"DUAL_PORT", 2},
        {" ", -1},
        {"QUAD_PORT", perControlUnit},
        {"CTRL", perControlUnit},
        {"channel", perClockGroup},
        {"HSCLK_PORT", perClockGroup},
        {"HSCLK", perClockGroup},
        {"hs_clk_ips", perClockGroup},
        {"rcalbg", perCalibrationUnit},
    };
    for (const std::string& type : numberedTypes("ctrl_", 5)) {
        expected[type] = perControlUnit;
    }
    for (const std::string& type : numberedTypes("hs_clk_", 4)) {
        expected[type] = perClockGroup;
    }
    for (const std::string& type : numberedTypes("rcalbg_", 5)) {
        expected[type] = perCalibrationUnit;
    }
    return expected;
}

TEST(BlockSpan, FourChannelFamiliesHaveOneControlUnitTwoClockGroupsTwoCalibrationUnits) {
    for (const char* family : {"SXB", "SXC", "SXA"}) {
        EXPECT_EQ(block_tables::blockSpan(family), spans(4, 2, 2)) << family;
    }
}

TEST(BlockSpan, TwoChannelFamilyHasOneOfEachUnit) {
    EXPECT_EQ(block_tables::blockSpan("SXD4"), spans(2, 2, 2));
}

TEST(BlockSpan, TypeChannelIsCountedByClockGroupUnlikeTypeCh) {
    const auto span = block_tables::blockSpan("SXB");
    EXPECT_EQ(span.at("channel"), 2);
    EXPECT_EQ(span.at("CH"), 1);
}

struct BlockPlace {
    const char* type;
    std::vector<int> offsets;
    std::vector<int> bases;
};

class BlockPlaces : public ::testing::TestWithParam<BlockPlace> {};

TEST_P(BlockPlaces, OffsetsAndBases) {
    const BlockPlace& place = GetParam();
    EXPECT_EQ(block_tables::blockOffsets().at(place.type), place.offsets);
    EXPECT_EQ(block_tables::blockBases().at(place.type), place.bases);
}

const std::vector<BlockPlace> blockPlaces{
    {"CH", {0, 0, 0, 0}, {3072, 3328, 3584, 3840}},
    {"channel", {0, 0, 0, 0}, {3072, 3328, 3584, 3840}},
    {"HSCLK", {0, 512}, {3072, 3584}},
    {"hs_clk_0", {0, 512}, {3072, 3584}},
    {"hs_clk_1", {256, 768}, {3328, 3840}},
    {"hs_clk_2", {0, 512}, {3072, 3584}},
    {"hs_clk_3", {256, 768}, {3328, 3840}},
    {"hs_clk_4", {0, 512}, {3072, 3584}},
    {"hs_clk_ips", {0, 768}, {3072, 3840}},
    {"CTRL", {0}, {3072}},
    {"ctrl_0", {0}, {3072}},
    {"ctrl_1", {256}, {3328}},
    {"ctrl_2", {512}, {3584}},
    {"ctrl_3", {768}, {3840}},
    {"ctrl_4", {0}, {3072}},
    {"ctrl_5", {768}, {3840}},
    {"rcalbg", {0, 768}, {3072, 3840}},
    {"rcalbg_0", {0}, {3072}},
    {"rcalbg_1", {768}, {3840}},
    {"rcalbg_2", {0}, {3072}},
    {"rcalbg_3", {768}, {3072}},
    {"rcalbg_4", {0}, {3840}},
    {"rcalbg_5", {768}, {3072}},
};

INSTANTIATE_TEST_SUITE_P(EveryType, BlockPlaces, ::testing::ValuesIn(blockPlaces),
                         [](const auto& tested) { return std::string(tested.param.type); });

TEST(BlockPlaceTables, HoldNothingElse) {
    EXPECT_EQ(block_tables::blockOffsets().size(), blockPlaces.size());
    EXPECT_EQ(block_tables::blockBases().size(), blockPlaces.size());
}

TEST(BlockTables, PllZeroIsTheLcpll) {
    EXPECT_EQ(block_tables::pllNames(), (std::map<int, std::string>{{0, "LCPLL"}, {1, "RPLL"}}));
}

TEST(BlockTables, RegistersThatAreNeverReportedAsStatic) {
    EXPECT_THAT(
        block_tables::staticExcluded(),
        UnorderedElementsAre("A_CFG0", "A_CFG3", "CHCLK_ILO_CFG", "CHCLK_MISC_CFG", "CHL_RSV_CFG4",
                             "CTRL_RSV_CFG0", "EYESCAN_CFG0", "EYESCAN_CFG16", "FABRIC_INTF_CFG0",
                             "FABRIC_INTF_CFG3", "LCPLL_LGC_CFG0", "MST_RESET_CFG", "PIN_CFG0",
                             "PIPE_CTRL_CFG1", "PIPE_CTRL_CFG2", "PIPE_CTRL_CFG4", "PIPE_CTRL_CFG6",
                             "PIPE_CTRL_CFG10", "RESET_CFG", "RX_CDR_CFG0", "RX_DACI2V_CFG0",
                             "RX_PCS_CFG0", "TX_ANA_CFG0"));
}

TEST(BlockTables, OneRegisterIsInEveryRateTable) {
    EXPECT_THAT(block_tables::forcedCritical(), ElementsAre("PIPE_CTRL_CFG7"));
}

TEST(BlockTables, RegistersThatAreOnlyWrittenUnderAMask) {
    EXPECT_THAT(block_tables::alwaysMasked(),
                UnorderedElementsAre("LCPLL_REFCLK_IPS", "RPLL_REFCLK_IPS", "PIPE_CTRL_CFG5",
                                     "PIPE_CTRL_CFG6", "PIPE_CTRL_CFG7", "PIPE_CTRL_CFG9",
                                     "RX_PHALIGN_CFG0", "RX_PHALIGN_CFG1", "TX_PHALIGN_CFG0",
                                     "TX_PHALIGN_CFG1"));
}

TEST(BlockTables, EveryNibbleHasItsLowerCaseDigit) {
    const auto digits = block_tables::nibbleToHex();
    ASSERT_EQ(digits.size(), 16U);
    for (unsigned int value = 0; value < 16; ++value) {
        std::ostringstream digit;
        digit << std::hex << value;
        EXPECT_EQ(digits.at(std::bitset<4>(value).to_string()), digit.str());
    }
}

}  // namespace
