#include "rate_table_rows.h"

#include "cli/rate_table_words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;
using testing::ElementsAre;

/// A register of a lane with two fields, one that two duals have, and two at one address.
ControllerRegisters someRegisters() {
    return ControllerRegisters({{"LANE", {"channel", {{"LANE.A", {0, 4}}}, "0x10"}},
                                {"CLOCK", {"hs_clk_0", {{"CLOCK.B", {8, 8}}}, "0x20"}},
                                {"ONE", {"channel", {{"ONE.F", {0, 8}}}, "0x30"}},
                                {"OTHER", {"ctrl_0", {{"OTHER.F", {0, 8}}}, "0x30"}}});
}

TEST(WordRows, HaveIndexAndBothForms) {
    EXPECT_EQ(csvText(wordRows({0x1ea801c3, 5})),
              "word,hex,digits\n"
              "0,0x1ea801c3,00011110101010000000000111000011\n"
              "1,0x00000005,00000000000000000000000000000101\n");
}

TEST(WriteRows, TellRateRegisterAndChanges) {
    // Address 0x10 masked and 0x220 plain: bit 23, 0x220 at bit 13, 0x10 at bit 3, bit 2.
    const std::uint32_t pair = (1U << 23) | (0x220U << 13) | (0x10U << 3) | 4U;
    const DecodedRateTable table =
        decodeRateTable(tableOfOneChannel(2, {pair, 0xf, 3, 0x0500, pair, 0xf, 4, 0x0500}));
    EXPECT_EQ(csvText(writeRows(table, someRegisters())),
              "channel,direction,rate,word,group,lane,address,register,mask,value,changes\n"
              "0,TX,0,10,pair,,0x010,LANE,0x0000000f,0x00000003,A 3\n"
              "0,TX,0,10,pair,,0x220,CLOCK,,0x00000500,\n"
              "0,TX,1,14,pair,,0x010,LANE,0x0000000f,0x00000004,A 3 -> 4\n"
              "0,TX,1,14,pair,,0x220,CLOCK,,0x00000500,\n");
}

TEST(WriteRows, TellLanesAndBursts) {
    // Lane 2, enabled, address 0x10; then a burst at 1, 2 and 3.
    const std::uint32_t lane = (2U << 26) | (1U << 25) | (0x10U << 13) | (0x10U << 3);
    const std::uint32_t burst = (1U << 22) | (7U << 6) | (2U << 2) | 2U;
    const DecodedRateTable table = decodeRateTable(tableOfOneChannel(1, {lane, 3, burst, 4, 5, 6}));
    EXPECT_EQ(csvText(writeRows(table, someRegisters())),
              "channel,direction,rate,word,group,lane,address,register,mask,value,changes\n"
              "0,TX,0,10,one,2,0x010,LANE,,0x00000003,\n"
              "0,TX,0,12,burst,,0x001,,,0x00000004,\n"
              "0,TX,0,12,burst,,0x002,,,0x00000005,\n"
              "0,TX,0,12,burst,,0x003,,,0x00000006,\n");
}

TEST(WriteRows, NameAllRegistersAtAnAddressAndThenNoFields) {
    const std::uint32_t one = (0x30U << 13) | (0x30U << 3);
    const DecodedRateTable table = decodeRateTable(tableOfOneChannel(2, {one, 1, one, 3}));
    EXPECT_THAT(csvText(writeRows(table, someRegisters())),
                testing::HasSubstr("0,TX,1,12,one,,0x030,ONE or OTHER,,0x00000003,"
                                   "bits 0x00000002 0x00000000 -> 0x00000002\n"));
}

TEST(HeaderLines, TellOfDuplexChannelsAndFollowers) {
    const DecodedRateTable table = decodeRateTable(tableOfOneChannel(2, {0, 1, 0, 2}));
    EXPECT_THAT(
        headerLines(table),
        ElementsAre("Channel 0: duplex, TX and RX 2 rates of 2 words from word 10 for channels 0",
                    "Channel 1: duplex, TX and RX 0 rates of 0 words from word 14 for channels "
                    "1 2 3",
                    "Channel 2: duplex, TX and RX follows channel 1",
                    "Channel 3: duplex, TX and RX follows channel 1"));
}

TEST(HeaderLines, TellOfSimplexChannelsPcieAndMissingOnes) {
    // Channel 0 alone and simplex, with PCIe; no others.
    const DecodedRateTable table =
        decodeRateTable({3, 3, 0x8010080a, 0x0010080c, 0, 0, 0, 0, 0, 0, 0, 1, 0, 2});
    EXPECT_THAT(headerLines(table),
                ElementsAre("Channel 0: simplex, TX 1 rates of 2 words from word 10 for channels "
                            "0, RX 1 rates of 2 words from word 12 for channels 0, PCIe",
                            "Channel 1: not in this quad", "Channel 2: not in this quad",
                            "Channel 3: not in this quad"));
}

TEST(HeaderDocument, HasBothDirectionsOfEachChannel) {
    const DecodedRateTable table = decodeRateTable(tableOfOneChannel(2, {0, 1, 0, 2}));
    EXPECT_EQ(jsonText(headerDocument(table).at(1)),
              R"({"channel":1,"present":true,"duplex":true,"pcie":false,)"
              R"("tx":{"master":1,"group":[1,2,3],"rates":0,"block_size":0,"offset":14},)"
              R"("rx":{"master":1,"group":[1,2,3],"rates":0,"block_size":0,"offset":14}})");
}

}  // namespace
}  // namespace lanecfg_test
