#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

struct CommaEnables {
    std::string slideMode;
    bool minus;
    bool plus;
    unsigned int detects;
};

std::vector<RuleCase> commaEnableCases() {
    const std::vector<CommaEnables> rows{{"OFF", false, false, 0}, {"OFF", true, false, 1},
                                         {"OFF", false, true, 1},  {"OFF", true, true, 1},
                                         {"PCS", false, false, 1}, {"PMA", false, false, 1},
                                         {"AUTO", true, false, 1}, {"off", false, false, 1}};
    std::vector<RuleCase> cases;
    for (const CommaEnables& row : rows) {
        const unsigned int minus = row.minus ? 1 : 0;
        const unsigned int plus = row.plus ? 1 : 0;
        cases.push_back({"RX_PCS_CFG0.RX_COMMADETEN",
                         {{"RX_SLIDE_MODE", row.slideMode},
                          {"RX_COMMA_M_ENABLE", row.minus},
                          {"RX_COMMA_P_ENABLE", row.plus}},
                         {{"RX_PCS_CFG0.RX_COMMADETEN", row.detects},
                          {"RX_PCS_CFG0.RX_MCOMMA_ALIGNEN", minus},
                          {"RX_PCS_CFG0.RX_ALIGN_MCOMMA_DET", minus},
                          {"RX_PCS_CFG2.RX_DEC_MCOMMA_DET", minus},
                          {"RX_PCS_CFG0.RX_PCOMMA_ALIGNEN", plus},
                          {"RX_PCS_CFG0.RX_ALIGN_PCOMMA_DET", plus},
                          {"RX_PCS_CFG2.RX_DEC_PCOMMA_DET", plus}}});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfCommaDetection, SxbLaneRule, testing::ValuesIn(commaEnableCases()),
                         caseName);

std::vector<RuleCase> binaryNumberCases() {
    const std::vector<std::pair<std::string, std::string>> fields{
        {"RX_PCS_CFG0.RX_ALIGN_PCOMMA_VAL", "RX_COMMA_P_VAL"},
        {"RX_PCS_CFG0.RX_ALIGN_MCOMMA_VAL", "RX_COMMA_M_VAL"},
        {"RX_PCS_CFG1.RX_ALIGN_COMMA_ENABLE", "RX_COMMA_MASK"}};
    const std::vector<std::pair<std::string, unsigned int>> numbers{
        {"0101111100", 380},
        {"1010000011", 643},
        {"1111111111", 1023},
        {"0000000000", 0},
        {"1", 1},
        {"11111111111111111111111111111111", 4294967295U},
        {"0000000000000000000000000000000000000011", 3},
        // 33 digits are more than a field holds.
        {"100000000000000000000000000000000", 0},
        {"", 0},
        {"x101", 0},
        {" 101", 0},
        {"-1", 0},
        {"+1", 0},
        {"102", 2},
        {"11 1", 3},
        {"0b11", 0}};
    std::vector<RuleCase> cases;
    for (const auto& [field, parameter] : fields) {
        for (const auto& [digits, number] : numbers) {
            cases.push_back(fieldCase(field, {{parameter, digits}}, number));
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfBinaryTexts, SxbLaneRule, testing::ValuesIn(binaryNumberCases()),
                         caseName);

INSTANTIATE_TEST_SUITE_P(
    OfCommaAlignment, SxbLaneRule,
    testing::Values(fieldCase("RX_PCS_CFG1.RX_ALIGN_COMMA_WORD", {{"RX_COMMA_ALIGN_WORD", 1U}}, 1),
                    fieldCase("RX_PCS_CFG1.RX_ALIGN_COMMA_WORD", {{"RX_COMMA_ALIGN_WORD", 4U}}, 4),
                    fieldCase("RX_PCS_CFG1.RX_SLIDE_MODE", {{"RX_SLIDE_MODE", "OFF"s}}, 0),
                    fieldCase("RX_PCS_CFG1.RX_SLIDE_MODE", {{"RX_SLIDE_MODE", "AUTO"s}}, 1),
                    fieldCase("RX_PCS_CFG1.RX_SLIDE_MODE", {{"RX_SLIDE_MODE", "PCS"s}}, 2),
                    fieldCase("RX_PCS_CFG1.RX_SLIDE_MODE", {{"RX_SLIDE_MODE", "PMA"s}}, 3),
                    fieldCase("RX_PCS_CFG1.RX_SLIDE_MODE", {{"RX_SLIDE_MODE", "other"s}}, 0),
                    fieldCase("RX_PCS_CFG1.RX_SHOW_REALIGN_COMMA",
                              {{"RX_SLIDE_MODE", "OFF"s}, {"RX_COMMA_DOUBLE_ENABLE", false}}, 1),
                    fieldCase("RX_PCS_CFG1.RX_SHOW_REALIGN_COMMA",
                              {{"RX_SLIDE_MODE", "OFF"s}, {"RX_COMMA_DOUBLE_ENABLE", true}}, 0),
                    fieldCase("RX_PCS_CFG1.RX_SHOW_REALIGN_COMMA",
                              {{"RX_SLIDE_MODE", "PCS"s}, {"RX_COMMA_DOUBLE_ENABLE", false}}, 0),
                    fieldCase("RX_PCS_CFG1.RX_SHOW_REALIGN_COMMA",
                              {{"RX_SLIDE_MODE", "PCS"s}, {"RX_COMMA_DOUBLE_ENABLE", true}}, 0)),
    caseName);

}  // namespace
}  // namespace lanecfg_test
