#include "sxc_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

std::vector<RuleCase> lockCases() {
    std::vector<RuleCase> cases;
    for (const std::string side : {"TX", "RX"}) {
        const std::string field = "RESET_CFG." + side + "_PLLLOCK_SEL";
        const std::string type = side + "_PLL_TYPE";
        append(cases, {fieldCase(field, {{type, "LCPLL"s}}, 0),
                       fieldCase(field, {{type, "RPLL"s}}, 1), fieldCase(field, {{type, ""s}}, 1)});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfThePllLock, SxcRule, testing::ValuesIn(lockCases()), caseName);

/// A transmitter without buffer that shares the wide asynchronous gearbox with other lanes.
RuleCase bypassCase(const VariableValues& others, unsigned int value) {
    const VariableValues lane{{"TX_BUFFER_MODE", 0U},
                              {"TX_DATA_ENCODING", "64B66B_ASYNC"s},
                              {"TX_SYNCDONE_POSITION", "above"s},
                              {"TX_USER_DATA_WIDTH", 64U},
                              {"TX_INT_DATA_WIDTH", 32U}};
    return fieldCase("PIPE_CTRL_CFG7.TX_DA_BYP", with(lane, others), value);
}

INSTANTIATE_TEST_SUITE_P(
    OfTheTransmitAligner, SxcRule,
    testing::Values(bypassCase({}, 1), bypassCase({{"TX_DATA_ENCODING", "RAW"s}}, 0),
                    bypassCase({{"TX_DATA_ENCODING", "64B66B_ASYNC_CAUI"s}}, 0),
                    bypassCase({{"TX_SYNCDONE_POSITION", "single"s}}, 0),
                    bypassCase({{"TX_SYNCDONE_POSITION", "IM"s}}, 1),
                    bypassCase({{"TX_USER_DATA_WIDTH", 32U}}, 0),
                    bypassCase({{"TX_USER_DATA_WIDTH", 95U}}, 1),
                    bypassCase({{"TX_USER_DATA_WIDTH", 96U}}, 0),
                    bypassCase({{"TX_BUFFER_MODE", 1U}, {"TX_DATA_ENCODING", "8B10B"s}}, 1),
                    // Raw data on another PLL than the receiver's is passed by as well.
                    bypassCase({{"TX_BUFFER_MODE", 1U},
                                {"TX_DATA_ENCODING", "RAW"s},
                                {"TX_OUTCLK_SOURCE", "TXPROGDIVCLK"s},
                                {"TX_PLL_TYPE", "LCPLL"s},
                                {"RX_PLL_TYPE", "RPLL"s}},
                               1)),
    caseName);

std::vector<RuleCase> oscillatorCases() {
    std::vector<RuleCase> cases;
    for (unsigned int channel = 0; channel < 4; ++channel) {
        const std::string field = "MST_RESET_CFG.CH" + std::to_string(channel) + "_ILO_RESET_EN";
        for (unsigned int lane = 0; lane < 4; ++lane) {
            const auto inputs = [lane](unsigned int bypass) -> VariableValues {
                return {{"LaneNum", lane}, {"CHCLK_TXPI_CFG0.TXPI_BYPASS", bypass}};
            };
            append(cases, {fieldCase(field, inputs(0), lane == channel ? 1 : 0),
                           fieldCase(field, inputs(1), 0)});
        }
        append(cases,
               {fieldCase(field, {{"LaneNum", channel}, {"CHCLK_TXPI_CFG0.TXPI_BYPASS", 2U}}, 1)});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfOscillatorResets, SxcRule, testing::ValuesIn(oscillatorCases()),
                         caseName);

std::vector<RuleCase> receiverLcpllCases() {
    std::vector<RuleCase> cases;
    for (unsigned int channel = 0; channel < 4; ++channel) {
        const std::string field =
            "MST_RESET_CFG.CH" + std::to_string(channel) + "_RX_LCPLL_RESET_EN";
        const VariableValues lane{
            {"LaneNum", channel}, {"RX_PLL_TYPE", "LCPLL"s}, {"INT_LCPLL_POWERDOWN", false}};
        append(cases, {fieldCase(field, lane, 1),
                       fieldCase(field, with(lane, {{"LaneNum", (channel + 1) % 4}}), 0),
                       fieldCase(field, with(lane, {{"RX_PLL_TYPE", "RPLL"s}}), 0),
                       fieldCase(field, with(lane, {{"INT_LCPLL_POWERDOWN", true}}), 0),
                       // A receiver out of use resets its PLL too.
                       fieldCase(field, with(lane, {{"RX_IN_USE", false}}), 1)});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfReceiverResets, SxcRule, testing::ValuesIn(receiverLcpllCases()),
                         caseName);

RuleCase wideBufferCase(const VariableValues& others, unsigned int value) {
    const VariableValues lane{{"RX_DATA_DECODING", "128B130B"s},
                              {"RX_PPM_OFFSET", 0U},
                              {"RX_SSC_PPM", 0U},
                              {"PCIE_ENABLE", false},
                              {"RX_INT_DATA_WIDTH", 64U}};
    return fieldCase("CHL_RSV_CFG2.EB128B130B_64_EN", with(lane, others), value);
}

INSTANTIATE_TEST_SUITE_P(
    OfTheWideElasticBuffer, SxcRule,
    testing::Values(wideBufferCase({}, 0), wideBufferCase({{"PCIE_ENABLE", true}}, 1),
                    wideBufferCase({{"RX_PPM_OFFSET", 300U}}, 1),
                    wideBufferCase({{"RX_SSC_PPM", 5000U}}, 1),
                    wideBufferCase({{"PCIE_ENABLE", true}, {"RX_INT_DATA_WIDTH", 32U}}, 0),
                    wideBufferCase({{"PCIE_ENABLE", true}, {"RX_INT_DATA_WIDTH", 16U}}, 0),
                    wideBufferCase({{"PCIE_ENABLE", true}, {"RX_DATA_DECODING", "8B10B"s}}, 0)),
    caseName);

}  // namespace
}  // namespace lanecfg_test
