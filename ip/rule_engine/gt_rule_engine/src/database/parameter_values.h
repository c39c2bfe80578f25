#pragma once

#include "database/fault_report.h"

#include <lanecfg/gt_db_load.h>
#include <lanecfg/rule_engine_utilities.h>

#include <map>
#include <string>
#include <utility>

namespace sable_lanecfg {

/// The value behind a parameter's name in the type that the types file gives it; blank for an
/// unknown type. `convert(source, T())` makes a T.
template <class Source, class Converter>
ruleValue typedValue(const Source& source, const std::string& type, const Converter& convert) {
    if (type == "string") {
        return convert(source, std::string());
    }
    if (type == "int") {
        return convert(source, 0U);
    }
    if (type == "bool") {
        return convert(source, false);
    }
    if (type == "float") {
        return convert(source, 0.0F);
    }
    if (type == "double") {
        return convert(source, 0.0);
    }
    return boost::blank();
}

/// How a text becomes a value of each type.
struct textConverter {
    std::string operator()(const std::string& text, const std::string&) const { return text; }
    unsigned int operator()(const std::string& text, unsigned int) const {
        return rule_engine_utilities::getInt(text);
    }
    bool operator()(const std::string& text, bool) const {
        return rule_engine_utilities::stringToBool(text);
    }
    float operator()(const std::string& text, float) const {
        return rule_engine_utilities::getFloat(text);
    }
    double operator()(const std::string& text, double) const {
        return rule_engine_utilities::getDouble(text);
    }
};

/// Stores every member of a request's map under its name, converted by `typedValue`. The first
/// parameter without a known type is reported, ends the map and makes the result false.
template <class Members, class Converter>
bool storeParameters(const Members& members, std::map<std::string, paramTypeInfo>& types,
                     std::map<std::string, ruleValue>& values, const Converter& convert) {
    for (const auto& [name, source] : members) {
        // The subscript enters an unknown name with an empty record: users of the types see it.
        ruleValue value = typedValue(source, types[name].type, convert);
        if (value.which() == 0) {
            reportUnknownParameter(name);
            return false;
        }
        values[name] = std::move(value);
    }
    return true;
}

}  // namespace sable_lanecfg
