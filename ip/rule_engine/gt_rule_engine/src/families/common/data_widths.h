#pragma once

#include "families/common/lane_side.h"
#include "families/common/rule_arithmetic.h"
#include "families/common/rule_declaration.h"

namespace sable_lanecfg {

/// Code of an internal data width in bits.
inline constexpr code_table<unsigned int, 6> internalWidthCodes{
    {{16, 0}, {32, 1}, {64, 2}, {20, 0}, {40, 1}, {80, 2}}};

/// Code of a user data width in bits where the coding is "8B10B".
inline constexpr code_table<unsigned int, 8> plainWidthCodes{
    {{16, 2}, {20, 3}, {32, 4}, {40, 5}, {64, 6}, {80, 7}, {128, 8}, {160, 9}}};

/// Code of the user data width; all codings but "8B10B" count 10 bits for 8.
ruleDeclarer userWidthCode(const laneSide& side);

/// Bits of a user data width by its code, 0 for a code that stands for no width.
unsigned int bitsOfWidthCode(unsigned int code);

}  // namespace sable_lanecfg
