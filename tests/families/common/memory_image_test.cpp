#include "families/common/memory_image.h"

#include "support/reference_data.h"
#include "support/temporary_directory.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <regex>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {
namespace {

using sectionSizes = std::vector<std::pair<std::string, std::size_t>>;

/// What is known of an image: its file, the form of a full line, and the words, or bytes, of each
/// section.
struct ImageShape {
    MemoryImage image;
    std::string name;
    std::string group;
    std::size_t groupsInLine;
    sectionSizes sizes;
};

const sectionSizes liveSizes{{"@00008000", 20}, {"@00008050", 10880}, {"@00012A50", 1},
                             {"@00012A54", 43}, {"@00012B00", 82},    {"@00012C48", 3310}};

const std::vector<ImageShape> shapes{
    {MemoryImage::live, "live", "[0-9A-F]{8}", 8, liveSizes},
    {MemoryImage::liveEarlySilicon, "live_early_silicon", "[0-9A-F]{8}", 8, liveSizes},
    {MemoryImage::sxc,
     "sxc",
     "[0-9A-F]{8}",
     8,
     {{"@00008000", 20},
      {"@00008050", 10368},
      {"@00012250", 1},
      {"@00012254", 43},
      {"@00012300", 82},
      {"@00012448", 3822}}},
    {MemoryImage::frozen,
     "frozen",
     "[0-9a-f]{2}",
     32,
     {{"@00008000", 40},
      {"@00008050", 24132},
      {"@00010000", 440},
      {"@00010248", 116},
      {"@0001038c", 864}}},
};

/// Lines of a text without their line feeds; what follows the last line feed is a line too.
std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    boost::algorithm::split(lines, text, boost::algorithm::is_any_of("\n"));
    return lines;
}

class MemoryImageShape : public testing::TestWithParam<ImageShape> {
  protected:
    const std::map<std::string, std::string> sections = memoryImageSections(GetParam().image);
};

TEST_P(MemoryImageShape, HasItsSectionsAndNoRateTable) {
    std::vector<std::string> keys;
    for (const auto& section : GetParam().sizes) {
        keys.push_back(section.first);
    }
    std::vector<std::string> found;
    for (const auto& section : sections) {
        found.push_back(section.first);
    }
    EXPECT_EQ(found, keys);
}

TEST_P(MemoryImageShape, HasTheWordsOfEachSection) {
    const std::regex group(GetParam().group);
    for (const auto& [key, size] : GetParam().sizes) {
        const std::string& text = sections.at(key);
        const std::sregex_iterator first(text.begin(), text.end(), group);
        EXPECT_EQ(std::distance(first, std::sregex_iterator()), static_cast<std::ptrdiff_t>(size))
            << key;
    }
}

TEST_P(MemoryImageShape, HasFullLinesAndAtMostTheLastOneShorter) {
    const std::size_t full = GetParam().groupsInLine;
    for (const auto& [key, size] : GetParam().sizes) {
        std::vector<std::string> lines = linesOf(sections.at(key));
        // Every line has its line feed, the last one too.
        ASSERT_EQ(lines.back(), "") << key;
        lines.pop_back();
        ASSERT_EQ(lines.size(), (size + full - 1) / full) << key;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const std::size_t groups = std::min(full, size - i * full);
            const std::regex form("  (" + GetParam().group + " ){" + std::to_string(groups) + "}");
            ASSERT_TRUE(std::regex_match(lines[i], form)) << key << " line " << i;
        }
    }
}

TEST_P(MemoryImageShape, EndsWithAWordOfZero) {
    const std::string& text = sections.rbegin()->second;
    std::vector<std::string> lines = linesOf(text);
    lines.pop_back();
    const std::string digits = std::regex_replace(lines.back(), std::regex(" "), "");
    EXPECT_EQ(digits.substr(digits.size() - 8), "00000000");
}

TEST_P(MemoryImageShape, IsTheFileOfTheBuildTextForText) {
    std::string file;
    for (const auto& [key, text] : sections) {
        file += key + "\n" + text;
    }
    const auto path = lanecfg_test::dataFolder() / "firmware" / (GetParam().name + ".mem");
    EXPECT_TRUE(file == lanecfg_test::readFile(path)) << path;
}

TEST_P(MemoryImageShape, IsTheSameEveryTime) {
    EXPECT_EQ(memoryImageSections(GetParam().image), sections);
}

INSTANTIATE_TEST_SUITE_P(Images, MemoryImageShape, testing::ValuesIn(shapes),
                         [](const auto& shape) { return shape.param.name; });

TEST(MemoryImageVariants, DifferInTheLinesThatDependOnTheSilicon) {
    const auto sections = memoryImageSections(MemoryImage::live);
    const auto early = memoryImageSections(MemoryImage::liveEarlySilicon);
    std::map<std::string, std::size_t> differing;
    std::size_t lineCount = 0;
    for (const auto& [key, text] : sections) {
        const std::vector<std::string> lines = linesOf(text);
        const std::vector<std::string> earlyLines = linesOf(early.at(key));
        ASSERT_EQ(lines.size(), earlyLines.size()) << key;
        lineCount += lines.size() - 1;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (lines[i] != earlyLines[i]) {
                ++differing[key];
            }
        }
    }
    EXPECT_EQ(lineCount, 1795U);
    const std::map<std::string, std::size_t> expected{
        {"@00008050", 266}, {"@00012B00", 2}, {"@00012C48", 36}};
    EXPECT_EQ(differing, expected);
}

using settingsMap = std::map<std::string, std::vector<std::string>>;

TEST(MemoryImageChoice, IsEarlySiliconForBothSpellings) {
    for (const char* const revision : {"es1", "ES1"}) {
        EXPECT_EQ(liveMemoryImage({{"siliconRev", {revision}}}), MemoryImage::liveEarlySilicon);
    }
}

TEST(MemoryImageChoice, IsTheOtherVariantForEveryOtherRevision) {
    for (const char* const revision : {"ES2", "", "Es1", "es1 ", "r1"}) {
        EXPECT_EQ(liveMemoryImage({{"siliconRev", {revision}}}), MemoryImage::live) << revision;
    }
}

TEST(MemoryImageChoice, IsTheOtherVariantWithoutARevision) {
    EXPECT_EQ(liveMemoryImage({}), MemoryImage::live);
    EXPECT_EQ(liveMemoryImage(settingsMap{{"siliconRev", {}}}), MemoryImage::live);
}

TEST(MemoryImageChoice, ReadsTheFirstRevisionOnly) {
    EXPECT_EQ(liveMemoryImage({{"siliconRev", {"ES2", "es1"}}}), MemoryImage::live);
}

}  // namespace
}  // namespace sable_lanecfg
