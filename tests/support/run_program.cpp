#include "support/run_program.h"

#include "support/temporary_directory.h"

#include <boost/process.hpp>

#include <filesystem>

namespace lanecfg_test {
namespace {

namespace process = boost::process;

/// A variable of a sanitizer with our exit code appended.
std::string withSanitizerExitCode(const process::environment& environment, const char* name) {
    const std::string before =
        environment.count(name) == 0 ? std::string() : environment.at(name).to_string() + ":";
    return before + "exitcode=99";
}

process::environment environmentOf(const ProgramStart& start) {
    process::environment environment = boost::this_process::environment();
    for (const char* const name : {"ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
        environment[name] = withSanitizerExitCode(environment, name);
    }
    for (const auto& [name, value] : start.environment) {
        environment[name] = value;
    }
    return environment;
}

}  // namespace

ProgramResult runProgram(const std::string& program, const ProgramStart& start) {
    // Files, not pipes: a program that writes much to both would wait for us.
    const TemporaryDirectory directory;
    const std::string outputFile = directory.write("output", "");
    const std::string errorsFile =
        start.errorsTo.empty() ? directory.write("errors", "") : start.errorsTo;
    const std::string workingDirectory = start.workingDirectory.empty()
                                             ? std::filesystem::current_path().string()
                                             : start.workingDirectory;
    process::child child(process::exe = program, process::args = start.arguments,
                         environmentOf(start), process::start_dir = workingDirectory,
                         process::std_in<process::null, process::std_out> outputFile,
                         process::std_err > errorsFile);
    child.wait();
    return {child.exit_code(), readFile(outputFile),
            start.errorsTo.empty() ? readFile(errorsFile) : std::string()};
}

}  // namespace lanecfg_test
