#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

/// A search of the transmitter; the receiver's has its names in the same places.
struct SearchCase {
    std::string name;
    VariableValues changes;
    double divider;
    unsigned int pathDivider;
    double alignerClock;
};

void PrintTo(const SearchCase& row, std::ostream* output) {
    *output << row.name;
}

/// A raw line of 10.3125 Gb/s on the LCPLL whose user clock, 322.265625 MHz, is looked for beside
/// the delay aligner.
VariableValues rawLine() {
    return {{"TX_USER_DATA_WIDTH", 32U},         {"INT_RPLL_PLLCLKOUT", 5.0},
            {"INT_LCPLL_PLLCLKOUT", 10.3125},    {"TXPROGDIV_FREQ_ENABLE", false},
            {"TXPROGDIV_FREQ_SOURCE", "LCPLL"s}, {"TXPROGDIV_FREQ_VAL", 0.0},
            {"PIPE_CTRL_CFG7.TX_DA_BYP", 1U},    {"TX_PLL_TYPE", "LCPLL"s},
            {"TX_LINE_RATE", 10.3125},           {"TX_DATA_ENCODING", "RAW"s}};
}

/// A frequency of the user's own from a PLL clock.
VariableValues ownFrequency(double pllClock, double megahertz, unsigned int bypass) {
    return {{"INT_LCPLL_PLLCLKOUT", pllClock},
            {"TXPROGDIV_FREQ_ENABLE", true},
            {"TXPROGDIV_FREQ_VAL", megahertz},
            {"PIPE_CTRL_CFG7.TX_DA_BYP", bypass}};
}

std::string receiveName(const std::string& name) {
    if (name == "TX_DATA_ENCODING") {
        return "RX_DATA_DECODING";
    }
    std::string renamed = name;
    const std::size_t place = renamed.find("TX");
    return place == std::string::npos ? renamed : renamed.replace(place, 2, "RX");
}

VariableValues ofReceiver(const VariableValues& inputs) {
    VariableValues renamed;
    for (const auto& [name, value] : inputs) {
        renamed[receiveName(name)] = value;
    }
    return renamed;
}

class SxbPllDividerSearch : public testing::TestWithParam<SearchCase> {};

TEST_P(SxbPllDividerSearch, OfTheTransmitter) {
    RuleAlone rule("TX programmable divider search");
    rule.set(with(rawLine(), GetParam().changes));
    rule.runPass();
    EXPECT_EQ(rule.valueOf<double>("INT_TXPROGDIV_SEL"), GetParam().divider);
    EXPECT_EQ(rule.valueOf<unsigned int>("INT_TXOUTCLKDIV_FOR_PROGDIV_PATH"),
              GetParam().pathDivider);
    EXPECT_EQ(rule.valueOf<double>("INT_FREQ_INTO_TX_DA"), GetParam().alignerClock);
}

TEST_P(SxbPllDividerSearch, OfTheReceiver) {
    RuleAlone rule("RX programmable divider search");
    rule.set(ofReceiver(with(rawLine(), GetParam().changes)));
    rule.runPass();
    EXPECT_EQ(rule.valueOf<double>("INT_RXPROGDIV_SEL"), GetParam().divider);
    EXPECT_EQ(rule.valueOf<unsigned int>("INT_RXOUTCLKDIV_FOR_PROGDIV_PATH"),
              GetParam().pathDivider);
    EXPECT_EQ(rule.valueOf<double>("INT_FREQ_INTO_RX_DA"), GetParam().alignerClock);
}

