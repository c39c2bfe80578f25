#pragma once

#include "families/sxb/sxb_channel_positions.h"
#include "families/sxb/sxb_packing_values.h"
#include "families/sxb/sxb_rate_groups.h"
#include "families/sxb/sxb_service_fault.h"

#include <lanecfg/gt_rule_engine.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {

/// What registers the rules of a family, set by set.
struct quadRuleSets {
    void (*receive)(gt_rule_engine&);
    void (*transmit)(gt_rule_engine&);
    void (*pll)(gt_rule_engine&);
};

/// How instances of the SXB family and of its relatives come about on the frame of the current or
/// of the frozen rules: the quad is packed with the request, the outcome goes to the rules as user
/// parameters, and the rules run.
template <class Frame>
class packed_quad : public Frame {
  public:
    /// Fills the groups of the rates.
    void findGrouping() { rateGroups_ = rateGroupsOf(this->channelUsage, this->family); }

    /// Step of the construction, which enters user parameters; a fault of it is told to the user
    /// and leaves the rest as it is.
    void findAndSetCHPosition() {
        catchServiceFaults(__LINE__, [this] { enterChannelPositions(*this, quadsUsage); });
    }

    /// By direction, lane and rate slot, as `findGrouping` filled it.
    const rateGroupTable& groupsOfRates() const { return rateGroups_; }

    std::string ipName;  ///< `instanceName` again
    std::map<std::string, quadsUsageInfo*> quadsUsage;

  protected:
    packed_quad(const std::string& name, const std::string& familyWord,
                const std::vector<channelUsageInfo>& usage,
                const std::map<std::string, quadsUsageInfo*>& quads,
                const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
                std::map<std::string, attributeInfo> registers,
                const std::map<std::string, std::vector<std::string>>& deviceData)
        : Frame(name, familyWord, usage, quads, types, params, std::move(registers), deviceData),
          ipName(name),
          quadsUsage(quads) {}

    /// The construction. `enterPacking` is the step that gives the packing's outcome to the rules.
    template <class EnterPacking>
    void build(const quadRuleSets& rules, std::map<std::string, ruleValue> startValues,
               const EnterPacking& enterPacking) {
        takePacking(*this);
        this->passStartValues = std::move(startValues);
        // Rules are numbered as they are registered, so the order is part of the snapshots.
        rules.receive(*this);
        rules.transmit(*this);
        rules.pll(*this);
        enterPacking();
        findAndSetCHPosition();
        this->gt_rule_engine::runBlockRules();
    }

  private:
    rateGroupTable rateGroups_;
};

}  // namespace sable_lanecfg
