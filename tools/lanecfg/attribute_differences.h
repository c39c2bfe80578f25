#pragma once

#include "field_changes.h"
#include "output.h"

#include <lanecfg/gt_db_load.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// Values of registers by name, and the registers of the database behind them. A name is that of a
/// register, behind its unit ("CH0_", "HSCLK1_") where it has one, or of something else.
struct NamedValues {
    const textMap& values;
    const std::map<std::string, attributeInfo>& registers;
};

/// A value that one side has otherwise than the other, or not at all.
struct ValueDifference {
    std::optional<unsigned> channel;  ///< where values of one channel were compared
    std::string name;
    std::optional<std::string> first;
    std::optional<std::string> second;
    std::vector<FieldDifference> fields;  ///< where both values are words of a register
};

/// A value as a register word; none for what is no decimal number of 32 bits.
std::optional<std::uint32_t> registerWord(const std::string& value);

/// A value as its register word in hexadecimal, empty for what is none.
std::string hexadecimalOf(const std::string& value);

/// What differs, in the order of the names.
std::vector<ValueDifference> valueDifferences(const NamedValues& first, const NamedValues& second);

/// The answer about the differences: a row for each, its channel in front where `ofChannels`, and
/// at the end of the form for people their count under the names of both sides.
Answer answerOf(const std::vector<ValueDifference>& differences, bool ofChannels,
                const std::string& firstName, const std::string& secondName);

}  // namespace sable_lanecfg::tool
