#pragma once

#include "support/small_database.h"

#include <lanecfg/gt_quad_packing.h>

#include <nlohmann/json.hpp>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace lanecfg_test {

/// Settings of a lane and direction at one rate; as they stand, 10.3125 Gb/s from the LCPLL.
struct RateSettings {
    double lineRate = 10.3125;
    std::string pll = "LCPLL";
    double refclk = 156.25;
    std::string source = "R0";
    std::string coding = "RAW";
    unsigned intDataWidth = 32;
    unsigned userDataWidth = 32;
    std::string group = "A";
    bool hasDivider = false;
    std::string dividerPll = "LCPLL";
    double dividerFrequency = 500.0;
    unsigned bufferMode = 1;
    bool isInterpolating = false;
};

/// Settings of a line rate, PLL and reference clock; the others as they stand.
RateSettings rateOf(double lineRate, const std::string& pll = "LCPLL", double refclk = 156.25,
                    const std::string& source = "R0");

/// 10.3125 Gb/s in both directions, user words of two internal ones, so that only 10.3125 GHz is
/// left for the LCPLL: 66 times the reference clock.
RateSettings tenGigabitEthernet(const std::string& source = "R0");

/// The parameters with receive buffers in use. The packing does not ask for them, the rate table
/// does.
sable_lanecfg::userParamStore withReceiveBuffer(sable_lanecfg::userParamStore params);

/// The user parameters of the settings, under the names of a direction (0 transmit, 1 receive).
std::map<std::string, sable_lanecfg::ruleValue> parametersOf(int direction,
                                                             const RateSettings& settings);

constexpr int transmit = 0;
constexpr int receive = 1;

/// A request for a quad, built lane by lane. Each call adds a usage record.
class PackingRequest {
  public:
    PackingRequest();

    PackingRequest& add(int direction, int lane, const std::vector<RateSettings>& rates,
                        const std::string& pin = "PIN");
    /// The same settings both ways, on the same pin.
    PackingRequest& addBoth(int lane, const std::vector<RateSettings>& rates,
                            const std::string& pin = "PIN");

    /// Makes the usage records one, with the rates of the first and a position for each of theirs.
    PackingRequest& joinRecords();

    /// The parameters of a place, to be changed.
    std::map<std::string, sable_lanecfg::ruleValue>& parametersAt(int direction, int lane,
                                                                  int rate = 0);

    sable_lanecfg::gt_quad_packing packing() const;
    /// Texts of `canBePacked`.
    std::vector<std::string> reasons() const;

    /// The request as a file of the SXB family.
    nlohmann::json fileForm() const;
    /// The request as the host's dictionaries.
    sable_lanecfg::laneUsageMap laneUsage() const;
    sable_lanecfg::userParamMap userParamDictionary() const;
    /// The request in the dictionary form of a file.
    nlohmann::json dictionaryForm() const;
    /// A database that has the parameters and limits of the request, with the request's file.
    SmallDatabase database() const;

    std::vector<sable_lanecfg::channelUsageInfo> channels;
    sable_lanecfg::userParamStore userParams;
    std::map<std::string, std::vector<std::string>> limits;

  private:
    void enter(int direction, int lane, const std::vector<RateSettings>& rates);
};

/// A request of one lane in both directions at one rate.
PackingRequest oneLane(const RateSettings& settings = tenGigabitEthernet(), int lane = 0);

/// A request of lane 0 in both directions, `tenGigabitEthernet` but for these line rates.
PackingRequest oneLaneAt(const std::vector<double>& lineRates);

/// Lanes used or not, each with a group, up to three of these line rates, PLLs and sources of its
/// own.
PackingRequest randomRequest(std::mt19937& random, const std::vector<double>& lineRates);

/// Texts in the order of their numbers.
std::vector<std::string> textsOf(const std::map<int, std::string>& messages);

/// The texts that a pack can be refused with.
std::string noVcoText(const std::string& pll, int dual, int rate);
std::string clockMismatchText(const std::string& pll, int dual);
std::string sourceMismatchText(const std::string& pll, int dual);
std::string independentBypassText(int txRate, int rxRate, int lane);
std::string commonBypassText(int rate, int lane);
std::string connectionsText();
/// Such a text without the name of its check and its line feed.
std::string sentenceOf(const std::string& message);

}  // namespace lanecfg_test
