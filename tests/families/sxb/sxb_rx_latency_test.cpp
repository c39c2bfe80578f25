#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

const std::string minimumField = "RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MIN_LAT";
const std::string maximumField = "RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MAX_LAT";

/// Words of 4 bytes, nothing corrected or bonded.
VariableValues plainBuffer() {
    return {{"INT_WID", 4U},
            {"RX_CB_MAX_SKEW", 1U},
            {"RX_CB_MAX_LEVEL", 1U},
            {"INT_UND_NO_CC_CB", 10U},
            {"RX_CB_NUM_SEQ", 0U},
            {"RX_CC_NUM_SEQ", 0U},
            {"RX_PPM_OFFSET", 0U},
            {"RX_CC_PERIODICITY", 5000U},
            {"RX_COMMA_ALIGN_WORD", 1U},
            {"PCIE_ENABLE", false},
            {"INT_PHY_REFCLK_MODE", 0U},
            {"RX_BUFFER_MODE", 1U},
            {"RX_DATA_DECODING", "8B10B"s}};
}

RuleCase minimumCase(const VariableValues& others, unsigned int value) {
    return fieldCase(minimumField, with(plainBuffer(), others), value);
}

unsigned int minimumOf(const VariableValues& others) {
    RuleAlone rule(minimumField, with(plainBuffer(), others));
    rule.runPass();
    return boost::get<unsigned int>(rule.value(minimumField));
}

TEST(SxbRxLatency, WithNeitherBondingNorCorrectionTheMinimumIsTheWidthAndTheThresholdAndOne) {
    EXPECT_EQ(minimumOf({}), 4U + 10U + 1U);
    EXPECT_EQ(minimumOf({{"INT_WID", 8U}, {"INT_UND_NO_CC_CB", 22U}}), 8U + 22U + 1U);
}

TEST(SxbRxLatency, TheWordOfACommaRoundsThatUp) {
    EXPECT_EQ(minimumOf({{"RX_COMMA_ALIGN_WORD", 2U}}), 16U);
    EXPECT_EQ(minimumOf({{"RX_COMMA_ALIGN_WORD", 4U}, {"INT_UND_NO_CC_CB", 12U}}), 20U);
}

/// Sequences of correction and bonding; `millions` are whole millions of ppm.
VariableValues sequences(unsigned int corrections, unsigned int bonds, unsigned int skew,
                         unsigned int millions, unsigned int periodicity) {
    return {{"RX_CC_NUM_SEQ", corrections},
            {"RX_CB_NUM_SEQ", bonds},
            {"RX_CB_MAX_SKEW", skew},
            {"RX_PPM_OFFSET", millions * 1000000U},
            {"RX_CC_PERIODICITY", periodicity}};
}

INSTANTIATE_TEST_SUITE_P(
    OfCorrectionAlone, SxbLaneRule,
    testing::Values(
        // 4 of drift, 5 * 4 - 2 of base and 1; the skew does not count.
        minimumCase(sequences(1, 0, 1, 0, 5000), 23), minimumCase(sequences(2, 0, 90, 0, 5000), 23),
        minimumCase(with(sequences(1, 0, 90, 0, 5000), {{"RX_PPM_OFFSET", 999999U}}), 23),
        // The drift is above 3.2, but not above 4.2: then two words, and the skew counts.
        minimumCase(sequences(1, 0, 90, 1, 3), 23), minimumCase(sequences(1, 0, 1, 1, 4), 27),
        minimumCase(sequences(1, 0, 3, 1, 4), 27), minimumCase(sequences(1, 0, 4, 1, 4), 28),
        minimumCase(sequences(1, 0, 1, 2, 2), 27),
        // Words of drift from two to nine, at most nine.
        minimumCase(sequences(1, 0, 1, 1, 7), 27), minimumCase(sequences(1, 0, 1, 1, 8), 31),
        minimumCase(sequences(1, 0, 1, 1, 12), 35), minimumCase(sequences(1, 0, 1, 1, 16), 39),
        minimumCase(sequences(1, 0, 1, 1, 20), 43), minimumCase(sequences(1, 0, 1, 1, 24), 47),
        minimumCase(sequences(1, 0, 1, 1, 28), 51), minimumCase(sequences(1, 0, 1, 1, 31), 51),
        minimumCase(sequences(1, 0, 1, 1, 32), 55), minimumCase(sequences(1, 0, 1, 1, 5000), 55),
        minimumCase(sequences(1, 0, 10, 1, 5000), 62)),
    caseName);

INSTANTIATE_TEST_SUITE_P(
    OfBonding, SxbLaneRule,
    testing::Values(
        // 4 of drift, (1 + 5) * 4 - 2 of base and 1, against the skew and 16 and 4.
        minimumCase(sequences(0, 1, 1, 0, 5000), 27), minimumCase(sequences(0, 1, 7, 0, 5000), 27),
        minimumCase(sequences(0, 1, 8, 0, 5000), 28), minimumCase(sequences(0, 2, 12, 0, 5000), 32),
        // Without correction the drift is one word.
        minimumCase(sequences(0, 1, 1, 1, 5000), 27), minimumCase(sequences(1, 1, 12, 0, 5000), 32),
        minimumCase(sequences(1, 1, 1, 1, 4), 31),
        minimumCase(with(sequences(0, 1, 1, 0, 5000), {{"RX_CB_MAX_LEVEL", 3U}}), 35),
        minimumCase(with(sequences(0, 1, 1, 0, 5000), {{"INT_WID", 2U}}), 13)),
    caseName);

