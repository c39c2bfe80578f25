#include "sxb_request_files.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <benchmark/benchmark.h>
#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include <vector>

// What a whole request of SXB costs, from its files to the attributes, beside what it can't do
// without: reading its files and copying the variables of each pass into a snapshot.

namespace {

using lanecfg_bench::SxbRequestFile;
using sable_lanecfg::lane_cfg_ip_mgr;

void wholeRequest(benchmark::State& state) {
    const SxbRequestFile request(static_cast<std::size_t>(state.range()));
    const auto files = request.files();
    for ([[maybe_unused]] auto _ : state) {
        if (!lanecfg_bench::runRequest(files)) {
            state.SkipWithError("the request has no answer");
        }
    }
}

/// The floor of a request: each file read once, the variables of each pass copied once. What it
/// makes is released within the measured time, as that of the request is.
void readAndCopy(benchmark::State& state) {
    const SxbRequestFile request(static_cast<std::size_t>(state.range()));
    const auto files = request.files();
    lanecfg_bench::initialise(files);
    const auto snapshots = lane_cfg_ip_mgr::getIPInstance("quad")->getBlockVarMap();
    lane_cfg_ip_mgr::releaseData("quad");
    for ([[maybe_unused]] auto _ : state) {
        for (const auto& file : files) {
            boost::property_tree::ptree tree;
            boost::property_tree::read_json(file, tree);
            benchmark::DoNotOptimize(tree);
        }
        auto copy = snapshots;
        benchmark::DoNotOptimize(copy);
    }
}

BENCHMARK(wholeRequest)->Arg(1)->Arg(4)->Arg(16);
BENCHMARK(readAndCopy)->Arg(1)->Arg(4)->Arg(16);

}  // namespace
