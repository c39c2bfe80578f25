#pragma once

#include "families/common/lane_side.h"
#include "families/common/rule_arithmetic.h"
#include "families/common/rule_declaration.h"

#include <string>
#include <string_view>

namespace sable_lanecfg {

// Widths and gearbox of the PCS, alike in both directions.

/// Bytes (of 8 or 10 bits) of an internal data width in bits.
inline constexpr code_table<unsigned int, 6> internalWidthBytes{
    {{16, 2}, {32, 4}, {64, 8}, {20, 2}, {40, 4}, {80, 8}}};

/// How many times the internal data width goes into the user data width.
class width_ratio {
  public:
    width_ratio(rule_declaration& rule, const laneSide& side)
        : user_(rule.reads<unsigned int>(side.parameter("USER_DATA_WIDTH"))),
          internal_(rule.reads<unsigned int>(side.parameter("INT_DATA_WIDTH"))),
          internalName_(side.parameter("INT_DATA_WIDTH")) {}

    /// Throws std::domain_error, naming the variable, at an internal width of 0.
    unsigned int operator()() const { return quotient(user_(), internal_(), internalName_); }

    /// The same of the width on the line, which 8B10B makes a quarter wider.
    unsigned int onLine(const std::string& coding) const {
        const double width = coding == "8B10B" ? user_() * tenBitsForEight : user_();
        return quotient(truncated(width), internal_(), internalName_);
    }

  private:
    static constexpr double tenBitsForEight = 1.25;

    rule_input<unsigned int> user_;
    rule_input<unsigned int> internal_;
    std::string internalName_;
};

/// The asynchronous gearbox, which alone lets the user clock run at half the internal one.
constexpr std::string_view asynchronousGearbox = "64B66B_ASYNC";

/// What a gearbox rule writes.
enum class gearboxContent {
    fields,                ///< use and mode
    fieldsAndAsynchronous  ///< also the intermediate that tells whether it is asynchronous
};

/// Use and mode of the gearbox. The fields are of `registerName`.
ruleDeclarer gearbox(const laneSide& side, const std::string& registerName,
                     gearboxContent content = gearboxContent::fieldsAndAsynchronous);

}  // namespace sable_lanecfg
