#pragma once

#include "support/environment_variable.h"
#include "support/temporary_directory.h"

#include <filesystem>
#include <string>

namespace lanecfg_test {

/// A name that a shell between the library and the script would take apart.
constexpr const char* awkwardName = "a b'c\"d;exit 9;$HOME `id`\nsecond line";

/// A search path with a folder of its own in front, and a work directory for an update.
class ElfWorkDirectory {
  public:
    /// The directory gets the name; the folder for tools is beside it.
    explicit ElfWorkDirectory(const std::string& name = "work");

    std::string path() const { return directory_.file(name_); }
    /// Path of a name in the work directory.
    std::string file(const std::string& name) const { return path() + "/" + name; }
    std::string logFile() const { return file("elfUpdator.log"); }
    std::string rateTableFile() const { return file("rate_table.txt"); }
    std::string scriptFile() const { return file("update_elf.sh"); }
    std::string toolFile() const { return directory_.file("tools/pco-objcopy"); }

    /// Writes `update_elf.sh`, which runs the lines; it can't be executed yet.
    void writeScript(const std::string& lines) const;
    /// Puts a tool on the search path that does nothing.
    void addIdleTool() const;
    /// Puts the object-copy program of the machine on the search path as the tool.
    void addObjectCopyTool() const;

    /// A folder for what is not in the work directory.
    const TemporaryDirectory& outside() const { return directory_; }

  private:
    TemporaryDirectory directory_;
    std::string name_;
    EnvironmentVariable searchPath_;
    EnvironmentVariable sdk_{"CORVANE_SDK", std::nullopt};
};

/// Writes an empty program that may be executed; makes its folders.
void writeIdleProgram(const std::filesystem::path& path);

}  // namespace lanecfg_test
