#include "rate_snapshots.h"

#include <algorithm>
#include <stdexcept>

namespace sable_lanecfg::tool {
namespace {

/// A value as a register word: read as a signed decimal number and cut to 32 bits.
std::optional<std::uint32_t> wordOf(const variableMap& pass, const std::string& name) {
    const auto found = pass.find(name);
    if (found == pass.end()) {
        return std::nullopt;
    }
    const ruleValue& value = found->second.value;
    if (const auto* const word = boost::get<unsigned int>(&value)) {
        return *word;
    }
    try {
        return static_cast<std::uint32_t>(std::stoll(rule_engine_base::textOf(value)));
    } catch (const std::logic_error&) {
        return std::nullopt;
    }
}

PassWords wordsOfPass(const variableMap& pass, const std::vector<std::string>& names) {
    PassWords result{wordOf(pass, "TX").value_or(0), wordOf(pass, "RX").value_or(0), {}};
    result.words.reserve(names.size());
    for (const std::string& name : names) {
        result.words.push_back(wordOf(pass, name));
    }
    return result;
}

}  // namespace

const PassWords* RateSnapshots::find(std::size_t channel, unsigned txRate, unsigned rxRate) const {
    const auto& index = indexOfRates.at(channel);
    const auto found = index.find({txRate, rxRate});
    return found == index.end() ? nullptr : &channels.at(channel)[found->second];
}

RateSnapshots takeSnapshots(const gt_rule_engine& engine) {
    RateSnapshots snapshots;
    for (const auto& [name, info] : engine.attributes) {
        snapshots.names.push_back(name);
    }
    const std::size_t channels = std::min(engine.blockVarMap.size(), rateTableChannelCount);
    for (std::size_t channel = 0; channel < channels; ++channel) {
        for (const variableMap& pass : engine.blockVarMap[channel]) {
            std::vector<PassWords>& passes = snapshots.channels[channel];
            passes.push_back(wordsOfPass(pass, snapshots.names));
            const PassWords& added = passes.back();
            snapshots.indexOfRates[channel].emplace(std::pair(added.txRate, added.rxRate),
                                                    passes.size() - 1);
        }
    }
    return snapshots;
}

}  // namespace sable_lanecfg::tool
