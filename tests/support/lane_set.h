#pragma once

#include "support/family_rule.h"

#include <random>
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

/// Everything that the three sets together read; both directions run from an LCPLL of 10.3125 GHz,
/// beside an RPLL of 3.90625 GHz.
/// What one set leaves to another is overwritten in a pass.
VariableValues quadInputs();

/// Some of those inputs at random: codings, widths, rates, PLLs, buffers, use, lane and silicon.
VariableValues randomLane(std::mt19937& random);

/// Names of variables that are in one of the two only, or have another value in each.
std::vector<std::string> differences(const VariableValues& left, const VariableValues& right);

/// Names of variables with a rule that have no value.
std::vector<std::string> blankResults(const LaneEngine& engine);

}  // namespace lanecfg_test
