#include "cli/command_line.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

namespace lanecfg_test {
SxaDatabase::SxaDatabase()
    : device(referenceFile("SXA", "device.json")),
      parameters(referenceFile("SXA", "parameters.json")),
      registers(referenceFile("SXA", "registers.json")) {}

std::string SxaDatabase::writeTo(const TemporaryDirectory& directory) const {
    std::filesystem::create_directory(directory.file("SXA"));
    directory.write("SXA/device.json", device.dump());
    directory.write("SXA/parameters.json", parameters.dump());
    directory.write("SXA/registers.json", registers.dump());
    return directory.file("SXA");
}

std::string CaseName::operator()(const testing::TestParamInfo<std::string>& test) const {
    std::string name = test.param;
    std::replace_if(
        name.begin(), name.end(),
        [](char character) { return character == '.' || character == '-' || character == '/'; },
        '_');
    return name;
}

ProgramResult CommandLine::run(const std::vector<std::string>& arguments,
                               const std::map<std::string, std::string>& environment) const {
    ProgramStart start;
    start.arguments = arguments;
    start.workingDirectory = workingDirectory;
    // What the user of the test has set is not part of the test.
    start.environment = {{"LANECFG_DATA", ""}};
    for (const auto& [name, value] : environment) {
        start.environment[name] = value;
    }
    return runProgram(LANECFG_PROGRAM, start);
}

ProgramResult CommandLine::runOn(const nlohmann::json& request, const std::string& subcommand,
                                 const std::vector<std::string>& moreArguments) const {
    std::vector<std::string> arguments = {subcommand,
                                          directory.write("request.json", request.dump())};
    arguments.insert(arguments.end(), moreArguments.begin(), moreArguments.end());
    return run(arguments);
}

nlohmann::json CommandLine::answerOf(const std::vector<std::string>& arguments) const {
    std::vector<std::string> withFormat = arguments;
    withFormat.insert(withFormat.end(), {"--format", "json"});
    const ProgramResult result = run(withFormat);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    return nlohmann::json::parse(result.output);
}

void expectFailure(const ProgramResult& result, int exitCode, const std::string& message) {
    EXPECT_EQ(result.exitCode, exitCode) << result.errors;
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, testing::HasSubstr(message));
}

}  // namespace lanecfg_test
