#include "commands.h"
#include "console.h"
#include "families.h"
#include "output.h"

#include <CLI/CLI.hpp>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

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

/// A fault of the usage as one or more sentences, and where to read on.
std::string usageText(const CLI::App& program, const std::string& fault) {
    const std::vector<CLI::App*> chosen = program.get_subcommands();
    const std::string command = chosen.empty() ? "" : chosen.front()->get_name() + " ";
    return boost::algorithm::trim_right_copy_if(fault, boost::is_any_of(".\n")) + ". lanecfg " +
           command + "--help tells more.";
}

/// The first word that stands where a subcommand is expected and names none, empty without one.
std::string unknownSubcommand(const CLI::App& program) {
    const std::vector<std::string> words = program.remaining();
    const auto found = std::find_if(words.begin(), words.end(), [](const std::string& word) {
        return !boost::algorithm::starts_with(word, "-");
    });
    return program.get_subcommands().empty() && found != words.end() ? *found : std::string();
}

/// What is wrong with the command line, empty where it asks for help or for the version.
std::string faultOf(const CLI::App& program, const CLI::ParseError& error) {
    const std::string unknown = unknownSubcommand(program);
    if (unknown.empty()) {
        return error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success) ? ""
                                                                                  : error.what();
    }
    std::vector<std::string> names;
    for (const CLI::App* const command :
         program.get_subcommands([](const CLI::App* /*command*/) { return true; })) {
        names.push_back(command->get_name());
    }
    return "There is no subcommand \"" + unknown + "\"; there are " +
           sable_lanecfg::tool::listed(names);
}

ExitCode perform(const CLI::App& program, const Work& work) {
    Console console;
    try {
        const ExitCode code = work(console);
        const bool hasFailed = code == ExitCode::done && console.errorCount() > 0;
        return hasFailed ? ExitCode::failed : code;
    } catch (const sable_lanecfg::tool::UsageError& error) {
        console.error(usageText(program, error.what()));
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
        return perform(program, [&program, &error](Console& /*console*/) {
            const std::string fault = faultOf(program, error);
            if (!fault.empty()) {
                throw sable_lanecfg::tool::UsageError(fault);
            }
            (void)program.exit(error);
            sable_lanecfg::tool::finishStandardOutput();
            return ExitCode::done;
        });
    }
    return perform(program, chosen);
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
