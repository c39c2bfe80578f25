#include "sxb_request_files.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace lanecfg_bench {
namespace {

using nlohmann::json;
using sable_lanecfg::lane_cfg_ip_mgr;

const std::string dataFolder = LANECFG_DATA_FOLDER;

/// Line rates (Gb/s) that the LCPLL reaches from 156.25 MHz.
constexpr std::array<double, 8> lineRates = {10.3125, 5.15625, 2.578125, 25.78125,
                                             12.5,    6.25,    3.125,    1.25};

json requestOf(std::size_t rates) {
    std::ifstream file(dataFolder + "/requests/sxb_10gbase_r.json");
    json request = json::parse(file);
    json& slots = request.at("laneUsage").at(0).at("rates");
    slots = json::array();
    for (std::size_t rate = 0; rate < rates; ++rate) {
        slots.push_back(rate);
    }
    for (json& lanes : request.at("userParams")) {
        for (json& own : lanes) {
            const json first = own.at(0);
            const char* const lineRate =
                first.contains("TX_LINE_RATE") ? "TX_LINE_RATE" : "RX_LINE_RATE";
            own = json(rates, first);
            for (std::size_t rate = 0; rate < rates; ++rate) {
                own.at(rate).at(lineRate) = lineRates.at(rate % lineRates.size());
            }
        }
    }
    return request;
}

}  // namespace

SxbRequestFile::SxbRequestFile(std::size_t rates)
    : path_(std::filesystem::temp_directory_path() /
            ("lanecfg_bench_" + std::to_string(getpid()) + "_" + std::to_string(rates) + ".json")) {
    std::ofstream(path_) << requestOf(rates);
}

SxbRequestFile::~SxbRequestFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

std::array<std::string, 4> SxbRequestFile::files() const {
    return {dataFolder + "/SXB/parameters.json", path_, dataFolder + "/SXB/registers.json",
            dataFolder + "/SXB/device.json"};
}

void initialise(const std::array<std::string, 4>& files) {
    lane_cfg_ip_mgr::initilizeData("quad", "SXB", "live", files[0], files[1], files[2], files[3]);
}

bool runRequest(const std::array<std::string, 4>& files) {
    initialise(files);
    const bool isAnswered = !lane_cfg_ip_mgr::getAttributes("quad", "SXB", "live").empty();
    lane_cfg_ip_mgr::releaseData("quad");
    return isAnswered;
}

}  // namespace lanecfg_bench
