#include "block/register_series.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <string>
#include <utility>

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

/// Whether all values are the same register word.
bool isOneWord(const registerSeries& series) {
    const auto* const first = boost::get<unsigned int>(series.front());
    return first != nullptr &&
           std::all_of(series.begin(), series.end(), [first](const ruleValue* value) {
               const auto* const word = boost::get<unsigned int>(value);
               return word != nullptr && *word == *first;
           });
}

/// Value in a snapshot, blank where it is absent.
const ruleValue* lookedUp(const variableMap& snapshot, const std::string& name) {
    const auto found = snapshot.find(name);
    return found == snapshot.end() ? &blankValue() : &found->second.value;
}

/// Walks snapshots in step, in key order. As they come from the same variables, what the first has
/// at a place the others have there too, so only the first is searched; where it proves otherwise,
/// a name is looked up. Steps in several maps at once don't wait for each other's memory.
class snapshot_walk {
  public:
    /// There must be a snapshot.
    explicit snapshot_walk(const snapshotList& snapshots) : snapshots_(snapshots) {
        places_.reserve(snapshots.size());
        for (const variableMap* const snapshot : snapshots) {
            places_.push_back(snapshot->begin());
            left_ = std::min(left_, snapshot->size());
        }
    }

    /// Values of a name, which must be behind the names before it.
    registerSeries valuesOf(const std::string& name) {
        const bool isReached = reach(name);
        registerSeries series;
        series.reserve(snapshots_.size());
        for (std::size_t i = 0; i < snapshots_.size(); ++i) {
            const bool isHere = isReached && places_[i]->first == name;
            series.push_back(isHere ? &places_[i]->second.value : lookedUp(*snapshots_[i], name));
        }
        return series;
    }

  private:
    /// Whether the first snapshot has the name at the place where all stand then.
    bool reach(const std::string& name) {
        int order = -1;
        while (left_ != 0 && (order = places_.front()->first.compare(name)) < 0) {
            for (auto& place : places_) {
                ++place;
            }
            --left_;
        }
        return left_ != 0 && order == 0;
    }

    const snapshotList& snapshots_;
    std::vector<variableMap::const_iterator> places_;
    /// Variables from here on in the shortest snapshot.
    std::size_t left_ = std::numeric_limits<std::size_t>::max();
};

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

registerSeries seriesOf(const std::string& name, const snapshotList& snapshots) {
    registerSeries series;
    series.reserve(snapshots.size());
    for (const variableMap* const snapshot : snapshots) {
        series.push_back(lookedUp(*snapshot, name));
    }
    return series;
}

std::vector<registerSeries> seriesThatMayDiffer(
    const std::map<std::string, attributeInfo>& registers, const snapshotList& snapshots) {
    std::vector<registerSeries> all(registers.size());
    if (snapshots.size() < 2) {
        return all;
    }
    snapshot_walk walk(snapshots);
    auto row = all.begin();
    // Both are in key order, so one walk meets every register.
    for (const auto& [name, info] : registers) {
        registerSeries series = walk.valuesOf(name);
        if (!isOneWord(series)) {
            *row = std::move(series);
        }
        ++row;
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
    const seriesOfRegisters& made =
        known_.emplace_back(snapshots, seriesThatMayDiffer(registers, snapshots)).second;
    for (std::size_t position = 0; position < snapshots.size(); ++position) {
        places_.emplace(snapshots[position], place{&made, position});
    }
    if (rows_.empty()) {
        for (const auto& [name, info] : registers) {
            rows_.emplace(name, rows_.size());
        }
    }
    return made;
}

const ruleValue* seriesCache::valueIn(const variableMap& snapshot, const std::string& name) const {
    const auto found = places_.find(&snapshot);
    const auto row = rows_.find(name);
    if (found == places_.end() || row == rows_.end()) {
        return nullptr;
    }
    const auto& [series, position] = found->second;
    const registerSeries& values = (*series)[row->second];
    return values.empty() || values[position] == &blankValue() ? nullptr : values[position];
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
