#pragma once

#include "families/common/catalogue_rules.h"

namespace sable_lanecfg {

// The transmit rules by what they are about; each group has a source file of its own.

void addTxCodingRules(logicRules& rules);
void addTxDriverRules(logicRules& rules);
void addTxOutclockRules(logicRules& rules);
void addTxPhaseAlignmentRules(logicRules& rules);

}  // namespace sable_lanecfg
