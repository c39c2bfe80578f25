#include "families/common/catalogue_rules.h"

#include "block/register_composer.h"
#include "families/common/catalogue_visit.h"

#include <algorithm>
#include <set>
#include <stdexcept>
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

std::vector<std::string> onlyOutput(std::string name) {
    std::vector<std::string> outputs;
    outputs.push_back(std::move(name));
    return outputs;
}

void enterConstant(rule_engine_base& engine, std::string name, unsigned int value) {
    const rule_output<unsigned int> written(&engine.enterVariable(name));
    engine.rule({}, onlyOutput(std::move(name)), [written, value] { written.set(value); });
}

void enterCopy(rule_engine_base& engine, const std::string& field, const std::string& flagName) {
    declareRule(engine, [&](rule_declaration& rule) {
        const auto flag = rule.reads<bool>(flagName);
        const auto written = rule.writes(field);
        rule.body([=] { written.set(flag() ? 1U : 0U); });
    });
}

void enterWord(gt_rule_engine& engine, const std::string& registerName,
               const std::vector<registerField>& fields) {
    const rule_output<unsigned int> word(&engine.enterVariable(registerName));
    engine.rule(fieldNames(registerName, fields), onlyOutput(registerName),
                [word, composer = register_composer(engine, registerName)]() mutable {
                    word.set(composer.word());
                });
}

/// Registers the rules that it visits.
class catalogue_registration {
  public:
    catalogue_registration(gt_rule_engine& engine, const logicRules& rules)
        : engine_(engine), rules_(rules) {}

    void constant(std::string name, unsigned int value) {
        enterConstant(engine_, std::move(name), value);
    }

    void copy(const std::string& field, const std::string& flag) {
        enterCopy(engine_, field, flag);
    }

    void logic(const std::string& rule, const std::string& ownField) {
        const std::vector<std::string> outputs =
            declareRule(engine_, ruleBeside(rules_, rule), ownField).outputs;
        if (!ownField.empty() && std::count(outputs.begin(), outputs.end(), ownField) == 0) {
            refuse(rule, "is not written by its own rule");
        }
        logicOutputs_.insert(outputs.begin(), outputs.end());
        usedRules_.insert(rule);
    }

    void shared(const std::string& field) { sharedFields_.insert(field); }

    void word(const std::string& registerName, const std::vector<registerField>& fields) {
        enterWord(engine_, registerName, fields);
    }

    void checkThatRulesBelong() const {
        for (const auto& rule : rules_) {
            if (usedRules_.count(rule.first) == 0) {
                refuse(rule.first, "has a rule, but is no logic field and no step");
            }
        }
        for (const std::string& field : sharedFields_) {
            if (logicOutputs_.count(field) == 0) {
                refuse(field, "is written by no rule");
            }
        }
    }

  private:
    gt_rule_engine& engine_;
    const logicRules& rules_;
    std::set<std::string> usedRules_;
    std::set<std::string> logicOutputs_;
    std::set<std::string> sharedFields_;
};

/// Collects the names of the logic fields and steps that it visits.
class logic_names {
  public:
    void constant(const std::string& /*name*/, unsigned int /*value*/) {}
    void copy(const std::string& /*field*/, const std::string& /*flag*/) {}
    void shared(const std::string& /*field*/) {}
    void word(const std::string& /*name*/, const std::vector<registerField>& /*fields*/) {}
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
        refuse(name, "has no rule beside it");
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
                       const logicRules& rules) {
    catalogue_registration registration(engine, rules);
    visitRules(catalogue, registration);
    registration.checkThatRulesBelong();
}

}  // namespace sable_lanecfg
