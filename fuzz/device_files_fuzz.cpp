// Any bytes as parameter types, register fields and device data.
#include "memory_file.h"

#include <lanecfg/gt_db_load.h>
#include <lanecfg/host/ToolMsgMgr.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    ToolMsgMgr::setSink([](const ToolMsgRecord&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const lanecfg_fuzz::MemoryFile file;

    file.write(data, size);
    const std::string path = file.path();
    const sable_lanecfg::gt_db_load loader({}, {{"NO_SETTINGS", {}}}, {}, {}, path, "", path, path,
                                           "");
    // Whatever the files hold, a load without parameters succeeds and knows a silicon revision.
    if (!loader.m_loaded || loader.m_deviceData.count("siliconRev") != 1) {
        std::abort();
    }
    return 0;
}
