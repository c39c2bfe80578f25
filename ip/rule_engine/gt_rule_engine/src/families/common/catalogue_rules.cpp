#include "families/common/catalogue_rules.h"

#include "block/register_composer.h"
#include "families/common/catalogue_visit.h"

#include <boost/optional.hpp>

#include <algorithm>
#include <cstddef>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {

namespace {

[[noreturn]] void refuse(const std::string& name, const std::string& problem) {
    throw std::logic_error("register catalogue: " + name + " " + problem);
}

[[noreturn]] void refuseEdit(const std::string& problem, const std::string& name) {
    throw std::invalid_argument("logic rules: " + problem + " " + name);
}

logicRules::iterator placeOf(logicRules& rules, const std::string& name) {
    const auto place = rules.find(name);
    if (place == rules.end()) {
        refuseEdit("no rule", name);
    }
    return place;
}

[[noreturn]] void refuseWithoutRule(const std::string& name) {
    refuse(name, "has no rule beside it");
}

/// The rules beside a catalogue, in the plan's order of their names.
class rules_beside {
  public:
    rules_beside(const catalogue_plan& plan, const logicRules& rules,
                 const logicRules& rulesOfEngine)
        : names_(plan.logicRuleNames()), found_(names_.size(), nullptr) {
        take(plan, rules);
        take(plan, rulesOfEngine);
        const auto missing = std::find(found_.begin(), found_.end(), nullptr);
        if (missing != found_.end()) {
            refuseWithoutRule(names_[static_cast<std::size_t>(missing - found_.begin())]);
        }
    }

    const ruleDeclarer& operator[](catalogue_plan::number place) const { return *found_[place]; }

  private:
    /// Both have their names in order, so one walk finds the place of every rule.
    void take(const catalogue_plan& plan, const logicRules& rules) {
        auto place = plan.logicRulesInKeyOrder().begin();
        const auto end = plan.logicRulesInKeyOrder().end();
        for (const auto& [name, rule] : rules) {
            while (place != end && names_[*place] < name) {
                ++place;
            }
            // A step may stand at several places.
            const auto first = place;
            for (; place != end && names_[*place] == name && found_[*place] == nullptr; ++place) {
                found_[*place] = &rule;
            }
            if (place == first) {
                refuse(name, "has a rule, but is no logic field and no step");
            }
        }
    }

    const std::vector<std::string>& names_;
    std::vector<const ruleDeclarer*> found_;
};

/// Registers the rules of a plan.
class catalogue_registration {
  public:
    catalogue_registration(gt_rule_engine& engine, const catalogue_plan& plan)
        : engine_(engine), plan_(plan) {
        variables_.reserve(plan.names().size());
        for (const std::string& name : plan.names()) {
            variables_.push_back(&engine.mention(name));
        }
        engine.makeVariables(variablesAt(plan.inKeyOrder()));
    }

    void enterAll(const rules_beside& rules) {
        const std::vector<boost::optional<int>> writersBefore = writersOfSharedFields();
        for (const catalogue_plan::plannedRule& rule : plan_.rules()) {
            switch (rule.kind) {
                case ruleKind::constant:
                    enterConstant(*variables_[rule.output], rule.value);
                    break;
                case ruleKind::copy:
                    enterCopy(*variables_[rule.output], *variables_[rule.source]);
                    break;
                case ruleKind::logic:
                    enterLogic(rule, rules[rule.source]);
                    break;
                case ruleKind::compose:
                    enterWord(*variables_[rule.output], plan_.words()[rule.source]);
                    break;
            }
        }
        checkThatSharedFieldsAreWritten(writersBefore);
    }

  private:
    std::vector<ruleVariable*> variablesAt(const std::vector<catalogue_plan::number>& places) {
        std::vector<ruleVariable*> all;
        all.reserve(places.size());
        for (const catalogue_plan::number place : places) {
            all.push_back(variables_[place]);
        }
        return all;
    }

    void enterConstant(ruleVariable& output, unsigned int value) {
        const rule_output<unsigned int> written(&output);
        engine_.registerRule({}, output, [written, value] { written.set(value); });
    }

    void enterCopy(ruleVariable& output, ruleVariable& source) {
        const rule_output<unsigned int> written(&output);
        const rule_input<bool> flag(&source);
        engine_.registerRule({&source}, output, [=] { written.set(flag() ? 1U : 0U); });
    }

