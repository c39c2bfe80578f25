#pragma once

#include "elf/elf_work_directory.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace lanecfg_test {

using wordList = std::vector<std::uint32_t>;

constexpr std::size_t bytesPerWord = 4;
constexpr std::size_t sectionBytes = 8192;

/// Path of a file of the bundled firmware.
std::string firmwareFile(const std::string& name);

/// Runs a program; throws std::runtime_error with its messages when it fails.
void runOrThrow(const std::string& program, const std::vector<std::string>& arguments);

/// 32 binary digits for each word.
std::string digitsOf(const wordList& words);
/// Words of bytes that begin with the least significant one.
wordList wordsOf(const std::string& bytes);
/// Words of the text form, eight hexadecimal digits each below a header line.
wordList wordsOfText(const std::string& text);

/// A work directory with the delivered script, the object-copy tool and a small ELF.
class Delivery {
  public:
    explicit Delivery(const std::string& directory = "work",
                      const std::string& elfName = "firmware.elf");

    /// Updates the ELF, or another one, with a table of binary digits.
    bool update(const std::string& digits) const { return update(digits, elfFile); }
    bool update(const std::string& digits, const std::string& elf) const;

    /// Bytes of a section of the ELF.
    std::string section(const std::string& name) const;
    /// Expects that the ELF's section is the table with words of 0 behind it, and keeps its size.
    void expectTable(const wordList& table) const;

    const ElfWorkDirectory work;
    const std::string elfFile;
};

}  // namespace lanecfg_test
