#pragma once

#include "commands.h"
#include "families.h"

#include <CLI/CLI.hpp>
#include <boost/algorithm/string/join.hpp>

#include <memory>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// An option that may stand several times, each with one value.
template <class Value>
CLI::Option* addListOption(CLI::App& command, const std::string& name, std::vector<Value>& values,
                           const std::string& description) {
    return command.add_option(name, values, description + "; may be repeated")
        ->allow_extra_args(false);
}

/// A check whose option's help lists the names of all rules.
inline CLI::Validator ruleSetNameCheck() {
    return CLI::Validator(ruleSetNameFault,
                          "{" + boost::algorithm::join(ruleSetNames(), ",") + "}");
}

/// An option with the two sides of a comparison.
inline CLI::Option* addComparison(CLI::App& command, const std::string& name,
                                  std::vector<std::string>& sides, const std::string& description) {
    constexpr int sideCount = 2;
    return command.add_option(name, sides, description)
        ->expected(sideCount)
        ->allow_extra_args(false);
}

/// Adds a subcommand whose options are an `Options` and whose work is `run(options, console)`.
/// `addOptions(command, options)` declares them; the example stands at the end of its help.
template <class Options, class AddOptions, class Run>
void addSubcommand(CLI::App& program, Work& chosen, const std::string& name,
                   const std::string& description, const std::string& example,
                   const AddOptions& addOptions, Run run) {
    CLI::App& command = *program.add_subcommand(name, description);
    command.footer("Example:\n  " + example);
    const auto options = std::make_shared<Options>();
    addOptions(command, *options);
    command.callback([&chosen, options, run] {
        chosen = [options, run](Console& console) { return run(*options, console); };
    });
}

}  // namespace sable_lanecfg::tool
