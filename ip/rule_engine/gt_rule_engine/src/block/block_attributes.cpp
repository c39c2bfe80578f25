#include <lanecfg/gt_rule_engine.h>

#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace sable_lanecfg {

namespace {

/// What stands between the prefix and the name in the key of a register.
enum class unitNumber { none, channel, block };

/// Key of a register's value by the start of its block type; the first matching row counts.
struct attributeKeyForm {
    const char* typeStart;
    bool isPort;
    const char* unit;
    unitNumber number;
};

constexpr attributeKeyForm attributeKeyForms[] = {
    {"rcal", false, "RCALBG", unitNumber::block}, {"hs_clk", false, "HSCLK", unitNumber::block},
    {"ctrl", false, "", unitNumber::none},        {"CH_PORT", true, "CH", unitNumber::channel},
    {"CH", false, "CH", unitNumber::channel},     {"channel", false, "CH", unitNumber::channel},
    {"dual", false, "", unitNumber::none},        {"HSCLK", true, "HSCLK", unitNumber::block},
    {"QUAD_PORT", true, "", unitNumber::none},    {"DUAL_PORT", true, "", unitNumber::none},
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
                    getValAsString(snapshot, name);
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
    std::string key = (form->isPort ? portPrefix : attributePrefix) + form->unit;
    if (form->number == unitNumber::channel) {
        key += std::to_string(channel) + "_";
    } else if (form->number == unitNumber::block) {
        key += std::to_string(channel / span->second) + "_";
    }
    return key + name;
}

}  // namespace sable_lanecfg
