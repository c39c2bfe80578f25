#pragma once

#include "support/print_rule_value.h"

#include <lanecfg/gt_rule_engine.h>

#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {

/// Rates of one channel and direction.
using rateList = std::vector<std::map<std::string, sable_lanecfg::ruleValue>>;

/// What a block engine is made of. It stands for an empty four-channel quad; a test fills in what
/// it is about.
struct BlockSetup {
    /// Adds a parameter type, with its default.
    BlockSetup& parameter(const std::string& name, const std::string& type,
                          const std::string& defaultValue);
    /// Adds a register; fields are { name, { offset, width } }.
    BlockSetup& reg(const std::string& name, const std::string& blockType,
                    std::map<std::string, std::vector<int>> fields = {});
    /// Adds a usage record that gives one channel a rate pin name in each direction.
    BlockSetup& lane(int channel, const std::string& txRate, const std::string& rxRate);
    /// Gives the channel its rates in direction 0 (transmit) or 1 (receive).
    BlockSetup& rates(std::size_t direction, std::size_t channel, rateList list);

    std::string family = "SXB";
    std::vector<sable_lanecfg::channelUsageInfo> usage;
    std::map<std::string, sable_lanecfg::paramTypeInfo> types;
    sable_lanecfg::userParamStore params{2, std::vector<rateList>(4)};
    std::map<std::string, sable_lanecfg::attributeInfo> attributes;
    std::map<std::string, std::vector<std::string>> settings{{"siliconRev", {"ES2"}}};
};

/// A block engine whose protected parts a test can reach, as a family can.
class BlockEngine : public sable_lanecfg::gt_rule_engine_live {
  public:
    explicit BlockEngine(const BlockSetup& setup);

    using gt_rule_engine::passStartValues;
    using rule_engine_base::passFlag;

    /// Value of a variable in a snapshot; fails the test by exception when it isn't there.
    template <class T>
    const T& inPass(std::size_t channel, std::size_t pass, const std::string& name) const {
        return boost::get<T>(blockVarMap.at(channel).at(pass).at(name).value);
    }

    /// A variable's value in all passes of a channel.
    template <class T>
    std::vector<T> inPasses(std::size_t channel, const std::string& name) const {
        std::vector<T> values;
        for (std::size_t pass = 0; pass < blockVarMap.at(channel).size(); ++pass) {
            values.push_back(inPass<T>(channel, pass, name));
        }
        return values;
    }

    /// The { TX, RX } labels of a channel's snapshots, in order.
    std::vector<std::pair<unsigned int, unsigned int>> labels(std::size_t channel) const;
    /// How many passes each channel ran.
    std::vector<std::size_t> passCounts() const;
};

/// Rates that only differ in the value of `name`, which counts up from 0.
rateList countedRates(const std::string& name, unsigned int count);

}  // namespace lanecfg_test
