#pragma once

#include <boost/property_tree/ptree.hpp>
#include <nlohmann/json.hpp>

#include <string>

namespace sable_lanecfg::tool {

/// A JSON value in words for a message: "a list", "an object", else its text, unless that is long.
std::string shownValue(const nlohmann::json& value);

/// Whether the library reads the value as a list. An empty text or object is an empty list, as the
/// host's own writer has it.
bool isReadAsList(const nlohmann::json& value);

/// Whether the library takes the value's text: a list, an object and a null have none.
bool hasText(const nlohmann::json& value);

/// The text that the library's reader makes of a value: lists and objects have none of their own.
std::string readerText(const nlohmann::json& value);

/// Whether the library's reader converts the text. Negative numbers convert to unsigned ones.
template <class Value>
bool convertsTo(const std::string& text) {
    return boost::property_tree::ptree(text).get_value_optional<Value>().has_value();
}

}  // namespace sable_lanecfg::tool
