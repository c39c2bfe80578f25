#pragma once

#include <string>
#include <vector>

/// Runs one program to its end, without a shell between.
///
/// The caller's environment and current directory stay as they are. Relative paths of the program
/// and the log file count from the caller's current directory.
class ToolFork {
  public:
    /// Result of `launch` when the program could not be started or its end could not be observed.
    static constexpr int notLaunched = -1;
    /// Added to the number of the signal that ended the program, as shells do.
    static constexpr int signalBase = 128;

    /// The program's current directory; without it, the caller's.
    void setLaunchDir(const std::string& directory);
    /// The program's path. The flag is the host's own and has no meaning here.
    void setProg(const std::string& path, bool flag);
    /// Appends an argument, which reaches the program as it is.
    void addArg(const std::string& argument);
    /// File for the program's output and error output; it is emptied first. Without it, they are
    /// dropped.
    void setLogFile(const std::string& path);

    /// Runs the program and waits for its end; its standard input is empty. The four flags are the
    /// host's own and have no meaning here.
    ///
    /// Gives the program's exit status, `signalBase` and the signal's number when a signal ended
    /// it, or `notLaunched`: no such program, none that the system can execute, no such launch
    /// directory, or a log file that can't be written.
    int launch(bool flag1, bool flag2, bool flag3, bool flag4) const;

    /// Looks a program up in the directories of the variable PATH, an empty entry being the current
    /// directory; a name with a separator is taken as a path. Gives true and sets `path` when
    /// found, and otherwise leaves `path` as it is.
    static bool findInPath(const std::string& name, std::string& path);
    /// Whether there is a regular file at `path` that the caller may execute.
    static bool progExists(const std::string& path);

  private:
    std::string launchDir_;
    std::string program_;
    std::vector<std::string> arguments_;
    std::string logFile_;
};
