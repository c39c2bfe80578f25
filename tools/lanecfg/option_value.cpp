#include "option_value.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <system_error>

namespace sable_lanecfg::tool {
namespace {

/// Whether all of the text is a number in decimal digits, which it gives.
template <class Number>
bool isWholly(const std::string& text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [rest, fault] = std::from_chars(text.data(), end, number);
    return fault == std::errc() && rest == end;
}

}  // namespace

std::string emptyValueFault(const std::string& value) {
    return value.empty() ? "the value is empty; give one, or leave the option out" : std::string();
}

std::string positiveNumberFault(const std::string& value) {
    double number = 0.0;
    return isWholly(value, number) && std::isfinite(number) && number > 0.0
               ? std::string()
               : "the value must be a number above 0, and is \"" + value + "\"";
}

void takeWholeNumbers(CLI::Option& option) {
    option.transform([](const std::string& value) {
        unsigned number = 0;
        if (!isWholly(value, number)) {
            throw CLI::ValidationError(
                "the value must be a whole number from 0 to 4294967295, and is \"" + value + "\"");
        }
        // Zeros in front would make it octal.
        return std::to_string(number);
    });
}

CLI::Option* addPositiveNumber(CLI::App& command, const std::string& name, double& value,
                               const std::string& description) {
    return command.add_option(name, value, description)
        ->type_name("NUMBER")
        ->check(positiveNumberFault);
}

}  // namespace sable_lanecfg::tool
