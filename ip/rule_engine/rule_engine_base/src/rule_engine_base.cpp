#include "name_index.h"

#include <lanecfg/rule_engine_base.h>

#include <boost/graph/compressed_sparse_row_graph.hpp>
#include <boost/graph/depth_first_search.hpp>
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
    ruleVariable* findMentioned(std::string_view name, std::uint32_t hash);
    ruleVariable& mention(std::string_view name);
    vertex enter(variableMap& variables, ruleVariable& entered);
    vertex enterNew(variableMap& variables, ruleVariable& entered, varInfo&& info);
    vertex enterAwaited(ruleVariable& entered);
    variable* find(variableMap& variables, const std::string& name);
    void connect(vertex input, vertex output);
    void enterOutput(variableMap& variables, const std::vector<ruleVariable*>& inputs,
                     ruleVariable& output);
    void sort();
    ruleInfo& ruleOf(int number);
    vertex vertexCount() const { return static_cast<vertex>(variableOfVertex.size()); }

    /// Rules by number. Elements stay in place when a rule body registers further rules.
    std::deque<ruleInfo> rules;
    /// All names that were mentioned; elements stay in place.
    std::deque<ruleVariable> mentioned;
    /// Places in `mentioned` by name.
    name_index placeByName;
    /// The variable of each vertex, null for a vertex that only an edge created.
    std::vector<variable*> variableOfVertex;
    /// Inputs with their outputs, in order of registration.
    std::deque<std::pair<vertex, vertex>> edges;
    /// The variable entered last.
    std::optional<variableMap::iterator> lastEntered;
    /// The sorted variables, last first, so that a pass looks nothing up.
    std::vector<variable*> reverseOrder;
};

ruleVariable* rule_engine_base::ruleGraph::findMentioned(std::string_view name,
                                                         std::uint32_t hash) {
    const name_index::number place =
        placeByName.find(name, hash, [this](name_index::number probed) {
            return std::string_view(mentioned[probed].variableName());
        });
    return place == name_index::none ? nullptr : &mentioned[place];
}

ruleVariable& rule_engine_base::ruleGraph::mention(std::string_view name) {
    const std::uint32_t hash = name_index::hashOf(name);
    if (ruleVariable* const known = findMentioned(name, hash)) {
        return *known;
    }
    mentioned.push_back({std::string(name), nullptr, false, boost::none});
    placeByName.enter(hash, static_cast<name_index::number>(mentioned.size() - 1));
    return mentioned.back();
}

/// Vertex of a name, which gets a variable and a vertex unless it has a variable. One that has a
/// variable alone is answered with whatever vertex comes next.
vertex rule_engine_base::ruleGraph::enter(variableMap& variables, ruleVariable& entered) {
    if (entered.isAwaited) {
        return enterAwaited(entered);
    }
    return entered.held != nullptr ? entered.firstVertex.value_or(vertexCount())
                                   : enterNew(variables, entered, varInfo());
}

vertex rule_engine_base::ruleGraph::enterAwaited(ruleVariable& entered) {
    const vertex next = vertexCount();
    entered.isAwaited = false;
    variableOfVertex.push_back(entered.held);
    entered.firstVertex = entered.firstVertex.value_or(next);
    return next;
}

vertex rule_engine_base::ruleGraph::enterNew(variableMap& variables, ruleVariable& entered,
                                             varInfo&& info) {
    const vertex next = vertexCount();
    // Who enters many names often has them in order.
    const auto place = lastEntered ? std::next(*lastEntered) : variables.end();
    const std::size_t countBefore = variables.size();
    const auto node = variables.try_emplace(place, std::move(entered.name), std::move(info));
    entered.held = &*node;
    if (variables.size() == countBefore) {
        return entered.firstVertex.value_or(next);
    }
    lastEntered = node;
    variableOfVertex.push_back(&*node);
    entered.firstVertex = entered.firstVertex.value_or(next);
    return next;
}

variable* rule_engine_base::ruleGraph::find(variableMap& variables, const std::string& name) {
    const ruleVariable* const known = findMentioned(name, name_index::hashOf(name));
    if (known != nullptr && known->held != nullptr) {
        return known->held;
    }
    const auto node = variables.find(name);
    return node == variables.end() ? nullptr : &*node;
}

