#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

RuleCase referenceCase(bool pcie, unsigned int spread, unsigned int offset, unsigned int mode) {
    return {"INT_PHY_REFCLK_MODE",
            {{"PCIE_ENABLE", pcie}, {"RX_SSC_PPM", spread}, {"RX_PPM_OFFSET", offset}},
            {{"INT_PHY_REFCLK_MODE", mode}}};
}

INSTANTIATE_TEST_SUITE_P(
    OfTheReferenceMode, SxbLaneRule,
    testing::Values(referenceCase(false, 5000, 300, 0), referenceCase(false, 0, 300, 0),
                    referenceCase(true, 0, 0, 0), referenceCase(true, 5000, 0, 0),
                    referenceCase(true, 0, 300, 1), referenceCase(true, 5000, 300, 2)),
    caseName);

RuleCase enable8b10bCase(const VariableValues& others, unsigned int value) {
    const VariableValues buffered{{"RX_BUFFER_MODE", 1U}, {"RX_DATA_DECODING", "8B10B"s},
                                  {"RX_CC_NUM_SEQ", 0U},  {"RX_CB_NUM_SEQ", 0U},
                                  {"RX_SSC_PPM", 0U},     {"RX_PPM_OFFSET", 0U},
                                  {"PCIE_ENABLE", false}};
    return fieldCase("RX_ELASTIC_BUF_CFG0.ELASTICBUF_8B10B_EN", with(buffered, others), value);
}

INSTANTIATE_TEST_SUITE_P(
    OfThe8b10bBuffer, SxbLaneRule,
    testing::Values(enable8b10bCase({}, 0), enable8b10bCase({{"RX_CC_NUM_SEQ", 1U}}, 1),
                    enable8b10bCase({{"RX_CB_NUM_SEQ", 2U}}, 1),
                    enable8b10bCase({{"RX_SSC_PPM", 5000U}}, 1),
                    enable8b10bCase({{"RX_PPM_OFFSET", 300U}}, 1),
                    enable8b10bCase({{"PCIE_ENABLE", true}}, 1),
                    enable8b10bCase({{"PCIE_ENABLE", true}, {"RX_BUFFER_MODE", 0U}}, 0),
                    enable8b10bCase({{"PCIE_ENABLE", true}, {"RX_BUFFER_MODE", 2U}}, 0),
                    enable8b10bCase({{"PCIE_ENABLE", true}, {"RX_DATA_DECODING", "128B130B"s}}, 0)),
    caseName);

struct WideBuffer {
    std::string field;
    unsigned int width;
    unsigned int otherWidth;
};

