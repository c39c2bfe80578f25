#include "commands.h"
#include "console.h"
#include "output.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>

namespace {

using sable_lanecfg::tool::Console;
using sable_lanecfg::tool::ExitCode;
using sable_lanecfg::tool::Work;

void addCommands(CLI::App& program, Work& chosen) {
    using namespace sable_lanecfg::tool;
    addAttributesCommand(program, chosen);
    addOutclkCommand(program, chosen);
    addSnapshotCommand(program, chosen);
    addLogCommand(program, chosen);
    addMemoryCommand(program, chosen);
    addUpdateElfCommand(program, chosen);
    addRateTableCommand(program, chosen);
    addRefclkCommand(program, chosen);
    addOutclkListCommand(program, chosen);
    addPackCommand(program, chosen);
    addFamiliesCommand(program, chosen);
    addRulesCommand(program, chosen);
    addModelsCommand(program, chosen);
    addModelUpdateCommand(program, chosen);
    addCheckDatabaseCommand(program, chosen);
}

ExitCode perform(const Work& work) {
    Console console;
    try {
        const ExitCode code = work(console);
        const bool hasFailed = code == ExitCode::done && console.errorCount() > 0;
        return hasFailed ? ExitCode::failed : code;
    } catch (const sable_lanecfg::tool::UsageError& error) {
        console.error(error.what());
        return ExitCode::usage;
    } catch (...) {
        console.error(sable_lanecfg::tool::currentExceptionText());
        return ExitCode::failed;
    }
}

void passOver(int /*signal*/) {}

/// A reader that ends early and a file that gets too large shall fail the write, not end the
/// program. Programs that it starts don't inherit a function, as they would a signal ignored.
void surviveFailedWrites() {
    struct sigaction action = {};
    action.sa_handler = passOver;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        sigaction(signal, &action, nullptr);
    }
}

ExitCode parseAndPerform(int argumentCount, char** arguments) {
    CLI::App program(
        "Configures multi-gigabit serial transceivers: from a request and a device "
        "database to registers.",
        "lanecfg");
    program.footer(
        "Example:\n  lanecfg attributes data/requests/sxa_basic.json\n\n"
        "Exit codes: 0 done, 1 the request failed, 2 wrong usage.");
    program.set_version_flag("--version", LANECFG_VERSION);
    program.require_subcommand(1);
    Work chosen;
    addCommands(program, chosen);
    try {
        program.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success)) {
            (void)program.exit(error);
            return ExitCode::usage;
        }
        return perform([&program, &error](Console& /*console*/) {
            (void)program.exit(error);
            sable_lanecfg::tool::finishStandardOutput();
            return ExitCode::done;
        });
    }
    return perform(chosen);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    try {
        surviveFailedWrites();
        return static_cast<int>(parseAndPerform(argumentCount, arguments));
    } catch (...) {
        // What the console could not report any more.
        (void)std::fputs("ERROR: lanecfg can't go on.\n", stderr);
        return static_cast<int>(ExitCode::failed);
    }
}
