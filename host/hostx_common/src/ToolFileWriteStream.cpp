#include <lanecfg/host/ToolFileWriteStream.h>

ToolFileWriteStream::ToolFileWriteStream(const std::string& path, std::ios_base::openmode mode)
    : std::ofstream(path, mode) {}
