#include "rate_table_replay.h"

#include "register_file.h"
#include "table_adjustment.h"

#include <algorithm>
#include <array>
#include <memory>

namespace sable_lanecfg::tool {
namespace {

/// How a channel takes part when a table writes a rate.
enum class Part { both, transmit, receive, none };

/// The receive side of a channel is served by the transmit table of a duplex master.
Part partIn(const DecodedRateTable& table, const RateBody& body, unsigned channel) {
    const ChannelHeader& header = table.channels.at(channel);
    const ChannelHeader& owner = table.channels.at(body.channel);
    const bool followsReceive = owner.of(TableDirection::receive).group.test(channel);
    if (body.direction == TableDirection::receive) {
        return followsReceive && !header.isDuplex ? Part::receive : Part::none;
    }
    if (owner.of(TableDirection::transmit).group.test(channel)) {
        return header.isDuplex ? Part::both : Part::transmit;
    }
    // Not a duplex channel, which would follow the duplex owner in both directions.
    return owner.isDuplex && followsReceive ? Part::receive : Part::none;
}

/// The pass in which a channel is when its part has moved to a rate; null when it ran none, or when
/// the channel can't be where it is said to come from.
const PassWords* targetPass(const RateSnapshots& snapshots, unsigned channel, const PassWords& from,
                            Part part, unsigned rate) {
    switch (part) {
        case Part::both:
            return from.txRate == from.rxRate ? snapshots.find(channel, rate, rate) : nullptr;
        case Part::transmit:
            return snapshots.find(channel, rate, from.rxRate);
        case Part::receive:
            return snapshots.find(channel, from.txRate, rate);
        case Part::none:
            break;
    }
    return &from;
}

/// A register that the replay of one table looks at in one channel.
struct WatchedRegister {
    std::size_t index = 0;
    std::optional<RegisterPlace> place;
    bool isWritten = false;
};

bool changesOverPasses(const std::vector<PassWords>& passes, std::size_t index) {
    return std::any_of(passes.begin(), passes.end(), [&](const PassWords& pass) {
        return pass.words[index] != passes.front().words[index];
    });
}

std::vector<WatchedRegister> watchedRegisters(const RateBody& body,
                                              const ControllerRegisters& registers,
                                              const RateSnapshots& snapshots, unsigned channel,
                                              Part part) {
    std::vector<WatchedRegister> watched;
    for (std::size_t index = 0; index < snapshots.names.size(); ++index) {
        const std::optional<RegisterPlace> place =
            registers.placeOf(snapshots.names[index], channel);
        const bool isWritten = place && writesTo(body.rates.front(), body.channel, *place, channel);
        const bool changes =
            part != Part::none && changesOverPasses(snapshots.channels.at(channel), index);
        if (isWritten || changes) {
            watched.push_back({index, place, isWritten});
        }
    }
    return watched;
}

/// The replay of one table in the registers of one channel.
class ChannelReplay {
  public:
    ChannelReplay(const DecodedRateTable& table, const ControllerRegisters& registers,
                  const RateSnapshots& snapshots, const RateBody& body, unsigned channel)
        : table_(table),
          snapshots_(snapshots),
          body_(body),
          channel_(channel),
          part_(partIn(table, body, channel)),
          adjustment_(table, body, snapshots),
          watched_(watchedRegisters(body, registers, snapshots, channel, part_)),
          file_(std::make_unique<RegisterFile>()) {}

    void addFindings(std::vector<ReplayFinding>& findings) {
        for (unsigned rate = 0; rate < body_.rates.size(); ++rate) {
            worst_.assign(watched_.size(), std::nullopt);
            for (const PassWords& from : snapshots_.channels.at(channel_)) {
                const PassWords* const to = targetPass(snapshots_, channel_, from, part_, rate);
                if (to != nullptr) {
                    replay(from, *to, rate);
                }
            }
            for (const std::optional<ReplayFinding>& finding : worst_) {
                if (finding) {
                    findings.push_back(*finding);
                }
            }
        }
    }

