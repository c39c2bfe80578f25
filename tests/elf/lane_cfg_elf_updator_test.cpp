#include "elf/elf_work_directory.h"

#include <lanecfg/lane_cfg_elf_updator.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

using lanecfg_test::awkwardName;
using lanecfg_test::ElfWorkDirectory;
using lanecfg_test::EnvironmentVariable;
using lanecfg_test::readFile;
using lanecfg_test::TemporaryDirectory;
using lanecfg_test::writeIdleProgram;
using sable_lanecfg::lane_cfg_elf_updator;

namespace {

namespace fs = std::filesystem;

constexpr const char* table = "00000000000000000000000000000001";

bool isExecutable(const std::string& path) {
    return (fs::status(path).permissions() & fs::perms::owner_exec) != fs::perms::none;
}

TEST(ElfUpdatorConstructor, FillsTheMembers) {
    const TemporaryDirectory directory;
    const std::string work = directory.path().string();
    const lane_cfg_elf_updator updator("quad", table, "firmware.elf", work);
    EXPECT_EQ(updator.elfFile, "firmware.elf");
    EXPECT_EQ(updator.workDir, work);
    EXPECT_EQ(updator.workDirBase, work);
    EXPECT_EQ(updator.instanceName, "quad");
    EXPECT_EQ(updator.rateTable, table);
    EXPECT_EQ(updator.rateTableFile, work + "/rate_table.txt");
}

TEST(ElfUpdatorConstructor, WritesTheTableWithoutATerminatorOfItsOwn) {
    const TemporaryDirectory directory;
    const lane_cfg_elf_updator updator("quad", table, "firmware.elf", directory.path().string());
    EXPECT_EQ(readFile(updator.rateTableFile), table);
}

TEST(ElfUpdatorConstructor, ReplacesALongerTableOfAnEarlierRun) {
    const TemporaryDirectory directory;
    directory.write("rate_table.txt", std::string(table) + table);
    const lane_cfg_elf_updator updator("quad", table, "firmware.elf", directory.path().string());
    EXPECT_EQ(readFile(updator.rateTableFile), table);
}

TEST(ElfUpdatorConstructor, PassesOverATableFileThatCantBeWritten) {
    const lane_cfg_elf_updator updator("quad", table, "firmware.elf", "/nowhere/folder");
    EXPECT_EQ(updator.rateTableFile, "/nowhere/folder/rate_table.txt");
    EXPECT_FALSE(fs::exists("/nowhere"));
}

/// A work directory and its base.
struct BaseCase {
    const char* workDir;
    const char* workDirBase;
};

class ElfUpdatorBase : public testing::TestWithParam<BaseCase> {};

TEST_P(ElfUpdatorBase, LosesEveryTempAndNothingElseDoes) {
    const std::string workDir = GetParam().workDir;
    const lane_cfg_elf_updator updator("quad", table, "/x/temp/firmware.elf", workDir);
    EXPECT_EQ(updator.workDirBase, GetParam().workDirBase);
    EXPECT_EQ(updator.workDir, workDir);
    EXPECT_EQ(updator.rateTableFile, workDir + "/rate_table.txt");
    EXPECT_EQ(updator.elfFile, "/x/temp/firmware.elf");
}

INSTANTIATE_TEST_SUITE_P(Directories, ElfUpdatorBase,
                         testing::Values(BaseCase{"/nowhere/y", "/nowhere/y"},
                                         BaseCase{"/nowhere/temp/y", "/nowhere/y"},
                                         BaseCase{"/nowhere/temp/y/temp", "/nowhere/y"},
                                         BaseCase{"/nowhere/temp/temp/y", "/nowhere/y"},
                                         BaseCase{"/nowhere/temporary/y", "/nowhereorary/y"},
                                         BaseCase{"/nowhere/Temp/y", "/nowhere/Temp/y"}));

TEST(ElfUpdatorSdk, IsTheEnvironmentVariable) {
    const EnvironmentVariable sdk("CORVANE_SDK", "/opt/a b");
    EXPECT_EQ(lane_cfg_elf_updator("quad", table, "", "/nowhere").getSDKDir(), "/opt/a b");
}

TEST(ElfUpdatorSdk, IsEmptyWithoutTheVariable) {
    const EnvironmentVariable sdk("CORVANE_SDK", std::nullopt);
    EXPECT_EQ(lane_cfg_elf_updator("quad", table, "", "/nowhere").getSDKDir(), "");
}

/// A search path that holds one folder only, and an SDK; both are empty.
class ElfUpdatorTool : public testing::Test {
  protected:
    std::string found() const {
        return lane_cfg_elf_updator("quad", table, "", "/nowhere").getObjCopyProgramPath("tool");
    }

