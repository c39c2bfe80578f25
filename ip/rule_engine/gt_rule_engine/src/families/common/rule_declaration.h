#pragma once

#include <lanecfg/rule_engine_base.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sable_lanecfg {

/// A declared input: `rate()` reads it, with the failures of `rule_engine_base::getVal`.
template <class T>
class rule_input {
  public:
    explicit rule_input(const ruleVariable* input) : input_(input) {}
    const T& operator()() const { return rule_engine_base::valueOf<T>(*input_->held); }

  private:
    const ruleVariable* input_;
};

/// Gives a variable a value of another alternative.
void replaceValue(variable& held, ruleValue value);

/// An output; what is set is stored as the alternative `T`, whatever stood there.
template <class T>
class rule_output {
  public:
    explicit rule_output(const ruleVariable* output) : output_(output) {}

    void set(T value) const {
        variable& held = *output_->held;
        // From its second pass on a rule finds its own alternative.
        if (T* const present = boost::get<T>(&held.second.value)) {
            *present = std::move(value);
        } else {
            replaceValue(held, ruleValue(std::move(value)));
        }
    }

  private:
    const ruleVariable* output_;
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
/// that of its outputs. The handles lead to the variables themselves, so a pass looks nothing up.
/// There need be no variables before the rule is registered, so the declaring function must do
/// nothing but declare.
class rule_declaration {
  public:
    /// Without an engine the rule is only declared: its names can be asked for, its body can't run.
    explicit rule_declaration(rule_engine_base* engine = nullptr, std::string ownOutput = {})
        : engine_(engine != nullptr ? engine : &noEngine_.emplace()),
          ownOutput_(std::move(ownOutput)) {
        inputs_.reserve(usualInputs);
    }
    rule_declaration(const rule_declaration&) = delete;
    rule_declaration& operator=(const rule_declaration&) = delete;

    template <class T>
    rule_input<T> reads(std::string_view name) {
        inputs_.push_back(&engine_->mention(name));
        return rule_input<T>(inputs_.back());
    }

    template <class T>
    rule_peek<T> peeks(std::string_view name) {
        return rule_peek<T>(engine_, std::string(name));
    }

    /// An input that the body never reads; it only orders the rules.
    void alsoDeclares(std::string_view name) { inputs_.push_back(&engine_->mention(name)); }

    /// Fields and words are unsigned, intermediates may be of any type of `ruleValue`.
    template <class T = unsigned int>
    rule_output<T> writes(std::string_view name) {
        outputs_.push_back(&engine_->mention(name));
        return rule_output<T>(outputs_.back());
    }

    void body(std::function<void()> function) { body_ = std::move(function); }

    /// The whole of a rule whose one output is the field that it stands beside: the field becomes
    /// what `value` returns.
    template <class Value>
    void gives(Value value) {
        const auto field = writes<unsigned int>(ownOutput_);
        body([field, value = std::move(value)] { field.set(value()); });
    }

    ruleSignature signature() const;
    const std::vector<ruleVariable*>& outputs() const { return outputs_; }
    const std::function<void()>& body() const { return body_; }

    /// Registers the rule with the engine. Throws std::logic_error, naming its first output, when
    /// it has no output or no body.
    void enter();

  private:
    static constexpr std::size_t usualInputs = 6;

    std::optional<rule_engine_base> noEngine_;  ///< knows the names of a rule without an engine
    rule_engine_base* engine_;
    std::string ownOutput_;
    std::vector<ruleVariable*> inputs_;
    std::vector<ruleVariable*> outputs_;
    std::function<void()> body_;
};

/// A function that declares one rule.
using ruleDeclarer = std::function<void(rule_declaration&)>;

/// Registers the rule that `declare` declares; the graph is that of a plain `rule` call with the
/// same lists. `ownOutput` is the field that `gives` writes. Throws as `rule_declaration::enter`.
/// Result: the names declared.
ruleSignature declareRule(rule_engine_base& engine, const ruleDeclarer& declare,
                          const std::string& ownOutput = {});

}  // namespace sable_lanecfg
