#include "families/common/catalogue_rules.h"

#include "block/register_composer.h"
#include "families/common/catalogue_visit.h"

#include <algorithm>
#include <cstddef>
#include <functional>
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

/// Pointers of which it is asked in the end which ones there are.
template <class Item>
class collection {
  public:
    void add(const Item* item) { items_.push_back(item); }
    /// To be called when all are there.
    void sort() { std::sort(items_.begin(), items_.end(), std::less<>()); }
    bool has(const Item* item) const {
        return std::binary_search(items_.begin(), items_.end(), item, std::less<>());
    }

  private:
    std::vector<const Item*> items_;
};

/// Registers the rules that it visits.
class catalogue_registration {
  public:
    catalogue_registration(gt_rule_engine& engine, const logicRules& rules,
                           const logicRules& rulesOfEngine)
        : engine_(engine), rules_(rules), rulesOfEngine_(rulesOfEngine) {}

    void constant(const std::string& name, unsigned int value) {
        ruleVariable& output = engine_.mention(name);
        const rule_output<unsigned int> written(&output);
        engine_.registerRule({}, output, [written, value] { written.set(value); });
        fields_.push_back(&output);
    }

    void copy(const std::string& field, const std::string& flagName) {
        rule_declaration rule(&engine_);
        const auto flag = rule.reads<bool>(flagName);
        const auto written = rule.writes(field);
        rule.body([=] { written.set(flag() ? 1U : 0U); });
        rule.enter();
        fields_.push_back(rule.outputs().front());
    }

    void logic(const std::string& name, const std::string& ownField) {
        const auto& row = rowBeside(name);
        rule_declaration rule(&engine_, ownField);
        row.second(rule);
        rule.enter();
        if (!ownField.empty()) {
            fields_.push_back(&outputNamed(ownField, rule));
        }
        for (const ruleVariable* const output : rule.outputs()) {
            logicOutputs_.add(output);
        }
        usedRules_.add(&row);
    }

    void shared(const std::string& field) {
        sharedFields_.push_back(&engine_.mention(field));
        fields_.push_back(sharedFields_.back());
    }

    void word(const std::string& registerName, const std::vector<registerField>& fields) {
        enterWord(registerName,
                  {fields_.end() - static_cast<std::ptrdiff_t>(fields.size()), fields_.end()});
    }

    void wordOfParts(const std::string& registerName, const std::vector<registerField>& fields) {
        std::vector<ruleVariable*> inputs;
        for (const std::string& name : fieldNames(registerName, fields)) {
            inputs.push_back(&engine_.mention(name));
        }
        enterWord(registerName, inputs);
    }

    void checkThatRulesBelong() {
        usedRules_.sort();
        checkThatAllAreUsed(rules_);
        checkThatAllAreUsed(rulesOfEngine_);
        logicOutputs_.sort();
        for (const ruleVariable* const field : sharedFields_) {
            if (!logicOutputs_.has(field)) {
                refuse(field->variableName(), "is written by no rule");
            }
        }
    }

  private:
    /// The rule beside the catalogue with what it stands beside.
    const logicRules::value_type& rowBeside(const std::string& name) const {
        for (const logicRules* const rules : {&rules_, &rulesOfEngine_}) {
            const auto found = rules->find(name);
            if (found != rules->end()) {
                return *found;
            }
        }
        refuseWithoutRule(name);
    }

    void checkThatAllAreUsed(const logicRules& rules) const {
        for (const auto& row : rules) {
            if (!usedRules_.has(&row)) {
                refuse(row.first, "has a rule, but is no logic field and no step");
            }
        }
    }

    static ruleVariable& outputNamed(const std::string& field, const rule_declaration& rule) {
        const auto& outputs = rule.outputs();
        const auto own = std::find_if(
            outputs.begin(), outputs.end(),
            [&field](const ruleVariable* output) { return output->variableName() == field; });
        if (own == outputs.end()) {
            refuse(field, "is not written by its own rule");
        }
        return **own;
    }

    void enterWord(const std::string& registerName, const std::vector<ruleVariable*>& fields) {
        ruleVariable& output = engine_.mention(registerName);
        const rule_output<unsigned int> written(&output);
        engine_.registerRule(
            fields, output,
            [written, composer = register_composer(engine_, registerName, fields)]() mutable {
                written.set(composer.word());
            });
    }

    gt_rule_engine& engine_;
    const logicRules& rules_;
    const logicRules& rulesOfEngine_;
    std::vector<ruleVariable*> fields_;  ///< in the order visited
    std::vector<ruleVariable*> sharedFields_;
    collection<logicRules::value_type> usedRules_;
    collection<ruleVariable> logicOutputs_;
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

void registerCatalogue(gt_rule_engine& engine, const register_catalogue& catalogue,
                       const logicRules& rules, const logicRules& rulesOfEngine) {
    catalogue_registration registration(engine, rules, rulesOfEngine);
    visitRules(catalogue, registration);
    registration.checkThatRulesBelong();
}

}  // namespace sable_lanecfg
