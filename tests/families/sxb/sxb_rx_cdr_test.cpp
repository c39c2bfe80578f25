#include "families/sxb/sxb_rx_cdr.h"

#include "sxb_rule_alone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;
using testing::HasSubstr;

const std::string recovery = "EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN";

/// A lane whose reference is the partner's, without PCIe.
VariableValues plainLane() {
    return {{"RX_LINE_RATE", 10.3125},  {"INT_RX_OUTDIV", 1.0}, {"RX_INT_DATA_WIDTH", 32U},
            {"INT_RX_EQ_MODE", "DFE"s}, {"RX_SSC_PPM", 0U},     {"RX_PPM_OFFSET", 0U},
            {"PCIE_ENABLE", false},     {"siliconRev", "es2"s}};
}

VariableValues plainLaneWith(const VariableValues& others) {
    return with(plainLane(), others);
}

/// The fields that hold each of the five width settings.
VariableValues widthFields(unsigned int analogue, unsigned int enable, unsigned int data,
                           unsigned int select, unsigned int decision) {
    return {{"EYESCAN_CFG16.RXPMA_ADAP_WIDTH_OVRD", analogue},
            {"EYESCAN_CFG16.RXPMA_CDR_WIDTH_OVRD", analogue},
            {"EYESCAN_CFG16.RXPMA_DES_WIDTH_OVRD", analogue},
            {"EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN", enable},
            {"RX_CDR_CFG0.DATAWIDTH_OVR", data},
            {"RX_CDR_CFG0.SELMODE", select},
            {"RX_CDR_CFG0.LOWLATENCY_OVR", select},
            {"RX_CDR_CFG0.D_SEL_P", decision},
            {"RX_CDR_CFG0.X_SEL_Y", decision},
            {"RX_CDR_CFG0.D_SEL_Y", 0U},
            {"RX_CDR_CFG0.Y_SEL_X", 0U}};
}

struct WidthRow {
    unsigned int width;
    double rate;
    unsigned int analogue;
    unsigned int enable;
    unsigned int data;
    unsigned int select;
    unsigned int decisionOfLpm;
};

