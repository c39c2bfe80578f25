#include "families/sxb/sxb_lane_alignment.h"

#include "sxb_rule_alone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

// Phase alignment and reset done, which both directions have alike.

namespace lanecfg_test {
namespace {

using namespace std::string_literals;
using testing::HasSubstr;

struct Side {
    std::string word;
    std::string coding;
    std::string multiLaneCount;

    std::string parameter(const std::string& name) const { return word + "_" + name; }
    std::string field(const std::string& name) const { return word + "_PHALIGN_CFG" + name; }
};

const std::vector<Side>& sides() {
    static const std::vector<Side> both{
        {"RX", "RX_DATA_DECODING", "RX_PHALIGN_CFG3.MLDLY_SETINIT_PH_CNT"},
        {"TX", "TX_DATA_ENCODING", "TX_PHALIGN_CFG4.MLDLY_SETINIT_PH_CNT"}};
    return both;
}

std::vector<RuleCase> phaseCountCases() {
    // Times 32 these are 0, 32, 64, 96, 128, 160, 192, 224, 256; the last one wraps to 0.
    const std::vector<std::pair<unsigned int, unsigned int>> counts{
        {0, 0},  {1, 7},  {2, 11}, {3, 14},   {4, 15},        {5, 18},
        {6, 21}, {7, 24}, {8, 29}, {100, 29}, {134217728U, 0}};
    std::vector<RuleCase> cases;
    for (const Side& side : sides()) {
        for (const auto& [clocksPerWord, count] : counts) {
            cases.push_back(
                {side.field("1.SETINIT_PH_CNT"),
                 {{side.field("0.DAPI_BUFG_DIV"), clocksPerWord}},
                 {{side.field("1.SETINIT_PH_CNT"), count}, {side.multiLaneCount, count}}});
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfPhaseCounts, SxbLaneRule, testing::ValuesIn(phaseCountCases()),
                         caseName);

struct PhaseStep {
    unsigned int threshold;
    unsigned int count;
};

std::string stepName(const testing::TestParamInfo<PhaseStep>& info) {
    return "At" + std::to_string(info.param.threshold);
}

class SxbPhaseStep : public testing::TestWithParam<PhaseStep> {};

TEST_P(SxbPhaseStep, IsReachedAtItsThresholdAndNotBelow) {
    const auto [threshold, count] = GetParam();
    EXPECT_EQ(sable_lanecfg::initialPhaseCount(threshold), count);
    EXPECT_EQ(sable_lanecfg::initialPhaseCount(threshold + 1), count);
    if (threshold > 0) {
        EXPECT_EQ(sable_lanecfg::initialPhaseCount(threshold - 1), count - 1);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Threshold, SxbPhaseStep,
    testing::Values(PhaseStep{0, 0}, PhaseStep{6, 1}, PhaseStep{8, 2}, PhaseStep{16, 3},
                    PhaseStep{20, 4}, PhaseStep{24, 5}, PhaseStep{28, 6}, PhaseStep{32, 7},
                    PhaseStep{40, 8}, PhaseStep{48, 9}, PhaseStep{56, 10}, PhaseStep{64, 11},
                    PhaseStep{72, 12}, PhaseStep{80, 13}, PhaseStep{96, 14}, PhaseStep{120, 15},
                    PhaseStep{132, 16}, PhaseStep{140, 17}, PhaseStep{156, 18}, PhaseStep{168, 19},
                    PhaseStep{172, 20}, PhaseStep{180, 21}, PhaseStep{196, 22}, PhaseStep{200, 23},
                    PhaseStep{216, 24}, PhaseStep{228, 25}, PhaseStep{232, 26}, PhaseStep{248, 27},
                    PhaseStep{250, 28}, PhaseStep{254, 29}),
    stepName);

TEST(SxbPhaseSteps, BeyondTheLastOneThereIsNone) {
    EXPECT_EQ(sable_lanecfg::initialPhaseCount(4294967295U), 29U);
}

struct SynchronisationRow {
    std::string position;
    bool maintainsMaster;
    std::string bypassMode;
    unsigned int mode;
};

std::vector<RuleCase> synchronisationCases() {
    const std::vector<SynchronisationRow> rows{
        {"IM", false, "Fast_Sync", 1},      {"IM", true, "Fast_Sync", 1},
        {"IM", true, "Single_Sync", 1},     {"single", true, "Fast_Sync", 0},
        {"above", true, "Single_Sync", 2},  {"below", true, "", 2},
        {"above", false, "Single_Sync", 0}, {"single", false, "Fast_Sync", 0}};
    std::vector<RuleCase> cases;
    for (const Side& side : sides()) {
        for (const SynchronisationRow& row : rows) {
            const VariableValues lane{{side.parameter("SYNCDONE_POSITION"), row.position},
                                      {side.parameter("MAINTAIN_MASTER"), row.maintainsMaster},
                                      {side.parameter("BUFFER_BYPASS_MODE"), row.bypassMode},
                                      {side.parameter("USER_DATA_WIDTH"), 64U},
                                      {side.parameter("INT_DATA_WIDTH"), 32U},
                                      {side.coding, "64B66B_SYNC"s}};
            const std::string field = side.field("0.SYNC_MODE");
            const VariableValues asynchronous = with(lane, {{side.coding, "64B66B_ASYNC"s}});
            append(cases,
                   {fieldCase(field, lane, row.mode), fieldCase(field, asynchronous, 0),
                    // 95 over 32 is 2 in whole numbers, 96 is 3.
                    fieldCase(field, with(asynchronous, {{side.parameter("USER_DATA_WIDTH"), 95U}}),
                              0),
                    fieldCase(field, with(asynchronous, {{side.parameter("USER_DATA_WIDTH"), 96U}}),
                              row.mode),
                    fieldCase(field, with(asynchronous, {{side.coding, "64B66B_ASYNC_CAUI"s}}),
                              row.mode)});
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfSynchronisation, SxbLaneRule, testing::ValuesIn(synchronisationCases()),
                         caseName);

std::vector<RuleCase> chainCases() {
    const std::vector<std::pair<std::string, unsigned int>> modes{
        {"top", 1}, {"bottom", 2}, {"middle", 3}, {"single", 0}, {"", 0}};
    std::vector<RuleCase> cases;
    for (const Side& side : sides()) {
        const std::string field = side.field("1.CHAIN_MODE");
        for (const auto& [position, mode] : modes) {
            const VariableValues lane{{side.parameter("PIPE_POSITION"), position},
                                      {side.parameter("USER_DATA_WIDTH"), 64U},
                                      {side.parameter("INT_DATA_WIDTH"), 32U},
                                      {side.coding, "RAW"s}};
            const VariableValues asynchronous = with(lane, {{side.coding, "64B66B_ASYNC"s}});
            append(cases,
                   {fieldCase(field, lane, mode), fieldCase(field, asynchronous, 0),
                    fieldCase(field, with(asynchronous, {{side.parameter("USER_DATA_WIDTH"), 32U}}),
                              mode)});
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfChains, SxbLaneRule, testing::ValuesIn(chainCases()), caseName);

class SxbLaneWithoutInternalWidth : public testing::TestWithParam<std::string> {};

TEST_P(SxbLaneWithoutInternalWidth, IsAFaultThatNamesTheWidthWhateverTheCoding) {
    const std::string field = GetParam();
    const Side& side = field.front() == 'R' ? sides()[0] : sides()[1];
    for (const std::string coding : {"64B66B_ASYNC", "RAW"}) {
        RuleAlone rule(field, {{side.parameter("SYNCDONE_POSITION"), "IM"s},
                               {side.parameter("MAINTAIN_MASTER"), false},
                               {side.parameter("BUFFER_BYPASS_MODE"), "Fast_Sync"s},
                               {side.parameter("PIPE_POSITION"), "top"s},
                               {side.parameter("USER_DATA_WIDTH"), 64U},
                               {side.parameter("INT_DATA_WIDTH"), 0U},
                               {side.coding, coding}});
        try {
            rule.runPass();
            FAIL() << "no fault";
        } catch (const std::domain_error& fault) {
            EXPECT_THAT(fault.what(), HasSubstr(side.parameter("INT_DATA_WIDTH")));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Field, SxbLaneWithoutInternalWidth,
                         testing::Values("RX_PHALIGN_CFG0.SYNC_MODE", "RX_PHALIGN_CFG1.CHAIN_MODE",
                                         "TX_PHALIGN_CFG0.SYNC_MODE",
                                         "TX_PHALIGN_CFG1.CHAIN_MODE"));

std::vector<RuleCase> bypassCases() {
    std::vector<RuleCase> cases;
    for (const Side& side : sides()) {
        for (const std::string field : {"0.DLY_ALIGN_EN", "0.PH_ALIGN_EN"}) {
            append(cases, {fieldCase(side.field(field), {{side.parameter("BUFFER_MODE"), 0U}}, 1),
                           fieldCase(side.field(field), {{side.parameter("BUFFER_MODE"), 1U}}, 0),
                           fieldCase(side.field(field), {{side.parameter("BUFFER_MODE"), 2U}}, 0)});
        }
        const std::string position = side.parameter("SYNCDONE_POSITION");
        for (const auto& [word, value] : {std::pair("single"s, 0U), std::pair("IM"s, 1U),
                                          std::pair("above"s, 1U), std::pair(""s, 1U)}) {
            cases.push_back(fieldCase(side.field("0.SYNC_MULTI_LANE"), {{position, word}}, value));
        }
    }
    append(cases, {fieldCase("RX_PHALIGN_CFG0.RXBUF_BYPASS_MODE", {{"RX_BUFFER_MODE", 0U}}, 1),
                   fieldCase("RX_PHALIGN_CFG0.RXBUF_BYPASS_MODE", {{"RX_BUFFER_MODE", 1U}}, 0),
                   fieldCase("TX_PHALIGN_CFG0.TXBUF_BYPASS_MODE", {{"TX_BUFFER_MODE", 0U}}, 1),
                   fieldCase("TX_PHALIGN_CFG0.TXBUF_BYPASS_MODE", {{"TX_BUFFER_MODE", 1U}}, 0)});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfBypassedBuffers, SxbLaneRule, testing::ValuesIn(bypassCases()),
                         caseName);

struct ResetDoneRow {
    std::string position;
    unsigned int north;
    unsigned int south;
    unsigned int consumption;
};

std::vector<RuleCase> resetDoneCases() {
    const std::vector<ResetDoneRow> rows{{"top", 0, 0, 1},
                                         {"middle", 3, 1, 1},
                                         {"bottom", 2, 0, 3},
                                         {"single", 0, 0, 0},
                                         {"", 0, 0, 0}};
    std::vector<RuleCase> cases;
    for (const Side& side : sides()) {
        for (const std::string lane : {"CH0", "CH1", "CH2", "CH3"}) {
            for (const ResetDoneRow& row : rows) {
                const VariableValues position{
                    {side.parameter(lane + "_RESETDONE_POSITION"), row.position}};
                const std::string field = side.word + "RSTDONE_DIST_SEL." + lane;
                append(cases, {fieldCase(field + "_DISTNORTH_SEL", position, row.north),
                               fieldCase(field + "_DISTSOUTH_SEL", position, row.south),
                               fieldCase(field + "_CONSUMPT_SEL", position, row.consumption)});
            }
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfResetDone, SxbLaneRule, testing::ValuesIn(resetDoneCases()), caseName);

}  // namespace
}  // namespace lanecfg_test
