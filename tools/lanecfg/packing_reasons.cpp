#include "packing_reasons.h"

#include "packing_view.h"
#include "rate_places.h"

#include <boost/algorithm/string/erase.hpp>
#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <map>
#include <regex>
#include <string_view>

namespace sable_lanecfg::tool {
namespace {

const std::array<std::string, 3> levels{"channel", "dual", "quad"};

/// A message of the library behind its level, without line feed.
struct Sentence {
    std::string level;
    std::string text;
};

// The library's texts hold words of the user, of any length and with any characters, so nothing of
// them is matched against a pattern.

Sentence sentenceOf(const std::string& message) {
    for (const std::string& level : levels) {
        std::string start = level + "LevelCheck: ";
        start.front() = static_cast<char>(start.front() - 'a' + 'A');
        if (boost::algorithm::starts_with(message, start)) {
            std::string text = message.substr(start.size());
            boost::algorithm::erase_last(text, "\n");
            return {level, text};
        }
    }
    return {levels.back(), message};
}

/// Place of a reason's level in the order of levels.
auto rankOf(const std::string& level) {
    return std::find(levels.begin(), levels.end(), level) - levels.begin();
}

/// How the texts about a dual begin, up to the word of the PLL, and the row that they are about.
/// The first one is about one rate.
struct DualSentence {
    const char* start;
    const char* row;
};

constexpr std::array<DualSentence, 3> dualSentences{
    {{"Cannot be packed because there is no VCO frequency solution for the ", "pllClkFreqs"},
     {"Cannot be packed because the reference clock frequencies connected to the ", "refclk_valid"},
     {"Cannot be packed because the reference clock sources connected to the ",
      "refclkSourcesValid"}}};

/// A lane whose transmitter and receiver disagree at a rate each.
void concernLane(PackingReason& reason) {
    static const std::regex together("at TX and RX rate ([0-9]+) in lane ([0-9]+)\\.");
    static const std::regex apart("at TX rate ([0-9]+) and RX rate([0-9]+) in LANE_([0-9]+)\\.");
    std::smatch parts;
    if (std::regex_search(reason.text, parts, together)) {
        reason.txRates = reason.rxRates = {std::stoi(parts[1])};
        reason.lanes = {std::stoi(parts[2])};
    } else if (std::regex_search(reason.text, parts, apart)) {
        reason.txRates = {std::stoi(parts[1])};
        reason.rxRates = {std::stoi(parts[2])};
        reason.lanes = {std::stoi(parts[3])};
    }
}

void concernSlot(const PllView& view, int slot, PackingReason& reason) {
    for (const PackingRecordView& record : view.records) {
        if (record.usedSlots().count(slot) != 0) {
            reason.lanes.insert(record.lane);
            (record.isReceive ? reason.rxRates : reason.txRates).insert(slot);
        }
    }
}

/// The lanes and rates behind each entry of a row that a message is about.
template <class IsConcerned>
void concernEntries(const PllView& view, const std::string& row, const IsConcerned& isConcerned,
                    PackingReason& reason) {
    int entry = 0;
    for (const std::vector<double>& values : view.left.at(row)) {
        if (isConcerned(entry, values)) {
            for (const int slot : view.slotsOf(entry)) {
                concernSlot(view, slot, reason);
            }
        }
        ++entry;
    }
}

/// The rate that a text ends with, -1 where it names none.
int rateAtTheEnd(const std::string& text) {
    const std::string mark = " at rate ";
    const std::size_t at = text.rfind(mark);
    return at == std::string::npos ? -1 : std::atoi(text.c_str() + at + mark.size());
}

/// Whether the PLL has no frequency at an entry.
bool lacksFrequency(const PllView& view, int entry) {
    const packingNumbers& rows = view.left.at("pllClkFreqs");
    const auto index = static_cast<std::size_t>(entry);
    return entry >= 0 && index < rows.size() && rows[index].empty();
}

/// The views of a PLL of one dual that a text is about. A missing frequency has a text for each
/// packing group, in the order of the groups, so equal texts are about one group each.
std::vector<PllView> viewsConcerned(std::vector<PllView> ofPll, bool isAboutFrequency, int rate,
                                    std::size_t equalTextsBefore) {
    if (!isAboutFrequency) {
        return ofPll;
    }
    std::vector<PllView> lacking;
    std::copy_if(ofPll.begin(), ofPll.end(), std::back_inserter(lacking),
                 [rate](const PllView& view) { return lacksFrequency(view, rate); });
    return equalTextsBefore < lacking.size() ? std::vector<PllView>{lacking[equalTextsBefore]}
                                             : std::vector<PllView>();
}

std::vector<PllView> viewsOf(const gt_quad_packing& packing, const std::string& dual,
                             const std::string& pll) {
    std::vector<PllView> own;
    for (const PllView& view : pllViews(packing)) {
        if (view.dual == dual && view.pll == pll) {
            own.push_back(view);
        }
    }
    return own;
}

/// Lanes of a dual that leave their PLL no frequency, or no common reference clock.
void concernDual(const gt_quad_packing& packing, std::size_t equalTextsBefore,
                 PackingReason& reason) {
    const auto* const sentence = std::find_if(
        dualSentences.begin(), dualSentences.end(), [&reason](const DualSentence& known) {
            return boost::algorithm::starts_with(reason.text, known.start);
        });
    const std::string lanesMark = " used in lanes ";
    const std::size_t lanesAt = reason.text.rfind(lanesMark);
    if (sentence == dualSentences.end() || lanesAt == std::string::npos) {
        return;
    }
    const std::size_t pllAt = std::string_view(sentence->start).size();
    reason.pll = reason.text.substr(pllAt, lanesAt - pllAt);
    const std::string dual = reason.text[lanesAt + lanesMark.size()] == '0' ? "DUAL_0" : "DUAL_1";
    const bool isAboutFrequency = sentence == dualSentences.begin();
    const int rate = rateAtTheEnd(reason.text);
    const auto isAtFault = [isAboutFrequency, rate](int entry, const std::vector<double>& values) {
        return isAboutFrequency ? entry == rate : !values.empty() && values.front() != 1.0;
    };
    for (const PllView& view : viewsConcerned(viewsOf(packing, dual, reason.pll), isAboutFrequency,
                                              rate, equalTextsBefore)) {
        concernEntries(view, sentence->row, isAtFault, reason);
    }
}

/// A reason of the whole quad is about everything in it.
void concernQuad(const gt_quad_packing& packing, PackingReason& reason) {
    for (const channelUsageInfo& channel : packing.channels) {
        reason.lanes.insert(channel.tx.begin(), channel.tx.end());
        reason.lanes.insert(channel.rx.begin(), channel.rx.end());
        if (!channel.tx.empty()) {
            reason.txRates.insert(channel.rates.begin(), channel.rates.end());
        }
        if (!channel.rx.empty()) {
            reason.rxRates.insert(channel.rates.begin(), channel.rates.end());
        }
    }
}

PackingReason reasonOf(const std::string& message, const gt_quad_packing& packing,
                       std::size_t equalTextsBefore) {
    const Sentence sentence = sentenceOf(message);
    PackingReason reason{sentence.level, {}, {}, {}, {}, sentence.text};
    if (reason.level == "channel") {
        concernLane(reason);
    } else if (reason.level == "dual") {
        concernDual(packing, equalTextsBefore, reason);
    } else {
        concernQuad(packing, reason);
    }
    return reason;
}

}  // namespace

std::vector<PackingReason> packingReasons(const PackingQuestion& question) {
    std::vector<PackingReason> reasons;
    std::map<std::string, std::size_t> timesMet;
    for (const auto& [number, message] : question.messages) {
        reasons.push_back(reasonOf(message, question.packing, timesMet[message]++));
    }
    std::stable_sort(reasons.begin(), reasons.end(),
                     [](const PackingReason& first, const PackingReason& second) {
                         return rankOf(first.level) < rankOf(second.level);
                     });
    return reasons;
}

std::string firstReasonText(const std::map<int, std::string>& messages) {
    Sentence first;
    for (const auto& [number, message] : messages) {
        const Sentence sentence = sentenceOf(message);
        if (first.text.empty() || rankOf(sentence.level) < rankOf(first.level)) {
            first = sentence;
        }
    }
    return first.text;
}

Table reasonTable(const std::vector<PackingReason>& reasons) {
    Table table;
    table.columns = {"level", "lanes", "pll", "tx_rates", "rx_rates", "reason"};
    for (const PackingReason& reason : reasons) {
        table.rows.push_back({Cell(reason.level), Cell(listed(reason.lanes)), Cell(reason.pll),
                              Cell(listed(reason.txRates)), Cell(listed(reason.rxRates)),
                              Cell(reason.text)});
    }
    return table;
}

Json reasonDocument(const std::vector<PackingReason>& reasons) {
    Json list = Json::array();
    for (const PackingReason& reason : reasons) {
        list.push_back({{"level", reason.level},
                        {"lanes", reason.lanes},
                        {"pll", reason.pll.empty() ? Json() : Json(reason.pll)},
                        {"tx_rates", reason.txRates},
                        {"rx_rates", reason.rxRates},
                        {"reason", reason.text}});
    }
    return list;
}

}  // namespace sable_lanecfg::tool
