#include "finding.h"

#include <utility>

namespace sable_lanecfg::tool {

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
