#include "families.h"

#include <boost/algorithm/string.hpp>

#include <algorithm>

namespace sable_lanecfg::tool {
namespace {

const std::vector<std::string> bothPllRanges = {"FLCPLLRANGE_MIN", "FLCPLLRANGE_MAX",
                                                "FRPLLRANGE_MIN", "FRPLLRANGE_MAX"};
const std::vector<std::string> singlePllRange = {"FLCPLLRANGE_MIN", "FLCPLLRANGE_MAX",
                                                 "FSXDLCRANGE_MIN"};

}  // namespace

const std::vector<RuleSet>& ruleSets() {
    static const std::vector<RuleSet> sets = {
        {"SXA", "live", "SXA", bothPllRanges},
        {"SXB", "live", "SXB", bothPllRanges},
        // The frozen rules compose other fields, so they have a database of their own.
        {"SXB", "stable", "SXB-stable", bothPllRanges},
        {"SXC", "live", "SXC", bothPllRanges},
        {"SXD4", "live", "SXD4", singlePllRange, false},
        {"SXD4", "stable", "SXD4", singlePllRange, false},
    };
    return sets;
}

std::string nameOf(const RuleSet& rules) {
    return rules.selector == "live" ? rules.family : rules.family + ":" + rules.selector;
}

const RuleSet* findRuleSetNamed(const std::string& name) {
    const auto found =
        std::find_if(ruleSets().begin(), ruleSets().end(), [&name](const RuleSet& rules) {
            return name == nameOf(rules) || name == rules.family + ":" + rules.selector;
        });
    return found == ruleSets().end() ? nullptr : &*found;
}

std::vector<std::string> ruleSetNames() {
    std::vector<std::string> names;
    for (const RuleSet& rules : ruleSets()) {
        names.push_back(nameOf(rules));
    }
    return names;
}

std::string ruleSetNameFault(const std::string& name) {
    return findRuleSetNamed(name) != nullptr
               ? std::string()
               : "\"" + name + "\" names no rules; there are " + listed(ruleSetNames());
}

std::vector<std::string> familyWords() {
    std::vector<std::string> words;
    for (const RuleSet& rules : ruleSets()) {
        if (std::find(words.begin(), words.end(), rules.family) == words.end()) {
            words.push_back(rules.family);
        }
    }
    return words;
}

std::vector<std::string> selectorWords() {
    return {"live", "stable"};
}

const RuleSet* findRuleSet(const std::string& family, const std::string& selector) {
    const auto found = std::find_if(
        ruleSets().begin(), ruleSets().end(), [&family, &selector](const RuleSet& rules) {
            return rules.family == family && boost::algorithm::iequals(rules.selector, selector);
        });
    return found == ruleSets().end() ? nullptr : &*found;
}

std::vector<const RuleSet*> ruleSetsOfFolder(const std::string& folderName) {
    std::vector<const RuleSet*> found;
    for (const RuleSet& rules : ruleSets()) {
        if (rules.folder == folderName) {
            found.push_back(&rules);
        }
    }
    return found;
}

std::string listed(const std::vector<std::string>& words) {
    return boost::algorithm::join(words, ", ");
}

}  // namespace sable_lanecfg::tool
