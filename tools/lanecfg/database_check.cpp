#include "database_check.h"

#include "device_checks.h"
#include "errors.h"
#include "json_document.h"
#include "parameter_checks.h"
#include "rule_checks.h"

#include <algorithm>
#include <filesystem>
#include <string>

namespace sable_lanecfg::tool {
namespace {

/// Reads one file and hands its content to `check`; false when it can't be read.
template <class Check>
bool checkFile(const std::string& file, std::vector<Finding>& all, const Check& check) {
    FindingList findings(std::filesystem::path(file).filename().string(), all);
    try {
        const JsonDocument document = readJsonDocument(file, Lists::whole);
        for (const std::string& key : document.repeatedKeys) {
            findings.error(key, "The key stands more than once; remove all but one.");
        }
        check(document.root, findings);
        return true;
    } catch (const RequestError& error) {
        findings.error("", error.what());
        return false;
    }
}

}  // namespace

std::size_t DatabaseReport::count(FindingLevel level) const {
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(),
                      [level](const Finding& finding) { return finding.level == level; }));
}

DatabaseReport checkDatabase(const Database& database, const RuleSet* rules, Console& console) {
    const std::string place = database.folder.string();
    DatabaseReport report;
    report.database = database;
    report.rules = rules;
    const std::vector<std::string> limits =
        rules != nullptr ? rules->limits : std::vector<std::string>();
    console.progress("Checking the files of " + place);
    const bool hasDevice = checkFile(
        database.deviceFile(), report.findings,
        [&limits](const auto& root, auto& findings) { checkDeviceData(root, limits, findings); });
    const bool hasParameters = checkFile(database.parametersFile(), report.findings,
                                         [&report](const auto& root, auto& findings) {
                                             report.parameters = checkParameters(root, findings);
                                         });
    const bool hasRegisters = checkFile(database.registersFile(), report.findings,
                                        [&report](const auto& root, auto& findings) {
                                            report.registers = checkRegisters(root, findings);
                                        });
    if (rules == nullptr) {
        FindingList("", report.findings)
            .note("",
                  "The family is not known from the folder's name, so limits and rules were "
                  "not checked; give --family.");
    } else if (hasDevice && hasParameters && hasRegisters) {
        console.progress("Comparing " + place + " with the " + rules->selector + " rules of " +
                         rules->family);
        report.ruleOutputs = checkRules(database, *rules, report.findings);
    }
    console.endProgress();
    return report;
}

}  // namespace sable_lanecfg::tool
