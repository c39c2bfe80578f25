#include "support/temporary_directory.h"

#include <lanecfg/host/ToolFile.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using lanecfg_test::TemporaryDirectory;
using std::filesystem::perms;

namespace {

constexpr perms executableByAll = perms::owner_exec | perms::group_exec | perms::others_exec;

class ToolFileTest : public testing::Test {
  protected:
    TemporaryDirectory directory_;
};

TEST(ToolFileSeparator, IsTheSlash) {
    EXPECT_EQ(ToolFile::getDirSeparator(), "/");
}

TEST_F(ToolFileTest, ExistsForAFileAndADirectory) {
    EXPECT_TRUE(ToolFile(directory_.write("file", "")).exists());
    EXPECT_TRUE(ToolFile(directory_.path().string()).exists());
}

TEST_F(ToolFileTest, DoesNotExistForAMissingOrEmptyPath) {
    EXPECT_FALSE(ToolFile(directory_.file("missing")).exists());
    EXPECT_FALSE(ToolFile("").exists());
}

TEST_F(ToolFileTest, DoesNotExistBelowAFile) {
    EXPECT_FALSE(ToolFile(directory_.write("file", "") + "/below").exists());
}

TEST_F(ToolFileTest, DoesNotExistForALinkToNothing) {
    std::filesystem::create_symlink(directory_.file("missing"), directory_.path() / "link");
    EXPECT_FALSE(ToolFile(directory_.file("link")).exists());
}

TEST_F(ToolFileTest, MkExecutableAddsThePermissionAndKeepsTheOthers) {
    const std::string path = directory_.write("script", "#!/bin/sh\n");
    const perms before = perms::owner_read | perms::owner_write | perms::group_read;
    std::filesystem::permissions(path, before);

    EXPECT_TRUE(ToolFile(path).mkExecutable());

    EXPECT_EQ(std::filesystem::status(path).permissions(), before | executableByAll);
}

TEST_F(ToolFileTest, MkExecutableIsTrueForAnExecutableFile) {
    const std::string path = directory_.write("script", "#!/bin/sh\n");
    EXPECT_TRUE(ToolFile(path).mkExecutable());
    EXPECT_TRUE(ToolFile(path).mkExecutable());
}

TEST_F(ToolFileTest, MkExecutableIsFalseForAMissingFile) {
    EXPECT_FALSE(ToolFile(directory_.file("missing")).mkExecutable());
}

TEST_F(ToolFileTest, MkExecutableIsFalseForADirectoryAndLeavesIt) {
    const std::filesystem::path inner = directory_.path() / "inner";
    std::filesystem::create_directory(inner);
    std::filesystem::permissions(inner, perms::owner_all);

    EXPECT_FALSE(ToolFile(inner.string()).mkExecutable());

    EXPECT_EQ(std::filesystem::status(inner).permissions(), perms::owner_all);
}

}  // namespace
