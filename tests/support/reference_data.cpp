#include "support/reference_data.h"

#include "support/temporary_directory.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <algorithm>
#include <utility>

namespace lanecfg_test {

namespace {

namespace fs = std::filesystem;

nlohmann::json parsed(const fs::path& path) {
    return nlohmann::json::parse(readFile(path));
}

std::vector<std::string> sorted(std::vector<std::string> names) {
    std::sort(names.begin(), names.end());
    return names;
}

/// Names of the requests in a folder, with that folder in front.
std::vector<std::string> requestsIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry :
         fs::directory_iterator(dataFolder() / "requests" / folder)) {
        if (entry.path().extension() == ".json") {
            names.push_back(folder + entry.path().stem().string());
        }
    }
    return sorted(std::move(names));
}

}  // namespace

fs::path dataFolder() {
    return LANECFG_DATA_FOLDER;
}

std::vector<std::string> referenceFamilies() {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(dataFolder())) {
        if (fs::exists(entry.path() / "registers.json")) {
            names.push_back(entry.path().filename().string());
        }
    }
    return sorted(std::move(names));
}

std::string referencePath(const std::string& family, const std::string& file) {
    return (dataFolder() / family / file).string();
}

nlohmann::json referenceFile(const std::string& family, const std::string& file) {
    return parsed(referencePath(family, file));
}

sable_lanecfg::gt_db_load referenceDatabase(const std::string& family) {
    // A section without lanes is the smallest set of user parameters that loads.
    const sable_lanecfg::userParamMap noLanes{{"TX_SETTINGS", {}}};
    return {{},
            noLanes,
            {},
            {},
            referencePath(family, "parameters.json"),
            "",
            referencePath(family, "registers.json"),
            referencePath(family, "device.json"),
            ""};
}

std::vector<std::string> bundledRequests() {
    return requestsIn("");
}

std::vector<std::string> packRequests() {
    return requestsIn("pack/");
}

std::string requestPath(const std::string& name) {
    return (dataFolder() / "requests" / (name + ".json")).string();
}

std::string requestPagePath(const std::string& name) {
    return (dataFolder().parent_path() / "docs" / "requests" / (name + ".md")).string();
}

nlohmann::json bundledRequest(const std::string& name) {
    return parsed(requestPath(name));
}

bool isDictionaryForm(const nlohmann::json& request) {
    return request.at("laneUsage").is_object();
}

std::string databaseOf(const nlohmann::json& request) {
    const auto family = request.at("family").get<std::string>();
    const std::string ofSelector = family + "-" + request.at("selector").get<std::string>();
    return fs::exists(dataFolder() / ofSelector) ? ofSelector : family;
}

void initialiseBundledRequest(const std::string& instanceName, const std::string& request) {
    using namespace sable_lanecfg;
    const nlohmann::json content = bundledRequest(request);
    const auto family = content.at("family").get<std::string>();
    const auto selector = content.at("selector").get<std::string>();
    const std::string database = databaseOf(content);
    const std::string types = referencePath(database, "parameters.json");
    const std::string fields = referencePath(database, "registers.json");
    const std::string device = referencePath(database, "device.json");
    if (isDictionaryForm(content)) {
        lane_cfg_ip_mgr::initilizeDataWithDict(
            instanceName, family, selector, content.at("part").get<std::string>(), {},
            content.at("laneUsage").get<laneUsageMap>(),
            content.at("quadUsage").get<quadUsageMap>(),
            content.at("userParams").get<userParamMap>(), types, fields, device);
    } else {
        lane_cfg_ip_mgr::initilizeData(instanceName, family, selector, types, requestPath(request),
                                       fields, device);
    }
}

}  // namespace lanecfg_test
