#pragma once

#include <lanecfg/export.h>
#include <lanecfg/gt_db_load.h>
#include <lanecfg/lane_cfg_instance.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Entry of the library: builds named instances from requests and answers about them.
///
/// A selector is "live" (current rules) or "stable" (frozen rules); its letters are folded to
/// lower case as the global locale does it. A family word is "SXA", "SXB", "SXC" or "SXD4";
/// queries accept it and do not use it. Exceptions of rules and queries pass to the caller.
///
/// A host uses the manager from one thread at a time. Instances still entered when the library is
/// unloaded are not deleted.
class LANECFG_EXPORT lane_cfg_ip_mgr {
  public:
    /// Builds an instance from a request file and enters it under its name. A new initialisation
    /// forgets every earlier instance of its selector; forgotten instances stay allocated, as
    /// callers may still hold them, and so do the quad records that the loader made.
    ///
    /// A family word without a class enters a null instance. Another selector only loads. Unusable
    /// user parameters are reported as messages and change nothing. An exception of a rule leaves
    /// the selector without any instance.
    static void initilizeData(const std::string& instanceName, const std::string& family,
                              const std::string& selector,
                              const std::string& userParameterTypesFile,
                              const std::string& userParametersFile, const std::string& fieldsFile,
                              const std::string& deviceDataFile);
    /// The same from the host's dictionaries. Without an entry in `userParams` there is no request
    /// to read, which is reported as for an unreadable request file. A malformed `partName` is
    /// ToolPart's exception and changes nothing.
    static void initilizeDataWithDict(const std::string& instanceName, const std::string& family,
                                      const std::string& selector, const std::string& partName,
                                      const textMap& options, const laneUsageMap& laneUsage,
                                      const quadUsageMap& quadUsage, const userParamMap& userParams,
                                      const std::string& userParameterTypesFile,
                                      const std::string& fieldsFile,
                                      const std::string& deviceDataFile);

    /// Makes the instance of a family word, null for a word without a class. The caller owns it.
    static lane_cfg_instance* createLaneCfgInstance(
        const std::string& instanceName, const std::string& family,
        const std::vector<channelUsageInfo>& usage,
        const std::map<std::string, quadsUsageInfo*>& quads,
        const std::map<std::string, paramTypeInfo>& paramTypes, const userParamStore& userParams,
        std::map<std::string, attributeInfo> attributes,
        const std::map<std::string, std::vector<std::string>>& settings);
    /// The same with the frozen rules, which "SXB" and "SXD4" alone may have.
    static lane_cfg_instance_iter_stable* createLaneCfgIterStableInstance(
        const std::string& instanceName, const std::string& family,
        const std::vector<channelUsageInfo>& usage,
        const std::map<std::string, quadsUsageInfo*>& quads,
        const std::map<std::string, paramTypeInfo>& paramTypes, const userParamStore& userParams,
        std::map<std::string, attributeInfo> attributes,
        const std::map<std::string, std::vector<std::string>>& settings);

    /// Queries of a named instance, answered by its operation of the same name. An unknown name or
    /// selector and a null instance give an empty answer.
    static std::map<std::string, std::string> getAttributes(const std::string& instanceName,
                                                            const std::string& family,
                                                            const std::string& selector);
    static std::map<std::string, std::string> getMemContent(const std::string& instanceName,
                                                            const std::string& family,
                                                            const std::string& selector);
    static std::map<std::string, std::string> getOutClkFrequencies(const std::string& instanceName,
                                                                   const std::string& family,
                                                                   const std::string& selector);
    /// 1 when the ELF was updated, else 0.
    static int updateELF(const std::string& instanceName, const std::string& family,
                         const std::string& selector, const std::string& elfFile,
                         const std::string& workDir);
    /// Live instances only; false for an unknown name.
    static bool isFabricBRAMNeeded(const std::string& instanceName);
    /// Copy of the log lines.
    static std::vector<std::string> getLogContent();
    /// Deletes the live and the stable instance of that name and forgets the name.
    static void releaseData(const std::string& instanceName);

    /// Whether the channels of a request can share a quad: empty when they can, else the reasons by
    /// number, as gt_quad_packing::canBePacked gives them. No instance is made; the name, the
    /// family word and the selector have no effect. Unusable user parameters are reported as
    /// messages and give an empty answer; a malformed `partName` is ToolPart's exception. Faults go
    /// to the user as messages with `logErrors`, without it they are reasons with the text "ERROR
    /// caught".
    static std::map<std::string, std::string> canBePacked(
        const std::string& instanceName, const std::string& family, const std::string& selector,
        const std::string& partName, const textMap& options, const laneUsageMap& laneUsage,
        const userParamMap& userParams, const std::string& userParameterTypesFile,
        const std::string& fieldsFile, const std::string& deviceDataFile, bool logErrors);
    /// Names of the reference clocks by port, as gt_quad_packing::returnRefclkPorts gives them;
    /// { "0": "ERROR caught" } when a reason of the same request has this text. The same otherwise.
    static std::map<std::string, std::string> getRefClkPorts(
        const std::string& instanceName, const std::string& family, const std::string& selector,
        const std::string& partName, const textMap& options, const laneUsageMap& laneUsage,
        const userParamMap& userParams, const std::string& userParameterTypesFile,
        const std::string& fieldsFile, const std::string& deviceDataFile, bool logErrors);

    /// The instance of that name, null for an unknown name. It stays the manager's until it is
    /// released, and is nobody's once a new initialisation has displaced it.
    static lane_cfg_instance* getIPInstance(const std::string& instanceName);
    static lane_cfg_instance_iter_stable* getIterStableIPInstance(const std::string& instanceName);

    static lane_cfg_ip_mgr* m_pIpMgr;  ///< reserved for hosts; the library leaves it alone
    /// Live and stable instances by name. The maps own them; an entry may be null.
    static std::map<std::string, lane_cfg_instance*> m_instances;
    static std::map<std::string, lane_cfg_instance_iter_stable*> m_iter_stable_instances;
};

}  // namespace sable_lanecfg