    const TemporaryDirectory directory;
    const std::string onPath = directory.file("path/tool");
    const std::string inSdk = directory.file("sdk/gnu/picocore/lin/bin/tool");
    const EnvironmentVariable searchPath{"PATH", directory.file("path")};
    const EnvironmentVariable sdk{"CORVANE_SDK", directory.file("sdk")};
};

TEST_F(ElfUpdatorTool, IsThatOfTheSearchPathFirst) {
    writeIdleProgram(onPath);
    writeIdleProgram(inSdk);
    EXPECT_EQ(found(), onPath);
}

TEST_F(ElfUpdatorTool, IsThatOfTheSdkOtherwise) {
    writeIdleProgram(inSdk);
    EXPECT_EQ(found(), inSdk);
}

TEST_F(ElfUpdatorTool, IsEmptyWhenThereIsNone) {
    EXPECT_EQ(found(), "");
}

TEST_F(ElfUpdatorTool, IsEmptyWithoutASdkAndNoneOnTheSearchPath) {
    const EnvironmentVariable noSdk("CORVANE_SDK", std::nullopt);
    EXPECT_EQ(found(), "");
}

TEST_F(ElfUpdatorTool, IsEmptyForAFileThatCantBeExecuted) {
    writeIdleProgram(inSdk);
    fs::permissions(inSdk, fs::perms::owner_read);
    EXPECT_EQ(found(), "");
}

/// A work directory with a tool, and a script that tells that it ran.
class ElfUpdate : public testing::Test {
  protected:
    ElfUpdate() { work.writeScript("echo ran\n"); }

    bool update(const std::string& elfFile = "firmware.elf",
                const std::string& instanceName = "quad") const {
        return lane_cfg_elf_updator(instanceName, table, elfFile, work.path()).updateElf();
    }

    /// The update fails before the script; the table is there all the same.
    void expectNothingRun() const {
        EXPECT_FALSE(update());
        EXPECT_FALSE(fs::exists(work.logFile()));
        EXPECT_EQ(readFile(work.rateTableFile()), table);
    }

    const ElfWorkDirectory work;
};

class ElfUpdateWithTool : public ElfUpdate {
  protected:
    ElfUpdateWithTool() { work.addIdleTool(); }
};

TEST_F(ElfUpdate, WithoutAToolIsFalseAndNeverTouchesTheScript) {
    const EnvironmentVariable searchPath("PATH", work.outside().file("tools"));
    expectNothingRun();
    EXPECT_FALSE(isExecutable(work.scriptFile()));
}

TEST_F(ElfUpdateWithTool, MakesTheScriptExecutableAndIsTrueWhenItGivesZero) {
    ASSERT_FALSE(isExecutable(work.scriptFile()));
    EXPECT_TRUE(update());
    EXPECT_TRUE(isExecutable(work.scriptFile()));
    EXPECT_EQ(readFile(work.logFile()), "ran\n");
}

TEST_F(ElfUpdateWithTool, WithoutAScriptIsFalse) {
    fs::remove(work.scriptFile());
    expectNothingRun();
}

TEST_F(ElfUpdateWithTool, WithALinkToNoScriptIsFalse) {
    fs::remove(work.scriptFile());
    fs::create_symlink(work.file("missing"), work.scriptFile());
    expectNothingRun();
}

TEST_F(ElfUpdateWithTool, WithAScriptThatCantBeMadeExecutableIsFalse) {
    fs::remove(work.scriptFile());
    fs::create_directory(work.scriptFile());
    expectNothingRun();
}

TEST_F(ElfUpdateWithTool, WithAScriptThatNamesNoInterpreterIsFalse) {
    work.outside().write("work/update_elf.sh", "exit 0\n");
    EXPECT_FALSE(update());
}

TEST_F(ElfUpdateWithTool, WithAScriptThatFailsIsFalseAndLeavesItsLog) {
    work.writeScript("echo reason >&2\nexit 3\n");
    EXPECT_FALSE(update());
    EXPECT_EQ(readFile(work.logFile()), "reason\n");
}

TEST_F(ElfUpdateWithTool, WithAScriptEndedByASignalIsFalse) {
    work.writeScript("kill -KILL $$\n");
    EXPECT_FALSE(update());
}

TEST_F(ElfUpdateWithTool, WithALogThatCantBeWrittenIsFalseAndRunsNothing) {
    fs::create_directory(work.logFile());
    work.writeScript("echo ran > ran\n");
    EXPECT_FALSE(update());
    EXPECT_FALSE(fs::exists(work.file("ran")));
}

TEST_F(ElfUpdateWithTool, WithATableFileThatCantBeWrittenStillRunsTheScript) {
    fs::create_directory(work.rateTableFile());
    EXPECT_TRUE(update());
    EXPECT_EQ(readFile(work.logFile()), "ran\n");
}

TEST_F(ElfUpdateWithTool, InAMissingDirectoryIsFalseAndMakesNone) {
    const std::string missing = work.file("missing");
    EXPECT_FALSE(lane_cfg_elf_updator("quad", table, "firmware.elf", missing).updateElf());
    EXPECT_FALSE(fs::exists(missing));
}

TEST_F(ElfUpdateWithTool, InAFileInsteadOfADirectoryIsFalse) {
    const std::string file = work.scriptFile();
    EXPECT_FALSE(lane_cfg_elf_updator("quad", table, "firmware.elf", file).updateElf());
    EXPECT_EQ(readFile(file), "#!/bin/sh\necho ran\n");
}

TEST_F(ElfUpdateWithTool, HandsTheFiveArgumentsOverInTheirOrder) {
    work.writeScript("printf '<%s>' \"$#\" \"$@\"\n");
    EXPECT_TRUE(update());
    EXPECT_EQ(readFile(work.logFile()), "<5><" + work.toolFile() + "><firmware.elf><" +
                                            work.path() + "><" + work.rateTableFile() + "><quad>");
}

TEST(ElfUpdateAwkward, HandsBlanksQuotesSemicolonsAndLineFeedsOverAsTheyAre) {
    const ElfWorkDirectory work(awkwardName);
    work.addIdleTool();
    work.writeScript("printf '<%s>' \"$@\"\n");
    EXPECT_TRUE(
        lane_cfg_elf_updator(awkwardName, table, std::string("/") + awkwardName, work.path())
            .updateElf());
    EXPECT_EQ(readFile(work.logFile()), "<" + work.toolFile() + "></" + awkwardName + "><" +
                                            work.path() + "><" + work.rateTableFile() + "><" +
                                            awkwardName + ">");
}

TEST(ElfUpdateTemp, HandsTheBaseOverAndRunsInTheWorkDirectory) {
    const ElfWorkDirectory work("temp/quad/temp");
    work.addIdleTool();
    work.writeScript("printf '%s|' \"$3\" \"$4\"; pwd -P\n");
    lane_cfg_elf_updator updator("quad", table, "firmware.elf", work.path());
    EXPECT_TRUE(updator.updateElf());
    EXPECT_EQ(updator.workDirBase, work.outside().file("quad"));
    EXPECT_EQ(readFile(work.logFile()), work.outside().file("quad") + "|" + work.rateTableFile() +
                                            "|" + fs::canonical(work.path()).string() + "\n");
}

TEST_F(ElfUpdateWithTool, WritesTheTableBeforeTheScriptRuns) {
    work.writeScript("read -r line <\"$4\"\necho \"$line\"\n");
    EXPECT_TRUE(update());
    EXPECT_EQ(readFile(work.logFile()), std::string(table) + "\n");
}

std::vector<std::string> environmentOfTheProcess() {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        variables.emplace_back(*variable);
    }
    return variables;
}

