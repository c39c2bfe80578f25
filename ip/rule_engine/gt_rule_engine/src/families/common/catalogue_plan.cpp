#include "families/common/catalogue_plan.h"

#include "families/common/catalogue_visit.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <unordered_map>

namespace sable_lanecfg {

namespace {

using number = catalogue_plan::number;

void sortByName(std::vector<number>& places, const std::vector<std::string>& names) {
    std::sort(places.begin(), places.end(),
              [&names](number first, number second) { return names[first] < names[second]; });
}

std::vector<number> placesInKeyOrder(const std::vector<std::string>& names) {
    std::vector<number> places(names.size());
    std::iota(places.begin(), places.end(), number{0});
    sortByName(places, names);
    return places;
}

}  // namespace

/// Plans the rules that it visits.
class catalogue_plan::builder {
  public:
    explicit builder(catalogue_plan& plan) : plan_(plan) {}

    void constant(const std::string& name, unsigned int value) {
        plan_.rules_.push_back({ruleKind::constant, placeOf(name), none, value});
    }

    void copy(const std::string& field, const std::string& flag) {
        const number source = placeOf(flag);
        plan_.rules_.push_back({ruleKind::copy, placeOf(field), source});
    }

    void logic(const std::string& name, const std::string& ownField) {
        plan_.logicRuleNames_.push_back(name);
        plan_.rules_.push_back({ruleKind::logic, ownField.empty() ? none : placeOf(ownField),
                                plan_.logicRuleNames_.size() - 1});
    }

    void shared(const std::string& field) { plan_.sharedFields_.push_back(placeOf(field)); }

    void word(const std::string& registerName, const std::vector<registerField>& fields) {
        plannedWord planned;
        planned.declared.reserve(fields.size());
        for (const registerField& field : fields) {
            planned.declared.push_back(placeOf(fieldName(registerName, field.name)));
        }
        planned.inKeyOrder = planned.declared;
        sortByName(planned.inKeyOrder, plan_.names_);
        plan_.words_.push_back(std::move(planned));
        plan_.rules_.push_back({ruleKind::compose, placeOf(registerName), plan_.words_.size() - 1});
    }

    void wordOfParts(const std::string& registerName, const std::vector<registerField>& fields) {
        word(registerName, fields);
    }

  private:
    number placeOf(const std::string& name) {
        const auto [known, isNew] = places_.emplace(name, plan_.names_.size());
        if (isNew) {
            plan_.names_.push_back(name);
        }
        return known->second;
    }

    catalogue_plan& plan_;
    std::unordered_map<std::string, number> places_;
};

catalogue_plan::catalogue_plan(const register_catalogue& catalogue) {
    builder visitor(*this);
    visitRules(catalogue, visitor);
    demandThatSharedFieldsHaveNoOwnRule();
    inKeyOrder_ = placesInKeyOrder(names_);
    logicRulesInKeyOrder_ = placesInKeyOrder(logicRuleNames_);
}

void catalogue_plan::demandThatSharedFieldsHaveNoOwnRule() const {
    std::vector<bool> hasOwnRule(names_.size(), false);
    for (const plannedRule& rule : rules_) {
        if (rule.output != none) {
            hasOwnRule[rule.output] = true;
        }
    }
    for (const number field : sharedFields_) {
        if (hasOwnRule[field]) {
            throw std::logic_error("register catalogue: " + names_[field] +
                                   " is shared, so another rule writes it, but is listed with a "
                                   "rule of its own too");
        }
    }
}

}  // namespace sable_lanecfg
