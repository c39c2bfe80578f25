#include "configured_instance.h"
#include "output.h"
#include "subcommand.h"

#include <boost/format.hpp>

#include <algorithm>
#include <stdexcept>

namespace sable_lanecfg::tool {
namespace {

struct AttributesOptions {
    RequestOptions request;
    OutputOptions output;
};

/// A register word in hexadecimal, empty for an attribute that is no number.
std::string hexadecimal(const std::string& value) {
    const bool isNumber =
        !value.empty() && value.find_first_not_of("0123456789") == std::string::npos;
    if (!isNumber) {
        return {};
    }
    try {
        return (boost::format("0x%08x") % std::stoul(value)).str();
    } catch (const std::out_of_range&) {
        return {};
    }
}

Answer answerOf(const textMap& attributes) {
    Answer answer;
    answer.table.columns = {"name", "value", "hex"};
    answer.document = Json::object();
    for (const auto& [name, value] : attributes) {
        answer.table.rows.push_back({Cell(name), Cell(value), Cell(hexadecimal(value))});
        answer.document->push_back({name, value});
    }
    return answer;
}

ExitCode run(const AttributesOptions& options, Console& console) {
    RequestRun run(options.request, console);
    writeAnswer(answerOf(run.instance.attributes()), options.output);
    return ExitCode::done;
}

}  // namespace

void addAttributesCommand(CLI::App& program, Work& chosen) {
    addSubcommand<AttributesOptions>(
        program, chosen, "attributes",
        "Register words of a request, each channel's for its first rates",
        "lanecfg attributes data/requests/sxa_basic.json --format json -o attributes.json",
        [](CLI::App& command, AttributesOptions& options) {
            addRequestOptions(command, options.request);
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
