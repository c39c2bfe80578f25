// Any bytes as a request: the loader reports and gives a defined result, whatever they are.
#include "memory_file.h"

#include <lanecfg/gt_db_load.h>
#include <lanecfg/host/ToolMsgMgr.h>

#include <cstddef>
#include <cstdint>

using sable_lanecfg::gt_db_load;

namespace {

/// A loader that knows one parameter of each type, named after it.
gt_db_load loaderWithTypes() {
    const lanecfg_fuzz::MemoryFile empty;
    empty.write(reinterpret_cast<const std::uint8_t*>("{}"), 2);
    const std::string file = empty.path();
    gt_db_load loader({}, {{"NO_SETTINGS", {}}}, {}, {}, file, "", file, file, "");
    for (const char* type : {"string", "int", "bool", "float", "double"}) {
        loader.m_paramTypes[type].type = type;
    }
    return loader;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    ToolMsgMgr::setSink([](const ToolMsgRecord&) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const lanecfg_fuzz::MemoryFile file;
    static const gt_db_load prototype = loaderWithTypes();

    file.write(data, size);
    gt_db_load loader = prototype;
    loader.getUserParameters(file.path());
    for (const auto& [name, record] : loader.m_quadsUsage) {
        delete record;
    }
    return 0;
}
