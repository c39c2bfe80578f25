#pragma once

#include <lanecfg/export.h>
#include <lanecfg/gt_rule_engine.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Frame of a family's instance with the current rules. The constructor of a family class does
/// all the work: it registers the rules and ends with `runBlockRules`. A finished instance only
/// answers.
///
/// Hosts call through the virtual table, so the order of the virtual operations, which is that of
/// their declaration here and in gt_rule_engine, must not change.
class LANECFG_EXPORT lane_cfg_instance : public gt_rule_engine_live {
  public:
    /// Copies what it is given, and registers and runs no rule. `quads` is for the families that
    /// place channels; the frame does not read it.
    lane_cfg_instance(const std::string& name, const std::string& familyWord,
                      const std::vector<channelUsageInfo>& usage,
                      const std::map<std::string, quadsUsageInfo*>& quads,
                      const std::map<std::string, paramTypeInfo>& types,
                      const userParamStore& params,
                      const std::map<std::string, attributeInfo>& registers,
                      const std::map<std::string, std::vector<std::string>>& deviceData);
    virtual ~lane_cfg_instance();

    /// Register words by prefixed name; empty unless the family answers.
    virtual std::map<std::string, std::string> getAttributes();
    /// Memory image of the embedded controller, section text by load address; empty unless the
    /// family answers.
    virtual std::map<std::string, std::string> getMemContent();
    /// Output clocks (MHz) by name; empty unless the family answers.
    virtual std::map<std::string, std::string> getOutClkFrequencies();
    /// Puts the rate table into the firmware `elfFile`, working in the folder `workDir`; true when
    /// the ELF was updated. The frame has no table: it leaves the file alone and answers false.
    virtual bool updateELF(const std::string& elfFile, const std::string& workDir);
    /// True when the rate table is larger than the 8192 bytes of the controller's memory and needs
    /// block memory in the fabric. Generates the table, with all that `getRateTableSize` does.
    virtual bool isFabricBramNeeded();

    std::string familyName;    ///< family word, a second copy of `family`
    std::string instanceName;  ///< name under which the host asked for the instance
};

/// Frame of a family's instance with the frozen rules. As lane_cfg_instance, but without the
/// question for fabric memory.
class LANECFG_EXPORT lane_cfg_instance_iter_stable : public gt_rule_engine_iter_stable {
  public:
    lane_cfg_instance_iter_stable(
        const std::string& name, const std::string& familyWord,
        const std::vector<channelUsageInfo>& usage,
        const std::map<std::string, quadsUsageInfo*>& quads,
        const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
        const std::map<std::string, attributeInfo>& registers,
        const std::map<std::string, std::vector<std::string>>& deviceData);
    virtual ~lane_cfg_instance_iter_stable();

    virtual std::map<std::string, std::string> getAttributes();
    virtual std::map<std::string, std::string> getMemContent();
    virtual std::map<std::string, std::string> getOutClkFrequencies();
    virtual bool updateELF(const std::string& elfFile, const std::string& workDir);

    std::string familyName;
    std::string instanceName;
};

}  // namespace sable_lanecfg
