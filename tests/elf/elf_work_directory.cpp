#include "elf/elf_work_directory.h"

#include <lanecfg/host/ToolFork.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace lanecfg_test {

namespace {

namespace fs = std::filesystem;

std::string behind(const std::string& folder) {
    const char* const searchPath = std::getenv("PATH");
    return searchPath == nullptr ? folder : folder + ":" + searchPath;
}

}  // namespace

ElfWorkDirectory::ElfWorkDirectory(const std::string& name)
    : name_(name), searchPath_("PATH", behind(directory_.file("tools"))) {
    fs::create_directory(directory_.file("tools"));
    fs::create_directories(path());
}

void ElfWorkDirectory::writeScript(const std::string& lines) const {
    directory_.write(name_ + "/update_elf.sh", "#!/bin/sh\n" + lines);
}

void ElfWorkDirectory::addIdleTool() const {
    writeIdleProgram(toolFile());
}

void ElfWorkDirectory::addObjectCopyTool() const {
    std::string program;
    if (!ToolFork::findInPath("objcopy", program)) {
        throw std::runtime_error("these tests need objcopy (Debian package binutils)");
    }
    fs::create_symlink(program, toolFile());
}

void writeIdleProgram(const fs::path& path) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << "#!/bin/sh\n";
    fs::permissions(path, fs::perms::owner_all);
}

}  // namespace lanecfg_test
