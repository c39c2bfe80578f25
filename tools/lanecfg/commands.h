#pragma once

#include "console.h"
#include "errors.h"

#include <functional>

namespace CLI {
class App;
}

namespace sable_lanecfg::tool {

/// The work of the subcommand that the user has chosen; it throws RequestError or UsageError.
/// Messages of severity "error" make its ExitCode::done a failure.
using Work = std::function<ExitCode(Console&)>;

/// Each of these adds one subcommand to the program. When the command line chooses it, its work
/// is put into `chosen`.
void addAttributesCommand(CLI::App& program, Work& chosen);
void addOutclkCommand(CLI::App& program, Work& chosen);
void addSnapshotCommand(CLI::App& program, Work& chosen);
void addLogCommand(CLI::App& program, Work& chosen);
void addMemoryCommand(CLI::App& program, Work& chosen);
void addUpdateElfCommand(CLI::App& program, Work& chosen);
void addRateTableCommand(CLI::App& program, Work& chosen);
void addRefclkCommand(CLI::App& program, Work& chosen);
void addOutclkListCommand(CLI::App& program, Work& chosen);
void addCheckDatabaseCommand(CLI::App& program, Work& chosen);
void addRulesCommand(CLI::App& program, Work& chosen);
void addPackCommand(CLI::App& program, Work& chosen);
void addFamiliesCommand(CLI::App& program, Work& chosen);
void addModelsCommand(CLI::App& program, Work& chosen);
void addModelUpdateCommand(CLI::App& program, Work& chosen);

}  // namespace sable_lanecfg::tool
