#include "snapshot_rows.h"

#include "errors.h"
#include "exact_number.h"

#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <array>
#include <fnmatch.h>
#include <optional>
#include <set>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

/// Names of the alternatives of ruleValue, by index.
constexpr std::array<const char*, 7> typeNames = {"blank", "text",   "unsigned", "flag",
                                                  "float", "double", "list"};

struct JsonOfValue : boost::static_visitor<Json> {
    Json operator()(const boost::blank& /*value*/) const { return nullptr; }
    Json operator()(float value) const { return exactJson(value); }
    Json operator()(double value) const { return exactJson(value); }
    Json operator()(const std::vector<double>& list) const {
        Json elements = Json::array();
        for (const double element : list) {
            elements.push_back(exactJson(element));
        }
        return elements;
    }
    template <class T>
    Json operator()(const T& value) const {
        return value;
    }
};

/// Text of a variable in the library's listing form.
std::string listedText(const varInfo& variable) {
    return rule_engine_utilities::serializeMap({{"", variable}}).begin()->second[1];
}

/// A list in brackets, with the text of each element.
template <class TextOf>
std::string bracketed(const std::vector<double>& list, const TextOf& textOf) {
    std::vector<std::string> elements;
    for (const double element : list) {
        elements.push_back(textOf(element));
    }
    return "[" + boost::algorithm::join(elements, ", ") + "]";
}

/// Text of a value without rounding; none where the listing form tells all of it.
struct ExactTextOfValue : boost::static_visitor<std::optional<std::string>> {
    std::optional<std::string> operator()(const boost::blank& /*value*/) const { return ""; }
    std::optional<std::string> operator()(float value) const { return exactText(value); }
    std::optional<std::string> operator()(double value) const { return exactText(value); }
    std::optional<std::string> operator()(const std::vector<double>& list) const {
        return bracketed(list, [](double element) { return exactText(element); });
    }
    template <class T>
    std::optional<std::string> operator()(const T& /*value*/) const {
        return std::nullopt;
    }
};

bool isWanted(const std::vector<unsigned>& wanted, unsigned number) {
    return wanted.empty() || std::find(wanted.begin(), wanted.end(), number) != wanted.end();
}

bool matchesName(const std::vector<std::string>& patterns, const std::string& name) {
    return patterns.empty() ||
           std::any_of(patterns.begin(), patterns.end(), [&name](const std::string& pattern) {
               return fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
           });
}

unsigned labelValue(const variableMap& snapshot, const char* name) {
    const auto found = snapshot.find(name);
    const unsigned* const value =
        found == snapshot.end() ? nullptr : boost::get<unsigned>(&found->second.value);
    return value == nullptr ? 0 : *value;
}

void appendRows(const PassLabel& label, const variableMap& snapshot,
                const std::vector<std::string>& patterns, Table& table) {
    for (const auto& [name, variable] : snapshot) {
        if (!matchesName(patterns, name)) {
            continue;
        }
        const auto type = static_cast<std::size_t>(variable.value.which());
        const Json rule = variable.ruleNumber ? Json(*variable.ruleNumber) : Json();
        table.rows.push_back({Cell(label.channel), Cell(label.txRate), Cell(label.rxRate),
                              Cell(name), Cell(typeNames[type]), valueCell(variable), Cell(rule)});
    }
}

}  // namespace

PassLabel labelOf(std::size_t channel, const variableMap& snapshot) {
    return {static_cast<unsigned>(channel), labelValue(snapshot, "TX"), labelValue(snapshot, "RX")};
}

std::string passesAtHand(const std::vector<std::vector<variableMap>>& snapshots) {
    std::vector<std::string> channels;
    for (std::size_t channel = 0; channel < snapshots.size(); ++channel) {
        unsigned highestTx = 0;
        unsigned highestRx = 0;
        for (const variableMap& snapshot : snapshots[channel]) {
            const PassLabel label = labelOf(channel, snapshot);
            highestTx = std::max(highestTx, label.txRate);
            highestRx = std::max(highestRx, label.rxRate);
        }
        channels.push_back("channel " + std::to_string(channel) + " has transmit rates 0 to " +
                           std::to_string(highestTx) + " and receive rates 0 to " +
                           std::to_string(highestRx));
    }
    return boost::algorithm::join(channels, "; ");
}

Table snapshotRows(const std::vector<std::vector<variableMap>>& snapshots,
                   const SnapshotFilter& filter) {
    Table table;
    table.columns = {"channel", "tx_rate", "rx_rate", "name", "type", "value", "rule"};
    for (std::size_t channel = 0; channel < snapshots.size(); ++channel) {
        for (const variableMap& snapshot : snapshots[channel]) {
            const PassLabel label = labelOf(channel, snapshot);
            if (isWanted(filter.channels, label.channel) &&
                isWanted(filter.txRates, label.txRate) && isWanted(filter.rxRates, label.rxRate)) {
                appendRows(label, snapshot, filter.names, table);
            }
        }
    }
    if (table.rows.empty()) {
        throw RequestError(
            "No variable of any pass matches --name, --channel, --tx-rate and "
            "--rx-rate together. There are: " +
            passesAtHand(snapshots) + ".");
    }
    return table;
}

Cell valueCell(const varInfo& variable) {
    const auto* const list = boost::get<std::vector<double>>(&variable.value);
    const auto textOfElement = [](double element) { return listedText({boost::none, element}); };
    Cell cell(list != nullptr ? bracketed(*list, textOfElement) : listedText(variable),
              boost::apply_visitor(JsonOfValue(), variable.value));
    cell.exactText = boost::apply_visitor(ExactTextOfValue(), variable.value);
    return cell;
}

}  // namespace sable_lanecfg::tool
