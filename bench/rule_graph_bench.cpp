#include <lanecfg/rule_engine_base.h>

#include <benchmark/benchmark.h>
#include <boost/container/static_vector.hpp>
#include <oneapi/tbb/flow_graph.h>
#include <oneapi/tbb/global_control.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

// What the rule graph costs beside the one thing that a pass can't do without: the copy of all
// variables into its snapshot.

namespace {

using sable_lanecfg::rule_engine_base;
using sable_lanecfg::ruleValue;
using sable_lanecfg::variable;
using sable_lanecfg::variableMap;

struct RuleShape {
    std::vector<std::string> inputs;
    std::vector<std::string> outputs;

    const std::string& output() const { return outputs.front(); }
};

/// A rule set of the form of a family's: user parameters, then words of eight fields in the order
/// of a catalogue. A field reads a parameter and one of the variables shortly before it, a word
/// reads its fields.
class RuleSet {
  public:
    RuleSet(std::size_t variables, std::size_t parameters) {
        for (std::size_t number = 0; number < parameters; ++number) {
            names_.push_back("PARAMETER_" + std::to_string(number));
        }
        parameters_ = names_;
        for (std::size_t word = 0; names_.size() < variables; ++word) {
            addWord("CH0_REGISTER" + std::to_string(word) + "_CFG", variables);
        }
    }

    const std::vector<std::string>& parameters() const { return parameters_; }
    const std::vector<RuleShape>& rules() const { return rules_; }

  private:
    void addWord(const std::string& word, std::size_t variables) {
        std::vector<std::string> fields;
        for (int number = 0; number < 8 && names_.size() + 1 < variables; ++number) {
            const std::string field = word + ".FIELD" + std::to_string(number);
            const std::size_t firstNear = names_.size() - std::min<std::size_t>(names_.size(), 100);
            rules_.push_back(
                {{nameAmong(0, parameters_.size()), nameAmong(firstNear, names_.size())}, {field}});
            fields.push_back(field);
            names_.push_back(field);
        }
        rules_.push_back({fields, {word}});
        names_.push_back(word);
    }

    const std::string& nameAmong(std::size_t first, std::size_t last) {
        return names_[std::uniform_int_distribution<std::size_t>(first, last - 1)(random_)];
    }

    std::mt19937 random_{1};
    std::vector<std::string> names_;
    std::vector<std::string> parameters_;
    std::vector<RuleShape> rules_;
};

/// The variables of one rule, held.
struct HeldRule {
    void evaluate() const {
        unsigned int result = 1;
        for (const variable* const input : inputs) {
            result = 3 * result + rule_engine_base::valueOf<unsigned int>(*input);
        }
        output->second.value = ruleValue(result);
    }

    boost::container::static_vector<const variable*, 8> inputs;
    variable* output = nullptr;
};

class PassEngine : public rule_engine_base {
  public:
    void runPass() {
        runRules();
        passFlag = !passFlag;
    }

    void enterParameters(const RuleSet& set) {
        for (const std::string& name : set.parameters()) {
            setVal(name, 1U);
        }
    }

    void enterVariables(const RuleSet& set) {
        enterParameters(set);
        for (const RuleShape& rule : set.rules()) {
            addVertex(rule.output(), {});
        }
    }

    void enterRules(const RuleSet& set) {
        for (const RuleShape& shape : set.rules()) {
            rule(shape.inputs, shape.outputs, [] {});
        }
    }

