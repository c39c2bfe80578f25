#include <lanecfg/rule_engine_base.h>

#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/topological_sort.hpp>

#include <deque>
#include <iostream>
#include <iterator>
#include <list>
#include <sstream>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace sable_lanecfg {

namespace {

using vertexProperty = boost::property<boost::vertex_color_t, boost::default_color_type,
                                       boost::property<boost::vertex_name_t, std::string>>;
using dependencyGraphType =
    boost::adjacency_list<boost::vecS, boost::vecS, boost::bidirectionalS, vertexProperty,
                          boost::no_property, boost::no_property, boost::listS>;
using vertex = dependencyGraphType::vertex_descriptor;

template <class T>
std::string streamed(const T& number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

/// Text of a value as `getValAsString` gives it.
struct valueText : boost::static_visitor<std::string> {
    std::string operator()(const boost::blank& /*undefined*/) const { return {}; }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(unsigned int number) const { return streamed(number); }
    std::string operator()(bool flag) const { return streamed(flag); }
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
    void connect(vertex input, vertex output);
    void sort();
    void holdSortedVariables();
    ruleInfo& ruleOf(int number);

    dependencyGraphType dependencyGraph;
    std::list<unsigned long> sortedVertices;
    /// Rules by number. Elements stay in place when a rule body registers further rules.
    std::deque<ruleInfo> rules;

    /// The first vertex of each name. The keys are the map nodes' own, which never move.
    std::unordered_map<std::string_view, knownVariable> variableByName;
    /// The variable of each vertex, null for a vertex that only an edge created.
    std::vector<variable*> variableOfVertex;
    /// `sortedVertices` as variables, so that a pass looks nothing up.
    std::vector<variable*> sortedVariables;
};

rule_engine_base::ruleGraph::knownVariable rule_engine_base::ruleGraph::enter(
    variableMap& variables, const std::string& name, varInfo&& info) {
    const auto known = variableByName.find(name);
    const bool hasVertex = known != variableByName.end();
    if (hasVertex && known->second.held != nullptr) {
        return known->second;
    }
    const auto [node, isNew] = variables.try_emplace(name, std::move(info));
    if (!isNew) {
        return {hasVertex ? known->second.index : boost::num_vertices(dependencyGraph), &*node};
    }
    const knownVariable entered{
        boost::add_vertex(vertexProperty(boost::white_color, name), dependencyGraph), &*node};
    variableOfVertex.push_back(entered.held);
    variableByName.try_emplace(node->first, entered);
    return entered;
}

variable* rule_engine_base::ruleGraph::find(variableMap& variables, const std::string& name) const {
    const auto known = variableByName.find(name);
    if (known != variableByName.end() && known->second.held != nullptr) {
        return known->second.held;
    }
    const auto node = variables.find(name);
    return node == variables.end() ? nullptr : &*node;
}

void rule_engine_base::ruleGraph::connect(vertex input, vertex output) {
    boost::add_edge(input, output, dependencyGraph);
    // An end beyond the last vertex makes the graph grow by a vertex without a name.
    while (variableOfVertex.size() < boost::num_vertices(dependencyGraph)) {
        variableByName.try_emplace(std::string_view(),
                                   knownVariable{variableOfVertex.size(), nullptr});
        variableOfVertex.push_back(nullptr);
    }
}

void rule_engine_base::ruleGraph::sort() {
    // What a cycle leaves in the list stays there, and later passes walk it.
    boost::topological_sort(dependencyGraph, std::front_inserter(sortedVertices));
}

void rule_engine_base::ruleGraph::holdSortedVariables() {
    for (const vertex index : sortedVertices) {
        sortedVariables.push_back(variableOfVertex[index]);
    }
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

std::string rule_engine_base::getValAsString(std::string name) {
    return getValAsString(varMap, std::move(name));
}

std::string rule_engine_base::getValAsString(std::map<std::string, varInfo>& vars,
                                             std::string name) {
    // The lookup is meant to insert a missing name.
    return boost::apply_visitor(valueText(), vars[std::move(name)].value);
}

void rule_engine_base::rule(const std::vector<std::string>& inputs,
                            const std::vector<std::string>& outputs, std::function<void()> body) {
    const int number = static_cast<int>(graph->rules.size());
    graph->rules.push_back(ruleInfo{std::move(body), false, outputs});
    for (const std::string& output : outputs) {
        const auto written = graph->enter(varMap, output, varInfo());
        written.held->second.ruleNumber = number;
        for (const std::string& input : inputs) {
            graph->connect(graph->enter(varMap, input, varInfo()).index, written.index);
        }
    }
    if (outputs.empty()) {
        for (const std::string& input : inputs) {
            graph->enter(varMap, input, varInfo());
        }
    }
}

void rule_engine_base::runRules() {
    if (graph->sortedVertices.empty()) {
        graph->sort();
    }
    if (graph->sortedVariables.empty()) {
        graph->holdSortedVariables();
    }
    for (const variable* const held : graph->sortedVariables) {
        if (held == nullptr || !held->second.ruleNumber) {
            continue;
        }
        ruleInfo& owner = graph->ruleOf(*held->second.ruleNumber);
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
