#include <lanecfg/host/ToolEnv.h>
#include <lanecfg/host/ToolFile.h>
#include <lanecfg/host/ToolFileWriteStream.h>
#include <lanecfg/host/ToolFork.h>
#include <lanecfg/lane_cfg_elf_updator.h>
#include <lanecfg/rule_engine_utilities.h>

namespace sable_lanecfg {

namespace {

void writeText(const std::string& path, const std::string& text) {
    ToolFileWriteStream stream(path, std::ios_base::out);
    stream << text;
}

}  // namespace

lane_cfg_elf_updator::lane_cfg_elf_updator(const std::string& instance, const std::string& table,
                                           const std::string& elf, const std::string& directory)
    : elfFile(elf),
      workDir(directory),
      workDirBase(directory),
      instanceName(instance),
      rateTable(table),
      rateTableFile(directory + ToolFile::getDirSeparator() + "rate_table.txt") {
    rule_engine_utilities::find_and_replace(workDirBase, "/temp", "");
    writeText(rateTableFile, rateTable);
}

std::string lane_cfg_elf_updator::getSDKDir() const {
    const char* const directory = ToolEnv::getEnv("CORVANE_SDK");
    return directory == nullptr ? std::string() : std::string(directory);
}

std::string lane_cfg_elf_updator::getObjCopyProgramPath(const std::string& tool) const {
    std::string candidate;
    if (!ToolFork::findInPath(tool, candidate)) {
        candidate = getSDKDir();
        for (const std::string& name : {std::string("gnu"), std::string("picocore"),
                                        std::string("lin"), std::string("bin"), tool}) {
            candidate += ToolFile::getDirSeparator() + name;
        }
    }
    return ToolFork::progExists(candidate) ? candidate : std::string();
}

bool lane_cfg_elf_updator::createAndLaunchProcess(std::string& launchDir, std::string& logFile) {
    const std::string toolPath = getObjCopyProgramPath(toolName);
    if (toolPath.empty()) {
        return false;
    }
    const std::string scriptPath = workDir + ToolFile::getDirSeparator() + scriptName;
    const ToolFile script(scriptPath);
    if (!script.exists() || !script.mkExecutable()) {
        return false;
    }
    ToolFork process;
    process.setLaunchDir(launchDir);
    process.setProg(scriptPath, true);
    for (const std::string& argument :
         {toolPath, elfFile, workDirBase, rateTableFile, instanceName}) {
        process.addArg(argument);
    }
    process.setLogFile(logFile);
    return process.launch(true, true, true, true) == 0;
}

bool lane_cfg_elf_updator::updateElf() {
    if (workDir.empty()) {
        return false;
    }
    std::string logFile = workDir + ToolFile::getDirSeparator() + "elfUpdator.log";
    return createAndLaunchProcess(workDir, logFile);
}

}  // namespace sable_lanecfg
