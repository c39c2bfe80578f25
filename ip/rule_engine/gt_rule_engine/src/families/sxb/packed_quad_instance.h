#pragma once

#include "families/sxb/sxb_rate_groups.h"

#include <lanecfg/lane_cfg_instance.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// What registers the rules of a family, set by set.
struct quadRuleSets {
    void (*receive)(gt_rule_engine&);
    void (*transmit)(gt_rule_engine&);
    void (*pll)(gt_rule_engine&);
};

/// What instances of the SXB family and of its relatives have in common: the quad is packed with
/// the request, the outcome goes to the rules as user parameters, and the rules run.
class packed_quad_instance : public lane_cfg_instance {
  public:
    /// Register words by prefixed name, see `quadAttributes`. Makes the rate table.
    std::map<std::string, std::string> getAttributes() override;
    /// Output clocks (MHz) by "CH0_TXOUTCLK" and so on, the fastest of each lane's rates.
    std::map<std::string, std::string> getOutClkFrequencies() override;

    /// Steps of the construction. `findGrouping` fills the groups of the rates, and
    /// `consumePackingIntersect`, which begins with it, and `findAndSetCHPosition` enter user
    /// parameters; a fault of theirs is told to the user and leaves the rest as it is.
    void findGrouping();
    void consumePackingIntersect();
    void findAndSetCHPosition();

    /// By direction, lane and rate slot, as `findGrouping` filled it.
    const rateGroupTable& groupsOfRates() const { return rateGroups; }

    std::string ipName;  ///< `instanceName` again
    std::map<std::string, quadsUsageInfo*> quadsUsage;

  protected:
    packed_quad_instance(const std::string& name, const std::string& familyWord,
                         const quadRuleSets& rules, const std::vector<channelUsageInfo>& usage,
                         const std::map<std::string, quadsUsageInfo*>& quads,
                         const std::map<std::string, paramTypeInfo>& types,
                         const userParamStore& params,
                         std::map<std::string, attributeInfo> registers,
                         const std::map<std::string, std::vector<std::string>>& deviceData);

  private:
    rateGroupTable rateGroups;
};

}  // namespace sable_lanecfg
