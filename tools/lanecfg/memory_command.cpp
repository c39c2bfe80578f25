#include "configured_instance.h"
#include "output.h"
#include "subcommand.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <string>
#include <vector>

namespace sable_lanecfg::tool {
namespace {

struct MemoryOptions {
    RequestOptions request;
    OutputOptions output;
};

/// The section's text, ended by a line feed: the words of a rate table may end without one.
std::string wholeLines(const std::string& section) {
    return section.empty() || section.back() == '\n' ? section : section + '\n';
}

std::vector<std::string> linesOf(const std::string& section) {
    std::vector<std::string> lines;
    boost::algorithm::split(lines, section, boost::is_any_of("\n"));
    if (lines.back().empty()) {
        lines.pop_back();
    }
    return lines;
}

Answer answerOf(const textMap& image) {
    Answer answer;
    answer.table.columns = {"section", "line"};
    answer.document = Json::object();
    answer.text = "";
    for (const auto& [address, section] : image) {
        for (const std::string& line : linesOf(section)) {
            answer.table.rows.push_back({Cell(address), Cell(boost::algorithm::trim_copy(line))});
        }
        answer.document->push_back({address, section});
        *answer.text += address + '\n' + wholeLines(section);
    }
    return answer;
}

ExitCode run(const MemoryOptions& options, Console& console) {
    RequestRun run(options.request, options.output, console);
    const Answer answer = answerOf(run.instance.memoryImage());
    run.instance.finish();
    writeAnswer(answer, options.output);
    return ExitCode::done;
}

}  // namespace

void addMemoryCommand(CLI::App& program, Work& chosen) {
    addSubcommand<MemoryOptions>(
        program, chosen, "memory",
        "Memory image of the embedded controller: firmware and the rate table of a request",
        "lanecfg memory data/requests/sxa_basic.json -o quad.mem",
        [](CLI::App& command, MemoryOptions& options) {
            addRequestOptions(command, options.request);
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
