#pragma once

#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// One rule set that a request can ask for.
struct RuleSet {
    std::string family;    ///< family word, for example "SXB"
    std::string selector;  ///< "live" or "stable"
    std::string folder;    ///< name of its folder in a collection of databases
    /// Entries of the device data that its rules or its packing read.
    std::vector<std::string> limits;
    /// Whether there is a choice of PLLs and quads, which packing is about.
    bool isPacked = true;
};

/// All rule sets, by family and selector.
const std::vector<RuleSet>& ruleSets();

/// Name of a rule set: its family, and behind a colon its selector where that is not "live".
std::string nameOf(const RuleSet& rules);

/// The rule set of this name, null when there is none; "SXB:live" is taken for "SXB".
const RuleSet* findRuleSetNamed(const std::string& name);

/// The names of all rule sets, in their order.
std::vector<std::string> ruleSetNames();

/// Check of an option whose value names a rule set: text about the fault, empty when there is none.
std::string ruleSetNameFault(const std::string& name);

/// Family words and selector words, each once.
std::vector<std::string> familyWords();
std::vector<std::string> selectorWords();

/// The rule set of a family and selector, null when there is none. The selector is taken in any
/// case of letters.
const RuleSet* findRuleSet(const std::string& family, const std::string& selector);

/// The rule sets whose database folder has this name.
std::vector<const RuleSet*> ruleSetsOfFolder(const std::string& folderName);

/// Words as "A, B, C".
std::string listed(const std::vector<std::string>& words);

}  // namespace sable_lanecfg::tool
