#include "cli/rate_table_words.h"

namespace lanecfg_test {

namespace {

/// Number of rates at bit 20, words of a rate at bit 10, offset at bit 0.
std::uint32_t channelWord(std::uint32_t rates, std::size_t bodyWords, std::size_t offset) {
    const std::uint32_t size = rates == 0 ? 0 : static_cast<std::uint32_t>(bodyWords) / rates;
    return (rates << 20) | (size << 10) | static_cast<std::uint32_t>(offset);
}

std::vector<std::uint32_t> joined(std::vector<std::uint32_t> words,
                                  const std::vector<std::uint32_t>& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

constexpr std::size_t headerWords = 10;

// Masters: channel 1 of itself (bit 19), of channel 2 (bit 21) and channel 3 (bit 23). Groups: 0001
// of channel 0 (bit 1), 1110 of channel 1 (bit 5). Valid: bit 0. Duplex flags: from bit 25.
constexpr std::uint32_t structure =
    (1U << 23) | (1U << 21) | (1U << 19) | (14U << 5) | (1U << 1) | 1U;
constexpr std::uint32_t allDuplex = 15U << 25;
constexpr std::uint32_t othersDuplex = 14U << 25;

}  // namespace

std::vector<std::uint32_t> tableOfOneChannel(std::uint32_t rates,
                                             const std::vector<std::uint32_t>& body) {
    const std::uint32_t own = channelWord(rates, body.size(), headerWords);
    const std::uint32_t other = channelWord(0, 0, headerWords + body.size());
    return joined({structure | allDuplex, structure | allDuplex, own, own, other, other, other,
                   other, other, other},
                  body);
}

std::vector<std::uint32_t> tableOfOneSimplexChannel(std::uint32_t txRates,
                                                    const std::vector<std::uint32_t>& txBody,
                                                    std::uint32_t rxRates,
                                                    const std::vector<std::uint32_t>& rxBody) {
    const std::size_t behindTx = headerWords + txBody.size();
    const std::uint32_t other = channelWord(0, 0, behindTx);
    return joined(joined({structure | othersDuplex, structure | othersDuplex,
                          channelWord(txRates, txBody.size(), headerWords),
                          channelWord(rxRates, rxBody.size(), behindTx), other, other, other, other,
                          other, other},
                         txBody),
                  rxBody);
}

}  // namespace lanecfg_test
