#include "block/rate_table_limits.h"
#include "block/rate_table_word.h"

#include <lanecfg/gt_rule_engine.h>
#include <lanecfg/rule_engine_utilities.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>

namespace sable_lanecfg {

namespace {

using attributeList = std::vector<RateTableAttribute>;
using wordList = std::vector<std::string>;

/// Words in front of the first body: two structure words, two words for each channel.
constexpr std::uint64_t headerWords = 2 + 2 * rateTableChannels;

void append(wordList& words, wordList more) {
    words.insert(words.end(), std::make_move_iterator(more.begin()),
                 std::make_move_iterator(more.end()));
}

void log(const std::string& line) {
    rule_engine_utilities::write_log(line);
}

/// How a direction's tables are written.
struct tableSide {
    const char* word;
    int RateTableChannel::*master;
    int RateTableChannel::*rates;
    std::string RateTableChannel::*net;
    std::array<attributeList, 4> RateTableControl::*masked;
    std::array<attributeList, 4> RateTableControl::*normal;
    std::array<int, 4> RateTableControl::*singleLane;
    std::array<int, 4> RateTableControl::*wordCount;
};

constexpr tableSide txSide = {"TX",
                              &RateTableChannel::txMaster,
                              &RateTableChannel::numTxRates,
                              &RateTableChannel::txNet,
                              &RateTableControl::txMasked,
                              &RateTableControl::txNormal,
                              &RateTableControl::txSingleLane,
                              &RateTableControl::txWordCount};
constexpr tableSide rxSide = {"RX",
                              &RateTableChannel::rxMaster,
                              &RateTableChannel::numRxRates,
                              &RateTableChannel::rxNet,
                              &RateTableControl::rxMasked,
                              &RateTableControl::rxNormal,
                              &RateTableControl::rxSingleLane,
                              &RateTableControl::rxWordCount};

std::uint64_t blockSize(int words, int rates) {
    return rates == 0 ? 0 : static_cast<std::uint64_t>(words / rates);
}

/// Mask of the channels that move with channel `i`, which is their master.
std::uint64_t groupOf(const RateTableChannel* channels, const tableSide& side, int i,
                      int channelCount) {
    std::uint64_t group = 0;
    for (int j = i; j < channelCount; ++j) {
        if (channels[i].*side.net == channels[j].*side.net && channels[j].*side.master == i) {
            group |= std::uint64_t{1} << j;
        }
    }
    return group;
}

std::string structureWord(const RateTableChannel* channels, const tableSide& side,
                          int channelCount) {
    rate_table_word word;
    for (int i = channelCount - 1; i >= 0; --i) {
        const auto place = static_cast<unsigned int>(i);
        word.put(25 + place, 25 + place, channels[i].duplex ? 1 : 0)
            .put(18 + 2 * place, 17 + 2 * place,
                 static_cast<std::uint64_t>(channels[i].*side.master))
            .put(4 + 4 * place, 1 + 4 * place, groupOf(channels, side, i, channelCount));
    }
    return word.put(0, 0, 1).digits();
}

rate_table_word channelWord(int rates, std::uint64_t size, std::uint64_t offset) {
    rate_table_word word;
    word.put(27, 20, static_cast<std::uint64_t>(rates)).put(19, 10, size).put(9, 0, offset);
    return word;
}

void logBlock(const std::string& suffix, std::uint64_t size, int rates) {
    log("Rate Block Size" + suffix + ": " + std::to_string(size));
    log("Number of Rates" + suffix + ": " + std::to_string(rates));
}

/// The two words of each channel, transmit and receive. Channels that the block does not have are
/// logged like the others and keep words of 0.
wordList channelWords(const RateTableChannel* channels, const RateTableControl& control,
                      int channelCount) {
    wordList words(std::size_t{2} * rateTableChannels, rate_table_word().digits());
    const auto setWord = [&](int channel, std::size_t side, const rate_table_word& word) {
        if (channel < channelCount) {
            words[2 * static_cast<std::size_t>(channel) + side] = word.digits();
        }
    };
    std::uint64_t offset = headerWords;
    log("***Rate Table Structure***");
    for (int c = 0; c < rateTableChannels; ++c) {
        const auto index = static_cast<std::size_t>(c);
        const RateTableChannel& channel = channels[c];
        const int bodyWords = control.txWordCount[index];
        const std::uint64_t size = blockSize(bodyWords, channel.numTxRates);
        log("\nChannel " + std::to_string(c));
        logBlock(channel.duplex ? "" : " TX", size, channel.numTxRates);
        rate_table_word word = channelWord(channel.numTxRates, size, offset);
        word.put(31, 31, static_cast<std::uint64_t>(control.pcieMode[index]));
        setWord(c, 0, word);
        if (channel.duplex) {
            setWord(c, 1, word);
        }
        offset += static_cast<std::uint64_t>(bodyWords);
    }
    for (int c = 0; c < rateTableChannels; ++c) {
        const auto index = static_cast<std::size_t>(c);
        const RateTableChannel& channel = channels[c];
        log("\nChannel " + std::to_string(c));
        if (!channel.duplex) {
            const int bodyWords = control.rxWordCount[index];
            const std::uint64_t size = blockSize(bodyWords, channel.numRxRates);
            logBlock(" RX", size, channel.numRxRates);
            setWord(c, 1, channelWord(channel.numRxRates, size, offset));
            offset += static_cast<std::uint64_t>(bodyWords);
        }
    }
    return words;
}

}  // namespace

/// Writes the bodies of one direction.
struct gt_rule_engine::bodyWriter {
    gt_rule_engine& engine;
    const RateTableChannel* channels;
    RateTableControl& control;
    const tableSide& side;
    wordList body;

