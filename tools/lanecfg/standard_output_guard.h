#pragma once

namespace sable_lanecfg::tool {

/// Sends everything that is written to standard output while it lives to standard error. A rule
/// that reads a variable without a value prints a line of its own on standard output; without
/// this it would end up inside the answer.
class StandardOutputGuard {
  public:
    StandardOutputGuard();
    ~StandardOutputGuard();
    StandardOutputGuard(const StandardOutputGuard&) = delete;
    StandardOutputGuard& operator=(const StandardOutputGuard&) = delete;

  private:
    int savedOutput_;
};

}  // namespace sable_lanecfg::tool
