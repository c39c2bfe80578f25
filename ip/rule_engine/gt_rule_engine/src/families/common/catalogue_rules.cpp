#include "families/common/catalogue_rules.h"

#include "block/register_composer.h"

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
    std::vector<std::string> inputs;
    inputs.reserve(fields.size());
    for (const registerField& field : fields) {
        inputs.push_back(fieldName(registerName, field.name));
    }
    const rule_output<unsigned int> word(&engine.enterVariable(registerName));
    engine.rule(inputs, onlyOutput(registerName),
                [word, composer = register_composer(engine, registerName)]() mutable {
                    word.set(composer.word());
                });
}

/// Registers one catalogue; lives for one `registerCatalogue`.
class catalogue_registration {
  public:
    catalogue_registration(gt_rule_engine& engine, const register_catalogue& catalogue,
                           const logicRules& rules)
        : engine_(engine), catalogue_(catalogue), rules_(rules) {}

    void run() {
        for (const catalogueEntry& entry : catalogue_.entries()) {
            enterEntry(entry);
        }
        checkThatRulesBelong();
    }

  private:
    void enterEntry(const catalogueEntry& entry) {
        const std::string name(entry.name);
        if (entry.kind == entryKind::constantWord) {
            enterConstant(engine_, name, entry.value);
        } else if (entry.kind == entryKind::step) {
            enterLogic(name, {});
        } else {
            for (const registerField& field : entry.fields) {
                enterField(name, field);
            }
            if (entry.kind == entryKind::wholeRegister) {
                enterWord(engine_, name, entry.fields);
            } else if (entry.kind == entryKind::word) {
                enterWord(engine_, name, catalogue_.fieldsOf(name));
            }
        }
    }

    void enterField(const std::string& registerName, const registerField& field) {
        std::string name = fieldName(registerName, field.name);
        switch (field.kind) {
            case fieldKind::constant:
                enterConstant(engine_, std::move(name), field.value);
                break;
            case fieldKind::copy:
                enterCopy(engine_, name, std::string(field.source));
                break;
            case fieldKind::logic:
                enterLogic(name, name);
                break;
            case fieldKind::shared:
                sharedFields_.insert(std::move(name));
                break;
        }
    }

    /// `ownField` is empty for a step.
    void enterLogic(const std::string& name, const std::string& ownField) {
        const auto found = rules_.find(name);
        if (found == rules_.end()) {
            refuse(name, "has no rule beside it");
        }
        const std::vector<std::string> outputs =
            declareRule(engine_, found->second, ownField).outputs;
        if (!ownField.empty() && std::count(outputs.begin(), outputs.end(), ownField) == 0) {
            refuse(name, "is not written by its own rule");
        }
        logicOutputs_.insert(outputs.begin(), outputs.end());
        usedRules_.insert(name);
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

    gt_rule_engine& engine_;
    const register_catalogue& catalogue_;
    const logicRules& rules_;
    std::set<std::string> usedRules_;
    std::set<std::string> logicOutputs_;
    std::set<std::string> sharedFields_;
};

}  // namespace

void registerCatalogue(gt_rule_engine& engine, const register_catalogue& catalogue,
                       const logicRules& rules) {
    catalogue_registration(engine, catalogue, rules).run();
}

}  // namespace sable_lanecfg
