#include "../block/rate_table_engine.h"
#include "errors.h"
#include "rate_table_replay.h"

#include <boost/format.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;
using sable_lanecfg::RateTableAttribute;
using sable_lanecfg::RateTableControl;
using sable_lanecfg::variableMap;

struct RegisterKind {
    const char* name;
    const char* type;
    const char* offset;
};

/// Registers that stand apart, those among them that a master takes over from the other dual.
constexpr RegisterKind registerKinds[] = {{"PIPE_CTRL_CFG7", "channel", "0x80"},
                                          {"PIPE_CTRL_CFG9", "channel", "0x82"},
                                          {"CLOCK_A", "hs_clk_0", "0x50"},
                                          {"CLOCK_B", "hs_clk_0", "0x51"},
                                          {"CLOCK_C", "hs_clk_0", "0x52"},
                                          {"MST_RESET_CFG", "ctrl_0", "0x70"},
                                          {"CTRL_RSV_CFG0", "ctrl_0", "0x72"},
                                          {"A_CFG1", "ctrl_0", "0x60"},
                                          {"A_CFG4", "ctrl_0", "0xa0"},
                                          {"A_CFG5", "ctrl_0", "0xc0"},
                                          {"QUAD", "ctrl_1", "0x30"}};

/// Registers of a lane, placed at random below an address that leaves room for bursts and gaps.
constexpr const char* laneRegisters[] = {"LANE_A", "LANE_B", "LANE_C", "LANE_D",
                                         "LANE_E", "LANE_F", "LANE_G", "LANE_H"};
constexpr unsigned lanePlaces = 0x30;

constexpr const char* nets[] = {"a", "b", "c", ""};
constexpr std::size_t netCount = 4;

/// Values of a register in the passes of a simplex channel: some bits follow the transmit rate,
/// others the receive rate, and the rest stays.
class SeparateValues {
  public:
    SeparateValues(std::mt19937& random, unsigned txRates, unsigned rxRates)
        : base_(static_cast<std::uint32_t>(random())) {
        const auto txBits = static_cast<std::uint32_t>(random() % 2 == 0 ? random() : 0);
        const auto rxBits = static_cast<std::uint32_t>(random() % 2 == 0 ? random() : 0) & ~txBits;
        for (unsigned rate = 0; rate < txRates; ++rate) {
            tx_.push_back(static_cast<std::uint32_t>(random()) & txBits);
        }
        for (unsigned rate = 0; rate < rxRates; ++rate) {
            rx_.push_back(static_cast<std::uint32_t>(random()) & rxBits);
        }
    }

    std::uint32_t at(unsigned txRate, unsigned rxRate) const {
        return base_ ^ tx_.at(txRate) ^ rx_.at(rxRate);
    }

  private:
    std::uint32_t base_;
    std::vector<std::uint32_t> tx_;
    std::vector<std::uint32_t> rx_;
};

/// An engine with random registers, groups, rates and values. The channels of a group have the same
/// number of rates.
class RandomEngine : public RateTableEngine {
  public:
    explicit RandomEngine(std::mt19937& random, const std::string& familyWord = "SXB")
        : RateTableEngine(familyWord) {
        addRegisters(random);
        std::vector<unsigned> ratesOfNet;
        for (std::size_t net = 0; net < netCount; ++net) {
            ratesOfNet.push_back(1 + static_cast<unsigned>(random() % 4));
        }
        const std::size_t channels = blockVarMap.size();
        for (std::size_t channel = 0; channel < channels; ++channel) {
            const std::size_t tx = random() % netCount;
            const std::size_t rx = random() % netCount;
            lane(static_cast<int>(channel), nets[tx], nets[rx]);
            addPasses(random, channel, ratesOfNet[tx], ratesOfNet[rx], tx == rx);
        }
        // A register that is taken over from the other dual leads its pair to another lane.
        if (random() % 4 == 0 && !spansDuals()) {
            addSingleLane(random() % channels);
        }
    }

