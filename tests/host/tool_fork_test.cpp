#include "support/environment_variable.h"
#include "support/temporary_directory.h"

#include <lanecfg/host/ToolFork.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <string>
#include <unistd.h>

using lanecfg_test::EnvironmentVariable;
using lanecfg_test::readFile;
using lanecfg_test::TemporaryDirectory;

namespace {

/// A directory for programs, and the way the library runs one.
class ToolForkTest : public testing::Test {
  protected:
    /// Writes an executable file and gives its path.
    std::string writeProgram(const std::string& name, const std::string& content) const {
        const std::string path = directory_.write(name, content);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    std::string writeScript(const std::string& body) const {
        return writeProgram("script.sh", "#!/bin/sh\n" + body);
    }
    int run(const std::string& program) {
        fork_.setProg(program, true);
        fork_.setLogFile(logFile_);
        return fork_.launch(true, true, true, true);
    }
    int runScript(const std::string& body) { return run(writeScript(body)); }
    std::string log() const { return readFile(logFile_); }

    TemporaryDirectory directory_;
    std::string logFile_ = directory_.file("run.log");
    ToolFork fork_;
};

/// Makes a directory current while it lives.
class CurrentDirectory {
  public:
    explicit CurrentDirectory(const std::filesystem::path& path)
        : previous_(std::filesystem::current_path()) {
        std::filesystem::current_path(path);
    }
    ~CurrentDirectory() { std::filesystem::current_path(previous_); }
    CurrentDirectory(const CurrentDirectory&) = delete;
    CurrentDirectory& operator=(const CurrentDirectory&) = delete;

  private:
    std::filesystem::path previous_;
};

/// Makes a file the standard input while it lives.
class StandardInput {
  public:
    explicit StandardInput(const std::string& path) : previous_(dup(STDIN_FILENO)) {
        const int file = open(path.c_str(), O_RDONLY);
        dup2(file, STDIN_FILENO);
        close(file);
    }
    ~StandardInput() {
        dup2(previous_, STDIN_FILENO);
        close(previous_);
    }
    StandardInput(const StandardInput&) = delete;
    StandardInput& operator=(const StandardInput&) = delete;

