#include <lanecfg/gt_rule_engine.h>

#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace sable_lanecfg {

namespace {

enum class keyPrefix : unsigned char { attribute, port };

/// Number behind the unit's name in the key of a register.
enum class unitNumber : unsigned char { none, channel, block };

/// Key of a register's value by the start of its block type; the first matching row counts.
struct attributeKeyForm {
    const char* typeStart;
    const char* unit;
    keyPrefix prefix;
    unitNumber number;
};

constexpr attributeKeyForm attributeKeyForms[] = {
    {"rcal", "RCALBG", keyPrefix::attribute, unitNumber::block},
    {"hs_clk", "HSCLK", keyPrefix::attribute, unitNumber::block},
    {"ctrl", "", keyPrefix::attribute, unitNumber::none},
    {"CH_PORT", "CH", keyPrefix::port, unitNumber::channel},
    {"CH", "CH", keyPrefix::attribute, unitNumber::channel},
    {"channel", "CH", keyPrefix::attribute, unitNumber::channel},
    {"dual", "", keyPrefix::attribute, unitNumber::none},
    {"HSCLK", "HSCLK", keyPrefix::port, unitNumber::block},
    {"QUAD_PORT", "", keyPrefix::port, unitNumber::none},
    {"DUAL_PORT", "", keyPrefix::port, unitNumber::none},
};

}  // namespace

std::map<std::string, std::string> gt_rule_engine::getAttribMap() {
    std::map<std::string, std::string> result;
    for (std::size_t channel = 0; channel < blockVarMap.size(); ++channel) {
        for (variableMap& snapshot : blockVarMap[channel]) {
            if (getValAsString(snapshot, "TX") != "0" || getValAsString(snapshot, "RX") != "0") {
                continue;
            }
            for (const auto& [name, attribute] : attributes) {
                const auto held = snapshot.find(name);
                if (held == snapshot.end() || held->second.value.which() == 0) {
                    continue;
                }
                result[attributeKey(name, attribute.dstSubBlock, static_cast<int>(channel))] =
                    textOf(held->second.value);
            }
        }
    }
    return result;
}

/// Key of a register's value in `getAttribMap`, empty for a type that has no place there.
std::string gt_rule_engine::attributeKey(const std::string& name, const std::string& type,
                                         int channel) const {
    const auto span = blockSpan.find(type);
    if (span == blockSpan.end()) {
        throw std::invalid_argument("Register " + name + " has the unknown block type \"" + type +
                                    "\".");
    }
    const auto* form = std::find_if(std::begin(attributeKeyForms), std::end(attributeKeyForms),
                                    [&type](const attributeKeyForm& row) {
                                        return boost::algorithm::starts_with(type, row.typeStart);
                                    });
    if (form == std::end(attributeKeyForms)) {
        return {};
    }
    std::string key = (form->prefix == keyPrefix::port ? portPrefix : attributePrefix) + form->unit;
    if (form->number == unitNumber::channel) {
        key += std::to_string(channel) + "_";
    } else if (form->number == unitNumber::block) {
        key += std::to_string(channel / span->second) + "_";
    }
    return key + name;
}

}  // namespace sable_lanecfg
