#pragma once

#include <lanecfg/lane_cfg_instance.h>

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Instance of a block of the SXD4 family: two channels on one PLL, PAM4 or NRZ, with forward error
/// correction. There is no packing; a block has no other PLL to choose.
class lane_cfg_sxd4_instance : public lane_cfg_instance {
  public:
    lane_cfg_sxd4_instance(const std::string& name, const std::vector<channelUsageInfo>& usage,
                           const std::map<std::string, quadsUsageInfo*>& quads,
                           const std::map<std::string, paramTypeInfo>& types,
                           const userParamStore& params,
                           std::map<std::string, attributeInfo> registers,
                           const std::map<std::string, std::vector<std::string>>& deviceData);

    /// Register words by prefixed name, see `blockAttributes`.
    std::map<std::string, std::string> getAttributes() override;

    /// The PLL clocks (GHz) that could serve a line of this symbol rate, and an output clock (MHz)
    /// of the programmable divider beside it, see `sxd4_vco_candidates`.
    std::vector<double> VCO_FrequencyCalculation(double symbolRate) const;
    std::vector<double> VCO_FrequencyProgDivCalculation(double frequency, unsigned int pamSelection,
                                                        double symbolRate) const;
    /// See `commonCandidates`.
    static std::vector<double> mainIntersectionLogic(const std::vector<std::vector<double>>& lists);

    std::string ipName;  ///< `instanceName` again

  private:
    void runRXRules();
    void runTXRules();
    void runPLLRules();
};

}  // namespace sable_lanecfg
