#include <lanecfg/gt_rule_engine.h>

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

// What a rate table costs: in rates, to which it must be proportional, and beside one walk over the
// snapshots, which every comparison of registers needs. A copy of the snapshots alone would be
// several walks. The snapshots of four channels of 64 rates are 85 MB, more than processors keep
// near: what their tables cost beyond proportion is the way to memory.

namespace {

using sable_lanecfg::channelUsageInfo;
using sable_lanecfg::gt_rule_engine_live;
using sable_lanecfg::ruleValue;
using sable_lanecfg::variableMap;

constexpr unsigned int registers = 250;
// As many fields as the registers of the bundled families have on average.
constexpr unsigned int fieldsOfRegister = 7;
// One register in this many differs between the rates.
constexpr unsigned int criticalSpacing = 5;

std::string numbered(const char* format, unsigned int number) {
    char text[32];
    (void)std::snprintf(text, sizeof text, format, number);
    return text;
}

std::string registerName(unsigned int number) {
    return numbered("LANE_LOGIC_CFG%03u", number);
}

/// Most registers are a channel's own, some are a dual's or the quad's.
const char* blockTypeOf(unsigned int number) {
    if (number % 25 == 3) {
        return "hs_clk_0";
    }
    return number % 25 == 7 ? "ctrl_0" : "channel";
}

unsigned int valueOf(unsigned int number, unsigned int rate) {
    const unsigned int word = number * 0x01010101U;
    return number % criticalSpacing == 0 ? word + rate : word;
}

void enter(variableMap& variables, const std::string& name, unsigned int value) {
    variables.insert_or_assign(name, sable_lanecfg::varInfo{{}, ruleValue(value)});
}

/// The variables of an engine, from which each pass takes its snapshot.
variableMap allVariables() {
    variableMap variables;
    for (unsigned int number = 0; number < registers; ++number) {
        const std::string name = registerName(number);
        enter(variables, name, 0);
        for (unsigned int field = 0; field < fieldsOfRegister; ++field) {
            enter(variables, name + numbered(".LOGIC_FIELD_%u", field), field);
        }
    }
    return variables;
}

void setRegisters(variableMap& variables, unsigned int rate) {
    enter(variables, "TX", rate);
    enter(variables, "RX", rate);
    for (unsigned int number = 0; number < registers; ++number) {
        enter(variables, registerName(number), valueOf(number, rate));
    }
}

channelUsageInfo usageOf(int channel) {
    const std::string net(1, static_cast<char>('A' + channel));
    channelUsageInfo usage;
    usage.tx = usage.rx = {channel};
    usage.txrate = usage.rxrate = {net};
    return usage;
}

/// Channels and the rates of each, as a benchmark is given them.
struct extent {
    int channels;
    unsigned int rates;
};

extent extentOf(const benchmark::State& state) {
    return {static_cast<int>(state.range(0)), static_cast<unsigned int>(state.range(1))};
}

/// A quad that has run: duplex channels, each with a table of its own.
class RunQuad : public gt_rule_engine_live {
  public:
    explicit RunQuad(const extent& run) : gt_rule_engine_live("SXB", {}, {}, {}, {}, {}) {
        for (unsigned int number = 0; number < registers; ++number) {
            attributes[registerName(number)] = {blockTypeOf(number), {}, numbered("%x", number)};
        }
        variableMap variables = allVariables();
        for (int channel = 0; channel < run.channels; ++channel) {
            channelUsage.push_back(usageOf(channel));
            std::vector<variableMap>& passes = blockVarMap.emplace_back();
            for (unsigned int rate = 0; rate < run.rates; ++rate) {
                setRegisters(variables, rate);
                passes.push_back(variables);
            }
        }
    }
};

/// The whole table as text, with the list of registers that no rate changes.
void generation(benchmark::State& state) {
    RunQuad quad(extentOf(state));
    std::size_t characters = 0;
    for ([[maybe_unused]] auto _ : state) {
        characters = quad.generateRateTable(true).size();
    }
    state.counters["characters"] = static_cast<double>(characters);
    state.SetItemsProcessed(state.iterations() * state.range(0) * state.range(1));
}
BENCHMARK(generation)->ArgNames({"channels", "rates"})->ArgsProduct({{1, 4}, {1, 4, 16, 64}});

/// One look at the name and the value of every variable of every snapshot.
void snapshotWalk(benchmark::State& state) {
    const RunQuad quad(extentOf(state));
    for ([[maybe_unused]] auto _ : state) {
        std::size_t seen = 0;
        for (const std::vector<variableMap>& passes : quad.blockVarMap) {
            for (const variableMap& snapshot : passes) {
                for (const auto& [name, info] : snapshot) {
                    seen += static_cast<unsigned char>(name.back());
                    seen += static_cast<std::size_t>(info.value.which());
                }
            }
        }
        benchmark::DoNotOptimize(seen);
    }
}
BENCHMARK(snapshotWalk)->ArgNames({"channels", "rates"})->ArgsProduct({{4}, {16, 64}});

}  // namespace
