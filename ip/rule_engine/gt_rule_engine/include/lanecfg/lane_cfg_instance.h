#pragma once

#include <lanecfg/export.h>
#include <lanecfg/gt_rule_engine.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Frame of a family's instance with the current rules. The constructor of a family class does
/// all the work; a finished instance only answers.
class LANECFG_EXPORT lane_cfg_instance : public gt_rule_engine_live {
  public:
    /// `quads` is for the families that place channels; the frame does not read it.
    lane_cfg_instance(const std::string& name, const std::string& family,
                      const std::vector<channelUsageInfo>& usage,
                      const std::map<std::string, quadsUsageInfo*>& quads,
                      const std::map<std::string, paramTypeInfo>& paramTypes,
                      const userParamStore& userParams,
                      const std::map<std::string, attributeInfo>& attributes,
                      const std::map<std::string, std::vector<std::string>>& settings);
    virtual ~lane_cfg_instance();

    /// Register words by prefixed name; empty unless the family answers.
    virtual std::map<std::string, std::string> getAttributes();
    /// Memory image of the embedded controller, section text by load address.
    virtual std::map<std::string, std::string> getMemContent();
    /// Output clocks by name; empty unless the family answers.
    virtual std::map<std::string, std::string> getOutClkFrequencies();
    /// Puts the rate table into a firmware ELF; true when the script succeeded.
    virtual bool updateELF(const std::string& elfFile, const std::string& workDir);
    /// True when the rate table does not fit the controller's memory.
    virtual bool isFabricBramNeeded();

    std::string familyName;
    std::string instanceName;
};

/// Frame of a family's instance with the frozen rules.
class LANECFG_EXPORT lane_cfg_instance_iter_stable : public gt_rule_engine_iter_stable {
  public:
    lane_cfg_instance_iter_stable(
        const std::string& name, const std::string& family,
        const std::vector<channelUsageInfo>& usage,
        const std::map<std::string, quadsUsageInfo*>& quads,
        const std::map<std::string, paramTypeInfo>& paramTypes, const userParamStore& userParams,
        const std::map<std::string, attributeInfo>& attributes,
        const std::map<std::string, std::vector<std::string>>& settings);
    virtual ~lane_cfg_instance_iter_stable();

    virtual std::map<std::string, std::string> getAttributes();
    virtual std::map<std::string, std::string> getMemContent();
    virtual std::map<std::string, std::string> getOutClkFrequencies();
    virtual bool updateELF(const std::string& elfFile, const std::string& workDir);

    std::string familyName;
    std::string instanceName;
};

} // namespace sable_lanecfg
