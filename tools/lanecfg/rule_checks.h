#pragma once

#include "database.h"
#include "families.h"
#include "finding.h"

#include <cstddef>
#include <vector>

namespace sable_lanecfg::tool {

/// Compares a database with what the rules of a rule set write in a quad of which no lane is used:
/// every register and field that a rule writes is placed, a composed register has no other
/// fields, field values are unsigned and fit their field, unless no bit of the register is left to
/// widen it. If the database has no error so far, the rules then run on it for their attributes.
/// Gives the number of register words and fields that rules write.
std::size_t checkRules(const Database& database, const RuleSet& rules,
                       std::vector<Finding>& findings);

}  // namespace sable_lanecfg::tool
