#pragma once

#include "families/sxd4/lane_cfg_sxd4_instance.h"
#include "support/family_rule.h"

#include <lanecfg/gt_rule_engine.h>

#include <memory>
#include <string>
#include <vector>

namespace lanecfg_test {

/// The limits of the reference database, and others put over them.
DeviceSettings sxd4Settings(const DeviceSettings& others = {});

/// Limits within which every clock from 0.5 to 100 GHz is in range at its full rate: the PLL runs
/// at half of every symbol rate from 1 on.
DeviceSettings unlimitedSettings();

/// The user parameters of a block: what is given of each channel's rates, transmit and receive
/// parameters mixed. All else has its default.
using BlockRates = std::vector<std::vector<VariableValues>>;

/// An instance on the reference database whose channels change rate in both directions at once.
std::unique_ptr<sable_lanecfg::lane_cfg_sxd4_instance> sxd4Instance(
    const BlockRates& channels, const DeviceSettings& settings = sxd4Settings());

/// The passes of channel 0, one for each set of parameters.
class Sxd4Passes {
  public:
    explicit Sxd4Passes(const std::vector<VariableValues>& rates,
                        const DeviceSettings& settings = sxd4Settings());

    const sable_lanecfg::variableMap& pass(std::size_t rate = 0) const {
        return instance_->blockVarMap.front().at(rate);
    }
    /// A value of a pass; throws boost::bad_get when it is of another type.
    template <class T>
    T valueOf(const std::string& name, std::size_t rate = 0) const {
        return boost::get<T>(pass(rate).at(name).value);
    }
    unsigned number(const std::string& name, std::size_t rate = 0) const {
        return valueOf<unsigned>(name, rate);
    }

  private:
    std::unique_ptr<sable_lanecfg::lane_cfg_sxd4_instance> instance_;
};

}  // namespace lanecfg_test
