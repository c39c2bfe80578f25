#include <lanecfg/gt_quad_packing.h>

#include <benchmark/benchmark.h>
#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include <string>

// What the question about a full quad costs beside reading it: four lanes of eight rates each.

namespace {

using sable_lanecfg::gt_db_load;
using sable_lanecfg::gt_quad_packing;

const std::string dataFolder = LANECFG_DATA_FOLDER;
const std::string requestFile = dataFolder + "/requests/pack/full_quad.json";

gt_db_load loadedRequest() {
    const std::string noPart;
    return {{},
            {},
            {},
            {},
            dataFolder + "/SXB/parameters.json",
            requestFile,
            dataFolder + "/SXB/registers.json",
            dataFolder + "/SXB/device.json",
            noPart};
}

/// The whole question: the copies that the object takes, the verdict and the ports.
void pack(benchmark::State& state) {
    const gt_db_load request = loadedRequest();
    for (auto _ : state) {
        gt_quad_packing packing(request.m_channelUsage, request.m_paramTypes, request.m_userParams,
                                request.m_fields, request.m_deviceData);
        if (!packing.canBePacked(false).empty()) {
            state.SkipWithError("the request does not fit");
        }
        auto ports = packing.returnRefclkPorts();
        benchmark::DoNotOptimize(ports);
    }
}

void parseRequest(benchmark::State& state) {
    for (auto _ : state) {
        boost::property_tree::ptree tree;
        boost::property_tree::read_json(requestFile, tree);
        benchmark::DoNotOptimize(tree);
    }
}

BENCHMARK(pack);
BENCHMARK(parseRequest);

}  // namespace
