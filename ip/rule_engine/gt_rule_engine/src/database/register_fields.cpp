#include "database/fault_report.h"
#include "database/json_file.h"
#include "database/tree_values.h"

#include <lanecfg/gt_db_load.h>

#include <exception>

namespace sable_lanecfg {

void gt_db_load::getFields(const std::string& file) {
    const auto tree = readJsonFile<json_value>(file);
    tree_values values;
    try {
        for (const auto& [name, record] : tree) {
            attributeInfo& info = m_fields[name];
            info = {};
            info.dstSubBlock = record.get_child("dstSubBlock").data();
            info.Offset = record.get_child("Offset").data();
            for (const auto& [field, numbers] : record.get_child("fields")) {
                values.list(numbers, info.fields[field]);
            }
        }
    } catch (const std::exception&) {
        reportParseError(file);
    }
}

}  // namespace sable_lanecfg
