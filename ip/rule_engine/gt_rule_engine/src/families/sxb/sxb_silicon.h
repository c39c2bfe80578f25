#pragma once

#include "families/common/rule_declaration.h"

#include <string>

namespace sable_lanecfg {

/// Whether `siliconRev` names the first silicon.
bool isEarlySilicon(const std::string& revision);

/// Field with one value on the first silicon and another on any later.
ruleDeclarer bySilicon(unsigned int earlySilicon, unsigned int laterSilicon);

}  // namespace sable_lanecfg
