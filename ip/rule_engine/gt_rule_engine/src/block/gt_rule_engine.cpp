#include "block/block_tables.h"
#include "block/default_values.h"
#include "block/register_word.h"

#include <lanecfg/gt_rule_engine.h>
#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace sable_lanecfg {

namespace {

using boost::algorithm::starts_with;

/// Name of the rate pin at the lane's first position, empty where there is none.
std::string rateNameOf(int lane, const std::vector<int>& lanes,
                       const std::vector<std::string>& rateNames) {
    const auto position =
        static_cast<std::size_t>(std::find(lanes.begin(), lanes.end(), lane) - lanes.begin());
    const bool named = position < lanes.size() && position < rateNames.size();
    return named ? rateNames[position] : std::string();
}

/// True when one usage record gives the channel the same rate name in both directions. Names in
/// different records don't make a pair.
bool ratesMoveTogether(int channel, const std::vector<channelUsageInfo>& usage) {
    return std::any_of(usage.begin(), usage.end(), [channel](const channelUsageInfo& record) {
        const std::string rxName = rateNameOf(channel, record.rx, record.rxrate);
        const std::string txName = rateNameOf(channel, record.tx, record.txrate);
        return rxName == txName && !rxName.empty();
    });
}

}  // namespace

gt_rule_engine::gt_rule_engine(
    const std::string& familyWord, const std::vector<channelUsageInfo>& usage,
    const std::map<std::string, paramTypeInfo>& types, const userParamStore& params,
    std::map<std::string, attributeInfo> registers,
    const std::map<std::string, std::vector<std::string>>& deviceSettings)
    : family(familyWord),
      channelUsage(usage),
      userParams(params),
      paramTypes(types),
      settings(deviceSettings),
      attributes(std::move(registers)),
      pllNames(block_tables::pllNames()),
      blockSpan(block_tables::blockSpan(familyWord)),
      blockOffsets(block_tables::blockOffsets()),
      blockBases(block_tables::blockBases()),
      staticExcluded(block_tables::staticExcluded()),
      forcedCritical(block_tables::forcedCritical()),
      alwaysMasked(block_tables::alwaysMasked()),
      nibbleToHex(block_tables::nibbleToHex()) {
    addVertices(paramTypes);
}

void gt_rule_engine::addVertices(const std::map<std::string, paramTypeInfo>& types) {
    for (const auto& parameter : types) {
        addVertex(parameter.first, varInfo());
    }
}

void gt_rule_engine::findMode() {
    const int channels = rule_engine_utilities::ChPerBlock(family);
    for (int channel = 0; channel < channels; ++channel) {
        laneMode[channel] =
            ratesMoveTogether(channel, channelUsage) ? "txrx_rate_together" : "txrx_rate_seperate";
    }
}

void gt_rule_engine::populateUserParamDefaults(userParamStore& params) {
    fillEmptyRates(params, rule_engine_utilities::ChPerBlock(family), defaultValues(paramTypes));
}

std::string gt_rule_engine::getPrefix(std::string attributeName, int channel) {
    // An unknown register enters the database, without a type.
    const std::string& type = attributes[attributeName].dstSubBlock;
    if (starts_with(type, "ch")) {
        return "CH_" + std::to_string(channel) + "_";
    }
    if (starts_with(type, "hs")) {
        return "HS_" + std::to_string(channel / 2) + "_";
    }
    if (starts_with(type, "ctrl")) {
        return "CTRL_";
    }
    if (starts_with(type, "rcalbg")) {
        return "RCAL_";
    }
    rule_engine_utilities::write_log("Unexpected attribute type " + type + " for attribute " +
                                     attributeName);
    return "?????";
}

unsigned int gt_rule_engine::generateRegister(std::string attributeName) {
    unsigned int word = 0;
    // An unknown register enters the database without fields, an absent field becomes a blank
    // variable, which the read then refuses.
    for (const auto& [field, offsetAndWidth] : attributes[attributeName].fields) {
        const auto value = boost::get<unsigned int>(varMap[field].value);
        word = wordWithField(word, placeOfField(offsetAndWidth), value);
    }
    return word;
}

std::vector<std::vector<std::map<std::string, varInfo>>> gt_rule_engine::getBlockVarMap() {
    return blockVarMap;
}

void gt_rule_engine::dumpVars() {
    for (const auto& passes : blockVarMap) {
        for ([[maybe_unused]] const variableMap& snapshot : passes) {
        }
    }
}

}  // namespace sable_lanecfg
