#pragma once

#include <stdexcept>
#include <string>

namespace sable_lanecfg::tool {

/// Exit codes of the program.
enum class ExitCode {
    done = 0,
    failed = 1,  ///< the request or a file is at fault
    usage = 2,   ///< the command line is at fault
};

/// What was asked for can't be done with these files.
class RequestError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The command line asks for something that makes no sense.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Text for people about the exception that is being handled. Rules of the engine throw texts and
/// Boost's exceptions besides the standard ones, so this belongs in a `catch (...)`.
std::string currentExceptionText();

}  // namespace sable_lanecfg::tool
