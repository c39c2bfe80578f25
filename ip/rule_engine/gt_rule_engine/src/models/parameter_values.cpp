#include "models/parameter_values.h"

#include <lanecfg/rule_engine_utilities.h>

namespace sable_lanecfg::models {

std::string valueKey(const std::string& parameter) {
    return "PARAM_VALUE." + parameter;
}

std::string textOf(const updater& record, const std::string& parameter) {
    const auto found = record.values.find(valueKey(parameter));
    return found == record.values.end() ? std::string() : found->second;
}

bool isTrue(const updater& record, const std::string& parameter) {
    return textOf(record, parameter) == "true";
}

void setValue(updater& record, const std::string& parameter, const std::string& text) {
    const auto found = record.values.find(valueKey(parameter));
    if (found != record.values.end()) {
        found->second = text;
    }
}

void setFlag(updater& record, const std::string& parameter, bool flag) {
    setValue(record, parameter, rule_engine_utilities::boolToString(flag));
}

}  // namespace sable_lanecfg::models
