#include "block/register_series.h"

#include <cstddef>
#include <string>

namespace sable_lanecfg {

namespace {

const ruleValue& blankValue() {
    static const ruleValue blank;
    return blank;
}

bool isNoTextYet(const ruleValue& value) {
    const auto* const text = boost::get<std::string>(&value);
    return text != nullptr && *text == "NULL";
}

bool sameText(const ruleValue& first, const ruleValue& second) {
    const auto* const firstWord = boost::get<unsigned int>(&first);
    const auto* const secondWord = boost::get<unsigned int>(&second);
    if (firstWord != nullptr && secondWord != nullptr) {
        return *firstWord == *secondWord;
    }
    return rule_engine_base::textOf(first) == rule_engine_base::textOf(second);
}

}  // namespace

snapshotList snapshotsOf(const std::vector<variableMap>& passes) {
    snapshotList list;
    list.reserve(passes.size());
    for (const variableMap& snapshot : passes) {
        list.push_back(&snapshot);
    }
    return list;
}

snapshotList snapshotsWith(const std::vector<variableMap>& passes, const std::string& label,
                           const std::string& text) {
    snapshotList list;
    for (const variableMap& snapshot : passes) {
        const auto found = snapshot.find(label);
        if (found != snapshot.end() && registerText(found->second.value) == text) {
            list.push_back(&snapshot);
        }
    }
    return list;
}

std::vector<registerSeries> seriesOfRegisters(const std::map<std::string, attributeInfo>& registers,
                                              const snapshotList& snapshots) {
    std::vector<registerSeries> all(registers.size());
    for (registerSeries& series : all) {
        series.reserve(snapshots.size());
    }
    for (const variableMap* const snapshot : snapshots) {
        // Both maps are in key order, so one walk of the snapshot meets every register.
        auto held = snapshot->begin();
        std::size_t row = 0;
        for (const auto& [name, info] : registers) {
            int order = -1;
            while (held != snapshot->end() && (order = held->first.compare(name)) < 0) {
                ++held;
            }
            const bool found = held != snapshot->end() && order == 0;
            all[row++].push_back(found ? &held->second.value : &blankValue());
        }
    }
    return all;
}

const std::vector<registerSeries>& seriesCache::of(
    const std::map<std::string, attributeInfo>& registers, const snapshotList& snapshots) {
    for (const auto& [list, series] : known_) {
        if (list == snapshots) {
            return series;
        }
    }
    return known_.emplace_back(snapshots, seriesOfRegisters(registers, snapshots)).second;
}

bool differsInSeries(const registerSeries& series) {
    const ruleValue* previous = nullptr;
    for (const ruleValue* const value : series) {
        if (previous != nullptr && !sameText(*previous, *value)) {
            return true;
        }
        previous = isNoTextYet(*value) ? nullptr : value;
    }
    return false;
}

std::string registerText(const ruleValue& value) {
    const auto* const word = boost::get<unsigned int>(&value);
    return word != nullptr ? std::to_string(*word) : rule_engine_base::textOf(value);
}

std::uint32_t wordOfText(const std::string& text) {
    return static_cast<std::uint32_t>(std::stoll(text));
}

std::uint32_t registerWord(const ruleValue& value) {
    const auto* const word = boost::get<unsigned int>(&value);
    return word != nullptr ? *word : wordOfText(rule_engine_base::textOf(value));
}

ruleValue* definedValue(variableMap& snapshot, const std::string& name) {
    const auto found = snapshot.find(name);
    return found == snapshot.end() || found->second.value.which() == 0 ? nullptr
                                                                       : &found->second.value;
}

}  // namespace sable_lanecfg
