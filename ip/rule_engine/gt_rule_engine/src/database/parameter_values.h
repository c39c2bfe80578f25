#pragma once

#include <lanecfg/gt_db_load.h>

#include <map>
#include <string>
#include <utility>

namespace sable_lanecfg {

/// Tells the user that the types file does not know the parameter.
void reportUnknownParameter(const std::string& name);

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
