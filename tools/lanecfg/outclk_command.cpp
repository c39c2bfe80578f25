#include "configured_instance.h"
#include "exact_number.h"
#include "output.h"
#include "subcommand.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>

namespace sable_lanecfg::tool {
namespace {

struct OutclkOptions {
    RequestOptions request;
    OutputOptions output;
};

/// The highest value of a variable in the passes of a lane, 0 without any.
double highestIn(const std::vector<variableMap>& passes, const std::string& name) {
    double highest = 0.0;
    for (const variableMap& pass : passes) {
        const auto found = pass.find(name);
        const auto* const value =
            found == pass.end() ? nullptr : boost::get<double>(&found->second.value);
        highest = value == nullptr ? highest : std::max(highest, *value);
    }
    return highest;
}

/// The output clocks by name as the passes have them; the library rounds them to six digits.
std::map<std::string, double> exactClocks(const gt_rule_engine& engine) {
    std::map<std::string, double> clocks;
    for (std::size_t lane = 0; lane < engine.blockVarMap.size(); ++lane) {
        for (const std::string clock : {"TXOUTCLK", "RXOUTCLK"}) {
            clocks["CH" + std::to_string(lane) + "_" + clock] =
                highestIn(engine.blockVarMap[lane], "INT_" + clock + "_FREQ");
        }
    }
    return clocks;
}

Answer answerOf(const textMap& clocks, const std::map<std::string, double>& exact) {
    Answer answer;
    answer.table.columns = {"name", "output_clock"};
    answer.document = Json::object();
    for (const auto& [name, rounded] : clocks) {
        const double frequency = exact.at(name);
        Cell cell(rounded, exactText(frequency), exactJson(frequency));
        answer.document->push_back({name, cell.value});
        answer.table.rows.push_back({Cell(name), std::move(cell)});
    }
    nameLastColumnForPeople(answer, "output_clock_mhz");
    if (clocks.empty()) {
        answer.remarks = {"No output clock is reported."};
    }
    return answer;
}

ExitCode run(const OutclkOptions& options, Console& console) {
    RequestRun run(options.request, options.output, console);
    const textMap clocks = run.instance.outputClocks();
    run.instance.finish();
    writeAnswer(answerOf(clocks, exactClocks(run.instance.engine())), options.output);
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
