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
                      const userParamStore& params, std::map<std::string, attributeInfo> registers,
                      const std::map<std::string, std::vector<std::string>>& deviceData);
    virtual ~lane_cfg_instance();

    /// Register words by prefixed name; empty unless the family answers.
    virtual std::map<std::string, std::string> getAttributes();
    /// Memory image of the embedded controller, section text by load address, "@" and eight
    /// hexadecimal digits: the firmware for the silicon revision of the settings, and at
    /// "@00016000" the rate table. The table is made anew, as by `generateRateTable`, which throws
    /// through this call.
    virtual std::map<std::string, std::string> getMemContent();
    /// Output clocks (MHz) by name; empty unless the family answers.
    virtual std::map<std::string, std::string> getOutClkFrequencies();
    /// Puts the rate table into the firmware `elfFile` through the script `update_elf.sh` of the
    /// folder `workDir`, as lane_cfg_elf_updator does; true when the ELF was updated. The table is
    /// made anew. What is thrown on the way comes out as a std::string: "Internal Error: Quad IP
    /// Generation Error", and behind " : " the text of a std::exception.
    virtual bool updateELF(const std::string& elfFile, const std::string& workDir);
    /// True when the rate table is larger than the 8192 bytes of the controller's memory and needs
    /// block memory in the fabric. Generates the table, with all that `getRateTableSize` does.
    virtual bool isFabricBramNeeded();

    std::string familyName;    ///< family word, a second copy of `family`
    std::string instanceName;  ///< name under which the host asked for the instance
};

/// Frame of a family's instance with the frozen rules. As lane_cfg_instance, but with one firmware
/// for all silicon revisions, and without the question for fabric memory.
class LANECFG_EXPORT lane_cfg_instance_iter_stable : public gt_rule_engine_iter_stable {
  public:
    lane_cfg_instance_iter_stable(
        const std::string& name, const std::string& familyWord,
        const std::vector<channelUsageInfo>& usage,
        const std::map<std::string, quadsUsageInfo*>& quads,
        const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
        std::map<std::string, attributeInfo> registers,
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
