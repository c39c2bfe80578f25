#pragma once

#include "families/common/rule_arithmetic.h"
#include "families/common/rule_declaration.h"
#include "families/sxb/sxb_lane_side.h"

#include <string>

namespace sable_lanecfg {

// Widths and gearbox of the coding layer, alike in both directions.

/// Code of an internal data width in bits.
inline constexpr code_table<unsigned int, 6> internalWidthCodes{
    {{16, 0}, {32, 1}, {64, 2}, {20, 0}, {40, 1}, {80, 2}}};
/// Bytes (of 8 or 10 bits) of an internal data width in bits.
inline constexpr code_table<unsigned int, 6> internalWidthBytes{
    {{16, 2}, {32, 4}, {64, 8}, {20, 2}, {40, 4}, {80, 8}}};

/// Code of the user data width; all codings but "8B10B" count 10 bits for 8.
ruleDeclarer userWidthCode(const laneSide& side);

/// Bits of a user data width by its code, 0 for a code that stands for no width.
unsigned int bitsOfWidthCode(unsigned int code);

/// What a gearbox rule writes.
enum class gearboxContent {
    fields,                ///< use and mode
    fieldsAndAsynchronous  ///< also the intermediate that tells whether it is asynchronous
};

/// Use and mode of the gearbox. The fields are of `registerName`.
ruleDeclarer gearbox(const laneSide& side, const std::string& registerName,
                     gearboxContent content = gearboxContent::fieldsAndAsynchronous);

}  // namespace sable_lanecfg
