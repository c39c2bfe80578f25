#pragma once

#include <lanecfg/gt_db_load.h>

#include <stdexcept>
#include <string>

namespace sable_lanecfg {

/// Offset of a register inside its block. Throws std::invalid_argument with the text "stoul", which
/// hosts know, on a text that is no hexadecimal number, and std::out_of_range, naming the register,
/// on a number that is too large.
inline unsigned long registerOffset(const std::string& name, const attributeInfo& info) {
    try {
        return std::stoul(info.Offset, nullptr, 16);
    } catch (const std::out_of_range&) {
        throw std::out_of_range("register " + name + " has the offset " + info.Offset +
                                ", which is too large");
    }
}

}  // namespace sable_lanecfg
