#include "packing/lane_parameters.h"
#include "packing/packing_faults.h"

#include <lanecfg/gt_quad_packing.h>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <algorithm>
#include <iomanip>
#include <locale>
#include <set>
#include <sstream>

namespace sable_lanecfg {

namespace {

constexpr const char* frequencyKey = "Frequency";
constexpr const char* nameKey = "refClkName";
constexpr std::size_t connectionsOfQuad = 6;

using connectionContent = std::map<std::string, std::vector<ruleValue>>;
using connectionTable = packingTable<connectionContent>;

/// A source of a PLL with the digit of its dual, as one rate pin uses it.
struct connection {
    std::string pin;  ///< cut at the first "."
    std::string pll;
    std::string dual;  ///< digit
    std::string source;
    bool isPllInBothDuals;  ///< whether the pin uses this PLL in the other dual too
    connectionContent& content;

    const std::vector<ruleValue>& frequencies() const { return content[frequencyKey]; }
    bool hasOneFrequency() const { return frequencies().size() == 1; }

    /// Whether another one can be the same wire into the quad.
    bool canShareWith(const connection& other) const {
        const bool isReachable = pll == other.pll && (dual == other.dual || isPllInBothDuals);
        return isReachable && other.hasOneFrequency() && frequencies() == other.frequencies();
    }
};

/// A PLL and its dual out of a key such as "LCPLL0".
std::pair<std::string, std::string> splitPll(const std::string& pllWithDigit) {
    const std::string digit = pllWithDigit.empty() ? "" : std::string(1, pllWithDigit.back());
    return {pllWithDigit.substr(0, pllWithDigit.size() - digit.size()), digit};
}

std::vector<connection> connectionsOf(connectionTable& resources) {
    std::vector<connection> connections;
    for (auto& [ratePin, plls] : resources) {
        for (auto& [pllWithDigit, sources] : plls) {
            const auto [pll, dual] = splitPll(pllWithDigit);
            const bool isInBoth = plls.count(pll + "0") != 0 && plls.count(pll + "1") != 0;
            for (auto& [source, content] : sources) {
                connections.push_back(
                    {ratePin.substr(0, ratePin.find('.')), pll, dual, source, isInBoth, content});
            }
        }
    }
    return connections;
}

/// A frequency (MHz) without needless zeros, the same in every locale.
std::string frequencyText(const ruleValue& frequency) {
    constexpr int decimals = 12;
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << std::fixed << std::setprecision(decimals) << boost::get<double>(frequency);
    std::string text = stream.str();
    boost::algorithm::trim_right_if(text, boost::algorithm::is_any_of("0"));
    boost::algorithm::trim_right_if(text, boost::algorithm::is_any_of("."));
    return text;
}

void addDistinct(std::vector<ruleValue>& values, const ruleValue& value) {
    if (std::find(values.begin(), values.end(), value) == values.end()) {
        values.push_back(value);
    }
}

/// Names a clock of one frequency after all connections that it can serve, and enters the name
/// there.
void nameSharedClock(const connection& named, const std::vector<connection>& connections) {
    std::set<std::pair<std::string, std::string>> users;
    std::vector<const connection*> sharing;
    for (const connection& other : connections) {
        if (named.canShareWith(other)) {
            users.emplace(other.pin, other.source);
            sharing.push_back(&other);
        }
    }
    std::vector<std::string> parts;
    parts.reserve(users.size());
    for (const auto& [pin, source] : users) {
        parts.push_back(pin + "_" + source);
    }
    const std::string name = "refclk_" + boost::algorithm::join(parts, "_") + "_" +
                             frequencyText(named.frequencies().front()) + "_MHz_unique1";
    for (const connection* const user : sharing) {
        addDistinct(user->content[nameKey], name);
    }
}

void nameClock(const connection& named, const std::vector<connection>& connections) {
    if (named.hasOneFrequency()) {
        nameSharedClock(named, connections);
    } else {
        addDistinct(named.content[nameKey],
                    "refclk_" + named.pin + "_" + named.source + "_multiple_ext_freq");
    }
}

void gatherClocks(const userParamStore& userParams, const channelUsageInfo& channel,
                  actualRefclks& clocks, connectionTable& resources) {
    visitLanes(channel, [&](laneDirection direction, int lane, const std::string& ratePin) {
        const std::string digit = std::to_string(dualOf(lane));
        for (const int slot : channel.rates) {
            const laneClocking clocking({userParams, direction, lane, slot}, clocks);
            auto& plls = resources[ratePin];
            addDistinct(plls[clocking.pll + digit][clocking.source][frequencyKey],
                        clocking.actualRefclk);
            if (clocking.isDividerEnabled) {
                addDistinct(plls[clocking.dividerPll + digit][clocking.source][frequencyKey],
                            clocking.actualRefclk);
            }
        }
    });
}

std::size_t countNames(const std::vector<connection>& connections) {
    std::set<std::string> names;
    for (const connection& each : connections) {
        for (const ruleValue& name : each.content[nameKey]) {
            names.insert(boost::get<std::string>(name));
        }
    }
    return names.size();
}

std::string portOf(const std::string& source) {
    static const std::map<std::string, std::string> ports{
        {"R0", "GTREFCLK0"},    {"R1", "GTREFCLK1"},    {"R2", "NORTHREFCLK0"},
        {"R3", "NORTHREFCLK1"}, {"R4", "SOUTHREFCLK0"}, {"R5", "SOUTHREFCLK1"}};
    const auto found = ports.find(source);
    return found == ports.end() ? std::string() : found->second;
}

}  // namespace

std::map<int, std::string> gt_quad_packing::checkRefclkSourceResource(bool logErrors) {
    packingMessages messages;
    catchPackingFaults(__LINE__, logErrors, messages, [&] {
        actualRefclks clocks;
        for (const channelUsageInfo& channel : channels) {
            gatherClocks(userParams, channel, clocks, refclkResources);
        }
        const std::vector<connection> connections = connectionsOf(refclkResources);
        for (const connection& each : connections) {
            nameClock(each, connections);
        }
        if (countNames(connections) > connectionsOfQuad) {
            messages[0] =
                "QuadLevelCheck: Cannot be packed because the requested reference clock sources "
                "and frequencies exceed 6 connections into the Quad!!!!\n";
        }
    });
    return messages;
}

std::map<std::string, std::string> gt_quad_packing::returnRefclkPorts() const {
    std::map<std::string, std::string> names;
    for (const auto& [ratePin, plls] : refclkResources) {
        for (const auto& [pllWithDigit, sources] : plls) {
            const auto [pll, dual] = splitPll(pllWithDigit);
            for (const auto& [source, content] : sources) {
                const auto entered = content.find(nameKey);
                if (entered == content.end()) {
                    continue;
                }
                for (const ruleValue& name : entered->second) {
                    names["HSCLK" + dual + "_" + pll + portOf(source)] =
                        boost::get<std::string>(name);
                }
            }
        }
    }
    return names;
}

}  // namespace sable_lanecfg
