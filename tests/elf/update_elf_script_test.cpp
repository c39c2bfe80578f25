#include "elf_work_directory.h"
#include "support/reference_data.h"
#include "support/run_program.h"

#include <lanecfg/lane_cfg_elf_updator.h>
#include <lanecfg/lane_cfg_ip_mgr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

using lanecfg_test::awkwardName;
using lanecfg_test::ElfWorkDirectory;
using lanecfg_test::readFile;
using sable_lanecfg::lane_cfg_elf_updator;
using sable_lanecfg::lane_cfg_ip_mgr;
using testing::Each;
using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

using wordList = std::vector<std::uint32_t>;

constexpr std::size_t bytesPerWord = 4;
constexpr std::size_t sectionBytes = 8192;

std::string firmwareFile(const std::string& name) {
    return (lanecfg_test::dataFolder() / "firmware" / name).string();
}

lanecfg_test::ProgramResult run(const std::string& program,
                                const std::vector<std::string>& arguments) {
    lanecfg_test::ProgramStart start;
    start.arguments = arguments;
    return lanecfg_test::runProgram(program, start);
}

void runOrThrow(const std::string& program, const std::vector<std::string>& arguments) {
    const lanecfg_test::ProgramResult result = run(program, arguments);
    if (result.exitCode != 0) {
        throw std::runtime_error(program + ": " + result.errors);
    }
}

std::string digitsOf(const wordList& words) {
    std::string digits;
    for (const std::uint32_t word : words) {
        digits += std::bitset<32>(word).to_string();
    }
    return digits;
}

/// Words of bytes that begin with the least significant one.
wordList wordsOf(const std::string& bytes) {
    wordList words;
    for (std::size_t start = 0; start + bytesPerWord <= bytes.size(); start += bytesPerWord) {
        std::uint32_t word = 0;
        for (std::size_t byte = bytesPerWord; byte-- > 0;) {
            word = word << 8U | static_cast<unsigned char>(bytes[start + byte]);
        }
        words.push_back(word);
    }
    return words;
}

wordList randomWords(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    wordList words(count);
    std::generate(words.begin(), words.end(), [&] { return static_cast<std::uint32_t>(random()); });
    return words;
}

/// A work directory with the delivered script, the object-copy tool and a small ELF.
class Delivery {
  public:
    explicit Delivery(const std::string& directory = "work",
                      const std::string& elfName = "firmware.elf")
        : work(directory), elfFile(work.outside().file(elfName)) {
        work.addObjectCopyTool();
        fs::copy_file(firmwareFile("update_elf.sh"), work.scriptFile());
        runOrThrow(firmwareFile("make_elf.sh"), {elfFile, std::to_string(sectionBytes)});
    }

    bool update(const std::string& digits) const { return update(digits, elfFile); }
    bool update(const std::string& digits, const std::string& elf) const {
        return lane_cfg_elf_updator("quad", digits, elf, work.path()).updateElf();
    }

    std::string section(const std::string& name) const {
        const std::string dump = work.outside().file("section");
        runOrThrow(work.toolFile(), {"--dump-section", name + "=" + dump, elfFile,
                                     work.outside().file("unchanged")});
        return readFile(dump);
    }

    /// The ELF's section is the table with words of 0 behind it, and keeps its size.
    void expectTable(const wordList& table) const {
        wordList expected = table;
        expected.resize(sectionBytes / bytesPerWord);
        EXPECT_EQ(wordsOf(section(".rate_table")), expected);
    }

    const ElfWorkDirectory work;
    const std::string elfFile;
};

class UpdateElfScript : public testing::Test {
  protected:
    /// The update fails, leaves the ELF as it is, and the log names the reason.
    void expectRefused(const std::string& digits, const std::string& reason) const {
        const std::string before = readFile(delivery.elfFile);
        EXPECT_FALSE(delivery.update(digits));
        EXPECT_THAT(log(), HasSubstr(reason));
        EXPECT_EQ(readFile(delivery.elfFile), before);
    }
    std::string log() const { return readFile(delivery.work.logFile()); }

    const Delivery delivery;
};

TEST_F(UpdateElfScript, FindsASectionFullOfThePatternInAFreshElf) {
    EXPECT_THAT(delivery.section(".rate_table"), testing::SizeIs(sectionBytes));
    EXPECT_THAT(delivery.section(".rate_table"), Each('\xa5'));
}

TEST_F(UpdateElfScript, PutsTheLeastSignificantByteFirst) {
    // 0x01234567 and 0x89abcdef, digit by digit.
    EXPECT_TRUE(
        delivery.update("0000000100100011010001010110011110001001101010111100110111101111"));
    EXPECT_EQ(delivery.section(".rate_table").substr(0, 10),
              std::string("\x67\x45\x23\x01\xef\xcd\xab\x89\0\0", 10));
}

TEST_F(UpdateElfScript, PutsTablesOfAllSizesInWordByWord) {
    const std::size_t room = sectionBytes / bytesPerWord;
    for (const std::size_t count : {std::size_t{1}, std::size_t{10}, std::size_t{777}, room}) {
        SCOPED_TRACE(count);
        const wordList table = randomWords(count, static_cast<unsigned>(count));
        ASSERT_TRUE(delivery.update(digitsOf(table))) << log();
        delivery.expectTable(table);
    }
}

TEST_F(UpdateElfScript, KeepsBytesThatAreSpecialInATextFile) {
    // Null bytes, line ends, a per cent sign and a backslash in all four places.
    const wordList table{0x00000000U, 0x0A0D0A0DU, 0x25255C5CU, 0xFFFFFFFFU, 0x00FF000AU};
    ASSERT_TRUE(delivery.update(digitsOf(table))) << log();
    delivery.expectTable(table);
}