    void enterLogic(const catalogue_plan::plannedRule& planned, const ruleDeclarer& declare) {
        const std::string& name = plan_.logicRuleNames()[planned.source];
        const bool hasOwnField = planned.output != catalogue_plan::none;
        rule_declaration rule(&engine_, hasOwnField ? name : std::string());
        declare(rule);
        rule.enter();
        const auto& outputs = rule.outputs();
        if (hasOwnField && std::find(outputs.begin(), outputs.end(), variables_[planned.output]) ==
                               outputs.end()) {
            refuse(name, "is not written by its own rule");
        }
    }

    void enterWord(ruleVariable& output, const catalogue_plan::plannedWord& word) {
        const rule_output<unsigned int> written(&output);
        engine_.registerRule(
            variablesAt(word.declared), output,
            [written, composer = register_composer(engine_, output.variableName(),
                                                   variablesAt(word.inKeyOrder))]() mutable {
                written.set(composer.word());
            });
    }

    std::vector<boost::optional<int>> writersOfSharedFields() const {
        std::vector<boost::optional<int>> writers;
        for (const catalogue_plan::number field : plan_.sharedFields()) {
            const variable* const held = variables_[field]->held;
            writers.push_back(held == nullptr ? boost::none : held->second.ruleNumber);
        }
        return writers;
    }

    void checkThatSharedFieldsAreWritten(const std::vector<boost::optional<int>>& writersBefore) {
        const std::vector<boost::optional<int>> writers = writersOfSharedFields();
        for (std::size_t i = 0; i < writers.size(); ++i) {
            if (writers[i] == writersBefore[i]) {
                refuse(plan_.names()[plan_.sharedFields()[i]], "is written by no rule");
            }
        }
    }

    gt_rule_engine& engine_;
    const catalogue_plan& plan_;
    std::vector<ruleVariable*> variables_;  ///< by the plan's places
};

/// Collects the names of the logic fields and steps that it visits.
class logic_names {
  public:
    void constant(const std::string& /*name*/, unsigned int /*value*/) {}
    void copy(const std::string& /*field*/, const std::string& /*flag*/) {}
    void shared(const std::string& /*field*/) {}
    void word(const std::string& /*name*/, const std::vector<registerField>& /*fields*/) {}
    void wordOfParts(const std::string& /*name*/, const std::vector<registerField>& /*fields*/) {}
    void logic(const std::string& rule, const std::string& /*ownField*/) { names.insert(rule); }

    std::set<std::string> names;
};

std::set<std::string> logicNames(const register_catalogue& catalogue) {
    logic_names visited;
    visitRules(catalogue, visited);
    return visited.names;
}

}  // namespace

const ruleDeclarer& ruleBeside(const logicRules& rules, const std::string& name) {
    const auto found = rules.find(name);
    if (found == rules.end()) {
        refuseWithoutRule(name);
    }
    return found->second;
}

void addRule(logicRules& rules, const std::string& name, ruleDeclarer rule) {
    if (!rules.emplace(name, std::move(rule)).second) {
        refuseEdit("there is already a rule", name);
    }
}

void replaceRule(logicRules& rules, const std::string& name, ruleDeclarer rule) {
    placeOf(rules, name)->second = std::move(rule);
}

void removeRule(logicRules& rules, const std::string& name) {
    rules.erase(placeOf(rules, name));
}

void removeRulesWithoutPlace(logicRules& rules, const register_catalogue& before,
                             const register_catalogue& after) {
    const std::set<std::string> kept = logicNames(after);
    for (const std::string& name : logicNames(before)) {
        if (kept.count(name) == 0) {
            removeRule(rules, name);
        }
    }
}

std::vector<std::string> fieldNames(const std::string& registerName,
                                    const std::vector<registerField>& fields) {
    std::vector<std::string> names;
    names.reserve(fields.size());
    for (const registerField& field : fields) {
        names.push_back(fieldName(registerName, field.name));
    }
    return names;
}

void registerCatalogue(gt_rule_engine& engine, const catalogue_plan& plan, const logicRules& rules,
                       const logicRules& rulesOfEngine) {
    const rules_beside beside(plan, rules, rulesOfEngine);
    catalogue_registration(engine, plan).enterAll(beside);
}

}  // namespace sable_lanecfg
