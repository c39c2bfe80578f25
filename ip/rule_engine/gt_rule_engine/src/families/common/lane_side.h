#pragma once

#include <string>
#include <string_view>

namespace sable_lanecfg {

/// One direction of a lane, by which rules that exist for both find their names.
struct laneSide {
    std::string_view word;    ///< "TX" or "RX"
    std::string_view coding;  ///< parameter of the line coding

    /// The direction's word between two parts of a name.
    std::string within(std::string_view before, std::string_view after) const {
        std::string name;
        name.reserve(before.size() + word.size() + after.size());
        return name.append(before).append(word).append(after);
    }

    /// A user parameter: "BUFFER_MODE" gives "TX_BUFFER_MODE".
    std::string parameter(std::string_view name) const {
        std::string parameterName;
        parameterName.reserve(word.size() + 1 + name.size());
        return parameterName.append(word).append("_").append(name);
    }
};

constexpr laneSide transmitSide{"TX", "TX_DATA_ENCODING"};
constexpr laneSide receiveSide{"RX", "RX_DATA_DECODING"};

}  // namespace sable_lanecfg
