#pragma once

#include <lanecfg/gt_rule_engine.h>

#include <map>
#include <string>

namespace sable_lanecfg {

/// Enters into the user parameters where each channel lies among the channels of its link, which
/// may span quads: positions for resets ("bottom", "middle", "top"; "single" for a link of one),
/// for the phase alignment ("below", "IM" for the master, "above", "single"), and the mark of the
/// lane that maintains the master's clock. Without quads nothing is entered.
void enterChannelPositions(gt_rule_engine& engine,
                           const std::map<std::string, quadsUsageInfo*>& quads);

}  // namespace sable_lanecfg
