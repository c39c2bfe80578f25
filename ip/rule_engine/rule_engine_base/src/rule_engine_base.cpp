#include "name_index.h"

#include <lanecfg/rule_engine_base.h>

#include <boost/graph/compressed_sparse_row_graph.hpp>
#include <boost/graph/topological_sort.hpp>
#include <boost/iterator/function_output_iterator.hpp>

#include <algorithm>
#include <deque>
#include <iostream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string_view>
#include <utility>

namespace sable_lanecfg {

namespace {

/// Vertices are numbered in 32 bits: half the memory to go through for a large rule set.
using vertex = name_index::number;
using dependencyGraph =
    boost::compressed_sparse_row_graph<boost::directedS, boost::no_property, boost::no_property,
                                       boost::no_property, vertex, vertex>;

std::string streamed(double number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

/// Text of a value as `getValAsString` gives it.
struct valueText : boost::static_visitor<std::string> {
    std::string operator()(const boost::blank& /*undefined*/) const { return {}; }
    std::string operator()(const std::string& text) const { return text; }
    // Digits alone, as a stream of the classic locale gives them: most values are words, and no
    // host's locale may group their digits.
    std::string operator()(unsigned int number) const { return std::to_string(number); }
    std::string operator()(bool flag) const { return flag ? "1" : "0"; }
    std::string operator()(float number) const { return streamed(static_cast<double>(number)); }
    std::string operator()(double number) const { return streamed(number); }
    std::string operator()(const std::vector<double>& /*list*/) const {
        // A list has no text. To render one is a fault of the program, not of its input, and must
        // not pass for an answer: with no exception in flight this ends the process.
        throw;
    }
};

}  // namespace

/// What the engine keeps about dependencies. The graph's vertices are variables, numbered in the
/// order in which they were entered; an edge leads from a rule's input to its output.
struct rule_engine_base::ruleGraph {
    /// A variable and its vertex, which is the number of vertices when it has none.
    struct knownVariable {
        vertex index;
        variable* held;
    };

    knownVariable enter(variableMap& variables, const std::string& name, varInfo&& info);
    variable* find(variableMap& variables, const std::string& name) const;
    vertex inputVertex(variableMap& variables, const std::string& name, vertex& known);
    void connect(vertex input, vertex output);
    void sort();
    ruleInfo& ruleOf(int number);
    vertex firstVertex(const std::string& name) const;
    vertex vertexCount() const { return static_cast<vertex>(variableOfVertex.size()); }

