#pragma once

#include "families/common/catalogue_rules.h"

#include <functional>

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

/// What the elastic buffer's maximum latency is above the minimum.
struct latencyReserve {
    std::function<unsigned int()> corrections;  ///< number of sequences
    std::function<unsigned int()> width;
};

/// Maximum latency of the elastic buffer; `readReserve` declares its inputs.
ruleDeclarer maximumBufferLatency(std::function<latencyReserve(rule_declaration&)> readReserve);

}  // namespace sable_lanecfg
