#include "block/rate_table_limits.h"
#include "block/register_offset.h"
#include "block/register_series.h"

#include <lanecfg/gt_rule_engine.h>

#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/predicate.hpp>

#include <algorithm>
#include <cstddef>
#include <iomanip>
#include <iterator>
#include <sstream>
#include <string>

namespace sable_lanecfg {

namespace {

using boost::algorithm::ends_with;
using boost::algorithm::starts_with;

/// Byte address of a word, as the host's lists have it.
std::string byteAddress(long word) {
    std::ostringstream text;
    text << std::hex << std::uppercase << std::setfill('0') << std::setw(4) << word * 4;
    return text.str();
}

/// Runs of consecutive numbers as "START" or "START:END", joined by ",".
std::string renderRuns(const std::vector<long>& ascending) {
    std::vector<std::string> tokens;
    for (auto first = ascending.begin(); first != ascending.end();) {
        auto last = first;
        while (std::next(last) != ascending.end() && *std::next(last) == *last + 1) {
            ++last;
        }
        tokens.push_back(first == last ? byteAddress(*first)
                                       : byteAddress(*first) + ":" + byteAddress(*last));
        first = std::next(last);
    }
    return boost::algorithm::join(tokens, ",");
}

void append(std::vector<long>& all, const std::vector<long>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

}  // namespace

std::string gt_rule_engine::parseRateTableDataForStaticAttributes(RateTableChannel* channels) {
    std::vector<long> numbers;
    for (int channel = 0; channel < rateTableChannels; ++channel) {
        append(numbers, channels[channel].duplex ? DuplexStaticAttributes(channels, channel)
                                                 : SimplexStaticAttributes(channels, channel));
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return renderRuns(numbers);
}

std::vector<long> gt_rule_engine::SimplexStaticAttributes(RateTableChannel* /*channels*/,
                                                          int channel) {
    std::vector<long> numbers =
        staticAttributes(snapshotsWith(passesOf(channel), "RX", "0"), channel);
    append(numbers, staticAttributes(snapshotsWith(passesOf(channel), "TX", "0"), channel));
    return numbers;
}

std::vector<long> gt_rule_engine::DuplexStaticAttributes(RateTableChannel* /*channels*/,
                                                         int channel) {
    return staticAttributes(snapshotsOf(passesOf(channel)), channel);
}

std::vector<long> gt_rule_engine::findStaticAttributes(
    std::vector<std::map<std::string, varInfo>> rates, int channel) {
    return staticAttributes(snapshotsOf(rates), channel);
}

std::vector<long> gt_rule_engine::staticAttributes(const std::vector<const variableMap*>& snapshots,
                                                   int channel) const {
    std::vector<long> numbers;
    if (snapshots.empty()) {
        return numbers;
    }
    const auto numberOf = [&](const std::string& name, const attributeInfo& info,
                              const std::string& block, int index) {
        const auto offset = static_cast<long>(registerOffset(name, info));
        return offset + blockNumber(blockBases, block, index, name, info, channel);
    };
    seriesCache own;
    const std::vector<registerSeries>& values =
        (analysedSeries == nullptr ? own : *analysedSeries).of(attributes, snapshots);
    std::size_t row = 0;
    for (const auto& [name, info] : attributes) {
        const registerSeries& series = values[row++];
        const std::string& type = info.dstSubBlock;
        if (differsInSeries(series) || ends_with(type, "PORT") || forcedCritical.count(name) != 0 ||
            staticExcluded.count(name) != 0) {
            continue;
        }
        if (starts_with(type, "ch")) {
            numbers.push_back(numberOf(name, info, "CH", channel));
        } else if (starts_with(type, "hs")) {
            numbers.push_back(numberOf(name, info, type, channel / 2));
        } else if (starts_with(type, "ctrl") || starts_with(type, "rcalbg")) {
            numbers.push_back(numberOf(name, info, type, 0));
        }
    }
    return numbers;
}

}  // namespace sable_lanecfg
