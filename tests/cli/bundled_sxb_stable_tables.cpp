#include "cli/bundled_tables.h"
#include "support/rate_table_headers.h"

namespace lanecfg_test {
namespace {

// The frozen rules have PIPE_CTRL_CFG7 at 0x99, without the receive power control.
constexpr std::uint32_t pipeHeader = bothMasked | loneHeader(0x99);
constexpr std::uint32_t equalClocks = equalWidths - 0x800;
constexpr std::uint32_t dividedClocks = doubleWidth - 0x800;

// Where a lane changes both directions at once, a gearbox that makes two words of one has each
// lane's masked registers written by itself.

/// What lanes 0 and 1 write at one of their two rates.
struct FastRate {
    std::uint32_t feedback;  ///< of the LCPLL, less 2
    std::uint32_t band;      ///< of the phase interpolators: 2 below 12 GHz, 3 from there on
};

// 10.3125 and 14.0625 GHz are 66 and 90 times 156.25 MHz.
constexpr std::array<FastRate, 2> fastRates{{{64, 2}, {88, 3}}};

// CHCLK_RXPI_CFG: a boost of 8 at 2, steps passed by at 10, on at 9, 11, 12 and 14; the band at 6.
constexpr std::uint32_t receiveInterpolator =
    8U << 2 | 1U << 9 | 1U << 10 | 1U << 11 | 1U << 12 | 1U << 14;
// CHCLK_TXPI_CFG0: steps passed by at 0, on at 1, 2, 5 and 14, the transmit clock for the divider
// at 3, the LCPLL at 10, the interpolator passed by at 11, a boost of 8 at 15; the band at 8.
constexpr std::uint32_t transmitInterpolator =
    1U | 1U << 1 | 1U << 2 | 1U << 3 | 1U << 5 | 1U << 10 | 1U << 11 | 1U << 14 | 8U << 15;

/// Lane 1 changes `A_CFG1`, a word of the block, as well, so it has a mask of the bits in which 64
/// and 88 differ. Its other three dividers are idle.
std::vector<std::uint32_t> fastBody(const FastRate& rate) {
    return {
        inLane(bothMasked | pairHeader(0x7a, 0x99), 0),
        64 ^ 88,
        0x4e4e4e00 | rate.feedback,  // A_CFG1
        txMask,
        dividedClocks,
        inLane(pipeHeader, 1),
        txMask,
        dividedClocks,
        pairHeader(0xbc, 0xbe),  // not masked, so the master's alone
        receiveInterpolator | rate.band << 6,
        transmitInterpolator | rate.band << 8,
    };
}

// Lanes 2 and 3 run at 5.0 and 2.5 Gb/s from 5 GHz: output dividers 2 and 4, codes 1 and 2.

/// `PIPE_CTRL_CFG3`: clocks on at 3 and 11, a time of 303 at 12, the divider of each direction.
constexpr std::uint32_t slowDividers(std::uint32_t txCode, std::uint32_t rxCode) {
    return 1U << 3 | txCode << 5 | rxCode << 8 | 1U << 11 | 303U << 12;
}
// The codes differ in two bits. Both directions change the word, hence the masks.
constexpr std::uint32_t codeBits = 1U ^ 2U;

constexpr std::array<std::uint32_t, 5> sameClocks{equalClocks, equalClocks};
constexpr ChangingRegister transmitDivider{
    0x9a, {slowDividers(1, 1), slowDividers(2, 1)}, codeBits << 5};
constexpr ChangingRegister receiveDivider{
    0x9a, {slowDividers(1, 1), slowDividers(1, 2)}, codeBits << 8};
// TX_PHALIGN_CFG2: 7 samples at 2; at 8 codes of 4 words times the output divider times 16 / 4, 32
// and 64. TX_PHALIGN_CFG5: half of 40 bits times the output divider.
constexpr ChangingRegister interpolatorSteps{0x72, {7U << 2 | 7U << 8, 7U << 2 | 11U << 8}};
constexpr ChangingRegister wordDivider{0x75, {40U << 2, 80U << 2}};

std::vector<std::uint32_t> slowTransmitBody() {
    return bodyOf({{{0x99, sameClocks, txMask}, transmitDivider}, {interpolatorSteps, wordDivider}},
                  2);
}

std::vector<std::uint32_t> slowReceiveBody() {
    return bodyOf({{{0x99, sameClocks, rxMask}, receiveDivider}}, 2);
}

std::vector<std::uint32_t> multiRateTable() {
    std::vector<std::uint32_t> words{
        // Channels 0 and 1 are duplex (0011) in group "A", 2 and 3 are together in "B" to transmit
        // and in "C" to receive: masters and groups of two pairs.
        0x07401807, 0x07401807,  //
        0x00202c0a, 0x00202c0a,  // channel 0: 2 rates of 11 words from word 10
        0x00200020, 0x00200020,  // channel 1: 2 rates, follows; behind at word 32
        0x00202020,              // channel 2 TX: 2 rates of 8 words from word 32
        0x00201430,              // channel 2 RX: 2 rates of 5 words from word 48
        0x00200030,              // channel 3 TX: 2 rates, follows; behind at word 48
        0x0020003a,              // channel 3 RX: 2 rates, follows; behind at word 58
    };
    for (const FastRate& rate : fastRates) {
        words = joined(words, fastBody(rate));
    }
    words = joined(words, slowTransmitBody());
    return joined(words, slowReceiveBody());
}

}  // namespace

std::vector<BundledTable> sxbStableTables() {
    return {
        BundledTable{"sxb_stable_10gbase_r",
                     joined(oneGroup(12), {inLane(pipeHeader, 0), txMask, dividedClocks,  //
                                           inLane(pipeHeader, 1), txMask, dividedClocks,  //
                                           inLane(pipeHeader, 2), txMask, dividedClocks,  //
                                           inLane(pipeHeader, 3), txMask, dividedClocks})},
        BundledTable{"sxb_stable_multi_rate", multiRateTable()},
    };
}

}  // namespace lanecfg_test
