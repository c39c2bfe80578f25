#include "sxb_field_case.h"
#include "sxb_pll_sides.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

const char* const alignmentMode = "RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE";

/// An unbuffered asynchronous lane with twice the internal width.
VariableValues wideGearbox(const TestedSide& side) {
    return {{side.word + "_BUFFER_MODE", 0U},
            {side.coding, "64B66B_ASYNC"s},
            {side.word + "_SYNCDONE_POSITION", "above"s},
            {side.word + "_USER_DATA_WIDTH", 64U},
            {side.word + "_INT_DATA_WIDTH", 32U}};
}

VariableValues wideTransmitter() {
    return with(wideGearbox(testedSides()[0]), {{"TX_OUTCLK_SOURCE", "TXOUTCLKPMA"s},
                                                {"TX_PLL_TYPE", "LCPLL"s},
                                                {"RX_PLL_TYPE", "RPLL"s}});
}

std::vector<FieldCase> bypassCases() {
    std::vector<FieldCase> cases;
    for (const TestedSide& side : testedSides()) {
        const std::string field = "PIPE_CTRL_CFG7." + side.word + "_DA_BYP";
        const VariableValues wide = with(wideTransmitter(), wideGearbox(side));
        append(cases,
               {{field, wide, 1},
                {field, with(wide, {{side.word + "_SYNCDONE_POSITION", "single"s}}), 0},
                {field, with(wide, {{side.word + "_SYNCDONE_POSITION", "IM"s}}), 1},
                {field, with(wide, {{side.coding, "64B66B_SYNC"s}}), 0},
                {field, with(wide, {{side.coding, "64B66B_ASYNC_CAUI"s}}), 0},
                {field, with(wide, {{side.word + "_USER_DATA_WIDTH", 32U}}), 0},
                {field, with(wide, {{side.word + "_USER_DATA_WIDTH", 95U}}), 1},
                {field, with(wide, {{side.word + "_USER_DATA_WIDTH", 128U}}), 0},
                {field, with(wide, {{side.word + "_BUFFER_MODE", 1U}}), 1},
                {field, with(wide, {{side.word + "_BUFFER_MODE", 2U}, {side.coding, "RAW"s}}), 1}});
    }
    return cases;
}

/// A buffered raw transmitter on its programmable clock, whose PLL is not the receiver's.
VariableValues bufferedRawClock() {
    return with(wideTransmitter(), {{"TX_BUFFER_MODE", 1U},
                                    {"TX_OUTCLK_SOURCE", "TXPROGDIVCLK"s},
                                    {"TX_DATA_ENCODING", "RAW"s}});
}

std::vector<FieldCase> bufferedTransmitterBypassCases() {
    const std::string field = "PIPE_CTRL_CFG7.TX_DA_BYP";
    return {
        {field, bufferedRawClock(), 0},
        {field, with(bufferedRawClock(), {{"RX_PLL_TYPE", "LCPLL"s}}), 1},
        {field, with(bufferedRawClock(), {{"TX_PLL_TYPE", "RPLL"s}, {"RX_PLL_TYPE", "RPLL"s}}), 1},
        {field, with(bufferedRawClock(), {{"TX_OUTCLK_SOURCE", "TXOUTCLKPMA"s}}), 1},
        {field, with(bufferedRawClock(), {{"TX_DATA_ENCODING", "8B10B"s}}), 1}};
}

/// The receiver takes no notice of clock sources.
std::vector<FieldCase> bufferedReceiverBypassCases() {
    return {{"PIPE_CTRL_CFG7.RX_DA_BYP",
             with(bufferedRawClock(), {{"RX_BUFFER_MODE", 1U},
                                       {"RX_OUTCLK_SOURCE", "RXPROGDIVCLK"s},
                                       {"RX_DATA_DECODING", "RAW"s}}),
             1}};
}

INSTANTIATE_TEST_SUITE_P(AlignerBypass, SxbLaneRule, testing::ValuesIn(ruleCases(bypassCases())),
                         caseName);
INSTANTIATE_TEST_SUITE_P(AlignerBypassOfABufferedTransmitter, SxbLaneRule,
                         testing::ValuesIn(ruleCases(bufferedTransmitterBypassCases())), caseName);
INSTANTIATE_TEST_SUITE_P(AlignerBypassOfABufferedReceiver, SxbLaneRule,
                         testing::ValuesIn(ruleCases(bufferedReceiverBypassCases())), caseName);