std::vector<RuleCase> widthCases() {
    const std::vector<WidthRow> rows{
        {80, 1.0, 0, 0, 7, 1, 1},   {80, 32.0, 0, 0, 7, 1, 1}, {64, 25.0, 0, 0, 6, 1, 1},
        {40, 10.0, 0, 0, 5, 1, 1},  {32, 10.0, 0, 0, 4, 1, 1}, {20, 1.0, 11, 1, 0, 0, 0},
        {20, 2.7, 11, 1, 0, 0, 0},  {20, 2.71, 1, 1, 0, 0, 0}, {20, 5.4, 1, 1, 0, 0, 0},
        {20, 5.41, 0, 0, 3, 1, 1},  {16, 1.0, 10, 1, 0, 0, 0}, {16, 2.7, 10, 1, 0, 0, 0},
        {16, 2.71, 0, 1, 0, 0, 0},  {16, 5.4, 0, 1, 0, 0, 0},  {16, 5.41, 0, 0, 2, 1, 1},
        {128, 10.0, 0, 0, 0, 0, 0}, {0, 10.0, 0, 0, 0, 0, 0}};
    std::vector<RuleCase> cases;
    for (const WidthRow& row : rows) {
        const auto lane =
            plainLaneWith({{"RX_INT_DATA_WIDTH", row.width}, {"RX_LINE_RATE", row.rate}});
        cases.push_back(
            {recovery, with(lane, {{"INT_RX_EQ_MODE", "LPM"s}}),
             widthFields(row.analogue, row.enable, row.data, row.select, row.decisionOfLpm)});
        cases.push_back({recovery, with(lane, {{"INT_RX_EQ_MODE", "DFE"s}}),
                         widthFields(row.analogue, row.enable, row.data, row.select, 0)});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfRecoveryWidths, SxbLaneRule, testing::ValuesIn(widthCases()), caseName);

void expectWidths(const VariableValues& lane, const VariableValues& expected) {
    RuleAlone rule(recovery, lane);
    rule.runPass();
    for (const auto& [name, value] : expected) {
        EXPECT_EQ(rule.value(name), value) << name;
    }
}

TEST(SxbRxRecovery, AWidthOf32KeepsItsOverrideAt21Point6) {
    expectWidths(plainLaneWith({{"RX_LINE_RATE", 21.6}, {"INT_RX_EQ_MODE", "LPM"s}}),
                 widthFields(0, 0, 4, 1, 1));
}

TEST(SxbRxRecovery, AWidthOf32HasNoneAt21Point7) {
    expectWidths(plainLaneWith({{"RX_LINE_RATE", 21.7}, {"INT_RX_EQ_MODE", "LPM"s}}),
                 widthFields(0, 0, 0, 0, 0));
}

VariableValues pcieLaneWith(const VariableValues& others) {
    return with(plainLaneWith({{"PCIE_ENABLE", true}, {"RX_LINE_RATE", 8.0}}), others);
}

TEST(SxbRxRecovery, PcieAt8OverridesTheWidthsOnLaterSilicon) {
    expectWidths(pcieLaneWith({{"siliconRev", "es2"s}}), widthFields(12, 1, 2, 1, 0));
    expectWidths(pcieLaneWith({{"siliconRev", ""s}}), widthFields(12, 1, 2, 1, 0));
}

TEST(SxbRxRecovery, ThePcieOverrideLeavesTheDecisionInputs) {
    expectWidths(pcieLaneWith({{"INT_RX_EQ_MODE", "LPM"s}}), widthFields(12, 1, 2, 1, 1));
}

TEST(SxbRxRecovery, PcieAt8OnTheFirstSiliconKeepsWhatTheWidthGives) {
    expectWidths(pcieLaneWith({{"siliconRev", "ES1"s}}), widthFields(0, 0, 4, 1, 0));
    expectWidths(pcieLaneWith({{"siliconRev", "es1"s}}), widthFields(0, 0, 4, 1, 0));
}

TEST(SxbRxRecovery, OnlyPcieAt8WithAWidthOf32IsOverridden) {
    expectWidths(pcieLaneWith({{"RX_LINE_RATE", 16.0}}), widthFields(0, 0, 4, 1, 0));
    expectWidths(pcieLaneWith({{"RX_INT_DATA_WIDTH", 64U}}), widthFields(0, 0, 6, 1, 0));
    expectWidths(pcieLaneWith({{"PCIE_ENABLE", false}}), widthFields(0, 0, 4, 1, 0));
}

RuleCase scanCase(const VariableValues& others, unsigned int value) {
    return fieldCase("RX_CTLE_CFG1.CDR2APT_SCANMODE1", pcieLaneWith(others), value);
}

INSTANTIATE_TEST_SUITE_P(OfTheScanMode, SxbLaneRule,
                         testing::Values(scanCase({}, 0), scanCase({{"siliconRev", "es1"s}}, 1),
                                         scanCase({{"siliconRev", "ES1"s}}, 1),
                                         scanCase({{"PCIE_ENABLE", false}}, 1),
                                         scanCase({{"RX_LINE_RATE", 16.0}}, 1),
                                         scanCase({{"RX_INT_DATA_WIDTH", 64U}}, 1)),
                         caseName);

RuleCase padCase(const std::string& revision, unsigned int value) {
    return fieldCase("RX_CTLE_CFG1.RCAL_OS_PAD", {{"siliconRev", revision}}, value);
}

INSTANTIATE_TEST_SUITE_P(OfThePadOffset, SxbLaneRule,
                         testing::Values(padCase("es1", 0), padCase("ES1", 0), padCase("es2", 8),
                                         padCase("Es1", 8), padCase("", 8)),
                         caseName);

/// Codes of the loop: proportional divider, frequency divider, factor, and the two votes, of which
/// the first is always 1.0 with code 2.
VariableValues loopFields(unsigned int proportional, unsigned int frequency, unsigned int factor,
                          unsigned int vote) {
    return {{"RX_CDR_CFG2.PDIVFAC", proportional},
            {"RX_CDR_CFG2.FDIVFAC", frequency},
            {"RX_CDR_CFG2.PMULFAC", factor},
            {"RX_CDR_CFG2.VOTEWX", 2U},
            {"RX_CDR_CFG2.VOTEWY", vote}};
}

struct DividerCode {
    unsigned int divider;
    unsigned int code;
};

std::string dividerName(const testing::TestParamInfo<DividerCode>& info) {
    return "Of" + std::to_string(info.param.divider);
}

class SxbRxProportionalDivider : public testing::TestWithParam<DividerCode> {};

TEST_P(SxbRxProportionalDivider, HasItsCode) {
    EXPECT_EQ(sable_lanecfg::proportionalDividerCode(GetParam().divider), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(Code, SxbRxProportionalDivider,
                         testing::Values(DividerCode{8, 0}, DividerCode{16, 1}, DividerCode{32, 2},
                                         DividerCode{64, 3}, DividerCode{128, 4},
                                         DividerCode{256, 5}, DividerCode{512, 6},
                                         DividerCode{1024, 7}, DividerCode{2048, 8},
                                         DividerCode{4096, 9}, DividerCode{8192, 10},
                                         DividerCode{1, 15}, DividerCode{2, 0}, DividerCode{0, 0}),
                         dividerName);

class SxbRxFrequencyDivider : public testing::TestWithParam<DividerCode> {};

TEST_P(SxbRxFrequencyDivider, HasItsCode) {
    EXPECT_EQ(sable_lanecfg::frequencyDividerCode(GetParam().divider), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(Code, SxbRxFrequencyDivider,
                         testing::Values(DividerCode{1, 0}, DividerCode{2, 1}, DividerCode{4, 2},
                                         DividerCode{8, 3}, DividerCode{16, 4}, DividerCode{32, 5},
                                         DividerCode{64, 6}, DividerCode{128, 7},
                                         DividerCode{256, 0}, DividerCode{0, 0}),
                         dividerName);

struct FactorCode {
    double factor;
    unsigned int code;
};

class SxbRxLoopFactor : public testing::TestWithParam<FactorCode> {};

TEST_P(SxbRxLoopFactor, HasItsCode) {
    EXPECT_EQ(sable_lanecfg::loopFactorCode(GetParam().factor), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(Code, SxbRxLoopFactor,
                         testing::Values(FactorCode{0.25, 0}, FactorCode{0.5, 1},
                                         FactorCode{1.0, 2}, FactorCode{2.0, 3}, FactorCode{4.0, 4},
                                         FactorCode{8.0, 5}, FactorCode{0.0, 7},
                                         FactorCode{16.0, 0}));

struct SteadyRow {
    double rate;
    double outputDivider;
    unsigned int frequencyCode;
};

std::vector<RuleCase> steadyCases() {
    // 32, 64 or 128 over the divider: 1, 2, 4, ... 128 have the codes 0, 1, 2, ... 7.
    const std::vector<SteadyRow> rows{
        {10.0, 1.0, 5}, {13.0, 1.0, 5}, {13.1, 1.0, 6}, {26.0, 1.0, 6}, {26.1, 1.0, 7},
        {5.0, 2.0, 4},  {2.5, 4.0, 3},  {1.25, 8.0, 2}, {1.0, 16.0, 1}, {0.5, 32.0, 0},
        {0.5, 64.0, 0}, {5.0, 2.5, 4},  {5.0, 3.0, 0},  {5.0, 1.9, 5}};
    std::vector<RuleCase> cases;
    for (const SteadyRow& row : rows) {
        const auto lane =
            plainLaneWith({{"RX_LINE_RATE", row.rate}, {"INT_RX_OUTDIV", row.outputDivider}});
        // A proportional divider of 256, a factor of 4.0, a vote of 1.0.
        const auto loop = loopFields(5, row.frequencyCode, 4, 2);
        cases.push_back({recovery, lane, loop});
        cases.push_back({recovery, with(lane, {{"RX_SSC_PPM", 5000U}}), loop});
        cases.push_back({recovery, with(lane, {{"RX_PPM_OFFSET", 300U}}), loop});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfASteadyReference, SxbLaneRule, testing::ValuesIn(steadyCases()),
                         caseName);

VariableValues spreadLane(double rate, double outputDivider) {
    return plainLaneWith({{"RX_SSC_PPM", 5000U},
                          {"RX_PPM_OFFSET", 300U},
                          {"RX_LINE_RATE", rate},
                          {"INT_RX_OUTDIV", outputDivider}});
}

struct SpreadRow {
    double rate;
    unsigned int proportionalCode;
    unsigned int factorCode;
    unsigned int voteCode;
};

std::vector<RuleCase> spreadRateCases() {
    // 16, 64, 32, 512, 1024; factors 4.0, 0.5, 0.25; votes 1.0 and 2.0.
    const std::vector<SpreadRow> rows{
        {1.0, 1, 4, 2}, {1.62, 1, 4, 2}, {1.63, 3, 4, 2}, {2.5, 3, 4, 2},  {2.6, 2, 4, 2},
        {7.9, 2, 4, 2}, {8.0, 6, 1, 3},  {15.9, 6, 1, 3}, {16.0, 7, 0, 3}, {32.0, 7, 0, 3}};
    std::vector<RuleCase> cases;
    for (const SpreadRow& row : rows) {
        cases.push_back({recovery,
                         spreadLane(row.rate, 1.0),
                         {{"RX_CDR_CFG2.PDIVFAC", row.proportionalCode},
                          {"RX_CDR_CFG2.PMULFAC", row.factorCode},
                          {"RX_CDR_CFG2.VOTEWX", 2U},
                          {"RX_CDR_CFG2.VOTEWY", row.voteCode}}});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfSpreadRates, SxbLaneRule, testing::ValuesIn(spreadRateCases()),
                         caseName);

struct SpreadDividerRow {
    double rate;
    /// For the output dividers 1, 4, 8, 16 and any other.
    std::vector<unsigned int> frequencyDividers;
};

unsigned int frequencyCode(unsigned int divider) {
    const std::vector<std::pair<unsigned int, unsigned int>> codes{
        {1, 0}, {2, 1}, {4, 2}, {8, 3}, {16, 4}};
    for (const auto& [known, code] : codes) {
        if (known == divider) {
            return code;
        }
    }
    throw std::out_of_range("frequency divider");
}

std::vector<RuleCase> spreadDividerCases() {
    const std::vector<SpreadDividerRow> rows{{1.0, {8, 2, 1, 1, 4}},  {2.5, {8, 2, 1, 1, 4}},
                                             {2.51, {4, 1, 1, 1, 2}}, {4.99, {4, 1, 1, 1, 2}},
                                             {5.0, {16, 4, 2, 1, 8}}, {7.99, {16, 4, 2, 1, 8}},
                                             {8.0, {4, 1, 1, 1, 2}},  {32.0, {4, 1, 1, 1, 2}}};
    const std::vector<std::pair<double, std::size_t>> columns{
        {1.0, 0}, {1.09, 0}, {4.0, 1}, {8.0, 2}, {16.0, 3}, {2.0, 4}, {2.5, 4}, {32.0, 4}};
    std::vector<RuleCase> cases;
    for (const SpreadDividerRow& row : rows) {
        for (const auto& [outputDivider, column] : columns) {
            cases.push_back(
                {recovery,
                 spreadLane(row.rate, outputDivider),
                 {{"RX_CDR_CFG2.FDIVFAC", frequencyCode(row.frequencyDividers[column])}}});
        }
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfSpreadDividers, SxbLaneRule, testing::ValuesIn(spreadDividerCases()),
                         caseName);

RuleCase followCase(unsigned int spread, unsigned int offset, unsigned int value) {
    return {recovery,
            plainLaneWith({{"RX_SSC_PPM", spread}, {"RX_PPM_OFFSET", offset}}),
            {{"RX_CDR_CFG0.CDRENF", value}}};
}

INSTANTIATE_TEST_SUITE_P(OfFrequencyFollowing, SxbLaneRule,
                         testing::Values(followCase(0, 0, 0), followCase(5000, 0, 0),
                                         followCase(0, 1, 1), followCase(5000, 300, 1)),
                         caseName);

class SxbRxRecoveryDivider : public testing::TestWithParam<double> {};

TEST_P(SxbRxRecoveryDivider, ThatTruncatesTo0IsAFaultThatNamesIt) {
    for (const auto& lane :
         {plainLaneWith({{"INT_RX_OUTDIV", GetParam()}}), spreadLane(5.0, GetParam())}) {
        RuleAlone rule(recovery, lane);
        try {
            rule.runPass();
            FAIL() << "no fault";
        } catch (const std::domain_error& fault) {
            EXPECT_THAT(fault.what(), HasSubstr("INT_RX_OUTDIV"));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(BelowOneOrOutOfRange, SxbRxRecoveryDivider,
                         testing::Values(0.0, 0.99, -1.0, 1e30,
                                         std::numeric_limits<double>::infinity(),
                                         std::numeric_limits<double>::quiet_NaN()));

}  // namespace
}  // namespace lanecfg_test