  private:
    /// Leaves out one register in eight.
    void addRegisters(std::mt19937& random) {
        for (const RegisterKind& kind : registerKinds) {
            if (random() % 8 != 0) {
                reg(kind.name, kind.type, kind.offset);
            }
        }
        std::set<unsigned> taken;
        for (const char* const name : laneRegisters) {
            const auto place = static_cast<unsigned>(random() % lanePlaces);
            if (taken.insert(place).second) {
                reg(name, "channel", (boost::format("%x") % place).str());
            }
        }
    }

    void addPasses(std::mt19937& random, std::size_t channel, unsigned txRates, unsigned rxRates,
                   bool together) {
        std::map<std::string, SeparateValues> values;
        for (const auto& [name, info] : attributes) {
            values.emplace(name, SeparateValues(random, txRates, rxRates));
        }
        for (unsigned tx = 0; tx < txRates; ++tx) {
            for (unsigned rx = 0; rx < rxRates; ++rx) {
                if (together && tx != rx) {
                    continue;
                }
                registerValues words;
                for (const auto& [name, series] : values) {
                    words[name] = series.at(tx, rx);
                }
                pass(channel, tx, rx, words);
            }
        }
    }

    bool spansDuals() {
        FourChannels channels;
        parseHeaderInfo_New(channels);
        return std::any_of(std::begin(channels.records) + 2, std::end(channels.records),
                           [](const sable_lanecfg::RateTableChannel& record) {
                               return record.txMaster < 2 || record.rxMaster < 2;
                           });
    }

    void addSingleLane(std::size_t channel) {
        userParams[0][channel] = {{{"TX_DATA_ENCODING", std::string("64B66B_ASYNC")},
                                   {"TX_USER_DATA_WIDTH", 64U},
                                   {"TX_INT_DATA_WIDTH", 32U},
                                   {"TX_BUFFER_MODE", 1U}}};
        userParams[1][channel] = {{{"RX_DATA_DECODING", std::string("64B66B_ASYNC")},
                                   {"RX_USER_DATA_WIDTH", 64U},
                                   {"RX_INT_DATA_WIDTH", 32U},
                                   {"RX_BUFFER_MODE", 1U}}};
    }
};

constexpr int rounds = 150;

/// A generation with its lists, which the engine's own entry points keep to themselves.
struct Generation {
    explicit Generation(RandomEngine& engine) : passes(engine.blockVarMap) {
        engine.parseHeaderInfo_New(channels);
        engine.parseRateTableData_New(channels);
        engine.adjustRateTable_New(channels);
        engine.separateCriticalAttributes_New(channels, control);
        engine.sortRateTable_New(channels, control);
        engine.writeRateTable_New(channels, control);
        table = decodeRateTable(numbers(control.rateTable));
    }

    /// The registers of one rate of a body in order, those under a mask first.
    std::vector<RateTableAttribute> masked(const RateBody& body) const {
        const bool transmits = body.direction == TableDirection::transmit;
        const auto& lists = transmits ? control.txMasked : control.rxMasked;
        const auto& singleLane = transmits ? control.txSingleLane : control.rxSingleLane;
        std::vector<RateTableAttribute> result;
        for (std::size_t source = 0; source < rateTableChannelCount; ++source) {
            const auto& record = channels.records[source];
            const int master = transmits ? record.txMaster : record.rxMaster;
            const bool contributes = singleLane[body.channel] == 1
                                         ? master == static_cast<int>(body.channel)
                                         : source == body.channel;
            if (contributes) {
                result.insert(result.end(), lists[source].begin(), lists[source].end());
            }
        }
        return result;
    }

    std::vector<RateTableAttribute> normal(const RateBody& body) const {
        return body.direction == TableDirection::transmit ? control.txNormal[body.channel]
                                                          : control.rxNormal[body.channel];
    }

    /// The value of a register at a rate, by the snapshot that belongs to the channel of `by`.
    std::uint32_t valueOf(const RateTableAttribute& attribute, const RateTableAttribute& by,
                          const RateBody& body, unsigned rate) const {
        const auto& record = channels.records[by.channel];
        const bool isStep = body.direction == TableDirection::transmit && !record.duplex;
        const std::size_t snapshot =
            isStep ? rate * static_cast<std::size_t>(record.numRxRates) : rate;
        const variableMap& pass =
            passes.at(static_cast<std::size_t>(attribute.channel)).at(snapshot);
        const std::string text =
            sable_lanecfg::rule_engine_base::textOf(pass.at(attribute.name).value);
        return static_cast<std::uint32_t>(std::stoll(text));
    }

