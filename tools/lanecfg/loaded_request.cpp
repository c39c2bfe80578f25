#include "loaded_request.h"

namespace sable_lanecfg::tool {

gt_db_load loadRequest(const Request& request, const Database& database) {
    const RequestDictionaries& dictionaries = request.dictionaries;
    const std::string noFile;
    gt_db_load loaded(dictionaries.options, dictionaries.userParams, dictionaries.laneUsage,
                      quadUsageMap(), database.parametersFile(),
                      request.isDictionaryForm ? noFile : request.file, database.registersFile(),
                      database.deviceFile(), request.part);
    // The loader leaves the records to instances, and here is none.
    for (const auto& [name, quad] : loaded.m_quadsUsage) {
        delete quad;
    }
    loaded.m_quadsUsage.clear();
    return loaded;
}

}  // namespace sable_lanecfg::tool
