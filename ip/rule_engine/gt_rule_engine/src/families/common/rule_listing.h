#pragma once

#include "families/common/catalogue_rules.h"
#include "families/common/register_catalogue.h"

#include <lanecfg/family_rules.h>

#include <string>
#include <vector>

namespace sable_lanecfg {

/// The rules that `registerCatalogue` would register, in its order, as rules of the set. Nothing
/// is registered: rules beside the catalogue are only asked for their names. Throws
/// std::logic_error, naming it, when one is missing.
std::vector<ruleDescription> describeCatalogue(const std::string& set,
                                               const register_catalogue& catalogue,
                                               const logicRules& rules);

}  // namespace sable_lanecfg
