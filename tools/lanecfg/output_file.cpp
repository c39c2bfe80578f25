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
    std::string pattern = file.string() + ".XXXXXX";
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

}  // namespace

void writeWholeFile(const fs::path& file, const std::string& content) {
    std::error_code isNew;
    const fs::path target = fs::canonical(file, isNew);
    if (isNew) {
        replaceFile(file, content);
    } else if (fs::is_regular_file(target)) {
        replaceFile(target, content);
    } else {
        writeInPlace(target, content);
    }
}

}  // namespace sable_lanecfg::tool