    /// Rules by number. Elements stay in place when a rule body registers further rules.
    std::deque<ruleInfo> rules;
    /// The variable of each vertex, null for a vertex that only an edge created.
    std::vector<variable*> variableOfVertex;
    /// The first vertex of each name.
    name_index vertexByName;
    /// Inputs with their outputs, in order of registration.
    std::deque<std::pair<vertex, vertex>> edges;
    /// The last variable entered, near which the next one of a catalogue stands in the map.
    std::optional<variableMap::iterator> lastEntered;
    /// The sorted variables, last first, so that a pass looks nothing up.
    std::vector<variable*> reverseOrder;
};

vertex rule_engine_base::ruleGraph::firstVertex(const std::string& name) const {
    return vertexByName.find(name, [this](vertex index) {
        const variable* const held = variableOfVertex[index];
        return held != nullptr ? std::string_view(held->first) : std::string_view();
    });
}

rule_engine_base::ruleGraph::knownVariable rule_engine_base::ruleGraph::enter(
    variableMap& variables, const std::string& name, varInfo&& info) {
    const vertex known = firstVertex(name);
    if (known != name_index::none && variableOfVertex[known] != nullptr) {
        return {known, variableOfVertex[known]};
    }
    const auto hint = lastEntered ? std::next(*lastEntered) : variables.end();
    const std::size_t countBefore = variables.size();
    const auto node = variables.emplace_hint(hint, name, std::move(info));
    const vertex next = vertexCount();
    if (variables.size() == countBefore) {
        return {known != name_index::none ? known : next, &*node};
    }
    lastEntered = node;
    variableOfVertex.push_back(&*node);
    if (known == name_index::none) {
        vertexByName.enter(name, next);
    }
    return {next, &*node};
}

variable* rule_engine_base::ruleGraph::find(variableMap& variables, const std::string& name) const {
    const vertex known = firstVertex(name);
    if (known != name_index::none && variableOfVertex[known] != nullptr) {
        return variableOfVertex[known];
    }
    const auto node = variables.find(name);
    return node == variables.end() ? nullptr : &*node;
}

/// Vertex of an input, kept in `known` once it is one. What has none yet is asked for again, for it
/// is then whatever vertex comes next.
vertex rule_engine_base::ruleGraph::inputVertex(variableMap& variables, const std::string& name,
                                                vertex& known) {
    if (known != name_index::none) {
        return known;
    }
    const vertex index = enter(variables, name, varInfo()).index;
    if (index < vertexCount()) {
        known = index;
    }
    return index;
}

void rule_engine_base::ruleGraph::connect(vertex input, vertex output) {
    edges.emplace_back(input, output);
    // An end that is no vertex yet becomes one, without a name.
    const vertex next = vertexCount();
    if (std::max(input, output) == next) {
        const bool isFirst = firstVertex({}) == name_index::none;
        variableOfVertex.push_back(nullptr);
        if (isFirst) {
            vertexByName.enter({}, next);
        }
    }
}

void rule_engine_base::ruleGraph::sort() {
    const dependencyGraph dependencies(boost::edges_are_unsorted_multi_pass, edges.begin(),
                                       edges.end(), vertexCount());
    // The sort gives the last vertex first. What it has given when it finds a cycle stays, and
    // later passes walk that.
    boost::topological_sort(dependencies,
                            boost::make_function_output_iterator([this](vertex index) {
                                reverseOrder.push_back(variableOfVertex[index]);
                            }));
}

ruleInfo& rule_engine_base::ruleGraph::ruleOf(int number) {
    // A number that no rule has can only come from the info given to `addVertex`.
    if (number < 0 || static_cast<std::size_t>(number) >= rules.size()) {
        throw std::bad_function_call();
    }
    return rules[static_cast<std::size_t>(number)];
}

rule_engine_base::rule_engine_base() : graph(std::make_unique<ruleGraph>()) {}

rule_engine_base::rule_engine_base(rule_engine_base&& other) noexcept
    : varMap(std::exchange(other.varMap, {})),
      passFlag(other.passFlag),
      graph(std::move(other.graph)) {}

rule_engine_base& rule_engine_base::operator=(rule_engine_base&& other) noexcept {
    if (this != &other) {
        graph = std::move(other.graph);
        varMap = std::exchange(other.varMap, {});
        passFlag = other.passFlag;
    }
    return *this;
}

rule_engine_base::~rule_engine_base() = default;

unsigned long rule_engine_base::addVertex(const std::string& name, varInfo info) {
    return graph->enter(varMap, name, std::move(info)).index;
}

variable& rule_engine_base::enterVariable(const std::string& name) {
    return *graph->enter(varMap, name, varInfo()).held;
}

void rule_engine_base::setVal(std::string name, ruleValue value) {
    if (variable* const known = findVariable(name)) {
        known->second.value = std::move(value);
    } else {
        addVertex(name, varInfo{boost::none, std::move(value)});
    }
}

template <class T>
T rule_engine_base::getVal(std::string name) {
    const variable* const known = findVariable(name);
    if (known == nullptr) {
        throwUndefined(name);
    }
    return valueOf<T>(*known);
}

template bool rule_engine_base::getVal<bool>(std::string);
template double rule_engine_base::getVal<double>(std::string);
template unsigned int rule_engine_base::getVal<unsigned int>(std::string);
template std::string rule_engine_base::getVal<std::string>(std::string);
template float rule_engine_base::getVal<float>(std::string);
template std::vector<double> rule_engine_base::getVal<std::vector<double>>(std::string);

void rule_engine_base::throwUndefined(const std::string& name) {
    std::cout << "ERROR: Key Not found - " << name << ", or value undefined." << std::endl;
    throw std::string(name);
}

std::string rule_engine_base::textOf(const ruleValue& value) {
    return boost::apply_visitor(valueText(), value);
}

std::string rule_engine_base::getValAsString(std::string name) {
    return getValAsString(varMap, std::move(name));
}

std::string rule_engine_base::getValAsString(std::map<std::string, varInfo>& vars,
                                             std::string name) {
    // The lookup is meant to insert a missing name.
    return textOf(vars[std::move(name)].value);
}

void rule_engine_base::rule(const std::vector<std::string>& inputs,
                            std::vector<std::string> outputs, std::function<void()> body) {
    const int number = static_cast<int>(graph->rules.size());
    // An input is looked up for the first output; its vertex is the same for all others.
    std::vector<vertex> inputVertices(inputs.size(), name_index::none);
    for (const std::string& output : outputs) {
        const auto written = graph->enter(varMap, output, varInfo());
        written.held->second.ruleNumber = number;
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            graph->connect(graph->inputVertex(varMap, inputs[i], inputVertices[i]), written.index);
        }
    }
    if (outputs.empty()) {
        for (const std::string& input : inputs) {
            graph->enter(varMap, input, varInfo());
        }
    }
    graph->rules.push_back(ruleInfo{std::move(body), false, std::move(outputs)});
}

void rule_engine_base::runRules() {
    if (graph->reverseOrder.empty()) {
        graph->sort();
    }
    const auto& order = graph->reverseOrder;
    for (auto held = order.rbegin(); held != order.rend(); ++held) {
        if (*held == nullptr || !(*held)->second.ruleNumber) {
            continue;
        }
        ruleInfo& owner = graph->ruleOf(*(*held)->second.ruleNumber);
        if (owner.ranFlag != passFlag) {
            owner.ruleBody();
            owner.ranFlag = !owner.ranFlag;
        }
    }
}

variable* rule_engine_base::findVariable(const std::string& name) {
    return graph->find(varMap, name);
}

}  // namespace sable_lanecfg
