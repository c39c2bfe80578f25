#include <lanecfg/gt_quad_packing.h>
#include <lanecfg/lane_cfg_ip_mgr.h>
#include <lanecfg/rule_engine_utilities.h>

#include <algorithm>
#include <memory>

namespace sable_lanecfg {

namespace {

/// What the host gives to both queries.
struct packingRequest {
    const std::string& partName;
    const textMap& options;
    const laneUsageMap& laneUsage;
    const userParamMap& userParams;
    const std::string& userParameterTypesFile;
    const std::string& fieldsFile;
    const std::string& deviceDataFile;
};

/// The packing of a request, null when its user parameters are unusable.
std::unique_ptr<gt_quad_packing> packingOf(const packingRequest& request) {
    const std::string noParametersFile;
    const gt_db_load database(request.options, request.userParams, request.laneUsage,
                              quadUsageMap(), request.userParameterTypesFile, noParametersFile,
                              request.fieldsFile, request.deviceDataFile, request.partName);
    if (!database.m_loaded) {
        return nullptr;
    }
    return std::make_unique<gt_quad_packing>(database.m_channelUsage, database.m_paramTypes,
                                             database.m_userParams, database.m_fields,
                                             database.m_deviceData);
}

bool hasFault(const std::map<int, std::string>& messages) {
    return std::any_of(messages.begin(), messages.end(), [](const auto& message) {
        return message.second.find("ERROR caught") != std::string::npos;
    });
}

}  // namespace

std::map<std::string, std::string> lane_cfg_ip_mgr::canBePacked(
    const std::string& /*instanceName*/, const std::string& /*family*/,
    const std::string& /*selector*/, const std::string& partName, const textMap& options,
    const laneUsageMap& laneUsage, const userParamMap& userParams,
    const std::string& userParameterTypesFile, const std::string& fieldsFile,
    const std::string& deviceDataFile, bool logErrors) {
    std::map<std::string, std::string> result;
    const auto packing = packingOf({partName, options, laneUsage, userParams,
                                    userParameterTypesFile, fieldsFile, deviceDataFile});
    if (packing != nullptr) {
        for (const auto& [number, text] : packing->canBePacked(logErrors)) {
            result[rule_engine_utilities::getString(number)] = text;
        }
    }
    return result;
}

std::map<std::string, std::string> lane_cfg_ip_mgr::getRefClkPorts(
    const std::string& /*instanceName*/, const std::string& /*family*/,
    const std::string& /*selector*/, const std::string& partName, const textMap& options,
    const laneUsageMap& laneUsage, const userParamMap& userParams,
    const std::string& userParameterTypesFile, const std::string& fieldsFile,
    const std::string& deviceDataFile, bool logErrors) {
    const auto packing = packingOf({partName, options, laneUsage, userParams,
                                    userParameterTypesFile, fieldsFile, deviceDataFile});
    if (packing == nullptr) {
        return {};
    }
    if (hasFault(packing->canBePacked(logErrors))) {
        return {{"0", "ERROR caught"}};
    }
    return packing->returnRefclkPorts();
}

}  // namespace sable_lanecfg
