#include "cli/bundled_tables.h"

#include <utility>

namespace lanecfg_test {
namespace {

/// The header of the pipe register in one lane.
constexpr std::uint32_t sxbPipeHeaderOf(std::uint32_t lane) {
    return inLane(sxbPipeHeader, lane);
}

/// What one CPRI rate writes; codes and dividers as they stand in the registers.
struct CpriRate {
    std::uint32_t feedback;      ///< of the LCPLL, less 2
    std::uint32_t recovery;      ///< 32 over the output divider, as its code
    std::uint32_t interpolator;  ///< 4 words times the output divider times 16 / 4, as its code
    std::uint32_t wordDivider;   ///< half of 40 bits times the output divider
    std::uint32_t loopFilter;
    std::uint32_t output;  ///< output divider, as its code
};

// Output dividers 8, 4, 4, 2, 2, 1. 128 steps of the interpolator have no code.
constexpr CpriRate cpriRates[] = {{38, 2, 0, 160, 92, 3}, {38, 3, 11, 80, 92, 2},
                                  {48, 3, 11, 80, 74, 2}, {38, 4, 7, 40, 92, 1},
                                  {48, 4, 7, 40, 74, 1},  {38, 5, 3, 20, 92, 0}};

/// The words of one rate for lane 0 or lane 2, each of which has a dual for itself.
std::vector<std::uint32_t> cpriBody(const CpriRate& rate, bool isSecondDual) {
    const std::uint32_t shift = isSecondDual ? 16 : 0;
    const std::uint32_t idle = 0x4e4e4e4e;
    const std::uint32_t feedbacks =
        (idle & ~(0xffU << shift)) | (rate.feedback << shift);  // A_CFG1 of both duals
    const std::uint32_t recovery = 0x00242288 | (rate.recovery << 14);
    const std::uint32_t interpolator = 0x0000001c | (rate.interpolator << 8);
    const std::uint32_t wordDivider = rate.wordDivider << 2;
    const std::uint32_t filter = 0x01400011 | (rate.loopFilter << 5);
    const std::uint32_t dividers = 0x0012f808 | (rate.output << 5) | (rate.output << 8);
    std::vector<std::uint32_t> words{
        0x019203bc,                   // 0x90 and 0x77, both with masks
        0x16U << shift, feedbacks,    // the bits in which 38 and 48 differ
        txMask,         equalWidths,  //
        0x000de1bc,                   // 0x6f and 0x37
        recovery,       interpolator};
    // The filter of the first dual is at 0x7a, that of the second at 0x27a, behind the dividers.
    const std::vector<std::uint32_t> rest =
        isSecondDual ? std::vector<std::uint32_t>{0x00122394,  // 0x91 and 0x72
                                                  wordDivider, dividers,
                                                  0x004f53d0,  // 0x27a alone
                                                  filter}
                     : std::vector<std::uint32_t>{0x000f4394,  // 0x7a and 0x72
                                                  wordDivider, filter,
                                                  0x00122488,  // 0x91 alone
                                                  dividers};
    return joined(std::move(words), rest);
}

std::vector<std::uint32_t> cpriTable() {
    std::vector<std::uint32_t> words{
        // All duplex; groups {0}, {1, 3} and {2}: masters 1, 2, 1, 0, groups 0, 0100, 1010, 0001.
        0x1ec80943, 0x1ec80943,  //
        0x0060340a, 0x0060340a,  // channel 0: 6 rates of 13 words from word 10
        0x00100c58, 0x00100c58,  // channel 1: 1 rate of defaults, 3 words from word 88
        0x0060345b, 0x0060345b,  // channel 2: 6 rates of 13 words from word 91
        0x001000a9, 0x001000a9,  // channel 3 follows channel 1
    };
    for (const CpriRate& rate : cpriRates) {
        words = joined(std::move(words), cpriBody(rate, false));
    }
    words = joined(std::move(words), {sxbPipeHeader, txMask, equalWidths});
    for (const CpriRate& rate : cpriRates) {
        words = joined(std::move(words), cpriBody(rate, true));
    }
    return words;
}

/// What one SDI rate writes in either direction; codes as they stand in the registers.
struct SdiRate {
    std::uint32_t words;         ///< of the fabric clock divider, for the alignment
    std::uint32_t initial;       ///< 32 times that, as the number of its threshold
    std::uint32_t fabric;        ///< fabric clock divider, as its code
    std::uint32_t output;        ///< output divider, as its code
    std::uint32_t width;         ///< at the fabric and inside, as their codes
    std::uint32_t firstAddress;  ///< where the reader of the first buffer begins
    std::uint32_t wordDivider;   ///< half of the bits times the output divider
    std::uint32_t interpolator;  ///< word steps times the output divider times 16 / 4, as its code
    std::uint32_t recovery;      ///< 32 over the output divider, as its code
    bool isNarrow;               ///< 20 bits, below 5.4 Gb/s
    bool isSlow;                 ///< below 10.4 Gb/s
};

// Fabric clock dividers 4, 4, 2 and output dividers 4, 2, 1.
constexpr SdiRate sdiRates[] = {{4, 15, 3, 2, 0x03, 12, 40, 7, 3, true, true},
                                {4, 15, 3, 1, 0x15, 4, 40, 7, 4, false, true},
                                {2, 11, 1, 0, 0x15, 4, 20, 3, 5, false, false}};

/// `PIPE_CTRL_CFG7`: both clocks from dividers (5), the receive power control, and the codes of the
/// fabric clock dividers, twice for each direction.
constexpr std::uint32_t sdiClocks(const SdiRate& tx, const SdiRate& rx) {
    return 0x00005805 | (tx.fabric << 15) | (tx.fabric << 19) | (rx.fabric << 23) |
           (rx.fabric << 27);
}

/// `PIPE_CTRL_CFG3`: the output divider of each direction.
constexpr std::uint32_t sdiDividers(const SdiRate& tx, const SdiRate& rx) {
    return 0x0012f808 | (tx.output << 5) | (rx.output << 8);
}

/// Masks are the bits that change: 4 and 2 words, 15 and 11 of the threshold, codes 3 and 1 of the
/// fabric clock, all codes of the output divider.
std::vector<std::uint32_t> sdiTransmitBody(const SdiRate& rate) {
    return {
        0x018dc36c,  // 0x6e and 0x6d, both with masks
        0x00000006,
        0x00020c00 | rate.words,  // TX_PHALIGN_CFG0: without buffer
        0x00000008,
        0x00001d00 | rate.initial << 1,  // TX_PHALIGN_CFG1
        0x01922484,                      // 0x91 and 0x90, both with masks
        0x00117007,
        sdiClocks(rate, sdiRates[0]),  //
        0x00000060,
        sdiDividers(rate, sdiRates[0]),
        0x000de2d4,                                           // 0x6f and 0x5a
        0x00000100 | rate.width | (rate.firstAddress << 11),  // TX_PCS_CFG0: uncoded
        0x0000001c | (rate.interpolator << 8),                // TX_PHALIGN_CFG2
        0x000e438c,                                           // 0x72 and 0x71
        0x0000038c | (rate.initial << 11),                    // TX_PHALIGN_CFG4
        rate.wordDivider << 2,                                // TX_PHALIGN_CFG5
    };
}

std::vector<std::uint32_t> sdiReceiveBody(const SdiRate& rate) {
    return {
        0x018a829c,                                  // 0x54 and 0x53, both with masks
        0x00000006, 0x00604c00 | rate.words,         // RX_PHALIGN_CFG0
        0x00000008, 0x0001c200 | rate.initial << 1,  // RX_PHALIGN_CFG1
        0x01922484,                                  // 0x91 and 0x90, both with masks
        0x11007000, sdiClocks(sdiRates[0], rate),    //
        0x00000300, sdiDividers(sdiRates[0], rate),
        0x00004004,                          // 0x02 and 0x00
        0x506be000 | rate.width,             // RX_PCS_CFG0: commas 0x17c at 11 and 0x283 at 21
        rate.firstAddress << 5,              // RX_PCS_CFG2
        0x0d1002fa,                          // a burst from 0x34: 0, 1, 3 and 14 behind it
        rate.isNarrow ? 0x00022300U : 0U,    // EYESCAN_CFG16: three widths of 1 and their enable
        rate.isNarrow ? 0x1800U : 0x1836U,   // RX_CDR_CFG0: else width 5 at 2, bits 1 and 5
        0x00242288 | (rate.recovery << 14),  // RX_CDR_CFG2
        // RX_ELASTIC_BUF_CFG0: underflow 4 at 19, latencies from 18 at 23 to a word more at 1.
        0x09200000U | (rate.isNarrow ? 20U << 1 : 22U << 1),
        0x000ac264,                                // 0x56 and 0x4c
        0x00000600U | (rate.isSlow ? 0x20U : 0U),  // RX_MISC_CFG0
        0x000001c0 | (rate.initial << 10),         // RX_PHALIGN_CFG3
    };
}

std::vector<std::uint32_t> sdiTable() {
    std::vector<std::uint32_t> words{
        // Channels 1 to 3 are duplex (1110) and together: masters 1, 1, 1, 0, groups 1110, 0001.
        0x1ca801c3, 0x1ca801c3,  //
        0x0030400a,              // channel 0 TX: 3 rates of 16 words from word 10
        0x0030543d,              // channel 0 RX: 3 rates of 21 words from word 61
        0x00100c3a, 0x00100c3a,  // channel 1: 1 rate of defaults, 3 words from word 58
        0x0010003d, 0x0010003d,  // channel 2 follows
        0x0010003d, 0x0010003d,  // channel 3 follows
    };
    for (const SdiRate& rate : sdiRates) {
        words = joined(std::move(words), sdiTransmitBody(rate));
    }
    words = joined(std::move(words), {sxbPipeHeader, txMask, equalWidths});
    for (const SdiRate& rate : sdiRates) {
        words = joined(std::move(words), sdiReceiveBody(rate));
    }
    return words;
}

}  // namespace

std::vector<BundledTable> sxbTables() {
    return {
        // A gearbox that makes two words of one has each lane's clocks written by itself.
        BundledTable{"sxb_10gbase_r",
                     joined(oneGroup(12), {sxbPipeHeaderOf(0), txMask, doubleWidth,  //
                                           sxbPipeHeaderOf(1), txMask, doubleWidth,  //
                                           sxbPipeHeaderOf(2), txMask, doubleWidth,  //
                                           sxbPipeHeaderOf(3), txMask, doubleWidth})},
        // 16 bits are 20 on the line, as many as inside.
        BundledTable{"sxb_1000base_x", joined(oneGroup(3), {sxbPipeHeader, txMask, equalWidths})},
        BundledTable{"sxb_1000base_x_bonded",
                     {
                         0x1f401807,  // two pairs, as below: masters 2, 2, 0, 0
                         0x1f401807,  //
                         0x00100c0a,  // channel 0: 1 rate of defaults, 3 words from word 10
                         0x00100c0a,  //
                         0x0010000d,  // channel 1 follows
                         0x0010000d,  //
                         0x00100c0d,  // channel 2: 1 rate of 3 words from word 13
                         0x00100c0d,  //
                         0x00100010,  // channel 3 follows
                         0x00100010,  //
                         sxbPipeHeader, txMask, equalWidths,  // channel 0
                         sxbPipeHeader, txMask, equalWidths,  // channel 2
                     }},
        BundledTable{"sxb_xaui", joined(oneGroup(3), {sxbPipeHeader, txMask, equalWidths})},
        // Without the transmit buffer, bit 3.
        BundledTable{"sxb_eight_lanes_lower",
                     joined(oneGroup(3), {sxbPipeHeader, txMask, doubleWidth - 8})},
        BundledTable{"sxb_eight_lanes_upper",
                     joined(oneGroup(3), {sxbPipeHeader, txMask, doubleWidth - 8})},
        BundledTable{"sxb_otu2_fractional",
                     {
                         0x1f401807,  // all duplex, two pairs: masters 2, 2, 0, 0
                         0x1f401807,  //
                         0x00100c0a,  // channel 0: 1 rate of 3 words from word 10
                         0x00100c0a,  //
                         0x0010000d,  // channel 1 follows
                         0x0010000d,  //
                         0x00100c0d,  // channel 2: 1 rate of defaults, 3 words from word 13
                         0x00100c0d,  //
                         0x00100010,  // channel 3 follows
                         0x00100010,  //
                         sxbPipeHeader, txMask, doubleWidth,  // channel 0
                         sxbPipeHeader, txMask, equalWidths,  // channel 2
                     }},
        BundledTable{"sxb_other_pll_clock",
                     {
                         0x1f401807,  // two pairs again
                         0x1f401807,  //
                         0x00100c0a,  // channel 0: 1 rate of 3 words from word 10
                         0x00100c0a,  //
                         0x0010000d,  // channel 1 follows
                         0x0010000d,  //
                         0x00100c0d,  // channel 2: 1 rate of defaults, 3 words from word 13
                         0x00100c0d,  //
                         0x00100010,  // channel 3 follows
                         0x00100010,  //
                                      // Channel 0: the divided clock, 5 at bit 0, and code 5 for
                                      // its divider 8 at bits 15 and 19, where the width has 1.
                         sxbPipeHeader, txMask, doubleWidth + 3 + (4U << 15) + (4U << 19),
                         sxbPipeHeader, txMask, equalWidths,  // channel 2
                     }},
        BundledTable{"sxb_jesd204_receive",
                     {
                         0x0000001f,  // TX: none duplex, all with master 0, group 1111
                         0x0000001f,  // RX: the same
                         0x00100c0a,  // channel 0 TX: 1 rate of defaults, 3 words from word 10
                         0x00100c0d,  // channel 0 RX: 1 rate of 3 words from word 13
                         0x0010000d,  // channel 1 TX follows
                         0x00100010,  // channel 1 RX follows
                         0x0010000d,  // channel 2 likewise
                         0x00100010,  //
                         0x0010000d,  // channel 3 likewise
                         0x00100010,  //
                         sxbPipeHeader, txMask, equalWidths,  // channel 0 TX
                         sxbPipeHeader, rxMask, equalWidths,  // channel 0 RX
                     }},
        BundledTable{"sxb_partly_used",
                     {
                         // Channels 0 and 1 are duplex (0011). Groups to transmit are {0}, {1, 2}
                         // and {3}: masters 3, 1, 1, 0, groups 1000, 0, 0110, 0001.
                         0x07a900c3,
                         // To receive {0}, {1, 3} and {2}: masters 1, 2, 1, 0, groups 0, 0100,
                         // 1010, 0001.
                         0x06c80943,
                         0x00100c0a,  // channel 0: 1 rate of 3 words from word 10
                         0x00100c0a,  //
                         0x00100c0d,  // channel 1: 1 rate of defaults, 3 words from word 13
                         0x00100c0d,  //
                         0x00100010,  // channel 2 TX follows
                         0x00100c13,  // channel 2 RX: 1 rate of 3 words from word 19
                         0x00100c10,  // channel 3 TX: 1 rate of 3 words from word 16
                         0x00100016,  // channel 3 RX follows
                         sxbPipeHeader, txMask, equalWidths,  // channel 0
                         sxbPipeHeader, txMask, equalWidths,  // channel 1
                         sxbPipeHeader, txMask, equalWidths,  // channel 3 TX
                         sxbPipeHeader, rxMask, equalWidths,  // channel 2 RX
                     }},
        BundledTable{
            "sxb_does_not_pack",
            {
                // All duplex; masters 2, 2, 1, 0, groups 0, 1100, 0010, 0001.
                0x1f481843,         0x1f481843,
                0x00100c0a,  // channel 0: 1 rate of 3 words from word 10
                0x00100c0a,  //
                0x00100c0d,  // channel 1: 1 rate of 3 words from word 13
                0x00100c0d,  //
                0x00100c10,  // channel 2: 1 rate of defaults, 3 words from word 16
                0x00100c10,  //
                0x00100013,  // channel 3 follows
                0x00100013,  //
                sxbPipeHeaderOf(0), txMask,     doubleWidth,  // channel 0, through its gearbox
                sxbPipeHeader,      txMask,     equalWidths,  // channel 1
                sxbPipeHeader,      txMask,     equalWidths,  // channel 2
            }},
        BundledTable{
            "sxb_25g_and_10g",
            {
                // As above: channels 0 and 1 by themselves, 2 and 3 together.
                0x1f481843, 0x1f481843,              //
                0x00100c0a, 0x00100c0a,              // channel 0: 1 rate of 3 words from word 10
                0x00100c0d, 0x00100c0d,              // channel 1: 1 rate of 3 words from word 13
                0x00203810, 0x00203810,              // channel 2: 2 rates of 14 words from word 16
                0x0020002c, 0x0020002c,              // channel 3 follows; behind at word 44
                sxbPipeHeader, txMask, equalWidths,  // channel 0
                sxbPipeHeader, txMask,
                equalWidths,  // channel 1
                              // Channel 2 at 25.78125 Gb/s. A pair has the second address at bit
                              // 13, the first at bit 3, and bit 2.
                sxbPipeHeader, txMask, equalWidths,
                0x000981bc,  // 0x4c and 0x37
                             // RX_CDR_CFG2: a cycle at bit 3; codes 5 of 256 at 7, 4 of 4.0 at 11,
                             // 6 of 64 at 14, 2 of 1.0 at 17 and at 20.
                0x0025a288,
                0x00000600,  // RX_MISC_CFG0: regulator 6 at bit 8
                0x000e437c,  // 0x72 and 0x6f
                0x0000071c,  // TX_PHALIGN_CFG2: 7 samples at 2, code 7 of 8 * 1 * 16 / 4 at 8
                0x00000080,  // TX_PHALIGN_CFG5: 64 * 1 / 2 at 2
                0x0012448c,  // 0x92 and 0x91
                0x0012f808,  // PIPE_CTRL_CFG3: clocks on at 3 and 11, a time of 303 at 12
                             // PIPE_CTRL_CFG8: 12890.625 / 4 / 8 is the word's 402.832, code 600 at
                             // 2 and 13.
                0x014b0960,
                0x0017a5e8,  // 0xbd alone, its address twice
                0x00003041,  // DA_CFG: LCPLL at 0 and 12, outputs at 6 and 13
                             // At 10.3125 Gb/s the same groups.
                sxbPipeHeader, txMask, equalWidths,  //
                0x000981bc,
                0x00252288,  // code 4 of 32 / 2
                0x00000620,  // the slow mode of the equaliser at 5
                0x000e437c,
                0x00000d1c,  // code 13 of 8 * 2.5 * 16 / 4
                0x00000140,  // 64 * 2.5 / 2
                0x0012448c,
                0x0012ffe8,  // output divider 2.5, code 7 at 5 and 8
                0x014f09e0,  // 12890.625 / 5 / 16 is 161.133, code 632
                0x0017a5e8,
                0x00003071,  // 12.89 / 4, tried before, is above 1 GHz: ranges at 4 and 5
            }},
        BundledTable{"sxb_cpri", cpriTable()},
        BundledTable{"sxb_sdi_independent", sdiTable()},
    };
}

}  // namespace lanecfg_test
