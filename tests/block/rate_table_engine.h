#pragma once

#include "block_engine.h"
#include "support/clean_log.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace lanecfg_test {

/// Registers of one pass by name.
using registerValues = std::map<std::string, sable_lanecfg::ruleValue>;

/// A block engine whose snapshots a test writes down itself, without rules and passes.
class RateTableEngine : public BlockEngine {
  public:
    explicit RateTableEngine(const std::string& familyWord = "SXB");

    /// Adds a register to the database.
    RateTableEngine& reg(const std::string& name, const std::string& blockType,
                         const std::string& offset = "0x0");
    /// Gives a channel its rate pins.
    RateTableEngine& lane(int channel, const std::string& txNet, const std::string& rxNet);
    /// Appends a snapshot to a channel.
    RateTableEngine& pass(std::size_t channel, unsigned int txRate, unsigned int rxRate,
                          const registerValues& values);
    /// Appends a snapshot for each value of one register, with both directions at the same rate.
    RateTableEngine& duplexPasses(std::size_t channel, const std::string& name,
                                  const std::vector<sable_lanecfg::ruleValue>& values);

    /// Values of a register over a channel's snapshots.
    std::vector<sable_lanecfg::ruleValue> valuesOf(std::size_t channel,
                                                   const std::string& name) const;
};

/// The four records of a generation. Each channel is its own master unless a test says otherwise.
struct FourChannels {
    FourChannels();
    operator sable_lanecfg::RateTableChannel*() { return records; }

    sable_lanecfg::RateTableChannel records[4];
};

/// A critical register as the analysis gives it.
sable_lanecfg::RateTableAttribute critical(const std::string& name, const std::string& type,
                                           std::int64_t address, int channel,
                                           std::uint32_t mask = 0);

std::vector<std::string> namesOf(const std::vector<sable_lanecfg::RateTableAttribute>& attributes);
std::vector<unsigned long> masksOf(
    const std::vector<sable_lanecfg::RateTableAttribute>& attributes);

/// 32 binary digits of a word.
std::string digits(std::uint32_t word);
std::vector<std::string> digits(const std::vector<std::uint32_t>& words);

/// Words of a finished table as numbers.
std::vector<std::uint32_t> numbers(const std::vector<std::string>& words);
/// Words of the form without separators as numbers.
std::vector<std::uint32_t> numbersOfBinary(const std::string& joined);

/// Text of an exception of type `Fault` that the action throws; fails the test on none.
template <class Fault, class Action>
std::string textOfFault(const Action& action) {
    try {
        action();
    } catch (const Fault& fault) {
        return fault.what();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

/// Empties the log while it lives, so that a test reads its own lines only.
class FreshLog : private CleanLog {
  public:
    std::vector<std::string> lines() const;
};

}  // namespace lanecfg_test
