#include "support/environment_variable.h"

#include <cstdlib>

namespace lanecfg_test {

namespace {

void setOrUnset(const std::string& name, const std::optional<std::string>& value) {
    constexpr int overwrite = 1;
    if (value) {
        setenv(name.c_str(), value->c_str(), overwrite);
    } else {
        unsetenv(name.c_str());
    }
}

}  // namespace

EnvironmentVariable::EnvironmentVariable(const std::string& name,
                                         const std::optional<std::string>& value)
    : name_(name) {
    if (const char* current = std::getenv(name.c_str())) {
        previous_ = current;
    }
    setOrUnset(name_, value);
}

EnvironmentVariable::~EnvironmentVariable() {
    setOrUnset(name_, previous_);
}

}  // namespace lanecfg_test
