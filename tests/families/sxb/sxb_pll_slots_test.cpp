#include "sxb_field_case.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

/// A field of the two slots with the value in the slot of the dual and the one of an idle slot.
struct SlotRow {
    std::string lowerField;
    std::string upperField;
    std::string input;
    ruleValue given;
    unsigned int inUse;
    unsigned int idle;
};

std::vector<FieldCase> slotCases() {
    const std::vector<SlotRow> rows{
        {"A_CFG1.A_HS0_LCPLLFBDIV", "A_CFG1.A_HS1_LCPLLFBDIV", "INT_LCPLL_FBDIV", 66U, 64, 78},
        {"A_CFG1.A_HS0_RPLLFBDIV", "A_CFG1.A_HS1_RPLLFBDIV", "INT_RPLL_FBDIV", 25U, 23, 78},
        {"A_CFG2.A_HS0_LCPLLSDMDATA", "A_CFG4.A_HS1_LCPLLSDMDATA", "INT_LCPLL_SDMDATA", 6815744U,
         6815744, 0},
        {"A_CFG3.A_HS0_RPLLSDMDATA", "A_CFG5.A_HS1_RPLLSDMDATA", "INT_RPLL_SDMDATA", 8912896U,
         8912896, 0},
        {"A_CFG2.A_HS0_LCPLLPD", "A_CFG4.A_HS1_LCPLLPD", "INT_LCPLL_POWERDOWN", true, 1, 0},
        {"A_CFG2.A_HS0_LCPLLPD", "A_CFG4.A_HS1_LCPLLPD", "INT_LCPLL_POWERDOWN", false, 0, 0},
        {"A_CFG3.A_HS0_RPLLPD", "A_CFG5.A_HS1_RPLLPD", "INT_RPLL_POWERDOWN", true, 1, 0},
        {"A_CFG3.A_HS0_RPLLPD", "A_CFG5.A_HS1_RPLLPD", "INT_RPLL_POWERDOWN", false, 0, 0}};
    std::vector<FieldCase> cases;
    for (const SlotRow& row : rows) {
        append(cases, {{row.lowerField, {{"DUAL", 0U}, {row.input, row.given}}, row.inUse},
                       {row.lowerField, {{"DUAL", 1U}, {row.input, row.given}}, row.idle},
                       {row.lowerField, {{"DUAL", 2U}, {row.input, row.given}}, row.idle},
                       {row.upperField, {{"DUAL", 1U}, {row.input, row.given}}, row.inUse},
                       {row.upperField, {{"DUAL", 0U}, {row.input, row.given}}, row.idle},
                       {row.upperField, {{"DUAL", 2U}, {row.input, row.given}}, row.idle}});
    }
    return cases;
}

/// The start value of the feedback dividers reads like an idle slot.
std::vector<FieldCase> neverSolvedCases() {
    return {{"A_CFG1.A_HS0_LCPLLFBDIV", {{"DUAL", 0U}, {"INT_LCPLL_FBDIV", 80U}}, 78},
            {"A_CFG1.A_HS1_RPLLFBDIV", {{"DUAL", 1U}, {"INT_RPLL_FBDIV", 80U}}, 78}};
}

std::vector<FieldCase> referenceSourceCases() {
    const std::vector<std::pair<std::string, unsigned int>> rows{
        {"R0", 1}, {"R1", 2}, {"R2", 3}, {"R3", 4}, {"R4", 5},
        {"R5", 6}, {"R6", 7}, {"R7", 0}, {"", 0},   {"r0", 0}};
    std::vector<FieldCase> cases;
    for (const auto& [source, code] : rows) {
        append(
            cases,
            {{"LCPLL_REFCLK_IPS.LCPLL_IPS_REFCLK_SEL", {{"INT_LCPLL_REFCLK_SOURCE", source}}, code},
             {"RPLL_REFCLK_IPS.RPLL_IPS_REFCLK_SEL", {{"INT_RPLL_REFCLK_SOURCE", source}}, code}});
    }
    return cases;
}

std::vector<FieldCase> referenceMapCases() {
    std::vector<FieldCase> cases;
    for (const std::string& pll : {"LCPLL"s, "RPLL"s}) {
        const std::string field = pll + "_REFCLK_IPS." + pll + "_REFCLK_MAP";
        append(cases, {{field + "1", {{"DUAL", 0U}}, 1},
                       {field + "1", {{"DUAL", 1U}}, 2},
                       {field + "1", {{"DUAL", 2U}}, 2},
                       {field + "2", {{"DUAL", 0U}}, 2},
                       {field + "2", {{"DUAL", 1U}}, 1},
                       {field + "2", {{"DUAL", 2U}}, 1}});
    }
    return cases;
}

std::vector<FieldCase> siliconCases() {
    const std::string field = "A_CFG0.A_BGRCALOVRD_EN";
    return {{field, {{"siliconRev", "es1"s}}, 1},
            {field, {{"siliconRev", "ES1"s}}, 1},
            {field, {{"siliconRev", "es2"s}}, 0},
            {field, {{"siliconRev", "Es1"s}}, 0},
            {field, {{"siliconRev", ""s}}, 0}};
}

INSTANTIATE_TEST_SUITE_P(Slots, SxbLaneRule, testing::ValuesIn(ruleCases(slotCases())), caseName);
INSTANTIATE_TEST_SUITE_P(SlotsNeverSolved, SxbLaneRule,
                         testing::ValuesIn(ruleCases(neverSolvedCases())), caseName);
INSTANTIATE_TEST_SUITE_P(ReferenceSources, SxbLaneRule,
                         testing::ValuesIn(ruleCases(referenceSourceCases())), caseName);
INSTANTIATE_TEST_SUITE_P(ReferenceMaps, SxbLaneRule,
                         testing::ValuesIn(ruleCases(referenceMapCases())), caseName);
INSTANTIATE_TEST_SUITE_P(EarlySilicon, SxbLaneRule, testing::ValuesIn(ruleCases(siliconCases())),
                         caseName);

}  // namespace
}  // namespace lanecfg_test
