#include "database/fault_report.h"
#include "database/json_file.h"

#include <lanecfg/gt_db_load.h>

#include <exception>

namespace sable_lanecfg {

void gt_db_load::getUserParameterTypes(const std::string& file) {
    const auto tree = readJsonFile<json_value>(file);
    try {
        for (const auto& [name, record] : tree) {
            paramTypeInfo& info = m_paramTypes[name];
            info = {};
            info.type = record.get_child("type").data();
            info.description = record.get_child("description").data();
            info.default_value = record.get_child("default_value").data();
        }
    } catch (const std::exception&) {
        reportParseError(file);
    }
}

}  // namespace sable_lanecfg