    const std::vector<std::vector<variableMap>>& passes;
    mutable FourChannels channels;
    RateTableControl control;
    DecodedRateTable table;
};

constexpr unsigned cut(std::int64_t address) {
    return static_cast<unsigned>(address) & 0x3ffU;
}

/// Takes the groups of a rate one after the other and compares each with the next registers.
class GroupCheck {
  public:
    GroupCheck(const Generation& generation, const RateBody& body, unsigned rate)
        : generation_(generation), body_(body), rate_(rate) {}

    void check() {
        const auto masked = generation_.masked(body_);
        const auto normal = generation_.normal(body_);
        std::size_t next = 0;
        for (const WriteGroup& group : body_.rates[rate_]) {
            const bool isMasked = next < masked.size();
            ASSERT_LE(next + group.writes.size(), masked.size() + normal.size());
            if (isMasked) {
                EXPECT_FALSE(group.isBurst);
                checkWrites(group, masked, next, true);
            } else {
                checkWrites(group, normal, next - masked.size(), false);
                checkForm(group, normal, next - masked.size());
            }
            next += group.writes.size();
        }
        EXPECT_EQ(next, masked.size() + normal.size());
    }

  private:
    void checkWrites(const WriteGroup& group, const std::vector<RateTableAttribute>& list,
                     std::size_t begin, bool isMasked) {
        for (std::size_t i = 0; i < group.writes.size(); ++i) {
            const RateTableAttribute& attribute = list.at(begin + i);
            const RateTableAttribute& by = group.isBurst ? list.at(begin) : attribute;
            EXPECT_EQ(group.writes[i].address, cut(attribute.address)) << attribute.name;
            EXPECT_EQ(group.writes[i].mask.has_value(), isMasked) << attribute.name;
            if (isMasked) {
                EXPECT_EQ(group.writes[i].mask, attribute.mask.to_ulong()) << attribute.name;
            }
            EXPECT_EQ(group.writes[i].value, generation_.valueOf(attribute, by, body_, rate_))
                << attribute.name;
        }
        if (group.lane) {
            EXPECT_TRUE(isMasked);
            EXPECT_EQ(*group.lane, static_cast<unsigned>(list.at(begin).channel));
        }
    }

    /// Registers less than 16 addresses behind the first are a burst when they are at least three.
    static void checkForm(const WriteGroup& group, const std::vector<RateTableAttribute>& list,
                          std::size_t begin) {
        const auto isClose = [&](const RateTableAttribute& attribute) {
            return attribute.address - list[begin].address < 16;
        };
        const auto first = list.begin() + static_cast<std::ptrdiff_t>(begin);
        const auto close =
            static_cast<std::size_t>(std::find_if_not(first, list.end(), isClose) - first);
        EXPECT_EQ(group.isBurst, close >= 3);
        const std::size_t left = list.size() - begin;
        EXPECT_EQ(group.writes.size(), close >= 3 ? close : std::min<std::size_t>(left, 2));
    }

    const Generation& generation_;
    const RateBody& body_;
    unsigned rate_;
};

TEST(RandomTables, DecodeToTheGroupsOfTheirRecords) {
    std::mt19937 random(101);
    std::size_t bursts = 0;
    std::size_t lanes = 0;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        RandomEngine engine(random);
        const Generation generation(engine);
        for (const RateBody& body : generation.table.bodies) {
            for (unsigned rate = 0; rate < body.rates.size(); ++rate) {
                GroupCheck(generation, body, rate).check();
                for (const WriteGroup& group : body.rates[rate]) {
                    bursts += group.isBurst ? 1 : 0;
                    lanes += group.lane ? 1 : 0;
                }
            }
        }
    }
    EXPECT_GT(bursts, 0U);
    EXPECT_GT(lanes, 0U);
}

/// Quads of four and of two channels.
class RandomHeaders : public testing::TestWithParam<const char*> {};

