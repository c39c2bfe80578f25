#include "replay_rows.h"

#include "rate_table_rows.h"

#include <boost/algorithm/string/join.hpp>

namespace sable_lanecfg::tool {
namespace {

constexpr std::array<ReplayClass, replayClassCount> classes = {
    ReplayClass::replays, ReplayClass::overwrittenByAdjustment, ReplayClass::notInTable,
    ReplayClass::differs};

std::string tableName(const ReplayFinding& finding) {
    return std::string(wordOf(finding.direction)) + " table of channel " +
           std::to_string(finding.tableChannel);
}

std::string description(const ReplayFinding& finding) {
    return finding.name + " of channel " + std::to_string(finding.channel) + " at rate " +
           std::to_string(finding.rate) + " of the " + tableName(finding) + ", which leaves " +
           hexadecimalWord(finding.reached) + " in place of " + hexadecimalWord(finding.wanted) +
           " (" + wordsOf(finding.outcome) + ")";
}

std::vector<Cell> rowOf(const ReplayFinding& finding) {
    return {Cell(wordsOf(finding.outcome)),
            Cell(finding.name),
            Cell(finding.channel),
            Cell(wordOf(finding.direction)),
            Cell(finding.tableChannel),
            Cell(finding.rate),
            Cell(finding.from.tx),
            Cell(finding.from.rx),
            Cell(finding.to.tx),
            Cell(finding.to.rx),
            Cell(hexadecimalWord(finding.wanted)),
            Cell(hexadecimalWord(finding.reached))};
}

}  // namespace

Table replayRows(const ReplayReport& report, ReplayRows which) {
    Table table;
    table.columns = {"class",   "register", "channel", "direction", "table",  "rate",
                     "from_tx", "from_rx",  "to_tx",   "to_rx",     "wanted", "reached"};
    for (const ReplayFinding& finding : report.findings) {
        if (which == ReplayRows::all || finding.outcome != ReplayClass::replays) {
            table.rows.push_back(rowOf(finding));
        }
    }
    return table;
}

std::string classCounts(const ReplayReport& report) {
    std::vector<std::string> parts;
    for (const ReplayClass outcome : classes) {
        parts.push_back(std::to_string(report.count(outcome)) + " " + wordsOf(outcome));
    }
    return std::to_string(report.tables) + " tables, " + std::to_string(report.rates) +
           " rates; registers by class: " + boost::algorithm::join(parts, ", ");
}

std::string verdict(const ReplayReport& report) {
    if (const ReplayFinding* const failure = report.firstFailure()) {
        return "The table is at fault: the first register that does not replay is " +
               description(*failure) + ".";
    }
    if (const ReplayFinding* const deviation = report.firstDeviation()) {
        return "No table is at fault, but not every register replays; the first is " +
               description(*deviation) + ".";
    }
    return "All rates of all channels replay.";
}

Json replayDocument(const ReplayReport& report) {
    Json counts = Json::object();
    for (const ReplayClass outcome : classes) {
        counts[wordsOf(outcome)] = report.count(outcome);
    }
    return {{"verdict", verdict(report)},
            {"failed", report.firstFailure() != nullptr},
            {"tables", report.tables},
            {"rates", report.rates},
            {"classes", counts},
            {"registers", rowObjects(replayRows(report, ReplayRows::all))}};
}

}  // namespace sable_lanecfg::tool
