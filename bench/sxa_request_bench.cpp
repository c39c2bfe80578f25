#include <lanecfg/lane_cfg_ip_mgr.h>

#include <benchmark/benchmark.h>
#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include <array>
#include <string>
#include <vector>

// What a whole request costs beside what it can't do without: reading its files and copying the
// variables of each pass into a snapshot.

namespace {

using sable_lanecfg::lane_cfg_ip_mgr;
using snapshotTable = std::vector<std::vector<sable_lanecfg::variableMap>>;

const std::string dataFolder = LANECFG_DATA_FOLDER;

/// Parameter types, request, fields and device data, in the order of the manager's arguments.
std::array<std::string, 4> filesOf(const std::string& request) {
    return {dataFolder + "/SXA/parameters.json", dataFolder + "/requests/" + request,
            dataFolder + "/SXA/registers.json", dataFolder + "/SXA/device.json"};
}

void initialise(const std::array<std::string, 4>& files) {
    lane_cfg_ip_mgr::initilizeData("quad", "SXA", "live", files[0], files[1], files[2], files[3]);
}

void wholeRequest(benchmark::State& state, const std::string& request) {
    const auto files = filesOf(request);
    for (auto _ : state) {
        initialise(files);
        auto attributes = lane_cfg_ip_mgr::getAttributes("quad", "SXA", "live");
        if (attributes.empty()) {
            state.SkipWithError("the request has no answer");
        }
        benchmark::DoNotOptimize(attributes);
        lane_cfg_ip_mgr::releaseData("quad");
    }
}

void readJson(const std::array<std::string, 4>& files) {
    for (const std::string& file : files) {
        boost::property_tree::ptree tree;
        boost::property_tree::read_json(file, tree);
        benchmark::DoNotOptimize(tree);
    }
}

/// The bound of a whole request: its files read twice, its snapshots copied once.
void readTwiceAndCopy(benchmark::State& state, const std::string& request) {
    const auto files = filesOf(request);
    initialise(files);
    const snapshotTable snapshots = lane_cfg_ip_mgr::getIPInstance("quad")->getBlockVarMap();
    lane_cfg_ip_mgr::releaseData("quad");
    for (auto _ : state) {
        readJson(files);
        readJson(files);
        snapshotTable copy = snapshots;
        benchmark::DoNotOptimize(copy);
    }
}

BENCHMARK_CAPTURE(wholeRequest, basic, std::string("sxa_basic.json"));
BENCHMARK_CAPTURE(readTwiceAndCopy, basic, std::string("sxa_basic.json"));
BENCHMARK_CAPTURE(wholeRequest, multiRate, std::string("sxa_multi_rate.json"));
BENCHMARK_CAPTURE(readTwiceAndCopy, multiRate, std::string("sxa_multi_rate.json"));

}  // namespace
