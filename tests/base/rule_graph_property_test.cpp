#include "base/rule_engine_fixture.h"

#include <lanecfg/rule_engine_base.h>

#include <boost/graph/adjacency_list.hpp>
#include <boost/graph/topological_sort.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <list>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

// Random rule sets against a plain model of the graph: names are looked up by walking the
// vertices, nothing is held, and the order comes straight from the graph library.

namespace {

using lanecfg_test::PassEngine;
using sable_lanecfg::varInfo;
using testing::IsEmpty;

using modelGraph = boost::adjacency_list<boost::vecS, boost::vecS, boost::bidirectionalS,
                                         boost::property<boost::vertex_name_t, std::string>,
                                         boost::no_property, boost::no_property, boost::listS>;
using vertex = modelGraph::vertex_descriptor;

struct Rule {
    std::vector<std::string> inputs;
    std::vector<std::string> outputs;
};

class Model {
  public:
    /// A name that only a lookup in the variable map created.
    void enterWithoutVertex(const std::string& name) { known_.insert(name); }

    vertex addVertex(const std::string& name) {
        if (known_.insert(name).second) {
            const vertex added = boost::add_vertex(graph_);
            boost::put(boost::vertex_name, graph_, added, name);
            return added;
        }
        const auto [first, last] = boost::vertices(graph_);
        return *std::find_if(first, last, [&](vertex v) { return nameOf(v) == name; });
    }

    void addRule(const Rule& rule) {
        for (const std::string& output : rule.outputs) {
            const vertex written = addVertex(output);
            owners_[output] = rules_;
            for (const std::string& input : rule.inputs) {
                boost::add_edge(addVertex(input), written, graph_);
            }
        }
        if (rule.outputs.empty()) {
            std::for_each(rule.inputs.begin(), rule.inputs.end(),
                          [this](const std::string& input) { addVertex(input); });
        }
        ++rules_;
    }

    /// The sorted vertices; what was sorted before the fault when there is a cycle.
    std::pair<std::list<vertex>, bool> sorted() const {
        std::list<vertex> order;
        try {
            boost::topological_sort(graph_, std::front_inserter(order));
        } catch (const boost::not_a_dag&) {
            return {order, false};
        }
        return {order, true};
    }

    /// Numbers of the rules in the order in which a pass over these vertices runs them.
    std::vector<std::size_t> rulesInOrder(const std::list<vertex>& order) const {
        std::vector<std::size_t> result;
        for (const vertex v : order) {
            const auto owner = owners_.find(nameOf(v));
            if (owner != owners_.end() &&
                std::find(result.begin(), result.end(), owner->second) == result.end()) {
                result.push_back(owner->second);
            }
        }
        return result;
    }

    std::set<std::size_t> owningRules() const {
        std::set<std::size_t> result;
        for (const auto& [name, owner] : owners_) {
            result.insert(owner);
        }
        return result;
    }

    std::optional<std::size_t> ownerOf(const std::string& name) const {
        const auto owner = owners_.find(name);
        return owner == owners_.end() ? std::nullopt : std::optional(owner->second);
    }

    std::string nameOf(vertex v) const { return boost::get(boost::vertex_name, graph_, v); }

    std::size_t vertexCount() const { return boost::num_vertices(graph_); }

  private:
    modelGraph graph_;
    std::set<std::string> known_;
    std::map<std::string, std::size_t> owners_;
    std::size_t rules_ = 0;
};

class Random {
  public:
    explicit Random(unsigned seed) : engine_(seed) {}

    std::size_t below(std::size_t bound) {
        return std::uniform_int_distribution<std::size_t>(0, bound - 1)(engine_);
    }

    bool chance(double probability) { return std::bernoulli_distribution(probability)(engine_); }

    template <class T>
    void shuffle(std::vector<T>& items) {
        std::shuffle(items.begin(), items.end(), engine_);
    }

    /// Up to `most` of the names from `first` to before `last`, repetitions and all.
    std::vector<std::string> names(const std::vector<std::string>& all, std::size_t first,
                                   std::size_t last, std::size_t most) {
        std::vector<std::string> result(first < last ? below(most + 1) : 0);
        std::generate(result.begin(), result.end(),
                      [&] { return all[first + below(last - first)]; });
        return result;
    }

