#include <lanecfg/host/ToolEnv.h>

#include <cstdlib>

const char* ToolEnv::getEnv(const char* name) {
    return name == nullptr ? nullptr : std::getenv(name);
}
