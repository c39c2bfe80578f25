#pragma once

#include "controller_registers.h"
#include "rate_table_decoder.h"
#include "table.h"

#include <cstdint>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// A register word as "0x" and eight digits.
std::string hexadecimalWord(std::uint32_t word);

/// One row for each word: index, hexadecimal and binary digits.
Table wordRows(const std::vector<std::uint32_t>& words);

/// One row for each register write, in the order of the words: table, rate, header word and form of
/// its group, address, register, mask, value, and what changes against the rate before. The first
/// rate shows the fields that any rate changes.
Table writeRows(const DecodedRateTable& table, const ControllerRegisters& registers);

/// A line for each channel about what the header tells of it.
std::vector<std::string> headerLines(const DecodedRateTable& table);
/// The same as a list of objects.
Json headerDocument(const DecodedRateTable& table);

}  // namespace sable_lanecfg::tool
