#pragma once

#include <lanecfg/gt_db_load.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lanecfg_test {

/// Quads of a request in the form that instances take. The records live as long as this.
class QuadUsage {
  public:
    /// A quad of one direction ("TX_QUAD_CH", "RX_QUAD_CH") with the links of its channels, as
    /// they stand, and which channel is its link's master ("0", "1").
    QuadUsage& add(const std::string& usageKey, const std::string& name,
                   const std::vector<std::string>& channels,
                   const std::vector<std::string>& masters, bool isCurrent = true) {
        auto quad = std::make_unique<sable_lanecfg::quadsUsageInfo>();
        quad->quadName = name;
        quad->usageKey = usageKey;
        quad->channels = channels;
        quad->MSTRCLK = masters;
        quad->IS_CURRENT_QUAD = isCurrent;
        quads[name] = quad.get();
        owned_.push_back(std::move(quad));
        return *this;
    }

    std::map<std::string, sable_lanecfg::quadsUsageInfo*> quads;

  private:
    std::vector<std::unique_ptr<sable_lanecfg::quadsUsageInfo>> owned_;
};

}  // namespace lanecfg_test
