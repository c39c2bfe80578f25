#include "rate_table_engine.h"

#include <lanecfg/rule_engine_utilities.h>

#include <bitset>

namespace lanecfg_test {

using sable_lanecfg::RateTableAttribute;
using sable_lanecfg::rule_engine_utilities;
using sable_lanecfg::ruleValue;

namespace {

BlockSetup emptyBlock(const std::string& familyWord) {
    BlockSetup setup;
    setup.family = familyWord;
    return setup;
}

}  // namespace

RateTableEngine::RateTableEngine(const std::string& familyWord)
    : BlockEngine(emptyBlock(familyWord)) {
    blockVarMap.resize(static_cast<std::size_t>(rule_engine_utilities::ChPerBlock(familyWord)));
}

RateTableEngine& RateTableEngine::reg(const std::string& name, const std::string& blockType,
                                      const std::string& offset) {
    attributes[name] = {blockType, {}, offset};
    return *this;
}

RateTableEngine& RateTableEngine::lane(int channel, const std::string& txNet,
                                       const std::string& rxNet) {
    channelUsage.push_back(BlockSetup().lane(channel, txNet, rxNet).usage.front());
    return *this;
}

RateTableEngine& RateTableEngine::pass(std::size_t channel, unsigned int txRate,
                                       unsigned int rxRate, const registerValues& values) {
    sable_lanecfg::variableMap snapshot;
    snapshot["TX"].value = txRate;
    snapshot["RX"].value = rxRate;
    for (const auto& [name, value] : values) {
        snapshot[name].value = value;
    }
    blockVarMap.at(channel).push_back(std::move(snapshot));
    return *this;
}

RateTableEngine& RateTableEngine::duplexPasses(std::size_t channel, const std::string& name,
                                               const std::vector<ruleValue>& values) {
    unsigned int rate = 0;
    for (const ruleValue& value : values) {
        pass(channel, rate, rate, {{name, value}});
        ++rate;
    }
    return *this;
}

std::vector<ruleValue> RateTableEngine::valuesOf(std::size_t channel,
                                                 const std::string& name) const {
    std::vector<ruleValue> values;
    for (const auto& snapshot : blockVarMap.at(channel)) {
        values.push_back(snapshot.at(name).value);
    }
    return values;
}

FourChannels::FourChannels() {
    int number = 0;
    for (sable_lanecfg::RateTableChannel& record : records) {
        record.txMaster = record.rxMaster = number;
        ++number;
    }
}

RateTableAttribute critical(const std::string& name, const std::string& type, std::int64_t address,
                            int channel, std::uint32_t mask) {
    return {std::bitset<32>(mask), name, type, address, channel};
}

std::vector<std::string> namesOf(const std::vector<RateTableAttribute>& attributes) {
    std::vector<std::string> names;
    for (const RateTableAttribute& attribute : attributes) {
        names.push_back(attribute.name);
    }
    return names;
}

std::vector<unsigned long> masksOf(const std::vector<RateTableAttribute>& attributes) {
    std::vector<unsigned long> masks;
    for (const RateTableAttribute& attribute : attributes) {
        masks.push_back(attribute.mask.to_ulong());
    }
    return masks;
}

std::string digits(std::uint32_t word) {
    return std::bitset<32>(word).to_string();
}

std::vector<std::string> digits(const std::vector<std::uint32_t>& words) {
    std::vector<std::string> texts;
    for (const std::uint32_t word : words) {
        texts.push_back(digits(word));
    }
    return texts;
}

std::vector<std::uint32_t> numbers(const std::vector<std::string>& words) {
    std::vector<std::uint32_t> values;
    for (const std::string& word : words) {
        EXPECT_EQ(word.size(), 32U);
        values.push_back(static_cast<std::uint32_t>(std::bitset<32>(word).to_ulong()));
    }
    return values;
}

std::vector<std::uint32_t> numbersOfBinary(const std::string& joined) {
    std::vector<std::string> words;
    for (std::size_t start = 0; start < joined.size(); start += 32) {
        words.push_back(joined.substr(start, 32));
    }
    return numbers(words);
}

std::vector<std::string> FreshLog::lines() const {
    return rule_engine_utilities::get_log_content();
}

}  // namespace lanecfg_test
