#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_rules.h"

#include <lanecfg/gt_db_load.h>
#include <lanecfg/gt_rule_engine.h>

#include <benchmark/benchmark.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// What the 1909 rules of SXB cost beside the copy of all their variables into a snapshot.

namespace {

using namespace sable_lanecfg;

class SxbEngine : public gt_rule_engine_live {
  public:
    explicit SxbEngine(const gt_db_load& database, const userParamStore& params)
        : gt_rule_engine_live("SXB", {}, database.m_paramTypes, params, database.m_fields,
                              database.m_deviceData) {}

    void registerRules() {
        registerSxbRxRules(*this);
        registerSxbTxRules(*this);
        registerSxbPllRules(*this);
    }

    void runPass() {
        runRules();
        passFlag = !passFlag;
    }
};

gt_db_load sxbDatabase() {
    const std::string folder = std::string(LANECFG_DATA_FOLDER) + "/SXB/";
    return gt_db_load({}, userParamMap{{"TX_SETTINGS", {}}}, {}, {}, folder + "parameters.json", "",
                      folder + "registers.json", folder + "device.json", "");
}

/// One rate of 10.3125 Gb/s at 156.25 MHz on the first lane, in both directions.
userParamStore oneRate() {
    const std::vector<double> candidates{10.3125};
    userParamStore params(2, std::vector<std::vector<std::map<std::string, ruleValue>>>(4));
    params[0][0] = {{{"TX_LINE_RATE", 10.3125},
                     {"TX_LCPLL_PLLCLKOUT_FREQ_VECTOR", candidates},
                     {"TX_LCPLL_REFCLK_FREQUENCY", 156.25}}};
    params[1][0] = {{{"RX_LINE_RATE", 10.3125},
                     {"RX_LCPLL_PLLCLKOUT_FREQ_VECTOR", candidates},
                     {"RX_LCPLL_REFCLK_FREQUENCY", 156.25}}};
    return params;
}

/// An engine that has run its passes, so that all inputs of the rules have values.
std::unique_ptr<SxbEngine> finishedEngine(const gt_db_load& database) {
    auto engine = std::make_unique<SxbEngine>(database, oneRate());
    engine->registerRules();
    engine->runBlockRules();
    return engine;
}

void pass(benchmark::State& state) {
    const auto engine = finishedEngine(sxbDatabase());
    for ([[maybe_unused]] auto _ : state) {
        engine->runPass();
        benchmark::ClobberMemory();
    }
}
BENCHMARK(pass);

void snapshotCopy(benchmark::State& state) {
    const auto engine = finishedEngine(sxbDatabase());
    for ([[maybe_unused]] auto _ : state) {
        variableMap copy = engine->varMap;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(snapshotCopy);

/// Registering all rules, and the first pass, which sorts them.
void registerAndSort(benchmark::State& state) {
    const gt_db_load database = sxbDatabase();
    const auto finished = finishedEngine(database);
    std::optional<SxbEngine> engine;
    for ([[maybe_unused]] auto _ : state) {
        state.PauseTiming();
        engine.emplace(database, oneRate());
        for (const auto& [name, info] : finished->varMap) {
            if (!info.ruleNumber) {
                engine->setVal(name, info.value);
            }
        }
        state.ResumeTiming();
        engine->registerRules();
        engine->runPass();
    }
}
BENCHMARK(registerAndSort);

}  // namespace
