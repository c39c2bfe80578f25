#pragma once

#include <lanecfg/rule_engine_base.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {

/// A declared input: `rate()` reads it, with the failures of `rule_engine_base::getVal`.
template <class T>
class rule_input {
  public:
    explicit rule_input(const variable* held) : held_(held) {}
    const T& operator()() const { return rule_engine_base::valueOf<T>(*held_); }

  private:
    const variable* held_;
};

/// Gives a variable a value of another alternative.
void replaceValue(variable& held, ruleValue value);

/// An output; what is set is stored as the alternative `T`, whatever stood there.
template <class T>
class rule_output {
  public:
    explicit rule_output(variable* held) : held_(held) {}

    void set(T value) const {
        // From its second pass on a rule finds its own alternative.
        if (T* const present = boost::get<T>(&held_->second.value)) {
            *present = std::move(value);
        } else {
            replaceValue(*held_, ruleValue(std::move(value)));
        }
    }

  private:
    variable* held_;
};

/// A read that is left undeclared on purpose: no edge of the graph, and no variable made of it.
/// The variable is found at the first read, since the rule that makes it may come later.
template <class T>
class rule_peek {
  public:
    rule_peek(rule_engine_base* engine, std::string name)
        : engine_(engine), name_(std::move(name)) {}

    T operator()() const {
        if (held_ == nullptr) {
            held_ = engine_->findVariable(name_);
        }
        // Of an unknown name `getVal` tells, as it does everywhere.
        return held_ == nullptr ? engine_->getVal<T>(name_) : rule_engine_base::valueOf<T>(*held_);
    }

  private:
    rule_engine_base* engine_;
    std::string name_;
    mutable const variable* held_ = nullptr;
};

/// Names of a rule, in the order in which they were declared.
struct ruleSignature {
    std::vector<std::string> inputs;
    std::vector<std::string> outputs;
};

/// Declares one rule where its body can be read beside it:
///
///     declareRule(engine, [](rule_declaration& rule) {
///         const auto rate = rule.reads<double>("TX_LINE_RATE");
///         const auto divider = rule.writes("INT_TX_OUTDIV");
///         rule.body([=] { divider.set(rate() > 8.0 ? 1U : 2U); });
///     });
///
/// The order of `reads` and `alsoDeclares` is that of the rule's inputs, the order of `writes`
/// that of its outputs. The handles hold the variables themselves, so a pass looks nothing up. The
/// declaring function runs twice, first to learn the names and then with the variables at hand, so
/// it must do nothing but declare.
class rule_declaration {
  public:
    /// With an engine the declared names must be its variables already.
    explicit rule_declaration(rule_engine_base* engine = nullptr, std::string ownOutput = {})
        : engine_(engine), ownOutput_(std::move(ownOutput)) {}

    template <class T>
    rule_input<T> reads(const std::string& name) {
        signature_.inputs.push_back(name);
        return rule_input<T>(held(name));
    }

    template <class T>
    rule_peek<T> peeks(const std::string& name) {
        return rule_peek<T>(engine_, name);
    }

    /// An input that the body never reads; it only orders the rules.
    void alsoDeclares(const std::string& name) { signature_.inputs.push_back(name); }

    /// Fields and words are unsigned, intermediates may be of any type of `ruleValue`.
    template <class T = unsigned int>
    rule_output<T> writes(const std::string& name) {
        signature_.outputs.push_back(name);
        return rule_output<T>(held(name));
    }

    void body(std::function<void()> function) { body_ = std::move(function); }

    /// The whole of a rule whose one output is the field that it stands beside: the field becomes
    /// what `value` returns.
    template <class Value>
    void gives(Value value) {
        const auto field = writes<unsigned int>(ownOutput_);
        body([field, value = std::move(value)] { field.set(value()); });
    }

    const ruleSignature& signature() const { return signature_; }
    const std::function<void()>& body() const { return body_; }

  private:
    variable* held(const std::string& name) const {
        return engine_ == nullptr ? nullptr : engine_->findVariable(name);
    }

    rule_engine_base* engine_;
    std::string ownOutput_;
    ruleSignature signature_;
    std::function<void()> body_;
};

/// A function that declares one rule.
using ruleDeclarer = std::function<void(rule_declaration&)>;

/// Registers the rule that `declare` declares; the graph is that of a plain `rule` call with the
/// same lists. `ownOutput` is the field that `gives` writes. Throws std::logic_error, naming the
/// rule's first output, when the rule has no output or no body, or when its second declaration is
/// not like the first. Result: the names declared.
ruleSignature declareRule(rule_engine_base& engine, const ruleDeclarer& declare,
                          const std::string& ownOutput = {});

}  // namespace sable_lanecfg
