#include "elf/elf_delivery.h"
#include "support/reference_data.h"
#include "support/run_program.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

using lanecfg_test::awkwardName;
using lanecfg_test::bytesPerWord;
using lanecfg_test::Delivery;
using lanecfg_test::digitsOf;
using lanecfg_test::firmwareFile;
using lanecfg_test::readFile;
using lanecfg_test::runOrThrow;
using lanecfg_test::sectionBytes;
using lanecfg_test::wordList;
using lanecfg_test::wordsOfText;
using sable_lanecfg::lane_cfg_ip_mgr;
using testing::Each;
using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

lanecfg_test::ProgramResult run(const std::string& program,
                                const std::vector<std::string>& arguments) {
    lanecfg_test::ProgramStart start;
    start.arguments = arguments;
    return lanecfg_test::runProgram(program, start);
}

wordList randomWords(std::size_t count, unsigned seed) {
    std::mt19937 random(seed);
    wordList words(count);
    std::generate(words.begin(), words.end(), [&] { return static_cast<std::uint32_t>(random()); });
    return words;
}

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