INSTANTIATE_TEST_SUITE_P(
    OfCommaWords, SxbLaneRule,
    testing::Values(minimumCase({{"RX_COMMA_ALIGN_WORD", 2U}, {"INT_UND_NO_CC_CB", 11U}}, 16),
                    minimumCase({{"RX_COMMA_ALIGN_WORD", 2U}, {"INT_UND_NO_CC_CB", 12U}}, 18),
                    minimumCase({{"RX_COMMA_ALIGN_WORD", 4U}, {"INT_UND_NO_CC_CB", 11U}}, 16),
                    minimumCase({{"RX_COMMA_ALIGN_WORD", 4U}, {"INT_UND_NO_CC_CB", 13U}}, 20),
                    minimumCase({{"RX_COMMA_ALIGN_WORD", 4U}, {"INT_UND_NO_CC_CB", 14U}}, 20),
                    minimumCase({{"RX_COMMA_ALIGN_WORD", 3U}, {"INT_UND_NO_CC_CB", 12U}}, 17),
                    minimumCase({{"RX_COMMA_ALIGN_WORD", 0U}, {"INT_UND_NO_CC_CB", 12U}}, 17)),
    caseName);

INSTANTIATE_TEST_SUITE_P(
    OfPcieMinima, SxbLaneRule,
    testing::Values(minimumCase({{"PCIE_ENABLE", true}, {"INT_PHY_REFCLK_MODE", 1U}}, 17),
                    minimumCase({{"PCIE_ENABLE", true}, {"INT_PHY_REFCLK_MODE", 2U}}, 22),
                    minimumCase({{"PCIE_ENABLE", true}, {"INT_PHY_REFCLK_MODE", 0U}}, 10),
                    minimumCase({{"PCIE_ENABLE", true}, {"INT_PHY_REFCLK_MODE", 3U}}, 10),
                    minimumCase({{"PCIE_ENABLE", true}, {"RX_BUFFER_MODE", 0U}}, 10),
                    minimumCase({{"PCIE_ENABLE", true}, {"RX_COMMA_ALIGN_WORD", 4U}}, 10)),
    caseName);

INSTANTIATE_TEST_SUITE_P(
    OfIdleBuffers, SxbLaneRule,
    testing::Values(minimumCase({{"RX_BUFFER_MODE", 0U}}, 18),
                    minimumCase({{"RX_BUFFER_MODE", 0U}, {"RX_COMMA_ALIGN_WORD", 4U}}, 18),
                    minimumCase({{"RX_DATA_DECODING", "ASYNC"s}}, 18),
                    minimumCase({{"RX_DATA_DECODING", "ASYNC_64B66B"s}}, 18),
                    minimumCase({{"RX_DATA_DECODING", "async"s}}, 15),
                    minimumCase({{"RX_DATA_DECODING", "ASYN"s}}, 15),
                    minimumCase({{"RX_DATA_DECODING", "ASYNC\nMORE"s}}, 15),
                    minimumCase({{"RX_DATA_DECODING", "ASYNC\rMORE"s}}, 15)),
    caseName);

TEST(SxbRxLatency, ACodingThatOnlyHoldsAsyncKeepsItsMinimum) {
    EXPECT_EQ(minimumOf({{"RX_DATA_DECODING", "64B66B_ASYNC"s}}), 15U);
    EXPECT_EQ(minimumOf({{"RX_DATA_DECODING", "64B66B_ASYNC_CAUI"s}}), 15U);
}

TEST(SxbRxLatency, WithoutAWidthTheMinimumIsAsUnsignedNumbersCount) {
    EXPECT_EQ(minimumOf({{"INT_WID", 0U}, {"INT_UND_NO_CC_CB", 4294967294U}}), 4294967295U);
}

TEST(SxbRxLatency, AVeryLongCodingWordIsNoDanger) {
    EXPECT_EQ(minimumOf({{"RX_DATA_DECODING", "ASYNC" + std::string(1000000, 'x')}}), 18U);
}

RuleCase maximumCase(const VariableValues& others, unsigned int value) {
    const VariableValues buffer{{minimumField, 30U},    {"INT_WID", 4U},
                                {"RX_CC_LEN_SEQ", 2U},  {"RX_CC_NUM_SEQ", 0U},
                                {"PCIE_ENABLE", false}, {"INT_PHY_REFCLK_MODE", 0U},
                                {"RX_BUFFER_MODE", 1U}, {"RX_DATA_DECODING", "8B10B"s}};
    return fieldCase(maximumField, with(buffer, others), value);
}

INSTANTIATE_TEST_SUITE_P(
    OfMaxima, SxbLaneRule,
    testing::Values(maximumCase({}, 34), maximumCase({{"RX_CC_NUM_SEQ", 1U}}, 36),
                    maximumCase({{"RX_CC_NUM_SEQ", 2U}, {"RX_CC_LEN_SEQ", 4U}}, 38),
                    maximumCase({{"INT_WID", 8U}}, 38),
                    maximumCase({{"RX_DATA_DECODING", "ASYNC"s}}, 34),
                    maximumCase({{"RX_BUFFER_MODE", 0U}}, 34),
                    maximumCase({{"PCIE_ENABLE", true}}, 20),
                    maximumCase({{"PCIE_ENABLE", true}, {"INT_PHY_REFCLK_MODE", 1U}}, 20),
                    maximumCase({{"PCIE_ENABLE", true}, {"INT_PHY_REFCLK_MODE", 2U}}, 28)),
    caseName);

}  // namespace
}  // namespace lanecfg_test
