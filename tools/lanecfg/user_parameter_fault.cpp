#include "user_parameter_fault.h"

#include "json_document.h"
#include "json_shape.h"
#include "parameter_checks.h"
#include "usage_fault.h"

#include <exception>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

using nlohmann::json;

bool converts(const json& value, const std::string& type) {
    const std::string text = readerText(value);
    if (type == "int") {
        return convertsTo<unsigned>(text);
    }
    if (type == "bool") {
        return convertsTo<bool>(text);
    }
    if (type == "float") {
        return convertsTo<float>(text);
    }
    return type == "string" || convertsTo<double>(text);
}

/// Whether a value that converts to its type is taken for what it says: a list has no text, and a
/// negative number wraps around.
bool isTakenAsWritten(const json& value, const std::string& type) {
    if (type == "string") {
        return hasText(value);
    }
    return type != "int" || readerText(value).find('-') == std::string::npos;
}

/// The dictionary form takes any text; what can't be read of it is passed over.
bool isReadWhole(const json& value, const std::string& type) {
    return isParameterValue(type, readerText(value));
}

bool isAnyValue(const json& /*value*/, const std::string& /*type*/) {
    return true;
}

/// Members of an object or elements of a list with their keys; none of anything else.
auto members(const json& value) {
    static const json none = json::array();
    return value.is_structured() ? value.items() : none.items();
}

std::string directionWords(const std::string& key) {
    return key == "0" ? "0 (transmit)" : key == "1" ? "1 (receive)" : key;
}

std::string laneWords(const std::string& direction, const std::string& lane) {
    return "in direction " + directionWords(direction) + ", lane " + lane;
}

std::string rateWords(const std::string& direction, const std::string& lane,
                      const std::string& rate) {
    return laneWords(direction, lane) + ", rate " + rate + " the ";
}

/// The first of the levels above the parameters that is not what the file form has there.
std::string levelFault(const json& userParams) {
    for (const auto& [direction, lanes] : members(userParams)) {
        if (!isReadAsList(lanes)) {
            return "in direction " + directionWords(direction) +
                   " the lanes must be a list, and "
                   "are " +
                   shownValue(lanes) + ".";
        }
        for (const auto& [lane, rates] : members(lanes)) {
            if (!isReadAsList(rates)) {
                return laneWords(direction, lane) + " the rates must be a list, and are " +
                       shownValue(rates) + ".";
            }
            for (const auto& [rate, parameters] : members(rates)) {
                if (!parameters.is_structured() && !isReadAsList(parameters)) {
                    return rateWords(direction, lane, rate) +
                           "parameters must be an object from names to values, and are " +
                           shownValue(parameters) + ".";
                }
            }
        }
    }
    return {};
}

/// What counts as a fault of a parameter.
struct ParameterRule {
    bool refusesUnknownNames;
    bool (*takes)(const json& value, const std::string& type);
};

/// Looks at parameters with the types that the database declares.
class ParameterLook {
  public:
    ParameterLook(const json& types, std::string typesFile, const ParameterRule& rule)
        : types_(types), typesFile_(std::move(typesFile)), rule_(rule) {}

    std::string firstFault(const json& userParams) const {
        for (const auto& [direction, lanes] : members(userParams)) {
            for (const auto& [lane, rates] : members(lanes)) {
                for (const auto& [rate, parameters] : members(rates)) {
                    const std::string fault = faultAmong(parameters);
                    if (!fault.empty()) {
                        return rateWords(direction, lane, rate) + fault;
                    }
                }
            }
        }
        return {};
    }

  private:
    std::string faultAmong(const json& parameters) const {
        if (parameters.is_array() && !parameters.empty()) {
            return "parameters must be an object from names to values, and are a list.";
        }
        for (const auto& [name, value] : members(parameters)) {
            const std::string type = typeOf(name);
            const std::string meaning = parameterTypeMeaning(type);
            if (meaning.empty()) {
                if (!rule_.refusesUnknownNames) {
                    continue;
                }
                return "parameter \"" + name + "\" is not declared with a known type in " +
                       typesFile_ + ".";
            }
            if (!rule_.takes(value, type)) {
                return "parameter \"" + name + "\" must be " + meaning + ", and is " +
                       shownValue(value) + ".";
            }
        }
        return {};
    }

    std::string typeOf(const std::string& name) const {
        const auto record = types_.find(name);
        if (record == types_.end() || !record->is_object()) {
            return {};
        }
        const auto type = record->find("type");
        return type != record->end() && type->is_string() ? type->get<std::string>()
                                                          : std::string();
    }

    const json& types_;
    std::string typesFile_;
    ParameterRule rule_;
};

/// The first fault of the parameters by a rule.
std::string parameterFault(const json& root, const std::string& parametersFile,
                           const ParameterRule& rule) {
    const json types = readJsonDocument(parametersFile, Lists::whole).root;
    if (!types.is_object()) {
        return {};
    }
    return ParameterLook(types, parametersFile, rule).firstFault(root.at("userParams"));
}

/// What the search finds in the request, nothing when a file can't be read.
template <class Search>
std::string foundIn(const Request& request, const Search& search) {
    try {
        return search(readJsonDocument(request.file, Lists::whole).root);
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace

std::string userParameterFault(const Request& request, const std::string& parametersFile) {
    return foundIn(request, [&](const json& root) {
        const ParameterRule rule = {true, request.isDictionaryForm ? isAnyValue : converts};
        return parameterFault(root, parametersFile, rule);
    });
}

std::string misreadValue(const Request& request, const std::string& parametersFile) {
    return foundIn(request, [&](const json& root) {
        if (request.isDictionaryForm) {
            return parameterFault(root, parametersFile, {false, isReadWhole});
        }
        std::string fault = usageFault(root);
        if (fault.empty()) {
            fault = levelFault(root.at("userParams"));
        }
        return fault.empty() ? parameterFault(root, parametersFile, {false, isTakenAsWritten})
                             : fault;
    });
}

}  // namespace sable_lanecfg::tool
