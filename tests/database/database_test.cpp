#include "database/database_test.h"

#include <memory>

namespace lanecfg_test {

using sable_lanecfg::gt_db_load;

DatabaseTest::~DatabaseTest() {
    for (const sable_lanecfg::quadsUsageInfo* record : records_) {
        delete record;
    }
}

gt_db_load DatabaseTest::load(const std::string& partName) {
    const DatabaseFiles files = database.writeTo(directory);
    gt_db_load loader({}, {}, {}, {}, files.userParameterTypes, files.userParameters, files.fields,
                      files.deviceData, partName);
    keep(loader);
    return loader;
}

gt_db_load DatabaseTest::loadDictionary(const sable_lanecfg::userParamMap& userParams,
                                        const std::string& partName) {
    const DatabaseFiles files = database.writeTo(directory);
    return gt_db_load({}, userParams, {}, {}, files.userParameterTypes, "", files.fields,
                      files.deviceData, partName);
}

gt_db_load DatabaseTest::loadFiles(const DatabaseFiles& files) {
    gt_db_load loader({}, {}, {}, {}, files.userParameterTypes, files.userParameters, files.fields,
                      files.deviceData, "");
    keep(loader);
    return loader;
}

bool DatabaseTest::readRequest(gt_db_load& loader, const std::string& file) {
    const bool usable = loader.getUserParameters(file);
    keep(loader);
    return usable;
}

bool DatabaseTest::readRequest(gt_db_load& loader, const sable_lanecfg::userParamMap& userParams,
                               const sable_lanecfg::laneUsageMap& laneUsage,
                               const sable_lanecfg::quadUsageMap& quadUsage,
                               const std::string& family) {
    const bool usable = loader.getUserParameters({}, userParams, laneUsage, quadUsage, family);
    keep(loader);
    return usable;
}

std::vector<std::string> DatabaseTest::errors() {
    const std::vector<std::string> all = messages.texts(ToolMsgSeverity::error);
    std::vector<std::string> fresh(all.begin() + static_cast<std::ptrdiff_t>(errorsSeen_),
                                   all.end());
    errorsSeen_ = all.size();
    return fresh;
}

void DatabaseTest::keep(const gt_db_load& loader) {
    for (const auto& [name, record] : loader.m_quadsUsage) {
        records_.push_back(record);
    }
}

}  // namespace lanecfg_test
