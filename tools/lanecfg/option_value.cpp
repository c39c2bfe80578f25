#include "option_value.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <system_error>

namespace sable_lanecfg::tool {

std::string emptyValueFault(const std::string& value) {
    return value.empty() ? "the value is empty; give one, or leave the option out" : std::string();
}

std::string positiveNumberFault(const std::string& value) {
    double number = 0.0;
    const char* const end = value.data() + value.size();
    const auto [rest, fault] = std::from_chars(value.data(), end, number);
    const bool isWhole = fault == std::errc() && rest == end;
    return isWhole && std::isfinite(number) && number > 0.0
               ? std::string()
               : "the value must be a number above 0, and is \"" + value + "\"";
}

CLI::Option* addPositiveNumber(CLI::App& command, const std::string& name, double& value,
                               const std::string& description) {
    return command.add_option(name, value, description)
        ->type_name("NUMBER")
        ->check(positiveNumberFault);
}

}  // namespace sable_lanecfg::tool
