#pragma once

#include <lanecfg/gt_db_load.h>
#include <lanecfg/rule_engine_base.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace sable_lanecfg {

/// Snapshots under comparison, in order; none is copied.
using snapshotList = std::vector<const variableMap*>;

/// Values of one register over a list of snapshots. A snapshot that lacks the register counts as
/// holding it blank.
using registerSeries = std::vector<const ruleValue*>;

snapshotList snapshotsOf(const std::vector<variableMap>& passes);
/// The snapshots whose run variable `label` ("TX" or "RX") has the text `text`.
snapshotList snapshotsWith(const std::vector<variableMap>& passes, const std::string& label,
                           const std::string& text);

registerSeries seriesOf(const std::string& name, const snapshotList& snapshots);

/// A series for every register, in the key order of `registers`; empty where the register has one
/// and the same word in all snapshots, or where there is one snapshot only, which isn't looked at
/// then. Each snapshot is walked once.
std::vector<registerSeries> seriesThatMayDiffer(
    const std::map<std::string, attributeInfo>& registers, const snapshotList& snapshots);

/// `seriesThatMayDiffer` by list of snapshots, so that all who look at the same snapshots walk them
/// once. The values of the snapshots may change, their variables and the registers may not come and
/// go.
class seriesCache {
  public:
    const std::vector<registerSeries>& of(const std::map<std::string, attributeInfo>& registers,
                                          const snapshotList& snapshots);

    /// The value of a register in a snapshot as a series has it, without a search of the snapshot;
    /// null where none has it, or the snapshot lacks it.
    const ruleValue* valueIn(const variableMap& snapshot, const std::string& name) const;

  private:
    using seriesOfRegisters = std::vector<registerSeries>;
    /// Place of a snapshot in the series made of its list.
    struct place {
        const seriesOfRegisters* series;
        std::size_t position;
    };

    // A list, whose elements stay where they are when others come.
    std::list<std::pair<snapshotList, seriesOfRegisters>> known_;
    std::unordered_map<const variableMap*, place> places_;
    std::unordered_map<std::string_view, std::size_t> rows_;
};

/// True when a text differs from the one before it. The text "NULL" counts as no text yet. In an
/// empty series nothing differs.
bool differsInSeries(const registerSeries& series);

/// Text of a value, without the detour through a stream for register words.
std::string registerText(const ruleValue& value);
/// A text read as a signed decimal number, cut to 32 bits. Throws std::invalid_argument ("stoll")
/// on a text that is no number.
std::uint32_t wordOfText(const std::string& text);
/// A register word: `wordOfText` of the value's text.
std::uint32_t registerWord(const ruleValue& value);

/// The value in a snapshot, or null where it is absent or blank.
ruleValue* definedValue(variableMap& snapshot, const std::string& name);

}  // namespace sable_lanecfg