std::vector<RuleCase> enable128b130bCases() {
    std::vector<RuleCase> cases;
    for (const WideBuffer& buffer :
         {WideBuffer{"RX_ELASTIC_BUF_CFG8.ELASTICBUF_128B130B_EN", 32, 16},
          WideBuffer{"RX_ELASTIC_BUF_CFG9.EB128B130B_16_EN", 16, 32}}) {
        const VariableValues lane{{"RX_DATA_DECODING", "128B130B"s},
                                  {"RX_PPM_OFFSET", 0U},
                                  {"RX_SSC_PPM", 0U},
                                  {"PCIE_ENABLE", false},
                                  {"RX_INT_DATA_WIDTH", buffer.width}};
        const VariableValues pcie = with(lane, {{"PCIE_ENABLE", true}});
        append(cases,
               {fieldCase(buffer.field, lane, 0), fieldCase(buffer.field, pcie, 1),
                fieldCase(buffer.field, with(lane, {{"RX_PPM_OFFSET", 300U}}), 1),
                fieldCase(buffer.field, with(lane, {{"RX_SSC_PPM", 5000U}}), 1),
                fieldCase(buffer.field, with(pcie, {{"RX_INT_DATA_WIDTH", buffer.otherWidth}}), 0),
                fieldCase(buffer.field, with(pcie, {{"RX_DATA_DECODING", "8B10B"s}}), 0)});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfThe128b130bBuffers, SxbLaneRule,
                         testing::ValuesIn(enable128b130bCases()), caseName);

RuleCase phaseBufferCase(const VariableValues& others, unsigned int value) {
    const VariableValues plain{{"RX_ELASTIC_BUF_CFG0.ELASTICBUF_8B10B_EN", 0U},
                               {"RX_ELASTIC_BUF_CFG8.ELASTICBUF_128B130B_EN", 0U},
                               {"RX_ELASTIC_BUF_CFG9.EB128B130B_16_EN", 0U},
                               {"RX_BUFFER_MODE", 1U},
                               {"INT_RX_ASYNC_GEARBOX_EN", 0U}};
    return fieldCase("RX_PCS_CFG2.RX_PHASE_BUFFER_USE", with(plain, others), value);
}

INSTANTIATE_TEST_SUITE_P(
    OfThePhaseBuffer, SxbLaneRule,
    testing::Values(phaseBufferCase({}, 1), phaseBufferCase({{"RX_BUFFER_MODE", 2U}}, 1),
                    phaseBufferCase({{"RX_ELASTIC_BUF_CFG0.ELASTICBUF_8B10B_EN", 1U}}, 0),
                    phaseBufferCase({{"RX_ELASTIC_BUF_CFG8.ELASTICBUF_128B130B_EN", 1U}}, 0),
                    phaseBufferCase({{"RX_ELASTIC_BUF_CFG9.EB128B130B_16_EN", 1U}}, 0),
                    phaseBufferCase({{"RX_BUFFER_MODE", 0U}}, 0),
                    phaseBufferCase({{"INT_RX_ASYNC_GEARBOX_EN", 1U}}, 0)),
    caseName);

std::vector<RuleCase> thresholdOverrideCases() {
    const std::string field = "RX_ELASTIC_BUF_CFG0.EB8B10B_THRESH_OVRD";
    const VariableValues idle{{"RX_CC_NUM_SEQ", 0U},
                              {"RX_CB_NUM_SEQ", 0U},
                              {"RX_BUFFER_MODE", 1U},
                              {"RX_DATA_DECODING", "8B10B"s},
                              {"PCIE_ENABLE", false}};
    // Each of these alone leaves the override to PCIe.
    const std::vector<VariableValues> hindrances{{{"RX_CC_NUM_SEQ", 1U}},
                                                 {{"RX_CB_NUM_SEQ", 1U}},
                                                 {{"RX_BUFFER_MODE", 0U}},
                                                 {{"RX_DATA_DECODING", "64B66B_ASYNC"s}},
                                                 {{"RX_DATA_DECODING", "64B66B_ASYNC_CAUI"s}}};
    std::vector<RuleCase> cases{
        fieldCase(field, idle, 1), fieldCase(field, with(idle, {{"PCIE_ENABLE", true}}), 1),
        fieldCase(field, with(idle, {{"RX_DATA_DECODING", "64B66B_SYNC"s}}), 1)};
    for (const VariableValues& hindrance : hindrances) {
        cases.push_back(fieldCase(field, with(idle, hindrance), 0));
        cases.push_back(fieldCase(field, with(with(idle, hindrance), {{"PCIE_ENABLE", true}}), 1));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfTheThresholdOverride, SxbLaneRule,
                         testing::ValuesIn(thresholdOverrideCases()), caseName);

RuleCase thresholdCase(unsigned int override, bool pcie, unsigned int referenceMode,
                       unsigned int bytes, const std::vector<unsigned int>& expected) {
    return {"RX_ELASTIC_BUF_CFG0.EB8B10B_OVFL_THRESH",
            {{"RX_ELASTIC_BUF_CFG0.EB8B10B_THRESH_OVRD", override},
             {"PCIE_ENABLE", pcie},
             {"INT_PHY_REFCLK_MODE", referenceMode},
             {"INT_WID", bytes}},
            {{"RX_ELASTIC_BUF_CFG0.EB8B10B_OVFL_THRESH", expected[0]},
             {"INT_UND_NO_CC_CB", expected[1]},
             {"RX_ELASTIC_BUF_CFG0.EB8B10B_UDFL_THRESH", expected[2]}}};
}

INSTANTIATE_TEST_SUITE_P(OfTheThresholds, SxbLaneRule,
                         testing::Values(thresholdCase(0, false, 0, 2, {0, 4, 4}),
                                         thresholdCase(0, false, 0, 4, {0, 10, 4}),
                                         thresholdCase(0, true, 2, 8, {0, 22, 4}),
                                         thresholdCase(1, true, 2, 4, {63, 1, 8}),
                                         thresholdCase(1, true, 1, 4, {31, 1, 8}),
                                         thresholdCase(1, true, 0, 4, {31, 1, 1}),
                                         thresholdCase(1, true, 3, 8, {31, 1, 1}),
                                         thresholdCase(1, false, 0, 2, {61, 1, 1}),
                                         thresholdCase(1, false, 2, 4, {57, 3, 3}),
                                         thresholdCase(1, false, 1, 8, {49, 7, 7}),
                                         thresholdCase(1, false, 0, 0, {0, 0, 0}),
                                         // Three times no width, less 2, as unsigned numbers count.
                                         thresholdCase(0, false, 0, 0, {0, 4294967294U, 4})),
                         caseName);

struct SequenceLength {
    unsigned int length;
    unsigned int code;
};

std::vector<RuleCase> lengthCases() {
    std::vector<RuleCase> cases;
    for (const SequenceLength& row : {SequenceLength{1, 0}, {2, 1}, {4, 3}, {0, 0}, {5, 0}}) {
        cases.push_back(fieldCase("RX_ELASTIC_BUF_CFG2.EB8B10B_CLK_COR_SEQ_LEN",
                                  {{"RX_CC_LEN_SEQ", row.length}}, row.code));
        cases.push_back(fieldCase("RX_ELASTIC_BUF_CFG4.EB8B10B_CHAN_BOND_SEQ_LEN",
                                  {{"RX_CB_LEN_SEQ", row.length}}, row.code));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfSequenceLengths, SxbLaneRule, testing::ValuesIn(lengthCases()),
                         caseName);

TEST(SxbRxElasticBuffer, ALengthOf3GivesAFieldOf0) {
    for (const auto& [field, parameter] :
         {std::pair("RX_ELASTIC_BUF_CFG2.EB8B10B_CLK_COR_SEQ_LEN"s, "RX_CC_LEN_SEQ"s),
          std::pair("RX_ELASTIC_BUF_CFG4.EB8B10B_CHAN_BOND_SEQ_LEN"s, "RX_CB_LEN_SEQ"s)}) {
        RuleAlone rule(field, {{parameter, 3U}});
        rule.runPass();
        EXPECT_EQ(rule.value(field), ruleValue(0U));
    }
}

/// Fields that tell the number of sequences: whether there are any, and whether there are two.
std::vector<RuleCase> countCases() {
    std::vector<RuleCase> cases;
    for (const unsigned int count : {0U, 1U, 2U, 3U}) {
        const unsigned int any = count == 0 ? 0 : 1;
        const unsigned int two = count == 2 ? 1 : 0;
        append(
            cases,
            {fieldCase("RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_USE", {{"RX_CC_NUM_SEQ", count}}, any),
             fieldCase("RX_ELASTIC_BUF_CFG3.EB8B10B_CLK_COR_SEQ_2_USE", {{"RX_CC_NUM_SEQ", count}},
                       two),
             fieldCase("RX_ELASTIC_BUF_CFG7.EB8B10B_CHAN_BOND_EN", {{"RX_CB_NUM_SEQ", count}}, any),
             fieldCase("RX_ELASTIC_BUF_CFG5.EB8B10B_CHAN_BOND_SEQ_2_USE",
                       {{"RX_CB_NUM_SEQ", count}}, two)});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfSequenceCounts, SxbLaneRule, testing::ValuesIn(countCases()), caseName);

RuleCase addressCase(unsigned int corrections, unsigned int bonds, unsigned int value) {
    return fieldCase("RX_ELASTIC_BUF_CFG7.EB8B10B_ADDR_MODE",
                     {{"RX_CC_NUM_SEQ", corrections}, {"RX_CB_NUM_SEQ", bonds}}, value);
}

INSTANTIATE_TEST_SUITE_P(OfTheAddressMode, SxbLaneRule,
                         testing::Values(addressCase(0, 0, 1), addressCase(1, 0, 0),
                                         addressCase(0, 1, 0), addressCase(2, 2, 0)),
                         caseName);

INSTANTIATE_TEST_SUITE_P(
    OfCopiedSettings, SxbLaneRule,
    testing::Values(
        fieldCase("RX_ELASTIC_BUF_CFG7.EB8B10B_CHAN_BOND_MAX_SKEW", {{"RX_CB_MAX_SKEW", 0U}}, 0),
        fieldCase("RX_ELASTIC_BUF_CFG7.EB8B10B_CHAN_BOND_MAX_SKEW", {{"RX_CB_MAX_SKEW", 14U}}, 14),
        fieldCase("RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_REPEAT_WAIT", {{"RX_CC_REPEAT_WAIT", 0U}},
                  0),
        fieldCase("RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_REPEAT_WAIT", {{"RX_CC_REPEAT_WAIT", 31U}},
                  31),
        fieldCase("RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_KEEP_IDLE", {{"RX_CC_KEEP_IDLE", "ENABLE"s}},
                  1),
        fieldCase("RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_KEEP_IDLE",
                  {{"RX_CC_KEEP_IDLE", "DISABLE"s}}, 0),
        fieldCase("RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_PRECEDENCE",
                  {{"RX_CC_PRECEDENCE", "ENABLE"s}}, 1),
        fieldCase("RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_PRECEDENCE",
                  {{"RX_CC_PRECEDENCE", "enable"s}}, 0)),
    caseName);

}  // namespace
}  // namespace lanecfg_test
