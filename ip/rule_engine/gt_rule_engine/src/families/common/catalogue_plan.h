#pragma once

#include "families/common/register_catalogue.h"

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

    enum class ruleKind {
        constant,  ///< writes `value`
        copy,      ///< writes 1 or 0, as the flag `source` is set or not
        logic,     ///< the rule beside the catalogue; `source` is its place in `logicRuleNames`
        compose    ///< writes the word of a register; `source` is its place in `words`
    };

    /// What a rule without a single output of its own has in its place.
    static constexpr number none = static_cast<number>(-1);

    struct plannedRule {
        ruleKind kind;
        number output;  ///< place in `names`; of a logic rule its own field, or `none`
        number source = none;
        unsigned int value = 0;
    };

    /// The fields of a register as places in `names`.
    struct plannedWord {
        std::vector<number> declared;    ///< in the order in which its rule declares them
        std::vector<number> inKeyOrder;  ///< in the order in which the database has them
    };

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

    std::vector<std::string> names_;
    std::vector<number> inKeyOrder_;
    std::vector<plannedRule> rules_;
    std::vector<plannedWord> words_;
    std::vector<std::string> logicRuleNames_;
    std::vector<number> logicRulesInKeyOrder_;
    std::vector<number> sharedFields_;
};

}  // namespace sable_lanecfg