  private:
    int previous_;
};

TEST_F(ToolForkTest, GivesTheExitStatus) {
    EXPECT_EQ(runScript("exit 0"), 0);
    EXPECT_EQ(runScript("exit 3"), 3);
    EXPECT_EQ(runScript("exit 255"), 255);
}

TEST_F(ToolForkTest, GivesTheSignalThatEndedTheProgram) {
    EXPECT_EQ(runScript("kill -TERM $$"), ToolFork::signalBase + 15);
    EXPECT_EQ(runScript("kill -KILL $$"), ToolFork::signalBase + 9);
}

TEST_F(ToolForkTest, WritesOutputAndErrorOutputToTheLogInOrder) {
    EXPECT_EQ(runScript("echo one\necho two >&2\necho three"), 0);
    EXPECT_EQ(log(), "one\ntwo\nthree\n");
}

TEST_F(ToolForkTest, KeepsTheLogOfAFailingProgram) {
    EXPECT_EQ(runScript("echo reason >&2; exit 1"), 1);
    EXPECT_EQ(log(), "reason\n");
}

TEST_F(ToolForkTest, EmptiesAnOlderLog) {
    directory_.write("run.log", "a much longer text of an older run\n");
    EXPECT_EQ(runScript("echo new"), 0);
    EXPECT_EQ(log(), "new\n");
}

TEST_F(ToolForkTest, DropsTheOutputWithoutALogFile) {
    logFile_.clear();
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(runScript("echo dropped; echo dropped >&2; exit 5"), 5);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(ToolForkTest, HandsTheArgumentsOverAsTheyAre) {
    for (const char* argument : {"plain", "", "two words", "$HOME `id` $(id)", "a;b|c>d&e", "\"'\\",
                                 "*", "-n", "l1\nl2"}) {
        fork_.addArg(argument);
    }
    EXPECT_EQ(runScript("for a in \"$@\"; do printf '<%s>' \"$a\"; done"), 0);
    EXPECT_EQ(log(), "<plain><><two words><$HOME `id` $(id)><a;b|c>d&e><\"'\\><*><-n><l1\nl2>");
}

TEST_F(ToolForkTest, RunsAProgramWhosePathNeedsQuoting) {
    EXPECT_EQ(run(writeProgram("a b;exit 9.sh", "#!/bin/sh\nexit 4\n")), 4);
}

TEST_F(ToolForkTest, RunsInTheLaunchDirectoryAndLeavesTheCallers) {
    const std::filesystem::path before = std::filesystem::current_path();
    fork_.setLaunchDir(directory_.path().string());
    EXPECT_EQ(runScript("pwd -P"), 0);
    EXPECT_EQ(log(), std::filesystem::canonical(directory_.path()).string() + "\n");
    EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST_F(ToolForkTest, RunsInTheCallersDirectoryWithoutALaunchDirectory) {
    EXPECT_EQ(runScript("pwd -P"), 0);
    EXPECT_EQ(log(), std::filesystem::canonical(std::filesystem::current_path()).string() + "\n");
}

TEST_F(ToolForkTest, TakesRelativePathsFromTheCallersDirectory) {
    const std::filesystem::path inner = directory_.path() / "inner";
    std::filesystem::create_directory(inner);
    writeScript("pwd -P");
    const CurrentDirectory current(directory_.path());
    fork_.setLaunchDir("inner");
    logFile_ = "run.log";
    EXPECT_EQ(run("script.sh"), 0);
    EXPECT_EQ(log(), std::filesystem::canonical(inner).string() + "\n");
}

TEST_F(ToolForkTest, PassesTheEnvironmentAndKeepsTheCallers) {
    const EnvironmentVariable variable("LANECFG_TOOL_FORK_TEST", "passed");
    EXPECT_EQ(runScript("echo $LANECFG_TOOL_FORK_TEST; export LANECFG_TOOL_FORK_TEST=other"), 0);
    EXPECT_EQ(log(), "passed\n");
    EXPECT_STREQ(std::getenv("LANECFG_TOOL_FORK_TEST"), "passed");
}

TEST_F(ToolForkTest, GivesTheProgramAnEmptyInputInsteadOfTheCallers) {
    const StandardInput callers(directory_.write("input", "for the caller"));
    EXPECT_EQ(runScript("cat; exit 6"), 6);
    EXPECT_EQ(log(), "");
}

TEST_F(ToolForkTest, CanLaunchAgain) {
    EXPECT_EQ(runScript("exit 1"), 1);
    EXPECT_EQ(fork_.launch(false, false, false, false), 1);
}

TEST_F(ToolForkTest, IsNotLaunchedForAMissingProgram) {
    EXPECT_EQ(run(directory_.file("missing")), ToolFork::notLaunched);
}

TEST_F(ToolForkTest, IsNotLaunchedWithoutAProgram) {
    EXPECT_EQ(run(""), ToolFork::notLaunched);
}

TEST_F(ToolForkTest, IsNotLaunchedForADirectory) {
    EXPECT_EQ(run(directory_.path().string()), ToolFork::notLaunched);
}

TEST_F(ToolForkTest, IsNotLaunchedForAFileWithoutTheExecutePermission) {
    EXPECT_EQ(run(directory_.write("data", "#!/bin/sh\n")), ToolFork::notLaunched);
}

TEST_F(ToolForkTest, IsNotLaunchedForAScriptThatNamesNoInterpreter) {
    EXPECT_EQ(run(writeProgram("text", "exit 0\n")), ToolFork::notLaunched);
}

TEST_F(ToolForkTest, IsNotLaunchedForAScriptWhoseInterpreterIsMissing) {
    EXPECT_EQ(run(writeProgram("script", "#!" + directory_.file("missing") + "\n")),
              ToolFork::notLaunched);
}

TEST_F(ToolForkTest, IsNotLaunchedInAMissingLaunchDirectory) {
    fork_.setLaunchDir(directory_.file("missing"));
    EXPECT_EQ(runScript("exit 0"), ToolFork::notLaunched);
}

TEST_F(ToolForkTest, IsNotLaunchedWithALogInAMissingDirectory) {
    logFile_ = directory_.file("missing/run.log");
    EXPECT_EQ(runScript("touch " + directory_.file("ran")), ToolFork::notLaunched);
    EXPECT_FALSE(std::filesystem::exists(directory_.file("ran")));
}

TEST_F(ToolForkTest, IsNotLaunchedWithADirectoryForALog) {
    logFile_ = directory_.path().string();
    EXPECT_EQ(runScript("exit 0"), ToolFork::notLaunched);
}

/// Two directories of the search path, each with what a test puts there.
class SearchPath : public ToolForkTest {
  protected:
    SearchPath() {
        for (const char* name : {"first", "second"}) {
            std::filesystem::create_directory(directory_.path() / name);
        }
    }
    std::string bothDirectories() const {
        return directory_.file("first") + ":" + directory_.file("second");
    }
    static std::optional<std::string> found(const std::string& name) {
        std::string path = "older";
        const bool isFound = ToolFork::findInPath(name, path);
        EXPECT_EQ(isFound, path != "older");
        return isFound ? std::optional<std::string>(path) : std::nullopt;
    }
};

TEST_F(SearchPath, GivesTheFirstProgramOfTheName) {
    const EnvironmentVariable searchPath("PATH", bothDirectories());
    const std::string second = writeProgram("second/tool", "");
    EXPECT_EQ(found("tool"), second);
    const std::string first = writeProgram("first/tool", "");
    EXPECT_EQ(found("tool"), first);
}

TEST_F(SearchPath, PassesOverFilesThatAreNoPrograms) {
    const EnvironmentVariable searchPath("PATH", bothDirectories());
    directory_.write("first/tool", "not executable");
    std::filesystem::create_directory(directory_.path() / "first/other");
    const std::string tool = writeProgram("second/tool", "");
    const std::string other = writeProgram("second/other", "");
    EXPECT_EQ(found("tool"), tool);
    EXPECT_EQ(found("other"), other);
}

TEST_F(SearchPath, FindsNothingForAnUnknownOrEmptyName) {
    const EnvironmentVariable searchPath("PATH", bothDirectories());
    EXPECT_EQ(found("tool"), std::nullopt);
    EXPECT_EQ(found(""), std::nullopt);
}

TEST_F(SearchPath, FindsNothingWithoutASearchPath) {
    const EnvironmentVariable searchPath("PATH", std::nullopt);
    EXPECT_EQ(found("sh"), std::nullopt);
}

TEST_F(SearchPath, TakesAnEmptyEntryForTheCurrentDirectory) {
    writeProgram("first/tool", "");
    const CurrentDirectory current(directory_.path() / "first");
    const EnvironmentVariable searchPath("PATH", ":/nowhere");
    EXPECT_EQ(found("tool"), "./tool");
}

TEST_F(SearchPath, TakesANameWithASeparatorForAPath) {
    const EnvironmentVariable searchPath("PATH", bothDirectories());
    const std::string tool = writeProgram("tool", "");
    EXPECT_EQ(found(tool), tool);
    EXPECT_EQ(found(directory_.file("missing")), std::nullopt);
}

TEST_F(ToolForkTest, ProgExistsOnlyForExecutableFiles) {
    EXPECT_TRUE(ToolFork::progExists(writeScript("")));
    EXPECT_FALSE(ToolFork::progExists(directory_.write("data", "")));
    EXPECT_FALSE(ToolFork::progExists(directory_.path().string()));
    EXPECT_FALSE(ToolFork::progExists(directory_.file("missing")));
    EXPECT_FALSE(ToolFork::progExists(""));
}

}  // namespace
