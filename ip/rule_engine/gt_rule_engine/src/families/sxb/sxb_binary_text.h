#pragma once

#include <string_view>

namespace sable_lanecfg {

/// The binary number that the text begins with; 0 for a text that begins with another character
/// and for a number of more than 32 bits.
unsigned int leadingBinaryNumber(std::string_view text);

}  // namespace sable_lanecfg