/// A raw lane at its internal width, on its programmable clock divided by eight; a master that
/// multi-lane alignment does not keep.
VariableValues programmableClock(const TestedSide& side) {
    return {{side.word + "_USER_DATA_WIDTH", 32U},
            {side.word + "_INT_DATA_WIDTH", 32U},
            {side.coding, "RAW"s},
            {side.word + "_OUTCLK_SOURCE", side.word + "PROGDIVCLK"},
            {"INT_" + side.word + "OUTCLKDIV_FOR_PROGDIV_PATH", 8U},
            {side.word + "_SYNCDONE_POSITION", "single"s},
            {side.word + "_BUFFER_BYPASS_MODE", "Multi_Lane"s},
            {"PIPE_CTRL_CFG7." + side.word + "_DA_BYP", 0U},
            {side.word + "_MAINTAIN_MASTER", false}};
}

std::vector<std::string> dividerFields(const TestedSide& side) {
    return {"PIPE_CTRL_CFG7." + side.word + "_DABYP_DIVSEL",
            "PIPE_CTRL_CFG7." + side.word + "_DA_DIVSEL"};
}

std::vector<FieldCase> dividerCodeCases() {
    const std::vector<std::pair<unsigned int, unsigned int>> rows{
        {1, 0},  {2, 1},   {3, 2},   {4, 3},   {6, 4},    {8, 5}, {12, 6}, {16, 7}, {24, 8},
        {32, 9}, {48, 10}, {64, 11}, {96, 12}, {128, 13}, {0, 0}, {5, 0},  {256, 0}};
    std::vector<FieldCase> cases;
    for (const TestedSide& side : testedSides()) {
        for (const std::string& field : dividerFields(side)) {
            for (const auto& [divider, code] : rows) {
                cases.push_back(
                    {field,
                     with(programmableClock(side),
                          {{"INT_" + side.word + "OUTCLKDIV_FOR_PROGDIV_PATH", divider}}),
                     code});
            }
        }
    }
    return cases;
}

/// Clocks that are not programmable are divided by one or two, codes 0 and 1.
std::vector<FieldCase> fixedClockCases() {
    std::vector<FieldCase> cases;
    for (const TestedSide& side : testedSides()) {
        const std::string userWidth = side.word + "_USER_DATA_WIDTH";
        const std::string internalWidth = side.word + "_INT_DATA_WIDTH";
        const std::string source = side.word + "_OUTCLK_SOURCE";
        const VariableValues pma =
            with(programmableClock(side), {{source, side.word + "OUTCLKPMA"}, {userWidth, 64U}});
        const VariableValues eightToTen =
            with(pma, {{side.coding, "8B10B"s}, {internalWidth, 20U}});
        for (const std::string& field : dividerFields(side)) {
            append(cases, {{field, pma, 1},
                           {field, with(pma, {{source, side.word + "OUTCLKPCS"}}), 1},
                           {field, with(pma, {{source, side.word + "PLLREFCLK"}}), 0},
                           {field, with(pma, {{source, "CLKTESTSIG"s}}), 0},
                           {field, with(pma, {{userWidth, 32U}}), 0},
                           {field, with(pma, {{userWidth, 128U}}), 0},
                           // 40 over 20; without the wider coding 32 over 20.
                           {field, with(eightToTen, {{userWidth, 32U}}), 1},
                           {field, with(eightToTen, {{userWidth, 32U}, {side.coding, "RAW"s}}), 0},
                           {field, with(eightToTen, {{userWidth, 16U}}), 0},
                           // 58.75 and 60 over 20.
                           {field, with(eightToTen, {{userWidth, 47U}}), 1},
                           {field, with(eightToTen, {{userWidth, 48U}}), 0},
                           // Only 8B10B is wider here.
                           {field, with(pma, {{side.coding, "64B66B_ASYNC"s}}), 1}});
        }
    }
    return cases;
}

/// Beside the aligner the programmable divider stands whatever the lane is like.
std::vector<FieldCase> programmableBypassCases() {
    std::vector<FieldCase> cases;
    for (const TestedSide& side : testedSides()) {
        cases.push_back({"PIPE_CTRL_CFG7." + side.word + "_DABYP_DIVSEL",
                         with(programmableClock(side), {{side.word + "_USER_DATA_WIDTH", 64U},
                                                        {side.word + "_MAINTAIN_MASTER", true}}),
                         5});
    }
    return cases;
}

