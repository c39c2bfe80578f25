#pragma once

#include "families/common/catalogue_rules.h"
#include "families/common/lane_side.h"

#include <string>

namespace sable_lanecfg {

/// Adds the alignment of the user clocks of many lanes as both directions have it.
/// `multiLaneCount` is the field, with its register, of the phase count of a lane among many.
void addLaneAlignmentRules(logicRules& rules, const laneSide& side,
                           const std::string& multiLaneCount);

/// The initial phase count of the alignment: the number of the last of its 30 steps that
/// `position` has reached.
unsigned int initialPhaseCount(unsigned int position);

/// Field that is 0 for one word of a text variable, else 1.
ruleDeclarer zeroForWord(const std::string& textName, const std::string& word);

}  // namespace sable_lanecfg
