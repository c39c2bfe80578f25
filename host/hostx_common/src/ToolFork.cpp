#include <lanecfg/host/ToolEnv.h>
#include <lanecfg/host/ToolFile.h>
#include <lanecfg/host/ToolFork.h>

#include <boost/algorithm/string/split.hpp>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace {

/// What the child does before it becomes the program. Steps are done in the order they are added,
/// and a step that fails makes the start fail.
class ChildSetup {
  public:
    ChildSetup() { posix_spawn_file_actions_init(&actions_); }
    ~ChildSetup() { posix_spawn_file_actions_destroy(&actions_); }
    ChildSetup(const ChildSetup&) = delete;
    ChildSetup& operator=(const ChildSetup&) = delete;

    void noInput() {
        posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }

    void outputTo(const std::string& file) {
        constexpr mode_t readableAndWritable = 0666;
        posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, file.c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, readableAndWritable);
        posix_spawn_file_actions_adddup2(&actions_, STDOUT_FILENO, STDERR_FILENO);
    }

    void changeDirectory(const std::string& directory) {
        posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str());
    }

    const posix_spawn_file_actions_t* actions() const { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

/// Pointers into `words`, ended by a null pointer, as the system takes them.
std::vector<char*> pointersTo(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

int waitForEnd(pid_t child) {
    int status = 0;
    pid_t ended = 0;
    do {
        ended = waitpid(child, &status, 0);
    } while (ended == -1 && errno == EINTR);
    if (ended == child && WIFEXITED(status)) {
        return WEXITSTATUS(status);
    }
    if (ended == child && WIFSIGNALED(status)) {
        return ToolFork::signalBase + WTERMSIG(status);
    }
    return ToolFork::notLaunched;
}

}  // namespace

void ToolFork::setLaunchDir(const std::string& directory) {
    launchDir_ = directory;
}

void ToolFork::setProg(const std::string& path, bool /*flag*/) {
    program_ = path;
}

void ToolFork::addArg(const std::string& argument) {
    arguments_.push_back(argument);
}

void ToolFork::setLogFile(const std::string& path) {
    logFile_ = path;
}

int ToolFork::launch(bool /*flag1*/, bool /*flag2*/, bool /*flag3*/, bool /*flag4*/) const {
    // The child looks for the program from its launch directory, the caller from its own.
    std::error_code failure;
    const std::string program = std::filesystem::absolute(program_, failure).string();
    if (failure) {
        return notLaunched;
    }

    ChildSetup setup;
    setup.noInput();
    setup.outputTo(logFile_.empty() ? "/dev/null" : logFile_);
    if (!launchDir_.empty()) {
        setup.changeDirectory(launchDir_);
    }

    std::vector<std::string> words{program};
    words.insert(words.end(), arguments_.begin(), arguments_.end());
    pid_t child = 0;
    if (posix_spawn(&child, program.c_str(), setup.actions(), nullptr, pointersTo(words).data(),
                    environ) != 0) {
        return notLaunched;
    }
    return waitForEnd(child);
}

bool ToolFork::findInPath(const std::string& name, std::string& path) {
    const std::string separator = ToolFile::getDirSeparator();
    std::vector<std::string> candidates;
    if (name.find(separator) != std::string::npos) {
        candidates.push_back(name);
    } else if (const char* searchPath = ToolEnv::getEnv("PATH"); searchPath != nullptr) {
        boost::algorithm::split(candidates, std::string(searchPath),
                                [](char character) { return character == ':'; });
        for (std::string& candidate : candidates) {
            if (candidate.empty()) {
                candidate = ".";
            }
            candidate += separator;
            candidate += name;
        }
    }
    for (const std::string& candidate : candidates) {
        if (progExists(candidate)) {
            path = candidate;
            return true;
        }
    }
    return false;
}

bool ToolFork::progExists(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored) && access(path.c_str(), X_OK) == 0;
}