TEST_P(RandomHeaders, DecodeToTheirRecords) {
    std::mt19937 random(102);
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        RandomEngine engine(random, GetParam());
        const Generation generation(engine);
        std::size_t words = rateTableHeaderWords;
        for (std::size_t channel = 0; channel < rateTableChannelCount; ++channel) {
            const ChannelHeader& header = generation.table.channels[channel];
            const auto& record = generation.channels.records[channel];
            ASSERT_EQ(header.isPresent, channel < engine.blockVarMap.size());
            if (!header.isPresent) {
                continue;
            }
            EXPECT_EQ(header.isDuplex, record.duplex);
            EXPECT_EQ(header.of(TableDirection::transmit).master,
                      static_cast<unsigned>(record.txMaster));
            EXPECT_EQ(header.of(TableDirection::receive).master,
                      static_cast<unsigned>(record.rxMaster));
            EXPECT_EQ(header.of(TableDirection::transmit).rates,
                      static_cast<unsigned>(record.numTxRates));
            EXPECT_EQ(header.of(TableDirection::receive).rates,
                      static_cast<unsigned>(record.duplex ? record.numTxRates : record.numRxRates));
            words += static_cast<std::size_t>(generation.control.txWordCount[channel] +
                                              generation.control.rxWordCount[channel]);
        }
        EXPECT_EQ(generation.table.wordCount, words);
    }
}

INSTANTIATE_TEST_SUITE_P(Families, RandomHeaders, testing::Values("SXB", "SXD4"),
                         [](const auto& test) { return std::string(test.param); });

/// A generated table with the snapshots that it has to lead to.
struct Proof {
    explicit Proof(RandomEngine& engine)
        : snapshots(takeSnapshots(engine)),
          words(rateTableWords(engine.generateRateTableInBinary())),
          registers(engine.attributes),
          table(decodeRateTable(words)) {}

    ReplayReport replay() const { return replayRateTable(table, registers, snapshots); }

    RateSnapshots snapshots;
    std::vector<std::uint32_t> words;
    ControllerRegisters registers;
    DecodedRateTable table;
};

bool isAdjusted(const std::string& name) {
    const std::set<std::string> adjusted = {"PIPE_CTRL_CFG7", "A_CFG1",        "A_CFG4",
                                            "A_CFG5",         "MST_RESET_CFG", "CTRL_RSV_CFG0"};
    return adjusted.count(name) != 0;
}

/// Clock registers of a channel that owns the table of one direction only are written whole, though
/// they depend on both rates: nobody else is counted as a writer of them.
bool isClockOfHalfOwner(const DecodedRateTable& table, const ReplayFinding& finding) {
    const ChannelHeader& owner = table.channels.at(finding.channel);
    return finding.name.rfind("CLOCK", 0) == 0 &&
           owner.of(TableDirection::transmit).master != owner.of(TableDirection::receive).master;
}

TEST(RandomTables, BringTheirOwnersToTheSnapshotsOfEveryRate) {
    std::mt19937 random(103);
    std::size_t replayed = 0;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        RandomEngine engine(random);
        const Proof proof(engine);
        for (const ReplayFinding& finding : proof.replay().findings) {
            const bool isExpected =
                finding.outcome == ReplayClass::replays || isClockOfHalfOwner(proof.table, finding);
            if (finding.isOwn() && !isExpected) {
                EXPECT_EQ(finding.outcome, ReplayClass::overwrittenByAdjustment)
                    << finding.name << " " << wordOf(finding.direction);
                EXPECT_TRUE(isAdjusted(finding.name)) << finding.name;
            }
            replayed += finding.outcome == ReplayClass::replays ? 1 : 0;
        }
    }
    EXPECT_GT(replayed, 0U);
}

/// A written bit of an owner's lane register, chosen at random; the register's word of the rate.
RegisterWrite* someLaneWrite(DecodedRateTable& table, std::mt19937& random) {
    std::vector<RegisterWrite*> candidates;
    for (RateBody& body : table.bodies) {
        for (RateWrites& rate : body.rates) {
            for (WriteGroup& group : rate) {
                for (RegisterWrite& write : group.writes) {
                    const bool isOwnLane = group.lane.value_or(body.channel) == body.channel;
                    if (isOwnLane && write.address < lanePlaces) {
                        candidates.push_back(&write);
                    }
                }
            }
        }
    }
    return candidates.empty() ? nullptr : candidates[random() % candidates.size()];
}

