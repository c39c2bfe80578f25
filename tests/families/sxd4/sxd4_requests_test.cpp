#include "support/worked_request.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::bundledRequest;
using lanecfg_test::bundledRequests;
using lanecfg_test::WorkedRequest;
using testing::ElementsAre;
using testing::IsEmpty;

/// Words of a bundled request, worked out by hand.
struct RequestWords {
    std::string request;
    std::map<std::string, std::uint32_t> words;
};

void PrintTo(const RequestWords& row, std::ostream* output) {
    *output << row.request;
}

class Sxd4Request : public WorkedRequest, public testing::WithParamInterface<RequestWords> {
  protected:
    Sxd4Request() : WorkedRequest(GetParam().request) {}
};

TEST_P(Sxd4Request, HasTheWordsWorkedOutByHandAndNoFault) {
    const auto answered = attributes();
    for (const auto& [name, word] : GetParam().words) {
        EXPECT_EQ(answered.at(name), std::to_string(word)) << name;
    }
    expectNoFault();
    EXPECT_THAT(outputClocks(), IsEmpty());
}

/// The PLL's words: A_CFG has the feedback divider less 2 at bit 0 and 1 at bit 14; PLL_CFG1 the
/// code 4 of reference divider 1 and 7, 3, 1 and 1 at bits 3, 7, 9 and 10; SDM_CFG0 the bypass at
/// bit 0 and 3 at bit 6.
std::map<std::string, std::uint32_t> pllWords(unsigned feedback, unsigned fraction) {
    return {{"HSCLK0_A_CFG", (1U << 14) + feedback - 2},
            {"HSCLK0_PLL_CFG1", 4U + (7U << 3) + (3U << 7) + (1U << 9) + (1U << 10)},
            {"HSCLK0_SDM_CFG0", (fraction == 0 ? 1U : 0U) + (3U << 6)},
            {"HSCLK0_A_SDM_DATA_CFG0", fraction & 0xffffU},
            {"HSCLK0_A_SDM_DATA_CFG1", fraction >> 16U}};
}

/// Codes of the coding layer: Gray and precoder flags at bits 0 to 3, the code of the user width at
/// bit 4, 2 for 80 bits inside at bit 8, and the first write address at bit 10, 11 to transmit and
/// 8 to receive.
std::map<std::string, std::uint32_t> codingWords(const std::string& channel, unsigned flags,
                                                 unsigned widthCode) {
    const unsigned common = flags + (widthCode << 4) + (2U << 8);
    return {{channel + "_TX_PCS_CFG0", common + (11U << 10)},
            {channel + "_RX_PCS_CFG0", common + (8U << 10)}};
}

constexpr unsigned bypassedPrecoder = 0b1000;
constexpr unsigned code160 = 9;
constexpr unsigned code80 = 7;

std::map<std::string, std::uint32_t> merged(
    const std::vector<std::map<std::string, std::uint32_t>>& parts) {
    std::map<std::string, std::uint32_t> all;
    for (const auto& part : parts) {
        all.insert(part.begin(), part.end());
    }
    return all;
}

