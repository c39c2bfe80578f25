#include "rule_differences.h"

#include "families.h"

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <set>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

using Names = std::vector<std::string>;

constexpr std::array<const char*, 4> wordsOfKinds{"constant", "copy", "logic", "compose"};

std::string joined(const Names& names) {
    return boost::algorithm::join(names, " ");
}

std::string valueText(const ruleDescription& rule) {
    return rule.kind == ruleKind::constant ? std::to_string(rule.value) : "none";
}

bool isEqual(const ruleDescription& first, const ruleDescription& second) {
    return first.kind == second.kind && first.inputs == second.inputs &&
           first.outputs == second.outputs && first.value == second.value;
}

/// Names that the second list has fewer or more often than the first, as "-A +B".
std::string nameChanges(const Names& first, const Names& second) {
    const std::multiset<std::string> before(first.begin(), first.end());
    const std::multiset<std::string> after(second.begin(), second.end());
    Names parts;
    const auto addMissing = [&parts](const auto& from, const auto& in, const char* sign) {
        Names missing;
        std::set_difference(from.begin(), from.end(), in.begin(), in.end(),
                            std::back_inserter(missing));
        for (const std::string& name : missing) {
            parts.push_back(sign + name);
        }
    };
    addMissing(before, after, "-");
    addMissing(after, before, "+");
    return parts.empty() ? "in another order" : joined(parts);
}

/// What differs between two rules, each aspect with how it changes.
std::vector<std::pair<std::string, std::string>> aspectsOf(const ruleDescription& first,
                                                           const ruleDescription& second) {
    std::vector<std::pair<std::string, std::string>> aspects;
    const auto add = [&aspects](const char* aspect, const std::string& before,
                                const std::string& after) {
        if (before != after) {
            aspects.emplace_back(aspect, before + " -> " + after);
        }
    };
    add("kind", wordOf(first.kind), wordOf(second.kind));
    add("value", valueText(first), valueText(second));
    if (first.outputs != second.outputs) {
        aspects.emplace_back("outputs", nameChanges(first.outputs, second.outputs));
    }
    if (first.inputs != second.inputs) {
        aspects.emplace_back("inputs", nameChanges(first.inputs, second.inputs));
    }
    return aspects;
}

/// The rules of the second family that still look for their like in the first.
class open_rules {
  public:
    explicit open_rules(const std::vector<NumberedRule>& rules) : rules_(rules) {
        for (std::size_t index = 0; index < rules.size(); ++index) {
            open_.insert(index);
            byOutputs_[rules[index].rule.outputs].push_back(index);
            for (const std::string& output : rules[index].rule.outputs) {
                byOutput_[output].push_back(index);
            }
        }
    }

    std::optional<NumberedRule> takeWithOutputs(const Names& outputs) {
        return takeFirst(byOutputs_[outputs]);
    }

    std::optional<NumberedRule> takeWithOneOf(const Names& outputs) {
        for (const std::string& output : outputs) {
            if (auto taken = takeFirst(byOutput_[output])) {
                return taken;
            }
        }
        return std::nullopt;
    }

    std::vector<NumberedRule> rest() const {
        std::vector<NumberedRule> rules;
        for (const std::size_t index : open_) {
            rules.push_back(rules_[index]);
        }
        return rules;
    }

  private:
    std::optional<NumberedRule> takeFirst(const std::vector<std::size_t>& indices) {
        for (const std::size_t index : indices) {
            if (open_.erase(index) != 0) {
                return rules_[index];
            }
        }
        return std::nullopt;
    }

    const std::vector<NumberedRule>& rules_;
    std::set<std::size_t> open_;
    std::map<Names, std::vector<std::size_t>> byOutputs_;
    std::map<std::string, std::vector<std::size_t>> byOutput_;
};

std::string changeOf(const RuleDifference& difference) {
    if (!difference.second) {
        return "removed";
    }
    return difference.first ? "changed" : "added";
}

const NumberedRule& anyOf(const RuleDifference& difference) {
    return difference.first ? *difference.first : *difference.second;
}

std::string descriptionOf(const RuleDifference& difference) {
    if (!difference.first || !difference.second) {
        return wordOf(anyOf(difference).rule.kind) + " " + sentenceOf(anyOf(difference).rule);
    }
    Names parts;
    for (const auto& [aspect, change] :
         aspectsOf(difference.first->rule, difference.second->rule)) {
        parts.push_back(aspect + " " + change);
    }
    return boost::algorithm::join(parts, "; ");
}

