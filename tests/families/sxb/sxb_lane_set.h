#pragma once

#include "sxb_rule_alone.h"

#include <string>
#include <vector>

namespace lanecfg_test {

/// What one stretch of a rule set ends with, and how many rules it has, that one included.
struct RuleStretch {
    std::string last;
    int rules;
};

/// Checks that the stretches follow each other without a gap and end the set: each `last` has the
/// number that the stretches up to it lead to.
void expectStretches(const LaneEngine& engine, const std::vector<RuleStretch>& stretches);

/// Everything that the two sets of a lane read and do not write, for 10.3125 Gb/s in raw words of
/// 32 bits.
VariableValues laneInputs();

/// Names of variables with a rule that have no value.
std::vector<std::string> blankResults(const LaneEngine& engine);

}  // namespace lanecfg_test
