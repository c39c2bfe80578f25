#include "families/common/rule_declaration.h"

#include <stdexcept>
#include <utility>

namespace sable_lanecfg {

namespace {

/// Enters the names as `rule_engine_base::rule` is going to, so that every variable has the vertex
/// that it would get there.
void enterVariables(rule_engine_base& engine, const ruleSignature& names) {
    engine.enterVariable(names.outputs.front());
    for (const std::string& input : names.inputs) {
        engine.enterVariable(input);
    }
    for (const std::string& output : names.outputs) {
        engine.enterVariable(output);
    }
}

[[noreturn]] void refuse(const ruleSignature& names, const std::string& problem) {
    throw std::logic_error("rule of " +
                           (names.outputs.empty() ? "no output" : names.outputs.front()) + ": " +
                           problem);
}

}  // namespace

void replaceValue(variable& held, ruleValue value) {
    held.second.value = std::move(value);
}

ruleSignature declareRule(rule_engine_base& engine, const ruleDeclarer& declare,
                          const std::string& ownOutput) {
    rule_declaration names(nullptr, ownOutput);
    declare(names);
    if (names.signature().outputs.empty()) {
        refuse(names.signature(), "it would never run");
    }
    if (!names.body()) {
        refuse(names.signature(), "it has no body");
    }
    enterVariables(engine, names.signature());

    rule_declaration bound(&engine, ownOutput);
    declare(bound);
    if (bound.signature().inputs != names.signature().inputs ||
        bound.signature().outputs != names.signature().outputs) {
        refuse(names.signature(), "its declaration changes from one run to the next");
    }
    engine.rule(bound.signature().inputs, bound.signature().outputs, bound.body());
    return names.signature();
}

}  // namespace sable_lanecfg
