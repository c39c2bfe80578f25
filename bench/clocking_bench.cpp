#include <lanecfg/rule_engine_utilities.h>

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>

// Calls per second of the clocking math, which a host makes at every edit of a parameter and the
// packing for every pair of channels.

namespace {

using utilities = sable_lanecfg::rule_engine_utilities;

constexpr double wantedClock = 156.25;
constexpr float userDataWidth = 32.0F;
constexpr double internalDataWidth = 64.0;
constexpr int nrz = 1;

/// Line rates (Gb/s) from both ends and the middle of what a PLL reaches, so that no single one
/// decides.
constexpr std::array<double, 5> lineRates = {1.25, 5.0, 10.3125, 16.375, 25.78125};

/// Calls the function with one line rate after the other.
template <class Function>
void callEach(benchmark::State& state, const Function& function) {
    std::size_t next = 0;
    for ([[maybe_unused]] auto _ : state) {
        auto result = function(lineRates[next]);
        benchmark::DoNotOptimize(result);
        next = (next + 1) % lineRates.size();
    }
    state.SetItemsProcessed(state.iterations());
}

void calculateActualRefclk(benchmark::State& state, const char* pll) {
    callEach(state, [pll](double lineRate) {
        return utilities::calculateActualRefclk(lineRate, wantedClock, pll);
    });
}
BENCHMARK_CAPTURE(calculateActualRefclk, lcpll, "LCPLL");
BENCHMARK_CAPTURE(calculateActualRefclk, rpll, "RPLL");

void calculateActualRefclkSxd(benchmark::State& state) {
    callEach(state, [](double lineRate) {
        return utilities::calculateActualRefclk_SXD(lineRate, wantedClock);
    });
}
BENCHMARK(calculateActualRefclkSxd);

void fracNEnable(benchmark::State& state) {
    callEach(state, [](double lineRate) {
        return utilities::fracNEnable(lineRate, wantedClock, "LCPLL");
    });
}
BENCHMARK(fracNEnable);

void fracNEnableSxd(benchmark::State& state) {
    callEach(state,
             [](double lineRate) { return utilities::fracNEnable_SXD(lineRate, wantedClock); });
}
BENCHMARK(fracNEnableSxd);

/// The dividers behind the PLL of the line, or, with another source, behind an RPLL that runs none.
void findTxOutclkList(benchmark::State& state, const char* source) {
    callEach(state, [source](double lineRate) {
        return utilities::findTXOUTCLKlist(lineRate, wantedClock, "LCPLL", "LCPLL", source,
                                           userDataWidth, "RAW", "1");
    });
}
BENCHMARK_CAPTURE(findTxOutclkList, ownPll, "LCPLL");
BENCHMARK_CAPTURE(findTxOutclkList, freeRpll, "RPLL");

void findRxOutclkList(benchmark::State& state) {
    callEach(state, [](double lineRate) {
        return utilities::findRXOUTCLKlist(lineRate, "LCPLL", userDataWidth, "RAW", "1");
    });
}
BENCHMARK(findRxOutclkList);

void findTxOutclkListSxd(benchmark::State& state) {
    callEach(state, [](double lineRate) {
        return utilities::findTXOUTCLKlist_SXD(lineRate, nrz, internalDataWidth);
    });
}
BENCHMARK(findTxOutclkListSxd);

void findRxOutclkListSxd(benchmark::State& state) {
    callEach(state, [](double lineRate) {
        return utilities::findRXOUTCLKlist_SXD(lineRate, nrz, internalDataWidth);
    });
}
BENCHMARK(findRxOutclkListSxd);

}  // namespace
