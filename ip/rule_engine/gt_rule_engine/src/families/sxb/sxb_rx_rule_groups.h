#pragma once

#include "families/common/catalogue_rules.h"

namespace sable_lanecfg {

// The receive rules by what they are about; each group has a source file of its own.

void addRxCodingRules(logicRules& rules);
void addRxCommaRules(logicRules& rules);
void addRxOutclockRules(logicRules& rules);
void addRxEqualiserRules(logicRules& rules);
void addRxRecoveryRules(logicRules& rules);
void addRxElasticBufferRules(logicRules& rules);
void addRxLatencyRules(logicRules& rules);
void addRxSequenceRules(logicRules& rules);
void addRxPhaseAlignmentRules(logicRules& rules);

}  // namespace sable_lanecfg
