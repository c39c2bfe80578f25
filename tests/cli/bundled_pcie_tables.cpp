#include "cli/bundled_tables.h"

namespace lanecfg_test {
namespace {

// PCIe at 2.5, 5, 8, 16 and, with SXC, 32 Gb/s. The first two are coded 8B10B, 16 bits on 20; 8 and
// 16 Gb/s are 128B130B on 32 bits, 32 Gb/s on 64. The LCPLL puts out 5, 5, 8, 8 and 16 GHz, so that
// output dividers are 4, 2, 2, 1 and 1. Registers are those of lane 0.

using ValuesByRate = std::array<std::uint32_t, 5>;

/// The words of a register of which the field at this bit changes; other fields stand in `others`.
constexpr ValuesByRate changing(std::uint32_t others, std::uint32_t bit, ValuesByRate fields) {
    for (std::uint32_t& field : fields) {
        field = others | (field << bit);
    }
    return fields;
}

// Transmitters go without buffer, bit 17, and align phase and delay, bits 11 and 10. Several lanes
// have bit 16, and the master of their alignment bit 20.
constexpr std::uint32_t alignedAlone = 1U << 17 | 1U << 11 | 1U << 10;
constexpr std::uint32_t alignedTogether = alignedAlone | 1U << 16;
constexpr std::uint32_t alignedAsMaster = alignedTogether | 1U << 20;
// A wait of 2 at 7, 7 samples at 10; the lowest lane of several has 2 at 13.
constexpr std::uint32_t noChain = 2U << 7 | 7U << 10;
constexpr std::uint32_t lowestOfChain = noChain | 2U << 13;

// The counts of 500 MHz in a word of 16, 16, 40, 40 and 80 bits, 3.2, 1.6, 2.5, 1.25 and 1.25,
// rounded and times the last divider, 1, 1, 2, 2 and 2. They differ in bits 0 and 2.
constexpr ValuesByRate counts{3, 2, 6, 2, 2};
constexpr std::uint32_t countBits = 5;
// The numbers of the thresholds at or below 32 times that: 96, 64, 180 and 64. They differ in all
// five bits.
constexpr ValuesByRate thresholds{14, 11, 21, 11, 11};
constexpr std::uint32_t thresholdBits = 31;

/// TX_PHALIGN_CFG0 and TX_PHALIGN_CFG1, the transmit alignment.
WriteGroup alignment(std::uint32_t lanes, std::uint32_t chain) {
    return {{0x6d, changing(lanes, 0, counts), countBits},
            {0x6e, changing(chain, 1, thresholds), thresholdBits << 1}};
}

// PIPE_CTRL_CFG7: transmit clock 5, receive clock 2 at 12, receive buffer at 6, PCIe at 7 and 10;
// from 8 Gb/s on code 1 of the last divider at 15 and 19.
constexpr std::uint32_t undividedClocks = 5U | 1U << 6 | 1U << 7 | 1U << 10 | 2U << 12;
constexpr std::uint32_t lastDivider = 1U << 15 | 1U << 19;
// A lane without use that has the parameters of 2.5 Gb/s, but the transmit clock 2.
constexpr std::uint32_t clocksWithoutUse = 2U | 1U << 6 | 1U << 7 | 1U << 10 | 2U << 12;
constexpr ChangingRegister clocks{0x90,
                                  {undividedClocks, undividedClocks, undividedClocks | lastDivider,
                                   undividedClocks | lastDivider, undividedClocks | lastDivider},
                                  txMask | lastDivider};

// A_CFG1: 100 and 160, less 2, which differ in six bits. The other three dividers are idle.
constexpr ChangingRegister feedback{0x77, changing(0x4e4e4e00, 0, {98, 98, 158, 158, 158})};
constexpr std::uint32_t feedbackBits = 98 ^ 158;
/// The word belongs to the block: if another lane changes it too, it has a mask.
constexpr ChangingRegister maskedFeedback{0x77, feedback.values, feedbackBits};

/// For followers in the second dual the dividers of the first one, the low half, are in both.
constexpr ChangingRegister doubled(ChangingRegister dividers) {
    for (std::uint32_t& value : dividers.values) {
        value = (value & 0xffffU) * 0x10001U;
    }
    dividers.mask *= 0x10001U;
    return dividers;
}

// EYESCAN_CFG16: the same width at 9, 13 and 17, enabled at 8.
constexpr std::uint32_t sampledWidth(std::uint32_t width) {
    return 1U << 8 | width << 9 | width << 13 | width << 17;
}

// RX_CDR_CFG0: the offset at 0, the test source 2 at 10, enabled at 12. 8 and 16 Gb/s have a width
// at 2, selected by bits 1 and 5.
constexpr std::uint32_t recovered = 1U | 2U << 10 | 1U << 12;
constexpr std::uint32_t recoveredAt(std::uint32_t width) {
    return recovered | width << 2 | 1U << 1 | 1U << 5;
}
constexpr ChangingRegister recoveryWidth{
    0x35, {recovered, recovered, recoveredAt(2), recoveredAt(4), recovered}};

// RX_CDR_CFG2: a cycle at 3, codes 5 of 256 at 7, 4 of 4.0 at 11, 2 of 1.0 at 17 and at 20; at 14
// those of 32 / 4, 32 / 2, 32 / 2, 64 / 1 and 128 / 1.
constexpr ChangingRegister recoveryFactor{
    0x37, changing(1U << 3 | 5U << 7 | 4U << 11 | 2U << 17 | 2U << 20, 14, {3, 4, 4, 6, 7})};

// RX_ELASTIC_BUF_CFG0: latencies 20 and 17 at 1 and 23, thresholds 31 and 8 at 13 and 19, taken
// from here at 31. With 8B10B in use at 0, and so the correction at 30.
constexpr std::uint32_t latencies = 20U << 1 | 31U << 13 | 8U << 19 | 17U << 23 | 1U << 31;
constexpr std::uint32_t usedLatencies = latencies | 1U | 1U << 30;
constexpr ChangingRegister bufferLatency{
    0x42, {usedLatencies, usedLatencies, latencies, latencies, latencies}};

// RX_ELASTIC_BUF_CFG1: correction goes first, bit 1, and with 8B10B is of K28.0, 0x1c with the
// control bit 8, at 2.
constexpr ChangingRegister correction{0x43, changing(1U << 1, 2, {0x11c, 0x11c, 0, 0, 0})};

// RX_ELASTIC_BUF_CFG3: the bytes compared, errors too at 6, all of the second sequence at 28.
constexpr std::uint32_t comparedBytes(std::uint32_t bytes) {
    return bytes | 1U << 6 | 15U << 28;
}
constexpr std::uint32_t fromDecoder = 1U << 4;

// RX_ELASTIC_BUF_CFG7: skew 1 at 12, one block at 20; plain addresses at 6 without sequences.
constexpr ChangingRegister bufferAddresses{0x49, changing(1U << 12 | 1U << 20, 6, {0, 0, 1, 1, 1})};

// RX_ELASTIC_BUF_CFG8: threshold 31 at 2, latencies 8 and 22 at 8 and 13; on with blocks of 32
// bits.
constexpr ChangingRegister blockBuffer{
    0x4a, changing(31U << 2 | 8U << 8 | 22U << 13, 0, {0, 0, 1, 1, 0})};

// RX_MISC_CFG0: regulator 6 at 8, the slow mode of the equaliser below 10.4 Gb/s at 5.
constexpr ChangingRegister equaliserMode{0x4c, changing(6U << 8, 5, {1, 1, 1, 0, 0})};

// RX_PCS_CFG4: 2 errors, 40 good words at 2 and controls at 8, a signal at 14; the decoder at 15.
constexpr ChangingRegister validity{
    0x52, changing(2U | 40U << 2 | 40U << 8 | 1U << 14, 15, {1, 1, 0, 0, 0})};

// PIPE_TX_EQ_CFG0: margins at 2, 9, 16 and 23; the drive mode of 2.5 and 5 Gb/s or of more.
constexpr ChangingRegister drive{
    0x5b, changing(88U << 2 | 87U << 9 | 85U << 16 | 83U << 23, 0, {1, 1, 2, 2, 2})};

// TX_PHALIGN_CFG2: 7 samples at 2; at 8 codes of 2, 2, 4, 4 and 8 words times the output divider
// times 16 / 4, which are 32, 16, 32, 16 and 32.
constexpr ChangingRegister interpolator{0x6f, changing(7U << 2, 8, {7, 3, 7, 3, 7})};

// TX_PHALIGN_CFG4: a step of 3 at 2, 7 samples at 7, the thresholds again.
constexpr ChangingRegister threshold{0x71, changing(3U << 2 | 7U << 7, 11, thresholds)};

// TX_PHALIGN_CFG5: half of 20 * 4, 20 * 2, 32 * 2, 32 * 1 and 64 * 1.
constexpr ChangingRegister wordDivider{0x72, changing(0, 2, {40, 20, 32, 16, 32})};

// LCPLL_CFG2: capacitors at 0 and 4, a resistance at 5, 8 at 19, selected dynamically at 24. The
// second capacitor is idle at 2.5 and 5 Gb/s. The resistance is that of PCIe; 32 Gb/s have the 78
// of any feedback of 160 from 15 GHz on.
constexpr std::uint32_t filtered(std::uint32_t resistance, std::uint32_t capacitor) {
    return 1U | capacitor << 4 | resistance << 5 | 8U << 19 | 1U << 24;
}
constexpr ChangingRegister loopFilter{
    0x7a, {filtered(5, 0), filtered(5, 0), filtered(16, 1), filtered(16, 1), filtered(78, 1)}};

// PIPE_CTRL_CFG3: clocks on at 3 and 11, a time of 303 at 12; codes of the output dividers 4, 2 and
// 1 at 5 and 8.
constexpr std::uint32_t divided(std::uint32_t code) {
    return 1U << 3 | code << 5 | code << 8 | 1U << 11 | 303U << 12;
}
constexpr ChangingRegister outputDividers{
    0x91, {divided(2), divided(1), divided(1), divided(0), divided(0)}};

// PIPE_CTRL_CFG8: PCIe at 1, 12, 23, 25 and 27, a valid signal at 24; first dividers at 2 and 13,
// as codes 632 of 5, 600 of 4 and 88 of 8. The transmit aligner takes up to 2 GHz, so that 16 GHz
// are divided by 8 there.
constexpr std::uint32_t firstDivided(std::uint32_t rxCode, std::uint32_t txCode) {
    return 1U << 1 | rxCode << 2 | 1U << 12 | txCode << 13 | 1U << 23 | 1U << 24 | 1U << 25 |
           1U << 27;
}
constexpr ChangingRegister firstDividers{
    0x92,
    {firstDivided(632, 632), firstDivided(632, 632), firstDivided(600, 600), firstDivided(600, 600),
     firstDivided(600, 88)}};

// DA_CFG: the LCPLL at 0 and 12, outputs at 6 and 13, the transmit aligner at 11. The range above 1
// GHz: 5 GHz / 4, tried before 5 GHz / 5, to receive at 5; from 8 Gb/s on 2 GHz to transmit at 4.
constexpr std::uint32_t delayAligners = 1U | 1U << 6 | 1U << 11 | 1U << 12 | 1U << 13;
constexpr ChangingRegister ranges{
    0xbd,
    {delayAligners | 1U << 5, delayAligners | 1U << 5, delayAligners | 1U << 4,
     delayAligners | 1U << 4, delayAligners | 1U << 4}};

/// The same register of the second dual's clock group.
constexpr ChangingRegister inSecondDual(ChangingRegister first) {
    first.address += 0x200;
    return first;
}

// RX_PCS_CFG0: a width, its inner one at 4, commas 0x17c at 11 and 0x283 at 21.
constexpr std::uint32_t receivedWidth(std::uint32_t width, std::uint32_t inner) {
    return width | inner << 4 | 0x17cU << 11 | 0x283U << 21;
}
constexpr std::uint32_t detectedCommas = 31U << 6;
constexpr std::uint32_t narrowReceived = receivedWidth(2, 0) | detectedCommas;

// RX_PCS_CFG1: commas in words of 1 at 1, shown where they are at 17.
constexpr std::uint32_t shownCommas = 1U << 1 | 1U << 17;
constexpr std::uint32_t decoded = 1U << 18 | 1U << 21;
constexpr std::uint32_t commaMask = 127U << 6;
constexpr std::uint32_t narrowCommas = shownCommas | commaMask | decoded;

// RX_PCS_CFG2: the first address at 5; the decoder at 2 and 18, commas decoded at 0 and 1, the
// pattern of 16 Gb/s or of 32 at 3.
constexpr std::uint32_t firstAddress(std::uint32_t address) {
    return address << 5;
}
constexpr std::uint32_t decoder = 1U << 2 | 1U << 18;
constexpr std::uint32_t decodedCommas = 3U;
constexpr std::uint32_t plainBuffer = 1U << 17;

// TX_PCS_CFG0: a width, its inner one at 4, the first address at 11, and the coder.
constexpr std::uint32_t sentWidth(std::uint32_t width, std::uint32_t inner, std::uint32_t address) {
    return width | inner << 4 | address << 11;
}
constexpr std::uint32_t coder = 1U << 6 | 1U << 7;

// RX_CTLE_CFG1: a calibration of 8 at 7; a scan at 14, but not at 8 Gb/s.
constexpr std::uint32_t calibrated = 8U << 7;
constexpr std::uint32_t scanned = 1U << 14;

/// What SXB writes of the coding layer and the receiver at each rate.
std::vector<WriteGroup> sxbCodingGroups() {
    const std::uint32_t narrowDecoder = firstAddress(12) | decoder | decodedCommas;
    const std::uint32_t narrowSent = sentWidth(2, 0, 12) | coder;
    return {{{0x00, {narrowReceived, narrowReceived, receivedWidth(5, 1), receivedWidth(5, 1)}},
             {0x01, {narrowCommas, narrowCommas, shownCommas, shownCommas}},
             {0x02, {narrowDecoder, narrowDecoder, firstAddress(4), firstAddress(4) | 1U << 3}}},
            {{0x34, {sampledWidth(11), sampledWidth(1), sampledWidth(12), 0}},
             recoveryWidth,
             recoveryFactor,
             {0x3f, {calibrated | scanned, calibrated | scanned, calibrated, calibrated | scanned}},
             bufferLatency,
             correction},
            // The request has one byte of four compared.
            {{0x45,
              {comparedBytes(1) | fromDecoder, comparedBytes(1) | fromDecoder, comparedBytes(15),
               comparedBytes(15)}},
             bufferAddresses,
             blockBuffer,
             equaliserMode,
             validity},
            {{0x5a, {narrowSent, narrowSent, sentWidth(5, 1, 4), sentWidth(5, 1, 4)}}, drive}};
}

/// Groups in front of those of the coding layer, these, and the groups behind them.
std::vector<WriteGroup> aroundCoding(std::vector<WriteGroup> before,
                                     const std::vector<WriteGroup>& after) {
    const std::vector<WriteGroup> coding = sxbCodingGroups();
    before.insert(before.end(), coding.begin(), coding.end());
    before.insert(before.end(), after.begin(), after.end());
    return before;
}

/// One lane shares its dual with no other one, so the feedback needs no mask.
std::vector<std::uint32_t> oneLaneTable() {
    const std::vector<WriteGroup> groups =
        aroundCoding({alignment(alignedAlone, noChain), {clocks}},
                     {{interpolator, threshold, wordDivider, feedback, loopFilter},
                      {outputDividers, firstDividers},
                      {ranges}});
    const std::vector<std::uint32_t> words{
        // All duplex; channels 1 to 3 are together: masters 1, 1, 1, 0, groups 1110, 0001.
        0x1ea801c3, 0x1ea801c3,  //
        0x80409c0a, 0x80409c0a,  // channel 0: PCIe, 4 rates of 39 words from word 10
        0x80100ca6, 0x80100ca6,  // channel 1: PCIe, without use, 3 words from word 166
        0x001000a9, 0x001000a9,  // channel 2: 1 rate of defaults, follows
        0x801000a9, 0x801000a9,  // channel 3: PCIe, without use, follows
    };
    return joined(joined(words, bodyOf(groups, 4)), {sxbPipeHeader, txMask, clocksWithoutUse});
}

/// Lane 0 is the lowest of two and the master of their alignment.
std::vector<std::uint32_t> twoLaneTable() {
    const std::vector<WriteGroup> groups =
        aroundCoding({alignment(alignedAsMaster, lowestOfChain), {maskedFeedback, clocks}},
                     {{interpolator, threshold, wordDivider, loopFilter},
                      {outputDividers, firstDividers},
                      {ranges}});
    const std::vector<std::uint32_t> words{
        // All duplex, two pairs: masters 2, 2, 0, 0, groups 1100 and 0011.
        0x1f401807, 0x1f401807,  //
        0x8040a00a, 0x8040a00a,  // channel 0: PCIe, 4 rates of 40 words from word 10
        0x804000aa, 0x804000aa,  // channel 1: PCIe, 4 rates, follows; behind at word 170
        0x00100caa, 0x00100caa,  // channel 2: 1 rate of defaults, 3 words from word 170
        0x801000ad, 0x801000ad,  // channel 3: PCIe, without use, follows; behind at word 173
    };
    return joined(joined(words, bodyOf(groups, 4)), {sxbPipeHeader, txMask, equalWidths});
}

/// Lane 0 is the lowest of four, below the master of their alignment, and writes the loop filter of
/// the second dual for lanes 2 and 3.
std::vector<std::uint32_t> fourLaneTable() {
    const std::vector<WriteGroup> groups =
        aroundCoding({alignment(alignedTogether, lowestOfChain), {doubled(maskedFeedback), clocks}},
                     {{interpolator, threshold, wordDivider, loopFilter},
                      {outputDividers, firstDividers},
                      {ranges, inSecondDual(loopFilter)}});
    const std::vector<std::uint32_t> words{
        0x1e00001f, 0x1e00001f,  // all duplex, all with master 0, group 1111
        0x8040a40a, 0x8040a40a,  // channel 0: PCIe, 4 rates of 41 words from word 10
        0x804000ae, 0x804000ae,  // channel 1: PCIe, 4 rates, follows; behind at word 174
        0x804000ae, 0x804000ae,  // channel 2 likewise
        0x804000ae, 0x804000ae,  // channel 3 likewise
    };
    return joined(words, bodyOf(groups, 4));
}

// HSDIST_CFG: the voltage 3 at 5; the PLL puts out half its oscillator, bit 3, but for 16 GHz.
constexpr ChangingRegister distribution{0x78, changing(3U << 5, 3, {1, 1, 1, 1, 0})};

// LCPLL_CFG0: code 4 of reference divider 1, on at 11 and 12, a voltage of 4 at 14. The charge pump
// at 3 is that of PCIe, but at 32 Gb/s that of any line without a fraction.
constexpr ChangingRegister chargePump{
    0x79, changing(4U | 1U << 11 | 1U << 12 | 4U << 14, 3, {255, 255, 255, 255, 15})};

// The band of the phase interpolators goes by the PLL's output, halved again where that is half its
// oscillator: the band below 7 GHz, but at 16 GHz that from 12 on.
constexpr ValuesByRate bands{0, 0, 0, 0, 3};

/// SXC up to 32 Gb/s. First addresses are 4 in all widths.
std::vector<WriteGroup> sxcGroups() {
    const std::uint32_t narrowDecoder = firstAddress(4) | decoder | decodedCommas;
    const std::uint32_t narrowSent = sentWidth(2, 0, 4) | coder;
    return {
        alignment(alignedTogether, lowestOfChain),
        {doubled(maskedFeedback), clocks},
        {{0x00,
          {narrowReceived, narrowReceived, receivedWidth(5, 1), receivedWidth(5, 1),
           receivedWidth(7, 2)}},
         {0x01, {narrowCommas, narrowCommas, shownCommas, shownCommas, shownCommas}},
         // The buffer of blocks of 64 bits does not keep the plain one from being used.
         {0x02,
          {narrowDecoder, narrowDecoder, firstAddress(4), firstAddress(4) | 1U << 3,
           firstAddress(4) | 2U << 3 | plainBuffer}},
         {0x03, changing(0, 29, {0, 0, 1, 0, 1})}},  // ADAPT_APT_CFG: its data divided
        {{0x34, {sampledWidth(11), sampledWidth(1), sampledWidth(10), 0, sampledWidth(12)}},
         recoveryWidth,
         recoveryFactor,
         bufferLatency,
         correction},
        {{0x45,
          {comparedBytes(1) | fromDecoder, comparedBytes(1) | fromDecoder, comparedBytes(15),
           comparedBytes(15), comparedBytes(15)}},
         bufferAddresses,
         blockBuffer,
         equaliserMode,
         validity},
        {{0x5a,
          {narrowSent, narrowSent, sentWidth(5, 1, 4), sentWidth(5, 1, 4), sentWidth(7, 2, 4)}},
         drive},
        {interpolator, threshold, wordDivider, distribution, chargePump, loopFilter},
        {outputDividers, firstDividers},
        {// CHCLK_RXPI_CFG: a boost of 8 at 2, on at 9, 11, 12 and 14.
         {0xb3, changing(8U << 2 | 1U << 9 | 1U << 11 | 1U << 12 | 1U << 14, 6, bands)},
         // CHCLK_TXPI_CFG0: on at 1, 2, 5, 14 and 19, the transmit clock for the divider at 3, the
         // LCPLL at 10, a boost of 8 at 15.
         {0xb5, changing(1U << 1 | 1U << 2 | 1U << 3 | 1U << 5 | 1U << 10 | 1U << 14 | 8U << 15 |
                             1U << 19,
                         8, bands)},
         // CHL_RSV_CFG2: latencies 8 and 22 at 1 and 5, threshold 31 at 11, one at 17; on with
         // blocks of 64 bits.
         {0xb8, changing(8U << 1 | 22U << 5 | 31U << 11 | 1U << 17, 0, {0, 0, 0, 0, 1})},
         ranges},
        {inSecondDual(distribution), inSecondDual(chargePump), inSecondDual(loopFilter)},
    };
}

std::vector<std::uint32_t> sxcTable() {
    const std::vector<std::uint32_t> words{
        0x1e00001f, 0x1e00001f,  // all duplex, all with master 0, group 1111
        0x8050c40a, 0x8050c40a,  // channel 0: PCIe, 5 rates of 49 words from word 10
        0x805000ff, 0x805000ff,  // channel 1: PCIe, 5 rates, follows; behind at word 255
        0x805000ff, 0x805000ff,  // channel 2 likewise
        0x805000ff, 0x805000ff,  // channel 3 likewise
    };
    return joined(words, bodyOf(sxcGroups(), 5));
}

}  // namespace

std::vector<BundledTable> pcieTables() {
    return {
        BundledTable{"sxb_pcie_gen4_x1", oneLaneTable()},
        BundledTable{"sxb_pcie_gen4_x2", twoLaneTable()},
        BundledTable{"sxb_pcie_gen4_x4", fourLaneTable()},
        BundledTable{"sxc_pcie", sxcTable()},
    };
}

}  // namespace lanecfg_test
