#include "database/parameter_values.h"
#include "database/quad_usage.h"

#include <lanecfg/gt_db_load.h>
#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <memory>
#include <utility>

namespace sable_lanecfg {

namespace {

using utilities = rule_engine_utilities;
using laneRates = std::vector<std::map<std::string, ruleValue>>;

/// Device family whose parts have per-lane settings for all lanes of a quad.
constexpr const char* perLaneFamily = "tessera";
constexpr int lanesOfQuad = 4;

/// Empty tokens count: an empty text is one of them.
std::vector<std::string> splitList(const std::string& text) {
    std::vector<std::string> tokens;
    boost::algorithm::split(tokens, text, boost::is_any_of(","));
    return tokens;
}

void appendNumbers(const std::string& text, std::vector<int>& numbers) {
    for (const std::string& token : splitList(text)) {
        numbers.push_back(static_cast<int>(utilities::getInt(token)));
    }
}

std::unique_ptr<quadsUsageInfo> readQuad(const std::string& usageKey, const std::string& name,
                                         const textMap& entries) {
    std::unique_ptr<quadsUsageInfo> quad = makeQuadUsage();
    quad->quadName = name;
    quad->usageKey = usageKey;
    for (const auto& [key, value] : entries) {
        if (key == "MSTRCLK") {
            quad->MSTRCLK = splitList(value);
        } else if (key == "IS_CURRENT_QUAD") {
            quad->IS_CURRENT_QUAD = utilities::stringToBool(value);
        } else {
            quad->channels = splitList(value);  // of several entries the last key stands
        }
    }
    return quad;
}

channelUsageInfo readLane(const textMap& entries) {
    channelUsageInfo lane;
    for (const auto& [key, value] : entries) {
        if (key == "group") {
            lane.group = value;
        } else if (key == "tx") {
            appendNumbers(value, lane.tx);
        } else if (key == "rx") {
            appendNumbers(value, lane.rx);
        } else if (key == "txrate") {
            lane.txrate = splitList(value);
        } else if (key == "rxrate") {
            lane.rxrate = splitList(value);
        } else if (key == "rates") {
            appendNumbers(value, lane.rates);
        }
    }
    return lane;
}

/// Rates go by number, LR10 behind LR9, and as many are read as there are entries; a number that
/// is missing gives an empty map.
bool readRates(const std::map<std::string, textMap>& rates,
               std::map<std::string, paramTypeInfo>& types, laneRates& lane) {
    const textMap missing;
    bool allKnown = true;
    for (std::size_t rate = 0; rate < rates.size(); ++rate) {
        const auto found = rates.find("LR" + std::to_string(rate) + "_SETTINGS");
        const textMap& parameters = found == rates.end() ? missing : found->second;
        const bool known = storeParameters(parameters, types, lane.emplace_back(), textConverter());
        allKnown = allKnown && known;
    }
    return allKnown;
}

}  // namespace

bool gt_db_load::getUserParameters(const textMap& /*options*/, const userParamMap& userParams,
                                   const laneUsageMap& laneUsage, const quadUsageMap& quadUsage,
                                   const std::string& family) {
    m_quadsUsage.clear();
    for (const auto& [usageKey, quads] : quadUsage) {
        for (const auto& [name, entries] : quads) {
            enterQuadUsage(m_quadsUsage, readQuad(usageKey, name, entries));
        }
    }
    m_channelUsage.clear();
    for (const auto& [lane, entries] : laneUsage) {
        m_channelUsage.push_back(readLane(entries));
    }
    m_userParams.clear();
    // The receive section decides alone when it is there: a fault of the transmit section is
    // then reported but does not stop the request.
    bool usable = true;
    for (const char* section : {"TX_SETTINGS", "RX_SETTINGS"}) {
        const auto settings = userParams.find(section);
        if (settings != userParams.end()) {
            std::vector<laneRates> direction;
            usable = loadSettings(settings->second, direction, family);
            m_userParams.push_back(std::move(direction));
        } else if (family == perLaneFamily) {
            m_userParams.emplace_back(lanesOfQuad);
        }
    }
    return usable;
}

bool gt_db_load::loadSettings(const settingsMap& settings, std::vector<laneRates>& out,
                              const std::string& family) {
    bool allKnown = true;
    if (family != perLaneFamily) {
        for (const auto& [key, rates] : settings) {
            const bool known = readRates(rates, m_paramTypes, out.emplace_back());
            allKnown = allKnown && known;
        }
        return allKnown;
    }
    for (int lane = 0; lane < lanesOfQuad; ++lane) {
        laneRates& values = out.emplace_back();
        for (const auto& [key, rates] : settings) {
            if (key.find(std::to_string(lane)) != std::string::npos) {
                const bool known = readRates(rates, m_paramTypes, values);
                allKnown = allKnown && known;
            }
        }
    }
    return allKnown;
}

}  // namespace sable_lanecfg
