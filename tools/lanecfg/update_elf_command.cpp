#include "configured_instance.h"
#include "option_value.h"
#include "output.h"
#include "subcommand.h"

#include <lanecfg/host/ToolFile.h>
#include <lanecfg/lane_cfg_elf_updator.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace sable_lanecfg::tool {
namespace {

namespace fs = std::filesystem;

struct UpdateElfOptions {
    RequestOptions request;
    std::string elfFile;
    std::string workDir;
    OutputOptions output;
};

/// What an update reads and writes, as absolute paths: the script runs in the work directory, from
/// which relative ones would lead elsewhere.
struct UpdatePaths {
    explicit UpdatePaths(const UpdateElfOptions& options)
        : elfFile(fs::absolute(options.elfFile)),
          workDir(fs::absolute(options.workDir)),
          script(workDir / lane_cfg_elf_updator::scriptName),
          rateTable(workDir / "rate_table.txt"),
          log(workDir / "elfUpdator.log") {}

    fs::path elfFile;
    fs::path workDir;
    fs::path script;
    fs::path rateTable;
    fs::path log;
};

void requireElf(const fs::path& file) {
    std::error_code missing;
    if (!fs::is_regular_file(file, missing)) {
        throw RequestError("There is no ELF file " + file.string() +
                           ". Name the firmware that is to be updated with --elf.");
    }
}

void requireDirectory(const fs::path& directory) {
    std::error_code missing;
    if (!fs::is_directory(directory, missing)) {
        throw RequestError("There is no directory " + directory.string() +
                           ". Name the one that holds " + lane_cfg_elf_updator::scriptName +
                           " with --work-dir.");
    }
}

/// Why a file can't be written, empty when it can. Opening a pipe would wait for its reader.
std::string writeFault(const fs::path& file) {
    std::error_code missing;
    const fs::file_status status = fs::status(file, missing);
    if (fs::is_other(status)) {
        return "It is no regular file";
    }
    errno = 0;
    const std::ofstream stream(file, std::ios_base::app);
    return stream ? std::string() : std::generic_category().message(errno);
}

/// The library passes over files that it can't write, and the script would find the table of an
/// earlier run.
void requireWritable(const fs::path& file) {
    const std::string fault = writeFault(file);
    if (!fault.empty()) {
        throw RequestError("Cannot write the file " + file.string() + ": " + fault +
                           ". An update writes it into the work directory.");
    }
}

/// An update writes the rate table and the log before its script reads anything.
void requireOther(const fs::path& written, const fs::path& input) {
    std::error_code missing;
    if (fs::equivalent(written, input, missing)) {
        throw RequestError("The file " + written.string() +
                           " is overwritten by an update, and is its request or ELF too. Name "
                           "another file, or another work directory.");
    }
}

std::string objectCopyTool() {
    // In no directory at all, so that the question leaves no rate table anywhere.
    const lane_cfg_elf_updator updator("", "", "", "/dev/null");
    return updator.getObjCopyProgramPath(lane_cfg_elf_updator::toolName);
}

/// Looks at what the library looks at, in its order: it does not tell why an update failed.
std::string reasonOfFailure(const UpdatePaths& paths) {
    if (objectCopyTool().empty()) {
        return std::string("there is no object-copy tool: neither is ") +
               lane_cfg_elf_updator::toolName +
               " on the search path, nor does the variable CORVANE_SDK lead to one in "
               "gnu/picocore/lin/bin.";
    }
    const ToolFile script(paths.script.string());
    if (!script.exists()) {
        return "there is no script " + paths.script.string() +
               ". It is delivered with the firmware; data/firmware/update_elf.sh is the reference.";
    }
    if (!script.mkExecutable()) {
        return "the script " + paths.script.string() + " can't be made executable.";
    }
    return "the script " + paths.script.string() + " failed; its log is " + paths.log.string() +
           ".";
}

Answer answerOf(const UpdatePaths& paths) {
    Answer answer;
    answer.table.columns = {"elf", "rate_table", "log"};
    answer.table.rows = {
        {Cell(paths.elfFile.string()), Cell(paths.rateTable.string()), Cell(paths.log.string())}};
    answer.document = Json{{"elf", paths.elfFile.string()},
                           {"rate_table", paths.rateTable.string()},
                           {"log", paths.log.string()}};
    return answer;
}

ExitCode run(const UpdateElfOptions& options, Console& console) {
    const UpdatePaths paths(options);
    refuseToOverwrite({paths.elfFile.string(), paths.script.string(), paths.rateTable.string(),
                       paths.log.string()},
                      options.output);
    for (const fs::path& written : {paths.rateTable, paths.log}) {
        requireOther(written, options.request.file);
        requireOther(written, paths.elfFile);
    }
    RequestRun run(options.request, options.output, console);
    requireElf(paths.elfFile);
    requireDirectory(paths.workDir);
    requireWritable(paths.rateTable);
    requireWritable(paths.log);
    if (!run.instance.updateElf(paths.elfFile.string(), paths.workDir.string())) {
        throw RequestError("The ELF file " + paths.elfFile.string() +
                           " was not updated: " + reasonOfFailure(paths));
    }
    run.instance.finish();
    writeAnswer(answerOf(paths), options.output);
    return ExitCode::done;
}

}  // namespace

void addUpdateElfCommand(CLI::App& program, Work& chosen) {
    addSubcommand<UpdateElfOptions>(
        program, chosen, "update-elf",
        "Puts the rate table of a request into a firmware ELF by the script of a work directory",
        "lanecfg update-elf data/requests/sxa_basic.json --elf /tmp/quad/firmware.elf "
        "--work-dir /tmp/quad\n"
        "docs/firmware.md tells how to make both to try it",
        [](CLI::App& command, UpdateElfOptions& options) {
            addRequestOptions(command, options.request);
            command.add_option("--elf", options.elfFile, "Firmware to put the rate table into")
                ->type_name("FILE")
                ->check(emptyValueFault)
                ->required();
            command
                .add_option("--work-dir", options.workDir,
                            "Directory that holds update_elf.sh and receives rate table and log")
                ->type_name("DIR")
                ->check(emptyValueFault)
                ->required();
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