  private:
    std::mt19937 engine_;
};

std::vector<std::string> shuffledNames(Random& random, std::size_t count) {
    std::vector<std::string> names;
    for (std::size_t number = 0; number < count; ++number) {
        names.push_back("V" + std::to_string(number));
    }
    random.shuffle(names);
    return names;
}

/// Rules that write only behind what they read in a hidden order of the names: no cycle. Several
/// write the same output, some read or write nothing.
std::vector<Rule> acyclicRules(Random& random, const std::vector<std::string>& names) {
    std::vector<Rule> rules(1 + random.below(2 * names.size()));
    for (Rule& rule : rules) {
        const std::size_t border = random.below(names.size() + 1);
        rule.inputs = random.names(names, 0, border, 4);
        rule.outputs = random.names(names, border, names.size(), 3);
    }
    return rules;
}

std::vector<Rule> anyRules(Random& random, const std::vector<std::string>& names) {
    std::vector<Rule> rules(1 + random.below(names.size()));
    for (Rule& rule : rules) {
        rule.inputs = random.names(names, 0, names.size(), 2);
        rule.outputs = random.names(names, 0, names.size(), 2);
    }
    return rules;
}

/// An engine and the model of it, built by the same calls.
class ModelledEngine {
  public:
    void enterWithoutVertex(const std::string& name) {
        engine.getValAsString(name);
        model.enterWithoutVertex(name);
    }

    void addRule(const Rule& rule) {
        const std::size_t number = rules.size();
        rules.push_back(rule);
        engine.rule(rule.inputs, rule.outputs, [this, number] { ran.push_back(number); });
        model.addRule(rule);
    }

    std::vector<std::size_t> runPass() {
        ran.clear();
        engine.runRules();
        return ran;
    }

    PassEngine engine;
    Model model;
    std::vector<Rule> rules;
    std::vector<std::size_t> ran;
};

/// A seeded source of names and an empty engine to register rules in.
struct RandomCase {
    explicit RandomCase(unsigned seed) : random(seed) {}

    void addRules(const std::vector<Rule>& rules) {
        for (const Rule& rule : rules) {
            modelled.addRule(rule);
        }
    }

    void enterSomeWithoutVertex() {
        for (const std::string& name : random.names(names, 0, names.size(), 3)) {
            modelled.enterWithoutVertex(name);
        }
    }

    void expectSameVertex(const std::string& name) {
        EXPECT_EQ(engine.addVertex(name, varInfo()), model.addVertex(name)) << name;
    }

