#include "support/temporary_directory.h"

#include <lanecfg/host/ToolFileWriteStream.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <ios>
#include <string>

using lanecfg_test::readFile;
using lanecfg_test::TemporaryDirectory;

namespace {

TEST(ToolFileWriteStream, WritesTheFileWithoutATerminatorOfItsOwn) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("out.txt");
    ToolFileWriteStream(path, std::ios_base::out) << "one\ntwo";
    EXPECT_EQ(readFile(path), "one\ntwo");
}

TEST(ToolFileWriteStream, EmptiesAnOlderFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("out.txt", "a much longer older text");
    ToolFileWriteStream(path, std::ios_base::out) << "new";
    EXPECT_EQ(readFile(path), "new");
}

TEST(ToolFileWriteStream, AppendsInTheAppendingMode) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("out.txt", "old ");
    ToolFileWriteStream(path, std::ios_base::out | std::ios_base::app) << "new";
    EXPECT_EQ(readFile(path), "old new");
}

TEST(ToolFileWriteStream, FailsWithoutAnExceptionInAMissingDirectory) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("missing/out.txt");
    ToolFileWriteStream stream(path, std::ios_base::out);
    EXPECT_TRUE(stream.fail());
    EXPECT_NO_THROW(stream << "dropped");
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST(ToolFileWriteStream, FailsWithoutAnExceptionOnADirectory) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(ToolFileWriteStream(directory.path().string(), std::ios_base::out).fail());
}

}  // namespace
