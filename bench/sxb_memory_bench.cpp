#include "sxb_request_files.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <malloc.h>
#include <new>

// How much memory a whole request of SXB needs at its height, beside its snapshots alone. Every
// allocation of the process is counted, with what the allocator adds to it.

namespace {

std::size_t liveBytes = 0;
std::size_t peakBytes = 0;

void* counted(std::size_t size) {
    void* const memory = std::malloc(size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    liveBytes += malloc_usable_size(memory);
    peakBytes = std::max(peakBytes, liveBytes);
    return memory;
}

void release(void* memory) noexcept {
    liveBytes -= malloc_usable_size(memory);
    std::free(memory);
}

}  // namespace

// The replacement holds for the libraries of the process too.
void* operator new(std::size_t size) {
    return counted(size);
}
void operator delete(void* memory) noexcept {
    release(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    release(memory);
}

namespace {

using lanecfg_bench::SxbRequestFile;
using sable_lanecfg::lane_cfg_ip_mgr;

/// Bytes that an action needs at its height beyond what is held before it.
template <class Action>
double peakOf(const Action& action) {
    const std::size_t before = liveBytes;
    peakBytes = liveBytes;
    action();
    return static_cast<double>(peakBytes - before);
}

void wholeRequest(benchmark::State& state) {
    const SxbRequestFile request(static_cast<std::size_t>(state.range()));
    const auto files = request.files();
    // What the library makes once for all requests is no matter of one.
    lanecfg_bench::runRequest(files);
    for ([[maybe_unused]] auto _ : state) {
        state.counters["peak_bytes"] = peakOf([&] {
            if (!lanecfg_bench::runRequest(files)) {
                state.SkipWithError("the request has no answer");
            }
        });
    }
}

void snapshotsAlone(benchmark::State& state) {
    const SxbRequestFile request(static_cast<std::size_t>(state.range()));
    lanecfg_bench::initialise(request.files());
    const auto snapshots = lane_cfg_ip_mgr::getIPInstance("quad")->getBlockVarMap();
    lane_cfg_ip_mgr::releaseData("quad");
    for ([[maybe_unused]] auto _ : state) {
        state.counters["peak_bytes"] = peakOf([&snapshots] {
            auto copy = snapshots;
            benchmark::DoNotOptimize(copy);
        });
    }
}

BENCHMARK(wholeRequest)->Arg(1)->Arg(4)->Arg(16)->Iterations(1);
BENCHMARK(snapshotsAlone)->Arg(1)->Arg(4)->Arg(16)->Iterations(1);

}  // namespace
