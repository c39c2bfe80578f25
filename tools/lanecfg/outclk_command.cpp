#include "configured_instance.h"
#include "output.h"
#include "subcommand.h"

namespace sable_lanecfg::tool {
namespace {

struct OutclkOptions {
    RequestOptions request;
    OutputOptions output;
};

Answer answerOf(const textMap& clocks) {
    Answer answer;
    answer.table.columns = {"name", "output_clock"};
    answer.document = Json::object();
    for (const auto& [name, frequency] : clocks) {
        answer.table.rows.push_back({Cell(name), Cell(frequency)});
        answer.document->push_back({name, frequency});
    }
    nameLastColumnForPeople(answer, "output_clock_mhz");
    if (clocks.empty()) {
        answer.remarks = {"No output clock is reported."};
    }
    return answer;
}

ExitCode run(const OutclkOptions& options, Console& console) {
    RequestRun run(options.request, options.output, console);
    writeAnswer(answerOf(run.instance.outputClocks()), options.output);
    return ExitCode::done;
}

}  // namespace

void addOutclkCommand(CLI::App& program, Work& chosen) {
    addSubcommand<OutclkOptions>(
        program, chosen, "outclk",
        "Output clocks (MHz) of a request, each lane's at the fastest of its rates",
        "lanecfg outclk data/requests/sxb_10gbase_r.json",
        [](CLI::App& command, OutclkOptions& options) {
            addRequestOptions(command, options.request);
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
