#pragma once

#include "database/device_limit.h"
#include "families/common/catalogue_rules.h"
#include "families/common/lane_side.h"

#include <string_view>

namespace sable_lanecfg {

constexpr unsigned int channelsOfQuad = 4;

// The rules of each topic, added to those at hand.
void addPllInputRules(logicRules& rules);
void addOutputDividerRules(logicRules& rules);
/// The solver reads the settings in its passes, so they have to outlive the rules.
void addLcpllSolverRules(logicRules& rules, const deviceSettings& settings);
void addRpllSolverRules(logicRules& rules);
void addDividerSearchRules(logicRules& rules);
void addDividerCodeRules(logicRules& rules);
void addDelayAlignerRules(logicRules& rules);
void addLcpllFilterRules(logicRules& rules);
void addRpllFilterRules(logicRules& rules);
void addHighSpeedSlotRules(logicRules& rules);
void addReferenceClockRules(logicRules& rules);
void addClockDistributionRules(logicRules& rules);
void addPhaseAlignmentRules(logicRules& rules);
void addPipePositionRules(logicRules& rules);
void addPcieRules(logicRules& rules);
void addOutOfBandRules(logicRules& rules);
void addBufferRules(logicRules& rules);
void addPinRules(logicRules& rules);
void addResetEnableRules(logicRules& rules);

/// Selector code of a PLL's reference clock, by the clock's source.
ruleDeclarer referenceClockSelect(const std::string& pll);
/// Divider of the fabric clock buffer in the first PCIe generation, 0 without PCIe.
ruleDeclarer firstGenerationBufferDivider();
/// Low power equaliser of a receiver whose mode, a text variable, is not "DFE".
ruleDeclarer lowPowerEqualiser(const std::string& modeName);
/// Bypass of the delay aligner by the direction's own parameters alone.
ruleDeclarer delayAlignerBypass(const laneSide& side);
/// Reset of a PLL by a lane of which that direction runs from it.
ruleDeclarer pllReset(unsigned int lane, const laneSide& side, std::string_view pll);

}  // namespace sable_lanecfg