  private:
    void replay(const PassWords& from, const PassWords& to, unsigned rate) {
        for (const WatchedRegister& watched : watched_) {
            if (watched.place) {
                file_->set(*watched.place, channel_, from.words[watched.index].value_or(0));
            }
        }
        file_->apply(body_.rates[rate], body_.channel);
        for (std::size_t row = 0; row < watched_.size(); ++row) {
            const std::size_t index = watched_[row].index;
            if (from.words[index] && to.words[index]) {
                note(row, from, to, rate);
            }
        }
    }

    void note(std::size_t row, const PassWords& from, const PassWords& to, unsigned rate) {
        const WatchedRegister& watched = watched_[row];
        ReplayFinding finding;
        finding.name = snapshots_.names[watched.index];
        finding.channel = channel_;
        finding.tableChannel = body_.channel;
        finding.direction = body_.direction;
        finding.rate = rate;
        finding.from = {from.txRate, from.rxRate};
        finding.to = {to.txRate, to.rxRate};
        finding.wanted = *to.words[watched.index];
        finding.reached =
            watched.place ? file_->read(*watched.place, channel_) : *from.words[watched.index];
        finding.outcome = classOf(watched, finding);
        if (!worst_[row] || worst_[row]->outcome < finding.outcome) {
            worst_[row] = finding;
        }
    }

    ReplayClass classOf(const WatchedRegister& watched, const ReplayFinding& finding) const {
        const std::uint32_t wrongBits = finding.wanted ^ finding.reached;
        if (wrongBits == 0) {
            return ReplayClass::replays;
        }
        if (watched.isWritten && (wrongBits & ~adjustment_.overwrittenBits(watched.index)) == 0) {
            return ReplayClass::overwrittenByAdjustment;
        }
        return isInTable(watched) ? ReplayClass::differs : ReplayClass::notInTable;
    }

    /// Whether a table of this channel has the register, or would have to have it because its own
    /// rates differ there.
    bool isInTable(const WatchedRegister& watched) const {
        const bool isMissing = channel_ == body_.channel && watched.place &&
                               adjustment_.changesWithRate(watched.index);
        return isMissing ||
               std::any_of(table_.bodies.begin(), table_.bodies.end(), [&](const RateBody& body) {
                   return watched.place && partIn(table_, body, channel_) != Part::none &&
                          writesTo(body.rates.front(), body.channel, *watched.place, channel_);
               });
    }

    const DecodedRateTable& table_;
    const RateSnapshots& snapshots_;
    const RateBody& body_;
    unsigned channel_;
    Part part_;
    TableAdjustment adjustment_;
    std::vector<WatchedRegister> watched_;
    std::unique_ptr<RegisterFile> file_;
    std::vector<std::optional<ReplayFinding>> worst_;
};

}  // namespace

const char* wordsOf(ReplayClass outcome) {
    constexpr std::array<const char*, replayClassCount> words = {
        "replays", "overwritten by the adjustment", "not in a table of this channel", "differs"};
    return words.at(static_cast<std::size_t>(outcome));
}

std::size_t ReplayReport::count(ReplayClass outcome) const {
    const auto isOfClass = [outcome](const ReplayFinding& finding) {
        return finding.outcome == outcome;
    };
    return static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(), isOfClass));
}

const ReplayFinding* ReplayReport::firstFailure() const {
    const auto found =
        std::find_if(findings.begin(), findings.end(),
                     [](const ReplayFinding& finding) { return finding.isFailure(); });
    return found == findings.end() ? nullptr : &*found;
}

const ReplayFinding* ReplayReport::firstDeviation() const {
    const auto found = std::find_if(
        findings.begin(), findings.end(),
        [](const ReplayFinding& finding) { return finding.outcome != ReplayClass::replays; });
    return found == findings.end() ? nullptr : &*found;
}

ReplayReport replayRateTable(const DecodedRateTable& table, const ControllerRegisters& registers,
                             const RateSnapshots& snapshots) {
    ReplayReport report;
    for (const RateBody& body : table.bodies) {
        ++report.tables;
        report.rates += body.rates.size();
        for (unsigned channel = 0; channel < rateTableChannelCount; ++channel) {
            ChannelReplay(table, registers, snapshots, body, channel).addFindings(report.findings);
        }
    }
    return report;
}

}  // namespace sable_lanecfg::tool
