#include "support/compressed_content.h"
#include "support/temporary_directory.h"

#include <lanecfg/host/strmio_iostreams.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <exception>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

using lanecfg_test::gzipped;
using lanecfg_test::incompressible;
using lanecfg_test::TemporaryDirectory;
using lanecfg_test::zlibCompressed;
using strmio::iostreams::xp_autodetect;
using testing::HasSubstr;
using testing::Property;
using testing::Throws;

namespace {

const std::string json = "{\"a\": [\"b\", 1],\n \"c\": true}\n";

/// Everything a source gives.
std::string contentOf(xp_autodetect source) {
    std::string content;
    std::array<char, 1000> part{};
    std::streamsize count = 0;
    while ((count = source.read(part.data(), part.size())) != -1) {
        content.append(part.data(), static_cast<std::size_t>(count));
    }
    return content;
}

class XpAutodetect : public testing::Test {
  protected:
    /// Content as it comes through a file that holds `stored`.
    std::string through(const std::string& stored) {
        // A new name each time, since some file systems flush a file that is overwritten.
        ++storedFiles_;
        return contentOf(
            xp_autodetect(directory_.write("stored" + std::to_string(storedFiles_), stored)));
    }

    TemporaryDirectory directory_;

  private:
    int storedFiles_ = 0;
};

TEST_F(XpAutodetect, GivesAPlainFileAsItIs) {
    EXPECT_EQ(through(json), json);
}

TEST_F(XpAutodetect, ReadsInBinary) {
    const std::string bytes("\r\n\0\x1a\n\r\xff", 7);
    EXPECT_EQ(through(bytes), bytes);
}

TEST_F(XpAutodetect, UnpacksGzip) {
    EXPECT_EQ(through(gzipped(json)), json);
}

TEST_F(XpAutodetect, UnpacksAGzipFileOfSeveralMembers) {
    EXPECT_EQ(through(gzipped(json) + gzipped("more")), json + "more");
}

TEST_F(XpAutodetect, UnpacksZlibOfEveryLevelAndWindow) {
    for (int level = 0; level <= 9; ++level) {
        for (int windowBits = 9; windowBits <= 15; ++windowBits) {
            EXPECT_EQ(through(zlibCompressed(json, level, windowBits)), json)
                << "level " << level << ", window " << windowBits;
        }
    }
}

TEST_F(XpAutodetect, GivesEmptyContent) {
    EXPECT_EQ(through(""), "");
    EXPECT_EQ(through(gzipped("")), "");
    EXPECT_EQ(through(zlibCompressed("")), "");
}

TEST_F(XpAutodetect, GivesAFileOfOneByteAsItIs) {
    for (const char* byte : {"{", "\x1f", "\x78"}) {
        EXPECT_EQ(through(byte), byte);
    }
}

TEST_F(XpAutodetect, GivesAFileAsItIsWhoseHeaderIsAlmostRight) {
    // Second byte of gzip wrong; no multiple of 31; multiple of 31, but a window of 8.
    for (const char* text : {"\x1f\x8c text", "\x78\x02 text", "\x88\x1c text"}) {
        EXPECT_EQ(through(text), text);
    }
}

TEST_F(XpAutodetect, NeverMistakesTheBeginningOfJsonTextForACompressedFile) {
    for (const int first : {0x7b, 0x5b, 0x20, 0x09, 0x0a, 0x0d, 0xef, 0xfe, 0xff}) {
        for (int second = 0; second <= 0xff; ++second) {
            const std::string text{static_cast<char>(first), static_cast<char>(second), '}'};
            EXPECT_EQ(through(text), text) << first << " " << second;
        }
    }
}

TEST_F(XpAutodetect, KeepsTheEndOnFurtherReads) {
    xp_autodetect source(directory_.write("stored", "ab"));
    std::array<char, 4> part{};
    EXPECT_EQ(source.read(part.data(), part.size()), 2);
    EXPECT_EQ(source.read(part.data(), part.size()), -1);
    EXPECT_EQ(source.read(part.data(), part.size()), -1);
}

TEST_F(XpAutodetect, ReadsNothingWhenNothingIsAskedFor) {
    xp_autodetect source(directory_.write("stored", "ab"));
    std::array<char, 4> part{};
    EXPECT_EQ(source.read(part.data(), 0), 0);
    EXPECT_EQ(source.read(part.data(), part.size()), 2);
}

TEST_F(XpAutodetect, SharesThePositionWithItsCopies) {
    xp_autodetect source(directory_.write("stored", "abc"));
    xp_autodetect copy = source;
    char character = '\0';
    ASSERT_EQ(source.read(&character, 1), 1);
    EXPECT_EQ(contentOf(copy), "bc");
}

TEST_F(XpAutodetect, ReadsFromAPipe) {
    for (const std::string& stored : {json, gzipped(json), zlibCompressed(json)}) {
        std::array<int, 2> ends{};
        ASSERT_EQ(pipe(ends.data()), 0);
        ASSERT_EQ(write(ends[1], stored.data(), stored.size()),
                  static_cast<ssize_t>(stored.size()));
        close(ends[1]);
        EXPECT_EQ(contentOf(xp_autodetect("/dev/fd/" + std::to_string(ends[0]))), json);
        close(ends[0]);
    }
}

TEST_F(XpAutodetect, ThrowsForAMissingFile) {
    EXPECT_THAT([this] { xp_autodetect{directory_.file("missing")}; },
                Throws<std::exception>(
                    Property(&std::exception::what, HasSubstr("No such file or directory"))));
}

TEST_F(XpAutodetect, ThrowsForAnEmptyPath) {
    EXPECT_THROW(xp_autodetect{""}, std::exception);
}

TEST_F(XpAutodetect, ThrowsForADirectory) {
    EXPECT_THAT(
        [this] { xp_autodetect{directory_.path().string()}; },
        Throws<std::exception>(Property(&std::exception::what, HasSubstr("Is a directory"))));
}

struct Form {
    std::string name;
    std::string (*compress)(const std::string&);
    std::size_t bytesBehindChecksum;
};

void PrintTo(const Form& form, std::ostream* stream) {
    *stream << form.name;
}

class CompressedFile : public XpAutodetect, public testing::WithParamInterface<Form> {
  protected:
    static std::string compressed(const std::string& content) {
        return GetParam().compress(content);
    }
};

TEST_P(CompressedFile, IsReadWholeWhenItIsLarge) {
    const std::string content = incompressible(300000, 1);
    EXPECT_EQ(through(compressed(content)), content);
}

TEST_P(CompressedFile, ThrowsWhereverItIsCutOff) {
    const std::string stored = compressed(json);
    // The first two bytes are what it is recognised by.
    for (std::size_t length = 2; length < stored.size(); ++length) {
        EXPECT_THROW(through(stored.substr(0, length)), std::exception) << length;
    }
}

TEST_P(CompressedFile, ThrowsWhereverItIsCutOffWhenItIsLarge) {
    const std::string stored = compressed(incompressible(300000, 2));
    std::vector<std::size_t> lengths{65535, 65536, 65537, 131072, 262144, stored.size() - 1};
    std::mt19937 generator(3);
    std::uniform_int_distribution<std::size_t> anyLength(2, stored.size() - 1);
    for (int count = 0; count < 50; ++count) {
        lengths.push_back(anyLength(generator));
    }
    for (const std::size_t length : lengths) {
        EXPECT_THROW(through(stored.substr(0, length)), std::exception) << length;
    }
}

TEST_P(CompressedFile, ThrowsWhenItsChecksumIsWrong) {
    std::string stored = compressed(json);
    char& lastOfChecksum = stored.at(stored.size() - 1 - GetParam().bytesBehindChecksum);
    lastOfChecksum = static_cast<char>(lastOfChecksum ^ 1);
    EXPECT_THROW(through(stored), std::exception);
}

TEST_P(CompressedFile, ThrowsWhenTheHeaderIsFollowedByNoise) {
    EXPECT_THROW(through(compressed(json).substr(0, 2) + std::string(100, '\xff')), std::exception);
}

INSTANTIATE_TEST_SUITE_P(
    BothForms, CompressedFile,
    testing::Values(Form{"Gzip", gzipped, 4},
                    Form{"Zlib", [](const std::string& text) { return zlibCompressed(text); }, 0}),
    [](const testing::TestParamInfo<Form>& form) { return form.param.name; });

}  // namespace