TEST(RandomTables, DoNotReplayWithAWrongBit) {
    std::mt19937 random(104);
    int spoilt = 0;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        RandomEngine engine(random);
        Proof proof(engine);
        RegisterWrite* const write = someLaneWrite(proof.table, random);
        const std::uint32_t written = write == nullptr ? 0 : write->mask.value_or(~0U);
        if (written == 0) {
            continue;
        }
        // The lowest bit that is written.
        write->value ^= written & (~written + 1);
        EXPECT_NE(proof.replay().firstFailure(), nullptr);
        ++spoilt;
    }
    EXPECT_GT(spoilt, rounds / 2);
}

TEST(RandomTables, AreTheSameFromTheSecondGenerationOn) {
    std::mt19937 random(105);
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        RandomEngine engine(random);
        engine.generateRateTableInBinary();
        const std::string second = engine.generateRateTableInBinary();
        EXPECT_EQ(engine.generateRateTableInBinary(), second);
    }
}

/// Writes of a rate by address, without those of the registers whose snapshots are adjusted.
std::multimap<unsigned, std::pair<std::optional<std::uint32_t>, std::uint32_t>> steadyWrites(
    const RateWrites& rate) {
    const std::set<unsigned> adjusted = {0x60, 0x70, 0x72};
    std::multimap<unsigned, std::pair<std::optional<std::uint32_t>, std::uint32_t>> writes;
    for (const WriteGroup& group : rate) {
        for (const RegisterWrite& write : group.writes) {
            if (adjusted.count(write.address) == 0) {
                writes.emplace(write.address, std::pair(write.mask, write.value));
            }
        }
    }
    return writes;
}

TEST(RandomTables, WriteTheSameToRegistersThatAreNotAdjustedInEveryGeneration) {
    std::mt19937 random(109);
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        RandomEngine engine(random);
        const Proof first(engine);
        const Proof second(engine);
        ASSERT_EQ(first.table.bodies.size(), second.table.bodies.size());
        for (std::size_t body = 0; body < first.table.bodies.size(); ++body) {
            const auto& before = first.table.bodies[body].rates;
            const auto& after = second.table.bodies[body].rates;
            ASSERT_EQ(before.size(), after.size());
            for (std::size_t rate = 0; rate < before.size(); ++rate) {
                EXPECT_EQ(steadyWrites(before[rate]), steadyWrites(after[rate]));
            }
        }
    }
}

TEST(RandomTables, WithoutFollowersAreTheSameInEveryGeneration) {
    std::mt19937 random(106);
    int compared = 0;
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        RandomEngine engine(random);
        const Proof first(engine);
        const Proof second(engine);
        // Nobody follows, so that nothing is adjusted.
        const auto& channels = first.table.channels;
        const bool nobodyFollows =
            std::all_of(channels.begin(), channels.end(), [&](const ChannelHeader& header) {
                const auto own = static_cast<unsigned>(&header - channels.data());
                return header.of(TableDirection::transmit).master == own &&
                       header.of(TableDirection::receive).master == own;
            });
        if (nobodyFollows) {
            EXPECT_EQ(first.words, second.words);
            ++compared;
        }
    }
    EXPECT_GT(compared, 0);
}

TEST(RandomTables, AreRefusedWhenTruncated) {
    std::mt19937 random(107);
    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE(round);
        RandomEngine engine(random);
        std::vector<std::uint32_t> words = Proof(engine).words;
        words.resize(random() % words.size());
        EXPECT_THROW(decodeRateTable(words), RequestError);
    }
}

TEST(RandomTables, WithRandomWordsAreDecodedOrRefused) {
    std::mt19937 random(108);
    int refused = 0;
    for (int round = 0; round < rounds; ++round) {
        RandomEngine engine(random);
        std::vector<std::uint32_t> words = Proof(engine).words;
        words[random() % words.size()] = static_cast<std::uint32_t>(random());
        try {
            EXPECT_EQ(decodeRateTable(words).wordCount, words.size());
        } catch (const RequestError&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace lanecfg_test
