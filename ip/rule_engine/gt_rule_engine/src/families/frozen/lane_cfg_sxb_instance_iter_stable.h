#pragma once

#include "families/sxb/sxb_rate_groups.h"

#include <lanecfg/lane_cfg_instance.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Instance of a quad of the SXB family with the frozen rules: packs the request into the quad,
/// gives the outcome of the receivers' PLLs to the rules, and runs them.
class lane_cfg_sxb_instance_iter_stable : public lane_cfg_instance_iter_stable {
  public:
    lane_cfg_sxb_instance_iter_stable(
        const std::string& name, const std::vector<channelUsageInfo>& usage,
        const std::map<std::string, quadsUsageInfo*>& quads,
        const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
        std::map<std::string, attributeInfo> registers,
        const std::map<std::string, std::vector<std::string>>& deviceData);

    /// Register words by prefixed name, see `quadAttributes` and `stableQuadWords`. Makes the rate
    /// table.
    std::map<std::string, std::string> getAttributes() override;

    /// Rates of a lane in a direction (0 transmit, else receive), 1 for a lane without channel.
    int numberOfRatesForThisChannel(int direction, int lane) const;

    /// Fills the groups of the rates, which nothing else here reads.
    void findGrouping();

    /// Steps of the construction, which enter user parameters; a fault of theirs is told to the
    /// user and leaves the rest as it is.
    void consumePackingIntersect();
    void findAndSetCHPosition();

    /// By direction, lane and rate slot, as `findGrouping` filled it.
    const rateGroupTable& groupsOfRates() const { return rateGroups; }

    std::string ipName;  ///< `instanceName` again
    std::map<std::string, quadsUsageInfo*> quadsUsage;

  private:
    void runRXRules();
    void runTXRules();
    void runPLLRules();

    rateGroupTable rateGroups;
};

}  // namespace sable_lanecfg
