#pragma once

#include <lanecfg/export.h>

#include <string>
#include <vector>

namespace sable_lanecfg {

/// What a rule does.
enum class ruleKind {
    constant,  ///< gives a field or a word the same value in every pass
    copy,      ///< gives a field 1 or 0, as a flag is set or not
    logic,     ///< computes its outputs
    compose    ///< composes a register's word from its fields
};

/// One rule as a family registers it.
struct ruleDescription {
    std::string set;  ///< the part of the family's rules that it belongs to, for example "PLL"
    ruleKind kind = ruleKind::constant;
    std::vector<std::string> inputs;   ///< declared ones, in their order
    std::vector<std::string> outputs;  ///< in their order
    unsigned int value = 0;            ///< of a constant
};

/// All rules of a family in the order of registration: the index of a rule is its number in the
/// variables of a snapshot (`varInfo::ruleNumber`).
///
/// `family` is the family word, for example "SXB", `selector` "live" or "stable". Without such
/// rules in the library the list is empty.
LANECFG_EXPORT std::vector<ruleDescription> rulesOfFamily(const std::string& family,
                                                          const std::string& selector);

}  // namespace sable_lanecfg
