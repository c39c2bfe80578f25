#include "clock_warnings.h"
#include "output.h"
#include "packing_question.h"
#include "packing_reasons.h"
#include "packing_view.h"
#include "request_inputs.h"
#include "subcommand.h"

namespace sable_lanecfg::tool {
namespace {

struct PackOptions {
    RequestOptions request;
    bool wantsPorts = false;
    bool wantsCandidates = false;
    OutputOptions output;
};

Table portTable(const textMap& ports) {
    Table table;
    table.columns = {"port", "clock"};
    for (const auto& [port, clock] : ports) {
        table.rows.push_back({Cell(port), Cell(clock)});
    }
    return table;
}

Json portDocument(const textMap& ports) {
    Json document = Json::object();
    for (const auto& [port, clock] : ports) {
        document[port] = clock;
    }
    return document;
}

std::string verdictText(std::size_t reasonCount) {
    if (reasonCount == 0) {
        return "fits";
    }
    return "does not fit: " + std::to_string(reasonCount) +
           (reasonCount == 1 ? " reason" : " reasons");
}

/// A further table of the form for people, behind an empty line.
std::string block(const Table& table) {
    std::string text = '\n' + alignedText(table);
    text.pop_back();
    return text;
}

/// The verdict with the warnings, and the further tables that were asked for. CSV holds one of the
/// tables alone.
Answer answerOf(const PackingQuestion& question, const std::vector<ClockWarning>& warnings,
                const PackOptions& options) {
    const std::vector<PackingReason> reasons = packingReasons(question);
    Answer answer;
    answer.table = reasonTable(reasons);
    answer.remarks = {verdictText(reasons.size())};
    answer.document = {{"fits", reasons.empty()},
                       {"reasons", reasonDocument(reasons)},
                       {"warnings", clockWarningDocument(warnings)}};
    for (const ClockWarning& warning : warnings) {
        answer.remarks.push_back("warning: " + warning.text);
    }
    const auto addTable = [&](const Table& table) {
        answer.remarks.push_back(block(table));
        if (options.output.format == "csv") {
            answer.table = table;
        }
    };
    if (options.wantsPorts) {
        const textMap ports = question.packing.returnRefclkPorts();
        addTable(portTable(ports));
        (*answer.document)["ports"] = portDocument(ports);
    }
    if (options.wantsCandidates) {
        addTable(candidateTable(question.packing));
        (*answer.document)["plls"] = candidateDocument(question.packing);
    }
    return answer;
}

ExitCode run(const PackOptions& options, Console& console) {
    if (options.output.format == "csv" && options.wantsPorts && options.wantsCandidates) {
        throw UsageError("CSV holds one table: give --ports or --why, not both.");
    }
    const RequestInputs inputs(options.request, options.output);
    const PackingQuestion question = askForPacking(inputs.request, inputs.database, console);
    const std::vector<ClockWarning> warnings = clockWarnings(question.packing);
    if (options.output.format == "csv") {
        tellOfClocks(inputs.request, warnings, console);
    }
    writeAnswer(answerOf(question, warnings, options), options.output);
    return question.messages.empty() ? ExitCode::done : ExitCode::failed;
}

}  // namespace

void addPackCommand(CLI::App& program, Work& chosen) {
    addSubcommand<PackOptions>(
        program, chosen, "pack",
        "Whether the channels can share a quad; the exit code is 1 when they can't",
        "lanecfg pack data/requests/pack/no_vco.json --why",
        [](CLI::App& command, PackOptions& options) {
            addRequestOptions(command, options.request);
            command.add_flag("--ports", options.wantsPorts,
                             "Add the names of the reference clocks by port");
            command.add_flag("--why", options.wantsCandidates,
                             "Add the VCO frequencies that each lane can use on each PLL, and "
                             "what is left of them");
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
