#include "packing_view.h"

#include <boost/algorithm/string/join.hpp>

#include <iterator>
#include <vector>

namespace sable_lanecfg::tool {
namespace {

/// The value of a field, empty where the record has none.
template <class Value>
Value fieldOf(const std::map<std::string, packingField>& record, const std::string& name) {
    const auto found = record.find(name);
    return found == record.end() ? Value() : boost::get<Value>(found->second);
}

std::string directionOf(const PackingRecordView& record) {
    return record.isReceive ? "RX" : "TX";
}

/// The element of a row at a slot or other entry, empty beyond the last one.
template <class Row>
typename Row::value_type entryOf(const Row& row, int entry) {
    const auto index = static_cast<std::size_t>(entry);
    return index < row.size() ? row[index] : typename Row::value_type();
}

/// Values of a list, ascending and each once.
template <class Value>
Json distinct(const std::vector<Value>& values) {
    return std::set<Value>(values.begin(), values.end());
}

Cell listCell(const Json& list) {
    std::vector<std::string> texts;
    for (const Json& element : list) {
        texts.push_back(Cell(element).text);
    }
    return {texts.empty() ? "none" : boost::algorithm::join(texts, ", "), list};
}

/// What is left of the candidates at one entry of the rows.
struct LeftView {
    LeftView(const PllView& view, int entry)
        : frequencies(distinct(entryOf(view.left.at("pllClkFreqs"), entry))) {
        if (!frequencies.empty()) {
            areClocksEqual = entryOf(view.left.at("refclk_valid"), entry).front() == 1.0;
            areSourcesEqual = entryOf(view.left.at("refclkSourcesValid"), entry).front() == 1.0;
            clock = entryOf(view.left.at("refclks"), entry).front();
            source = entryOf(view.leftTexts.at("refclkSources"), entry).front();
        }
    }

    /// A value that all have in common, or a word where they have not.
    static Cell commonCell(const Json& areEqual, const Json& value) {
        if (areEqual.is_null()) {
            return Cell(Json());
        }
        return areEqual.get<bool>() ? listCell(Json::array({value})) : Cell("differ");
    }

