#include "families.h"
#include "output.h"
#include "subcommand.h"

#include <lanecfg/family_rules.h>

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <array>
#include <cstddef>

namespace sable_lanecfg::tool {
namespace {

struct RulesOptions {
    std::string family;
    std::vector<std::string> sets;
    std::vector<std::string> kinds;
    OutputOptions output;
};

/// A rule with its number.
struct NumberedRule {
    std::size_t number;
    ruleDescription rule;
};

/// Words of the kinds, in the order of the enumeration.
constexpr std::array<const char*, 4> kindWords{"constant", "copy", "logic", "compose"};

std::string wordOf(ruleKind kind) {
    return kindWords.at(static_cast<std::size_t>(kind));
}

/// What --family takes: a family, or a family and a selector other than "live".
std::vector<std::string> familyNames() {
    std::vector<std::string> names;
    for (const RuleSet& rules : ruleSets()) {
        names.push_back(nameOf(rules));
    }
    return names;
}

const RuleSet& ruleSetNamed(const std::string& name) {
    return *std::find_if(ruleSets().begin(), ruleSets().end(),
                         [&name](const RuleSet& rules) { return nameOf(rules) == name; });
}

bool contains(const std::vector<std::string>& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

void refuseUnknownSets(const RulesOptions& options, const std::vector<ruleDescription>& rules) {
    std::vector<std::string> known;
    for (const ruleDescription& rule : rules) {
        if (!contains(known, rule.set)) {
            known.push_back(rule.set);
        }
    }
    for (const std::string& set : options.sets) {
        if (!contains(known, set)) {
            throw UsageError("--set: the rules of " + options.family + " have no set \"" + set +
                             "\"; they have " + listed(known) + ".");
        }
    }
}

/// The rules that the options choose; no word chooses all.
std::vector<NumberedRule> chosenOf(const std::vector<ruleDescription>& rules,
                                   const RulesOptions& options) {
    std::vector<NumberedRule> chosen;
    for (std::size_t number = 0; number < rules.size(); ++number) {
        const ruleDescription& rule = rules[number];
        const bool hasSet = options.sets.empty() || contains(options.sets, rule.set);
        const bool hasKind = options.kinds.empty() || contains(options.kinds, wordOf(rule.kind));
        if (hasSet && hasKind) {
            chosen.push_back({number, rule});
        }
    }
    return chosen;
}

std::string joined(const std::vector<std::string>& names) {
    return boost::algorithm::join(names, " ");
}

Table tableOf(const std::vector<NumberedRule>& rules) {
    Table table;
    table.columns = {"number", "set", "kind", "outputs", "inputs", "value"};
    for (const auto& [number, rule] : rules) {
        const Cell value = rule.kind == ruleKind::constant ? Cell(rule.value) : Cell("", nullptr);
        table.rows.push_back({Cell(number), Cell(rule.set), Cell(wordOf(rule.kind)),
                              Cell(joined(rule.outputs), rule.outputs),
                              Cell(joined(rule.inputs), rule.inputs), value});
    }
    return table;
}

/// A rule on one line for people; the widest lists would push columns of their own apart.
std::string sentenceOf(const ruleDescription& rule) {
    return joined(rule.outputs) + (rule.kind == ruleKind::constant
                                       ? " = " + std::to_string(rule.value)
                                       : " <- " + joined(rule.inputs));
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
    for (const char* const word : kindWords) {
        const auto count = std::count_if(
            rules.begin(), rules.end(),
            [word](const NumberedRule& row) { return wordOf(row.rule.kind) == word; });
        counts.push_back(std::to_string(count) + " " + word);
    }
    return std::to_string(rules.size()) + " rules: " + listed(counts);
}

ExitCode run(const RulesOptions& options, Console& /*console*/) {
    const RuleSet& ruleSet = ruleSetNamed(options.family);
    const std::vector<ruleDescription> all = rulesOfFamily(ruleSet.family, ruleSet.selector);
    if (all.empty()) {
        throw RequestError("The " + ruleSet.selector + " rules of " + ruleSet.family +
                           " are not part of this build.");
    }
    refuseUnknownSets(options, all);
    const std::vector<NumberedRule> chosen = chosenOf(all, options);
    Answer answer;
    answer.table = tableOf(chosen);
    answer.text = textOf(chosen);
    answer.remarks.push_back(summaryOf(chosen));
    writeAnswer(answer, options.output);
    return ExitCode::done;
}

}  // namespace

void addRulesCommand(CLI::App& program, Work& chosen) {
    addSubcommand<RulesOptions>(
        program, chosen, "rules",
        "Rules of a family in the order of their registration, with outputs and inputs",
        "lanecfg rules --family SXB --set PLL --kind logic --format json",
        [](CLI::App& command, RulesOptions& options) {
            command
                .add_option("--family", options.family, "Family, with \":stable\" its frozen rules")
                ->required()
                ->check(CLI::IsMember(familyNames()));
            addListOption(command, "--set", options.sets,
                          "Only rules of this set, such as RX, TX or PLL");
            addListOption(command, "--kind", options.kinds, "Only rules of this kind")
                ->check(
                    CLI::IsMember(std::vector<std::string>(kindWords.begin(), kindWords.end())));
            addOutputOptions(command, options.output);
        },
        run);
}

}  // namespace sable_lanecfg::tool
