#pragma once

#include "console.h"
#include "database.h"
#include "families.h"
#include "finding.h"
#include "register_checks.h"

#include <cstddef>
#include <vector>

namespace sable_lanecfg::tool {

/// What was found in one database.
struct DatabaseReport {
    Database database;
    const RuleSet* rules = nullptr;  ///< null when the family is unknown
    RegisterCounts registers;
    std::size_t parameters = 0;
    std::size_t ruleOutputs = 0;  ///< register words and fields that rules write
    std::vector<Finding> findings;

    std::size_t count(FindingLevel level) const;
};

/// Verifies a database file by file, and against the rules when these are known.
DatabaseReport checkDatabase(const Database& database, const RuleSet* rules, Console& console);

}  // namespace sable_lanecfg::tool
