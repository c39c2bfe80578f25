#include "device_checks.h"

#include <boost/algorithm/string/predicate.hpp>

#include <cmath>
#include <optional>
#include <stdexcept>

namespace sable_lanecfg::tool {
namespace {

/// The only speed grade that the library reads, whatever the part's own grade is.
constexpr const char* readGrade = "-3";

bool isItem(const nlohmann::json& item) {
    if (!item.is_array()) {
        return !item.is_object() && !item.is_null();
    }
    for (const nlohmann::json& element : item) {
        if (element.is_structured() || element.is_null()) {
            return false;
        }
    }
    return true;
}

/// A limit as the rules read it: the first text of the item, as far as it is a number.
std::optional<double> limitValue(const nlohmann::json& item) {
    const nlohmann::json& first = item.is_array() && !item.empty() ? item.front() : item;
    try {
        const double value = std::stod(first.is_string() ? first.get<std::string>() : first.dump());
        return std::isfinite(value) ? std::optional(value) : std::nullopt;
    } catch (const std::logic_error&) {
        return std::nullopt;
    }
}

std::optional<double> checkLimit(const nlohmann::json& grade, const std::string& name,
                                 FindingList& findings) {
    const auto found = grade.find(name);
    if (found == grade.end()) {
        findings.error(name, "The limit is missing; packing and PLL rules of the family read it.");
        return std::nullopt;
    }
    const std::optional<double> value = isItem(*found) ? limitValue(*found) : std::nullopt;
    if (!value) {
        findings.error(name, "The limit is no number (GHz).");
    }
    return value;
}

void checkLimits(const nlohmann::json& grade, const std::vector<std::string>& limits,
                 FindingList& findings) {
    std::optional<double> minimum;
    for (const std::string& name : limits) {
        const std::optional<double> value = checkLimit(grade, name, findings);
        // A range stands as minimum and maximum, in this order.
        if (boost::algorithm::ends_with(name, "_MIN")) {
            minimum = value;
        } else if (minimum && value && *minimum > *value) {
            findings.error(name, "The maximum is below the minimum of its range.");
        }
    }
}

}  // namespace

void checkDeviceData(const nlohmann::json& root, const std::vector<std::string>& limits,
                     FindingList& findings) {
    const auto grade = root.find(readGrade);
    if (!root.is_object() || grade == root.end() || !grade->is_object()) {
        findings.error(readGrade,
                       "The file must hold an object under the speed grade \"-3\", the "
                       "only one that is read.");
        return;
    }
    for (const auto& [name, item] : grade->items()) {
        if (!isItem(item)) {
            findings.error(name, "The item must be a text or a list of texts.");
        }
    }
    checkLimits(*grade, limits, findings);
}

}  // namespace sable_lanecfg::tool
