#pragma once

#include <lanecfg/export.h>

#include <boost/blank.hpp>
#include <boost/optional.hpp>
#include <boost/variant.hpp>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace sable_lanecfg {

/// Value of a variable. The index of an alternative (`which()`) is what all dispatch uses:
/// 0 blank (known but undefined), 1 text, 2 unsigned, 3 flag, 4 float, 5 double, 6 list of double.
using ruleValue = boost::variant<boost::blank, std::string, unsigned int, bool, float, double,
                                 std::vector<double>>;

/// One variable: the number of the last rule that has it among its outputs, if any, and its value.
struct varInfo {
    boost::optional<int> ruleNumber;
    ruleValue value;
};

/// All variables of an engine by name; also the form of a saved snapshot of one pass.
using variableMap = std::map<std::string, varInfo>;

/// A variable with its name. Nodes of the map never move, so a rule may hold one.
using variable = variableMap::value_type;

/// A name as rules and what they hold refer to it, so that it is looked up once. It stands for its
/// variable before there is one: a rule enters its names when it is registered, in an order of its
/// own.
struct ruleVariable {
    std::string name;          ///< until a variable bears it
    variable* held = nullptr;  ///< null as long as there is no variable
    bool isAwaited = false;    ///< the variable was made, but nothing entered it yet
    /// Number of the first vertex of that name, if there is one.
    boost::optional<std::uint32_t> firstVertex;

    const std::string& variableName() const { return held == nullptr ? name : held->first; }
};

/// One rule as registered.
struct ruleInfo {
    std::function<void()> ruleBody;
    bool ranFlag = false;                  ///< parity of the pass in which the rule last ran
    std::vector<std::string> ruleOutputs;  ///< as handed to `rule`
};

/// Symbol table of named, dynamically typed variables and the dependency graph of the rules
/// between them.
///
/// Use: construct, enter defaults with `setVal`, register every rule with `rule`; then for each
/// pass `setVal` the inputs, `runRules`, read results, flip `passFlag`. Vertices of the graph are
/// variables; the walk over the sorted variables fires a rule at the first of its outputs, once a
/// pass. Nothing tracks changes: a pass runs every rule that owns a variable.
///
/// An engine belongs to one thread at a time. An engine with rules must not be moved: rule bodies
/// hold its address. One that was moved from may only be destroyed or assigned to.
class LANECFG_EXPORT rule_engine_base {
  public:
    rule_engine_base();
    rule_engine_base(rule_engine_base&& other) noexcept;
    rule_engine_base& operator=(rule_engine_base&& other) noexcept;
    rule_engine_base(const rule_engine_base&) = delete;
    rule_engine_base& operator=(const rule_engine_base&) = delete;
    ~rule_engine_base();

    /// Enters a variable and gives its vertex index. A known name keeps what it has; a name that
    /// only `getValAsString` or a map subscript created has no vertex, and the result is then the
    /// current number of vertices.
    unsigned long addVertex(const std::string& name, varInfo info);

    /// The variable of that name, entered blank unless it is known.
    variable& enterVariable(const std::string& name);

    /// Sets a variable, creating it if needed. Any alternative may replace any other.
    void setVal(std::string name, ruleValue value);

    /// Value of a variable whose alternative is exactly `T`, one of bool, double, unsigned int,
    /// std::string, float, std::vector<double>; nothing is converted.
    /// Throws a std::string holding the name when the variable is unknown or blank, after a line
    /// on standard output, and boost::bad_get on another alternative.
    template <class T>
    T getVal(std::string name);

    /// Text of a variable, six significant digits for numbers with a fraction. A missing name is
    /// inserted blank. A list of double has no text: the process ends.
    std::string getValAsString(std::string name);
    std::string getValAsString(std::map<std::string, varInfo>& vars, std::string name);

    /// Text of a value at hand, as `getValAsString` gives it.
    static std::string textOf(const ruleValue& value);

    /// Registers a rule under the next number. Unknown names become blank variables; the last
    /// rule registered for an output owns it. Without outputs a rule never runs.
    void rule(const std::vector<std::string>& inputs, const std::vector<std::string>& outputs,
              std::function<void()> body);

    /// What rules refer to for that name. Enters nothing. The reference stays valid for the
    /// engine's lifetime.
    ruleVariable& mention(std::string_view name);

    /// Makes blank variables of names that rules are about to enter, in ascending order of name, so
    /// that none of them has to search the map. Vertices come when the names are entered. A name
    /// that has a variable keeps it.
    void makeVariables(const std::vector<ruleVariable*>& ascending);

    /// `rule`, with names that were mentioned. The rule keeps no copy of its outputs' names.
    void registerRule(const std::vector<ruleVariable*>& inputs,
                      const std::vector<ruleVariable*>& outputs, std::function<void()> body);
    void registerRule(const std::vector<ruleVariable*>& inputs, ruleVariable& output,
                      std::function<void()> body);

    /// Runs one pass. The first call sorts the graph (boost::not_a_dag on a cycle); rules
    /// registered later are part of a pass only through variables known before it.
    /// Exceptions of a rule body leave as they were thrown.
    void runRules();

    /// The variable of that name, or null. The pointer stays valid for the engine's lifetime.
    variable* findVariable(const std::string& name);

    /// `getVal` on a variable at hand, with the same failures.
    template <class T>
    static const T& valueOf(const variable& held);

    /// All variables. To add and to change values from outside is fine; variables must not be
    /// removed nor the whole map replaced, since the engine and its rules hold them.
    variableMap varMap;

  protected:
    /// Parity of the pass; the derived class flips it between passes.
    bool passFlag = true;

  private:
    struct LANECFG_LOCAL ruleGraph;

    /// The failure of `getVal` on a variable without a value.
    [[noreturn]] static void throwUndefined(const std::string& name);

    std::vector<ruleVariable*> mentionAll(const std::vector<std::string>& names);

    std::unique_ptr<ruleGraph> graph;
};

template <class T>
const T& rule_engine_base::valueOf(const variable& held) {
    if (held.second.value.which() == 0) {
        throwUndefined(held.first);
    }
    return boost::get<T>(held.second.value);
}

}  // namespace sable_lanecfg
