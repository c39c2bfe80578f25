#pragma once

#include "console.h"
#include "request.h"

#include <lanecfg/gt_rule_engine.h>

namespace sable_lanecfg::tool {

/// Warns of what makes registers that the rules have computed useless: that the channels of the
/// request don't fit into its quad, with the first reason, reference clocks other than those of the
/// request, and words that a lane answers which has no use for them.
void tellOfRun(const Request& request, const gt_rule_engine& engine, Console& console);

}  // namespace sable_lanecfg::tool
