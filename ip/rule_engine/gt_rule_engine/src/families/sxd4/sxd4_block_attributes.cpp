#include "families/sxd4/sxd4_block_attributes.h"

#include <array>
#include <cstddef>

namespace sable_lanecfg {

namespace {

constexpr std::size_t channelsOfBlock = 2;

std::string modeField(const std::string& side, std::size_t channel) {
    return "FEC_CFG0.CTL_" + side + std::to_string(channel) + "_MODE";
}

std::string bypassField(const std::string& side, std::size_t channel) {
    return "FEC_CFG3.FEC_" + side + std::to_string(channel) + "_BYPASS";
}

/// What a channel's pass of rate 0 in both directions says of its own error correction; 0 without
/// such a pass.
struct channelCorrection {
    unsigned int receiveMode = 0;
    unsigned int transmitMode = 0;
    unsigned int receiveBypass = 0;
    unsigned int transmitBypass = 0;
};

bool isOfFirstRates(const variableMap& pass) {
    const auto isZero = [&pass](const char* rate) {
        const auto found = pass.find(rate);
        return found != pass.end() && rule_engine_base::textOf(found->second.value) == "0";
    };
    return isZero("TX") && isZero("RX");
}

unsigned int numberIn(const variableMap& pass, const std::string& name) {
    const auto found = pass.find(name);
    return found == pass.end() ? 0U : rule_engine_base::valueOf<unsigned int>(*found);
}

channelCorrection correctionOf(const std::vector<variableMap>& passes, std::size_t channel) {
    channelCorrection correction;
    for (const variableMap& pass : passes) {
        if (isOfFirstRates(pass)) {
            correction = {numberIn(pass, modeField("RX", channel)),
                          numberIn(pass, modeField("TX", channel)),
                          numberIn(pass, bypassField("RX", channel)),
                          numberIn(pass, bypassField("TX", channel))};
        }
    }
    return correction;
}

using blockCorrections = std::array<channelCorrection, channelsOfBlock>;

blockCorrections correctionsOf(const gt_rule_engine& engine) {
    blockCorrections corrections;
    for (std::size_t channel = 0; channel < channelsOfBlock; ++channel) {
        if (channel < engine.blockVarMap.size()) {
            corrections[channel] = correctionOf(engine.blockVarMap[channel], channel);
        }
    }
    return corrections;
}

void enterModes(gt_rule_engine& engine, const blockCorrections& corrections) {
    for (std::size_t channel = 0; channel < channelsOfBlock; ++channel) {
        engine.setVal(modeField("RX", channel), corrections[channel].receiveMode);
        engine.setVal(modeField("TX", channel), corrections[channel].transmitMode);
    }
}

/// The transmit bypass of channel 0 goes into the field of channel 1, over that one's own, and the
/// field of channel 0 keeps what the last pass left there: hosts count on the words that come of
/// it.
void enterBypasses(gt_rule_engine& engine, const blockCorrections& corrections) {
    engine.setVal(bypassField("RX", 1), corrections[1].receiveBypass);
    engine.setVal(bypassField("RX", 0), corrections[0].receiveBypass);
    engine.setVal(bypassField("TX", 1), corrections[1].transmitBypass);
    engine.setVal(bypassField("TX", 1), corrections[0].transmitBypass);
}

void compose(gt_rule_engine& engine, const std::string& name) {
    engine.setVal(name, engine.generateRegister(name));
}

}  // namespace

std::map<std::string, std::string> blockAttributes(gt_rule_engine& engine) {
    std::map<std::string, std::string> attributes = engine.getAttribMap();
    const blockCorrections corrections = correctionsOf(engine);
    enterModes(engine, corrections);
    compose(engine, "FEC_CFG0");
    enterBypasses(engine, corrections);
    compose(engine, "FEC_CFG3");
    for (const char* const name : {"FEC_CFG0", "FEC_CFG3"}) {
        attributes[engine.attributePrefix + name] = engine.getValAsString(name);
    }
    return attributes;
}

}  // namespace sable_lanecfg