    HeldRule hold(const RuleShape& rule) {
        HeldRule held;
        for (const std::string& name : rule.inputs) {
            held.inputs.push_back(findVariable(name));
        }
        held.output = findVariable(rule.output());
        return held;
    }
};

// The size of a family's rule set.
constexpr std::size_t familyVariables = 2200;
constexpr std::size_t familyParameters = 200;

/// The allocator puts off part of a release until the next large request, which would otherwise be
/// one of those measured.
void settleAllocator() {
    const std::vector<char> large(1U << 16U);
    benchmark::DoNotOptimize(large.data());
}

/// Registering parameters and rules. Every batch registers the same number of variables, in few
/// large rule sets or in many small ones, and keeps all to its end: so the growth is that of the
/// registration, not that of the caches' failure to hold a larger one.
void registration(benchmark::State& state) {
    constexpr std::size_t batchVariables = 32000;
    constexpr std::size_t parameters = 90;
    const auto variables = static_cast<std::size_t>(state.range(0));
    const std::size_t batch = batchVariables / variables;
    std::vector<RuleSet> sets;
    for (std::size_t number = 0; number < batch; ++number) {
        sets.emplace_back(variables, parameters);
    }
    std::vector<PassEngine> engines;
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch))) {
        state.PauseTiming();
        engines.clear();
        engines.resize(batch);
        settleAllocator();
        state.ResumeTiming();
        for (std::size_t number = 0; number < batch; ++number) {
            engines[number].enterParameters(sets[number]);
            engines[number].enterRules(sets[number]);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(registration)->Arg(1000)->Arg(2000)->Arg(4000)->Arg(8000)->Arg(16000)->Arg(32000);

/// The first pass over a registered rule set, which sorts it.
void firstPass(benchmark::State& state) {
    const RuleSet set(familyVariables, familyParameters);
    std::optional<PassEngine> engine;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        engine.emplace();
        engine->enterParameters(set);
        engine->enterRules(set);
        state.ResumeTiming();
        engine->runPass();
    }
}
BENCHMARK(firstPass);

/// One pass whose rule bodies hold their variables.
void pass(benchmark::State& state) {
    const RuleSet set(familyVariables, familyParameters);
    PassEngine engine;
    engine.enterVariables(set);
    for (const RuleShape& rule : set.rules()) {
        engine.rule(rule.inputs, rule.outputs, [held = engine.hold(rule)] { held.evaluate(); });
    }
    for ([[maybe_unused]] auto _ : state) {
        engine.runPass();
        benchmark::ClobberMemory();
    }
}
BENCHMARK(pass);

/// The same pass with every variable looked up by its name.
void passByName(benchmark::State& state) {
    const RuleSet set(familyVariables, familyParameters);
    PassEngine engine;
    engine.enterVariables(set);
    for (const RuleShape& rule : set.rules()) {
        engine.rule(rule.inputs, rule.outputs, [&engine, &rule] {
            unsigned int result = 1;
            for (const std::string& name : rule.inputs) {
                result = 3 * result + engine.getVal<unsigned int>(name);
            }
            engine.setVal(rule.output(), result);
        });
    }
    for ([[maybe_unused]] auto _ : state) {
        engine.runPass();
        benchmark::ClobberMemory();
    }
}
BENCHMARK(passByName);

/// The same rules as nodes of a flow graph that one thread runs.
void flowGraphPass(benchmark::State& state) {
    namespace flow = oneapi::tbb::flow;
    using Node = flow::continue_node<flow::continue_msg>;

    const RuleSet set(familyVariables, familyParameters);
    PassEngine engine;
    engine.enterVariables(set);
    const oneapi::tbb::global_control oneThread(
        oneapi::tbb::global_control::max_allowed_parallelism, 1);
    flow::graph graph;
    flow::broadcast_node<flow::continue_msg> start(graph);
    std::map<std::string, std::unique_ptr<Node>> nodes;
    for (const RuleShape& rule : set.rules()) {
        auto node = std::make_unique<Node>(
            graph, [held = engine.hold(rule)](const flow::continue_msg&) { held.evaluate(); });
        bool isRoot = true;
        for (const std::string& name : rule.inputs) {
            const auto owner = nodes.find(name);
            if (owner != nodes.end()) {
                flow::make_edge(*owner->second, *node);
                isRoot = false;
            }
        }
        if (isRoot) {
            flow::make_edge(start, *node);
        }
        nodes.emplace(rule.output(), std::move(node));
    }
    for ([[maybe_unused]] auto _ : state) {
        start.try_put({});
        graph.wait_for_all();
    }
}
BENCHMARK(flowGraphPass);

/// The snapshot of a pass, without its release.
void snapshotCopy(benchmark::State& state) {
    const RuleSet set(familyVariables, familyParameters);
    PassEngine engine;
    engine.enterVariables(set);
    for (auto& [name, info] : engine.varMap) {
        info.value = ruleValue(1U);
    }
    std::optional<variableMap> snapshot;
    for ([[maybe_unused]] auto _ : state) {
        snapshot.emplace(engine.varMap);
        state.PauseTiming();
        snapshot.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(snapshotCopy);

}  // namespace
