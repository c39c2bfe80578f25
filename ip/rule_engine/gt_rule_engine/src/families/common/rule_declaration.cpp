#include "families/common/rule_declaration.h"

#include <stdexcept>
#include <utility>

namespace sable_lanecfg {

namespace {

std::vector<std::string> namesOf(const std::vector<ruleVariable*>& variables) {
    std::vector<std::string> names;
    names.reserve(variables.size());
    for (const ruleVariable* const mentioned : variables) {
        names.push_back(mentioned->variableName());
    }
    return names;
}

[[noreturn]] void refuse(const std::string& firstOutput, const std::string& problem) {
    throw std::logic_error("rule of " + firstOutput + ": " + problem);
}

}  // namespace

void replaceValue(variable& held, ruleValue value) {
    held.second.value = std::move(value);
}

ruleSignature rule_declaration::signature() const {
    return {namesOf(inputs_), namesOf(outputs_)};
}

void rule_declaration::enter() {
    if (outputs_.empty()) {
        refuse("no output", "it would never run");
    }
    if (!body_) {
        refuse(outputs_.front()->variableName(), "it has no body");
    }
    engine_->registerRule(inputs_, outputs_, std::move(body_));
}

ruleSignature declareRule(rule_engine_base& engine, const ruleDeclarer& declare,
                          const std::string& ownOutput) {
    rule_declaration rule(&engine, ownOutput);
    declare(rule);
    rule.enter();
    return rule.signature();
}

}  // namespace sable_lanecfg
