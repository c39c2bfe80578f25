#include "block_engine.h"

namespace lanecfg_test {

using sable_lanecfg::channelUsageInfo;

BlockSetup& BlockSetup::parameter(const std::string& name, const std::string& type,
                                  const std::string& defaultValue) {
    types[name] = {type, "", defaultValue};
    return *this;
}

BlockSetup& BlockSetup::reg(const std::string& name, const std::string& blockType,
                            std::map<std::string, std::vector<int>> fields) {
    attributes[name] = {blockType, std::move(fields), "0x0"};
    return *this;
}

BlockSetup& BlockSetup::lane(int channel, const std::string& txRate, const std::string& rxRate) {
    channelUsageInfo record;
    record.tx = {channel};
    record.rx = {channel};
    record.txrate = {txRate};
    record.rxrate = {rxRate};
    usage.push_back(record);
    return *this;
}

BlockSetup& BlockSetup::rates(std::size_t direction, std::size_t channel, rateList list) {
    params.at(direction).at(channel) = std::move(list);
    return *this;
}

BlockEngine::BlockEngine(const BlockSetup& setup)
    : gt_rule_engine_live(setup.family, setup.usage, setup.types, setup.params, setup.attributes,
                          setup.settings) {}

std::vector<std::pair<unsigned int, unsigned int>> BlockEngine::labels(std::size_t channel) const {
    std::vector<std::pair<unsigned int, unsigned int>> found;
    for (std::size_t pass = 0; pass < blockVarMap.at(channel).size(); ++pass) {
        found.emplace_back(inPass<unsigned int>(channel, pass, "TX"),
                           inPass<unsigned int>(channel, pass, "RX"));
    }
    return found;
}

std::vector<std::size_t> BlockEngine::passCounts() const {
    std::vector<std::size_t> counts;
    for (const auto& passes : blockVarMap) {
        counts.push_back(passes.size());
    }
    return counts;
}

rateList countedRates(const std::string& name, unsigned int count) {
    rateList rates;
    for (unsigned int rate = 0; rate < count; ++rate) {
        rates.push_back({{name, rate}});
    }
    return rates;
}

}  // namespace lanecfg_test
