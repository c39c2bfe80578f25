#include "output_file.h"

#include "errors.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

namespace fs = std::filesystem;

/// As many links behind one another as the system itself follows.
constexpr int mostLinks = 40;

[[noreturn]] void throwCannotWrite(const fs::path& file) {
    const std::string reason = std::generic_category().message(errno);
    throw RequestError("Cannot write the file " + file.string() + ": " + reason +
                       ". Name another file with -o, or leave -o out for standard output.");
}

/// An open file descriptor.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

  private:
    int number_;
};

bool writeAll(const Descriptor& target, const std::string& content) {
    std::size_t written = 0;
    while (written < content.size()) {
        const ssize_t count =
            write(target.number(), content.data() + written, content.size() - written);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        written += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return true;
}

void writeInPlace(const fs::path& file, const std::string& content) {
    const Descriptor target(open(file.c_str(), O_WRONLY | O_CLOEXEC));
    if (!target.isOpen() || !writeAll(target, content)) {
        throwCannotWrite(file);
    }
}

/// Rights that the file has, or that a new file gets here.
mode_t rightsOf(const fs::path& file) {
    struct stat status = {};
    if (stat(file.c_str(), &status) == 0) {
        return status.st_mode & 07777U;
    }
    const mode_t withheld = umask(0);
    umask(withheld);
    return 0666U & ~withheld;
}

/// Removes the temporary file unless it has been put in place.
class TemporaryFile {
  public:
    explicit TemporaryFile(std::string path) : path_(std::move(path)) {}
    ~TemporaryFile() {
        if (!path_.empty()) {
            unlink(path_.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    bool moveTo(const fs::path& target) {
        if (std::rename(path_.c_str(), target.c_str()) != 0) {
            return false;
        }
        path_.clear();
        return true;
    }

  private:
    std::string path_;
};

void replaceFile(const fs::path& file, const std::string& content) {
    // A name of its own: the file's could leave no room for an addition.
    std::string pattern = (file.parent_path() / ".lanecfg-XXXXXX").string();
    const Descriptor target(mkostemp(pattern.data(), O_CLOEXEC));
    if (!target.isOpen()) {
        throwCannotWrite(file);
    }
    TemporaryFile temporary(pattern);
    const bool isWritten = writeAll(target, content) &&
                           fchmod(target.number(), rightsOf(file)) == 0 &&
                           fsync(target.number()) == 0;
    if (!isWritten || !temporary.moveTo(file)) {
        throwCannotWrite(file);
    }
}

/// The file that links lead to, whether it exists or not.
fs::path behindLinks(const fs::path& file) {
    fs::path target = file;
    std::error_code unreadable;
    for (int links = 0; fs::is_symlink(fs::symlink_status(target, unreadable)); ++links) {
        if (links == mostLinks) {
            errno = ELOOP;
            throwCannotWrite(file);
        }
        target = target.parent_path() / fs::read_symlink(target, unreadable);
    }
    return target;
}

}  // namespace

void writeWholeFile(const fs::path& file, const std::string& content) {
    std::error_code missing;
    const fs::file_status status = fs::status(file, missing);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        writeInPlace(file, content);
    } else {
        replaceFile(behindLinks(file), content);
    }
}

}  // namespace sable_lanecfg::tool
