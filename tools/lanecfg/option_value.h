#pragma once

#include <string>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace sable_lanecfg::tool {

/// Check of an option whose value must not be empty: text about the fault, empty when there is
/// none. An empty value would otherwise count as an option that was left out.
std::string emptyValueFault(const std::string& value);

/// Check of an option whose value must be a finite decimal number above 0, in the same form.
std::string positiveNumberFault(const std::string& value);

/// Makes the values of an option whole numbers in decimal digits, also with zeros in front, and
/// refuses all else.
void takeWholeNumbers(CLI::Option& option);

/// Gives a subcommand an option with a positive number.
CLI::Option* addPositiveNumber(CLI::App& command, const std::string& name, double& value,
                               const std::string& description);

}  // namespace sable_lanecfg::tool
