#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg::block_tables {

/// Names of a dual's PLLs by number.
std::map<int, std::string> pllNames();

/// How many channels of a quad of `family` one block of each type covers.
std::map<std::string, int> blockSpan(const std::string& family);

/// Word offsets of the blocks of each type inside the range that the controller addresses.
std::map<std::string, std::vector<int>> blockOffsets();

/// Word offsets of the blocks of each type in the register space of the quad.
std::map<std::string, std::vector<int>> blockBases();

/// Registers that are never reported as static.
std::set<std::string> staticExcluded();

/// Registers that belong in a rate table even where no rate changes them.
std::set<std::string> forcedCritical();

/// Registers that a rate table only writes under a mask.
std::set<std::string> alwaysMasked();

/// Lower-case hexadecimal digit of each group of four binary digits.
std::map<std::string, std::string> nibbleToHex();

}  // namespace sable_lanecfg::block_tables