TEST_F(UpdateElfScript, LeavesTheCodeAlone) {
    const std::string code = delivery.section(".text");
    EXPECT_TRUE(delivery.update(digitsOf({1})));
    EXPECT_EQ(delivery.section(".text"), code);
}

TEST_F(UpdateElfScript, ReplacesATableOfAnEarlierRun) {
    EXPECT_TRUE(delivery.update(digitsOf(randomWords(40, 1))));
    EXPECT_TRUE(delivery.update(digitsOf({7, 8})));
    delivery.expectTable({7, 8});
}

TEST_F(UpdateElfScript, NamesInstanceSizeAndElfInTheLog) {
    EXPECT_TRUE(delivery.update(digitsOf({7, 8})));
    EXPECT_THAT(log(), HasSubstr("update_elf: quad: put a rate table of 8 bytes into " +
                                 delivery.elfFile + "\n"));
}

TEST_F(UpdateElfScript, RefusesATableThatDoesNotFit) {
    expectRefused(digitsOf(wordList(sectionBytes / bytesPerWord + 1)),
                  "the rate table has 8196 bytes");
}

TEST_F(UpdateElfScript, RefusesAnEmptyTable) {
    expectRefused("", "is empty");
}

TEST_F(UpdateElfScript, RefusesATableThatIsNoWholeWords) {
    expectRefused(digitsOf({1}) + "0", "not made of words of 32 binary digits");
}

TEST_F(UpdateElfScript, RefusesATableWithOtherCharacters) {
    expectRefused(std::string(31, '0') + "2", "not made of words of 32 binary digits");
}

TEST_F(UpdateElfScript, RefusesAnElfWithoutTheSection) {
    runOrThrow(delivery.work.toolFile(), {"--remove-section", ".rate_table", delivery.elfFile});
    expectRefused(digitsOf({1}), "can't read the section .rate_table");
}

TEST_F(UpdateElfScript, RefusesAFileThatIsNoElf) {
    delivery.work.outside().write("firmware.elf", "text");
    expectRefused(digitsOf({1}), "can't read the section .rate_table");
}

TEST_F(UpdateElfScript, RefusesAMissingElf) {
    EXPECT_FALSE(delivery.update(digitsOf({1}), "/nowhere/firmware.elf"));
    EXPECT_THAT(log(), HasSubstr("there is no ELF file /nowhere/firmware.elf"));
}

TEST_F(UpdateElfScript, RefusesAMissingTable) {
    fs::create_directory(delivery.work.rateTableFile());
    EXPECT_FALSE(delivery.update(digitsOf({1})));
    EXPECT_THAT(log(), HasSubstr("there is no rate table " + delivery.work.rateTableFile()));
}

TEST_F(UpdateElfScript, RefusesAnotherNumberOfArguments) {
    const auto result = run(firmwareFile("update_elf.sh"), {"tool", "elf"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.errors, "update_elf: ?: expected 5 arguments, got 2\n");
}

TEST(UpdateElfScriptPaths, MayHaveBlanksQuotesSemicolonsAndLineFeeds) {
    const Delivery delivery(awkwardName, std::string(awkwardName) + "=.elf");
    ASSERT_TRUE(delivery.update(digitsOf({7, 8}))) << readFile(delivery.work.logFile());
    delivery.expectTable({7, 8});
}

TEST(UpdateElfScriptPaths, TakeARelativeElfFromTheBaseOfTheWorkDirectory) {
    const Delivery delivery("temp", "-firmware.elf");
    ASSERT_TRUE(delivery.update(digitsOf({7, 8}), "-firmware.elf"))
        << readFile(delivery.work.logFile());
    delivery.expectTable({7, 8});
}

/// Words of the text form, eight hexadecimal digits each below a header line.
wordList wordsOfText(const std::string& text) {
    std::istringstream stream(text.substr(text.find('\n')));
    wordList words;
    std::transform(std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>(),
                   std::back_inserter(words), [](const std::string& word) {
                       return static_cast<std::uint32_t>(std::stoul(word, nullptr, 16));
                   });
    return words;
}

class UpdateElfOfARequest : public testing::TestWithParam<std::string> {};

TEST_P(UpdateElfOfARequest, HoldsTheWordsOfTheMemoryImage) {
    const Delivery delivery;
    const std::string request = GetParam();
    const auto content = lanecfg_test::bundledRequest(request);
    const auto family = content.at("family").get<std::string>();
    const auto selector = content.at("selector").get<std::string>();
    lanecfg_test::initialiseBundledRequest("quad", request);
    const auto image = [&] { return lane_cfg_ip_mgr::getMemContent("quad", family, selector); };
    // The first table adjusts the snapshots that the next ones are made from.
    image();
    const wordList table = wordsOfText(image().at("@00016000"));

    ASSERT_EQ(lane_cfg_ip_mgr::updateELF("quad", family, selector, delivery.elfFile,
                                         delivery.work.path()),
              1)
        << readFile(delivery.work.logFile());
    EXPECT_EQ(readFile(delivery.work.rateTableFile()), digitsOf(table));
    delivery.expectTable(table);
    lane_cfg_ip_mgr::releaseData("quad");
}

INSTANTIATE_TEST_SUITE_P(Requests, UpdateElfOfARequest,
                         testing::ValuesIn(lanecfg_test::bundledRequests()),
                         [](const auto& request) { return request.param; });

}  // namespace
