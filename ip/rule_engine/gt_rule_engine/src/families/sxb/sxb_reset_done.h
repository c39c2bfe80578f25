#pragma once

#include "families/common/catalogue_rules.h"
#include "families/common/lane_side.h"

namespace sable_lanecfg {

/// Adds how the four lanes of a direction hand on that their reset is done.
void addResetDoneRules(logicRules& rules, const laneSide& side);

}  // namespace sable_lanecfg
