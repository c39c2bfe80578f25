#pragma once

#include "families.h"

#include <filesystem>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace sable_lanecfg::tool {

/// The three files of one database.
struct Database {
    std::filesystem::path folder;

    std::string deviceFile() const { return (folder / "device.json").string(); }
    std::string parametersFile() const { return (folder / "parameters.json").string(); }
    std::string registersFile() const { return (folder / "registers.json").string(); }
    std::vector<std::string> files() const {
        return {deviceFile(), parametersFile(), registersFile()};
    }
};

/// The folder in which databases are looked for: one that holds the three files itself, or one
/// with a folder for each family.
struct DatabaseRoot {
    std::filesystem::path folder;
    std::string origin;  ///< who named it: an option, a variable, or the program itself
};

/// Gives a subcommand the option --database.
CLI::Option* addDatabaseOption(CLI::App& command, std::string& folder);

/// The folder named by the option, else by the variable LANECFG_DATA, else the bundled one, which
/// is found from the place of the program.
DatabaseRoot chooseDatabaseRoot(const std::string& option);

/// Whether a folder has at least one of the three files. The missing ones are then faults of the
/// database, not a reason to look elsewhere.
bool holdsDatabase(const std::filesystem::path& folder);

/// The database of a rule set. Throws RequestError, telling where it was expected, when there is
/// none, and when one of its files is no regular file.
Database findDatabase(const DatabaseRoot& root, const RuleSet& rules);

/// Throws RequestError when something of this name exists that is no regular file: reading a pipe
/// could wait for ever.
void requireRegularFileIfAny(const std::filesystem::path& file);

}  // namespace sable_lanecfg::tool
