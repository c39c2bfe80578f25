#include "cli/bundled_tables.h"

namespace lanecfg_test {
namespace {

// A block of two channels: the other two are in no structure word and have words of 0. Without a
// change of rate nothing is written.

// Rate 0 of the request with two is PAM4 at 53.125 Gb/s with error correction of mode 2, rate 1 NRZ
// at 25.78125 Gb/s without. Its registers:

// FEC_CFG0 and FEC_CFG3: the mode of each channel in each direction, four bits each, and a bypass
// for each where there is no mode. FEC_CFG1 and FEC_CFG2: frame lengths by the receive mode. They
// belong to the block and channel 1 changes them as well, hence the masks.
constexpr ChangingRegister modes{0x73, {0x2222, 0}, 0x2222};
constexpr ChangingRegister bypasses{0x74, {0, 0xf}, 0xf};
constexpr ChangingRegister firstLength{0x75, {2, 0}, 2};
constexpr ChangingRegister secondLength{0x76, {2, 0}, 2};

// NRZ is bit 0 of RX_APT_CFG21B, whose clock is blocked at 3, of RX_APT_CTRL_CFG2, which has D0 at
// 4, of RX_CDR_CFG1B, and of TX_ANA_CFG1, where the buffer is passed by at 2.
constexpr ChangingRegister adaptedForm{0x00, {1U << 3, 1U << 3 | 1U}};
constexpr ChangingRegister adaptedControl{0x01, {1U << 4, 1U << 4 | 1U}};
constexpr ChangingRegister recoveredMode{0x02, {0, 1}};
constexpr ChangingRegister sentMode{0x5d, {1U << 2, 1U << 2 | 1U}};

// RX_PCS_CFG0 and TX_PCS_CFG0: the precoder passed by at 3, code 9 of 160 bits or 7 of 80 at 4,
// code 2 of 80 bits inside at 8, and at 10 the first address, 8 and 11.
constexpr std::uint32_t coding(std::uint32_t width, std::uint32_t address) {
    return 1U << 3 | width << 4 | 2U << 8 | address << 10;
}
constexpr ChangingRegister receivedWords{0x07, {coding(9, 8), coding(7, 8)}};
constexpr ChangingRegister sentWords{0x5e, {coding(9, 11), coding(7, 11)}};

// A line of 20 dB above 20 Gbaud asks the equaliser for four steps, PAM4 for one more.
// RX_APT_CFG11A: a ratio of two a step. RX_CTLE_CFG0: a bias of one a step at 1. RX_CTLE_CFG1: a
// load of 2 for the gain, and at 4 one of 2 or 1 for middle frequencies. RX_CTLE_CFG2: a
// capacitance of 5, a degeneration of one a step at 3.
constexpr ChangingRegister ratio{0x12, {2 * 5, 2 * 4}};
constexpr ChangingRegister bias{0x55, {5U << 1, 4U << 1}};
constexpr ChangingRegister loads{0x56, {2U | 2U << 4, 2U | 1U << 4}};
constexpr ChangingRegister degeneration{0x57, {5U | 5U << 3, 5U | 4U << 3}};

// 13.28125 GHz are 85 times 156.25 MHz; 12.890625 are 82 times and a half, which is 2^23 of 2^24.
// A_SDM_DATA_CFG1: the fraction without its low 16 bits. SDM_CFG0: order 3 at 6, without a fraction
// passed by at 0. A_CFG: the multiple less 2, the band gap's power down at 14.
constexpr ChangingRegister fraction{0x6e, {0, 1U << (23 - 16)}};
constexpr ChangingRegister modulator{0x6f, {3U << 6 | 1U, 3U << 6}};
constexpr ChangingRegister feedback{0x70, {83U | 1U << 14, 80U | 1U << 14}};

std::vector<std::uint32_t> multiRateTable() {
    return joined(
        {
            0x06000007, 0x06000007,  // duplex 0011, group 0011 of channel 0
            0x00206c0a, 0x00206c0a,  // channel 0: 2 rates of 27 words from word 10
            0x00200040, 0x00200040,  // channel 1: 2 rates, follows; behind at word 64
            0, 0, 0, 0,              // channels 2 and 3
        },
        // 0x55 is 16 and more behind 0x12, and so a pair with it; 0x56 begins a burst of its own.
        bodyOf({{modes, bypasses},
                {firstLength, secondLength},
                {adaptedForm, adaptedControl, recoveredMode, receivedWords},
                {ratio, bias},
                {loads, degeneration, sentMode, sentWords},
                {fraction, modulator, feedback}},
               2));
}

}  // namespace

std::vector<BundledTable> sxd4Tables() {
    return {
        BundledTable{"sxd4_pam4_56g",
                     {
                         0x06000007,  // TX: duplex 0011, group 0011 of channel 0
                         0x06000007,  // RX: the same
                         0x0010000a,  // channel 0: 1 rate of no words, at word 10
                         0x0010000a,  //
                         0x0010000a,  // channel 1: 1 rate, follows
                         0x0010000a,  //
                         0, 0, 0, 0,  // channels 2 and 3
                     }},
        BundledTable{"sxd4_two_modes",
                     {
                         // Channel 1 is its own master, bit 19, with group 0010 from bit 5; group
                         // 0001 of channel 0.
                         0x06080043,  // TX
                         0x06080043,  // RX: the same
                         0x0010000a,  // channel 0: 1 rate of no words, at word 10
                         0x0010000a,  //
                         0x0010000a,  // channel 1 likewise
                         0x0010000a,  //
                         0, 0, 0, 0,  // channels 2 and 3
                     }},
        BundledTable{"sxd4_multi_rate", multiRateTable()},
    };
}

}  // namespace lanecfg_test
