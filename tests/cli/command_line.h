#pragma once

#include "support/reference_data.h"
#include "support/run_program.h"
#include "support/temporary_directory.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

namespace lanecfg_test {

/// The bundled SXA database, to be changed and written elsewhere.
struct SxaDatabase {
    SxaDatabase();

    /// Writes the three files to the folder `SXA` of the directory and gives the folder's path.
    std::string writeTo(const TemporaryDirectory& directory) const;

    nlohmann::json device;
    nlohmann::json parameters;
    nlohmann::json registers;
};

/// Names the cases of a parameterised test: by their member `name`, or, where they are words, by
/// the words, with underscores for dots, hyphens and slashes.
struct CaseName {
    template <class Case>
    std::string operator()(const testing::TestParamInfo<Case>& test) const {
        return test.param.name;
    }
    std::string operator()(const testing::TestParamInfo<std::string>& test) const;
};

/// Tests that run the program as a user does.
class CommandLine : public testing::Test {
  public:
    ProgramResult run(const std::vector<std::string>& arguments,
                      const std::map<std::string, std::string>& environment = {}) const;
    /// Runs a subcommand on a request of this content.
    ProgramResult runOn(const nlohmann::json& request, const std::string& subcommand,
                        const std::vector<std::string>& moreArguments = {}) const;
    /// The JSON answer of a run that has to end well.
    nlohmann::json answerOf(const std::vector<std::string>& arguments) const;

    TemporaryDirectory directory;
    std::string workingDirectory;  ///< of the program, empty for the test's own
};

/// Expects that a run failed with this exit code, an empty answer and this text among its
/// messages.
void expectFailure(const ProgramResult& result, int exitCode, const std::string& message);

}  // namespace lanecfg_test
