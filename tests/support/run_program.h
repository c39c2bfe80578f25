#pragma once

#include <map>
#include <string>
#include <vector>

namespace lanecfg_test {

/// What a program left behind.
struct ProgramResult {
    int exitCode = -1;  ///< the number of the signal when one ended it
    std::string output;
    std::string errors;
};

/// How a program is started.
struct ProgramStart {
    std::vector<std::string> arguments;
    std::map<std::string, std::string> environment;  ///< on top of the test's own
    std::string workingDirectory;                    ///< empty for the test's own
    std::string errorsTo;                            ///< a file in place of `errors`
};

/// Runs a program without a shell, with nothing on standard input, and waits for its end. What a
/// sanitizer finds in it shows as exit code 99, which no program of ours uses.
ProgramResult runProgram(const std::string& program, const ProgramStart& start);

}  // namespace lanecfg_test