void rule_engine_base::ruleGraph::connect(vertex input, vertex output) {
    edges.emplace_back(input, output);
    // An end that is no vertex yet becomes one, without a name.
    const vertex next = vertexCount();
    if (std::max(input, output) == next) {
        variableOfVertex.push_back(nullptr);
        ruleVariable& nameless = mention({});
        nameless.firstVertex = nameless.firstVertex.value_or(next);
    }
}

/// Enters an output and, as inputs of it, those of its rule.
void rule_engine_base::ruleGraph::enterOutput(variableMap& variables,
                                              const std::vector<ruleVariable*>& inputs,
                                              ruleVariable& output) {
    const vertex written = enter(variables, output);
    output.held->second.ruleNumber = static_cast<int>(rules.size());
    for (ruleVariable* const input : inputs) {
        connect(enter(variables, *input), written);
    }
}

void rule_engine_base::ruleGraph::sort() {
    // The search starts at one more vertex, which leads to all others in their order: a search from
    // each of them would come to the same, but allocate for each.
    const vertex root = vertexCount();
    std::vector<std::pair<vertex, vertex>> allEdges(edges.begin(), edges.end());
    allEdges.reserve(edges.size() + root);
    for (vertex index = 0; index < root; ++index) {
        allEdges.emplace_back(root, index);
    }
    const dependencyGraph dependencies(boost::edges_are_unsorted_multi_pass, allEdges.begin(),
                                       allEdges.end(), root + 1);
    std::vector<boost::default_color_type> colours(root + 1, boost::white_color);
    reverseOrder.reserve(root);
    // The sort gives the last vertex first. What it has given when it finds a cycle stays, and
    // later passes walk that.
    auto take = boost::make_function_output_iterator([this, root](vertex index) {
        if (index != root) {
            reverseOrder.push_back(variableOfVertex[index]);
        }
    });
    boost::depth_first_visit(
        dependencies, root, boost::topo_sort_visitor<decltype(take)>(take),
        boost::make_iterator_property_map(colours.begin(), get(boost::vertex_index, dependencies)));
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
    ruleVariable& known = graph->mention(name);
    return known.held != nullptr ? graph->enter(varMap, known)
                                 : graph->enterNew(varMap, known, std::move(info));
}

variable& rule_engine_base::enterVariable(const std::string& name) {
    ruleVariable& known = graph->mention(name);
    graph->enter(varMap, known);
    return *known.held;
}

void rule_engine_base::setVal(std::string name, ruleValue value) {
    enterVariable(name).second.value = std::move(value);
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
                            const std::vector<std::string>& outputs, std::function<void()> body) {
    registerRule(mentionAll(inputs), mentionAll(outputs), std::move(body));
    graph->rules.back().ruleOutputs = outputs;
}

ruleVariable& rule_engine_base::mention(std::string_view name) {
    return graph->mention(name);
}

void rule_engine_base::makeVariables(const std::vector<ruleVariable*>& ascending) {
    // Neighbours come one after the other, so the place behind the last one is mostly right.
    auto place = varMap.begin();
    for (ruleVariable* const made : ascending) {
        if (made->held != nullptr) {
            continue;
        }
        const std::size_t countBefore = varMap.size();
        const auto node = varMap.try_emplace(place, std::move(made->name));
        if (varMap.size() != countBefore) {
            made->held = &*node;
            made->isAwaited = true;
        }
        place = std::next(node);
    }
}

std::vector<ruleVariable*> rule_engine_base::mentionAll(const std::vector<std::string>& names) {
    std::vector<ruleVariable*> all;
    all.reserve(names.size());
    for (const std::string& name : names) {
        all.push_back(&mention(name));
    }
    return all;
}

void rule_engine_base::registerRule(const std::vector<ruleVariable*>& inputs,
                                    const std::vector<ruleVariable*>& outputs,
                                    std::function<void()> body) {
    for (ruleVariable* const output : outputs) {
        graph->enterOutput(varMap, inputs, *output);
    }
    if (outputs.empty()) {
        for (ruleVariable* const input : inputs) {
            graph->enter(varMap, *input);
        }
    }
    graph->rules.push_back({std::move(body), false, {}});
}

void rule_engine_base::registerRule(const std::vector<ruleVariable*>& inputs, ruleVariable& output,
                                    std::function<void()> body) {
    graph->enterOutput(varMap, inputs, output);
    graph->rules.push_back({std::move(body), false, {}});
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
