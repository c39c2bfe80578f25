#include <lanecfg/rule_engine_base.h>

#include <benchmark/benchmark.h>
#include <boost/container/static_vector.hpp>
#include <oneapi/tbb/flow_graph.h>
#include <oneapi/tbb/global_control.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <malloc.h>
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

/// A variable and what its rule reads; a user parameter has no rule and reads nothing.
struct Entry {
    std::vector<std::string> inputs;
    std::vector<std::string> outputs;

    bool isParameter() const { return inputs.empty(); }
    const std::string& name() const { return outputs.front(); }
};

/// A rule set of the form of a family's, in sections of 1,100 variables: 100 user parameters, then
/// words of eight fields in the order of a catalogue. A field reads one of its section's parameters
/// and one of the variables shortly before it, a word reads its fields.
class RuleSet {
  public:
    explicit RuleSet(std::size_t variables) {
        while (entries_.size() < variables) {
            const std::size_t place = entries_.size() % sectionVariables;
            if (place < sectionParameters) {
                parameters_.push_back("PARAMETER_" + std::to_string(entries_.size()));
                entries_.push_back({{}, {parameters_.back()}});
            } else {
                addWord(std::min(variables, entries_.size() - place + sectionVariables));
            }
        }
    }

    const std::vector<Entry>& entries() const { return entries_; }

  private:
    static constexpr std::size_t sectionVariables = 1100;
    static constexpr std::size_t sectionParameters = 100;

    /// Adds as many of a word's fields as there is room for before `end`, and the word.
    void addWord(std::size_t end) {
        const std::string word = "CH0_REGISTER" + std::to_string(entries_.size()) + "_CFG";
        std::vector<std::string> fields;
        for (int number = 0; number < 8 && entries_.size() + 1 < end; ++number) {
            fields.push_back(word + ".FIELD" + std::to_string(number));
            const std::string parameter = *(parameters_.end() - oneOfLast(sectionParameters));
            const std::string nearby = (entries_.end() - oneOfLast(100))->name();
            entries_.push_back({{parameter, nearby}, {fields.back()}});
        }
        entries_.push_back({fields.empty() ? std::vector{parameters_.back()} : fields, {word}});
    }

    std::ptrdiff_t oneOfLast(std::ptrdiff_t count) {
        return std::uniform_int_distribution<std::ptrdiff_t>(1, count)(random_);
    }

    std::mt19937 random_{1};
    std::vector<std::string> parameters_;
    std::vector<Entry> entries_;
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

    void enterVariables(const RuleSet& set) {
        for (const Entry& entry : set.entries()) {
            setVal(entry.name(), 1U);
        }
    }

    /// Registers the rules, with the body that `bodyOf(entry)` gives.
    template <class BodyOf>
    void enterRules(const RuleSet& set, const BodyOf& bodyOf) {
        for (const Entry& entry : set.entries()) {
            if (entry.isParameter()) {
                setVal(entry.name(), 1U);
            } else {
                rule(entry.inputs, entry.outputs, bodyOf(entry));
            }
        }
    }

    HeldRule hold(const Entry& entry) {
        HeldRule held;
        for (const std::string& name : entry.inputs) {
            held.inputs.push_back(findVariable(name));
        }
        held.output = findVariable(entry.name());
        return held;
    }
};

/// A body that does nothing.
std::function<void()> idle(const Entry& /*entry*/) {
    return [] {};
}

// The size of a family's rule set: 200 parameters and 2,000 rules.
constexpr std::size_t familyVariables = 2200;

/// Registering parameters and rules. Every batch registers the same number of variables, in few
/// large rule sets or in many small ones, keeps all to its end, and starts with fresh memory, as a
/// process does that registers its rule set once: so the growth is that of the registration, not
/// that of the caches' and the allocator's failure to hold a larger one.
void registration(benchmark::State& state) {
    constexpr std::size_t batchVariables = 32000;
    const auto variables = static_cast<std::size_t>(state.range(0));
    const std::size_t batch = batchVariables / variables;
    std::vector<RuleSet> sets;
    for (std::size_t number = 0; number < batch; ++number) {
        sets.emplace_back(variables);
    }
    std::vector<PassEngine> engines;
    while (state.KeepRunningBatch(static_cast<benchmark::IterationCount>(batch))) {
        state.PauseTiming();
        engines.clear();
        engines.resize(batch);
        malloc_trim(0);
        state.ResumeTiming();
        for (std::size_t number = 0; number < batch; ++number) {
            engines[number].enterRules(sets[number], idle);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(registration)->Arg(1000)->Arg(2000)->Arg(4000)->Arg(8000)->Arg(16000)->Arg(32000);

/// The first pass over a registered rule set, which sorts it.
void firstPass(benchmark::State& state) {
    const RuleSet set(familyVariables);
    std::optional<PassEngine> engine;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        engine.emplace();
        engine->enterRules(set, idle);
        state.ResumeTiming();
        engine->runPass();
    }
}
BENCHMARK(firstPass);

/// One pass whose rule bodies hold their variables.
void pass(benchmark::State& state) {
    const RuleSet set(familyVariables);
    PassEngine engine;
    engine.enterVariables(set);
    engine.enterRules(set, [&engine](const Entry& entry) {
        return [held = engine.hold(entry)] { held.evaluate(); };
    });
    for ([[maybe_unused]] auto _ : state) {
        engine.runPass();
        benchmark::ClobberMemory();
    }
}
BENCHMARK(pass);

/// The same pass with every variable looked up by its name.
void passByName(benchmark::State& state) {
    const RuleSet set(familyVariables);
    PassEngine engine;
    engine.enterRules(set, [&engine](const Entry& entry) {
        return [&engine, &entry] {
            unsigned int result = 1;
            for (const std::string& name : entry.inputs) {
                result = 3 * result + engine.getVal<unsigned int>(name);
            }
            engine.setVal(entry.name(), result);
        };
    });
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

    const RuleSet set(familyVariables);
    PassEngine engine;
    engine.enterVariables(set);
    const oneapi::tbb::global_control oneThread(
        oneapi::tbb::global_control::max_allowed_parallelism, 1);
    flow::graph graph;
    flow::broadcast_node<flow::continue_msg> start(graph);
    std::map<std::string, std::unique_ptr<Node>> nodes;
    for (const Entry& entry : set.entries()) {
        if (entry.isParameter()) {
            continue;
        }
        auto node = std::make_unique<Node>(
            graph, [held = engine.hold(entry)](const flow::continue_msg&) { held.evaluate(); });
        bool isFirst = true;
        for (const std::string& name : entry.inputs) {
            const auto owner = nodes.find(name);
            if (owner != nodes.end()) {
                flow::make_edge(*owner->second, *node);
                isFirst = false;
            }
        }
        if (isFirst) {
            flow::make_edge(start, *node);
        }
        nodes.emplace(entry.name(), std::move(node));
    }
    for ([[maybe_unused]] auto _ : state) {
        start.try_put({});
        graph.wait_for_all();
    }
}
BENCHMARK(flowGraphPass);

/// The snapshot of a pass, without its release.
void snapshotCopy(benchmark::State& state) {
    const RuleSet set(familyVariables);
    PassEngine engine;
    engine.enterVariables(set);
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
