#pragma once

#include <lanecfg/gt_rule_engine.h>

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Word with the reference clock of a PLL of a dual.
struct referenceWord {
    const char* name;
    const char* fieldPrefix;  ///< begin of its fields' names behind the register's
    std::size_t dual;
    const char* pll;
};

/// Field of a channel that its own lane decides.
struct laneField {
    const char* registerName;
    const char* ending;  ///< behind "CH0"
};

/// Where the words of a quad are, which depends on the rule set.
struct quadWordLayout {
    /// Whether a PLL is configured as its dual's second lane has it when only that one uses it; as
    /// the first lane has it otherwise.
    bool asksWhoUsesPlls = true;
    std::vector<referenceWord> referenceWords;
    std::vector<laneField> laneFields;
    bool listsStaticRegisters = true;
};

/// That of the current rules.
quadWordLayout currentQuadWords();

/// Register words of a quad by prefixed name: the engine's attribute map, and above it what is not
/// any one lane's. A PLL of a dual is configured as its first lane has it, unless only the second
/// lane uses it; reset enables come from the lane that each is for. Beside the words there are the
/// fields of the reference clock words of both duals, the registers that no rate changes
/// ("STAT_NPI_REG_LIST"), and at the end the registers as the rules left them, under their bare
/// names. Only the passes of rate 0 in both directions count.
///
/// Makes the rate table, with all that this does to the log and the snapshots, and leaves the
/// chosen values in the engine's variables.
std::map<std::string, std::string> quadAttributes(
    gt_rule_engine& engine, const quadWordLayout& layout = currentQuadWords());

}  // namespace sable_lanecfg
