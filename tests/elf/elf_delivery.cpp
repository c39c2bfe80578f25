#include "elf/elf_delivery.h"

#include "support/reference_data.h"
#include "support/run_program.h"

#include <lanecfg/lane_cfg_elf_updator.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace lanecfg_test {

namespace fs = std::filesystem;

std::string firmwareFile(const std::string& name) {
    return (dataFolder() / "firmware" / name).string();
}

void runOrThrow(const std::string& program, const std::vector<std::string>& arguments) {
    ProgramStart start;
    start.arguments = arguments;
    const ProgramResult result = runProgram(program, start);
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

wordList wordsOfText(const std::string& text) {
    std::istringstream stream(text.substr(text.find('\n')));
    wordList words;
    std::transform(std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>(),
                   std::back_inserter(words), [](const std::string& word) {
                       return static_cast<std::uint32_t>(std::stoul(word, nullptr, 16));
                   });
    return words;
}

Delivery::Delivery(const std::string& directory, const std::string& elfName)
    : work(directory), elfFile(work.outside().file(elfName)) {
    work.addObjectCopyTool();
    fs::copy_file(firmwareFile("update_elf.sh"), work.scriptFile());
    runOrThrow(firmwareFile("make_elf.sh"), {elfFile, std::to_string(sectionBytes)});
}

bool Delivery::update(const std::string& digits, const std::string& elf) const {
    return sable_lanecfg::lane_cfg_elf_updator("quad", digits, elf, work.path()).updateElf();
}

std::string Delivery::section(const std::string& name) const {
    const std::string dump = work.outside().file("section");
    runOrThrow(work.toolFile(),
               {"--dump-section", name + "=" + dump, elfFile, work.outside().file("unchanged")});
    return readFile(dump);
}

void Delivery::expectTable(const wordList& table) const {
    wordList expected = table;
    expected.resize(sectionBytes / bytesPerWord);
    EXPECT_EQ(wordsOf(section(".rate_table")), expected);
}

}  // namespace lanecfg_test