const std::vector<RequestWords>& requestWords() {
    static const std::vector<RequestWords> rows{
        // 14.0625 GHz is 90 times 156.25 MHz.
        {"sxd4_pam4_56g", merged({pllWords(90, 0),
                                  codingWords("CH0", bypassedPrecoder, code160),
                                  codingWords("CH1", bypassedPrecoder, code160),
                                  {{"FEC_CFG0", 0},
                                   {"FEC_CFG1", 0},
                                   {"FEC_CFG3", 0xf},
                                   {"CH0_RX_APT_CFG11A", 10},
                                   {"CH1_TXOUTCLKSEL", 2},
                                   {"CH1_RXOUTCLKSEL", 2},
                                   {"CH0_TXPCSRESETMASK", 0},
                                   {"CH0_RXPCSRESETMASK", 1}}})},
        {"sxd4_pam4_56g_fec", merged({pllWords(90, 0),
                                      {{"FEC_CFG0", 0x2222},
                                       {"FEC_CFG1", 2},
                                       {"FEC_CFG2", 2},
                                       {"FEC_CFG3", 0},
                                       {"CH0_A_CH_CFG4", 5},
                                       {"CH1_A_CH_CFG6", 5},
                                       {"CH0_TXOUTCLKSEL", 5},
                                       {"CH0_RXOUTCLKSEL", 5},
                                       {"CH1_TXPMARESETMASK", 2},
                                       {"CH1_RXPCSRESETMASK", 3},
                                       {"CH1_RXPMARESETMASK", 1}}})},
        // 13.28125 GHz is 85 times 156.25 MHz.
        {"sxd4_pam4_53g", merged({pllWords(85, 0),
                                  codingWords("CH0", bypassedPrecoder, code160),
                                  {{"FEC_CFG0", 0}, {"FEC_CFG3", 0xf}}})},
        // Both little-endian and neither bypassed. CDRENF is bit 5, beside CDRENP at bit 6.
        {"sxd4_pam4_53g_fec", merged({pllWords(85, 0),
                                      codingWords("CH0", 0b0101, code160),
                                      codingWords("CH1", 0b0101, code160),
                                      {{"FEC_CFG0", 0x1111},
                                       {"FEC_CFG3", 0},
                                       {"CH0_RX_CDR_CFG0A", (1U << 5) + (1U << 6)},
                                       {"CH0_RXPCSRESETMASK", 3},
                                       {"CH0_RXPMARESETMASK", 3}}})},
        // 12.890625 GHz is 80 times 161.1328125 MHz; 12.5 dB of loss, fast: two steps.
        {"sxd4_nrz_25g", merged({pllWords(80, 0),
                                 codingWords("CH1", bypassedPrecoder, code80),
                                 {{"CH0_RX_APT_CFG11A", 4}, {"CH0_RX_CDR_CFG0A", 1U << 6}}})},
        // 14.025 GHz is 66 times 212.5 MHz; 8 dB of loss, fast: one step.
        {"sxd4_nrz_28g", merged({pllWords(66, 0),
                                 codingWords("CH0", bypassedPrecoder, code80),
                                 {{"CH1_RX_APT_CFG11A", 2}}})},
        // 13.28125 GHz over 161.1328125 MHz is 82 and 14/33; 14 times 2^24 over 33 is 7117606.8.
        {"sxd4_fractional", pllWords(82, 7117606)},
        {"sxd4_one_channel", merged({pllWords(85, 0), {{"FEC_CFG0", 0}, {"FEC_CFG3", 0xf}}})},
        // Receiver 1 is bypassed, bit 1, and bit 2 is what channel 1 left for transmitter 0. Frame
        // lengths are those of channel 1.
        {"sxd4_two_modes", merged({pllWords(90, 0),
                                   codingWords("CH0", bypassedPrecoder, code160),
                                   codingWords("CH1", bypassedPrecoder, code80),
                                   {{"FEC_CFG0", 0x0303},
                                    {"FEC_CFG1", 0},
                                    {"FEC_CFG2", 0},
                                    {"FEC_CFG3", 0b0110},
                                    {"CH0_RX_APT_CFG11A", 12},
                                    {"CH1_RX_APT_CFG11A", 0},
                                    {"CH0_RX_PAD_CFG0", 0},
                                    {"CH1_RX_PAD_CFG0", 1},
                                    {"CH0_RXPCSRESETMASK", 3},
                                    {"CH1_RXPCSRESETMASK", 1},
                                    {"CH0_TXPCSRESETMASK", 3},
                                    {"CH1_TXPCSRESETMASK", 0}}})},
        // Of rate 0, but for transmitter 0's bypass, which rate 1 left.
        {"sxd4_multi_rate",
         merged({pllWords(85, 0), {{"FEC_CFG0", 0x2222}, {"FEC_CFG3", 0b0100}}})}};
    return rows;
}

INSTANTIATE_TEST_SUITE_P(Requests, Sxd4Request, testing::ValuesIn(requestWords()),
                         [](const auto& row) { return row.param.request; });

TEST(Sxd4Requests, AllHaveARow) {
    std::vector<std::string> bundled;
    for (const std::string& name : bundledRequests()) {
        if (bundledRequest(name).at("family") == "SXD4") {
            bundled.push_back(name);
        }
    }
    std::vector<std::string> rows;
    for (const RequestWords& row : requestWords()) {
        rows.push_back(row.request);
    }
    EXPECT_THAT(rows, testing::UnorderedElementsAreArray(bundled));
}

class Sxd4MultiRateRequest : public WorkedRequest {
  protected:
    Sxd4MultiRateRequest() : WorkedRequest("sxd4_multi_rate") {}
};

TEST_F(Sxd4MultiRateRequest, HasADividerForEachRate) {
    for (const std::size_t channel : {0U, 1U}) {
        // 12.890625 GHz over 156.25 MHz is 82.5.
        EXPECT_THAT(fieldOfPasses(channel, "INT_LCPLL_FBDIV"), ElementsAre(85, 82));
        EXPECT_THAT(fieldOfPasses(channel, "SDMDATA"), ElementsAre(0, 1U << 23));
    }
}

}  // namespace
}  // namespace sable_lanecfg
