#pragma once

#include "families/sxb/sxb_rate_groups.h"

#include <lanecfg/lane_cfg_instance.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Instance of a quad of the SXB family: packs the request into the quad, gives the outcome to the
/// rules as user parameters, and runs them.
class lane_cfg_sxb_instance : public lane_cfg_instance {
  public:
    lane_cfg_sxb_instance(const std::string& name, const std::vector<channelUsageInfo>& usage,
                          const std::map<std::string, quadsUsageInfo*>& quads,
                          const std::map<std::string, paramTypeInfo>& types,
                          const userParamStore& params,
                          std::map<std::string, attributeInfo> registers,
                          const std::map<std::string, std::vector<std::string>>& deviceSettings);

    /// Register words by prefixed name, see `quadAttributes`. Makes the rate table.
    std::map<std::string, std::string> getAttributes() override;
    /// Output clocks (MHz) by "CH0_TXOUTCLK" and so on, the fastest of each lane's rates.
    std::map<std::string, std::string> getOutClkFrequencies() override;
    /// The same with the reference clock behind each, see `outputClocksWithReferences`.
    std::map<std::string, std::string> getOutClkFrequenciesInternal() const;

    /// Rates of a lane in a direction (0 transmit, else receive), 1 for a lane without channel.
    int numberOfRatesForThisChannel(int direction, int lane) const;

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

  private:
    void runRXRules();
    void runTXRules();
    void runPLLRules();

    rateGroupTable rateGroups;
};

}  // namespace sable_lanecfg
