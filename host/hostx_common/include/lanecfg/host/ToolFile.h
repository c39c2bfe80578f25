#pragma once

#include <string>

/// A file by its path.
class ToolFile {
  public:
    explicit ToolFile(const std::string& path);

    /// What stands between the names of a path.
    static std::string getDirSeparator();

    /// Whether there is anything at the path, a directory included. A link counts by its target.
    bool exists() const;
    /// Sets the execute permission for everybody. Gives whether the file can be executed then, so
    /// also true for an executable file of another owner, and false for a directory.
    bool mkExecutable() const;

  private:
    std::string path_;
};
