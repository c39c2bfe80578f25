#pragma once

#include <lanecfg/export.h>

#include <string>

namespace sable_lanecfg {

/// Puts a rate table into a firmware ELF: writes the table to a file and runs the script
/// `update_elf.sh` of the work directory, which replaces the section with an object-copy tool.
///
/// No shell stands between, so all texts reach the script as they are. The caller's environment
/// and current directory stay untouched. A call lasts until the script ends.
class LANECFG_EXPORT lane_cfg_elf_updator {
  public:
    static constexpr const char* toolName = "pco-objcopy";
    static constexpr const char* scriptName = "update_elf.sh";

    /// Writes the text `rateTable` to `rateTableFile` at once, also where `updateElf` will fail;
    /// with an empty `workDir` this is a file of the root directory. A file that can't be written
    /// is passed over.
    lane_cfg_elf_updator(const std::string& instanceName, const std::string& rateTable,
                         const std::string& elfFile, const std::string& workDir);

    /// Value of the environment variable CORVANE_SDK, empty when it is not set.
    std::string getSDKDir() const;
    /// Path of the tool on the search path, else in `gnu/picocore/lin/bin` of the SDK; empty when
    /// there is no such program.
    std::string getObjCopyProgramPath(const std::string& tool) const;
    /// Runs the script in `launchDir` with the path of the object-copy tool, `elfFile`,
    /// `workDirBase`, `rateTableFile` and `instanceName`, its output going to `logFile`. True only
    /// when it ran and gave 0. Nothing is run when there is no tool, no script, or one that can't
    /// be made executable.
    bool createAndLaunchProcess(std::string& launchDir, std::string& logFile);
    /// Runs the script in the work directory with the log file `elfUpdator.log` there. True when
    /// the script gave 0, false on any failure and for an empty work directory.
    bool updateElf();

    std::string elfFile;      ///< the ELF that the script updates
    std::string workDir;      ///< holds the script and receives rate table and log
    std::string workDirBase;  ///< `workDir` without any "/temp"
    std::string instanceName;
    std::string rateTable;
    std::string rateTableFile;  ///< `rate_table.txt` in `workDir`
};

}  // namespace sable_lanecfg
