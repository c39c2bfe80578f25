#include "configured_instance.h"
#include "option_value.h"
#include "output.h"
#include "snapshot_rows.h"
#include "subcommand.h"

namespace sable_lanecfg::tool {
namespace {

struct SnapshotOptions {
    RequestOptions request;
    SnapshotFilter filter;
    OutputOptions output;
};

ExitCode run(const SnapshotOptions& options, Console& console) {
    const RequestRun run(options.request, options.output, console);
    Answer answer;
    answer.table = snapshotRows(run.instance.engine().blockVarMap, options.filter);
    run.instance.finish();
    writeAnswer(answer, options.output);
    return ExitCode::done;
}

}  // namespace

void addSnapshotCommand(CLI::App& program, Work& chosen) {
    addSubcommand<SnapshotOptions>(
        program, chosen, "snapshot",
        "Variables of the passes: one pass for each channel and combination of its rates",
        "lanecfg snapshot data/requests/sxa_basic.json --name 'LCPLL_CFG0*' --channel 0 "
        "--tx-rate 0 --rx-rate 0",
        [](CLI::App& command, SnapshotOptions& options) {
            addRequestOptions(command, options.request);
            addListOption(command, "--name", options.filter.names,
                          "Only variables whose name matches this shell pattern (* ? [...])")
                ->type_name("PATTERN");
            takeWholeNumbers(
                *addListOption(command, "--channel", options.filter.channels, "Only this channel"));
            takeWholeNumbers(*addListOption(command, "--tx-rate", options.filter.txRates,
                                            "Only passes of this transmit rate"));
            takeWholeNumbers(*addListOption(command, "--rx-rate", options.filter.rxRates,
                                            "Only passes of this receive rate"));
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
