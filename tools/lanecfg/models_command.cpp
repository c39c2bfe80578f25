#include "output.h"
#include "registered_model.h"
#include "subcommand.h"

#include <boost/algorithm/string/join.hpp>

namespace sable_lanecfg::tool {
namespace {

struct ModelsOptions {
    OutputOptions output;
};

/// A row for each update procedure of the model.
void addRows(Table& table, const std::string& identifier) {
    const RegisteredModel model(identifier);
    for (const std::string& procedure : model.procedures()) {
        const std::vector<std::string> arguments = model.parametersOf(procedure);
        table.rows.push_back({Cell(identifier), Cell(procedure),
                              Cell(boost::algorithm::join(arguments, " "), arguments)});
    }
}

ExitCode run(const ModelsOptions& options, Console& /*console*/) {
    Answer answer;
    answer.table.columns = {"identifier", "procedure", "arguments"};
    for (const std::string& identifier : modelIdentifiers()) {
        addRows(answer.table, identifier);
    }
    writeAnswer(answer, options.output);
    return ExitCode::done;
}

}  // namespace

void addModelsCommand(CLI::App& program, Work& chosen) {
    addSubcommand<ModelsOptions>(
        program, chosen, "models",
        "Design-rule models of the host: IP identifiers and their procedures with arguments",
        "lanecfg models --format json",
        [](CLI::App& command, ModelsOptions& options) {
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
