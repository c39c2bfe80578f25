#pragma once

#include "families/common/rule_declaration.h"

#include <string>
#include <vector>

namespace sable_lanecfg {

/// What the internal data width decides in the clock data recovery.
struct recoveryWidths {
    unsigned int analogueWidth = 0;  ///< of adaptation, recovery and deserialiser
    unsigned int overridesAnalogue = 0;
    unsigned int dataWidth = 0;
    unsigned int selectMode = 0;
};

/// A PCIe rate and internal width with settings of their own.
struct pcieRecoveryCase {
    double lineRate;  ///< Gb/s
    unsigned int internalWidth;
    recoveryWidths widths;
};

/// The case of a rate and width, null where there is none.
const pcieRecoveryCase* recoveryCaseOf(const std::vector<pcieRecoveryCase>& cases, double lineRate,
                                       unsigned int internalWidth);

/// On which silicon the PCIe cases override what the width gives.
enum class pcieRecoverySilicon {
    all,
    later  ///< not the first one; the rule reads the revision
};

/// The recovery rule: 17 fields, and the PCIe cases that override what the width gives.
ruleDeclarer clockDataRecovery(const std::vector<pcieRecoveryCase>& cases,
                               pcieRecoverySilicon silicon);

/// Codes of the loop filter's settings, 0 for a setting without one.
unsigned int proportionalDividerCode(unsigned int divider);
unsigned int frequencyDividerCode(unsigned int divider);
unsigned int loopFactorCode(double factor);

}  // namespace sable_lanecfg
