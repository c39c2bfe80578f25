#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace lanecfg_fuzz {

/// A file that lives in memory and has a path, for readers that take one.
class MemoryFile {
  public:
    MemoryFile() : descriptor_(memfd_create("lanecfg-fuzz", 0)) {
        if (descriptor_ < 0) {
            fail("memfd_create");
        }
    }
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

    /// Replaces the content.
    void write(const std::uint8_t* data, std::size_t size) const {
        if (ftruncate(descriptor_, 0) != 0 ||
            pwrite(descriptor_, data, size, 0) != static_cast<ssize_t>(size)) {
            fail("write");
        }
    }

  private:
    [[noreturn]] static void fail(const char* what) {
        std::perror(what);
        std::abort();
    }

    int descriptor_;
};

}  // namespace lanecfg_fuzz
