#include "database.h"
#include "idle_run.h"
#include "output.h"
#include "subcommand.h"

#include <lanecfg/rule_engine_utilities.h>

#include <filesystem>
#include <system_error>

namespace sable_lanecfg::tool {
namespace {

struct FamiliesOptions {
    std::string database;
    OutputOptions output;
};

/// Folder of a rule set's database, none when there is none.
std::optional<Database> databaseOf(const DatabaseRoot& root, const RuleSet& rules) {
    try {
        return findDatabase(root, rules);
    } catch (const RequestError&) {
        return std::nullopt;
    }
}

std::vector<Cell> rowOf(const RuleSet& rules, const std::optional<Database>& database) {
    const bool isAvailable = database && isRuleSetBuilt(rules, *database);
    return {Cell(rules.family), Cell(rules.selector),
            Cell(rule_engine_utilities::ChPerBlock(rules.family)),
            Cell(isAvailable ? "yes" : "no", isAvailable),
            database ? Cell(database->folder.string()) : Cell("none", nullptr)};
}

/// A folder that has no database at all is an answer, one that isn't there is none.
void requireFolder(const DatabaseRoot& root) {
    std::error_code missing;
    if (!std::filesystem::is_directory(root.folder, missing)) {
        throw RequestError("There is no folder " + root.folder.string() + " (" + root.origin +
                           "). Name the folder of the databases with --database.");
    }
}

ExitCode run(const FamiliesOptions& options, Console& console) {
    const DatabaseRoot root = chooseDatabaseRoot(options.database);
    requireFolder(root);
    Answer answer;
    answer.table.columns = {"family", "selector", "channels", "available", "database"};
    for (const RuleSet& rules : ruleSets()) {
        console.progress("Looking at the " + rules.selector + " rules of " + rules.family);
        const std::optional<Database> database = databaseOf(root, rules);
        if (database) {
            refuseToOverwrite(database->files(), options.output);
        }
        answer.table.rows.push_back(rowOf(rules, database));
    }
    console.endProgress();
    writeAnswer(answer, options.output);
    return ExitCode::done;
}

}  // namespace

void addFamiliesCommand(CLI::App& program, Work& chosen) {
    addSubcommand<FamiliesOptions>(
        program, chosen, "families",
        "Families and selectors, channels of a quad, and where each database is",
        "lanecfg families --format json",
        [](CLI::App& command, FamiliesOptions& options) {
            addDatabaseOption(command, options.database);
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
