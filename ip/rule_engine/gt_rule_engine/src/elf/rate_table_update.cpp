#include "elf/rate_table_update.h"

#include <lanecfg/lane_cfg_elf_updator.h>

#include <exception>

namespace sable_lanecfg {

bool updateElfWithRateTable(const std::function<std::string()>& makeRateTable,
                            const std::string& instanceName, const std::string& elfFile,
                            const std::string& workDir) {
    const std::string fault = "Internal Error: Quad IP Generation Error";
    try {
        return lane_cfg_elf_updator(instanceName, makeRateTable(), elfFile, workDir).updateElf();
    } catch (const std::exception& exception) {
        throw fault + " : " + exception.what();
    } catch (...) {
        throw fault;
    }
}

}  // namespace sable_lanecfg
