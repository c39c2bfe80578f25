#pragma once

#include "rate_table_decoder.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// Bit offset and width of a register's fields by name, "REGISTER.FIELD".
using FieldPlaces = std::map<std::string, std::vector<int>>;

/// A register word and where its fields are.
struct FieldedWord {
    std::uint32_t word = 0;
    const FieldPlaces& fields;
};

/// A field, or the bits that are in no field, with another value in one word than in the other. A
/// field that only one of the words has lacks the other's value.
struct FieldDifference {
    std::string field;                      ///< without its register; empty for bits in no field
    std::optional<std::uint32_t> unplaced;  ///< the bits that differ, where they are in no field
    std::optional<std::uint32_t> first;
    std::optional<std::uint32_t> second;
};

/// What differs between two words, field by field in the order of their names.
std::vector<FieldDifference> fieldDifferences(const FieldedWord& first, const FieldedWord& second);

/// "FIELD", or "bits 0x00007000" for those in no field.
std::string nameOf(const FieldDifference& difference);

/// Differences as "FIELD 1 -> 2, FIELD 3 -> 0"; what a word does not have appears as "none".
std::string textOf(const std::vector<FieldDifference>& differences);

/// The same write in each rate of a table.
using WriteOverRates = std::vector<const RegisterWrite*>;

/// What a write changes against the rate before it, as "FIELD 1 -> 2, FIELD 3 -> 0"; in the first
/// rate the fields that any rate changes, as "FIELD 1". Only bits that are written count. Bits that
/// are in no field appear as a mask and their values.
std::string fieldChanges(const WriteOverRates& writes, std::size_t rate, const FieldPlaces& fields);

}  // namespace sable_lanecfg::tool
