#include "json_shape.h"

#include "table.h"

#include <cstddef>

namespace sable_lanecfg::tool {
namespace {

/// The longest value that a message quotes.
constexpr std::size_t longestQuote = 60;

}  // namespace

std::string shownValue(const nlohmann::json& value) {
    if (value.is_structured()) {
        return value.is_array() ? "a list" : "an object";
    }
    const std::string text = jsonText(value);
    return text.size() <= longestQuote ? text : "a long text";
}

bool isReadAsList(const nlohmann::json& value) {
    return value.is_array() || (value.is_object() && value.empty()) || value == "";
}

bool hasText(const nlohmann::json& value) {
    return !value.is_structured() && !value.is_null();
}

std::string readerText(const nlohmann::json& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    return value.is_structured() ? std::string() : value.dump();
}

}  // namespace sable_lanecfg::tool
