#include "block/rate_table_limits.h"
#include "block/rate_table_word.h"
#include "block/register_series.h"

#include <lanecfg/gt_rule_engine.h>
#include <lanecfg/rule_engine_utilities.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace sable_lanecfg {

namespace {

std::string digitsOf(std::uint32_t word) {
    return std::bitset<32>(word).to_string();
}

void log(const std::string& label, const std::string& text) {
    rule_engine_utilities::write_log(label + text);
}

}  // namespace

std::string gt_rule_engine::snapshotText(const RateTableAttribute& attribute, int snapshot) {
    variableMap& variables = blockVarMap.at(static_cast<std::size_t>(attribute.channel))
                                 .at(static_cast<std::size_t>(snapshot));
    // The series found the places of all values that differ; a search would wait for memory again.
    const ruleValue* const known =
        analysedSeries == nullptr ? nullptr : analysedSeries->valueIn(variables, attribute.name);
    if (known != nullptr) {
        return registerText(*known);
    }
    const auto found = variables.find(attribute.name);
    return found == variables.end() ? std::string() : registerText(found->second.value);
}

std::vector<std::string> gt_rule_engine::rateTableBodyCase1_new(
    RateTableAttribute first, RateTableAttribute second, int hasSecond,
    std::set<std::string> masked, std::vector<int> snapshots, bool singleLane) {
    const int firstSnapshot = snapshots.at(0);
    const int secondSnapshot = snapshots.at(1);
    return pairGroup(first, second, hasSecond != 0, masked, firstSnapshot, secondSnapshot,
                     singleLane);
}

std::vector<std::string> gt_rule_engine::pairGroup(const RateTableAttribute& first,
                                                   const RateTableAttribute& second, bool hasSecond,
                                                   const std::set<std::string>& masked,
                                                   int firstSnapshot, int secondSnapshot,
                                                   bool singleLane) {
    const auto isMasked = [&](const RateTableAttribute& attribute) {
        return masked.count(getPrefix(attribute.name, attribute.channel) + attribute.name) != 0;
    };
    const RateTableAttribute& last = hasSecond ? second : first;
    const std::string firstText = snapshotText(first, firstSnapshot);
    const std::string secondText = snapshotText(second, secondSnapshot);
    const bool firstMasked = isMasked(first);
    const bool lastMasked = hasSecond ? isMasked(second) : firstMasked;

    log("\nNo Burst No Rom", "");
    if (singleLane) {
        log("Single Lane Enable: ", "1");
        log("Single Lane Select: ", std::to_string(first.channel));
    }
    rate_table_word header;
    header.put(27, 26, singleLane ? static_cast<std::uint64_t>(first.channel) : 0)
        .put(25, 25, singleLane ? 1 : 0)
        .put(24, 24, lastMasked ? 1 : 0)
        .put(23, 23, firstMasked ? 1 : 0)
        .put(22, 13, static_cast<std::uint64_t>(last.address))
        .put(12, 3, static_cast<std::uint64_t>(first.address))
        .put(2, 2, hasSecond ? 1 : 0);
    std::vector<std::string> words = {header.digits()};

    const auto write = [&](const RateTableAttribute& attribute, const std::string& text,
                           bool underMask) {
        log("Name: ", attribute.name);
        log("Address: ", std::to_string(attribute.address));
        log("Value: ", text);
        if (underMask) {
            words.push_back(attribute.mask.to_string());
            log("Mask: ", words.back());
        }
        words.push_back(digitsOf(wordOfText(text)));
    };
    write(first, firstText, firstMasked);
    if (hasSecond) {
        write(second, secondText, lastMasked);
    }
    return words;
}

std::vector<std::string> gt_rule_engine::rateTableBodyCase2_new(
    std::vector<RateTableAttribute> burst, int snapshot) {
    const RateTableAttribute& first = burst.at(0);
    log("\nBurst No Rom", "");
    rate_table_word header;
    header.put(31, 22, static_cast<std::uint64_t>(first.address))
        .put(5, 2, static_cast<std::uint64_t>(burst.back().address - first.address))
        .put(1, 1, 1);
    std::vector<std::string> values;
    for (const RateTableAttribute& attribute : burst) {
        const std::int64_t distance = attribute.address - first.address;
        if (distance >= 0 && distance < burstSpan) {
            const auto bit = 6 + static_cast<unsigned int>(distance);
            header.put(bit, bit, 1);
        }
        const std::string text = snapshotText(attribute, snapshot);
        log("Name: ", attribute.name);
        log("Addr: ", std::to_string(attribute.address));
        log("Value: ", text);
        values.push_back(digitsOf(wordOfText(text)));
    }
    values.insert(values.begin(), header.digits());
    return values;
}

}  // namespace sable_lanecfg
