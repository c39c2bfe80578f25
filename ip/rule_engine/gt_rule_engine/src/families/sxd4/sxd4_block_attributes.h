#pragma once

#include <lanecfg/gt_rule_engine.h>

#include <map>
#include <string>

namespace sable_lanecfg {

/// The attribute map of an SXD4 block, in which the words of the error correction hold the modes of
/// both channels instead of one channel's for both. Enters the modes and words as variables.
std::map<std::string, std::string> blockAttributes(gt_rule_engine& engine);

}  // namespace sable_lanecfg
