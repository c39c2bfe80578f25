#include "configured_instance.h"
#include "output.h"
#include "subcommand.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <string>
#include <vector>

namespace sable_lanecfg::tool {
namespace {

struct LogOptions {
    RequestOptions request;
    OutputOptions output;
};

/// The log tells about all answers up to the memory image, whose rate table begins it anew.
std::vector<std::string> logOf(ConfiguredInstance& instance) {
    instance.attributes();
    instance.outputClocks();
    instance.memoryImage();
    return ConfiguredInstance::log();
}

/// Headings of the rate table bring line feeds of their own.
void addRows(Table& table, const std::string& line) {
    std::vector<std::string> rows;
    boost::algorithm::split(rows, line, boost::is_any_of("\n"));
    for (const std::string& row : rows) {
        table.rows.push_back({Cell(row)});
    }
}

ExitCode run(const LogOptions& options, Console& console) {
    RequestRun run(options.request, options.output, console);
    Answer answer;
    answer.table.columns = {"line"};
    answer.table.hasHeading = false;
    answer.document = Json::array();
    for (const std::string& line : logOf(run.instance)) {
        addRows(answer.table, line);
        answer.document->push_back(line);
    }
    run.instance.finish();
    writeAnswer(answer, options.output);
    return ExitCode::done;
}

}  // namespace

void addLogCommand(CLI::App& program, Work& chosen) {
    addSubcommand<LogOptions>(
        program, chosen, "log", "Log lines that the library writes about a request",
        "lanecfg log data/requests/sxa_basic.json -o run.log",
        [](CLI::App& command, LogOptions& options) {
            addRequestOptions(command, options.request);
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