    Random random;
    std::vector<std::string> names = shuffledNames(random, 1 + random.below(60));
    ModelledEngine modelled;
    PassEngine& engine = modelled.engine;
    Model& model = modelled.model;
};

constexpr unsigned caseCount = 300;

template <class Check>
void forEachCase(Check check) {
    for (unsigned seed = 1; seed <= caseCount; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomCase tested(seed);
        check(tested);
    }
}

TEST(RandomRuleSets, RunEachRuleThatOwnsAVariableOnceAPassAndNoOther) {
    forEachCase([](RandomCase& tested) {
        tested.addRules(acyclicRules(tested.random, tested.names));
        const std::set<std::size_t> owning = tested.model.owningRules();

        for (int pass = 0; pass < 3; ++pass) {
            const std::vector<std::size_t> ran = tested.modelled.runPass();
            EXPECT_EQ(ran.size(), owning.size());
            EXPECT_EQ(std::set<std::size_t>(ran.begin(), ran.end()), owning);
            EXPECT_THAT(tested.modelled.runPass(), IsEmpty());
            tested.engine.flip();
        }
    });
}

TEST(RandomRuleSets, RunEachRuleAfterAllThatItReads) {
    forEachCase([](RandomCase& tested) {
        tested.addRules(acyclicRules(tested.random, tested.names));
        const std::vector<std::size_t> ran = tested.modelled.runPass();

        for (auto current = ran.begin(); current != ran.end(); ++current) {
            for (const std::string& input : tested.modelled.rules[*current].inputs) {
                const auto owner = tested.model.ownerOf(input);
                EXPECT_TRUE(!owner || std::find(ran.begin(), current, *owner) != current)
                    << "rule " << *current << " reads " << input << " before it is written";
            }
        }
    });
}

TEST(RandomRuleSets, RunInTheOrderOfTheGraphLibrary) {
    forEachCase([](RandomCase& tested) {
        tested.addRules(acyclicRules(tested.random, tested.names));
        const auto [order, isComplete] = tested.model.sorted();

        ASSERT_TRUE(isComplete);
        EXPECT_EQ(tested.modelled.runPass(), tested.model.rulesInOrder(order));
    });
}

TEST(RandomRuleSets, NumberTheirVerticesAsAWalkOverAllNamesDoes) {
    forEachCase([](RandomCase& tested) {
        tested.enterSomeWithoutVertex();
        for (const Rule& rule : anyRules(tested.random, tested.names)) {
            tested.modelled.addRule(rule);
            tested.expectSameVertex(tested.names[tested.random.below(tested.names.size())]);
        }

        for (const std::string& name : tested.names) {
            tested.expectSameVertex(name);
        }
        tested.expectSameVertex("one more");
    });
}

TEST(RandomRuleSets, WithCyclesOrUnnamedVerticesRunWhatTheGraphLibraryCouldSort) {
    int cycles = 0;
    forEachCase([&cycles](RandomCase& tested) {
        tested.enterSomeWithoutVertex();
        tested.addRules(anyRules(tested.random, tested.names));
        const auto [order, isComplete] = tested.model.sorted();

        if (!isComplete) {
            ++cycles;
            EXPECT_THROW(tested.modelled.runPass(), boost::not_a_dag);
        }
        if (!order.empty()) {
            EXPECT_EQ(tested.modelled.runPass(), tested.model.rulesInOrder(order));
        }
    });
    // Both kinds were among the cases.
    EXPECT_GT(cycles, 0);
    EXPECT_LT(cycles, static_cast<int>(caseCount));
}

TEST(RandomRuleSets, RegisteredAfterPassesRunByTheParityOfTheirNumber) {
    forEachCase([](RandomCase& tested) {
        tested.modelled.addRule({{}, {tested.names.front()}});  // so that there is a vertex
        tested.addRules(acyclicRules(tested.random, tested.names));
        const auto order = tested.model.sorted().first;
        const std::size_t passes = 1 + tested.random.below(4);
        for (std::size_t pass = 0; pass < passes; ++pass) {
            tested.modelled.runPass();
            tested.engine.flip();
        }
        const std::size_t late = tested.modelled.rules.size();
        const vertex taken = tested.random.below(tested.model.vertexCount());
        tested.modelled.addRule({{}, {tested.model.nameOf(taken)}});

        const std::vector<std::size_t> all = tested.model.rulesInOrder(order);
        std::vector<std::size_t> withoutLate = all;
        withoutLate.erase(std::find(withoutLate.begin(), withoutLate.end(), late));
        EXPECT_EQ(tested.modelled.runPass(), passes % 2 == 1 ? withoutLate : all);
        tested.engine.flip();
        EXPECT_EQ(tested.modelled.runPass(), all);
    });
}

TEST(RandomRuleSets, KeepEveryValueThatAPassDoesNotWrite) {
    forEachCase([](RandomCase& tested) {
        std::map<std::string, unsigned int> expected;
        unsigned int written = 0;
        bool isEachWritten = true;
        for (const Rule& rule : acyclicRules(tested.random, tested.names)) {
            tested.engine.rule(rule.inputs, rule.outputs, [&, rule] {
                for (const std::string& output : rule.outputs) {
                    if (isEachWritten || tested.random.chance(0.5)) {
                        expected[output] = ++written;
                        tested.engine.setVal(output, written);
                    }
                }
            });
        }
        for (int pass = 0; pass < 4; ++pass) {
            tested.engine.runRules();
            tested.engine.flip();
            isEachWritten = false;
            for (const auto& [name, value] : expected) {
                EXPECT_EQ(tested.engine.getVal<unsigned int>(name), value) << name;
            }
        }
    });
}

}  // namespace
