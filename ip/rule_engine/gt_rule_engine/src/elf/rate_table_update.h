#pragma once

#include <functional>
#include <string>

namespace sable_lanecfg {

/// Makes a rate table of binary digits and puts it into the firmware `elfFile`, working in the
/// directory `workDir`; true when the ELF was updated. Whatever is thrown on the way comes out as a
/// std::string that a host can show.
bool updateElfWithRateTable(const std::function<std::string()>& makeRateTable,
                            const std::string& instanceName, const std::string& elfFile,
                            const std::string& workDir);

}  // namespace sable_lanecfg
