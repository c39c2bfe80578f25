#pragma once

#include "families/common/register_catalogue.h"

#include <lanecfg/family_rules.h>

#include <cstddef>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// The rules of a catalogue in the order of registration, with every name once: what is the same
/// for all engines, made once, so that an engine looks each name up once and builds none.
class catalogue_plan {
  public:
    /// Places in lists of the plan.
    using number = std::size_t;

    /// What a rule without a single output of its own has in its place.
    static constexpr number none = static_cast<number>(-1);

    struct plannedRule {
        ruleKind kind;
        number output;  ///< place in `names`; of a logic rule its own field, or `none`
        /// The flag of a copy in `names`, the rule beside the catalogue in `logicRuleNames`, the
        /// register of a word in `words`.
        number source = none;
        unsigned int value = 0;  ///< of a constant
    };

    /// The fields of a register as places in `names`.
    struct plannedWord {
        std::vector<number> declared;    ///< in the order in which its rule declares them
        std::vector<number> inKeyOrder;  ///< in the order in which the database has them
    };

    /// Throws std::logic_error, naming it, on a field that is listed as another rule's and has a
    /// rule of its own.
    explicit catalogue_plan(const register_catalogue& catalogue);

    /// Names of all fields, flags and words.
    const std::vector<std::string>& names() const { return names_; }
    /// Places in `names`, in ascending order of name.
    const std::vector<number>& inKeyOrder() const { return inKeyOrder_; }
    const std::vector<plannedRule>& rules() const { return rules_; }
    const std::vector<plannedWord>& words() const { return words_; }
    /// What the rules beside the catalogue stand beside: fields and steps, in order of
    /// registration.
    const std::vector<std::string>& logicRuleNames() const { return logicRuleNames_; }
    /// Places in `logicRuleNames`, in ascending order of name.
    const std::vector<number>& logicRulesInKeyOrder() const { return logicRulesInKeyOrder_; }
    /// Places in `names` of the fields that another rule writes.
    const std::vector<number>& sharedFields() const { return sharedFields_; }

  private:
    class builder;

    void demandThatSharedFieldsHaveNoOwnRule() const;

    std::vector<std::string> names_;
    std::vector<number> inKeyOrder_;
    std::vector<plannedRule> rules_;
    std::vector<plannedWord> words_;
    std::vector<std::string> logicRuleNames_;
    std::vector<number> logicRulesInKeyOrder_;
    std::vector<number> sharedFields_;
};

}  // namespace sable_lanecfg