    Json frequencies;
    Json areClocksEqual;  ///< null, as what follows, where no frequency is left
    Json areSourcesEqual;
    Json clock;
    Json source;
};

std::set<int> usedSlots(const PllView& view) {
    std::set<int> slots;
    for (const PackingRecordView& record : view.records) {
        slots.merge(record.usedSlots());
    }
    return slots;
}

/// The entries of what is left that stand for rates in use.
std::set<int> leftEntries(const PllView& view) {
    return view.isIndependent() ? std::set<int>{0} : usedSlots(view);
}

std::vector<Cell> candidateRow(const PllView& view, const PackingRecordView& record, int slot) {
    return {Cell(view.dual),
            Cell(view.group),
            Cell(view.pll),
            Cell(slot),
            Cell(record.lane),
            Cell(directionOf(record)),
            Cell(record.ratePin),
            listCell(distinct(entryOf(record.rates, slot))),
            listCell(distinct(entryOf(record.refclks, slot))),
            listCell(distinct(entryOf(record.sources, slot)))};
}

std::vector<Cell> leftRow(const PllView& view, int entry) {
    const LeftView left(view, entry);
    return {Cell(view.dual),
            Cell(view.group),
            Cell(view.pll),
            view.isIndependent() ? Cell("all") : Cell(entry),
            Cell("left"),
            Cell(""),
            Cell(""),
            listCell(left.frequencies),
            LeftView::commonCell(left.areClocksEqual, left.clock),
            LeftView::commonCell(left.areSourcesEqual, left.source)};
}

void addCandidateRows(const PllView& view, int slot, Table& table) {
    for (const PackingRecordView& record : view.records) {
        if (record.usedSlots().count(slot) != 0) {
            table.rows.push_back(candidateRow(view, record, slot));
        }
    }
}

Json candidateList(const PllView& view) {
    Json list = Json::array();
    for (const int slot : usedSlots(view)) {
        for (const PackingRecordView& record : view.records) {
            if (record.usedSlots().count(slot) != 0) {
                list.push_back({{"rate", slot},
                                {"lane", record.lane},
                                {"direction", directionOf(record)},
                                {"rate_pin", record.ratePin},
                                {"vco_ghz", distinct(entryOf(record.rates, slot))},
                                {"refclk_mhz", distinct(entryOf(record.refclks, slot))},
                                {"sources", distinct(entryOf(record.sources, slot))}});
            }
        }
    }
    return list;
}

Json leftList(const PllView& view) {
    Json list = Json::array();
    for (const int entry : leftEntries(view)) {
        const LeftView left(view, entry);
        list.push_back({{"rate", view.isIndependent() ? Json() : Json(entry)},
                        {"vco_ghz", left.frequencies},
                        {"refclk_mhz", left.clock},
                        {"refclks_agree", left.areClocksEqual},
                        {"source", left.source},
                        {"sources_agree", left.areSourcesEqual}});
    }
    return list;
}

}  // namespace

PackingRecordView::PackingRecordView(int key, const std::map<std::string, packingField>& record)
    : lane(key / 2),
      isReceive(key % 2 == 1),
      ratePin(fieldOf<std::string>(record, "rate_pin")),
      rates(fieldOf<packingNumbers>(record, "rates")),
      refclks(fieldOf<packingNumbers>(record, "refclks")),
      sources(fieldOf<packingTexts>(record, "refclkSources")) {}

std::set<int> PackingRecordView::usedSlots() const {
    std::set<int> slots;
    for (std::size_t slot = 0; slot < refclks.size(); ++slot) {
        if (!refclks[slot].empty()) {
            slots.insert(static_cast<int>(slot));
        }
    }
    return slots;
}

bool PllView::isIndependent() const {
    std::set<std::string> pins;
    for (const PackingRecordView& record : records) {
        pins.insert(record.ratePin);
    }
    return pins.size() > 1;
}

std::set<int> PllView::slotsOf(int entry) const {
    const std::set<int> used = usedSlots(*this);
    if (isIndependent() || used.empty()) {
        return used;
    }
    // An entry that no lane uses is a copy of the one before it, or else of the first.
    const auto next = used.upper_bound(entry);
    return {next == used.begin() ? *next : *std::prev(next)};
}

std::vector<PllView> pllViews(const gt_quad_packing& packing) {
    std::vector<PllView> views;
    for (const auto& [dual, groups] : packing.intermediateData) {
        for (const auto& [group, plls] : groups) {
            for (const auto& [pll, records] : plls) {
                PllView view{dual,
                             group,
                             pll,
                             {},
                             packing.intersectedCoordinates.at(dual).at(group).at(pll),
                             packing.refclkSourceIntersectedCoordinates.at(dual).at(group).at(pll)};
                for (const auto& [key, record] : records) {
                    view.records.emplace_back(key, record);
                }
                views.push_back(view);
            }
        }
    }
    return views;
}

Table candidateTable(const gt_quad_packing& packing) {
    Table table;
    table.columns = {"dual",      "group",    "pll",     "rate",       "lane",
                     "direction", "rate_pin", "vco_ghz", "refclk_mhz", "source"};
    for (const PllView& view : pllViews(packing)) {
        const std::set<int> slots = usedSlots(view);
        for (const int slot : slots) {
            addCandidateRows(view, slot, table);
            if (!view.isIndependent()) {
                table.rows.push_back(leftRow(view, slot));
            }
        }
        if (view.isIndependent()) {
            table.rows.push_back(leftRow(view, 0));
        }
    }
    return table;
}

Json candidateDocument(const gt_quad_packing& packing) {
    Json list = Json::array();
    for (const PllView& view : pllViews(packing)) {
        list.push_back({{"dual", view.dual},
                        {"group", view.group},
                        {"pll", view.pll},
                        {"independent_rates", view.isIndependent()},
                        {"candidates", candidateList(view)},
                        {"left", leftList(view)}});
    }
    return list;
}

}  // namespace sable_lanecfg::tool
