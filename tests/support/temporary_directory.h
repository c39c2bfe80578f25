#pragma once

#include <filesystem>
#include <string>

namespace lanecfg_test {

/// A fresh directory that is removed with everything in it at the end.
class TemporaryDirectory {
  public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }
    /// Path of a name in the directory, as text.
    std::string file(const std::string& name) const;
    /// Writes `content` to a file of that name and gives its path.
    std::string write(const std::string& name, const std::string& content) const;

  private:
    std::filesystem::path path_;
};

/// Whole content of a file; fails the test by exception when it can't be read.
std::string readFile(const std::filesystem::path& path);

}  // namespace lanecfg_test
