#include "parameter_checks.h"

#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <array>
#include <sstream>
#include <string>

namespace sable_lanecfg::tool {
namespace {

/// Whether the conversion of the library takes all of the text.
template <class Number>
bool isWhollyNumber(const std::string& text) {
    std::istringstream stream(text);
    Number number = 0;
    return !(stream >> number).fail() && stream.peek() == std::istringstream::traits_type::eof();
}

bool isUnsigned(const std::string& text) {
    // A sign would be taken, and the number wrap around.
    return text.find('-') == std::string::npos && isWhollyNumber<unsigned>(text);
}

bool isFlag(const std::string& text) {
    const std::array<const char*, 4> words = {"0", "1", "true", "false"};
    return std::any_of(words.begin(), words.end(),
                       [&text](const char* word) { return boost::algorithm::iequals(text, word); });
}

bool isAnyText(const std::string& /*text*/) {
    return true;
}

/// A parameter type, what a value of it is, and which texts are one.
struct ParameterType {
    const char* word;
    const char* meaning;
    bool (*takes)(const std::string& text);
};

constexpr std::array<ParameterType, 5> parameterTypes = {{
    {"string", "a text", isAnyText},
    {"int", "a whole number from 0 to 4294967295", isUnsigned},
    {"bool", "0, 1, true or false", isFlag},
    {"float", "a number", isWhollyNumber<float>},
    {"double", "a number", isWhollyNumber<double>},
}};

/// Null for an unknown type.
const ParameterType* findType(const std::string& word) {
    const auto* const found =
        std::find_if(parameterTypes.begin(), parameterTypes.end(),
                     [&word](const ParameterType& row) { return word == row.word; });
    return found == parameterTypes.end() ? nullptr : found;
}

void checkDefault(const std::string& name, const std::string& type, const std::string& defaultValue,
                  FindingList& findings) {
    const ParameterType* const found = findType(type);
    if (found == nullptr) {
        findings.error(name, "The type \"" + type +
                                 "\" is unknown; known are string, int, bool, "
                                 "float and double.");
    } else if (!found->takes(defaultValue)) {
        findings.error(name, "The default \"" + defaultValue + "\" does not convert to the type " +
                                 type + ", which takes " + found->meaning + ".");
    }
}

void checkParameter(const std::string& name, const nlohmann::json& record, FindingList& findings) {
    for (const char* const key : {"type", "description", "default_value"}) {
        if (!record.is_object() || !record.contains(key) || !record[key].is_string()) {
            findings.error(name, std::string("\"") + key +
                                     "\" is missing or no text; a parameter needs \"type\", "
                                     "\"description\" and \"default_value\".");
            return;
        }
    }
    checkDefault(name, record["type"].get<std::string>(),
                 record["default_value"].get<std::string>(), findings);
}

}  // namespace

std::size_t checkParameters(const nlohmann::json& root, FindingList& findings) {
    if (!root.is_object()) {
        findings.error("", "The file must be an object with a member for each parameter.");
        return 0;
    }
    for (const auto& [name, record] : root.items()) {
        checkParameter(name, record, findings);
    }
    return root.size();
}

std::string parameterTypeMeaning(const std::string& type) {
    const ParameterType* const found = findType(type);
    return found == nullptr ? std::string() : found->meaning;
}

bool isParameterValue(const std::string& type, const std::string& text) {
    const ParameterType* const found = findType(type);
    return found == nullptr || found->takes(text);
}

}  // namespace sable_lanecfg::tool
