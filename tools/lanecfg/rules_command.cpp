#include "families.h"
#include "output.h"
#include "rule_differences.h"
#include "subcommand.h"

#include <algorithm>
#include <iterator>

namespace sable_lanecfg::tool {
namespace {

struct RulesOptions {
    std::string family;
    std::vector<std::string> sets;
    std::vector<std::string> kinds;
    std::vector<std::string> compared;  ///< two names of rules, or none
    OutputOptions output;
};

bool contains(const std::vector<std::string>& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

void refuseUnknownSets(const RulesOptions& options, const std::vector<NumberedRule>& rules) {
    std::vector<std::string> known;
    for (const auto& [number, rule] : rules) {
        if (!contains(known, rule.set)) {
            known.push_back(rule.set);
        }
    }
    for (const std::string& set : options.sets) {
        if (rules.empty()) {
            throw UsageError("--set: " + options.family + " has no rules, so none in a set \"" +
                             set + "\".");
        }
        if (!contains(known, set)) {
            throw UsageError("--set: the rules of " + options.family + " have no set \"" + set +
                             "\"; they have " + listed(known) + ".");
        }
    }
}

/// The rules that the options choose; no word chooses all.
std::vector<NumberedRule> chosenOf(const std::vector<NumberedRule>& rules,
                                   const RulesOptions& options) {
    std::vector<NumberedRule> chosen;
    std::copy_if(rules.begin(), rules.end(), std::back_inserter(chosen),
                 [&options](const NumberedRule& row) {
                     const bool hasSet =
                         options.sets.empty() || contains(options.sets, row.rule.set);
                     return hasSet && (options.kinds.empty() ||
                                       contains(options.kinds, wordOf(row.rule.kind)));
                 });
    return chosen;
}

Table tableOf(const std::vector<NumberedRule>& rules) {
    Table table;
    table.columns = ruleColumns();
    for (const NumberedRule& rule : rules) {
        table.rows.push_back(ruleCells(rule));
    }
    return table;
}

std::string textOf(const std::vector<NumberedRule>& rules) {
    Table table;
    table.columns = {"number", "set", "kind", "rule"};
    for (const auto& [number, rule] : rules) {
        table.rows.push_back(
            {Cell(number), Cell(rule.set), Cell(wordOf(rule.kind)), Cell(sentenceOf(rule))});
    }
    return alignedText(table);
}

std::string summaryOf(const std::vector<NumberedRule>& rules) {
    std::vector<std::string> counts;
    for (const std::string& word : kindWords()) {
        const auto count = std::count_if(
            rules.begin(), rules.end(),
            [&word](const NumberedRule& row) { return wordOf(row.rule.kind) == word; });
        counts.push_back(std::to_string(count) + " " + word);
    }
    return std::to_string(rules.size()) + " rules: " + listed(counts);
}

std::vector<NumberedRule> rulesNamed(const std::string& name) {
    const RuleSet& ruleSet = *findRuleSetNamed(name);
    return numberedRules(ruleSet.family, ruleSet.selector);
}

Answer answerTo(const RulesOptions& options) {
    if (!options.compared.empty()) {
        const std::string& first = options.compared[0];
        const std::string& second = options.compared[1];
        return answerOf(ruleDifferences(rulesNamed(first), rulesNamed(second)), first, second);
    }
    if (options.family.empty()) {
        throw UsageError("--family is required, or --diff with two of them");
    }
    const std::vector<NumberedRule> all = rulesNamed(options.family);
    refuseUnknownSets(options, all);
    const std::vector<NumberedRule> chosen = chosenOf(all, options);
    Answer answer;
    answer.table = tableOf(chosen);
    answer.text = textOf(chosen);
    answer.remarks.push_back(all.empty() ? options.family + " has no rules" : summaryOf(chosen));
    return answer;
}

ExitCode run(const RulesOptions& options, Console& /*console*/) {
    writeAnswer(answerTo(options), options.output);
    return ExitCode::done;
}

}  // namespace

void addRulesCommand(CLI::App& program, Work& chosen) {
    addSubcommand<RulesOptions>(
        program, chosen, "rules",
        "Rules of a family in the order of their registration, with outputs and inputs, or what "
        "differs between two families",
        "lanecfg rules --family SXB --set PLL --kind logic --format json\n"
        "  lanecfg rules --diff SXB SXB:stable",
        [](CLI::App& command, RulesOptions& options) {
            CLI::Option* const family = command
                                            .add_option("--family", options.family,
                                                        "Family, with \":stable\" its frozen rules")
                                            ->type_name("RULES")
                                            ->check(ruleSetNameCheck());
            CLI::Option* const set = addListOption(command, "--set", options.sets,
                                                   "Only rules of this set, such as RX, TX or PLL");
            CLI::Option* const kind =
                addListOption(command, "--kind", options.kinds, "Only rules of this kind")
                    ->check(CLI::IsMember(kindWords()));
            addComparison(command, "--diff", options.compared,
                          "Compare the rules of two families, FAMILY or FAMILY:SELECTOR each, "
                          "and print what differs")
                ->type_name("RULES")
                ->check(ruleSetNameCheck())
                ->excludes(family)
                ->excludes(set)
                ->excludes(kind);
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
