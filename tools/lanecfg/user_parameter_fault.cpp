#include "user_parameter_fault.h"

#include "json_document.h"
#include "parameter_checks.h"

#include <boost/property_tree/ptree.hpp>

#include <cstddef>
#include <exception>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

using nlohmann::json;

/// The longest value that a message quotes.
constexpr std::size_t longestQuote = 60;

/// The text that the library's reader makes of a value: lists and objects have none of their own.
std::string readerText(const json& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    return value.is_structured() ? std::string() : value.dump();
}

/// The conversion that the library uses.
template <class Value>
bool convertsTo(const std::string& text) {
    return boost::property_tree::ptree(text).get_value_optional<Value>().has_value();
}

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

std::string shown(const json& value) {
    if (value.is_structured()) {
        return value.is_array() ? "a list" : "an object";
    }
    std::string text = value.dump();
    return text.size() <= longestQuote ? text : "a long text";
}

/// Members of an object or elements of a list with their keys; none of anything else.
auto members(const json& value) {
    static const json none = json::array();
    return value.is_structured() ? value.items() : none.items();
}

std::string directionWords(const std::string& key) {
    return key == "0" ? "0 (transmit)" : key == "1" ? "1 (receive)" : key;
}

/// Looks at parameters with the types that the database declares.
class ParameterLook {
  public:
    ParameterLook(const json& types, std::string typesFile, bool hasTypedValues)
        : types_(types), typesFile_(std::move(typesFile)), hasTypedValues_(hasTypedValues) {}

    std::string firstFault(const json& userParams) const {
        for (const auto& [direction, lanes] : members(userParams)) {
            for (const auto& [lane, rates] : members(lanes)) {
                for (const auto& [rate, parameters] : members(rates)) {
                    const std::string fault = faultAmong(parameters);
                    if (!fault.empty()) {
                        return "in direction " + directionWords(direction) + ", lane " + lane +
                               ", rate " + rate + " the " + fault;
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
                return "parameter \"" + name + "\" is not declared with a known type in " +
                       typesFile_ + ".";
            }
            if (hasTypedValues_ && !converts(value, type)) {
                return "parameter \"" + name + "\" must be " + meaning + ", and is " +
                       shown(value) + ".";
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
    bool hasTypedValues_;
};

}  // namespace

std::string userParameterFault(const Request& request, const std::string& parametersFile) {
    try {
        const json root = readJsonDocument(request.file, Lists::whole).root;
        const json types = readJsonDocument(parametersFile, Lists::whole).root;
        if (!types.is_object()) {
            return {};
        }
        // The library takes any text of the dictionary form.
        const ParameterLook look(types, parametersFile, !request.isDictionaryForm);
        return look.firstFault(root.at("userParams"));
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace sable_lanecfg::tool
