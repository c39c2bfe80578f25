#include "sxd4_passes.h"

#include "support/reference_data.h"

#include <string>

namespace lanecfg_test {

namespace {

using sable_lanecfg::channelUsageInfo;

/// One record in which both directions of every channel name the same rate.
std::vector<channelUsageInfo> ratesTogether(std::size_t channels) {
    channelUsageInfo usage;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        usage.tx.push_back(static_cast<int>(channel));
        usage.rx.push_back(static_cast<int>(channel));
        usage.txrate.emplace_back("A");
        usage.rxrate.emplace_back("A");
    }
    return {usage};
}

}  // namespace

DeviceSettings sxd4Settings(const DeviceSettings& others) {
    DeviceSettings settings{{"FLCPLLRANGE_MIN", {"9.8"}},
                            {"FLCPLLRANGE_MAX", {"14.5"}},
                            {"FSXDLCRANGE_MIN", {"9.8"}},
                            {"siliconRev", {"production"}}};
    for (const auto& [name, value] : others) {
        settings[name] = value;
    }
    return settings;
}

DeviceSettings unlimitedSettings() {
    return sxd4Settings(
        {{"FLCPLLRANGE_MIN", {"0.5"}}, {"FLCPLLRANGE_MAX", {"100"}}, {"FSXDLCRANGE_MIN", {"1"}}});
}

std::unique_ptr<sable_lanecfg::lane_cfg_sxd4_instance> sxd4Instance(
    const BlockRates& channels, const DeviceSettings& settings) {
    static const sable_lanecfg::gt_db_load database = referenceDatabase("SXD4");
    // A direction with fewer rates than the other would not run them.
    sable_lanecfg::userParamStore params(2, channels);
    params.front().resize(2);
    params.back().resize(2);
    return std::make_unique<sable_lanecfg::lane_cfg_sxd4_instance>(
        "block_0", ratesTogether(channels.size()),
        std::map<std::string, sable_lanecfg::quadsUsageInfo*>(), database.m_paramTypes, params,
        database.m_fields, settings);
}

Sxd4Passes::Sxd4Passes(const std::vector<VariableValues>& rates, const DeviceSettings& settings)
    : instance_(sxd4Instance({rates}, settings)) {}

}  // namespace lanecfg_test
