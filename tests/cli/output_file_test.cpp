#include "output_file.h"

#include "errors.h"
#include "support/temporary_directory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>

namespace lanecfg_test {
namespace {

namespace fs = std::filesystem;
using sable_lanecfg::tool::RequestError;
using sable_lanecfg::tool::writeWholeFile;

class WholeFile : public testing::Test {
  protected:
    std::size_t filesInDirectory() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(directory_.path()), fs::directory_iterator()));
    }

    TemporaryDirectory directory_;
};

/// No file of the process grows beyond `bytes` while it lives.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : previousHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &previous_);
        const rlimit limit = {bytes, previous_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &previous_);
        (void)std::signal(SIGXFSZ, previousHandler_);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit previous_ = {};
    void (*previousHandler_)(int);
};

TEST_F(WholeFile, IsCreated) {
    writeWholeFile(directory_.file("new"), "content");
    EXPECT_EQ(readFile(directory_.file("new")), "content");
    EXPECT_EQ(filesInDirectory(), 1U);
}

TEST_F(WholeFile, ReplacesTheOldOne) {
    const std::string file = directory_.write("file", "a longer content");
    writeWholeFile(file, "short");
    EXPECT_EQ(readFile(file), "short");
    EXPECT_EQ(filesInDirectory(), 1U);
}

TEST_F(WholeFile, KeepsTheRightsOfTheOldOne) {
    const std::string file = directory_.write("file", "old");
    fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    writeWholeFile(file, "new");
    EXPECT_EQ(fs::status(file).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
}

TEST_F(WholeFile, HasTheUsualRightsWhenNew) {
    const mode_t before = umask(027);
    writeWholeFile(directory_.file("new"), "content");
    umask(before);
    EXPECT_EQ(fs::status(directory_.file("new")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
}

TEST_F(WholeFile, IsWrittenBehindALink) {
    const std::string file = directory_.write("file", "old");
    fs::create_symlink(file, directory_.file("link"));
    writeWholeFile(directory_.file("link"), "new");
    EXPECT_TRUE(fs::is_symlink(directory_.file("link")));
    EXPECT_EQ(readFile(file), "new");
}

TEST_F(WholeFile, IsMadeBehindALinkToNothing) {
    fs::create_directory(directory_.file("below"));
    fs::create_symlink("below/next", directory_.file("link"));
    fs::create_symlink("new", directory_.file("below/next"));
    writeWholeFile(directory_.file("link"), "content");
    EXPECT_TRUE(fs::is_symlink(directory_.file("link")));
    EXPECT_TRUE(fs::is_symlink(directory_.file("below/next")));
    EXPECT_FALSE(fs::is_symlink(directory_.file("below/new")));
    EXPECT_EQ(readFile(directory_.file("below/new")), "content");
}

TEST_F(WholeFile, IsNotWrittenBehindLinksInACircle) {
    fs::create_symlink("second", directory_.file("first"));
    fs::create_symlink("first", directory_.file("second"));
    EXPECT_THROW(writeWholeFile(directory_.file("first"), "content"), RequestError);
    EXPECT_TRUE(fs::is_symlink(directory_.file("first")));
    EXPECT_EQ(filesInDirectory(), 2U);
}

TEST_F(WholeFile, MayHaveTheLongestName) {
    const std::string file = directory_.file(std::string(255, 'n'));
    writeWholeFile(file, "content");
    EXPECT_EQ(readFile(file), "content");
    EXPECT_EQ(filesInDirectory(), 1U);
}

TEST_F(WholeFile, LeavesDevicesInPlace) {
    writeWholeFile("/dev/null", "content");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(WholeFile, IsLeftAsItWasWhenWritingFails) {
    const std::string file = directory_.write("file", "old");
    {
        const FileSizeLimit limit(1000);
        EXPECT_THROW(writeWholeFile(file, std::string(2000, 'x')), RequestError);
    }
    EXPECT_EQ(readFile(file), "old");
    EXPECT_EQ(filesInDirectory(), 1U);
}

TEST_F(WholeFile, LeavesNothingWhenWritingANewOneFails) {
    {
        const FileSizeLimit limit(1000);
        EXPECT_THROW(writeWholeFile(directory_.file("new"), std::string(2000, 'x')), RequestError);
    }
    EXPECT_EQ(filesInDirectory(), 0U);
}

TEST_F(WholeFile, IsNamedWithTheReasonWhenItCannotBeWritten) {
    const std::string file = directory_.write("file", "") + "/below";
    try {
        writeWholeFile(file, "content");
        FAIL() << "written";
    } catch (const RequestError& error) {
        EXPECT_THAT(error.what(),
                    testing::HasSubstr("Cannot write the file " + file + ": Not a directory"));
    }
}

TEST_F(WholeFile, IsNoDirectory) {
    EXPECT_THROW(writeWholeFile(directory_.path(), "content"), RequestError);
}

}  // namespace
}  // namespace lanecfg_test
