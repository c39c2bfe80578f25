#pragma once

#include "database/device_limit.h"
#include "families/common/catalogue_rules.h"
#include "families/common/lane_side.h"
#include "families/common/register_catalogue.h"

namespace sable_lanecfg {

// The rules of each topic, added to those at hand. Rules that know the settings read them in their
// passes, so the settings have to outlive the rules.

// Of the PLL set.
void addSxd4SymbolRateRules(logicRules& rules);
void addSxd4VcoRules(logicRules& rules, const deviceSettings& settings);
void addSxd4FeedbackDividerRules(logicRules& rules);
void addSxd4ErrorCorrectionRules(logicRules& rules);
void addSxd4OutclockRules(logicRules& rules);
void addSxd4ResetMaskRules(logicRules& rules);

// Of the receive and the transmit set.
/// Widths, Gray code and precoder of one direction.
void addSxd4LineCodingRules(logicRules& rules, const laneSide& side);
void addSxd4EqualisationRules(logicRules& rules);

/// The rules of all fields of the catalogue whose own rule is not known, see
/// `undeliveredFields`.
void addUndeliveredFieldRules(logicRules& rules, const register_catalogue& catalogue);

}  // namespace sable_lanecfg