TEST_F(ElfUpdateWithTool, LeavesTheCallersEnvironmentAndDirectory) {
    const std::vector<std::string> environmentBefore = environmentOfTheProcess();
    const fs::path directoryBefore = fs::current_path();
    work.writeScript("export CORVANE_SDK=other PATH=other\ncd /\n");
    EXPECT_TRUE(update());
    EXPECT_EQ(environmentOfTheProcess(), environmentBefore);
    EXPECT_EQ(fs::current_path(), directoryBefore);
}

TEST_F(ElfUpdateWithTool, CanBeLaunchedFromAnotherDirectoryWithAnotherLog) {
    work.writeScript("pwd -P\n");
    std::string launchDir = work.outside().file("tools");
    std::string logFile = work.outside().file("other.log");
    EXPECT_TRUE(lane_cfg_elf_updator("quad", table, "firmware.elf", work.path())
                    .createAndLaunchProcess(launchDir, logFile));
    EXPECT_EQ(readFile(logFile), fs::canonical(launchDir).string() + "\n");
    EXPECT_FALSE(fs::exists(work.logFile()));
}

/// The file that an update without a work directory writes, put back at the end.
class RootRateTable {
  public:
    RootRateTable() {
        if (fs::exists(path)) {
            before_ = readFile(path);
            fs::remove(path);
        }
    }
    ~RootRateTable() {
        fs::remove(path);
        if (before_) {
            std::ofstream(path) << *before_;
        }
    }
    RootRateTable(const RootRateTable&) = delete;
    RootRateTable& operator=(const RootRateTable&) = delete;

    static constexpr const char* path = "/rate_table.txt";

  private:
    std::optional<std::string> before_;
};

TEST_F(ElfUpdateWithTool, WithoutAWorkDirectoryIsFalseAfterWritingATableToTheRoot) {
    const RootRateTable rootTable;
    lane_cfg_elf_updator updator("quad", table, "firmware.elf", "");
    EXPECT_EQ(updator.rateTableFile, RootRateTable::path);
    // Only a user who may write there gets the file.
    ASSERT_EQ(fs::exists(RootRateTable::path), access("/", W_OK) == 0);
    EXPECT_FALSE(updator.updateElf());
}

}  // namespace
