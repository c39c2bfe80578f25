#include <lanecfg/host/ToolFile.h>
#include <lanecfg/host/ToolFork.h>

#include <filesystem>
#include <system_error>

ToolFile::ToolFile(const std::string& path) : path_(path) {}

std::string ToolFile::getDirSeparator() {
    return "/";
}

bool ToolFile::exists() const {
    std::error_code ignored;
    return std::filesystem::exists(path_, ignored);
}

bool ToolFile::mkExecutable() const {
    using std::filesystem::perms;
    std::error_code ignored;
    if (std::filesystem::is_regular_file(path_, ignored)) {
        std::filesystem::permissions(path_,
                                     perms::owner_exec | perms::group_exec | perms::others_exec,
                                     std::filesystem::perm_options::add, ignored);
    }
    return ToolFork::progExists(path_);
}
