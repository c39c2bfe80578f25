#pragma once

#include <optional>
#include <string>

namespace lanecfg_test {

/// Sets or unsets a variable of the environment while it lives, and then restores it.
class EnvironmentVariable {
  public:
    /// No value unsets the variable.
    EnvironmentVariable(const std::string& name, const std::optional<std::string>& value);
    ~EnvironmentVariable();
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

  private:
    std::string name_;
    std::optional<std::string> previous_;
};

}  // namespace lanecfg_test
