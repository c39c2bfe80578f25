#include "database_check.h"
#include "option_value.h"
#include "output.h"
#include "subcommand.h"

#include <algorithm>
#include <filesystem>

namespace sable_lanecfg::tool {
namespace {

namespace fs = std::filesystem;

struct CheckDatabaseOptions {
    std::string folder;
    std::string family;
    std::string selector = "live";
    OutputOptions output;
};

/// A database and the rules that belong to it; null when these are unknown.
struct Target {
    Database database;
    const RuleSet* rules;
};

std::vector<fs::path> databaseFolders(const DatabaseRoot& root) {
    if (holdsDatabase(root.folder)) {
        return {root.folder};
    }
    std::vector<fs::path> folders;
    std::error_code missing;
    for (const fs::directory_entry& entry : fs::directory_iterator(root.folder, missing)) {
        if (holdsDatabase(entry.path())) {
            folders.push_back(entry.path());
        }
    }
    if (folders.empty()) {
        throw RequestError("There is no database in " + root.folder.string() + " (" + root.origin +
                           "): expected device.json, parameters.json and registers.json, there or "
                           "in a folder for each family.");
    }
    std::sort(folders.begin(), folders.end());
    return folders;
}

std::vector<Target> targetsOfFolder(const fs::path& folder) {
    std::vector<Target> targets;
    for (const RuleSet* const rules :
         ruleSetsOfFolder(fs::weakly_canonical(folder).filename().string())) {
        targets.push_back({{folder}, rules});
    }
    if (targets.empty()) {
        targets.push_back({{folder}, nullptr});
    }
    return targets;
}

std::vector<Target> targetsOf(const CheckDatabaseOptions& options) {
    const DatabaseRoot root = chooseDatabaseRoot(options.folder);
    if (!options.family.empty()) {
        const RuleSet* const rules = findRuleSet(options.family, options.selector);
        if (rules == nullptr) {
            throw RequestError("The family " + options.family + " has no \"" + options.selector +
                               "\" rules; lanecfg families lists which families have which.");
        }
        return {{findDatabase(root, *rules), rules}};
    }
    std::vector<Target> targets;
    for (const fs::path& folder : databaseFolders(root)) {
        const std::vector<Target> added = targetsOfFolder(folder);
        targets.insert(targets.end(), added.begin(), added.end());
    }
    return targets;
}

std::string rulesName(const DatabaseReport& report) {
    return report.rules == nullptr ? "family unknown"
                                   : report.rules->family + " " + report.rules->selector;
}

std::string summary(const DatabaseReport& report) {
    return report.database.folder.string() + " (" + rulesName(report) +
           "): " + std::to_string(report.registers.registers) + " registers, " +
           std::to_string(report.registers.fields) + " fields, " +
           std::to_string(report.parameters) + " parameters, " +
           std::to_string(report.ruleOutputs) + " rule outputs; " +
           std::to_string(report.count(FindingLevel::error)) + " errors, " +
           std::to_string(report.count(FindingLevel::warning)) + " warnings, " +
           std::to_string(report.count(FindingLevel::note)) + " notes";
}

Json findingsDocument(const DatabaseReport& report) {
    Json list = Json::array();
    for (const Finding& finding : report.findings) {
        list.push_back({{"level", wordOf(finding.level)},
                        {"file", finding.file},
                        {"key", finding.key},
                        {"text", finding.text}});
    }
    return list;
}

Json documentOf(const DatabaseReport& report) {
    const RuleSet* const rules = report.rules;
    return {{"folder", report.database.folder.string()},
            {"family", rules == nullptr ? Json() : Json(rules->family)},
            {"selector", rules == nullptr ? Json() : Json(rules->selector)},
            {"registers", report.registers.registers},
            {"fields", report.registers.fields},
            {"parameters", report.parameters},
            {"rule_outputs", report.ruleOutputs},
            {"errors", report.count(FindingLevel::error)},
            {"warnings", report.count(FindingLevel::warning)},
            {"notes", report.count(FindingLevel::note)},
            {"findings", findingsDocument(report)}};
}

void addRows(const DatabaseReport& report, const std::vector<Finding>& findings, Table& table) {
    for (const Finding& finding : findings) {
        table.rows.push_back({Cell(report.database.folder.string()), Cell(wordOf(finding.level)),
                              Cell(finding.file), Cell(finding.key), Cell(finding.text)});
    }
}

/// Every finding for programs; for people notes that are alike stand together.
Answer answerOf(const std::vector<DatabaseReport>& reports) {
    Answer answer;
    answer.table.columns = {"database", "level", "file", "key", "finding"};
    answer.document = Json::array();
    Table joined = answer.table;
    for (const DatabaseReport& report : reports) {
        addRows(report, report.findings, answer.table);
        addRows(report, withAlikeNotesJoined(report.findings), joined);
        answer.remarks.push_back(summary(report));
        answer.document->push_back(documentOf(report));
    }
    if (!joined.rows.empty()) {
        answer.text = alignedText(joined);
    }
    return answer;
}

ExitCode run(const CheckDatabaseOptions& options, Console& console) {
    const std::vector<Target> targets = targetsOf(options);
    for (const Target& target : targets) {
        refuseToOverwrite(target.database.files(), options.output);
    }
    std::vector<DatabaseReport> reports;
    for (const Target& target : targets) {
        reports.push_back(checkDatabase(target.database, target.rules, console));
    }
    writeAnswer(answerOf(reports), options.output);
    const bool hasError = std::any_of(
        reports.begin(), reports.end(),
        [](const DatabaseReport& report) { return report.count(FindingLevel::error) > 0; });
    return hasError ? ExitCode::failed : ExitCode::done;
}

}  // namespace

void addCheckDatabaseCommand(CLI::App& program, Work& chosen) {
    addSubcommand<CheckDatabaseOptions>(
        program, chosen, "check-database",
        "Verifies databases; the exit code is 1 when one has an error",
        "lanecfg check-database data/SXA --format json",
        [](CLI::App& command, CheckDatabaseOptions& options) {
            command
                .add_option("folder,--database", options.folder,
                            "A database, or a folder of databases; else the variable "
                            "LANECFG_DATA, else the bundled ones")
                ->type_name("DIR")
                ->check(emptyValueFault);
            CLI::Option* const family =
                command
                    .add_option("--family", options.family,
                                "Family of the database, where its folder's name does not tell")
                    ->check(CLI::IsMember(familyWords()));
            command.add_option("--selector", options.selector, "Rules to compare with")
                ->transform(CLI::IsMember(selectorWords(), CLI::ignore_case))
                ->capture_default_str()
                ->needs(family);
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
