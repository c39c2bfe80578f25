#include "database/fault_report.h"
#include "database/json_file.h"

#include <lanecfg/gt_db_load.h>

#include <boost/algorithm/string/trim.hpp>

#include <exception>

namespace sable_lanecfg {

namespace {

/// An item is either one text, taken unchanged, or a list of trimmed texts.
std::vector<std::string> itemValues(const json_value& item) {
    if (!item.data().empty()) {
        return {item.data()};
    }
    std::vector<std::string> values;
    for (const auto& [key, element] : item) {
        values.push_back(boost::algorithm::trim_copy(element.data()));
    }
    return values;
}

}  // namespace

void gt_db_load::fillDeviceData(const std::string& file, const std::string& speedGrade,
                                const std::string& siliconRev) {
    const auto tree = readJsonFile<json_value>(file);
    try {
        for (const auto& [grade, items] : tree) {
            if (grade != speedGrade) {
                continue;
            }
            for (const auto& [name, item] : items) {
                m_deviceData.emplace(name, itemValues(item));  // the first of a name stays
            }
        }
        m_deviceData.emplace("siliconRev", std::vector<std::string>{siliconRev});
    } catch (const std::exception&) {
        reportParseError(file);
    }
}

}  // namespace sable_lanecfg