std::vector<FieldCase> programmableAlignerCases() {
    std::vector<FieldCase> cases;
    for (const TestedSide& side : testedSides()) {
        const std::string field = "PIPE_CTRL_CFG7." + side.word + "_DA_DIVSEL";
        const std::string position = side.word + "_SYNCDONE_POSITION";
        const std::string userWidth = side.word + "_USER_DATA_WIDTH";
        const std::string divider = "INT_" + side.word + "OUTCLKDIV_FOR_PROGDIV_PATH";
        const std::string keepsMaster = side.word + "_MAINTAIN_MASTER";
        const VariableValues lane = programmableClock(side);
        const VariableValues gearbox =
            with(lane, {{side.coding, "64B66B_ASYNC"s}, {position, "above"s}, {userWidth, 64U}});
        const VariableValues doubled = with(lane, {{userWidth, 64U}, {keepsMaster, true}});
        append(
            cases,
            {{field, lane, 5},
             // A quarter: 8 is 2, 12 is 3, 6 is 1, 2 is 0 and no key.
             {field, gearbox, 1},
             {field, with(gearbox, {{divider, 12U}}), 2},
             {field, with(gearbox, {{divider, 6U}}), 0},
             {field, with(gearbox, {{divider, 2U}}), 0},
             {field, with(gearbox, {{divider, 128U}}), 9},
             {field, with(gearbox, {{position, "single"s}}), 5},
             {field, with(gearbox, {{userWidth, 32U}}), 5},
             {field, with(gearbox, {{side.coding, "64B66B_SYNC"s}}), 5},
             // The quarter goes before the doubling.
             {field, with(gearbox, {{keepsMaster, true}}), 1},
             {field, with(gearbox, {{keepsMaster, true}, {position, "single"s}}), 7},
             // Doubled: 8 is 16, 3 is 6, 128 is no key.
             {field, doubled, 7},
             {field, with(doubled, {{divider, 3U}}), 4},
             {field, with(doubled, {{divider, 128U}}), 0},
             {field, with(doubled, {{userWidth, 32U}}), 5},
             {field, with(doubled, {{side.word + "_BUFFER_BYPASS_MODE", "Fast_Sync"s}}), 5},
             {field, with(doubled, {{"PIPE_CTRL_CFG7." + side.word + "_DA_BYP", 1U}}), 5},
             {field, with(doubled, {{keepsMaster, false}}), 5},
             // The width on the line counts: 64 bits of 8B10B are 80, twice 40.
             {field, with(doubled, {{side.coding, "8B10B"s}, {side.word + "_INT_DATA_WIDTH", 40U}}),
              7}});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(AlignerDividerCodes, SxbLaneRule,
                         testing::ValuesIn(ruleCases(dividerCodeCases())), caseName);
INSTANTIATE_TEST_SUITE_P(AlignerDividersOfFixedClocks, SxbLaneRule,
                         testing::ValuesIn(ruleCases(fixedClockCases())), caseName);
INSTANTIATE_TEST_SUITE_P(AlignerDividersBesideTheAligner, SxbLaneRule,
                         testing::ValuesIn(ruleCases(programmableBypassCases())), caseName);
INSTANTIATE_TEST_SUITE_P(AlignerDividersThroughTheAligner, SxbLaneRule,
                         testing::ValuesIn(ruleCases(programmableAlignerCases())), caseName);

std::vector<FieldCase> clockControlCases() {
    const std::vector<std::pair<std::string, unsigned int>> rows{
        {"OUTCLKPCS", 1}, {"OUTCLKPMA", 2}, {"PLLREFCLK", 3}, {"PROGDIVCLK", 5}, {"ELSEWHERE", 0}};
    std::vector<FieldCase> cases;
    for (const auto& [source, code] : rows) {
        cases.push_back(
            {"PIPE_CTRL_CFG7.TXOUTCLKCTL", {{"TX_OUTCLK_SOURCE", "TX" + source}}, code});
        cases.push_back({"PIPE_CTRL_CFG7.RXOUTCLKCTL",
                         {{"RX_OUTCLK_SOURCE", "RX" + source}, {alignmentMode, 0U}},
                         code});
        cases.push_back({"PIPE_CTRL_CFG7.RXOUTCLKCTL",
                         {{"RX_OUTCLK_SOURCE", "RX" + source}, {alignmentMode, 3U}},
                         6});
    }
    append(cases, {{"PIPE_CTRL_CFG7.TXOUTCLKCTL", {{"TX_OUTCLK_SOURCE", "CLKTESTSIG"s}}, 6},
                   // Words of the other side are unknown.
                   {"PIPE_CTRL_CFG7.TXOUTCLKCTL", {{"TX_OUTCLK_SOURCE", "RXOUTCLKPMA"s}}, 0},
                   {"PIPE_CTRL_CFG7.RXOUTCLKCTL",
                    {{"RX_OUTCLK_SOURCE", "CLKTESTSIG"s}, {alignmentMode, 2U}},
                    6},
                   {"PIPE_CTRL_CFG7.RXOUTCLKCTL",
                    {{"RX_OUTCLK_SOURCE", "TXOUTCLKPMA"s}, {alignmentMode, 1U}},
                    0}});
    return cases;
}

std::vector<FieldCase> alignerPowerCases() {
    std::vector<FieldCase> cases;
    for (const TestedSide& side : testedSides()) {
        const std::string power = "DA_CFG." + side.word + "_DA_PWRDNB";
        const std::string range = "DA_CFG." + side.word + "_DA_RANGE";
        const std::string clock = "INT_FREQ_INTO_" + side.word + "_DA";
        const std::string reference = "DA_CFG." + side.word + "_DA_REFCLK_SEL";
        const std::string userWidth = side.word + "_USER_DATA_WIDTH";
        const std::string bypass = "PIPE_CTRL_CFG7." + side.word + "_DA_BYP";
        const VariableValues wide = with(wideGearbox(side), {{bypass, 1U}});
        append(cases, {{power, wide, 1},
                       {power, with(wide, {{userWidth, 32U}}), 0},
                       {power, with(wide, {{side.coding, "RAW"s}}), 0},
                       {power, with(wide, {{side.coding, "RAW"s}, {bypass, 0U}}), 1},
                       {power, with(wide, {{userWidth, 32U}, {bypass, 0U}}), 1},
                       {range, {{clock, 1.0}}, 0},
                       {range, {{clock, 1.0000001}}, 1},
                       {range, {{clock, 2.0}}, 1},
                       {range, {{clock, 0.0}}, 0},
                       {reference, {{side.word + "_PLL_TYPE", "LCPLL"s}}, 1},
                       {reference, {{side.word + "_PLL_TYPE", "RPLL"s}}, 0}});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OutputClockControl, SxbLaneRule,
                         testing::ValuesIn(ruleCases(clockControlCases())), caseName);
INSTANTIATE_TEST_SUITE_P(AlignerPowerAndRange, SxbLaneRule,
                         testing::ValuesIn(ruleCases(alignerPowerCases())), caseName);

/// Rules that divide by the internal data width.
std::vector<FieldCase> ratioCases() {
    std::vector<FieldCase> cases;
    for (const TestedSide& side : testedSides()) {
        const VariableValues zero{{side.word + "_INT_DATA_WIDTH", 0U}};
        const VariableValues lane = with(programmableClock(side), zero);
        for (const std::string& field : dividerFields(side)) {
            cases.push_back({field, lane, 0});
        }
        const VariableValues wide = with(with(wideTransmitter(), wideGearbox(side)), zero);
        cases.push_back({"PIPE_CTRL_CFG7." + side.word + "_DA_BYP", wide, 0});
        cases.push_back({"DA_CFG." + side.word + "_DA_PWRDNB",
                         with(wide, {{"PIPE_CTRL_CFG7." + side.word + "_DA_BYP", 1U}}), 0});
        cases.push_back({"PIPE_CTRL_CFG9." + side.word + "SYNCDONE_CONSUMPT_SEL",
                         with(wide, {{"RX_SYNCDONE_POSITION", "above"s}, {alignmentMode, 0U}}), 0});
    }
    return cases;
}

class SxbPllDivisionByZero : public testing::TestWithParam<RuleCase> {};

TEST_P(SxbPllDivisionByZero, ThrowsADomainErrorThatNamesTheWidth) {
    RuleAlone rule(GetParam().rule);
    rule.set(GetParam().inputs);
    const bool isTransmit = GetParam().inputs.count("TX_INT_DATA_WIDTH") != 0 &&
                            GetParam().inputs.at("TX_INT_DATA_WIDTH") == ruleValue(0U);
    const std::string width = isTransmit ? "TX_INT_DATA_WIDTH" : "RX_INT_DATA_WIDTH";
    try {
        rule.runPass();
        FAIL() << "nothing was thrown";
    } catch (const std::domain_error& error) {
        EXPECT_NE(std::string(error.what()).find(width), std::string::npos) << error.what();
    }
}

INSTANTIATE_TEST_SUITE_P(Of, SxbPllDivisionByZero, testing::ValuesIn(ruleCases(ratioCases())),
                         caseName);

}  // namespace
}  // namespace lanecfg_test
