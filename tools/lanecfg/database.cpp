#include "database.h"

#include "errors.h"
#include "option_value.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdlib>
#include <system_error>

namespace sable_lanecfg::tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* environmentVariable = "LANECFG_DATA";

/// The build lays programs and data out as an installation does, so one way leads to both.
fs::path bundledFolder() {
    const fs::path program = fs::read_symlink("/proc/self/exe");
    return (program.parent_path() / LANECFG_DATA_FROM_PROGRAM).lexically_normal();
}

}  // namespace

CLI::Option* addDatabaseOption(CLI::App& command, std::string& folder) {
    return command
        .add_option("--database", folder,
                    "Use this database in place of the bundled one: a folder with device.json, "
                    "parameters.json and registers.json, or with one such folder for each family. "
                    "The variable LANECFG_DATA does the same")
        ->type_name("DIR")
        ->check(emptyValueFault);
}

DatabaseRoot chooseDatabaseRoot(const std::string& option) {
    if (!option.empty()) {
        return {option, "named on the command line"};
    }
    const char* const variable = std::getenv(environmentVariable);
    if (variable != nullptr && *variable != '\0') {
        return {variable, std::string("named by the variable ") + environmentVariable};
    }
    return {bundledFolder(), "bundled with the program"};
}

bool holdsDatabase(const fs::path& folder) {
    const std::vector<std::string> files = Database{folder}.files();
    return std::any_of(files.begin(), files.end(), [](const std::string& file) {
        std::error_code ignored;
        return fs::exists(file, ignored);
    });
}

Database findDatabase(const DatabaseRoot& root, const RuleSet& rules) {
    const Database own{holdsDatabase(root.folder) ? root.folder : root.folder / rules.folder};
    if (!holdsDatabase(own.folder)) {
        throw RequestError(
            "There is no database for the " + rules.selector + " rules of " + rules.family +
            ": expected device.json, parameters.json and "
            "registers.json in " +
            own.folder.string() + " (in the database folder " + root.origin +
            "). Name another folder with --database or " + environmentVariable + ".");
    }
    for (const std::string& file : own.files()) {
        requireRegularFileIfAny(file);
    }
    return own;
}

void requireRegularFileIfAny(const fs::path& file) {
    std::error_code ignored;
    const fs::file_status status = fs::status(file, ignored);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw RequestError(
            "Error in parsing the file " + file.string() +
            ". It is no regular file; give a file, since it is read more than once.");
    }
}

}  // namespace sable_lanecfg::tool
