#include "configured_instance.h"
#include "output.h"
#include "rate_table_replay.h"
#include "rate_table_rows.h"
#include "replay_rows.h"
#include "subcommand.h"

#include <utility>

namespace sable_lanecfg::tool {
namespace {

struct RateTableOptions {
    RequestOptions request;
    bool isDecoded = false;
    bool isVerified = false;
    OutputOptions output;
};

/// An answer for people and CSV holds one table, for JSON a member for each part.
void addDecoded(const DecodedRateTable& table, const ControllerRegisters& registers,
                Answer& answer) {
    answer.table = writeRows(table, registers);
    answer.remarks = headerLines(table);
    answer.document = Json{{"words", table.wordCount},
                           {"channels", headerDocument(table)},
                           {"writes", rowObjects(answer.table)}};
}

/// An aligned table as a remark, which ends without a line feed.
std::string asRemark(const Table& table) {
    const std::string text = alignedText(table);
    return text.substr(0, text.size() - 1);
}

void addVerified(const ReplayReport& report, const RateTableOptions& options, Answer& answer) {
    const bool isText = options.output.format == "text";
    Table rows = replayRows(report, isText ? ReplayRows::deviating : ReplayRows::all);
    if (!options.isDecoded) {
        answer.table = std::move(rows);
        answer.document = Json::object();
    } else if (!rows.rows.empty()) {
        answer.remarks.push_back(asRemark(rows));
    }
    answer.remarks.push_back(classCounts(report));
    answer.remarks.push_back(verdict(report));
    (*answer.document)["verify"] = replayDocument(report);
}

ExitCode run(const RateTableOptions& options, Console& console) {
    if (options.isDecoded && options.isVerified && options.output.format == "csv") {
        throw UsageError("--format csv holds one table: choose --decode or --verify");
    }
    RequestRun run(options.request, options.output, console);
    // The making of the table adjusts the snapshots that it is to be compared with.
    const RateSnapshots snapshots = takeSnapshots(run.instance.engine());
    const std::vector<std::uint32_t> words = rateTableWords(run.instance.rateTable());
    Answer answer;
    ExitCode code = ExitCode::done;
    if (!options.isDecoded && !options.isVerified) {
        answer.table = wordRows(words);
    } else {
        const ControllerRegisters registers(run.instance.engine().attributes);
        const DecodedRateTable table = decodeRateTable(words);
        if (options.isDecoded) {
            addDecoded(table, registers, answer);
        }
        if (options.isVerified) {
            const ReplayReport report = replayRateTable(table, registers, snapshots);
            addVerified(report, options, answer);
            code = report.firstFailure() == nullptr ? ExitCode::done : ExitCode::failed;
        }
    }
    run.instance.finish();
    writeAnswer(answer, options.output);
    return code;
}

}  // namespace

void addRateTableCommand(CLI::App& program, Work& chosen) {
    addSubcommand<RateTableOptions>(
        program, chosen, "rate-table",
        "Rate table of a request: its words, what they say, and whether they lead to every rate",
        "lanecfg rate-table data/requests/sxa_multi_rate.json --decode --verify",
        [](CLI::App& command, RateTableOptions& options) {
            addRequestOptions(command, options.request);
            command.add_flag("--decode", options.isDecoded,
                             "Show the register writes of every channel and rate");
            command.add_flag("--verify", options.isVerified,
                             "Replay every rate and compare the registers with their values; the "
                             "exit code is 1 when a table does not bring its own channel there");
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
