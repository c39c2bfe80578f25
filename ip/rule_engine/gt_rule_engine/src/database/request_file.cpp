#include "database/fault_report.h"
#include "database/json_file.h"
#include "database/parameter_values.h"
#include "database/quad_usage.h"
#include "database/tree_values.h"

#include <lanecfg/gt_db_load.h>
#include <lanecfg/rule_engine_utilities.h>

#include <exception>
#include <memory>
#include <type_traits>

namespace sable_lanecfg {

namespace {

using boost::property_tree::ptree;

using quadMap = std::map<std::string, quadsUsageInfo*>;
using laneRates = std::vector<std::map<std::string, ruleValue>>;
using typeMap = std::map<std::string, paramTypeInfo>;

/// The channel entry names the quad; of several the last stands.
std::unique_ptr<quadsUsageInfo> readQuad(const std::string& usageKey, const ptree& entries,
                                         tree_values& values) {
    std::unique_ptr<quadsUsageInfo> quad = makeQuadUsage();
    for (const auto& [name, value] : entries) {
        if (name == "MSTRCLK") {
            values.list(value, quad->MSTRCLK);
        } else if (name == "IS_CURRENT_QUAD") {
            quad->IS_CURRENT_QUAD = values.value<bool>(value);
        } else {
            quad->quadName = name;
            quad->usageKey = usageKey;
            values.list(value, quad->channels);
        }
    }
    return quad;
}

/// Below each first-level key stand the quads, either as an array of objects or each in an object
/// that repeats its own key. The empty key of an array element is the path to the element itself.
void readQuads(const ptree& quadUsage, quadMap& quads) {
    tree_values values;
    for (const auto& [usageKey, entries] : quadUsage) {
        for (const auto& [key, entry] : entries) {
            enterQuadUsage(quads, readQuad(usageKey, entry.get_child(key), values));
        }
    }
}

void readQuadUsage(const ptree& request, const std::string& file, quadMap& quads) {
    const auto quadUsage = request.get_child_optional("quadUsage");
    if (!quadUsage) {
        reportError("quadUsage node not found. That is ok for SXD4, but not SXB - %s.", file);
        return;
    }
    try {
        readQuads(*quadUsage, quads);
    } catch (const std::exception& failure) {
        reportError("%s.", failure.what());
    }
}

void readLane(const ptree& entries, channelUsageInfo& lane, tree_values& values) {
    lane.group = entries.get_child("group").data();
    values.list(entries.get_child("tx"), lane.tx);
    values.list(entries.get_child("rx"), lane.rx);
    values.list(entries.get_child("txrate"), lane.txrate);
    values.list(entries.get_child("rxrate"), lane.rxrate);
    values.list(entries.get_child("rates"), lane.rates);
}

/// A lane that lacks a key ends the list and stays in it with what was read.
void readLaneUsage(const ptree& request, const std::string& file,
                   std::vector<channelUsageInfo>& lanes) {
    tree_values values;
    try {
        for (const auto& [key, entries] : request.get_child("laneUsage")) {
            readLane(entries, lanes.emplace_back(), values);
        }
    } catch (const std::exception&) {
        reportError("Error in getting the Lane Usage data %s.", file);
    }
}

bool readRates(const ptree& rates, typeMap& types, laneRates& lane, tree_values& values) {
    const auto convert = [&values](const ptree& value, const auto& kind) {
        return values.value<std::decay_t<decltype(kind)>>(value);
    };
    bool allKnown = true;
    for (const auto& [key, parameters] : rates) {
        const bool known = storeParameters(parameters, types, lane.emplace_back(), convert);
        allKnown = allKnown && known;
    }
    return allKnown;
}

bool readUserParameters(const ptree& request, typeMap& types, userParamStore& store) {
    tree_values values;
    bool allKnown = true;
    try {
        for (const auto& [directionKey, lanes] : request.get_child("userParams")) {
            auto& direction = store.emplace_back();
            for (const auto& [laneKey, rates] : lanes) {
                const bool known = readRates(rates, types, direction.emplace_back(), values);
                allKnown = allKnown && known;
            }
        }
    } catch (const std::exception&) {
        rule_engine_utilities::addMessage("Error in filling the user parameters Map", "error");
        return false;
    }
    return allKnown;
}

}  // namespace

bool gt_db_load::getUserParameters(const std::string& file) {
    const auto request = readJsonFile<ptree>(file);
    m_quadsUsage.clear();
    readQuadUsage(request, file, m_quadsUsage);
    m_channelUsage.clear();
    readLaneUsage(request, file, m_channelUsage);
    m_userParams.clear();
    return readUserParameters(request, m_paramTypes, m_userParams);
}

}  // namespace sable_lanecfg