    void writeAll() {
        log(std::string("***Writing ") + side.word + " Rate Table***");
        for (int channel = 0; channel < rateTableChannels; ++channel) {
            log(std::string("\n") + side.word + " Channel " + std::to_string(channel));
            if (channels[channel].*side.master == channel) {
                for (int rate = 0; rate < channels[channel].*side.rates; ++rate) {
                    writeRate(channel, rate);
                }
            }
        }
    }

  private:
    bool transmits() const { return &side == &txSide; }

    /// Snapshot that holds the register's value at the rate. A transmit rate of a simplex channel
    /// is taken with the receive side at its first rate.
    int snapshotOf(int rate, const RateTableAttribute& attribute) const {
        const RateTableChannel& owner = channels[attribute.channel];
        const int snapshot = !transmits() || owner.duplex ? rate : rate * owner.numRxRates;
        demandPass(attribute, rate, snapshot);
        return snapshot;
    }

    /// The channel of a register may have fewer rates than the one whose table has to write it.
    void demandPass(const RateTableAttribute& attribute, int rate, int snapshot) const {
        const std::size_t passes = engine.passesOf(attribute.channel).size();
        if (static_cast<std::size_t>(snapshot) >= passes) {
            const std::string channel = "channel " + std::to_string(attribute.channel);
            throw std::out_of_range(std::string("The ") + side.word + " rate table needs " +
                                    attribute.name + " of " + channel + " at rate " +
                                    std::to_string(rate) + ", for which " + channel +
                                    " has no pass; it ran " + std::to_string(passes) +
                                    ". Give all lanes on one rate net the same rates, or put " +
                                    channel + " on a net of its own (txrate, rxrate).");
        }
    }

    void appendGroup(int channel, wordList group) {
        (control.*side.wordCount)[static_cast<std::size_t>(channel)] +=
            static_cast<int>(group.size());
        append(body, std::move(group));
    }

    void appendPair(int channel, int rate, const RateTableAttribute& first,
                    const RateTableAttribute* second, bool singleLane) {
        const RateTableAttribute& last = second == nullptr ? first : *second;
        appendGroup(channel,
                    engine.pairGroup(first, last, second != nullptr, control.maskedAttributes,
                                     snapshotOf(rate, first), snapshotOf(rate, last), singleLane));
    }

    void writeRate(int channel, int rate) {
        const auto index = static_cast<std::size_t>(channel);
        const bool singleLane = (control.*side.singleLane)[index] == 1;
        log("\nRate: " + std::to_string(rate));
        log(std::string(side.word) + " Masked");
        for (int source = 0; source < rateTableChannels; ++source) {
            const bool contributes =
                singleLane ? channels[source].*side.master == channel : source == channel;
            if (contributes) {
                writeMasked(channel, rate, (control.*side.masked)[static_cast<std::size_t>(source)],
                            singleLane);
            }
        }
        log(std::string(side.word) + " Normal");
        writeNormal(channel, rate, (control.*side.normal)[index]);
    }

    void writeMasked(int channel, int rate, const attributeList& registers, bool singleLane) {
        for (std::size_t i = 0; i < registers.size(); i += 2) {
            const RateTableAttribute& first = registers[i];
            // The receive side addresses single lanes only for registers that several lanes share.
            const bool oneLane =
                singleLane && (transmits() || engine.alwaysMasked.count(first.name) != 0);
            appendPair(channel, rate, first, i + 1 < registers.size() ? &registers[i + 1] : nullptr,
                       oneLane);
        }
    }

    void writeNormal(int channel, int rate, const attributeList& registers) {
        for (std::size_t i = 0; i < registers.size();) {
            std::size_t end = i + 1;
            while (end < registers.size() &&
                   registers[end].address - registers[i].address < burstSpan) {
                ++end;
            }
            if (end - i >= 3) {
                const auto at = [&](std::size_t position) {
                    return registers.begin() + static_cast<std::ptrdiff_t>(position);
                };
                attributeList burst(at(i), at(end));
                const int snapshot = snapshotOf(rate, burst.front());
                for (const RateTableAttribute& attribute : burst) {
                    demandPass(attribute, rate, snapshot);
                }
                appendGroup(channel, engine.rateTableBodyCase2_new(std::move(burst), snapshot));
                i = end;
            } else {
                // A lone register takes the next one along, however far away it is.
                const bool hasSecond = i + 1 < registers.size();
                appendPair(channel, rate, registers[i], hasSecond ? &registers[i + 1] : nullptr,
                           false);
                i += 2;
            }
        }
    }
};

void gt_rule_engine::writeRateTable_New(RateTableChannel* channels, RateTableControl& control) {
    bodyWriter transmit{*this, channels, control, txSide, {}};
    transmit.writeAll();
    bodyWriter receive{*this, channels, control, rxSide, {}};
    receive.writeAll();

    const int channelCount = rule_engine_utilities::ChPerBlock(family);
    const wordList words = channelWords(channels, control, channelCount);
    wordList& table = control.rateTable;
    table = {structureWord(channels, txSide, channelCount),
             structureWord(channels, rxSide, channelCount)};
    append(table, words);
    append(table, std::move(transmit.body));
    append(table, std::move(receive.body));
}

}  // namespace sable_lanecfg
