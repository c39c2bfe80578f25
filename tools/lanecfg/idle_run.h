#pragma once

#include "database.h"
#include "families.h"

#include <lanecfg/gt_db_load.h>
#include <lanecfg/gt_rule_engine.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace sable_lanecfg::tool {

/// An instance for a quad of which no lane is used: every parameter has its default and each
/// channel has one pass.
struct IdleInstance {
    std::shared_ptr<gt_rule_engine> engine;  ///< null when the build lacks the rule set
    std::function<textMap()> attributes;
};

/// Reads a database as the library does, with a request that uses no lane.
gt_db_load loadIdle(const Database& database);

/// Builds the instance of a rule set on a loaded database, with `registers` in place of its own.
/// Exceptions of rules leave as they were thrown.
IdleInstance buildIdle(const RuleSet& rules, const gt_db_load& loaded,
                       const std::map<std::string, attributeInfo>& registers);

/// Whether the build has the rule set; found by running it on the database.
bool isRuleSetBuilt(const RuleSet& rules, const Database& database);

}  // namespace sable_lanecfg::tool