INSTANTIATE_TEST_SUITE_P(
    Finds, SxbPllDividerSearch,
    testing::Values(
        SearchCase{"TheUserClockWithTheFirstDivider", {}, 4.0, 8, 0.0},
        // 10312.5 over 40 is five times eight; the clock told is that of the divider before, 4.
        SearchCase{
            "TheUserClockWithTheSecondDivider", {{"TX_USER_DATA_WIDTH", 40U}}, 5.0, 8, 2.578125},
        SearchCase{"TheUserClockOf8B10B", {{"TX_DATA_ENCODING", "8B10B"s}}, 5.0, 8, 2.578125},
        // 66 is 5.5 times 12; before it came 5.
        SearchCase{"TheUserClockOfTheAsynchronousGearbox",
                   {{"TX_DATA_ENCODING", "64B66B_ASYNC"s}, {"TX_USER_DATA_WIDTH", 64U}},
                   5.5,
                   12,
                   2.0625},
        // 64 of another coding is four times 16.
        SearchCase{"TheUserClockOfAnotherCoding",
                   {{"TX_DATA_ENCODING", "64B66B_SYNC"s}, {"TX_USER_DATA_WIDTH", 64U}},
                   4.0,
                   16,
                   0.0},
        // 5000 over 32 is 156.25, 5.0 over 4 times 8.
        SearchCase{"TheUserClockFromTheRpll",
                   {{"TX_PLL_TYPE", "RPLL"s}, {"TX_LINE_RATE", 5.0}},
                   4.0,
                   8,
                   0.0},
        SearchCase{"TheLcpllForAnyOtherWord", {{"TX_PLL_TYPE", ""s}}, 4.0, 8, 0.0},
        SearchCase{"AnOwnFrequencyFromTheLcpll", ownFrequency(10.0, 1250.0, 1), 4.0, 2, 0.0},
        SearchCase{"AnOwnFrequencyFromTheRpll",
                   with(ownFrequency(10.3125, 1250.0, 1), {{"TXPROGDIV_FREQ_SOURCE", "RPLL"s}}),
                   4.0, 1, 0.0},
        // 10.3125 over 8 is the first clock that fits the aligner and gives twice 322.265625.
        SearchCase{
            "TheUserClockThroughTheAligner", {{"PIPE_CTRL_CFG7.TX_DA_BYP", 0U}}, 8.0, 2, 1.2890625},
        SearchCase{"ThroughTheAlignerForAnyBypassButOne",
                   {{"PIPE_CTRL_CFG7.TX_DA_BYP", 2U}},
                   8.0,
                   2,
                   1.2890625},
        SearchCase{"AClockAtTheAlignersUpperEnd", ownFrequency(8.0, 1000.0, 0), 4.0, 1, 2.0},
        // 8.004 over 4 is too fast, and all that fit are below 1000.5.
        SearchCase{"AClockAboveTheAlignersUpperEnd", ownFrequency(8.004, 1000.5, 0), 0.0, 0,
                   8.004 / 40.0},
        // Half of 20 over 40, in MHz, is 128 times this.
        SearchCase{"AClockAtTheAlignersLowerEnd", ownFrequency(20.0, 1.953125, 0), 40.0, 128, 0.5},
        SearchCase{"AClockBelowTheAlignersLowerEnd", ownFrequency(19.9, 1.943359375, 0), 0.0, 0,
                   19.9 / 40.0},
        SearchCase{"NothingBesideTheAligner", ownFrequency(10.0, 3.0, 1), 0.0, 0, 0.25},
        SearchCase{"NothingThroughTheAligner", ownFrequency(10.0, 3.0, 0), 0.0, 0, 0.25},
        SearchCase{"NothingWithoutALineRate", {{"TX_LINE_RATE", 0.0}}, 0.0, 0, 10.3125 / 40.0},
        SearchCase{"NothingWithoutAWidth", {{"TX_USER_DATA_WIDTH", 0U}}, 0.0, 0, 10.3125 / 40.0},
        SearchCase{"NothingFromAnUnsolvedPll", {{"INT_LCPLL_PLLCLKOUT", 0.0}}, 0.0, 0, 0.0}),
    [](const auto& row) { return row.param.name; });

/// A clock in GHz with the stages that make 1 GHz of it: the first one that does, in the order of
/// the first stage.
struct StageCase {
    double clock;
    double divider;
    unsigned int pathDivider;
};

class SxbPllBothStages : public testing::TestWithParam<StageCase> {};

TEST_P(SxbPllBothStages, DivideTheClockToOneGigahertz) {
    RuleAlone rule("TX programmable divider search");
    rule.set(with(rawLine(), ownFrequency(GetParam().clock, 1000.0, 1)));
    rule.runPass();
    EXPECT_EQ(rule.valueOf<double>("INT_TXPROGDIV_SEL"), GetParam().divider);
    EXPECT_EQ(rule.valueOf<unsigned int>("INT_TXOUTCLKDIV_FOR_PROGDIV_PATH"),
              GetParam().pathDivider);
}

INSTANTIATE_TEST_SUITE_P(
    Clocks, SxbPllBothStages,
    testing::Values(
        // Each of the first three, then multiples of four.
        StageCase{4.0, 4.0, 1}, StageCase{5.0, 5.0, 1}, StageCase{5.5, 5.5, 1},
        StageCase{8.0, 4.0, 2}, StageCase{12.0, 4.0, 3}, StageCase{16.0, 4.0, 4},
        StageCase{24.0, 4.0, 6}, StageCase{32.0, 4.0, 8}, StageCase{48.0, 4.0, 12},
        StageCase{64.0, 4.0, 16}, StageCase{96.0, 4.0, 24}, StageCase{128.0, 4.0, 32},
        StageCase{192.0, 4.0, 48}, StageCase{256.0, 4.0, 64}, StageCase{384.0, 4.0, 96},
        StageCase{512.0, 4.0, 128},
        // Multiples of five, of five and a half, and what only the later ones reach.
        StageCase{10.0, 5.0, 2}, StageCase{20.0, 5.0, 4}, StageCase{40.0, 5.0, 8},
        StageCase{16.5, 5.5, 3}, StageCase{33.0, 5.5, 6}, StageCase{768.0, 8.0, 96},
        StageCase{1024.0, 8.0, 128}, StageCase{960.0, 10.0, 96}, StageCase{1280.0, 10.0, 128},
        StageCase{1536.0, 16.0, 96}, StageCase{2048.0, 16.0, 128}, StageCase{1056.0, 16.5, 64},
        StageCase{2112.0, 16.5, 128}, StageCase{1920.0, 20.0, 96}, StageCase{2560.0, 20.0, 128},
        StageCase{3072.0, 32.0, 96}, StageCase{4096.0, 32.0, 128}, StageCase{3168.0, 33.0, 96},
        StageCase{4224.0, 33.0, 128}, StageCase{3840.0, 40.0, 96}, StageCase{5120.0, 40.0, 128}));

TEST(SxbPllDividerSearchAlone, NeedsNeitherTypeNorRateForAnOwnFrequency) {
    VariableValues inputs = with(rawLine(), ownFrequency(10.0, 1250.0, 1));
    inputs.erase("TX_PLL_TYPE");
    inputs.erase("TX_LINE_RATE");
    inputs.erase("TX_DATA_ENCODING");
    RuleAlone rule("TX programmable divider search");
    rule.set(inputs);
    rule.runPass();
    EXPECT_EQ(rule.valueOf<double>("INT_TXPROGDIV_SEL"), 4.0);
}

}  // namespace
}  // namespace lanecfg_test
