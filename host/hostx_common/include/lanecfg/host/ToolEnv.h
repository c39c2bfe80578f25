#pragma once

/// The environment of the process.
class ToolEnv {
  public:
    /// Value of the variable, or null when it is not set or the name is null. It stays valid until
    /// the environment is changed.
    static const char* getEnv(const char* name);
};
