#include "standard_output_guard.h"

#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <unistd.h>

namespace sable_lanecfg::tool {
namespace {

void flushStandardOutput() {
    std::cout.flush();
    (void)std::fflush(stdout);
}

}  // namespace

StandardOutputGuard::StandardOutputGuard() {
    flushStandardOutput();
    savedOutput_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

StandardOutputGuard::~StandardOutputGuard() {
    flushStandardOutput();
    if (savedOutput_ >= 0) {
        dup2(savedOutput_, STDOUT_FILENO);
        close(savedOutput_);
    } else {
        // Standard output was closed from the start; it shall be so again.
        close(STDOUT_FILENO);
    }
}

}  // namespace sable_lanecfg::tool
