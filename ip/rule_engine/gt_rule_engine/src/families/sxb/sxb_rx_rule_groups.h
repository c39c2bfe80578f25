#pragma once

#include "families/common/catalogue_rules.h"

#include <functional>
#include <string>

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

/// Use of the 128B/130B elastic buffer of one internal width; it only corrects clocks.
ruleDeclarer enableFor128b130b(unsigned int internalWidth);

/// What is added to the elastic buffer's minimum latency to make the maximum.
struct latencyReserve {
    std::function<unsigned int()> corrections;  ///< number of sequences; with any, their length
    std::function<unsigned int()> width;  ///< of a word, in the unit that the family counts in
};

/// Maximum latency of the elastic buffer; `readReserve` declares its inputs.
ruleDeclarer maximumBufferLatency(std::function<latencyReserve(rule_declaration&)> readReserve);
/// The fields that follow the equaliser's mode, which a text variable holds.
logicRules equaliserFieldRules(const std::string& modeName);

}  // namespace sable_lanecfg
