#include "finding.h"

#include <cstddef>
#include <map>
#include <set>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

constexpr std::size_t mostAlikeApart = 5;
constexpr std::size_t namedOfMany = 3;

/// File and text of a note.
using Cause = std::pair<std::string, std::string>;

std::map<Cause, std::vector<std::string>> keysOfNotes(const std::vector<Finding>& findings) {
    std::map<Cause, std::vector<std::string>> keys;
    for (const Finding& finding : findings) {
        if (finding.level == FindingLevel::note) {
            keys[{finding.file, finding.text}].push_back(finding.key);
        }
    }
    return keys;
}

Finding joinedNote(const Cause& cause, const std::vector<std::string>& keys) {
    std::string names = keys.front();
    for (std::size_t i = 1; i < namedOfMany; ++i) {
        names += ", " + keys[i];
    }
    names += " and " + std::to_string(keys.size() - namedOfMany) + " more";
    return {FindingLevel::note, cause.first, names,
            cause.second + " (" + std::to_string(keys.size()) + " in all)"};
}

}  // namespace

const char* wordOf(FindingLevel level) {
    switch (level) {
        case FindingLevel::error:
            return "error";
        case FindingLevel::warning:
            return "warning";
        case FindingLevel::note:
            break;
    }
    return "note";
}

std::vector<Finding> withAlikeNotesJoined(const std::vector<Finding>& findings) {
    const std::map<Cause, std::vector<std::string>> keys = keysOfNotes(findings);
    std::vector<Finding> result;
    std::set<Cause> joined;
    for (const Finding& finding : findings) {
        const Cause cause(finding.file, finding.text);
        if (finding.level != FindingLevel::note || keys.at(cause).size() <= mostAlikeApart) {
            result.push_back(finding);
        } else if (joined.insert(cause).second) {
            result.push_back(joinedNote(cause, keys.at(cause)));
        }
    }
    return result;
}

FindingList::FindingList(std::string file, std::vector<Finding>& findings)
    : file_(std::move(file)), findings_(findings) {}

void FindingList::error(const std::string& key, const std::string& text) {
    add(FindingLevel::error, key, text);
}

void FindingList::warning(const std::string& key, const std::string& text) {
    add(FindingLevel::warning, key, text);
}

void FindingList::note(const std::string& key, const std::string& text) {
    add(FindingLevel::note, key, text);
}

void FindingList::add(FindingLevel level, const std::string& key, const std::string& text) {
    findings_.push_back({level, file_, key, text});
}

}  // namespace sable_lanecfg::tool
