#include <lanecfg/gt_db_load.h>
#include <lanecfg/host/ToolMsgMgr.h>
#include <lanecfg/host/ToolPart.h>
#include <lanecfg/rule_engine_utilities.h>

#include <boost/format.hpp>

#include <memory>
#include <new>

namespace sable_lanecfg {

namespace {

/// The database is read at this grade, whatever grade the part has.
constexpr const char* databaseGrade = "-3";
constexpr int anyFamilyStyle = 0;

/// What the host tells of a part, asked for in this order.
struct partFacts {
    std::string architecture;
    std::string speedGrade;
    std::string device;
    std::string package;
    std::string siliconRevision;
    std::string temperatureGrade;
    std::string family;
};

partFacts factsOf(const ToolPart& part) {
    // The elements of a braced list are evaluated from left to right.
    return {part.getArchitecture(),
            part.getSpeedGrade(),
            part.getDevice(),
            part.getPackage(),
            part.getSiliconRevision(),
            part.getTemperatureGrade(),
            part.getFamily(anyFamilyStyle)};
}

void reportPart(const partFacts& part) {
    const std::string text =
        (boost::format("Device data: speedGrade: %s - device: %s - package: %s - siliconRev:%s - "
                       "tempGrade: %s - architecture: %s") %
         part.speedGrade % part.device % part.package % part.siliconRevision %
         part.temperatureGrade % part.architecture)
            .str();
    ToolMsgMgr::sendMessage(
        ToolMsgMgrInstance::createInstance::eval(0, "ip/rule_engine/gt_rule_engine/src/gt_db_load",
                                                 37, "ip", ToolMsgSeverity::status, text));
}

/// Facts of the named part, empty without a name.
partFacts factsOfPart(const std::string& partName) {
    partFacts facts;
    if (partName.empty()) {
        return facts;
    }
    const std::unique_ptr<ToolPart> part(new (std::nothrow) ToolPart(partName));
    if (!part) {
        facts.siliconRevision = "es1";
        return facts;
    }
    facts = factsOf(*part);
    reportPart(facts);
    return facts;
}

}  // namespace

gt_db_load::gt_db_load(const textMap& options, const userParamMap& userParams,
                       const laneUsageMap& laneUsage, const quadUsageMap& quadUsage,
                       const std::string& userParameterTypesFile,
                       const std::string& userParametersFile, const std::string& fieldsFile,
                       const std::string& deviceDataFile, const std::string& partName) {
    const partFacts part = factsOfPart(partName);
    fillDeviceData(deviceDataFile, databaseGrade, part.siliconRevision);
    getUserParameterTypes(userParameterTypesFile);
    getFields(fieldsFile);
    m_loaded = userParams.empty()
                   ? getUserParameters(userParametersFile)
                   : getUserParameters(options, userParams, laneUsage, quadUsage, part.family);
    if (!m_loaded) {
        rule_engine_utilities::addMessage(
            "Error in loading the user parameters. Please check "
            "whether all the required parameters are passed",
            "error");
    }
}

}  // namespace sable_lanecfg