Json ruleDocument(const std::optional<NumberedRule>& rule) {
    if (!rule) {
        return nullptr;
    }
    return rowObjects({ruleColumns(), {ruleCells(*rule)}}).at(0);
}

Json documentOf(const RuleDifference& difference) {
    Json changed = Json::array();
    if (difference.first && difference.second) {
        for (const auto& [aspect, change] :
             aspectsOf(difference.first->rule, difference.second->rule)) {
            changed.push_back(aspect);
        }
    }
    return {{"change", changeOf(difference)},
            {"differs", std::move(changed)},
            {"first", ruleDocument(difference.first)},
            {"second", ruleDocument(difference.second)}};
}

std::string summaryOf(const std::vector<RuleDifference>& differences, const std::string& firstName,
                      const std::string& secondName) {
    Names counts;
    for (const char* const change : {"removed", "added", "changed"}) {
        const auto count =
            std::count_if(differences.begin(), differences.end(),
                          [change](const RuleDifference& row) { return changeOf(row) == change; });
        counts.push_back(std::to_string(count) + " " + change);
    }
    return "From " + firstName + " to " + secondName + ": " + listed(counts);
}

}  // namespace

std::vector<NumberedRule> numberedRules(const std::string& family, const std::string& selector) {
    std::vector<NumberedRule> numbered;
    for (const ruleDescription& rule : rulesOfFamily(family, selector)) {
        numbered.push_back({numbered.size(), rule});
    }
    return numbered;
}

std::string wordOf(ruleKind kind) {
    return wordsOfKinds.at(static_cast<std::size_t>(kind));
}

std::vector<std::string> kindWords() {
    return {wordsOfKinds.begin(), wordsOfKinds.end()};
}

std::string sentenceOf(const ruleDescription& rule) {
    return joined(rule.outputs) + (rule.kind == ruleKind::constant
                                       ? " = " + std::to_string(rule.value)
                                       : " <- " + joined(rule.inputs));
}

std::vector<std::string> ruleColumns() {
    return {"number", "set", "kind", "outputs", "inputs", "value"};
}

std::vector<Cell> ruleCells(const NumberedRule& rule) {
    const ruleDescription& description = rule.rule;
    const Cell value =
        description.kind == ruleKind::constant ? Cell(description.value) : Cell("", nullptr);
    return {Cell(rule.number),
            Cell(description.set),
            Cell(wordOf(description.kind)),
            Cell(joined(description.outputs), description.outputs),
            Cell(joined(description.inputs), description.inputs),
            value};
}

std::vector<RuleDifference> ruleDifferences(const std::vector<NumberedRule>& first,
                                            const std::vector<NumberedRule>& second) {
    open_rules open(second);
    std::vector<RuleDifference> pairs;
    pairs.reserve(first.size());
    for (const NumberedRule& rule : first) {
        pairs.push_back({rule, open.takeWithOutputs(rule.rule.outputs)});
    }
    std::vector<RuleDifference> differences;
    for (RuleDifference& pair : pairs) {
        if (!pair.second) {
            pair.second = open.takeWithOneOf(pair.first->rule.outputs);
        }
        if (!pair.second || !isEqual(pair.first->rule, pair.second->rule)) {
            differences.push_back(std::move(pair));
        }
    }
    for (NumberedRule& rule : open.rest()) {
        differences.push_back({std::nullopt, std::move(rule)});
    }
    return differences;
}

Answer answerOf(const std::vector<RuleDifference>& differences, const std::string& firstName,
                const std::string& secondName) {
    Answer answer;
    answer.table.columns = {"change", "set", "outputs", "difference"};
    answer.document = Json::array();
    Table forPeople;
    forPeople.columns = {"change", "set", "difference"};
    for (const RuleDifference& difference : differences) {
        const ruleDescription& rule = anyOf(difference).rule;
        const std::string change = changeOf(difference);
        const std::string description = descriptionOf(difference);
        answer.table.rows.push_back(
            {Cell(change), Cell(rule.set), Cell(joined(rule.outputs)), Cell(description)});
        answer.document->push_back(documentOf(difference));
        const std::string subject = change == "changed" ? joined(rule.outputs) + ": " : "";
        forPeople.rows.push_back({Cell(change), Cell(rule.set), Cell(subject + description)});
    }
    answer.text = differences.empty() ? "" : alignedText(forPeople);
    answer.remarks = {summaryOf(differences, firstName, secondName)};
    return answer;
}

}  // namespace sable_lanecfg::tool
