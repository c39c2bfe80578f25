#include "output.h"
#include "parameter_edit.h"
#include "subcommand.h"

#include <boost/algorithm/string/join.hpp>

#include <algorithm>

namespace sable_lanecfg::tool {
namespace {

struct ModelUpdateOptions {
    std::string identifier;
    std::string procedure;
    std::vector<std::string> values;
    OutputOptions output;
};

/// Parameters whose value is another one than before.
std::vector<std::string> changedParameters(const ParameterEdit& edit, const updater& result) {
    std::vector<std::string> changed;
    for (const auto& [parameter, value] : result.values) {
        const auto before = edit.values.find(parameter);
        if (before == edit.values.end() || before->second != value) {
            changed.push_back(parameter);
        }
    }
    return changed;
}

std::vector<Cell> row(const std::string& entry, const std::string& parameter,
                      const std::string& value) {
    return {Cell(entry), Cell(parameter), Cell(value)};
}

/// One row for each fact, the edited parameter's last.
Table tableOf(const ParameterEdit& edit, const updater& result) {
    Table table;
    table.columns = {"entry", "parameter", "value"};
    const std::vector<std::string> changed = changedParameters(edit, result);
    for (const auto& [parameter, value] : result.values) {
        const bool isChanged =
            std::find(changed.begin(), changed.end(), parameter) != changed.end();
        table.rows.push_back(row(isChanged ? "changed" : "unchanged", parameter, value));
    }
    const std::string parameter = parameterOfProcedure(edit.procedure);
    table.rows.push_back(row("editable", parameter, result.enabled ? "yes" : "no"));
    for (const std::string& offer : result.range) {
        table.rows.push_back(row("offered", parameter, offer));
    }
    return table;
}

Json documentOf(const std::string& identifier, const ParameterEdit& edit, const updater& result) {
    return {{"identifier", identifier},
            {"procedure", edit.procedure},
            {"parameter", parameterOfProcedure(edit.procedure)},
            {"values", result.values},
            {"changed", changedParameters(edit, result)},
            {"editable", result.enabled},
            {"offered", result.range}};
}

ExitCode run(const ModelUpdateOptions& options, Console& console) {
    const RegisteredModel model(options.identifier);
    const ParameterEdit edit = parameterEdit(model, options.procedure, options.values);
    for (const std::string& name : edit.foreignParameters) {
        console.warning("The procedure does not take " + name + ". It takes " +
                        boost::algorithm::join(model.parametersOf(edit.procedure), ", ") + ".");
    }
    const updater result = evaluated(model, edit);
    Answer answer;
    answer.table = tableOf(edit, result);
    answer.document = documentOf(options.identifier, edit, result);
    writeAnswer(answer, options.output);
    return ExitCode::done;
}

void addOptions(CLI::App& command, ModelUpdateOptions& options) {
    command.add_option("identifier", options.identifier, "IP identifier of the model")
        ->type_name("IDENTIFIER")
        ->required();
    command
        .add_option("procedure", options.procedure,
                    "Update procedure; the name of its parameter will do")
        ->type_name("PROCEDURE")
        ->required();
    command
        .add_option("values", options.values,
                    "Parameters of the edit, with or without the prefix PARAM_VALUE.; the others "
                    "are empty")
        ->type_name("NAME=VALUE");
    addOutputOptions(command, options.output);
}

}  // namespace

void addModelUpdateCommand(CLI::App& program, Work& chosen) {
    addSubcommand<ModelUpdateOptions>(
        program, chosen, "model-update",
        "What follows from an edit of parameters: values, whether the parameter can be edited, "
        "and the values offered for it",
        "lanecfg model-update corvane:ip:gt_subcore_ip:1.0 TX_REFCLK_FREQUENCY "
        "TX_PLL_TYPE=RPLL TX_LINE_RATE=10",
        addOptions, run);
}

}  // namespace sable_lanecfg::tool
